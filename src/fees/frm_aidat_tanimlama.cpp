#include "fees/frm_aidat_tanimlama.h"

#include "base/turkish_text.h"
#include "fees/discounts.h"
#include "fees/installment_plan.h"
#include "store/schema.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "users/session.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

namespace fees {

using namespace Qt::StringLiterals;

namespace {

// Column numbers of the three lists.
enum ListeSutunu { LsTanim = 0, LsToplam = 1, LsKayitId = 2 };
enum TaksitSutunu { TsTarih = 0, TsTutar = 1, TsKayitId = 2 };
enum IndirimSutunu { IsAciklama = 0, IsId = 1, IsDeger = 2, IsEsas = 3, IsTip = 4 };

const QStringList s_esaslar = {QStringLiteral("Esas"), QStringLiteral("Kalan")};
const QStringList s_tipler = {QStringLiteral("Oran"), QStringLiteral("Tutar")};

QLineEdit *sumBox(const QString &name, QWidget *parent)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setReadOnly(true);
    e->setFocusPolicy(Qt::NoFocus);
    e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return e;
}

const QString s_taksitSayisiMesaji
    = QStringLiteral("Taksit Sayısı tam sayı olmalıdır. Lütfen 0 ile 999 arasında, küsuratsız bir "
                     "sayı giriniz (örnek: 10).");

} // namespace

// A box of the open definition and the member that keeps it. The unit price's boxes share a
// line of the form; every other box has a row of its own.
struct FrmAidatTanimlama::BoxRow
{
    ui::Box box;
    bool priceLine;
    ui::BoxMember<FrmAidatTanimlama> member;
};

// The boxes of the open definition, in the order Tab goes through them.
const QList<FrmAidatTanimlama::BoxRow> &FrmAidatTanimlama::boxTable()
{
    using K = ui::BoxKind;
    using F = FrmAidatTanimlama;
    const int tanim = store::schema::textSize(store::Store::Year, u"AidatTanim"_s, u"AidatTanim"_s);
    // clang-format off
    static const QList<BoxRow> rows = {
        {{u"txtAidatTanim"_s, u"Aidat Tanımı :"_s, K::Text, tanim}, false, &F::m_ad},
        {{u"cmbAidatTuru"_s, u"Aidat Türü :"_s, K::Choice, 0, AidatTurleri()}, false, &F::m_tur},
        {{u"CInputBoxX"_s, u"Aidat Birim Fiyatı :"_s, K::Money}, true, &F::m_birimFiyat},
        {{u"Spmiktar"_s, {}, K::Money, 0, {}, u"#,##0.####"_s}, true, &F::m_miktar},
        {{u"txtAdet"_s, u"Adet"_s, K::Number, 4}, true, &F::m_adet},
        {{u"chkOndalik"_s, u"Ondalık"_s, K::Check}, true, &F::m_ondalik},
        {{u"txtKDVOrani"_s, u"KDV Oranı :"_s, K::Money, 0, {}, u"#,##0.##"_s, 80}, false,
         &F::m_kdv},
        {{u"txtAidatToplam"_s, u"Toplam Tutar (KDV Dahil) :"_s, K::Money, 0, {}, {}, 160}, false,
         &F::m_toplam},
        {{u"txtPesinat"_s, u"Peşinat :"_s, K::Money, 0, {}, {}, 160}, false, &F::m_pesinat},
        {{u"txtTaksitSayisi"_s, u"Taksit Sayısı :"_s, K::Number, 3, {}, {}, 60}, false,
         &F::m_taksitSayisi},
        {{u"txtOdemeBasTarihi"_s, u"Ödemeye Baş.Tarihi :"_s, K::Date}, false, &F::m_basTarihi},
    };
    // clang-format on
    return rows;
}

