#include "fees/frm_otomatik_taksit.h"

#include "base/turkish_text.h"
#include "fees/installment_plan.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/session.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace fees {

namespace {

enum { PlTarih, PlTutar };
enum { InId, InIsaret, InAciklama, InEsas, InTip, InDeger, InMatrah, InIndirim };

const QStringList &esaslar()
{
    static const QStringList s
        = {QStringLiteral("Esas Tutardan"), QStringLiteral("Kalan Tutardan")};
    return s;
}

const QStringList &tipler()
{
    static const QStringList s = {QStringLiteral("Oran"), QStringLiteral("Tutar")};
    return s;
}

ui::MoneyEdit *moneyBox(const QString &name, bool readOnly, QWidget *parent)
{
    auto *e = new ui::MoneyEdit(parent);
    e->setObjectName(name);
    e->setFormat(users::durum().ParaFormati);
    e->setNegativeAllowed(false);
    e->setMaximumWidth(150);
    if (readOnly) {
        e->setReadOnly(true);
        e->setFocusPolicy(Qt::NoFocus);
    }
    return e;
}

} // namespace

FrmOtomatikTaksit::FrmOtomatikTaksit(const HesapKaydi &hesap, const AidatTanimi &tanim,
                                     const QList<IskontoTanimi> &standart, QWidget *parent)
    : QDialog(parent)
    , m_hesap(hesap)
    , m_tanim(tanim)
    , m_standart(standart)
    , m_bicim(users::durum().ParaFormati)
{
    setObjectName(QStringLiteral("FrmOtomatikTaksit"));
    setWindowTitle(QStringLiteral("Otomatik Taksitlendirme"));
    setModal(true);

    m_aidatTutari = moneyBox(QStringLiteral("CInputBox3"), true, this);
    m_iskonto = moneyBox(QStringLiteral("CInputBox2"), true, this);
    m_toplam = moneyBox(QStringLiteral("CInputBox0"), true, this);
    m_pesinat = moneyBox(QStringLiteral("CInputBox1"), false, this);
    m_taksitSayisi = new QLineEdit(this);
    m_taksitSayisi->setObjectName(QStringLiteral("txtTaksitSayisi"));
    m_taksitSayisi->setMaxLength(3);
    m_taksitSayisi->setMaximumWidth(60);
    m_taksitSayisi->setValidator(nullptr);
    m_kalan = new QLineEdit(this);
    m_kalan->setObjectName(QStringLiteral("txtKalan"));
    m_kalan->setReadOnly(true);
    m_kalan->setFocusPolicy(Qt::NoFocus);
    m_kalan->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_kalan->setMaximumWidth(150);
    m_tarih = new ui::DateEdit(this);
    m_tarih->setObjectName(QStringLiteral("msktxt"));
    m_tarih->setMaximumWidth(110);

    auto *form = new QFormLayout;
    const auto row = [&](const QString &caption, QWidget *w) {
        auto *l = new QLabel(caption, this);
        l->setBuddy(w);
        form->addRow(l, w);
    };
    row(QStringLiteral("Aidat Tutarı :"), m_aidatTutari);
    row(QStringLiteral("İskonto Tutarı :"), m_iskonto);
    row(QStringLiteral("Toplam Tutar :"), m_toplam);
    row(QStringLiteral("P&eşinat :"), m_pesinat);
    row(QStringLiteral("Taksit &Sayısı :"), m_taksitSayisi);
    row(QStringLiteral("Ödemeye &Baş.Tarihi :"), m_tarih);
    row(QStringLiteral("Kalan :"), m_kalan);

    m_plan = new ui::Grid(this);
    m_plan->setObjectName(QStringLiteral("vaSpread2"));
    m_plan->setColumns({{QStringLiteral("Ödeme Tarihi"), ui::ColumnKind::Date, 105},
                        {QStringLiteral("Taksit Tutarı"),
                         ui::ColumnKind::Money,
                         120,
                         true,
                         false,
                         0,
                         {},
                         m_bicim,
                         false}});
    m_plan->horizontalHeader()->setStretchLastSection(true);
    connect(m_plan, &ui::Grid::cellEdited, this, &FrmOtomatikTaksit::planRowEdited);

    auto *indirimler = new QGroupBox(QStringLiteral(" [İndirimler ]"), this);
    m_indirimler = new ui::Grid(indirimler);
    m_indirimler->setObjectName(QStringLiteral("Spr_Indirim"));
    m_indirimler->setColumns(
        {{QStringLiteral("ID"), ui::ColumnKind::Number, 0, false, true},
         {QString(), ui::ColumnKind::Check, 30},
         {QStringLiteral("Açıklama"), ui::ColumnKind::Text, 170, false},
         {QStringLiteral("Hesaplanacak Tutar Türü"), ui::ColumnKind::Combo, 180, true, false, 20,
          esaslar()},
         {QStringLiteral("Tipi"), ui::ColumnKind::Combo, 70, true, false, 10, tipler()},
         {QStringLiteral("İskonto"),
          ui::ColumnKind::Money,
          90,
          true,
          false,
          0,
          {},
          QStringLiteral("#,##0.00##"),
          false},
         {QStringLiteral("Hesaplama Tutarı"),
          ui::ColumnKind::Money,
          130,
          false,
          false,
          0,
          {},
          m_bicim},
         {QStringLiteral("İndirilecek Tutar"),
          ui::ColumnKind::Money,
          130,
          false,
          false,
          0,
          {},
          m_bicim}});
    connect(m_indirimler, &ui::Grid::cellEdited, this, [this] {
        if (!m_filling)
            m_discountsChanged = true;
    });
    auto *yeniden = ui::button(QStringLiteral("cmdYenidenHesapla"),
                               QStringLiteral("İskontoları &Yeniden Hesapla"), indirimler);
    auto *standartlar = ui::button(QStringLiteral("cmdStandartGoster"),
                                   QStringLiteral("Standart İskontoları &Göster"), indirimler);
    connect(yeniden, &QPushButton::clicked, this, &FrmOtomatikTaksit::IskontolariYenidenHesapla);

    // " [ İndirim Tanımları ]": the school's standard list, to be put in place of the student's.
    auto *tanimlar = new QGroupBox(QStringLiteral(" [ İndirim Tanımları ]"), this);
    tanimlar->setObjectName(QStringLiteral("frmIndirimTanimlari"));
    auto *std = new ui::Grid(tanimlar);
    std->setObjectName(QStringLiteral("Spr_Indirim_Std"));
    std->setColumns({{QStringLiteral("İndirim Sırası"), ui::ColumnKind::Text, 200, false},
                     {QStringLiteral("Hesaplanacak Tutar Türü"), ui::ColumnKind::Text, 180, false},
                     {QStringLiteral("Tipi"), ui::ColumnKind::Text, 70, false},
                     {QStringLiteral("İskonto"),
                      ui::ColumnKind::Money,
                      90,
                      false,
                      false,
                      0,
                      {},
                      QStringLiteral("#,##0.00##")}});
    for (const IskontoTanimi &t : standart) {
        const int r = std->appendRow();
        std->setValue(r, 0, t.aciklama);
        std->setValue(r, 1, esaslar().value(t.kalanTutardan));
        std->setValue(r, 2, tipler().value(t.tipi));
        std->setValue(r, 3, QVariant::fromValue(t.deger));
    }
    auto *guncelle
        = ui::button(QStringLiteral("cmdStandartGuncelle"),
                     QStringLiteral("Standart İskontoları Öğrenciye Güncel&le"), tanimlar);
    auto *kapat
        = ui::button(QStringLiteral("cmdStandartKapat"), QStringLiteral("&Kapat"), tanimlar);
    auto *tl = new QVBoxLayout(tanimlar);
    tl->addWidget(std);
    auto *tb = new QHBoxLayout;
    tb->addStretch();
    tb->addWidget(guncelle);
    tb->addWidget(kapat);
    tl->addLayout(tb);
    tanimlar->hide();
    connect(standartlar, &QPushButton::clicked, this, [tanimlar, std] {
        tanimlar->setVisible(!tanimlar->isVisible());
        if (tanimlar->isVisible())
            std->setFocus();
    });
    connect(guncelle, &QPushButton::clicked, this, &FrmOtomatikTaksit::StandartIskontolariGuncelle);
    connect(kapat, &QPushButton::clicked, tanimlar, &QWidget::hide);
    auto *il = new QVBoxLayout(indirimler);
    il->addWidget(m_indirimler);
    auto *ib = new QHBoxLayout;
    ib->addWidget(yeniden);
    ib->addWidget(standartlar);
    ib->addStretch();
    il->addLayout(ib);

    auto *planla
        = ui::button(QStringLiteral("cmdOdemePlani"), QStringLiteral("Ödeme Pla&nı"), this);
    auto *tamam = ui::button(QStringLiteral("cmdTamam"), QStringLiteral("&Tamam"), this);
    auto *iptal = ui::button(QStringLiteral("cmdIptal"), QStringLiteral("İ&ptal"), this);
    connect(planla, &QPushButton::clicked, this, &FrmOtomatikTaksit::TaksitPlanla);
    connect(tamam, &QPushButton::clicked, this, &FrmOtomatikTaksit::Tamam);
    connect(iptal, &QPushButton::clicked, this, &QDialog::reject);
    for (QLineEdit *e : {static_cast<QLineEdit *>(m_pesinat), m_taksitSayisi})
        connect(e, &QLineEdit::editingFinished, this, &FrmOtomatikTaksit::KalanTutarHesapla);

    auto *left = new QVBoxLayout;
    left->addLayout(form);
    left->addWidget(planla, 0, Qt::AlignLeft);
    left->addStretch();
    auto *top = new QHBoxLayout;
    top->addLayout(left);
    top->addWidget(m_plan, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(tamam);
    buttons->addWidget(iptal);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addWidget(indirimler, 1);
    layout->addWidget(tanimlar);
    layout->addLayout(buttons);
    ui::moveWithEnter(this);
    resize(920, 600);

    // What the fee and the account say: the definition's figures where the account has none.
    m_aidatTutari->setValue(tanim.toplam);
    m_pesinat->setValue(hesap.pesinat.isZero() ? tanim.pesinat : hesap.pesinat);
    if (tanim.odemeBasTarihi.isValid() && !base::SifirTarihMi(tanim.odemeBasTarihi))
        m_tarih->setDate(tanim.odemeBasTarihi);
    m_taksitSayisi->setText(tanim.taksitSayisi > 0 ? QString::number(tanim.taksitSayisi)
                                                   : QString());
    QList<TaksitSatiri> rows = tanim.taksitler;
    if (!hesap.taksitler.isEmpty()) {
        rows.clear();
        for (const DetaySatiri &d : hesap.taksitler)
            rows.append({d.odemeTarihi.date(), d.odenecek});
    }
    fillPlan(rows);
    fillDiscounts(IskontoListesi(standart, hesap.iskontolar));
    m_iskonto->setValue(hesap.satir.iskontoTutari);
    KalanTutarHesapla();
    m_pesinat->setFocus();
}

Para FrmOtomatikTaksit::box(ui::MoneyEdit *e) const
{
    return e->value().value_or(Para());
}

QList<Para> FrmOtomatikTaksit::amounts() const
{
    QList<Para> out;
    for (int r = 0; r < m_plan->rowCount(); ++r)
        out << m_plan->para(r, PlTutar);
    return out;
}

void FrmOtomatikTaksit::fillPlan(const QList<TaksitSatiri> &rows)
{
    m_filling = true;
    m_plan->clearRows();
    for (const TaksitSatiri &t : rows) {
        const int r = m_plan->appendRow();
        m_plan->setValue(r, PlTarih,
                         t.odemeTarihi.isValid() ? QVariant(t.odemeTarihi) : QVariant());
        m_plan->setValue(r, PlTutar, QVariant::fromValue(t.tutar));
    }
    m_filling = false;
}

void FrmOtomatikTaksit::fillDiscounts(const QList<IskontoSecimi> &rows)
{
    m_filling = true;
    m_indirimler->clearRows();
    for (const IskontoSecimi &s : rows) {
        const int r = m_indirimler->appendRow();
        m_indirimler->setValue(r, InId, s.id);
        m_indirimler->setValue(r, InIsaret, s.isaretli);
        m_indirimler->setValue(r, InAciklama, s.aciklama);
        m_indirimler->setValue(r, InEsas, esaslar().value(s.kalanTutardan));
        m_indirimler->setValue(r, InTip, tipler().value(s.tipi));
        m_indirimler->setValue(r, InDeger, QVariant::fromValue(s.deger));
        m_indirimler->setValue(r, InMatrah,
                               s.isaretli ? QVariant::fromValue(s.matrah) : QVariant());
        m_indirimler->setValue(r, InIndirim,
                               s.isaretli ? QVariant::fromValue(s.indirim) : QVariant());
    }
    m_filling = false;
}

QList<IskontoSecimi> FrmOtomatikTaksit::readDiscounts() const
{
    QList<IskontoSecimi> out;
    for (int r = 0; r < m_indirimler->rowCount(); ++r) {
        IskontoSecimi s;
        s.id = m_indirimler->number(r, InId);
        s.isaretli = m_indirimler->checked(r, InIsaret);
        s.aciklama = m_indirimler->text(r, InAciklama);
        s.kalanTutardan
            = esaslar().indexOf(m_indirimler->text(r, InEsas)) == 1 ? KalanTutardan : EsasTutardan;
        s.tipi = tipler().indexOf(m_indirimler->text(r, InTip)) == 1 ? Tutar : Oran;
        s.deger = m_indirimler->para(r, InDeger);
        s.matrah = m_indirimler->para(r, InMatrah);
        s.indirim = m_indirimler->para(r, InIndirim);
        s.sira = r + 1;
        out << s;
    }
    return out;
}

void FrmOtomatikTaksit::KalanTutarHesapla()
{
    const Para toplam = box(m_aidatTutari) - box(m_iskonto);
    m_toplam->setValue(toplam);
    Para planlanan;
    for (const Para p : amounts())
        planlanan = planlanan + p;
    m_kalan->setText(base::Bicimle(toplam - box(m_pesinat) - planlanan, m_bicim));
}

void FrmOtomatikTaksit::TaksitPlanla()
{
    const Para toplam = box(m_aidatTutari) - box(m_iskonto);
    const Para pesinat = box(m_pesinat);
    if ((toplam - pesinat).isZero()) {
        fillPlan({});
        KalanTutarHesapla();
        return;
    }
    PlanGirdisi g;
    g.toplam = toplam;
    g.pesinat = pesinat;
    const QString sayi = m_taksitSayisi->text().trimmed();
    const std::optional<qint64> n = base::TamSayiCoz(sayi);
    if (!sayi.isEmpty() && (!n || *n < 0 || *n > 360)) {
        ui::notify(QStringLiteral("UYARI"),
                   QStringLiteral("Taksit sayısı 0 ile 360 arasında bir tam sayı olmalıdır."),
                   ui::Icon::Warning, this);
        m_taksitSayisi->setFocus();
        m_taksitSayisi->selectAll();
        return;
    }
    g.taksitSayisi = int(n.value_or(0));
    g.baslangic = m_tarih->date();
    g.yuvarlama = users::durum().TaksitYuvarlama;
    g.paraFormati = m_bicim;
    const base::Result<PlanSonucu> plan = fees::TaksitPlanla(g);
    if (!plan) {
        ui::HataBildir(plan.error());
        return;
    }
    if (plan->durum == PlanDurumu::TarihGecersiz) {
        ui::notify(QStringLiteral("UYARI"),
                   QStringLiteral("Ödemeye Başlama Tarihi Girilmedi. Lütfen Giriniz."),
                   ui::Icon::Warning, this);
        m_tarih->setFocus();
        return;
    }
    if (plan->durum == PlanDurumu::TaksitYok) {
        ui::notify(QStringLiteral("UYARI"),
                   QStringLiteral("Taksit Sayısı Girilmedi. Lütfen Giriniz."), ui::Icon::Warning,
                   this);
        m_taksitSayisi->setFocus();
        return;
    }
    fillPlan(plan->taksitler);
    KalanTutarHesapla();
}

void FrmOtomatikTaksit::planRowEdited(int row, int column)
{
    if (m_filling)
        return;
    if (column == PlTutar) {
        // The rows below are spread anew; those above stay.
        const base::Result<QList<Para>> yeni
            = TaksitleriYenidenDagit(amounts(), row + 1, box(m_aidatTutari) - box(m_iskonto),
                                     box(m_pesinat), users::durum().TaksitYuvarlama, m_bicim);
        if (!yeni) {
            ui::HataBildir(yeni.error());
            return;
        }
        m_filling = true;
        for (int r = 0; r < yeni->size(); ++r)
            m_plan->setValue(r, PlTutar, QVariant::fromValue(yeni->at(r)));
        m_filling = false;
    }
    KalanTutarHesapla();
}

void FrmOtomatikTaksit::IskontolariYenidenHesapla()
{
    QList<IskontoSecimi> liste = readDiscounts();
    const base::Result<Para> toplam
        = fees::IskontolariYenidenHesapla(liste, box(m_aidatTutari), m_bicim);
    if (!toplam) {
        ui::HataBildir(toplam.error());
        return;
    }
    fillDiscounts(liste);
    m_iskonto->setValue(*toplam);
    m_discountsChanged = false;
    // Every recalculation replaces the plan.
    TaksitPlanla();
}

void FrmOtomatikTaksit::StandartIskontolariGuncelle()
{
    if (!ui::ask({QStringLiteral("Uyarı"),
                  QStringLiteral("Standart İskontoları Öğrenciye Güncellemek istiyor musunuz?")},
                 this))
        return;
    // The standard rows in their order; the marks stay on the rows that had them.
    QList<IskontoSecimi> eski = readDiscounts();
    QList<IskontoSecimi> liste = IskontoListesi(m_standart, {});
    for (IskontoSecimi &s : liste) {
        for (const IskontoSecimi &e : eski) {
            if (e.id == s.id)
                s.isaretli = e.isaretli;
        }
    }
    fillDiscounts(liste);
    m_discountsChanged = true;
}

void FrmOtomatikTaksit::Tamam()
{
    if (m_discountsChanged)
        IskontolariYenidenHesapla();
    OtomatikPlan plan;
    plan.aidatTanim = m_tanim.aidatTanim;
    plan.aidatTutari = box(m_aidatTutari);
    plan.pesinat = box(m_pesinat);
    plan.iskontolar = readDiscounts();
    plan.paraFormati = m_bicim;
    for (int r = 0; r < m_plan->rowCount(); ++r)
        plan.taksitler.append({m_plan->date(r, PlTarih), m_plan->para(r, PlTutar)});
    HesapKaydi yeni = m_hesap;
    if (!ui::passed(OtomatikTaksitUygula(yeni, plan)))
        return;
    m_hesap = yeni;
    accept();
}

} // namespace fees
