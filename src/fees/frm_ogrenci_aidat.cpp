#include "fees/frm_ogrenci_aidat.h"

#include "base/turkish_text.h"
#include "fees/account_extras.h"
#include "fees/account_rules.h"
#include "fees/change_check.h"
#include "fees/definitions.h"
#include "fees/frm_aidat_list.h"
#include "fees/frm_cek_bilgisi.h"
#include "fees/frm_otomatik_taksit.h"
#include "fees/frm_yeni_ekle.h"
#include "maintenance/school.h"
#include "students/student_record.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "ui/screen_registry.h"
#include "users/record_lock.h"
#include "users/session.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace fees {

namespace {

// The account list.
enum { HsTanim, HsBorc, HsOdenen, HsKalan, HsKayitId, HsAidatId, HsIskonto };
// The installments.
enum { TkTarih, TkTutar, TkSira, TkFatura, TkSekil };
// The payments.
enum {
    OdTarih,
    OdTutar,
    OdSekil,
    OdAciklama,
    OdFisNo,
    OdSira,
    OdFatura,
    OdId,
    OdBanka,
    OdVade,
    OdSube,
    OdCiro
};

// The ways an installment is planned to be paid.
const QStringList &taksitSekilleri()
{
    static const QStringList s = {QString(),
                                  QStringLiteral("Nakit"),
                                  QStringLiteral("Kredi Kartı"),
                                  QStringLiteral("Senet"),
                                  QStringLiteral("Banka Havalesi"),
                                  QStringLiteral("Çek"),
                                  QStringLiteral("Diğer"),
                                  QStringLiteral("Kredi Kart Taksit"),
                                  QStringLiteral("Bloke")};
    return s;
}

QStringList odemeSekilleri()
{
    QStringList s;
    for (const users::OdemeSekli &o : users::OdemeSekilleriTablosu())
        s << o.ad;
    return s;
}

QString odemeKodu(const QString &ad)
{
    for (const users::OdemeSekli &o : users::OdemeSekilleriTablosu()) {
        if (o.ad == ad)
            return o.kod;
    }
    return QString();
}

QString paraFormati()
{
    return users::durum().ParaFormati;
}

QLineEdit *sumBox(const QString &name, QWidget *parent)
{
    auto *box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setReadOnly(true);
    box->setFocusPolicy(Qt::NoFocus);
    box->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    box->setMaximumWidth(150);
    return box;
}

QDate cariAyIlkGunu()
{
    const QString cariAy = users::durum().CariAy;
    const QDate ilk(cariAy.left(4).toInt(), cariAy.mid(4, 2).toInt(), 1);
    return ilk.isValid() ? ilk
                         : QDate(QDate::currentDate().year(), QDate::currentDate().month(), 1);
}

QDateTime gunu(const QDate &d)
{
    return d.isValid() ? QDateTime(d, QTime(0, 0)) : QDateTime();
}

} // namespace

FrmOgrenciAidat::FrmOgrenciAidat(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("FrmOgrenciAidat"), QStringLiteral("Öğrenci Cari Durumu"), parent)
    , m_db(db)
{
    // The rights of the command that opened the screen, as they stand now.
    m_yazma = users::durum().HakYazma;
    const maintenance::OfisAyarlari ofis = maintenance::OfisAyarlariOku(db);
    m_saltOkunur = ofis.okKilit;
    m_kasaAktar = ofis.kasaAktar >= 1;
    makeLayout();
    if (m_saltOkunur) {
        setWindowTitle(windowTitle() + QStringLiteral(" - Değiştirme İzniniz Bulunmamaktadır."));
        for (ui::Grid *g : {m_taksitler, m_odemeler})
            g->setLocked(true);
        for (QWidget *w :
             {static_cast<QWidget *>(m_pesinat), static_cast<QWidget *>(m_odenenPesinat),
              static_cast<QWidget *>(m_pesinatTarihi)})
            w->setEnabled(false);
        m_aidatPenceresi->setEnabled(false);
        m_otomatik->setEnabled(false);
    }
    // The row commands work on the list that last had the focus, its cell editors included.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
        for (ui::Grid *g : {m_hesaplar, m_taksitler, m_odemeler}) {
            if (now && (now == g || g->isAncestorOf(now)))
                m_sonListe = g;
        }
    });
    bosEkran();
    if (!m_yazma) {
        // Told once the screen stands, so that the message has its window.
        QTimer::singleShot(0, this, [this] {
            ui::notify(QStringLiteral("Dikkat"),
                       QStringLiteral("DİKKAT : ÖĞRENCİ CARİ BİLGİLERİNDE DEĞİŞİKLİK YAPMA HAKKI "
                                      "VERİLMEMEMİŞTİR.\nBU BÖLÜMDE YAPMIŞ OLDUĞUNUZ "
                                      "DEĞİŞİKLİKLER KAYDEDİLMEYECEKTİR."),
                       ui::Icon::Warning, this);
        });
    }
}

FrmOgrenciAidat::~FrmOgrenciAidat() = default;

// ---- layout ----------------------------------------------------------------------------------

void FrmOgrenciAidat::makeLayout()
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeStudentStrip());
    layout->addWidget(makeAccountPart());
    auto *lists = new QHBoxLayout;
    lists->addWidget(makeInstallmentPart(), 2);
    lists->addWidget(makePaymentPart(), 3);
    layout->addLayout(lists, 1);
    layout->addWidget(makeLowerTabs(), 0);
    layout->addWidget(makeCommands());
    ui::moveWithEnter(this);
    ui::setTabOrder({m_numara, m_hesaplar, m_pesinat, m_taksitler, m_odemeSekliIsle,
                     m_odenenPesinat, m_pesinatTarihi, m_odemeler});
    resize(1300, 600);
}

QWidget *FrmOgrenciAidat::makeStudentStrip()
{
    auto *strip = new QWidget(this);
    m_numara = new QLineEdit(strip);
    m_numara->setObjectName(QStringLiteral("txtOgrNo"));
    m_numara->setMaxLength(10);
    m_numara->setMaximumWidth(110);
    auto *etiket = new QLabel(QStringLiteral("Öğrenci &No :"), strip);
    etiket->setBuddy(m_numara);
    auto *liste = ui::button(QStringLiteral("cmdOgrenciListesi"),
                             QStringLiteral("Öğrenci &Listesi"), strip);
    connect(liste, &QPushButton::clicked, this, &FrmOgrenciAidat::ogrenciListesi);
    m_adSoyad = new QLabel(strip);
    m_adSoyad->setObjectName(QStringLiteral("lblAdSoyad"));
    QFont f = m_adSoyad->font();
    f.setBold(true);
    m_adSoyad->setFont(f);
    m_sinif = new QLabel(strip);
    m_sinif->setObjectName(QStringLiteral("lblSinif"));
    auto *l = new QHBoxLayout(strip);
    l->setContentsMargins(0, 0, 0, 0);
    l->addWidget(etiket);
    l->addWidget(m_numara);
    l->addWidget(liste);
    l->addSpacing(16);
    l->addWidget(m_adSoyad);
    l->addSpacing(16);
    l->addWidget(m_sinif);
    l->addStretch();
    return strip;
}

