#include "shell/frm_okul_bilgileri.h"

#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/notifications.h"
#include "users/session.h"
#include "base/turkish_text.h"
#include "shell/working_month.h"
#include "store/database.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/rights.h"

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

namespace shell {

namespace {

QLineEdit *edit(const QString &name, int size, QWidget *parent)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setMaxLength(size);
    return e;
}

QCheckBox *check(const QString &name, const QString &caption, QWidget *parent)
{
    auto *c = new QCheckBox(caption, parent);
    c->setObjectName(name);
    return c;
}

QString flag(const QCheckBox *c)
{
    return c->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

FrmOkulBilgileri::FrmOkulBilgileri(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("FrmOkulBilgileri"), QStringLiteral("Okul Bilgileri"), parent)
    , m_db(db)
{
    auto *tabs = new QTabWidget(this);

    // ---- the school
    auto *okul = new QWidget(tabs);
    m_okulAdi = edit(QStringLiteral("txtOkulAdi"), 100, okul);
    m_il = edit(QStringLiteral("txtOkulIlAdi"), 50, okul);
    m_ilce = edit(QStringLiteral("txtOkulIlceAdi"), 50, okul);
    m_telefon = edit(QStringLiteral("txtTelefon"), 30, okul);
    m_banka = edit(QStringLiteral("txtBanka"), 50, okul);
    m_resmiBaslik = edit(QStringLiteral("txtResmiListeBaslik"), 100, okul);
    m_adres = new QPlainTextEdit(okul);
    m_adres->setObjectName(QStringLiteral("txtAdres"));
    m_adres->setTabChangesFocus(true);
    m_adres->setFixedHeight(m_adres->fontMetrics().lineSpacing() * 3 + 14);
    m_mersis = edit(QStringLiteral("txtMersisNo"), 16, okul);
    m_ticaretSicil = edit(QStringLiteral("txtTicaretSicilNo"), 16, okul);
    m_vergiSicil = edit(QStringLiteral("txtVergiSicilNo"), 10, okul);
    m_vergiDairesi = edit(QStringLiteral("txtVergiDairesiAdi"), 30, okul);
    auto *of = new QFormLayout(okul);
    of->addRow(QStringLiteral("Okul Adı :"), m_okulAdi);
    of->addRow(QStringLiteral("İl :"), m_il);
    of->addRow(QStringLiteral("İlçe :"), m_ilce);
    of->addRow(QStringLiteral("Telefon :"), m_telefon);
    of->addRow(QStringLiteral("Adres :"), m_adres);
    of->addRow(QStringLiteral("Banka :"), m_banka);
    of->addRow(QStringLiteral("Resmi Liste Başlığı :"), m_resmiBaslik);
    of->addRow(QStringLiteral("Mersis No :"), m_mersis);
    of->addRow(QStringLiteral("Ticaret Sicil No :"), m_ticaretSicil);
    of->addRow(QStringLiteral("Vergi Dairesi :"), m_vergiDairesi);
    of->addRow(QStringLiteral("Vergi Sicil No :"), m_vergiSicil);
    tabs->addTab(okul, QStringLiteral("&Okul"));

    // ---- the year and its options
    auto *donem = new QWidget(tabs);
    m_ogretimYili = new QComboBox(donem);
    m_ogretimYili->setObjectName(QStringLiteral("CmbOgretimYili"));
    m_ogretimYili->setEditable(true);
    m_ogretimYili->lineEdit()->setMaxLength(9);
    const int thisYear = QDate::currentDate().year();
    for (int y = thisYear - 6; y <= thisYear + 3; ++y)
        m_ogretimYili->addItem(QStringLiteral("%1-%2").arg(y).arg(y + 1));
    m_basAy = new QComboBox(donem);
    m_basAy->setObjectName(QStringLiteral("CmbBasAy"));
    m_cariAy = new QComboBox(donem);
    m_cariAy->setObjectName(QStringLiteral("CmbCariAy"));
    m_donemBas = new ui::DateEdit(donem);
    m_donemBas->setObjectName(QStringLiteral("txtDonemBasTarihi"));
    m_donemBit = new ui::DateEdit(donem);
    m_donemBit->setObjectName(QStringLiteral("txtDonemBitTarihi"));
    m_yuvarlama = new QComboBox(donem);
    m_yuvarlama->setObjectName(QStringLiteral("CmbYuvarlama"));
    m_yuvarlama->setEditable(true);
    for (const char *v : {"0,01", "0,50", "1", "5", "10", "50", "100"})
        m_yuvarlama->addItem(QString::fromLatin1(v));
    m_yuvarlama->setToolTip(QStringLiteral("Taksit tutarları bu tutarın katlarına yuvarlanır; "
                                           "artan kısım ilk taksite eklenir."));
    m_paraTL = new QRadioButton(QStringLiteral("TL"), donem);
    m_paraTL->setObjectName(QStringLiteral("OpParaBirimi0"));
    m_paraYTL = new QRadioButton(QStringLiteral("YTL"), donem);
    m_paraYTL->setObjectName(QStringLiteral("OpParaBirimi1"));
    auto *para = new QHBoxLayout;
    para->addWidget(m_paraTL);
    para->addWidget(m_paraYTL);
    para->addStretch();
    m_sonSenet = edit(QStringLiteral("txtSonSenetNo"), 9, donem);
    m_sonFatura = edit(QStringLiteral("txtSonFaturaNo"), 9, donem);
    m_sonFis = edit(QStringLiteral("txtSonFisNo"), 9, donem);
    for (QLineEdit *e : {m_sonSenet, m_sonFatura, m_sonFis}) {
        e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        e->setMaximumWidth(120);
    }
    auto *df = new QFormLayout;
    df->addRow(QStringLiteral("Öğretim Yılı :"), m_ogretimYili);
    df->addRow(QStringLiteral("Başlangıç Ayı :"), m_basAy);
    df->addRow(QStringLiteral("Cari Ay :"), m_cariAy);
    df->addRow(QStringLiteral("Dönem Başlangıç Tarihi :"), m_donemBas);
    df->addRow(QStringLiteral("Dönem Bitiş Tarihi :"), m_donemBit);
    df->addRow(QStringLiteral("Taksit Yuvarlama :"), m_yuvarlama);
    df->addRow(QStringLiteral("Para Birimi :"), para);
    df->addRow(QStringLiteral("Son Senet No :"), m_sonSenet);
    df->addRow(QStringLiteral("Son Fatura No :"), m_sonFatura);
    df->addRow(QStringLiteral("Son Fiş No :"), m_sonFis);
    auto *secenek = new QGroupBox(QStringLiteral("Seçenekler"), donem);
    m_ogrAOtoDeg = check(QStringLiteral("chkOgrAOtoDeg"),
                         QStringLiteral("Aidat tanımı değişince öğrencilerin aidatları da değişsin"),
                         secenek);
    m_taksitKilitle = check(QStringLiteral("chkTaksitKilitle"), QStringLiteral("Taksitler kilitlensin"), secenek);
    m_fisNoKilitle = check(QStringLiteral("chkFisNoKilitle"), QStringLiteral("Fiş numarası kilitlensin"), secenek);
    m_taksitFatura = check(QStringLiteral("chkTaksitFatura"), QStringLiteral("Faturalar taksit bazında kesilsin"), secenek);
    m_taksitFaturaUyari = new QLabel(
        QStringLiteral(" UYARI : Bu şeçenek işaretlendiğinde fatura ve listelerde uyumsuzluklar olabilir"),
        secenek);
    m_taksitFaturaUyari->setObjectName(QStringLiteral("lblTaksitFaturaUyari"));
    m_taksitFaturaUyari->setStyleSheet(QStringLiteral("color: #b00020;"));
    m_taksitFaturaUyari->setWordWrap(true);
    m_silinenRapordaGoster = check(QStringLiteral("chkOgrKayitSilinenRapordaGoster"),
                                   QStringLiteral("Kaydı silinen öğrenciler raporlarda gösterilsin"),
                                   secenek);
    auto *sv = new QVBoxLayout(secenek);
    for (QWidget *w : {static_cast<QWidget *>(m_ogrAOtoDeg), static_cast<QWidget *>(m_taksitKilitle),
                       static_cast<QWidget *>(m_fisNoKilitle), static_cast<QWidget *>(m_taksitFatura),
                       static_cast<QWidget *>(m_taksitFaturaUyari),
                       static_cast<QWidget *>(m_silinenRapordaGoster)}) {
        sv->addWidget(w);
    }
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
    m_okKilit = check(QStringLiteral("chkOkKilit"),
                      QStringLiteral("Cari durum ekranı salt okunur açılsın (değişiklikler yalnız fişle "
                                     "yapılır)"),
                      ofis);
    m_fisKilit = check(QStringLiteral("chkFisKilit"),
                       QStringLiteral("Ödeme fişinin numarası elle değiştirilemesin"), ofis);
    auto *kasa = new QGroupBox(QStringLiteral("Ödemelerin Kasaya Aktarılması"), ofis);
    m_kasaAktar = check(QStringLiteral("chkKasaAktar"), QStringLiteral("Ödemeler kasaya aktarılsın"), kasa);
    m_kasaKod = edit(QStringLiteral("txtKasaKod"), 3, kasa);
    m_kasaKod->setMaximumWidth(80);
    m_kasaSor = check(QStringLiteral("chkKasaSor"), QStringLiteral("Her aktarmadan önce sorulsun"), kasa);
    auto *kf = new QFormLayout(kasa);
    kf->addRow(m_kasaAktar);
    kf->addRow(QStringLiteral("Kasa İşlem Kodu :"), m_kasaKod);
    kf->addRow(m_kasaSor);
    auto *ol = new QVBoxLayout(ofis);
    ol->addWidget(new QLabel(QStringLiteral("Bu ayarlar bütün iş istasyonlarında geçerlidir."), ofis));
    ol->addWidget(m_okKilit);
    ol->addWidget(m_fisKilit);
    ol->addWidget(kasa);
    ol->addStretch();
    tabs->addTab(ofis, QStringLiteral("O&fis Ayarları"));

    // ---- commands
    auto *kaydet = ui::button(QStringLiteral("cmdKaydet"), QStringLiteral("K&aydet"), this);
    auto *sil = ui::button(QStringLiteral("cmdSil"), QStringLiteral("&Sil"), this);
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
    connect(m_ogretimYili, &QComboBox::currentTextChanged, this, [this](const QString &year) {
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
    });

    ui::moveWithEnter(this);
    OkulbilgisiGetir();
    watchForChanges(this);
    resize(760, 480);
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
    m_row = row->kayitVar ? *row : maintenance::YeniOkulBilgisi(QDate::currentDate());
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
    const QString year = o.OgretimYili.isEmpty() ? VarsayilanOgretimYili(QDate::currentDate()) : o.OgretimYili;
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
    const QRegularExpressionMatch m = QRegularExpression(QStringLiteral("^(\\d{4})-(\\d{4})$")).match(year);
    if (!m.hasMatch() || m.captured(2).toInt() != m.captured(1).toInt() + 1) {
        refuse(QStringLiteral("Öğretim yılını \"2025-2026\" biçiminde, birbirini izleyen iki yıl olarak "
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
        refuse(QStringLiteral("Taksit yuvarlama tutarı sıfırdan büyük bir tutar olmalıdır (örnek: 1 ya "
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
        const std::optional<qint64> n = text.isEmpty() ? std::optional<qint64>(0) : base::TamSayiCoz(text);
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
    o.Adres = m_adres->toPlainText().trimmed().left(150);
    o.MersisNo = m_mersis->text().trimmed();
    o.TicaretSicilNo = m_ticaretSicil->text().trimmed();
    o.VergiSicilNo = m_vergiSicil->text().trimmed();
    o.VergiDairesiAdi = m_vergiDairesi->text().trimmed();
    o.OgretimYili = year;
    o.BaslangicAy = m_basAy->currentData().toInt() ? QString::number(m_basAy->currentData().toInt()) : QString();
    o.CariAy = m_cariAy->currentData().toInt() ? QString::number(m_cariAy->currentData().toInt()) : QString();
    o.DonemBasTarihi = m_donemBas->date().isValid() ? QDateTime(m_donemBas->date(), QTime(0, 0)) : base::SifirTarih;
    o.DonemBitTarihi = m_donemBit->date().isValid() ? QDateTime(m_donemBit->date(), QTime(0, 0)) : base::SifirTarih;
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
    ui::notify(QStringLiteral("Bilgi"), QStringLiteral("Okul bilgileri kaydedildi."), ui::Icon::Information, this);
    maintenance::SabitBilgileriOku(m_db);
    OkulbilgisiGetir();
    emit ui::Bildirimler::instance().sabitBilgileriDegisti();
    return true;
}

void FrmOkulBilgileri::OkulbilgisiSil()
{
    if (!ui::YazmaYetkisiVar())
        return;
    if (!ui::askYesNo(QStringLiteral("Dikkat!"),
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
