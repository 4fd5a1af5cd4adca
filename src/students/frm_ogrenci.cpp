#include "students/frm_ogrenci.h"

#include "base/turkish_text.h"
#include "store/database.h"
#include "students/frm_bilgi_degistir.h"
#include "students/frm_ogrenci_list.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "ui/screen_registry.h"
#include "users/record_lock.h"
#include "users/rights.h"
#include "users/secrets.h"
#include "users/session.h"

#include <QAction>
#include <QBuffer>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace students {

using namespace Qt::StringLiterals;

namespace {

QLabel *amountLabel(const QString &name, QWidget *parent)
{
    auto *l = new QLabel(parent);
    l->setObjectName(name);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setFrameShape(QFrame::StyledPanel);
    l->setMinimumWidth(120);
    return l;
}

// A label without its trailing colon, for messages.
QString bare(const QString &caption)
{
    QString c = caption.trimmed();
    if (c.endsWith(QLatin1Char(':'))) {
        c.chop(1);
    }
    return c.trimmed();
}

} // namespace

FrmOgrenci::FrmOgrenci(store::Database &db, QWidget *mainWindow, QWidget *parent)
    : ui::Screen(QStringLiteral("FrmOgrenci"), QStringLiteral("Öğrenci Bilgileri"), parent)
    , m_db(db)
    , m_anaPencere(mainWindow)
{
    QGroupBox *ana = makeMainFrame();
    QHBoxLayout *arama = makeSearchRow();

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("SSTab1"));
    m_tabs->addTab(makeAccountPage(), QStringLiteral("Aylık B&orç"));
    m_tabs->addTab(makeFieldPage(Bolum::Veli, 3, m_tabs), QStringLiteral("&Veli Bilgileri"));
    auto *anaBaba = new QWidget(m_tabs);
    auto *anaBabaKutu = new QHBoxLayout(anaBaba);
    anaBabaKutu->addWidget(makeParentGroup(QStringLiteral("ANNE BİLGİSİ"), Bolum::Anne, anaBaba));
    anaBabaKutu->addWidget(makeParentGroup(QStringLiteral("BABA BİLGİSİ"), Bolum::Baba, anaBaba));
    m_tabs->addTab(anaBaba, QStringLiteral("Ana Baba"));
    m_tabs->addTab(makeFieldPage(Bolum::Nufus, 3, m_tabs), QStringLiteral(" &Nüfus Bilgileri"));
    m_tabs->addTab(makeSiblingsPage(), QStringLiteral(" Kardeş Bilgileri"));
    auto *ozel = new QWidget(m_tabs);
    m_ozel = new QPlainTextEdit(ozel);
    m_ozel->setObjectName(QStringLiteral("OzelBilgi"));
    m_ozel->setTabChangesFocus(true);
    auto *ozelKutu = new QVBoxLayout(ozel);
    ozelKutu->addWidget(m_ozel);
    m_tabs->addTab(ozel, QStringLiteral("Özel &Bilgiler"));

    QHBoxLayout *komutlar = makeCommandRow();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(ana);
    layout->addLayout(arama);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(komutlar);
    resize(1080, 690);

    COMBO_DOLDUR();
    AlanBolumYabancidilCombo();

    // ---- wiring
    watchForChanges(this);
    // The number is also how a student is looked up: typing it marks a shown student only.
    disconnect(m_numara, &QLineEdit::textEdited, this, nullptr);
    connect(m_numara, &QLineEdit::textEdited, this, [this] {
        if (m_kayitId != 0) {
            setDirty(true);
        }
    });
    connect(m_kardesler, &ui::Grid::cellEdited, this, [this] { setDirty(true); });
    for (QLineEdit *e : {m_numara, m_adi, m_soyadi}) {
        connect(e, &QLineEdit::textChanged, this, &FrmOgrenci::kayitDurumu);
    }
    connect(m_cmdFotograf, &QPushButton::clicked, this, &FrmOgrenci::fotografAl);
    connect(&ui::Bildirimler::instance(), &ui::Bildirimler::ogrenciDegisti, this,
            &FrmOgrenci::baskasiDegistirdi);

    ui::moveWithEnter(this);
    // Installed after Enter's own filter, so that the number box sees its keys first.
    for (QWidget *w : findChildren<QWidget *>()) {
        w->installEventFilter(this);
    }
    m_kartNoAcik = users::KartNoGorebilir(m_db);
    ekraniTemizle();
}

// ---- building the form ---------------------------------------------------------------------