FrmAidatTanimlama::FrmAidatTanimlama(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("FrmAidatTanimlama"), QStringLiteral("Aidat/Taksit Tanımlama"),
                 parent)
    , m_db(db)
{
    const QString bicim = users::durum().ParaFormati;
    QGroupBox *listeKutusu = makeListBox(bicim);
    auto *bilgi = new QGroupBox(QStringLiteral("Aidat Bilgileri"), this);
    QWidget *kutular = makeDefinitionBoxes(bilgi);
    auto *bl = new QVBoxLayout(bilgi);
    bl->addWidget(kutular);
    bl->addStretch();
    QGroupBox *plan = makePlanBox(bicim);
    auto *ust = new QHBoxLayout;
    ust->addWidget(listeKutusu, 3);
    ust->addWidget(bilgi, 5);
    ust->addWidget(plan, 4);
    makeDiscountFrame();

    // ---- commands
    using F = FrmAidatTanimlama;
    static const ui::Command<F> komutTablosu[] = {
        {u"cmdYeni"_s, u"&Yeni"_s,
         [](F &f) {
             if (f.askToSaveChanges()) {
                 f.Yeni();
             }
         }},
        {u"cmdKaydet"_s, u"K&aydet"_s, [](F &f) { f.AidatTaksitDetayKaydet(); }, {}, &F::m_kaydet},
        {u"cmdSil"_s, u"&Sil"_s, [](F &f) { f.TaksitAidatSil(); }},
        {u"cmdOdemePlani"_s, u"Ödeme &Planı"_s, [](F &f) { f.TaksitPlanla(); }},
        {u"cmdIskontoTanimlama"_s, u"İskonto &Tanımlama"_s, [](F &f) { f.iskontoAcKapa(); }},
        {u"cmdCikis"_s, u"Çı&kış"_s, [](F &f) { f.close(); }},
    };
    const auto komutlar = ui::makeCommands(*this, komutTablosu, this);
    auto *komutSatiri = new QHBoxLayout;
    for (QPushButton *b : komutlar) {
        komutSatiri->addWidget(b);
    }
    // "Çıkış" stands apart at the end.
    komutSatiri->insertStretch(int(komutlar.size()) - 1);

    auto *root = new QVBoxLayout(this);
    root->addLayout(ust, 1);
    root->addWidget(m_iskontoCercevesi);
    root->addLayout(komutSatiri);

    ui::moveWithEnter(kutular);
    watchForChanges(kutular);
    for (QWidget *w : {static_cast<QWidget *>(m_ad), static_cast<QWidget *>(m_toplam)}) {
        ui::markRequired(w, true);
    }

    // ---- wiring
    connect(m_liste->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid()) {
                    listeSecimi(current.row());
                }
            });
    connect(m_ad, &QLineEdit::textChanged, this, &FrmAidatTanimlama::KaydetKontrol);
    connect(m_toplam, &QLineEdit::textChanged, this, &FrmAidatTanimlama::KaydetKontrol);
    connect(m_basTarihi, &QLineEdit::textChanged, this, &FrmAidatTanimlama::KaydetKontrol);
    connect(m_birimFiyat, &QLineEdit::editingFinished, this, &FrmAidatTanimlama::birimFiyatCikis);
    connect(m_miktar, &QLineEdit::editingFinished, this, &FrmAidatTanimlama::ondalikDegisti);
    connect(m_adet, &QLineEdit::editingFinished, this, &FrmAidatTanimlama::adetCikis);
    connect(m_ondalik, &QCheckBox::toggled, this, &FrmAidatTanimlama::ondalikSecildi);
    connect(m_toplam, &QLineEdit::editingFinished, this, &FrmAidatTanimlama::TaksitTutarHesapla);
    connect(m_pesinat, &QLineEdit::editingFinished, this, &FrmAidatTanimlama::TaksitTutarHesapla);
    connect(m_taksitSayisi, &QLineEdit::editingFinished, this,
            &FrmAidatTanimlama::taksitSayisiCikis);
    connect(m_taksitler, &ui::Grid::cellEdited, this, [this](int, int column) {
        setDirty(true);
        if (column == TsTutar) {
            TaksitTutarHesapla();
        }
    });
    for (ui::MoneyEdit *e : {m_birimFiyat, m_toplam, m_pesinat}) {
        e->setFormat(bicim);
        e->setNegativeAllowed(false);
    }
    ondalikSecildi(false);
    Yeni();
    AidatTaksitGoster();
    resize(1060, 620);
}

QGroupBox *FrmAidatTanimlama::makeListBox(const QString &format)
{
    auto *listeKutusu = new QGroupBox(QStringLiteral("Aidat Tanımları"), this);
    m_liste = new ui::Grid(listeKutusu);
    m_liste->setObjectName(QStringLiteral("vaSpread1"));
    m_liste->setColumns(
        {{QStringLiteral("Tanım"), ui::ColumnKind::Text, 150, false},
         {QStringLiteral("Toplam Tutar"), ui::ColumnKind::Money, 100, false, false, 0, {}, format},
         {QStringLiteral("KayitID"), ui::ColumnKind::Number, 0, false, true}});
    m_liste->setLocked(true);
    m_liste->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_liste->horizontalHeader()->setStretchLastSection(false);
    m_liste->horizontalHeader()->setSectionResizeMode(LsTanim, QHeaderView::Stretch);
    m_liste->setMinimumWidth(270);
    auto *ll = new QVBoxLayout(listeKutusu);
    ll->addWidget(m_liste);
    return listeKutusu;
}