QWidget *FrmOgrenciAidat::makeAccountPart()
{
    auto *part = new QWidget(this);
    const QString bicim = paraFormati();
    auto *hesaplar = new QGroupBox(QStringLiteral("[ Aidatlar ]"), part);
    m_hesaplar = new ui::Grid(hesaplar);
    m_hesaplar->setObjectName(QStringLiteral("vaSpread1"));
    m_hesaplar->setColumns(
        {{QStringLiteral("Aidat Tanımı"), ui::ColumnKind::Text, 260, false},
         {QStringLiteral("Toplam Borç"), ui::ColumnKind::Money, 130, false, false, 0, {}, bicim},
         {QStringLiteral("Ödenen Tutar"), ui::ColumnKind::Money, 130, false, false, 0, {}, bicim},
         {QStringLiteral("Kalan Tutar"), ui::ColumnKind::Money, 130, false, false, 0, {}, bicim},
         {QStringLiteral("KayitID"), ui::ColumnKind::Number, 0, false, true},
         {QStringLiteral("AidatID"), ui::ColumnKind::Number, 0, false, true},
         {QStringLiteral("İskonto Tutari(Gizli)"), ui::ColumnKind::Money, 0, false, true}});
    m_hesaplar->setMaximumHeight(110);
    // Moving to another line loads that account.
    connect(m_hesaplar->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (!m_dolduruluyor && current.isValid() && current.row() != m_aktifSatir)
                    HesapGoster(current.row());
            });
    m_genelBorc = new QLabel(hesaplar);
    m_genelBorc->setObjectName(QStringLiteral("lblGenelBorc"));
    m_genelOdenen = new QLabel(hesaplar);
    m_genelOdenen->setObjectName(QStringLiteral("lblGenelOdenen"));
    m_genelKalan = new QLabel(hesaplar);
    m_genelKalan->setObjectName(QStringLiteral("lblGenelKalan"));
    auto *toplamlar = new QHBoxLayout;
    toplamlar->addWidget(new QLabel(QStringLiteral("Toplam Borç :"), hesaplar));
    toplamlar->addWidget(m_genelBorc);
    toplamlar->addSpacing(16);
    toplamlar->addWidget(new QLabel(QStringLiteral("Ödenen :"), hesaplar));
    toplamlar->addWidget(m_genelOdenen);
    toplamlar->addSpacing(16);
    toplamlar->addWidget(new QLabel(QStringLiteral("Kalan :"), hesaplar));
    toplamlar->addWidget(m_genelKalan);
    toplamlar->addStretch();
    auto *hl = new QVBoxLayout(hesaplar);
    hl->addWidget(m_hesaplar);
    hl->addLayout(toplamlar);

    auto *genel = new QGroupBox(QStringLiteral("[ Genel Durum ]"), part);
    m_buAy = sumBox(QStringLiteral("txtBuAykiBorc"), genel);
    m_onceki = sumBox(QStringLiteral("txtOncekiAylarBorc"), genel);
    m_toplam = sumBox(QStringLiteral("txtToplam"), genel);
    m_cariMetin = new QLabel(genel);
    m_cariMetin->setObjectName(QStringLiteral("lblCariDurumMetni"));
    m_cariMetin->setWordWrap(true);
    auto *gl = new QGridLayout(genel);
    gl->addWidget(new QLabel(QStringLiteral("Bu Ayki Borç :"), genel), 0, 0);
    gl->addWidget(m_buAy, 0, 1);
    gl->addWidget(new QLabel(QStringLiteral("Önceki Aylardan Borç :"), genel), 1, 0);
    gl->addWidget(m_onceki, 1, 1);
    gl->addWidget(new QLabel(QStringLiteral("Toplam :"), genel), 2, 0);
    gl->addWidget(m_toplam, 2, 1);
    gl->addWidget(m_cariMetin, 3, 0, 1, 2);

    auto *l = new QHBoxLayout(part);
    l->setContentsMargins(0, 0, 0, 0);
    l->addWidget(hesaplar, 3);
    l->addWidget(genel, 1);
    return part;
}

QWidget *FrmOgrenciAidat::makeInstallmentPart()
{
    auto *part = new QGroupBox(QStringLiteral("[ Taksitler ]"), this);
    const QString bicim = paraFormati();
    m_pesinat = new ui::MoneyEdit(part);
    m_pesinat->setObjectName(QStringLiteral("CInputBox1"));
    m_pesinat->setFormat(bicim);
    m_pesinat->setNegativeAllowed(false);
    m_pesinat->setMaximumWidth(150);
    connect(m_pesinat, &QLineEdit::editingFinished, this, &FrmOgrenciAidat::pesinatDuzenlendi);
    auto *pesinatEtiketi = new QLabel(QStringLiteral("P&EŞİNAT :"), part);
    pesinatEtiketi->setBuddy(m_pesinat);
    m_taksitler = new ui::Grid(part);
    m_taksitler->setObjectName(QStringLiteral("vaSpread2"));
    m_taksitler->setColumns(
        {{QStringLiteral("Ödeme Tarihi"), ui::ColumnKind::Date, 105},
         {QStringLiteral("Taksit"), ui::ColumnKind::Money, 110, true, false, 0, {}, bicim, false},
         {QStringLiteral("Sıra"), ui::ColumnKind::Number, 0, false, true},
         {QStringLiteral("Fatura No"), ui::ColumnKind::Number, 75, false},
         {QStringLiteral("Ödeme Şekli"), ui::ColumnKind::Combo, 130, true, false, 20,
          taksitSekilleri()}});
    m_taksitler->horizontalHeader()->setStretchLastSection(true);
    connect(m_taksitler, &ui::Grid::cellEdited, this, &FrmOgrenciAidat::taksitDuzenlendi);
    m_odemeSekliIsle = new QCheckBox(QStringLiteral("Ödeme Şekli Girildiğinde Sonraki Aylarada "
                                                    "İşlensin"),
                                     part);
    m_odemeSekliIsle->setObjectName(QStringLiteral("CHK_ODEME_SEKLI_ISLE"));
    auto *ust = new QHBoxLayout;
    ust->addWidget(pesinatEtiketi);
    ust->addWidget(m_pesinat);
    ust->addStretch();
    auto *l = new QVBoxLayout(part);
    l->addLayout(ust);
    l->addWidget(m_taksitler, 1);
    l->addWidget(m_odemeSekliIsle);
    return part;
}

