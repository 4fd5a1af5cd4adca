#include "shell/frm_okul_bilgileri.h"

#include "base/turkish_text.h"
#include "shell/working_month.h"
#include "store/database.h"
#include "store/schema.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "users/rights.h"
#include "users/session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace shell {

using namespace Qt::StringLiterals;

namespace {

// The size of a field of the school's row.
int sabit(const QString &field)
{
    return store::schema::textSize(store::Store::Year, u"Sabit"_s, field);
}

QString flag(const QCheckBox *c)
{
    return c->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

// A box of the screen: what it is, where it stands (its page or frame, and the row there) and
// the member that keeps it.
struct FrmOkulBilgileri::BoxRow
{
    ui::Box box;
    Place place;
    int row;
    ui::BoxMember<FrmOkulBilgileri> member;
};

// The boxes of each place; Tab goes through a place by its rows. The school's texts are cut to
// their fields.
const QList<FrmOkulBilgileri::BoxRow> &FrmOkulBilgileri::boxTable()
{
    using K = ui::BoxKind;
    using F = FrmOkulBilgileri;
    // clang-format off
    static const QList<BoxRow> rows = {
        {{u"txtOkulAdi"_s, u"Okul Adı :"_s, K::Text, sabit(u"OkulAdi"_s)}, Place::School, 0,
         &F::m_okulAdi},
        {{u"txtOkulIlAdi"_s, u"İl :"_s, K::Text, sabit(u"OkulIlAdi"_s)}, Place::School, 1,
         &F::m_il},
        {{u"txtOkulIlceAdi"_s, u"İlçe :"_s, K::Text, sabit(u"OkulIlceAdi"_s)}, Place::School, 2,
         &F::m_ilce},
        {{u"txtTelefon"_s, u"Telefon :"_s, K::Text, sabit(u"Telefon"_s)}, Place::School, 3,
         &F::m_telefon},
        {{u"txtBanka"_s, u"Banka :"_s, K::Text, sabit(u"Banka"_s)}, Place::School, 5, &F::m_banka},
        {{u"txtResmiListeBaslik"_s, u"Resmi Liste Başlığı :"_s, K::Text,
          sabit(u"ResmiListeBaslik"_s)},
         Place::School, 6, &F::m_resmiBaslik},
        {{u"txtAdres"_s, u"Adres :"_s, K::Memo}, Place::School, 4, &F::m_adres},
        {{u"txtMersisNo"_s, u"Mersis No :"_s, K::Text, sabit(u"MersisNo"_s)}, Place::School, 7,
         &F::m_mersis},
        {{u"txtTicaretSicilNo"_s, u"Ticaret Sicil No :"_s, K::Text, sabit(u"TicaretSicilNo"_s)},
         Place::School, 8, &F::m_ticaretSicil},
        {{u"txtVergiSicilNo"_s, u"Vergi Sicil No :"_s, K::Text, sabit(u"VergiSicilNo"_s)},
         Place::School, 10, &F::m_vergiSicil},
        {{u"txtVergiDairesiAdi"_s, u"Vergi Dairesi :"_s, K::Text, sabit(u"VergiDairesiAdi"_s)},
         Place::School, 9, &F::m_vergiDairesi},

        {{u"CmbOgretimYili"_s, u"Öğretim Yılı :"_s, K::Typed, 9}, Place::Year, 0,
         &F::m_ogretimYili},
        {{u"CmbBasAy"_s, u"Başlangıç Ayı :"_s, K::Choice}, Place::Year, 1, &F::m_basAy},
        {{u"CmbCariAy"_s, u"Cari Ay :"_s, K::Choice}, Place::Year, 2, &F::m_cariAy},
        {{u"txtDonemBasTarihi"_s, u"Dönem Başlangıç Tarihi :"_s, K::Date}, Place::Year, 3,
         &F::m_donemBas},
        {{u"txtDonemBitTarihi"_s, u"Dönem Bitiş Tarihi :"_s, K::Date}, Place::Year, 4,
         &F::m_donemBit},
        {{u"CmbYuvarlama"_s, u"Taksit Yuvarlama :"_s, K::Typed, 10,
          {u"0,01"_s, u"0,50"_s, u"1"_s, u"5"_s, u"10"_s, u"50"_s, u"100"_s}, {}, 0,
          u"Taksit tutarları bu tutarın katlarına yuvarlanır; artan kısım ilk taksite eklenir."_s},
         Place::Year, 5, &F::m_yuvarlama},
        {{u"OpParaBirimi0"_s, u"TL"_s, K::Option}, Place::Year, 6, &F::m_paraTL},
        {{u"OpParaBirimi1"_s, u"YTL"_s, K::Option}, Place::Year, 6, &F::m_paraYTL},
        {{u"txtSonSenetNo"_s, u"Son Senet No :"_s, K::Number, 9, {}, {}, 120}, Place::Year, 7,
         &F::m_sonSenet},
        {{u"txtSonFaturaNo"_s, u"Son Fatura No :"_s, K::Number, 9, {}, {}, 120}, Place::Year, 8,
         &F::m_sonFatura},
        {{u"txtSonFisNo"_s, u"Son Fiş No :"_s, K::Number, 9, {}, {}, 120}, Place::Year, 9,
         &F::m_sonFis},

        {{u"chkOgrAOtoDeg"_s, u"Aidat tanımı değişince öğrencilerin aidatları da değişsin"_s,
          K::Check},
         Place::Options, 0, &F::m_ogrAOtoDeg},
        {{u"chkTaksitKilitle"_s, u"Taksitler kilitlensin"_s, K::Check}, Place::Options, 1,
         &F::m_taksitKilitle},
        {{u"chkFisNoKilitle"_s, u"Fiş numarası kilitlensin"_s, K::Check}, Place::Options, 2,
         &F::m_fisNoKilitle},
        {{u"chkTaksitFatura"_s, u"Faturalar taksit bazında kesilsin"_s, K::Check}, Place::Options,
         3, &F::m_taksitFatura},
        {{u"chkOgrKayitSilinenRapordaGoster"_s,
          u"Kaydı silinen öğrenciler raporlarda gösterilsin"_s, K::Check},
         Place::Options, 4, &F::m_silinenRapordaGoster},

        {{u"chkOkKilit"_s,
          u"Cari durum ekranı salt okunur açılsın (değişiklikler yalnız fişle yapılır)"_s,
          K::Check},
         Place::Office, 0, &F::m_okKilit},
        {{u"chkFisKilit"_s, u"Ödeme fişinin numarası elle değiştirilemesin"_s, K::Check},
         Place::Office, 1, &F::m_fisKilit},
        {{u"chkKasaAktar"_s, u"Ödemeler kasaya aktarılsın"_s, K::Check}, Place::Till, 0,
         &F::m_kasaAktar},
        {{u"txtKasaKod"_s, u"Kasa İşlem Kodu :"_s, K::Text, 3, {}, {}, 80}, Place::Till, 1,
         &F::m_kasaKod},
        {{u"chkKasaSor"_s, u"Her aktarmadan önce sorulsun"_s, K::Check}, Place::Till, 2,
         &F::m_kasaSor},
    };
    // clang-format on
    return rows;
}

QList<std::pair<ui::Box, QWidget *>> FrmOkulBilgileri::makeBoxes(Place place, QWidget *parent)
{
    // Made in the order of their rows, so that Tab goes down the place as it is seen.
    QList<const BoxRow *> rows;
    for (const BoxRow &r : boxTable()) {
        if (r.place == place) {
            rows.append(&r);
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const BoxRow *a, const BoxRow *b) { return a->row < b->row; });
    QList<std::pair<ui::Box, QWidget *>> boxes;
    for (const BoxRow *r : rows) {
        QWidget *box = ui::makeBox(r->box, parent);
        ui::keepBox(*this, r->member, box);
        boxes.append({r->box, box});
    }
    return boxes;
}

FrmOkulBilgileri::FrmOkulBilgileri(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("FrmOkulBilgileri"), QStringLiteral("Okul Bilgileri"), parent)
    , m_db(db)
{
    auto *tabs = new QTabWidget(this);

    // ---- the school
    auto *okul = new QWidget(tabs);
    const QList<std::pair<ui::Box, QWidget *>> okulKutulari = makeBoxes(Place::School, okul);
    m_adres->setFixedHeight(m_adres->fontMetrics().lineSpacing() * 3 + 14);
    ui::addFormRows(new QFormLayout(okul), okulKutulari);
    tabs->addTab(okul, QStringLiteral("&Okul"));

    // ---- the year and its options
    auto *donem = new QWidget(tabs);
    QList<std::pair<ui::Box, QWidget *>> donemKutulari = makeBoxes(Place::Year, donem);
    const int thisYear = QDate::currentDate().year();
    for (int y = thisYear - 6; y <= thisYear + 3; ++y) {
        m_ogretimYili->addItem(QStringLiteral("%1-%2").arg(y).arg(y + 1));
    }
    donemKutulari.removeIf([](const auto &b) { return b.first.kind == ui::BoxKind::Option; });
    auto *df = new QFormLayout;
    ui::addFormRows(df, donemKutulari);
    // The two currencies share the row under the rounding.
    auto *para = new QHBoxLayout;
    para->addWidget(m_paraTL);
    para->addWidget(m_paraYTL);
    para->addStretch();
    int yuvarlamaSatiri = 0;
    df->getWidgetPosition(m_yuvarlama, &yuvarlamaSatiri, nullptr);
    df->insertRow(yuvarlamaSatiri + 1, QStringLiteral("Para Birimi :"), para);
    auto *secenek = new QGroupBox(QStringLiteral("Seçenekler"), donem);
    const QList<std::pair<ui::Box, QWidget *>> secenekler = makeBoxes(Place::Options, secenek);
    m_taksitFaturaUyari = new QLabel(
        QStringLiteral(
            " UYARI : Bu şeçenek işaretlendiğinde fatura ve listelerde uyumsuzluklar olabilir"),
        secenek);
    m_taksitFaturaUyari->setObjectName(QStringLiteral("lblTaksitFaturaUyari"));
    m_taksitFaturaUyari->setStyleSheet(QStringLiteral("color: #b00020;"));
    m_taksitFaturaUyari->setWordWrap(true);
    auto *sv = new QVBoxLayout(secenek);
    for (const auto &[box, widget] : secenekler) {
        sv->addWidget(widget);
    }
    // The warning stands under the choice it warns of.
    sv->insertWidget(sv->indexOf(m_taksitFatura) + 1, m_taksitFaturaUyari);
    sv->addStretch();
    auto *dl = new QHBoxLayout(donem);
    dl->addLayout(df, 3);
    dl->addWidget(secenek, 2);
    tabs->addTab(donem, QStringLiteral("&Dönem ve Seçenekler"));

    // ---- education support
    auto *destek = new QWidget(tabs);
    m_destekTutari = new ui::MoneyEdit(destek);
    m_destekTutari->setObjectName(QStringLiteral("txtEgitimDestekTutari"));
    m_destekTutari->setMaximumWidth(160);
    auto *eg = new QGridLayout(destek);
    eg->addWidget(new QLabel(QStringLiteral("Eğitim Desteği Tutarı :"), destek), 0, 0);
    eg->addWidget(m_destekTutari, 0, 1);
    eg->addWidget(new QLabel(QStringLiteral("Ödeme Ayı"), destek), 1, 1);
    eg->addWidget(new QLabel(QStringLiteral("Taksit Tutarı"), destek), 1, 2);
    for (int i = 0; i < 4; ++i) {
        m_destekAy[i] = new QComboBox(destek);
        m_destekAy[i]->setObjectName(QStringLiteral("CmbEgitimDestekAy%1").arg(i + 1));
        m_destekAy[i]->addItem(QString(), 0);
        for (int m = 1; m <= 12; ++m)
            m_destekAy[i]->addItem(base::AyAdi(m), m);
        m_destekTaksit[i] = new ui::MoneyEdit(destek);
        m_destekTaksit[i]->setObjectName(QStringLiteral("txtEgitimDestekTaksit%1").arg(i + 1));
        m_destekTaksit[i]->setMaximumWidth(160);
        eg->addWidget(new QLabel(QStringLiteral("%1. Taksit :").arg(i + 1), destek), i + 2, 0);
        eg->addWidget(m_destekAy[i], i + 2, 1);
        eg->addWidget(m_destekTaksit[i], i + 2, 2);
    }
    eg->setColumnStretch(3, 1);
    eg->setRowStretch(6, 1);
    tabs->addTab(destek, QStringLiteral("&Eğitim Desteği"));

    // ---- the office switches
    auto *ofis = new QWidget(tabs);
    const QList<std::pair<ui::Box, QWidget *>> ofisKutulari = makeBoxes(Place::Office, ofis);
    auto *kasa = new QGroupBox(QStringLiteral("Ödemelerin Kasaya Aktarılması"), ofis);
    const QList<std::pair<ui::Box, QWidget *>> kasaKutulari = makeBoxes(Place::Till, kasa);
    ui::addFormRows(new QFormLayout(kasa), kasaKutulari);
    auto *ol = new QVBoxLayout(ofis);
    ol->addWidget(
        new QLabel(QStringLiteral("Bu ayarlar bütün iş istasyonlarında geçerlidir."), ofis));
    for (const auto &[box, widget] : ofisKutulari) {
        ol->addWidget(widget);
    }
    ol->addWidget(kasa);
    ol->addStretch();
    tabs->addTab(ofis, QStringLiteral("O&fis Ayarları"));

    // ---- commands
    auto *sil = ui::button(QStringLiteral("cmdSil"), QStringLiteral("&Sil"), this);
    auto *kaydet = ui::button(QStringLiteral("cmdKaydet"), QStringLiteral("K&aydet"), this);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), this);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(sil);
    buttons->addStretch();
    buttons->addWidget(kaydet);
    buttons->addWidget(cikis);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addLayout(buttons);