QGroupBox *FrmOgrenci::makeMainFrame()
{
    auto *ana = new QGroupBox(QStringLiteral("[ Öğrenci Bilgileri ]"), this);
    auto *anaGrid = new QGridLayout;
    anaGrid->setHorizontalSpacing(8);
    anaGrid->setVerticalSpacing(4);
    placeFields(anaGrid, Bolum::Ogrenci, 3, ana);
    // The users who wrote the record come under "Muaf" and "Ayrıldı".
    m_ilkKullanici = new QLabel(ana);
    m_ilkKullanici->setObjectName(QStringLiteral("lblIlkKullanici"));
    m_islemYapan = new QLabel(ana);
    m_islemYapan->setObjectName(QStringLiteral("lblIslemYapan"));
    for (QLabel *l : {m_ilkKullanici, m_islemYapan}) {
        l->setFrameShape(QFrame::StyledPanel);
    }
    anaGrid->addWidget(new QLabel(QStringLiteral("İlkKayıt Yapan Kullanıcı"), ana), 4, 4);
    anaGrid->addWidget(m_ilkKullanici, 5, 4);
    anaGrid->addWidget(new QLabel(QStringLiteral("İşlem Yapan Kullanıcı"), ana), 4, 5);
    anaGrid->addWidget(m_islemYapan, 5, 5);
    anaGrid->setColumnStretch(1, 2);
    anaGrid->setColumnStretch(3, 3);
    anaGrid->setColumnStretch(5, 2);

    m_numara = qobject_cast<QLineEdit *>(m_kutular.value(QStringLiteral("Ogr_Numarasi")));
    m_adi = qobject_cast<QLineEdit *>(m_kutular.value(QStringLiteral("Ogr_Adi")));
    m_soyadi = qobject_cast<QLineEdit *>(m_kutular.value(QStringLiteral("Ogr_Soyadi")));
    m_sinif = qobject_cast<QComboBox *>(m_kutular.value(QStringLiteral("Ogr_Sinif")));
    for (QWidget *w : {static_cast<QWidget *>(m_numara), static_cast<QWidget *>(m_adi),
                       static_cast<QWidget *>(m_soyadi)}) {
        ui::markRequired(w, true);
    }

    // The photograph
    m_foto = new QLabel(ana);
    m_foto->setObjectName(QStringLiteral("Image1"));
    m_foto->setFixedSize(120, 150);
    m_foto->setFrameShape(QFrame::Box);
    m_foto->setAlignment(Qt::AlignCenter);
    m_foto->setToolTip(QStringLiteral("Sol tık: fotoğraf seç; sağ tık: fotoğrafı kaldır"));
    m_foto->installEventFilter(this);
    auto *resimSil = new QAction(QStringLiteral("Resim Sil (Öğrenci Fotoğrafını Siler.)"), this);
    resimSil->setObjectName(QStringLiteral("mnuResimSil"));
    connect(resimSil, &QAction::triggered, this, [this] {
        m_resim.clear();
        resmiGoster();
        setDirty(true);
    });
    m_cmdFotograf
        = ui::button(QStringLiteral("cmdFotografAl"), QStringLiteral("&Fotoğraf Al"), ana);
    auto *fotoKutu = new QVBoxLayout;
    fotoKutu->addWidget(m_foto, 0, Qt::AlignHCenter);
    fotoKutu->addWidget(m_cmdFotograf);
    fotoKutu->addStretch();

    auto *anaKutu = new QHBoxLayout(ana);
    anaKutu->addLayout(anaGrid, 1);
    anaKutu->addSpacing(8);
    anaKutu->addLayout(fotoKutu);
    return ana;
}

QHBoxLayout *FrmOgrenci::makeSearchRow()
{
    m_arama = new QComboBox(this);
    m_arama->setObjectName(QStringLiteral("cmbArama"));
    m_arama->addItems({QStringLiteral("Numaraya Göre"), QStringLiteral("Ada Göre"),
                       QStringLiteral("Soyada Göre"), QStringLiteral("Sınıfa Göre")});
    using F = FrmOgrenci;
    // clang-format off
    static const ui::Command<F> dugmeler[] = {
        {u"cmdIlk"_s, u"|< İlk"_s, [](F &f) { f.OgrenciAra(Yon::Ilk); }, u"Home"_s},
        {u"cmdOnceki"_s, u"< Önceki"_s, [](F &f) { f.OgrenciAra(Yon::Onceki); }, u"Page Up"_s},
        {u"cmdSonraki"_s, u"Sonraki >"_s, [](F &f) { f.OgrenciAra(Yon::Sonraki); }, u"Page Down"_s},
        {u"cmdSon"_s, u"Son >|"_s, [](F &f) { f.OgrenciAra(Yon::Son); }, u"End"_s},
        {u"cmdListe"_s, u"Öğrenci &Listesi (F10)"_s, [](F &f) { f.listedenSec(); }},
        {u"cmdYeni"_s, u"&Yeni Öğrenci"_s, [](F &f) { f.yeniOgrenci(); }},
    };
    // clang-format on
    const auto [ilk, onceki, sonraki, son, liste, yeni] = ui::makeCommands(*this, dugmeler, this);
    auto *arama = new QHBoxLayout;
    arama->addWidget(new QLabel(QStringLiteral("Arama :"), this));
    arama->addWidget(m_arama);
    for (QPushButton *b : {ilk, onceki, sonraki, son}) {
        arama->addWidget(b);
    }
    arama->addSpacing(12);
    arama->addWidget(liste);
    arama->addStretch();
    arama->addWidget(yeni);
    return arama;
}

QWidget *FrmOgrenci::makeAccountPage()
{
    auto *borc = new QWidget(m_tabs);
    auto *buAy = new QGroupBox(QStringLiteral("[ Bu Ay Ödemesi Gereken ]"), borc);
    m_buAy = new ui::Grid(buAy);
    m_buAy->setObjectName(QStringLiteral("grdBuAy"));
    m_buAy->setColumns({{QStringLiteral("Borç Tanımı"), ui::ColumnKind::Text, 220, false},
                        {QStringLiteral("Tutar"), ui::ColumnKind::Money, 120, false}});
    m_buAy->setLocked(true);
    m_buAy->horizontalHeader()->setStretchLastSection(true);
    m_buAyToplam = amountLabel(QStringLiteral("lblBuAyToplam"), buAy);
    auto *buAyToplam = new QHBoxLayout;
    buAyToplam->addStretch();
    buAyToplam->addWidget(new QLabel(QStringLiteral("Toplam Ödenecek Tutar :"), buAy));
    buAyToplam->addWidget(m_buAyToplam);
    auto *buAyKutu = new QVBoxLayout(buAy);
    buAyKutu->addWidget(m_buAy);
    buAyKutu->addLayout(buAyToplam);

    auto *genel = new QGroupBox(QStringLiteral("[ Genel Durum ]"), borc);
    m_toplamBorc = amountLabel(QStringLiteral("lblToplamBorc"), genel);
    m_toplamOdenen = amountLabel(QStringLiteral("lblToplamOdenen"), genel);
    m_kalan = amountLabel(QStringLiteral("lblKalan"), genel);
    auto *genelKutu = new QGridLayout(genel);
    genelKutu->addWidget(new QLabel(QStringLiteral("Toplam Borç :"), genel), 0, 0);
    genelKutu->addWidget(m_toplamBorc, 0, 1);
    genelKutu->addWidget(new QLabel(QStringLiteral("Toplam Ödenen :"), genel), 1, 0);
    genelKutu->addWidget(m_toplamOdenen, 1, 1);
    genelKutu->addWidget(new QLabel(QStringLiteral("Kalan :"), genel), 2, 0);
    genelKutu->addWidget(m_kalan, 2, 1);
    genelKutu->setRowStretch(3, 1);

    auto *hesap = new QGroupBox(borc);
    auto *hesapKutu = new QGridLayout(hesap);
    placeFields(hesapKutu, Bolum::Hesap, 1, hesap);
    hesapKutu->setRowStretch(3, 1);
    auto *borcSag = new QVBoxLayout;
    borcSag->addWidget(genel);
    borcSag->addWidget(hesap);
    auto *borcKutu = new QHBoxLayout(borc);
    borcKutu->addWidget(buAy, 3);
    borcKutu->addLayout(borcSag, 2);
    return borc;
}