QWidget *FrmOgrenciAidat::makePaymentPart()
{
    auto *part = new QGroupBox(QStringLiteral("[ Ödeme İşlemleri ]"), this);
    const QString bicim = paraFormati();
    m_odenenPesinat = new ui::MoneyEdit(part);
    m_odenenPesinat->setObjectName(QStringLiteral("CInputBox0"));
    m_odenenPesinat->setFormat(bicim);
    m_odenenPesinat->setNegativeAllowed(false);
    m_odenenPesinat->setMaximumWidth(150);
    connect(m_odenenPesinat, &QLineEdit::editingFinished, this,
            &FrmOgrenciAidat::pesinatDuzenlendi);
    auto *odenenEtiketi = new QLabel(QStringLiteral("PEŞİNA&T :"), part);
    odenenEtiketi->setBuddy(m_odenenPesinat);
    m_pesinatTarihi = new ui::DateEdit(part);
    m_pesinatTarihi->setObjectName(QStringLiteral("PTarih"));
    m_pesinatTarihi->setMaximumWidth(110);
    connect(m_pesinatTarihi, &QLineEdit::editingFinished, this,
            &FrmOgrenciAidat::pesinatDuzenlendi);
    auto *tarihEtiketi = new QLabel(QStringLiteral("PeşinatTa&rihi :"), part);
    tarihEtiketi->setBuddy(m_pesinatTarihi);
    m_odemeler = new ui::Grid(part);
    m_odemeler->setObjectName(QStringLiteral("vaSpread3"));
    m_odemeler->setColumns(
        {{QStringLiteral("Ödeme Tarihi"), ui::ColumnKind::Date, 105},
         {QStringLiteral("Ödenen"), ui::ColumnKind::Money, 110, true, false, 0, {}, bicim, false},
         {QStringLiteral("Ödeme Şekli"), ui::ColumnKind::Combo, 120, true, false, 20,
          odemeSekilleri()},
         {QStringLiteral("Açıklama"), ui::ColumnKind::Text, 150, true, false, 50},
         {QStringLiteral("Fiş No"), ui::ColumnKind::Number, 70},
         {QStringLiteral("Sıra"), ui::ColumnKind::Number, 0, false, true},
         {QStringLiteral("Fatura No"), ui::ColumnKind::Number, 75, false},
         {QStringLiteral("ID"), ui::ColumnKind::Number, 0, false, true},
         {QStringLiteral("Banka Adı"), ui::ColumnKind::Text, 120, true, false, 30},
         {QStringLiteral("Vade Tarihi"), ui::ColumnKind::Date, 105},
         {QStringLiteral("Sube"), ui::ColumnKind::Text, 100, true, false, 50},
         {QStringLiteral("Ciro"), ui::ColumnKind::Text, 80, true, false, 30}});
    if (users::durum().FisNoKilitle)
        m_odemeler->setColumnEditable(OdFisNo, false);
    connect(m_odemeler, &ui::Grid::cellEdited, this, &FrmOgrenciAidat::odemeDuzenlendi);
    // The cheque button follows the row the cursor is on.
    connect(m_odemeler->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { cekDugmesiniAyarla(); });
    auto *ust = new QHBoxLayout;
    ust->addWidget(odenenEtiketi);
    ust->addWidget(m_odenenPesinat);
    ust->addSpacing(12);
    ust->addWidget(tarihEtiketi);
    ust->addWidget(m_pesinatTarihi);
    ust->addStretch();
    auto *l = new QVBoxLayout(part);
    l->addLayout(ust);
    l->addWidget(m_odemeler, 1);
    return part;
}

QWidget *FrmOgrenciAidat::makeCommands()
{
    auto *bar = new QWidget(this);
    m_satirAc = ui::button(QStringLiteral("cmdSatirAc"), QStringLiteral("Satır A&ç"), bar);
    m_satirSil = ui::button(QStringLiteral("cmdSatirSil"), QStringLiteral("Satır &Sil"), bar);
    m_taksidiOde = ui::button(QStringLiteral("cmdTaksidiOde"), QStringLiteral("Taksi&di Öde"), bar);
    m_aidatPenceresi = ui::button(QStringLiteral("cmdAidatPenceresi"),
                                  QStringLiteral("Aidat Penceresi (F10)"), bar);
    m_otomatik = ui::button(QStringLiteral("cmdOtomatikTaksit"),
                            QStringLiteral("&Otomatik Taksitlendirme"), bar);
    m_cek = ui::button(QStringLiteral("cmdCekDetay"), QStringLiteral("Çek Deta&yı"), bar);
    auto *fis
        = ui::button(QStringLiteral("cmdOdemeFisi"), QStringLiteral("Ödeme &Fişi Basımı"), bar);
    m_kaydet = ui::button(QStringLiteral("cmdKaydet"), QStringLiteral("K&aydet"), bar);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), bar);
    connect(m_satirAc, &QPushButton::clicked, this, &FrmOgrenciAidat::SatirAc);
    connect(m_satirSil, &QPushButton::clicked, this, &FrmOgrenciAidat::SatirSil);
    connect(m_taksidiOde, &QPushButton::clicked, this, &FrmOgrenciAidat::TaksidiOde);
    connect(m_aidatPenceresi, &QPushButton::clicked, this, &FrmOgrenciAidat::AidatPenceresi);
    connect(m_otomatik, &QPushButton::clicked, this, &FrmOgrenciAidat::OtomatikTaksitlendirme);
    connect(m_cek, &QPushButton::clicked, this, &FrmOgrenciAidat::cekBilgisi);
    connect(fis, &QPushButton::clicked, this,
            [this] { ui::notReady(QStringLiteral("Ödeme Fişi Basımı"), this); });
    connect(m_kaydet, &QPushButton::clicked, this, [this] { Kaydet(); });
    connect(cikis, &QPushButton::clicked, this, &FrmOgrenciAidat::closeWindow);
    auto *l = new QHBoxLayout(bar);
    l->setContentsMargins(0, 0, 0, 0);
    for (QPushButton *b :
         {m_satirAc, m_satirSil, m_taksidiOde, m_aidatPenceresi, m_otomatik, m_cek, fis})
        l->addWidget(b);
    l->addStretch();
    l->addWidget(m_kaydet);
    l->addWidget(cikis);
    return bar;
}