    connect(kaydet, &QPushButton::clicked, this, [this] { OkulbilgisiKaydet(); });
    connect(sil, &QPushButton::clicked, this, &FrmOkulBilgileri::OkulbilgisiSil);
    connect(cikis, &QPushButton::clicked, this, &QWidget::close);
    connect(m_taksitFatura, &QCheckBox::toggled, m_taksitFaturaUyari, &QWidget::setVisible);
    connect(m_ogretimYili, &QComboBox::currentTextChanged, this, &FrmOkulBilgileri::yearChosen);

    ui::moveWithEnter(this);
    OkulbilgisiGetir();
    watchForChanges(this);
    resize(760, 480);
}

void FrmOkulBilgileri::yearChosen(const QString &year)
{
    if (!QRegularExpression(QStringLiteral("^\\d{4}-\\d{4}$")).match(year).hasMatch())
        return;
    const QVariant bas = m_basAy->currentData();
    const QVariant cari = m_cariAy->currentData();
    fillMonths(year);
    selectMonth(m_cariAy, QString::number(cari.toInt()));
    if (m_row.kayitVar) {
        selectMonth(m_basAy, QString::number(bas.toInt()));
        return;
    }
    // A school not saved yet: the year's start and period follow the chosen school year.
    const int first = year.left(4).toInt();
    selectMonth(m_basAy, QString::number(first * 100 + 9));
    m_donemBas->setDate(QDate(first, 9, 1));
    m_donemBit->setDate(QDate(first + 1, 6, 30));
}