QWidget *FrmAidatTanimlama::makeDefinitionBoxes(QWidget *parent)
{
    auto *kutular = new QWidget(parent);
    QList<std::pair<ui::Box, QWidget *>> satirlar;
    for (const BoxRow &r : boxTable()) {
        QWidget *box = ui::makeBox(r.box, kutular);
        ui::keepBox(*this, r.member, box);
        if (!r.priceLine) {
            satirlar.append({r.box, box});
        }
    }
    m_adet->setFixedWidth(56);
    // The money box and the decimal cell stand in one place; one of them shows.
    auto *fiyatYeri = new QWidget(kutular);
    auto *fiyatYigini = new QStackedLayout(fiyatYeri);
    fiyatYigini->setContentsMargins(0, 0, 0, 0);
    fiyatYigini->addWidget(m_birimFiyat);
    fiyatYigini->addWidget(m_miktar);
    fiyatYeri->setFixedSize(130, m_birimFiyat->sizeHint().height());
    auto *fiyatSatiri = new QHBoxLayout;
    fiyatSatiri->addWidget(fiyatYeri);
    fiyatSatiri->addWidget(new QLabel(QStringLiteral("x"), kutular));
    fiyatSatiri->addWidget(m_adet);
    fiyatSatiri->addWidget(new QLabel(QStringLiteral("Adet"), kutular));
    fiyatSatiri->addWidget(m_ondalik);
    fiyatSatiri->addStretch();
    auto *form = new QFormLayout(kutular);
    form->setContentsMargins(0, 0, 0, 0);
    ui::addFormRows(form, satirlar);
    // The unit price's line comes under the kind of fee.
    int turSatiri = 0;
    form->getWidgetPosition(m_tur, &turSatiri, nullptr);
    form->insertRow(turSatiri + 1, QStringLiteral("Aidat Birim Fiyatı :"), fiyatSatiri);
    return kutular;
}

QGroupBox *FrmAidatTanimlama::makePlanBox(const QString &format)
{
    auto *plan = new QGroupBox(QStringLiteral("Taksitler"), this);
    m_taksitler = new ui::Grid(plan);
    m_taksitler->setObjectName(QStringLiteral("vaSpread2"));
    m_taksitler->setColumns(
        {{QStringLiteral("Ödeme Tarihi"), ui::ColumnKind::Date, 110},
         {QStringLiteral("Taksit Tutarı"), ui::ColumnKind::Money, 130, true, false, 0, {}, format},
         {QStringLiteral("KayitID"), ui::ColumnKind::Number, 0, false, true}});
    m_taksitler->horizontalHeader()->setStretchLastSection(false);
    m_taksitler->horizontalHeader()->setSectionResizeMode(TsTutar, QHeaderView::Stretch);
    m_taksitler->setMinimumWidth(280);
    m_taksitToplami = sumBox(QStringLiteral("txtTaksitToplami"), plan);
    m_ikinciKutu = sumBox(QStringLiteral("txtNetTutar"), plan);
    m_pesinatOzet = sumBox(QStringLiteral("txtPesinatOzet"), plan);
    m_kalan = sumBox(QStringLiteral("txtKalan"), plan);
    m_kalanEtiketi = new QLabel(QStringLiteral("Kalan"), plan);
    m_kalanEtiketi->setObjectName(QStringLiteral("lblKalan"));
    auto *ozet = new QGridLayout;
    ozet->addWidget(new QLabel(QStringLiteral("Taksit Toplamı"), plan), 0, 0);
    ozet->addWidget(m_taksitToplami, 0, 1);
    ozet->addWidget(new QLabel(QStringLiteral("Net Tutar"), plan), 0, 2);
    ozet->addWidget(m_ikinciKutu, 0, 3);
    ozet->addWidget(new QLabel(QStringLiteral("Peşinat"), plan), 1, 0);
    ozet->addWidget(m_pesinatOzet, 1, 1);
    ozet->addWidget(m_kalanEtiketi, 1, 2);
    ozet->addWidget(m_kalan, 1, 3);
    auto *pl = new QVBoxLayout(plan);
    pl->addWidget(m_taksitler, 1);
    pl->addLayout(ozet);
    return plan;
}