QWidget *FrmOgrenciAidat::makeLowerTabs()
{
    auto *tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("tabAlt"));
    tabs->setMaximumHeight(115);
    const QString bicim = paraFormati();

    m_indirimler = new ui::Grid(tabs);
    m_indirimler->setObjectName(QStringLiteral("vaSpreadIndirim"));
    m_indirimler->setColumns(
        {{QStringLiteral("Açıklama"), ui::ColumnKind::Text, 260, false},
         {QStringLiteral("Oran"),
          ui::ColumnKind::Money,
          90,
          false,
          false,
          0,
          {},
          QStringLiteral("#,##0.00##")},
         {QStringLiteral("Tutar"), ui::ColumnKind::Money, 120, false, false, 0, {}, bicim},
         {QStringLiteral("ID"), ui::ColumnKind::Number, 0, false, true}});
    tabs->addTab(m_indirimler, QStringLiteral("Yapılan İndiri&mler"));

    m_faturalar = new ui::Grid(tabs);
    m_faturalar->setObjectName(QStringLiteral("vaSpreadFatura"));
    m_faturalar->setColumns(
        {{QStringLiteral("Fatura Tarihi"), ui::ColumnKind::Date, 105, false},
         {QStringLiteral("Fatura Tutarı"), ui::ColumnKind::Money, 120, false, false, 0, {}, bicim},
         {QStringLiteral("Fatura No"), ui::ColumnKind::Number, 90, false},
         {QStringLiteral("Kesildiği Ödeme"), ui::ColumnKind::Date, 120, false}});
    tabs->addTab(m_faturalar, QStringLiteral("Fat&uralar"));

    auto *burs = new QWidget(tabs);
    m_burslar = new ui::Grid(burs);
    m_burslar->setObjectName(QStringLiteral("vaSpreadBurs"));
    m_burslar->setColumns(
        {{QStringLiteral("Burs Türü"), ui::ColumnKind::Text, 110, false},
         {QStringLiteral("Miktar"), ui::ColumnKind::Text, 120, true, false, 100},
         {QStringLiteral("Burs %"),
          ui::ColumnKind::Money,
          80,
          true,
          false,
          0,
          {},
          QStringLiteral("#,##0.00##"),
          false},
         {QStringLiteral("Açıklama"), ui::ColumnKind::Text, 300, true, false, 200}});
    auto *not_ = new QLabel(QStringLiteral("Bu ekrandaki bilgiler sadece referans amaçlıdır. "
                                           "Hesaplamalarda kullanılmamaktadır."),
                            burs);
    not_->setObjectName(QStringLiteral("lblBursNotu"));
    not_->setWordWrap(true);
    auto *kaydet
        = ui::button(QStringLiteral("cmdBursDokumuKaydet"), QStringLiteral("Kaydet"), burs);
    auto *liste = ui::button(QStringLiteral("cmdBursListe"), QStringLiteral("Liste"), burs);
    auto *sil = ui::button(QStringLiteral("cmdBursSil"), QStringLiteral("Sil"), burs);
    connect(kaydet, &QPushButton::clicked, this, &FrmOgrenciAidat::bursDokumuKaydet);
    connect(liste, &QPushButton::clicked, this,
            [this] { ui::notReady(QStringLiteral("Öğrenci Burs Listesi"), this); });
    connect(sil, &QPushButton::clicked, this, &FrmOgrenciAidat::bursSil);
    auto *yan = new QVBoxLayout;
    yan->addWidget(not_);
    yan->addWidget(kaydet);
    yan->addWidget(liste);
    yan->addWidget(sil);
    yan->addStretch();
    auto *bl = new QHBoxLayout(burs);
    bl->setContentsMargins(4, 4, 4, 4);
    bl->addWidget(m_burslar, 3);
    bl->addLayout(yan, 1);
    tabs->addTab(burs, QStringLiteral("&Burs"));
    return tabs;
}

void FrmOgrenciAidat::indirimleriGoster()
{
    QList<IskontoSatiri> satirlar = m_hesap.iskontolar;
    std::sort(satirlar.begin(), satirlar.end(), [](const IskontoSatiri &a, const IskontoSatiri &b) {
        return a.iskontoId < b.iskontoId;
    });
    m_indirimler->clearRows();
    base::Para toplam;
    for (const IskontoSatiri &i : satirlar) {
        const int r = m_indirimler->appendRow();
        m_indirimler->setValue(r, 0, i.iskontoAdi);
        m_indirimler->setValue(r, 1, QVariant::fromValue(i.iskontoOrani));
        m_indirimler->setValue(r, 2, QVariant::fromValue(i.iskontoMiktari));
        m_indirimler->setValue(r, 3, i.iskontoId);
        toplam = toplam + i.iskontoMiktari;
    }
    const int r = m_indirimler->appendRow();
    m_indirimler->setValue(r, 0, QStringLiteral("T O P L A M"));
    m_indirimler->setValue(r, 2, QVariant::fromValue(toplam));
}

void FrmOgrenciAidat::faturalariGoster()
{
    m_faturalar->clearRows();
    if (m_hesap.satir.kayitId <= 0)
        return;
    const base::Result<QList<FaturaSatiri>> faturalar
        = FaturaListesi(m_db, m_ogrKayitId, m_hesap.satir.kayitId,
                        users::durum().TaksitFatura == QLatin1String("1"));
    if (!faturalar) {
        ui::HataBildir(faturalar.error());
        return;
    }
    for (const FaturaSatiri &f : *faturalar) {
        const int r = m_faturalar->appendRow();
        m_faturalar->setValue(r, 0, f.faturaTarihi);
        m_faturalar->setValue(r, 1, QVariant::fromValue(f.faturaTutar));
        m_faturalar->setValue(r, 2, f.faturaNo);
        m_faturalar->setValue(r, 3,
                              f.kesildigiOdeme.isValid() ? QVariant(f.kesildigiOdeme) : QVariant());
    }
}

void FrmOgrenciAidat::bursDokumuAl()
{
    m_burslar->clearRows();
    if (m_ogrKayitId <= 0)
        return;
    const base::Result<QList<BursSatiri>> burslar = BursDokumuAl(m_db, m_ogrKayitId);
    if (!burslar) {
        ui::HataBildir(burslar.error());
        return;
    }
    for (const BursSatiri &b : *burslar) {
        const int r = m_burslar->appendRow();
        m_burslar->setValue(r, 0, b.bursAdi);
        m_burslar->setValue(r, 1, b.miktar);
        m_burslar->setValue(r, 2, b.oran.isZero() ? QVariant() : QVariant::fromValue(b.oran));
        m_burslar->setValue(r, 3, b.aciklama);
    }
}

void FrmOgrenciAidat::bursDokumuKaydet()
{
    if (m_ogrKayitId <= 0)
        return;
    QList<BursSatiri> satirlar;
    for (int r = 0; r < m_burslar->rowCount(); ++r) {
        satirlar.append(BursSatiri{m_burslar->text(r, 0), m_burslar->text(r, 1),
                                   m_burslar->para(r, 2), m_burslar->text(r, 3)});
    }
    if (ui::passed(BursDokumuKaydet(m_db, m_ogrKayitId,
                                    base::TamSayiCoz(m_numara->text()).value_or(0),
                                    m_adSoyad->text(), satirlar)))
        ui::notify(QStringLiteral("Bilgi"), QStringLiteral("Burs bilgileri kaydedildi."),
                   ui::Icon::Information, this);
}

void FrmOgrenciAidat::bursSil()
{
    if (m_ogrKayitId <= 0)
        return;
    if (!ui::ask({QStringLiteral("Dikkat"),
                  QStringLiteral("Öğrencinin burs bilgilerini silmek istiyor musunuz?")},
                 this))
        return;
    if (ui::passed(BursSil(m_db, m_ogrKayitId)))
        bursDokumuAl();
}

// ---- the student -----------------------------------------------------------------------------

void FrmOgrenciAidat::ekranAyarla(const QVariantMap &ayar)
{
    const qint64 ogrenci = ayar.value(QStringLiteral("ogrKayitId")).toLongLong();
    if (ogrenci > 0) {
        OgrenciGoster(ogrenci);
        return;
    }
    // Opened from the tool band: the student is chosen from the list.
    QTimer::singleShot(0, this, &FrmOgrenciAidat::ogrenciListesi);
}