void FrmOkulBilgileri::fillMonths(const QString &ogretimYili)
{
    for (QComboBox *c : {m_basAy, m_cariAy}) {
        c->clear();
        c->addItem(QString(), 0);
        for (const AyGirdisi &a : CariAyListesi(ogretimYili))
            c->addItem(a.metin, a.veri);
    }
}

void FrmOkulBilgileri::selectMonth(QComboBox *combo, const QString &yyyymm)
{
    const int index = combo->findData(yyyymm.toInt());
    combo->setCurrentIndex(index < 0 ? 0 : index);
}

void FrmOkulBilgileri::OkulbilgisiGetir()
{
    base::Result<maintenance::OkulBilgisi> row = maintenance::OkulbilgisiGetir(m_db);
    if (!row) {
        ui::HataBildir(row.error());
        return;
    }
    m_row = row->kayitVar ? *row
                          : maintenance::YeniOkulBilgisi(QDate::currentDate(),
                                                         users::durum().AktifCalismaAdi);
    const maintenance::OkulBilgisi &o = m_row;
    m_okulAdi->setText(o.OkulAdi);
    m_il->setText(o.OkulIlAdi);
    m_ilce->setText(o.OkulIlceAdi);
    m_telefon->setText(o.Telefon);
    m_banka->setText(o.Banka);
    m_resmiBaslik->setText(o.ResmiListeBaslik);
    m_adres->setPlainText(o.Adres);
    m_mersis->setText(o.MersisNo);
    m_ticaretSicil->setText(o.TicaretSicilNo);
    m_vergiSicil->setText(o.VergiSicilNo);
    m_vergiDairesi->setText(o.VergiDairesiAdi);
    const QString year
        = o.OgretimYili.isEmpty()
              ? VarsayilanOgretimYili(QDate::currentDate(), users::durum().AktifCalismaAdi)
              : o.OgretimYili;
    m_ogretimYili->setCurrentText(year);
    fillMonths(year);
    selectMonth(m_basAy, o.BaslangicAy);
    selectMonth(m_cariAy, o.CariAy);
    m_donemBas->setDate(o.DonemBasTarihi.date());
    m_donemBit->setDate(o.DonemBitTarihi.date());
    m_yuvarlama->setCurrentText(base::Bicimle(o.TaksitYuvarlama, QStringLiteral("#,##0.##")));
    (o.ParaTuru == 0 ? m_paraTL : m_paraYTL)->setChecked(true);
    m_sonSenet->setText(QString::number(o.SonSenetNo));
    m_sonFatura->setText(QString::number(o.SonFaturaNo));
    m_sonFis->setText(QString::number(o.SonFisNo));
    m_ogrAOtoDeg->setChecked(o.OgrAOtoDeg == QLatin1String("1"));
    m_taksitKilitle->setChecked(o.TaksitKilitle == 1);
    m_fisNoKilitle->setChecked(o.FisNoKilitle == QLatin1String("1"));
    m_taksitFatura->setChecked(o.TaksitFatura == QLatin1String("1"));
    m_taksitFaturaUyari->setVisible(m_taksitFatura->isChecked());
    m_silinenRapordaGoster->setChecked(o.OgrKayitSilinenRapordaGoster == QLatin1String("1"));
    m_destekTutari->setValue(o.EgitimDestekTutari);
    for (int i = 0; i < 4; ++i) {
        const int index = m_destekAy[i]->findData(o.EgitimDestekAy[i]);
        m_destekAy[i]->setCurrentIndex(index < 0 ? 0 : index);
        m_destekTaksit[i]->setValue(o.EgitimDestekTaksit[i]);
    }
    const maintenance::OfisAyarlari ofis = maintenance::OfisAyarlariOku(m_db);
    m_okKilit->setChecked(ofis.okKilit);
    m_fisKilit->setChecked(ofis.fisKilit);
    m_kasaAktar->setChecked(ofis.kasaAktar >= 1);
    m_kasaKod->setText(ofis.kasaKod);
    m_kasaSor->setChecked(ofis.kasaSor == 1);
    setDirty(false);
}