QWidget *FrmOgrenci::makeFieldPage(Bolum bolum, int columns, QWidget *parent)
{
    auto *page = new QWidget(parent);
    auto *grid = new QGridLayout(page);
    grid->setVerticalSpacing(4);
    const int rows = placeFields(grid, bolum, columns, page);
    for (int column = 0; column < columns; ++column) {
        grid->setColumnStretch(column * 2 + 1, 1);
    }
    grid->setRowStretch(rows, 1);
    return page;
}

QGroupBox *FrmOgrenci::makeParentGroup(const QString &title, Bolum bolum, QWidget *parent)
{
    auto *group = new QGroupBox(title, parent);
    auto *inner = makeFieldPage(bolum, 2, group);
    inner->layout()->setContentsMargins(0, 0, 0, 0);
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(inner);
    return group;
}

QWidget *FrmOgrenci::makeSiblingsPage()
{
    auto *kardes = new QWidget(m_tabs);
    m_kardesSayisi = new QLineEdit(kardes);
    m_kardesSayisi->setObjectName(KardesSayisiAlani);
    m_kardesSayisi->setReadOnly(true);
    m_kardesSayisi->setMaximumWidth(60);
    m_kardesSayisi->setAlignment(Qt::AlignRight);
    m_kardesSayisi->setToolTip(QStringLiteral("Listedeki kardeşlerin sayısı; kaydederken "
                                              "yeniden sayılır."));
    m_kardesler = new ui::Grid(kardes);
    m_kardesler->setObjectName(QStringLiteral("grdKardesler"));
    const int widths[] = {160, 160, 260, 80};
    QList<ui::GridColumn> columns;
    for (int i = 0; i < 4; ++i) {
        const KardesAlani &k = KardesAlanlari().at(i);
        columns.append({k.etiket, ui::ColumnKind::Text, widths[i], true, false, k.boyut});
    }
    m_kardesler->setColumns(columns);
    m_kardesler->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    using F = FrmOgrenci;
    static const ui::Command<F> dugmeler[] = {
        {u"cmdKardesEkle"_s, u"Kardeş Ekle"_s, [](F &f) { f.kardesEkle(); }},
        {u"cmdKardesSil"_s, u"Kardeş Sil"_s, [](F &f) { f.kardesSil(); }},
    };
    const auto [ekle, sil] = ui::makeCommands(*this, dugmeler, kardes);
    auto *kardesUst = new QHBoxLayout;
    kardesUst->addWidget(new QLabel(QStringLiteral("Okuyan Kardeş Sayısı :"), kardes));
    kardesUst->addWidget(m_kardesSayisi);
    kardesUst->addStretch();
    kardesUst->addWidget(ekle);
    kardesUst->addWidget(sil);
    auto *kardesKutu = new QVBoxLayout(kardes);
    kardesKutu->addLayout(kardesUst);
    kardesKutu->addWidget(m_kardesler);
    ui::setTabOrder({m_kardesSayisi, ekle, sil, m_kardesler});
    return kardes;
}

QHBoxLayout *FrmOgrenci::makeCommandRow()
{
    using F = FrmOgrenci;
    // clang-format off
    static const ui::Command<F> dugmeler[] = {
        {u"cmdSil"_s, u"&Sil"_s, [](F &f) { f.OgrenciSil(); }, {}, &F::m_cmdSil},
        {u"cmdDegistir"_s, u"Numara Ad Soyad Sınıf &Değiştirme"_s,
         [](F &f) { f.OgrenciBilgiDegistir(); }, {}, &F::m_cmdDegistir},
        {u"cmdSinifListesi"_s, u"S&ınıf Listesi Göster"_s,
         [](F &f) { ui::notReady(u"Sınıf Listesi"_s, &f); }},
        {u"cmdGecmisYil"_s, u"Öğrenci Geçmiş Yıl Aidatları (F2)"_s,
         [](F &f) { f.gecmisYilAidatlari(); }},
        {u"cmdCariDurum"_s, u"&Cari Durum (F4)"_s, [](F &f) { f.cariDurum(); }, {},
         &F::m_cmdCariDurum},
        {u"cmdKaydet"_s, u"K&aydet"_s, [](F &f) { f.OgrenciKaydet(); }, {}, &F::m_cmdKaydet},
        {u"cmdCikis"_s, u"Çı&kış"_s, [](F &f) { f.closeWindow(); }},
    };
    // clang-format on
    const auto [sil, degistir, sinifListesi, gecmis, cariDurum, kaydet, cikis]
        = ui::makeCommands(*this, dugmeler, this);
    auto *komutlar = new QHBoxLayout;
    komutlar->addWidget(sil);
    komutlar->addWidget(degistir);
    komutlar->addWidget(sinifListesi);
    komutlar->addStretch();
    komutlar->addWidget(gecmis);
    komutlar->addWidget(cariDurum);
    komutlar->addSpacing(12);
    komutlar->addWidget(kaydet);
    komutlar->addWidget(cikis);
    return komutlar;
}