void FrmAidatTanimlama::makeDiscountFrame()
{
    m_iskontoCercevesi = new QGroupBox(QStringLiteral(" [ İskonto Tanımlama ]"), this);
    m_iskontoCercevesi->setObjectName(QStringLiteral("fraIskonto"));
    m_indirimler = new ui::Grid(m_iskontoCercevesi);
    m_indirimler->setObjectName(QStringLiteral("Spr_Indirim"));
    m_indirimler->setColumns(
        {{QStringLiteral("Açıklama"), ui::ColumnKind::Text, 260, true, false,
          store::schema::textSize(store::Store::Year, u"IskontoTanim"_s, u"IskontoAciklama"_s)},
         {QStringLiteral("ID"), ui::ColumnKind::Number, 0, false, true},
         {QStringLiteral("İskonto"), ui::ColumnKind::Money, 100},
         {QStringLiteral("Kalan/Esas Tutar"), ui::ColumnKind::Combo, 130, true, false, 0,
          s_esaslar},
         {QStringLiteral("Tutar/Oran"), ui::ColumnKind::Combo, 110, true, false, 0, s_tipler}});
    m_indirimler->horizontalHeader()->setStretchLastSection(false);
    m_indirimler->horizontalHeader()->setSectionResizeMode(IsAciklama, QHeaderView::Stretch);
    m_indirimler->setMinimumHeight(150);

    using F = FrmAidatTanimlama;
    const QString sira = u"İskontolar listedeki sırayla hesaplanır."_s;
    static const ui::Command<F> dugmeler[] = {
        {u"cmdIskontoEkle"_s, u"Ekle"_s, [](F &f) { f.IskontoEkle(); }},
        {u"cmdIskontoKaydet"_s, u"Kaydet"_s, [](F &f) { f.IskontoKaydet(); }},
        {u"cmdIskontoSil"_s, u"Sil"_s, [](F &f) { f.IskontoSil(); }},
        {u"cmdIskontoYukari"_s, u"Yukarı"_s, [](F &f) { f.IskontoTasi(-1); }, sira},
        {u"cmdIskontoAsagi"_s, u"Aşağı"_s, [](F &f) { f.IskontoTasi(1); }, sira},
        {u"cmdIskontoKapat"_s, u"Kapat"_s, [](F &f) { f.m_iskontoCercevesi->hide(); }},
    };
    const auto buttons = ui::makeCommands(*this, dugmeler, m_iskontoCercevesi);
    auto *iskontoDugmeleri = new QVBoxLayout;
    for (QPushButton *b : buttons) {
        iskontoDugmeleri->addWidget(b);
    }
    // "Kapat" stands apart at the foot.
    iskontoDugmeleri->insertStretch(int(buttons.size()) - 1);
    auto *il = new QHBoxLayout(m_iskontoCercevesi);
    il->addWidget(m_indirimler, 1);
    il->addLayout(iskontoDugmeleri);
    m_iskontoCercevesi->setMaximumHeight(240);
    m_iskontoCercevesi->hide();
}

void FrmAidatTanimlama::iskontoAcKapa()
{
    if (m_iskontoCercevesi->isVisible()) {
        m_iskontoCercevesi->setMaximumHeight(240);
        m_iskontoCercevesi->hide();
        return;
    }
    IskontoGoster();
    m_iskontoCercevesi->show();
    m_indirimler->setFocus();
}

void FrmAidatTanimlama::taksitSayisiCikis()
{
    int n = 0;
    if (!taksitSayisiOku(&n, false)) {
        QPointer<QLineEdit> kutu(m_taksitSayisi);
        QTimer::singleShot(0, this, [this, kutu] {
            ui::notify(QStringLiteral("Dikkat"), s_taksitSayisiMesaji, ui::Icon::Warning, this);
            if (kutu) {
                kutu->setFocus(Qt::OtherFocusReason);
                kutu->selectAll();
            }
        });
    }
}

// ---- the list of definitions -------------------------------------------------------------

void FrmAidatTanimlama::AidatTaksitGoster()
{
    base::Result<QList<AidatListeSatiri>> liste = fees::AidatTaksitGoster(m_db);
    if (!liste) {
        ui::HataBildir(liste.error());
        return;
    }
    m_dolduruluyor = true;
    m_liste->clearRows();
    for (const AidatListeSatiri &s : *liste) {
        const int row = m_liste->appendRow();
        m_liste->setValue(row, LsTanim, s.aidatTanim);
        m_liste->setValue(row, LsToplam, QVariant::fromValue(s.toplam));
        m_liste->setValue(row, LsKayitId, s.kayitId);
    }
    satirSec(m_kayitId);
    m_dolduruluyor = false;
}

void FrmAidatTanimlama::satirSec(qint64 kayitId)
{
    for (int row = 0; row < m_liste->rowCount(); ++row) {
        if (kayitId != 0 && m_liste->number(row, LsKayitId) == kayitId) {
            m_liste->setCurrentCell(row, LsTanim);
            m_liste->selectRow(row);
            return;
        }
    }
    m_liste->selectionModel()->clearCurrentIndex();
    m_liste->clearSelection();
}