void FrmOkulBilgileri::refuse(const QString &text, QWidget *focus)
{
    ui::notify(QStringLiteral("UYARI"), text, ui::Icon::Warning, this);
    if (!focus)
        return;
    // Bring forward the tab page that holds the box: a page's parent is the tab widget's stack.
    for (QWidget *page = focus; page && page->parentWidget(); page = page->parentWidget()) {
        if (auto *tabs = qobject_cast<QTabWidget *>(page->parentWidget()->parentWidget())) {
            tabs->setCurrentWidget(page);
            break;
        }
    }
    focus->setFocus();
}

bool FrmOkulBilgileri::formToRow(maintenance::OkulBilgisi &o)
{
    if (m_okulAdi->text().trimmed().isEmpty()) {
        refuse(QStringLiteral("Okul adını girmeniz gerekmektedir."), m_okulAdi);
        return false;
    }
    const QString year = m_ogretimYili->currentText().trimmed();
    const QRegularExpressionMatch m
        = QRegularExpression(QStringLiteral("^(\\d{4})-(\\d{4})$")).match(year);
    if (!m.hasMatch() || m.captured(2).toInt() != m.captured(1).toInt() + 1) {
        refuse(QStringLiteral(
                   "Öğretim yılını \"2025-2026\" biçiminde, birbirini izleyen iki yıl olarak "
                   "giriniz."),
               m_ogretimYili);
        return false;
    }
    for (ui::DateEdit *d : {m_donemBas, m_donemBit}) {
        if (!d->isAcceptable()) {
            refuse(QStringLiteral("\"%1\" geçerli bir tarih değil.").arg(d->text()), d);
            return false;
        }
    }
    if (m_donemBas->date().isValid() && m_donemBit->date().isValid()
        && m_donemBit->date() < m_donemBas->date()) {
        refuse(QStringLiteral("Dönem bitiş tarihi başlangıç tarihinden önce olamaz."), m_donemBit);
        return false;
    }
    const std::optional<base::Para> yuvarlama = base::ParaCoz(m_yuvarlama->currentText());
    if (!yuvarlama || *yuvarlama <= base::Para()) {
        refuse(QStringLiteral(
                   "Taksit yuvarlama tutarı sıfırdan büyük bir tutar olmalıdır (örnek: 1 ya "
                   "da 0,50)."),
               m_yuvarlama);
        return false;
    }
    qint64 numbers[3] = {};
    const struct
    {
        QLineEdit *box;
        const char *name;
    } counters[] = {{m_sonSenet, "Son senet"}, {m_sonFatura, "Son fatura"}, {m_sonFis, "Son fiş"}};
    for (int i = 0; i < 3; ++i) {
        const QString text = counters[i].box->text().trimmed();
        const std::optional<qint64> n
            = text.isEmpty() ? std::optional<qint64>(0) : base::TamSayiCoz(text);
        if (!n || *n < 0 || *n > 2147483647) {
            refuse(QStringLiteral("%1 numarası sıfır ya da pozitif bir tam sayı olmalıdır.")
                       .arg(QString::fromUtf8(counters[i].name)),
                   counters[i].box);
            return false;
        }
        numbers[i] = *n;
    }
    QList<ui::MoneyEdit *> amounts = {m_destekTutari};
    for (ui::MoneyEdit *e : m_destekTaksit)
        amounts << e;
    for (ui::MoneyEdit *e : amounts) {
        if (!e->isAcceptable() || e->value()->isNegative()) {
            refuse(QStringLiteral("\"%1\" geçerli bir tutar değil.").arg(e->text()), e);
            return false;
        }
    }
    // The address is a free text: one longer than its field is refused, never cut unsaid.
    const store::schema::Field *adresAlani
        = store::schema::field(store::Store::Year, u"Sabit"_s, u"Adres"_s);
    const int adresBoyu = adresAlani ? adresAlani->size : 150;
    if (m_adres->toPlainText().trimmed().size() > adresBoyu) {
        refuse(QStringLiteral("Adres en fazla %1 karakter olabilir; şu anda %2 karakter.")
                   .arg(adresBoyu)
                   .arg(m_adres->toPlainText().trimmed().size()),
               m_adres);
        return false;
    }
    if (m_kasaAktar->isChecked() && m_kasaKod->text().trimmed().isEmpty()) {
        refuse(QStringLiteral("Ödemelerin aktarılacağı kasa işlem kodunu giriniz."), m_kasaKod);
        return false;
    }

    o.OkulAdi = m_okulAdi->text().trimmed();
    o.OkulIlAdi = m_il->text().trimmed();
    o.OkulIlceAdi = m_ilce->text().trimmed();
    o.Telefon = m_telefon->text().trimmed();
    o.Banka = m_banka->text().trimmed();
    o.ResmiListeBaslik = m_resmiBaslik->text().trimmed();
    o.Adres = m_adres->toPlainText().trimmed();
    o.MersisNo = m_mersis->text().trimmed();
    o.TicaretSicilNo = m_ticaretSicil->text().trimmed();
    o.VergiSicilNo = m_vergiSicil->text().trimmed();
    o.VergiDairesiAdi = m_vergiDairesi->text().trimmed();
    o.OgretimYili = year;
    o.BaslangicAy = m_basAy->currentData().toInt() ? QString::number(m_basAy->currentData().toInt())
                                                   : QString();
    o.CariAy = m_cariAy->currentData().toInt() ? QString::number(m_cariAy->currentData().toInt())
                                               : QString();
    o.DonemBasTarihi = m_donemBas->date().isValid() ? QDateTime(m_donemBas->date(), QTime(0, 0))
                                                    : base::SifirTarih;
    o.DonemBitTarihi = m_donemBit->date().isValid() ? QDateTime(m_donemBit->date(), QTime(0, 0))
                                                    : base::SifirTarih;
    o.TaksitYuvarlama = *yuvarlama;
    o.ParaTuru = m_paraTL->isChecked() ? 0 : 1;
    o.ParaBirimi = m_paraTL->isChecked() ? QStringLiteral("TL") : QStringLiteral("YTL");
    o.SonSenetNo = numbers[0];
    o.SonFaturaNo = numbers[1];
    o.SonFisNo = numbers[2];
    o.OgrAOtoDeg = flag(m_ogrAOtoDeg);
    o.TaksitKilitle = m_taksitKilitle->isChecked() ? 1 : 0;
    o.FisNoKilitle = flag(m_fisNoKilitle);
    o.TaksitFatura = flag(m_taksitFatura);
    o.OgrKayitSilinenRapordaGoster = flag(m_silinenRapordaGoster);
    o.EgitimDestekTutari = *m_destekTutari->value();
    for (int i = 0; i < 4; ++i) {
        o.EgitimDestekAy[i] = m_destekAy[i]->currentData().toInt();
        o.EgitimDestekTaksit[i] = *m_destekTaksit[i]->value();
    }
    return true;
}