int FrmOgrenci::placeFields(QGridLayout *grid, Bolum bolum, int columns, QWidget *parent)
{
    QList<const OgrenciAlani *> alanlar;
    for (const OgrenciAlani &a : OgrenciAlanTablosu()) {
        if (a.bolum == bolum) {
            alanlar << &a;
        }
    }
    const int rows = int((alanlar.size() + columns - 1) / columns);
    for (int i = 0; i < alanlar.size(); ++i) {
        const OgrenciAlani &a = *alanlar.at(i);
        QWidget *box = makeFieldBox(a, parent);
        const int column = (i / rows) * 2;
        const int row = i % rows;
        if (a.giris != Giris::Onay) {
            auto *l = new QLabel(a.etiket, parent);
            l->setBuddy(box);
            grid->addWidget(l, row, column);
            grid->addWidget(box, row, column + 1);
        } else if (i + 1 < alanlar.size() && alanlar.at(i + 1)->giris == Giris::Onay) {
            // Two tick boxes share a row.
            grid->addWidget(box, row, column);
            grid->addWidget(makeFieldBox(*alanlar.at(++i), parent), row, column + 1);
        } else {
            grid->addWidget(box, row, column + 1);
        }
    }
    return rows;
}

QWidget *FrmOgrenci::makeFieldBox(const OgrenciAlani &a, QWidget *parent)
{
    ui::Box box{a.ad, a.etiket};
    switch (a.giris) {
    case Giris::Metin:
        box.kind = ui::BoxKind::Text;
        box.size = a.boyut;
        break;
    case Giris::Tarih:
        box.kind = ui::BoxKind::Date;
        break;
    case Giris::Para:
        box.kind = ui::BoxKind::Money;
        box.format = users::durum().ParaFormati;
        break;
    case Giris::Onay:
        box.kind = ui::BoxKind::Check;
        break;
    case Giris::Liste:
        box.kind = ui::BoxKind::Typed;
        box.size = a.boyut;
        break;
    case Giris::SabitListe:
    case Giris::SiraListe:
        box.kind = ui::BoxKind::Choice;
        box.items = QStringList{QString()} + a.secenekler;
        break;
    }
    QWidget *w = ui::makeBox(box, parent);
    if (a.giris == Giris::Liste) {
        // What is typed is kept in the box, not added to the values of the others.
        qobject_cast<QComboBox *>(w)->setInsertPolicy(QComboBox::NoInsert);
    }
    m_alanlar.insert(a.ad, a);
    m_kutular.insert(a.ad, w);
    return w;
}

void FrmOgrenci::yeniOgrenci()
{
    if (askToSaveChanges()) {
        ekraniTemizle();
        m_numara->setFocus();
    }
}

void FrmOgrenci::COMBO_DOLDUR()
{
    // The fixed lists are made with their boxes; this only puts every one on its empty entry.
    for (auto it = m_alanlar.cbegin(); it != m_alanlar.cend(); ++it) {
        if (it->giris == Giris::SabitListe || it->giris == Giris::SiraListe) {
            qobject_cast<QComboBox *>(m_kutular.value(it.key()))->setCurrentIndex(0);
        }
    }
}

void FrmOgrenci::AlanBolumYabancidilCombo()
{
    for (const QString &f : {QStringLiteral("Ogr_Sinif"), QStringLiteral("Ogr_Bolumu"),
                             QStringLiteral("Ogr_YabanciDil")}) {
        auto *c = qobject_cast<QComboBox *>(m_kutular.value(f));
        base::Result<QStringList> values = FarkliDegerler(m_db, f);
        if (!values) {
            ui::HataBildir(values.error());
            return;
        }
        const QString current = c->currentText();
        const QSignalBlocker block(c);
        c->clear();
        c->addItems(*values);
        c->setCurrentIndex(-1);
        c->setEditText(current);
    }
}

// ---- the form and the record -------------------------------------------------------------------

QVariant FrmOgrenci::kutuDegeri(const QString &alan) const
{
    const OgrenciAlani a = m_alanlar.value(alan);
    QWidget *w = m_kutular.value(alan);
    switch (a.giris) {
    case Giris::Metin: {
        const QString t = qobject_cast<QLineEdit *>(w)->text();
        if (alan == QLatin1String("Ogr_Numarasi")) {
            return base::TamSayiCoz(t).value_or(0);
        }
        return t;
    }
    case Giris::Tarih:
        return static_cast<ui::DateEdit *>(w)->date();
    case Giris::Para:
        return QVariant::fromValue(static_cast<ui::MoneyEdit *>(w)->value().value_or(base::Para()));
    case Giris::Onay: {
        const bool on = qobject_cast<QCheckBox *>(w)->isChecked();
        if (alanTuru(a.tablo, alan) == AlanTuru::Metin) {
            return on ? QStringLiteral("1") : QStringLiteral("0");
        }
        return qint64(on ? 1 : 0);
    }
    case Giris::Liste:
    case Giris::SabitListe:
        return qobject_cast<QComboBox *>(w)->currentText();
    case Giris::SiraListe:
        return qint64(qMax(0, qobject_cast<QComboBox *>(w)->currentIndex()));
    }
    return QVariant();
}