void FrmAidatTanimlama::listeSecimi(int row)
{
    if (m_dolduruluyor) {
        return;
    }
    const qint64 kayitId = m_liste->number(row, LsKayitId);
    if (kayitId == m_kayitId && !isDirty()) {
        return;
    }
    if (!askToSaveChanges()) {
        // Staying on the open definition: the list points at it again.
        m_dolduruluyor = true;
        satirSec(m_kayitId);
        m_dolduruluyor = false;
        return;
    }
    AidatTaksitDetayGoster(kayitId);
}

void FrmAidatTanimlama::AidatTaksitDetayGoster(qint64 kayitId)
{
    base::Result<std::optional<AidatTanimi>> okunan = fees::AidatTaksitDetayGoster(m_db, kayitId);
    if (!okunan) {
        ui::HataBildir(okunan.error());
        return;
    }
    if (!okunan->has_value()) {
        // Deleted on another workstation meanwhile.
        Yeni();
        AidatTaksitGoster();
        return;
    }
    const AidatTanimi &t = **okunan;
    m_dolduruluyor = true;
    m_kayitId = t.kayitId;
    m_ad->setText(t.aidatTanim);
    m_tur->setCurrentIndex(t.aidatTuru);
    if (t.birimFiyati.isZero()) {
        m_birimFiyat->clear();
        m_miktar->clear();
    } else {
        m_birimFiyat->setValue(t.birimFiyati);
        m_miktar->setValue(t.birimFiyati);
    }
    m_adet->setText(t.birimAdeti == 0 ? QString() : QString::number(t.birimAdeti));
    if (t.kdvOrani.isZero()) {
        m_kdv->clear();
    } else {
        m_kdv->setValue(t.kdvOrani);
    }
    m_toplam->setValue(t.toplam);
    m_pesinat->setValue(t.pesinat);
    m_taksitSayisi->setText(QString::number(t.taksitSayisi));
    m_basTarihi->setDate(t.odemeBasTarihi);
    m_taksitler->clearRows();
    for (const TaksitSatiri &s : t.taksitler) {
        const int row = m_taksitler->appendRow();
        m_taksitler->setValue(row, TsTarih, s.odemeTarihi);
        m_taksitler->setValue(row, TsTutar, QVariant::fromValue(s.tutar));
        m_taksitler->setValue(row, TsKayitId, t.kayitId);
    }
    m_dolduruluyor = false;
    setDirty(false);
    TaksitTutarHesapla();
    KaydetKontrol();
}

void FrmAidatTanimlama::Yeni()
{
    m_dolduruluyor = true;
    m_kayitId = 0;
    for (QLineEdit *e : {static_cast<QLineEdit *>(m_ad), static_cast<QLineEdit *>(m_birimFiyat),
                         static_cast<QLineEdit *>(m_miktar), static_cast<QLineEdit *>(m_kdv),
                         static_cast<QLineEdit *>(m_toplam), static_cast<QLineEdit *>(m_pesinat),
                         static_cast<QLineEdit *>(m_taksitSayisi)}) {
        e->clear();
    }
    m_adet->setText(QStringLiteral("1"));
    m_tur->setCurrentIndex(0);
    m_basTarihi->setDate(QDate());
    m_taksitler->clearRows();
    satirSec(0);
    m_dolduruluyor = false;
    setDirty(false);
    TaksitTutarHesapla();
    KaydetKontrol();
    m_ad->setFocus();
}

void FrmAidatTanimlama::KaydetKontrol()
{
    const bool acik = !m_ad->text().trimmed().isEmpty() && !m_toplam->text().trimmed().isEmpty()
                      && m_basTarihi->date().isValid();
    m_kaydet->setEnabled(acik);
}

// ---- unit price and count -----------------------------------------------------------------

qint64 FrmAidatTanimlama::adetDegeri() const
{
    // A unit price without a count is one unit.
    const std::optional<qint64> adet = base::TamSayiCoz(m_adet->text());
    return adet ? *adet : 1;
}

void FrmAidatTanimlama::birimFiyatCikis()
{
    if (m_dolduruluyor) {
        return;
    }
    if (m_birimFiyat->text().trimmed().isEmpty()) {
        m_toplam->clear();
        return;
    }
    const std::optional<base::Para> fiyat = m_birimFiyat->value();
    if (!fiyat) {
        return;
    }
    // The decimal cell keeps the same unit price, so that switching "Ondalık" shows it.
    m_miktar->setValue(*fiyat);
    const base::Result<base::Para> toplam = BirimFiyatToplami(*fiyat, adetDegeri());
    if (!toplam) {
        m_toplam->clear();
        ui::HataBildir(toplam.error());
        return;
    }
    m_toplam->setValue(*toplam);
    setDirty(true);
    TaksitTutarHesapla();
}