bool FrmOkulBilgileri::OkulbilgisiKaydet()
{
    if (!ui::YazmaYetkisiVar())
        return false;
    maintenance::OkulBilgisi row = m_row;
    if (!formToRow(row))
        return false;
    maintenance::OfisAyarlari ofis;
    ofis.okKilit = m_okKilit->isChecked();
    ofis.fisKilit = m_fisKilit->isChecked();
    ofis.kasaAyarVar = true;
    ofis.kasaAktar = m_kasaAktar->isChecked() ? 1 : 0;
    ofis.kasaKod = m_kasaKod->text().trimmed();
    ofis.kasaSor = m_kasaSor->isChecked() ? 1 : 0;
    if (base::Status s = maintenance::OkulbilgisiKaydet(m_db, row, &ofis); !s) {
        ui::HataBildir(s.error());
        return false;
    }
    setDirty(false);
    ui::notify(QStringLiteral("Bilgi"), QStringLiteral("Okul bilgileri kaydedildi."),
               ui::Icon::Information, this);
    maintenance::SabitBilgileriOku(m_db);
    OkulbilgisiGetir();
    emit ui::Bildirimler::instance().sabitBilgileriDegisti();
    return true;
}

void FrmOkulBilgileri::OkulbilgisiSil()
{
    if (!ui::YazmaYetkisiVar())
        return;
    if (!ui::askBeforeLosing(
            QStringLiteral("Dikkat!"),
            QStringLiteral("Okul kaydını sabit bilgilerden silmek istiyor musunuz?"), this)) {
        return;
    }
    if (base::Status s = maintenance::OkulbilgisiSil(m_db); !s) {
        ui::HataBildir(s.error());
        return;
    }
    maintenance::SabitBilgileriOku(m_db);
    OkulbilgisiGetir();
    emit ui::Bildirimler::instance().sabitBilgileriDegisti();
}

} // namespace shell