void FrmOgrenci::kutuyaYaz(const QString &alan, const QVariant &v)
{
    const OgrenciAlani a = m_alanlar.value(alan);
    QWidget *w = m_kutular.value(alan);
    if (!w) {
        return;
    }
    switch (a.giris) {
    case Giris::Metin:
        if (alan == KartNoAlani) {
            // Those without the right see only the last four digits, and cannot change it.
            auto *box = qobject_cast<QLineEdit *>(w);
            const bool kapali = users::GizliMi(v.toString());
            box->setText(m_kartNoAcik && !kapali ? v.toString()
                                                 : users::KartNoMaskele(v.toString()));
            box->setReadOnly(!m_kartNoAcik || kapali);
            // A number this computer cannot open: the operator is told why, once.
            static bool s_anahtarYokDendi = false;
            if (kapali && !s_anahtarYokDendi) {
                s_anahtarYokDendi = true;
                ui::notify(QStringLiteral("UYARI"), users::KartAnahtariYokMesaji(),
                           ui::Icon::Warning, this);
            }
            box->setMaxLength(KartNoUzunlugu);
        } else if (alan == QLatin1String("Ogr_Numarasi")) {
            qobject_cast<QLineEdit *>(w)->setText(v.isValid() ? QString::number(v.toLongLong())
                                                              : QString());
        } else {
            qobject_cast<QLineEdit *>(w)->setText(v.toString());
        }
        break;
    case Giris::Tarih:
        static_cast<ui::DateEdit *>(w)->setDate(v.toDate());
        break;
    case Giris::Para: {
        const base::Para p = v.value<base::Para>();
        if (p.isZero()) {
            static_cast<ui::MoneyEdit *>(w)->clear();
        } else {
            static_cast<ui::MoneyEdit *>(w)->setValue(p);
        }
        break;
    }
    case Giris::Onay:
        qobject_cast<QCheckBox *>(w)->setChecked(v.toString() == QLatin1String("1"));
        break;
    case Giris::Liste:
        qobject_cast<QComboBox *>(w)->setCurrentText(v.toString());
        break;
    case Giris::SabitListe: {
        auto *c = qobject_cast<QComboBox *>(w);
        const QString t = v.toString();
        int i = t.isEmpty() ? 0 : c->findText(t, Qt::MatchExactly);
        if (i < 0) {
            // A value that the list does not know stays, so that a save does not lose it.
            c->addItem(t);
            i = c->count() - 1;
        }
        c->setCurrentIndex(i);
        break;
    }
    case Giris::SiraListe: {
        auto *c = qobject_cast<QComboBox *>(w);
        const qint64 i = v.toLongLong();
        c->setCurrentIndex(i > 0 && i < c->count() ? int(i) : 0);
        break;
    }
    }
}

void FrmOgrenci::ekraniTemizle()
{
    for (auto it = m_kutular.cbegin(); it != m_kutular.cend(); ++it) {
        QWidget *w = it.value();
        if (auto *c = qobject_cast<QComboBox *>(w)) {
            c->setCurrentIndex(c->isEditable() ? -1 : 0);
            if (c->isEditable()) {
                c->setEditText(QString());
            }
        } else if (auto *b = qobject_cast<QCheckBox *>(w)) {
            b->setChecked(false);
        } else if (auto *e = qobject_cast<QLineEdit *>(w)) {
            e->clear();
        }
    }
    m_kardesSayisi->setText(QStringLiteral("0"));
    m_kardesler->clearRows();
    m_buAy->clearRows();
    m_ozel->clear();
    m_resim.clear();
    resmiGoster();
    for (QLabel *l : {m_buAyToplam, m_toplamBorc, m_toplamOdenen, m_kalan, m_islemYapan}) {
        l->clear();
    }
    m_ilkKullanici->setText(users::durum().AktifKullanici);
    m_kayitId = 0;
    m_yuklenen = Kimlik();
    m_kayit = OgrenciKaydi();
    if (auto *kart = qobject_cast<QLineEdit *>(m_kutular.value(KartNoAlani))) {
        kart->setReadOnly(!m_kartNoAcik);
        kart->setMaxLength(KartNoUzunlugu);
    }
    kayitDurumu();
    setDirty(false);
}

OgrenciKaydi FrmOgrenci::ekrandanKayit()
{
    OgrenciKaydi k = m_kayit;
    k.kayitId = m_kayitId;
    for (const QString &f : OgrenciAlanlari()) {
        // A masked card number stays as it was read (or as it was sealed, where this computer
        // cannot open it).
        if (m_kutular.contains(f)
            && (f != KartNoAlani
                || (m_kartNoAcik && !users::GizliMi(m_kayit.metin(KartNoAlani))))) {
            k.ogrenci.insert(f, kutuDegeri(f));
        }
    }
    for (const QString &f : NufusAlanlari()) {
        k.nufus.insert(f, kutuDegeri(f));
    }
    // A last sibling row without a first name is dropped; the count is then the rows.
    const int last = m_kardesler->rowCount() - 1;
    if (last >= 0 && m_kardesler->text(last, 0).trimmed().isEmpty()) {
        m_kardesler->removeRowAt(last);
    }
    k.kardesler.clear();
    for (int r = 0; r < m_kardesler->rowCount(); ++r) {
        k.kardesler.append(Kardes{m_kardesler->text(r, 0), m_kardesler->text(r, 1),
                                  m_kardesler->text(r, 2), m_kardesler->text(r, 3)});
    }
    kardesSayisiniYaz();
    k.ogrenci.insert(KardesSayisiAlani, qint64(m_kardesler->rowCount()));
    k.ozelBilgi = m_ozel->toPlainText();
    k.resim = m_resim;
    return k;
}

Kimlik FrmOgrenci::ekrandakiKimlik() const
{
    return Kimlik{base::TamSayiCoz(m_numara->text()).value_or(0), m_adi->text().trimmed(),
                  m_soyadi->text().trimmed(), m_sinif->currentText().trimmed()};
}

bool FrmOgrenci::girisleriDenetle()
{
    auto refuse = [this](QWidget *w, const QString &text) {
        for (int i = 0; i < m_tabs->count(); ++i) {
            if (m_tabs->widget(i)->isAncestorOf(w)) {
                m_tabs->setCurrentIndex(i);
            }
        }
        ui::notify(QStringLiteral("Dikkat"), text, ui::Icon::Warning, this);
        w->setFocus();
        return false;
    };
    const std::optional<qint64> numara = base::TamSayiCoz(m_numara->text());
    if (!numara || !OgrenciNoGecerli(*numara)) {
        return refuse(m_numara, QStringLiteral("\"%1\" geçerli bir öğrenci numarası değil. Öğrenci "
                                               "No olarak yalnız rakam giriniz.")
                                    .arg(m_numara->text().trimmed()));
    }
    for (auto it = m_alanlar.cbegin(); it != m_alanlar.cend(); ++it) {
        QWidget *w = m_kutular.value(it.key());
        if (it->giris == Giris::Tarih && !static_cast<ui::DateEdit *>(w)->isAcceptable()) {
            return refuse(w, QStringLiteral("%1 alanına yazılan \"%2\" geçerli bir tarih değil. "
                                            "Lütfen tarihi gg.aa.yyyy biçiminde, takvimde bulunan "
                                            "bir gün olarak giriniz.")
                                 .arg(bare(it->etiket), static_cast<ui::DateEdit *>(w)->text()));
        }
        if (it->giris == Giris::Para && !static_cast<ui::MoneyEdit *>(w)->isAcceptable()) {
            return refuse(w, QStringLiteral("%1 alanına yazılan \"%2\" geçerli bir tutar değil. "
                                            "Tutarı 1.250,50 biçiminde giriniz.")
                                 .arg(bare(it->etiket), static_cast<ui::MoneyEdit *>(w)->text()));
        }
    }
    return true;
}