void FrmAidatTanimlama::ondalikDegisti()
{
    if (m_dolduruluyor) {
        return;
    }
    if (m_miktar->text().trimmed().isEmpty()) {
        m_toplam->clear();
        return;
    }
    const std::optional<base::Para> fiyat = m_miktar->value();
    if (!fiyat) {
        return;
    }
    m_birimFiyat->setValue(*fiyat);
    const base::Result<base::Para> toplam = OndalikToplam(*fiyat, adetDegeri());
    if (!toplam) {
        m_toplam->clear();
        ui::HataBildir(toplam.error());
        return;
    }
    m_toplam->setValue(*toplam);
    setDirty(true);
    TaksitTutarHesapla();
}

void FrmAidatTanimlama::adetCikis()
{
    if (m_dolduruluyor) {
        return;
    }
    const QString metin = m_adet->text().trimmed();
    if (!metin.isEmpty() && (!base::TamSayiCoz(metin) || *base::TamSayiCoz(metin) < 0)) {
        QPointer<QLineEdit> kutu(m_adet);
        QTimer::singleShot(0, this, [this, kutu] {
            ui::notify(QStringLiteral("Dikkat"),
                       QStringLiteral("Adet tam sayı olmalıdır. Lütfen küsuratsız bir sayı "
                                      "giriniz."),
                       ui::Icon::Warning, this);
            if (kutu) {
                kutu->setFocus(Qt::OtherFocusReason);
                kutu->selectAll();
            }
        });
        return;
    }
    // A new count changes the total of the price that stands.
    if (m_ondalik->isChecked()) {
        if (!m_miktar->text().trimmed().isEmpty()) {
            ondalikDegisti();
        }
    } else if (!m_birimFiyat->text().trimmed().isEmpty()) {
        birimFiyatCikis();
    }
}

void FrmAidatTanimlama::ondalikSecildi(bool ondalik)
{
    m_birimFiyat->setVisible(!ondalik);
    m_miktar->setVisible(ondalik);
    auto *yigin = qobject_cast<QStackedLayout *>(m_birimFiyat->parentWidget()->layout());
    if (yigin) {
        yigin->setCurrentWidget(ondalik ? static_cast<QWidget *>(m_miktar) : m_birimFiyat);
    }
}

// ---- the plan ------------------------------------------------------------------------------

bool FrmAidatTanimlama::taksitSayisiOku(int *sayi, bool uyar)
{
    const QString metin = m_taksitSayisi->text().trimmed();
    if (metin.isEmpty()) {
        *sayi = 0;
        return true;
    }
    const std::optional<qint64> n = base::TamSayiCoz(metin);
    if (n && *n >= 0 && *n <= 999) {
        *sayi = int(*n);
        return true;
    }
    if (uyar) {
        ui::notify(QStringLiteral("Dikkat"), s_taksitSayisiMesaji, ui::Icon::Warning, this);
        m_taksitSayisi->setFocus();
        m_taksitSayisi->selectAll();
    }
    return false;
}

base::Para FrmAidatTanimlama::kutuDegeri(const ui::MoneyEdit *kutu) const
{
    // What the box shows: a text that is no amount counts as 0.
    const std::optional<base::Para> v = kutu->value();
    return base::BicimeYuvarla(v ? *v : base::SayiOku(kutu->text()), users::durum().ParaFormati);
}

void FrmAidatTanimlama::TaksitPlanla()
{
    const QDate baslangic = m_basTarihi->date();
    if (!baslangic.isValid()) {
        ui::notify(QStringLiteral("Uyarı"),
                   QStringLiteral("Ödemeye Başlama Tarihi geçerli değil. Lütfen geçerli bir tarih "
                                  "giriniz."),
                   ui::Icon::Warning, this);
        m_basTarihi->setFocus();
        m_basTarihi->selectAll();
        return;
    }
    int n = 0;
    if (!taksitSayisiOku(&n, true)) {
        return;
    }
    base::Result<base::Para> oran = GenelIskontoOrani(m_db);
    if (!oran) {
        ui::HataBildir(oran.error());
        return;
    }
    PlanGirdisi g;
    g.toplam = kutuDegeri(m_toplam);
    g.pesinat = kutuDegeri(m_pesinat);
    g.taksitSayisi = n;
    g.baslangic = baslangic;
    g.genelOran = *oran;
    g.yuvarlama = users::durum().TaksitYuvarlama;
    g.paraFormati = users::durum().ParaFormati;
    const base::Result<PlanSonucu> planlanan = fees::TaksitPlanla(g);
    if (!planlanan) {
        ui::HataBildir(planlanan.error());
        return;
    }
    const PlanSonucu &plan = *planlanan;
    if (plan.durum != PlanDurumu::Planlandi) {
        return;
    }
    m_taksitler->clearRows();
    for (const TaksitSatiri &s : plan.taksitler) {
        const int row = m_taksitler->appendRow();
        m_taksitler->setValue(row, TsTarih, s.odemeTarihi);
        m_taksitler->setValue(row, TsTutar, QVariant::fromValue(s.tutar));
        m_taksitler->setValue(row, TsKayitId, m_kayitId);
    }
    setDirty(true);
    TaksitTutarHesapla();
    KaydetKontrol();
}