bool FrmOgrenciAidat::OgrenciGoster(qint64 ogrKayitId)
{
    const base::Result<std::optional<students::OgrenciKaydi>> ogrenci
        = students::OgrenciOku(m_db, ogrKayitId);
    if (!ogrenci) {
        ui::HataBildir(ogrenci.error());
        return false;
    }
    if (!*ogrenci) {
        ui::notify(QStringLiteral("Dikkat"), QStringLiteral("Öğrenci bulunamadı."),
                   ui::Icon::Warning, this);
        return false;
    }
    if (!ui::passed(users::OgrenciKilitle(m_db, ogrKayitId)))
        return false;
    m_ogrKayitId = ogrKayitId;
    const students::OgrenciKaydi &k = **ogrenci;
    m_numara->setText(QString::number(k.numara()));
    m_adSoyad->setText(k.adi() + QLatin1Char(' ') + k.soyadi());
    m_sinif->setText(QStringLiteral("Sınıfı : ") + k.sinif());
    OgrenciAidatTanimGoster();
    bursDokumuAl();
    // On opening, the position of today's month.
    const QDate bugun = QDate::currentDate();
    genelKutulariGoster(QDate(bugun.year(), bugun.month(), 1));
    m_hesaplar->setFocus();
    return true;
}

void FrmOgrenciAidat::ogrenciNumarasiGirildi()
{
    const std::optional<qint64> numara = base::TamSayiCoz(m_numara->text());
    if (!numara || !students::OgrenciNoGecerli(*numara)) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Öğrenci numarası yalnız rakamlardan oluşur."), ui::Icon::Warning,
                   this);
        m_numara->selectAll();
        return;
    }
    const base::Result<std::optional<qint64>> kayit = students::NumaradanBul(m_db, *numara);
    if (!kayit) {
        ui::HataBildir(kayit.error());
        return;
    }
    if (!*kayit) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("%1 numaralı öğrenci bulunamadı.").arg(*numara),
                   ui::Icon::Warning, this);
        m_numara->selectAll();
        return;
    }
    OgrenciGoster(**kayit);
}

void FrmOgrenciAidat::ogrenciListesi()
{
    const qint64 secilen = ui::Sec(QStringLiteral("OgrenciListesi"), m_db, this).toLongLong();
    if (secilen > 0)
        OgrenciGoster(secilen);
    else
        m_numara->setFocus();
}

void FrmOgrenciAidat::bosEkran()
{
    m_dolduruluyor = true;
    m_hesaplar->clearRows();
    m_hesap = HesapKaydi();
    m_aktifSatir = -1;
    listeleriDoldur();
    m_dolduruluyor = false;
}

// ---- the accounts ----------------------------------------------------------------------------

void FrmOgrenciAidat::OgrenciAidatTanimGoster(int aktif)
{
    const base::Result<QList<HesapSatiri>> hesaplar
        = fees::OgrenciAidatTanimGoster(m_db, m_ogrKayitId);
    if (!hesaplar) {
        ui::HataBildir(hesaplar.error());
        return;
    }
    m_dolduruluyor = true;
    m_hesaplar->clearRows();
    for (const HesapSatiri &h : *hesaplar) {
        const int r = m_hesaplar->appendRow();
        m_hesaplar->setValue(r, HsTanim, h.aidatTanim);
        m_hesaplar->setValue(r, HsBorc, QVariant::fromValue(h.borc));
        m_hesaplar->setValue(r, HsOdenen, QVariant::fromValue(h.odenen()));
        m_hesaplar->setValue(r, HsKalan, QVariant::fromValue(h.kalan));
        m_hesaplar->setValue(r, HsKayitId, h.kayitId);
        m_hesaplar->setValue(r, HsAidatId, h.aidatId);
        m_hesaplar->setValue(r, HsIskonto, QVariant::fromValue(h.iskontoTutari));
    }
    // The line for the next fee.
    m_hesaplar->appendRow();
    m_dolduruluyor = false;
    toplamlariGoster();
    HesapGoster(qBound(0, aktif, m_hesaplar->rowCount() - 1));
}

void FrmOgrenciAidat::HesapGoster(int satir)
{
    m_aktifSatir = satir;
    m_dolduruluyor = true;
    m_hesaplar->setCurrentCell(satir, HsTanim);
    m_dolduruluyor = false;
    const qint64 kayitId = m_hesaplar->number(satir, HsKayitId);
    if (kayitId <= 0) {
        m_hesap = HesapKaydi();
        m_hesap.satir.ogrKayitId = m_ogrKayitId;
        m_hesap.satir.sira = satir + 1;
    } else {
        const base::Result<HesapKaydi> h
            = HesapOku(m_db, kayitId, users::durum().TaksitFatura == QLatin1String("1"));
        if (!h) {
            ui::HataBildir(h.error());
            return;
        }
        m_hesap = *h;
    }
    listeleriDoldur();
}

void FrmOgrenciAidat::listeleriDoldur()
{
    m_dolduruluyor = true;
    m_taksitler->clearRows();
    for (const DetaySatiri &d : m_hesap.taksitler) {
        const int r = m_taksitler->appendRow();
        m_taksitler->setValue(
            r, TkTarih, d.odemeTarihi.isValid() ? QVariant(d.odemeTarihi.date()) : QVariant());
        m_taksitler->setValue(r, TkTutar, QVariant::fromValue(d.odenecek));
        m_taksitler->setValue(r, TkSira, d.sira);
        m_taksitler->setValue(r, TkFatura, d.faturaNo > 0 ? QVariant(d.faturaNo) : QVariant());
        m_taksitler->setValue(r, TkSekil, d.odemeSekli);
    }
    m_taksitler->appendRow();
    m_taksitler->setLocked(m_saltOkunur || users::durum().TaksitKilitle);
    m_odemeler->clearRows();
    for (const OdemeSatiri &o : m_hesap.odemeler) {
        const int r = m_odemeler->appendRow();
        m_odemeler->setValue(r, OdTarih,
                             o.odemeTarihi.isValid() ? QVariant(o.odemeTarihi.date()) : QVariant());
        m_odemeler->setValue(r, OdTutar, QVariant::fromValue(o.odenen));
        m_odemeler->setValue(r, OdSekil, users::OdemeSekliAdi(o.odemeSekli));
        m_odemeler->setValue(r, OdAciklama, o.aciklama);
        m_odemeler->setValue(r, OdFisNo, o.fisNo > 0 ? QVariant(o.fisNo) : QVariant());
        m_odemeler->setValue(r, OdSira, o.sira);
        m_odemeler->setValue(r, OdFatura, o.faturaNo > 0 ? QVariant(o.faturaNo) : QVariant());
        m_odemeler->setValue(r, OdBanka, o.bankaAdi);
        m_odemeler->setValue(r, OdVade,
                             o.vadeTarihi.isValid() ? QVariant(o.vadeTarihi.date()) : QVariant());
        m_odemeler->setValue(r, OdSube, o.sube);
        m_odemeler->setValue(r, OdCiro, o.ciro);
    }
    m_odemeler->appendRow();
    m_pesinat->setText(!m_hesap.pesinat.isZero() ? base::Bicimle(m_hesap.pesinat, paraFormati())
                                                 : QString());
    m_odenenPesinat->setText(m_hesap.odenenPesinat
                                 ? base::Bicimle(m_hesap.odenenPesinat->tutar, paraFormati())
                                 : QString());
    m_pesinatTarihi->setDate(m_hesap.odenenPesinat ? m_hesap.odenenPesinat->tarih : QDate());
    indirimleriGoster();
    faturalariGoster();
    m_dolduruluyor = false;
    cekDugmesiniAyarla();
}