void FrmOgrenci::kayitDurumu()
{
    m_cmdKaydet->setEnabled(!m_numara->text().trimmed().isEmpty()
                            && !m_adi->text().trimmed().isEmpty()
                            && !m_soyadi->text().trimmed().isEmpty());
    const bool saved = m_kayitId != 0;
    for (QPushButton *b : {m_cmdSil, m_cmdDegistir, m_cmdCariDurum, m_cmdFotograf}) {
        b->setEnabled(saved);
    }
}

// ---- showing ---------------------------------------------------------------------------------

bool FrmOgrenci::OgrenciGoster(qint64 numara, bool kayitIdIle)
{
    qint64 key = numara;
    if (!kayitIdIle) {
        base::Result<std::optional<qint64>> found = NumaradanBul(m_db, numara);
        if (!found) {
            ui::HataBildir(found.error());
            return false;
        }
        if (!found->has_value()) {
            return false;
        }
        key = **found;
    }
    base::Result<std::optional<OgrenciKaydi>> read = OgrenciOku(m_db, key);
    if (!read) {
        ui::HataBildir(read.error());
        return false;
    }
    if (!read->has_value()) {
        return false;
    }
    ekraniTemizle();
    if (!ui::passed(users::OgrenciKilitle(m_db, key))) {
        return false;
    }
    m_kartNoAcik = users::KartNoGorebilir(m_db);
    const OgrenciKaydi &k = **read;
    m_kayit = k;
    m_kayitId = key;
    for (const QString &f : OgrenciAlanlari()) {
        kutuyaYaz(f, k.ogrenci.value(f));
    }
    for (const QString &f : NufusAlanlari()) {
        kutuyaYaz(f, k.nufus.value(f));
    }
    m_kardesSayisi->setText(QString::number(k.ogrenci.value(KardesSayisiAlani).toLongLong()));
    for (const Kardes &s : k.kardesler) {
        const int r = m_kardesler->appendRow();
        m_kardesler->setValue(r, 0, s.ad);
        m_kardesler->setValue(r, 1, s.soyad);
        m_kardesler->setValue(r, 2, s.okul);
        m_kardesler->setValue(r, 3, s.sinif);
    }
    m_ozel->setPlainText(k.ozelBilgi);
    m_resim = k.resim;
    resmiGoster();
    m_ilkKullanici->setText(k.ilkKullanici);
    m_islemYapan->setText(users::durum().AktifKullanici);
    m_yuklenen = Kimlik{k.numara(), k.adi(), k.soyadi(), k.sinif()};
    Genel_Durum();
    BuAyYapilacakOdemeler();
    kayitDurumu();
    setDirty(false);
    return true;
}

void FrmOgrenci::Genel_Durum()
{
    for (QLabel *l : {m_toplamBorc, m_toplamOdenen, m_kalan}) {
        l->clear();
    }
    if (m_kayitId == 0) {
        return;
    }
    base::Result<GenelDurumSonucu> r = GenelDurum(m_db, m_kayitId);
    if (!r) {
        ui::HataBildir(r.error());
        return;
    }
    const QString &format = users::durum().ParaFormati;
    m_toplamBorc->setText(base::Bicimle(r->toplamBorc, format));
    m_toplamOdenen->setText(base::Bicimle(r->toplamOdenen, format));
    m_kalan->setText(base::Bicimle(r->kalan, format));
}

void FrmOgrenci::BuAyYapilacakOdemeler()
{
    m_buAy->clearRows();
    m_buAyToplam->clear();
    if (m_kayitId == 0) {
        return;
    }
    base::Result<BuAySonucu> r
        = students::BuAyYapilacakOdemeler(m_db, m_kayitId, users::durum().CariAy);
    if (!r) {
        ui::HataBildir(r.error());
        return;
    }
    for (const BuAySatiri &s : r->satirlar) {
        const int row = m_buAy->appendRow();
        m_buAy->setValue(row, 0, s.aidatTanim);
        if (s.tutar) {
            m_buAy->setValue(row, 1, QVariant::fromValue(*s.tutar));
        }
    }
    m_buAyToplam->setText(base::Bicimle(r->toplam, users::durum().ParaFormati));
}

// ---- saving and deleting -------------------------------------------------------------------