void FrmAidatTanimlama::TaksitTutarHesapla()
{
    base::Result<base::Para> oran = GenelIskontoOrani(m_db);
    if (!oran) {
        base::Error e = oran.error();
        e.label = QStringLiteral("FrmAidatTanimlama:TaksitTutarHesapla");
        ui::HataBildir(e);
        return;
    }
    QList<base::Para> tutarlar;
    for (int row = 0; row < m_taksitler->rowCount(); ++row) {
        tutarlar.append(m_taksitler->para(row, TsTutar));
    }
    const QString bicim = users::durum().ParaFormati;
    const base::Result<TaksitOzeti> hesaplanan = fees::TaksitTutarHesapla(
        kutuDegeri(m_toplam), kutuDegeri(m_pesinat), tutarlar, *oran, bicim);
    if (!hesaplanan) {
        // No figure of a sum that cannot be made stays on the screen.
        for (QLineEdit *kutu : {m_kalan, m_ikinciKutu, m_taksitToplami, m_pesinatOzet}) {
            kutu->clear();
        }
        ui::HataBildir(hesaplanan.error());
        return;
    }
    const TaksitOzeti &ozet = *hesaplanan;
    m_kalanEtiketi->setText(ozet.etiket);
    m_kalan->setText(base::Bicimle(ozet.kalan, bicim));
    m_ikinciKutu->setText(base::Bicimle(ozet.ikinciKutu, bicim));
    m_taksitToplami->setText(base::Bicimle(ozet.taksitToplami, bicim));
    m_pesinatOzet->setText(base::Bicimle(kutuDegeri(m_pesinat), bicim));
}

// ---- save and delete ----------------------------------------------------------------------

bool FrmAidatTanimlama::AidatTaksitDetayKaydet()
{
    KaydetKontrol();
    if (!m_kaydet->isEnabled()) {
        ui::notify(QStringLiteral("Uyarı"),
                   QStringLiteral("Aidat tanımı, toplam tutar ve ödemeye başlama tarihi "
                                  "girilmeden kayıt yapılamaz."),
                   ui::Icon::Warning, this);
        return false;
    }
    for (ui::MoneyEdit *kutu : {m_toplam, m_pesinat, m_kdv, m_birimFiyat, m_miktar}) {
        if (!kutu->isAcceptable()) {
            ui::notify(QStringLiteral("Dikkat"), kutu->refusal(), ui::Icon::Warning, this);
            kutu->setFocus();
            return false;
        }
    }
    int n = 0;
    if (!taksitSayisiOku(&n, true)) {
        return false;
    }
    AidatTanimi t;
    t.kayitId = m_kayitId;
    t.aidatTanim = m_ad->text().trimmed();
    t.aidatTuru = qMax(0, m_tur->currentIndex());
    t.toplam = kutuDegeri(m_toplam);
    t.pesinat = kutuDegeri(m_pesinat);
    t.birimFiyati
        = (m_ondalik->isChecked() ? m_miktar : m_birimFiyat)->value().value_or(base::Para());
    t.birimAdeti = base::TamSayiCoz(m_adet->text()).value_or(0);
    t.kdvOrani = m_kdv->value().value_or(base::Para());
    t.taksitSayisi = n;
    t.odemeBasTarihi = m_basTarihi->date();
    t.ytlCevrim = users::durum().ParaTuru;
    for (int row = 0; row < m_taksitler->rowCount(); ++row) {
        t.taksitler.append(
            TaksitSatiri{m_taksitler->date(row, TsTarih), m_taksitler->para(row, TsTutar)});
    }
    base::Result<KayitSonucu> sonuc = fees::AidatTaksitDetayKaydet(m_db, t);
    if (!sonuc) {
        ui::HataBildir(sonuc.error());
        return false;
    }
    m_kayitId = sonuc->kayitId;
    for (int row = 0; row < m_taksitler->rowCount(); ++row) {
        m_taksitler->setValue(row, TsKayitId, m_kayitId);
    }
    setDirty(false);
    AidatTaksitGoster();
    KaydetKontrol();
    emit ui::Bildirimler::instance().aidatTanimlariDegisti();
    return true;
}