void FrmOgrenciAidat::hesapSatiriniGoster(int satir)
{
    if (satir < 0 || satir >= m_hesaplar->rowCount())
        return;
    m_dolduruluyor = true;
    const HesapSatiri &s = m_hesap.satir;
    m_hesaplar->setValue(satir, HsTanim, s.aidatTanim);
    m_hesaplar->setValue(satir, HsBorc, QVariant::fromValue(s.borc));
    m_hesaplar->setValue(satir, HsOdenen, QVariant::fromValue(s.odenen()));
    m_hesaplar->setValue(satir, HsKalan, QVariant::fromValue(s.kalan));
    m_hesaplar->setValue(satir, HsKayitId, s.kayitId);
    m_hesaplar->setValue(satir, HsAidatId, s.aidatId);
    m_hesaplar->setValue(satir, HsIskonto, QVariant::fromValue(s.iskontoTutari));
    if (satir == m_hesaplar->rowCount() - 1 && s.kayitId > 0)
        m_hesaplar->appendRow(); // the line for the next fee
    m_dolduruluyor = false;
    toplamlariGoster();
}

void FrmOgrenciAidat::toplamlariGoster()
{
    base::Para borc, odenen, kalan;
    for (int r = 0; r < m_hesaplar->rowCount(); ++r) {
        borc = borc + m_hesaplar->para(r, HsBorc);
        odenen = odenen + m_hesaplar->para(r, HsOdenen);
        kalan = kalan + m_hesaplar->para(r, HsKalan);
    }
    m_genelBorc->setText(base::Bicimle(borc, paraFormati()));
    m_genelOdenen->setText(base::Bicimle(odenen, paraFormati()));
    m_genelKalan->setText(base::Bicimle(kalan, paraFormati()));
}

void FrmOgrenciAidat::genelKutulariGoster(const QDate &ay)
{
    const base::Result<CariDurum> c = CariDurumHesapla(m_db, m_ogrKayitId, ay, paraFormati());
    if (!c) {
        ui::HataBildir(c.error());
        return;
    }
    m_buAy->setText(base::Bicimle(c->buAykiBorc, paraFormati()));
    m_onceki->setText(base::Bicimle(c->oncekiAylarBorc, paraFormati()));
    m_toplam->setText(base::Bicimle(c->toplam(), paraFormati()));
    m_cariMetin->setText(c->metin.trimmed());
}

int FrmOgrenciAidat::aktifHesapSatiri() const
{
    return m_aktifSatir;
}

// ---- edits -----------------------------------------------------------------------------------

void FrmOgrenciAidat::taksitDuzenlendi(int row, int column)
{
    if (m_dolduruluyor || row < 0)
        return;
    if (row >= m_hesap.taksitler.size()) {
        // The empty last row takes a new Sira; the list grows by one empty row.
        DetaySatiri d;
        d.sira = YeniSira(m_hesap.taksitler);
        m_hesap.taksitler.append(d);
        m_dolduruluyor = true;
        m_taksitler->setValue(row, TkSira, d.sira);
        m_taksitler->appendRow();
        m_dolduruluyor = false;
    }
    DetaySatiri &d = m_hesap.taksitler[row];
    d.odemeTarihi = gunu(m_taksitler->date(row, TkTarih));
    d.odenecek = m_taksitler->para(row, TkTutar);
    d.odemeSekli = m_taksitler->text(row, TkSekil);
    d.elle = true;
    if (column == TkSekil && m_odemeSekliIsle->isChecked()) {
        // The way of payment goes down to every later installment.
        m_dolduruluyor = true;
        for (int r = row + 1; r < m_hesap.taksitler.size(); ++r) {
            m_hesap.taksitler[r].odemeSekli = d.odemeSekli;
            m_hesap.taksitler[r].elle = true;
            m_taksitler->setValue(r, TkSekil, d.odemeSekli);
        }
        m_dolduruluyor = false;
    }
    degisiklikKaydet(false);
}

void FrmOgrenciAidat::odemeDuzenlendi(int row, int column)
{
    if (m_dolduruluyor || row < 0)
        return;
    if (row >= m_hesap.odemeler.size()) {
        OdemeSatiri o;
        o.sira = YeniSira(m_hesap.odemeler);
        o.kullanici = users::durum().AktifKullanici;
        m_hesap.odemeler.append(o);
        m_dolduruluyor = true;
        m_odemeler->setValue(row, OdSira, o.sira);
        m_odemeler->appendRow();
        m_dolduruluyor = false;
    }
    OdemeSatiri &o = m_hesap.odemeler[row];
    o.odemeTarihi = gunu(m_odemeler->date(row, OdTarih));
    o.odenen = m_odemeler->para(row, OdTutar);
    o.odemeSekli = odemeKodu(m_odemeler->text(row, OdSekil));
    o.aciklama = m_odemeler->text(row, OdAciklama);
    o.fisNo = m_odemeler->number(row, OdFisNo);
    o.bankaAdi = m_odemeler->text(row, OdBanka);
    o.vadeTarihi = gunu(m_odemeler->date(row, OdVade));
    o.sube = m_odemeler->text(row, OdSube);
    o.ciro = m_odemeler->text(row, OdCiro);
    o.elle = true;
    cekDugmesiniAyarla();
    degisiklikKaydet(column == OdTutar);
}

void FrmOgrenciAidat::pesinatDuzenlendi()
{
    if (m_dolduruluyor || m_saltOkunur)
        return;
    for (ui::MoneyEdit *box : {m_pesinat, m_odenenPesinat}) {
        if (!box->isAcceptable())
            return; // the box has said why, and keeps the focus
    }
    const base::Para pesinat = m_pesinat->value().value_or(base::Para());
    const base::Para odenen = m_odenenPesinat->value().value_or(base::Para());
    const QDate tarih = m_pesinatTarihi->date();
    const base::Para eskiOdenen
        = m_hesap.odenenPesinat ? m_hesap.odenenPesinat->tutar : base::Para();
    const QDate eskiTarih = m_hesap.odenenPesinat ? m_hesap.odenenPesinat->tarih : QDate();
    if (pesinat == m_hesap.pesinat && odenen == eskiOdenen && tarih == eskiTarih)
        return;
    m_hesap.pesinat = pesinat;
    if (odenen.isZero())
        m_hesap.odenenPesinat.reset();
    else
        m_hesap.odenenPesinat = OdenenPesinat{odenen, tarih, users::durum().ParaTuru};
    degisiklikKaydet(odenen != eskiOdenen);
}

void FrmOgrenciAidat::degisiklikKaydet(bool tutarDegisti)
{
    if (!m_yazma || m_saltOkunur || m_hesap.satir.aidatTanim.trimmed().isEmpty()) {
        // Kept on the screen only: the totals follow the rows.
        const Toplamlar t = ToplamlariYenile(m_hesap);
        m_hesap.satir.borc = t.borc;
        m_hesap.satir.kalan = t.kalan();
        hesapSatiriniGoster(m_aktifSatir);
        return;
    }
    if (Kaydet() && tutarDegisti)
        kasayaAktar();
}