bool FrmOgrenci::OgrenciKaydet()
{
    if (!ui::YazmaYetkisiVar()) {
        return false;
    }
    if (!m_cmdKaydet->isEnabled() || !girisleriDenetle()) {
        return false;
    }
    OgrenciKaydi k = ekrandanKayit();
    if (m_kayitId == 0) {
        base::Result<std::optional<qint64>> twin
            = AyniOgrenciyiBul(m_db, k.numara(), k.soyadi(), k.adi());
        if (!twin) {
            ui::HataBildir(twin.error());
            return false;
        }
        if (twin->has_value()) {
            const QString question = QStringLiteral("%1 Numaralı %2 %3 kayıtlıdır.\n Bu öğrenciyi "
                                                    "yeni bir kayıt olarak kaydetmek istediğinize "
                                                    "emin misiniz?")
                                         .arg(k.numara())
                                         .arg(k.adi().trimmed(), k.soyadi().trimmed());
            if (!ui::askBeforeLosing(QStringLiteral("Dikkat"), question, this)) {
                setDirty(false);
                OgrenciGoster(**twin, true);
                return false;
            }
        }
    }
    bool borclariKapat = false;
    if (k.ayrildi() && k.ayrilmaTarihi().isValid()) {
        borclariKapat = ui::askBeforeLosing(
            QStringLiteral("Dikkat"), QStringLiteral("Öğrencinin borçları kapatılsın mı?"), this);
    }
    base::Result<KaydetSonucu> saved = students::OgrenciKaydet(m_db, k, borclariKapat);
    if (!saved) {
        ui::HataBildir(saved.error());
        return false;
    }
    m_kayitId = saved->kayitId;
    k.kayitId = m_kayitId;
    if (saved->yeni) {
        k.ilkKullanici = users::durum().AktifKullanici;
        if (ui::passed(users::OgrenciKilitle(m_db, m_kayitId))) {
            m_islemYapan->setText(users::durum().AktifKullanici);
        }
    }
    m_kayit = k;
    m_ilkKullanici->setText(k.ilkKullanici);
    m_yuklenen = Kimlik{k.numara(), k.adi().trimmed(), k.soyadi().trimmed(), k.sinif().trimmed()};
    AlanBolumYabancidilCombo();
    kayitDurumu();
    setDirty(false);
    bildir(m_kayitId, borclariKapat);
    Genel_Durum();
    BuAyYapilacakOdemeler();
    if (k.ayrildi() && !k.ayrilmaTarihi().isValid()) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Öğrenci -ayrıldı- işaretli olmasına rağmen ayrılma tarihi "
                                  "girilmemiş.\nBu sebeple borçları silinmeyecek!"),
                   ui::Icon::Warning, this);
    }
    return true;
}

void FrmOgrenci::OgrenciSil()
{
    if (!ui::YazmaYetkisiVar() || m_kayitId == 0) {
        return;
    }
    const Kimlik shown = ekrandakiKimlik();
    const QString question = QStringLiteral("%1 numaralı %2 %3%4 bilgilerini silmek istiyor "
                                            "musunuz?")
                                 .arg(m_numara->text().trimmed(), shown.adi, shown.soyadi,
                                      base::EkGetir(shown.soyadi));
    if (!ui::askBeforeLosing(QStringLiteral("Uyarı"), question, this)) {
        return;
    }
    base::Result<qint64> deleted
        = students::OgrenciSil(m_db, m_kayitId, shown.numara, shown.adi, shown.soyadi);
    if (!deleted) {
        ui::HataBildir(deleted.error());
        return;
    }
    if (*deleted == 0) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Bu numara, ad ve soyadla kayıtlı öğrenci bulunamadı; hiçbir "
                                  "şey silinmedi."),
                   ui::Icon::Warning, this);
        return;
    }
    bildir(*deleted, true);
    ekraniTemizle();
    AlanBolumYabancidilCombo();
}

void FrmOgrenci::OgrenciBilgiDegistir()
{
    if (m_kayitId == 0 || !askToSaveChanges()) {
        return;
    }
    FrmBilgiDegistir panel(m_db, m_kayitId, m_yuklenen, this);
    panel.exec();
    if (panel.degisti()) {
        const qint64 key = m_kayitId;
        bildir(key, false);
        OgrenciGoster(key, true);
        AlanBolumYabancidilCombo();
    }
}

// ---- moving ----------------------------------------------------------------------------------

void FrmOgrenci::OgrenciAra(Yon yon)
{
    if (!askToSaveChanges()) {
        return;
    }
    const auto anahtar = static_cast<AramaAnahtari>(qMax(0, m_arama->currentIndex()));
    base::Result<std::optional<qint64>> found
        = students::OgrenciAra(m_db, anahtar, yon, ekrandakiKimlik(), m_kayitId);
    if (!found) {
        ui::HataBildir(found.error());
        return;
    }
    if (found->has_value()) {
        OgrenciGoster(**found, true);
    }
}

void FrmOgrenci::listedenSec()
{
    const std::optional<qint64> key = OgrenciSec(m_db, this);
    if (key && askToSaveChanges()) {
        OgrenciGoster(*key, true);
    }
}

void FrmOgrenci::bildir(qint64 kayitId, bool aidat)
{
    m_bildiriyor = true;
    emit ui::Bildirimler::instance().ogrenciDegisti(kayitId);
    if (aidat) {
        emit ui::Bildirimler::instance().aidatDegisti(kayitId);
    }
    m_bildiriyor = false;
}

void FrmOgrenci::baskasiDegistirdi(qint64 kayitId)
{
    // Another screen changed the shown student (a class move): he is read again, unless the
    // operator is in the middle of changing him here.
    if (m_bildiriyor || kayitId == 0 || kayitId != m_kayitId || isDirty()) {
        return;
    }
    OgrenciGoster(kayitId, true);
}

void FrmOgrenci::tusaBas(int key)
{
    switch (key) {
    case Qt::Key_F2:
        gecmisYilAidatlari();
        break;
    case Qt::Key_F4:
        cariDurum();
        break;
    case Qt::Key_F10:
        listedenSec();
        break;
    case Qt::Key_PageUp:
        OgrenciAra(Yon::Onceki);
        break;
    case Qt::Key_PageDown:
        OgrenciAra(Yon::Sonraki);
        break;
    case Qt::Key_Home:
        OgrenciAra(Yon::Ilk);
        break;
    case Qt::Key_End:
        OgrenciAra(Yon::Son);
        break;
    default:
        break;
    }
}

void FrmOgrenci::cariDurum()
{
    if (m_kayitId == 0) {
        return;
    }
    users::CalismaDurumu &d = users::durum();
    const bool okuma = d.HakOkuma;
    const bool yazma = d.HakYazma;
    auto restore = [&d, okuma, yazma] {
        d.HakOkuma = okuma;
        d.HakYazma = yazma;
    };
    if (!ui::HakKontrol(m_db, QStringLiteral("popBankayaOdeme"))) {
        restore();
        ui::notify(QStringLiteral("Uyarı !"), users::YetkiYokMesaji, ui::Icon::Warning, this);
        return;
    }
    // The fee account opens on the shown student and class, in front, with the rights just
    // tested; the student screen's own come back when it is in front again. When nothing
    // opened, they come back at once.
    if (!ui::EkranAc(QStringLiteral("FrmOgrenciAidat"), QStringLiteral("btnCariDurum"),
                     {{QStringLiteral("ogrKayitId"), m_kayitId},
                      {QStringLiteral("ogrSinif"), m_sinif->currentText()}})) {
        restore();
    }
}