void FrmAidatTanimlama::TaksitAidatSil()
{
    if (m_kayitId == 0) {
        return;
    }
    const QString ad = m_ad->text().trimmed();
    if (!ui::askBeforeLosing(QStringLiteral("Uyarı"),
                             ad + QStringLiteral(" Aidat/Taksit Tanımını silmek istiyor musunuz?"),
                             this)) {
        return;
    }
    if (!ui::passed(fees::TaksitAidatSil(m_db, m_kayitId, ad))) {
        return;
    }
    Yeni();
    AidatTaksitGoster();
    emit ui::Bildirimler::instance().aidatTanimlariDegisti();
}

void FrmAidatTanimlama::closeEvent(QCloseEvent *event)
{
    ui::Screen::closeEvent(event);
    if (event->isAccepted()) {
        // An open fee choice shows the definitions as they now stand.
        emit ui::Bildirimler::instance().aidatTanimlariDegisti();
    }
}

// ---- the discount frame -------------------------------------------------------------------

void FrmAidatTanimlama::IskontoGoster()
{
    base::Result<QList<IskontoTanimi>> liste = IskontoTanimlariOku(m_db);
    if (!liste) {
        ui::HataBildir(liste.error());
        return;
    }
    m_indirimler->clearRows();
    for (const IskontoTanimi &t : *liste) {
        const int row = m_indirimler->appendRow();
        m_indirimler->setValue(row, IsAciklama, t.aciklama);
        m_indirimler->setValue(row, IsId, t.id);
        m_indirimler->setValue(row, IsDeger, QVariant::fromValue(t.deger));
        m_indirimler->setValue(row, IsEsas, s_esaslar.value(t.kalanTutardan));
        m_indirimler->setValue(row, IsTip, s_tipler.value(t.tipi));
    }
}

void FrmAidatTanimlama::IskontoEkle()
{
    const int row = m_indirimler->appendRow();
    m_indirimler->setValue(row, IsId, qint64(0));
    m_indirimler->setValue(row, IsDeger, QVariant::fromValue(base::Para()));
    m_indirimler->setValue(row, IsEsas, s_esaslar.first());
    m_indirimler->setValue(row, IsTip, s_tipler.first());
    m_indirimler->setFocus();
    m_indirimler->setCurrentCell(row, IsAciklama);
}

void FrmAidatTanimlama::IskontoKaydet()
{
    QList<IskontoTanimi> liste;
    for (int row = 0; row < m_indirimler->rowCount(); ++row) {
        IskontoTanimi t;
        t.id = m_indirimler->number(row, IsId);
        t.aciklama = m_indirimler->text(row, IsAciklama);
        t.deger = m_indirimler->para(row, IsDeger);
        // The first entry of a list is its 0, anything else its 1.
        t.kalanTutardan
            = m_indirimler->text(row, IsEsas) == s_esaslar.first() ? EsasTutardan : KalanTutardan;
        t.tipi = m_indirimler->text(row, IsTip) == s_tipler.first() ? Oran : Tutar;
        liste.append(t);
    }
    if (!ui::passed(IskontoTanimlariKaydet(m_db, liste))) {
        return;
    }
    IskontoGoster();
    TaksitTutarHesapla();
}

void FrmAidatTanimlama::IskontoSil()
{
    const int row = m_indirimler->currentRowIndex();
    if (row < 0) {
        return;
    }
    const QString ad = m_indirimler->text(row, IsAciklama);
    if (!ui::askBeforeLosing(QStringLiteral("Uyarı"),
                             ad + QStringLiteral(" indirimini silmek istediğinizden emin misiniz?"),
                             this)) {
        return;
    }
    const qint64 id = m_indirimler->number(row, IsId);
    if (id != 0) {
        if (!ui::passed(IskontoTanimiSil(m_db, id))) {
            return;
        }
    }
    m_indirimler->removeRowAt(row);
    TaksitTutarHesapla();
}

void FrmAidatTanimlama::IskontoTasi(int yon)
{
    const int row = m_indirimler->currentRowIndex();
    const int hedef = row + yon;
    if (row < 0 || hedef < 0 || hedef >= m_indirimler->rowCount()) {
        return;
    }
    const int sutunlar = m_indirimler->gridModel()->columnCount();
    for (int c = 0; c < sutunlar; ++c) {
        const QVariant a = m_indirimler->value(row, c);
        m_indirimler->setValue(row, c, m_indirimler->value(hedef, c));
        m_indirimler->setValue(hedef, c, a);
    }
    m_indirimler->setCurrentCell(hedef, m_indirimler->currentIndex().column());
}

} // namespace fees