bool FrmOgrenciAidat::Kaydet()
{
    if (m_ogrKayitId <= 0 || m_aktifSatir < 0 || m_saltOkunur)
        return false;
    if (!ui::YazmaYetkisiVar())
        return false;
    const KayitBaglami baglam{users::durum().AktifKullanici, users::durum().ParaTuru,
                              users::durum().TaksitFatura == QLatin1String("1")};
    m_hesap.satir.ogrKayitId = m_ogrKayitId;
    const base::Result<HesapKayitSonucu> sonuc = HesapKaydet(m_db, m_hesap, baglam);
    if (!sonuc) {
        if (!sonuc.error().isRefusal()) {
            ui::HataBildir(sonuc.error());
            return false;
        }
        // Written elsewhere since it was read: what the operator typed is shown to him, to be
        // entered again on the account read anew.
        QStringList yazilanlar;
        for (const DetaySatiri &d : m_hesap.taksitler) {
            if (d.elle)
                yazilanlar << QStringLiteral("Taksit: %1  %2")
                                  .arg(base::TarihYaz(d.odemeTarihi),
                                       base::Bicimle(d.odenecek, paraFormati()));
        }
        for (const OdemeSatiri &o : m_hesap.odemeler) {
            if (o.elle)
                yazilanlar << QStringLiteral("Ödeme: %1  %2  %3")
                                  .arg(base::TarihYaz(o.odemeTarihi),
                                       base::Bicimle(o.odenen, paraFormati()),
                                       users::OdemeSekliAdi(o.odemeSekli));
        }
        QString metin = sonuc.error().text;
        if (!yazilanlar.isEmpty())
            metin += QStringLiteral("\n\nGirdiğiniz satırlar:\n") + yazilanlar.join(u'\n');
        ui::notify(QStringLiteral("Dikkat"), metin, ui::Icon::Warning, this);
        OgrenciAidatTanimGoster(m_aktifSatir);
        return false;
    }
    for (const QString &uyari : sonuc->uyarilar)
        ui::notify(QStringLiteral("Dikkat"), uyari, ui::Icon::Warning, this);
    hesapSatiriniGoster(m_aktifSatir);
    // The position after the save, at the working month.
    genelKutulariGoster(cariAyIlkGunu());
    return true;
}

void FrmOgrenciAidat::kasayaAktar()
{
    if (!m_kasaAktar)
        return;
    ui::notify(QStringLiteral("Bilgi"),
               QStringLiteral("Ödeme kaydedildi. Kasaya aktarma kasa ekranı ile birlikte "
                              "gelecek; kasaya kayıt yazılmadı."),
               ui::Icon::Information, this);
}

void FrmOgrenciAidat::cekBilgisi()
{
    const int row = m_odemeler->currentRowIndex();
    if (row < 0 || row >= m_hesap.odemeler.size() || !ui::YazmaYetkisiVar())
        return;
    const base::Result<QStringList> bankalar = BankaAdlari(m_db);
    if (!bankalar) {
        ui::HataBildir(bankalar.error());
        return;
    }
    FrmCekBilgisi cek(m_hesap.odemeler.at(row), *bankalar, this);
    cek.exec();
    const OdemeSatiri o = cek.odeme();
    if (o == m_hesap.odemeler.at(row))
        return;
    m_hesap.odemeler[row] = o;
    listeleriDoldur();
    m_odemeler->setCurrentCell(row, OdAciklama);
    degisiklikKaydet(false);
}

void FrmOgrenciAidat::cekDugmesiniAyarla()
{
    const int r = m_odemeler->currentRowIndex();
    m_cek->setEnabled(r >= 0 && r < m_odemeler->rowCount()
                      && m_odemeler->text(r, OdSekil) == QStringLiteral("Çek"));
}

// ---- commands --------------------------------------------------------------------------------

void FrmOgrenciAidat::TaksidiOde()
{
    if (m_ogrKayitId <= 0 || !ui::YazmaYetkisiVar())
        return;
    if (m_saltOkunur) {
        // Locked against changes, an installment is paid through the payment voucher.
        ui::notReady(QStringLiteral("Ödeme Fişi ile Taksit Ödeme"), this);
        return;
    }
    const int taksit = m_taksitler->currentRowIndex();
    if (const std::optional<base::Soru> soru = TaksidiOdeSorusu(m_hesap, taksit)) {
        if (!ui::ask(*soru, this))
            return;
    }
    const base::Result<int> odeme = fees::TaksidiOde(m_hesap, taksit);
    if (!odeme) {
        ui::HataBildir(odeme.error());
        return;
    }
    listeleriDoldur();
    m_odemeler->setCurrentCell(*odeme, OdTarih);
    degisiklikKaydet(true);
}

void FrmOgrenciAidat::AidatPenceresi()
{
    if (m_ogrKayitId <= 0 || m_aktifSatir < 0 || m_saltOkunur || !ui::YazmaYetkisiVar())
        return;
    if (m_hesap.satir.kayitId > 0 && !Kaydet())
        return;
    if (!ui::passed(AidatDegisiklikKontrol(m_db, m_hesap.satir.aidatId, m_ogrKayitId)))
        return;
    AidatSecimBaglami baglam;
    for (int r = 0; r < m_hesaplar->rowCount(); ++r) {
        if (m_hesaplar->number(r, HsAidatId) > 0)
            baglam.ogrenciAidatIdleri << m_hesaplar->number(r, HsAidatId);
    }
    baglam.aktifAidatAdi = m_hesap.satir.aidatTanim;
    baglam.aktifBorc = m_hesap.satir.borc;
    FrmAidatList liste(m_db, baglam, this);
    std::optional<AidatSecimi> secim;
    connect(&liste, &FrmAidatList::aidatSecildi, this,
            [&secim](const AidatSecimi &s) { secim = s; });
    liste.exec();
    if (!secim)
        return;
    const base::Result<std::optional<AidatTanimi>> tanim
        = AidatTaksitDetayGoster(m_db, secim->aidatId);
    if (!tanim) {
        ui::HataBildir(tanim.error());
        return;
    }
    if (!*tanim)
        return;
    AidatTanimi verilen = **tanim;
    if (secim->degistirildi) {
        // Another count or price: the total they make, planned anew.
        const base::Result<AidatTanimi> adetli
            = AdetliTanim(verilen, secim->toplam, users::durum().TaksitYuvarlama, paraFormati());
        if (!adetli) {
            ui::HataBildir(adetli.error());
            return;
        }
        verilen = *adetli;
    }
    HesapKaydi yeni = m_hesap;
    if (!ui::passed(AidatEkle(yeni, verilen)))
        return;
    m_hesap = yeni;
    listeleriDoldur();
    degisiklikKaydet(false);
}