void FrmOgrenci::gecmisYilAidatlari()
{
    const auto *tc = qobject_cast<QLineEdit *>(m_kutular.value(QStringLiteral("Ogr_MernisNo")));
    if (tc->text().trimmed().isEmpty()) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral(" Öğrenci T.C. Kimlik No bilgisi olmadığı için geçmiş yıl aidat "
                                  "bilgilerine ulaşılamadı."),
                   ui::Icon::Warning, this);
        return;
    }
    ui::notReady(QStringLiteral("Öğrenci Geçmiş Yıl Aidatları"), this);
}

// ---- siblings and the photograph -------------------------------------------------------------

void FrmOgrenci::kardesSayisiniYaz()
{
    m_kardesSayisi->setText(QString::number(m_kardesler->rowCount()));
}

void FrmOgrenci::kardesEkle()
{
    const int rows = m_kardesler->rowCount();
    if (rows > 0 && m_kardesler->text(rows - 1, 0).trimmed().isEmpty()) {
        m_kardesler->setCurrentCell(rows - 1, 0);
        m_kardesler->setFocus();
        return;
    }
    const int row = m_kardesler->appendRow();
    kardesSayisiniYaz();
    m_kardesler->setCurrentCell(row, 0);
    m_kardesler->setFocus();
}

void FrmOgrenci::kardesSil()
{
    const int row = m_kardesler->currentRowIndex();
    if (row < 0) {
        return;
    }
    m_kardesler->removeRowAt(row);
    kardesSayisiniYaz();
    setDirty(true);
}

void FrmOgrenci::resmiGoster()
{
    QPixmap picture;
    if (!m_resim.isEmpty() && picture.loadFromData(m_resim)) {
        m_foto->setPixmap(picture.scaled(m_foto->size() - QSize(4, 4), Qt::KeepAspectRatio,
                                         Qt::SmoothTransformation));
        return;
    }
    m_foto->setPixmap(QPixmap());
    m_foto->setText(QStringLiteral("Fotoğraf\nYok"));
}

void FrmOgrenci::resimSec(const QString &dosya)
{
    const QByteArray picture = FotografHazirla(dosya);
    if (picture.isEmpty()) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("\"%1\" bir resim dosyası olarak okunamadı.").arg(dosya),
                   ui::Icon::Warning, this);
        return;
    }
    m_resim = picture;
    resmiGoster();
    setDirty(true);
}

void FrmOgrenci::fotografAl()
{
    if (!m_cmdFotograf->isEnabled()) {
        return;
    }
    QFileDialog dialog(this, QStringLiteral("Öğrenci Fotoğrafı"));
    dialog.setObjectName(QStringLiteral("dlgFotograf"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilter(QStringLiteral("Resim Dosyaları (*.bmp *.jpg *.jpeg *.png)"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    resimSec(dialog.selectedFiles().constFirst());
}

// ---- events ----------------------------------------------------------------------------------

bool FrmOgrenci::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_foto && event->type() == QEvent::MouseButtonPress) {
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::LeftButton) {
            fotografAl();
            return true;
        }
        if (mouse->button() == Qt::RightButton && !m_resim.isEmpty()) {
            QMenu menu(this);
            menu.addAction(findChild<QAction *>(QStringLiteral("mnuResimSil")));
            menu.exec(mouse->globalPosition().toPoint());
            return true;
        }
        return false;
    }
    // The keys of this screen's own controls only: every screen also sees the whole
    // program's keys, and F10 or PgDn in another screen are that screen's.
    auto *own = qobject_cast<QWidget *>(watched);
    if (event->type() != QEvent::KeyPress || !own || !(own == this || isAncestorOf(own))) {
        return ui::Screen::eventFilter(watched, event);
    }
    auto *key = static_cast<QKeyEvent *>(event);
    if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) {
        return ui::Screen::eventFilter(watched, event);
    }
    const int k = key->key();
    if (watched == m_numara && (k == Qt::Key_Return || k == Qt::Key_Enter || k == Qt::Key_Down)) {
        const qint64 numara = base::TamSayiCoz(m_numara->text()).value_or(0);
        if (numara <= 0) {
            return false; // Enter moves on
        }
        if (isDirty() && !askToSaveChanges()) {
            return true;
        }
        OgrenciGoster(numara, false);
        m_adi->setFocus();
        return true;
    }
    const bool moving
        = k == Qt::Key_PageUp || k == Qt::Key_PageDown || k == Qt::Key_Home || k == Qt::Key_End;
    if (!moving && k != Qt::Key_F2 && k != Qt::Key_F4 && k != Qt::Key_F10) {
        return false;
    }
    // The lists keep their own keys (F2 opens a cell, as in every list of the program), and so
    // do the notes and an open choice list for moving.
    auto *w = qobject_cast<QWidget *>(watched);
    for (QWidget *p = w; p && p != this; p = p->parentWidget()) {
        if (qobject_cast<QAbstractItemView *>(p) && (moving || k == Qt::Key_F2)) {
            return false;
        }
        if (qobject_cast<QPlainTextEdit *>(p) && moving) {
            return false;
        }
    }
    if (auto *c = qobject_cast<QComboBox *>(w); c && moving && c->view()->isVisible()) {
        return false;
    }
    tusaBas(k);
    return true;
}

void FrmOgrenci::closeEvent(QCloseEvent *event)
{
    ui::Screen::closeEvent(event);
    if (!event->isAccepted()) {
        return;
    }
    if (base::Status s = users::OgrenciKilitBirak(m_db, false); !s) {
        ui::HataBildir(s.error());
    }
}

} // namespace students