void FrmOgrenciAidat::OtomatikTaksitlendirme()
{
    if (m_ogrKayitId <= 0 || m_saltOkunur || m_hesap.satir.aidatId < 1 || !ui::YazmaYetkisiVar())
        return;
    if (!Kaydet())
        return;
    // A plan is made anew only while nothing has been paid on the account.
    if (!m_hesap.odemeler.isEmpty() || m_hesap.odenenPesinat) {
        ui::notify(QStringLiteral("Aidat Değişikliği"),
                   QStringLiteral("Bu aidata ödeme yapılmış; taksitleri otomatik olarak yeniden "
                                  "planlanamaz."),
                   ui::Icon::Warning, this);
        return;
    }
    const base::Result<std::optional<AidatTanimi>> tanim
        = AidatTaksitDetayGoster(m_db, m_hesap.satir.aidatId);
    if (!tanim) {
        ui::HataBildir(tanim.error());
        return;
    }
    const base::Result<QList<IskontoTanimi>> standart = IskontoTanimlariOku(m_db);
    if (!standart) {
        ui::HataBildir(standart.error());
        return;
    }
    AidatTanimi t = tanim->value_or(AidatTanimi{});
    t.aidatTanim = m_hesap.satir.aidatTanim;
    FrmOtomatikTaksit plan(m_hesap, t, *standart, this);
    if (plan.exec() != QDialog::Accepted)
        return;
    m_hesap = plan.hesap();
    listeleriDoldur();
    degisiklikKaydet(false);
}

ui::Grid *FrmOgrenciAidat::sonListe() const
{
    return m_sonListe ? m_sonListe : m_taksitler;
}

void FrmOgrenciAidat::SatirAc()
{
    ui::Grid *liste = sonListe();
    if (m_ogrKayitId <= 0 || liste == m_hesaplar || !ui::YazmaYetkisiVar())
        return;
    if (m_saltOkunur) {
        yeniEkle(liste == m_odemeler);
        return;
    }
    if (liste->isLocked()) {
        ui::notify(QStringLiteral("Dikkat"), QStringLiteral("Bu liste kilitli; satır eklenemez."),
                   ui::Icon::Warning, this);
        return;
    }
    const int row = qMax(0, liste->currentRowIndex());
    if (!ui::ask(
            {QStringLiteral("Dikkat"),
             QStringLiteral("%1. sıraya satır eklemek istediğinizden emin misiniz? ").arg(row + 1)},
            this))
        return;
    if (liste == m_taksitler) {
        DetaySatiri d;
        d.sira = YeniSira(m_hesap.taksitler);
        d.elle = true;
        if (row > 0 && row <= m_hesap.taksitler.size())
            d.odemeSekli = m_hesap.taksitler.at(row - 1).odemeSekli;
        m_hesap.taksitler.insert(qMin(row, int(m_hesap.taksitler.size())), d);
    } else {
        OdemeSatiri o;
        o.sira = YeniSira(m_hesap.odemeler);
        o.elle = true;
        o.kullanici = users::durum().AktifKullanici;
        m_hesap.odemeler.insert(qMin(row, int(m_hesap.odemeler.size())), o);
    }
    // A row without a date is not written; it waits on the screen for its cells.
    listeleriDoldur();
    liste->setCurrentCell(row, 0);
}

void FrmOgrenciAidat::yeniEkle(bool odeme)
{
    if (m_hesap.satir.kayitId <= 0)
        return;
    // Locked against changes, the account takes one row at a time through the entry dialog,
    // and that row is saved.
    QStringList sekiller;
    if (odeme) {
        for (const users::OdemeSekli &s : users::OdemeSekilleriTablosu())
            sekiller << s.ad;
    } else {
        sekiller = taksitSekilleri();
    }
    FrmYeniEkle ekle(odeme ? FrmYeniEkle::Tur::Odeme : FrmYeniEkle::Tur::Taksit, sekiller, this);
    if (ekle.exec() != QDialog::Accepted)
        return;
    HesapKaydi yeni = m_hesap;
    if (odeme) {
        OdemeSatiri o = ekle.odeme();
        o.sira = YeniSira(yeni.odemeler);
        yeni.odemeler.append(o);
    } else {
        DetaySatiri d = ekle.taksit();
        d.sira = YeniSira(yeni.taksitler);
        yeni.taksitler.append(d);
    }
    const KayitBaglami baglam{users::durum().AktifKullanici, users::durum().ParaTuru,
                              users::durum().TaksitFatura == QLatin1String("1")};
    const base::Result<HesapKayitSonucu> sonuc = HesapKaydet(m_db, yeni, baglam);
    if (!sonuc) {
        ui::HataBildir(sonuc.error());
        return;
    }
    m_hesap = yeni;
    listeleriDoldur();
    hesapSatiriniGoster(m_aktifSatir);
    genelKutulariGoster(cariAyIlkGunu());
    if (odeme)
        kasayaAktar();
}

void FrmOgrenciAidat::SatirSil()
{
    ui::Grid *liste = sonListe();
    if (liste == m_odemeler && !m_yazma) {
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Silme Yetkiniz yoktur."),
                   ui::Icon::Warning, this);
        return;
    }
    if (m_ogrKayitId <= 0 || !ui::YazmaYetkisiVar())
        return;
    const int row = liste->currentRowIndex();
    if (liste == m_hesaplar) {
        if (m_saltOkunur || row < 0 || m_hesap.satir.kayitId <= 0)
            return;
        if (!ui::ask({QStringLiteral("Dikkat"),
                      m_hesap.satir.aidatTanim
                          + QStringLiteral(" tanımlı Aidat Bilgisini öğrenciden silmek istiyor "
                                           "musunuz?\n(Not: Eğer öğrencide bu aidat bilgisine "
                                           "yapılan ödemeler var ise silinecektir.)")},
                     this))
            return;
        if (!ui::passed(AidatSil(m_db, m_hesap.satir, users::durum().AktifKullanici)))
            return;
        OgrenciAidatTanimGoster(qMax(0, row - 1));
        genelKutulariGoster(cariAyIlkGunu());
        return;
    }
    if (liste->isLocked())
        return;
    if (liste == m_taksitler) {
        if (row < 0 || row >= m_hesap.taksitler.size())
            return;
        if (!ui::ask(
                {QStringLiteral("Dikkat"),
                 QStringLiteral("%1. satırı silmek istediğinizden emin misiniz? ").arg(row + 1)},
                this))
            return;
        m_hesap.taksitler.removeAt(row);
    } else {
        if (row < 0 || row >= m_hesap.odemeler.size())
            return;
        if (!m_hesap.odemeler.at(row).odenen.isZero()
            && !ui::ask({QStringLiteral("UYARI"),
                         QStringLiteral("%1. SATIRDAKİ ÖDEMEYİ SİLMEK İSTEDİĞİNİZDEN EMİN "
                                        "MİSİNİZ? \n")
                             .arg(row + 1)},
                        this))
            return;
        m_hesap.silinenOdemeler.append(m_hesap.odemeler.takeAt(row));
    }
    listeleriDoldur();
    liste->setCurrentCell(qMin(row, liste->rowCount() - 1), 0);
    degisiklikKaydet(false);
}

// ---- keys and events -------------------------------------------------------------------------

void FrmOgrenciAidat::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::NoModifier) {
        event->accept();
        AidatPenceresi();
        return;
    }
    ui::Screen::keyPressEvent(event);
}

bool FrmOgrenciAidat::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_numara && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)
            && !m_numara->text().trimmed().isEmpty()) {
            ogrenciNumarasiGirildi();
            return true;
        }
    }
    return ui::Screen::eventFilter(watched, event);
}

void FrmOgrenciAidat::closeEvent(QCloseEvent *event)
{
    ui::Screen::closeEvent(event);
    if (event->isAccepted() && m_ogrKayitId > 0)
        (void)users::OgrenciKilitBirak(m_db, false);
}

} // namespace fees
