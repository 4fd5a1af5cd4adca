#include "fees/frm_aidat_list.h"

#include "base/turkish_text.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "users/session.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>

namespace fees {

namespace {

enum Sutun { SAd = 0, SToplam = 1, SKayitId = 2, SAdet = 3, SFiyat = 4 };

// A count left blank is one unit.
qint64 adetOf(const QVariant &v)
{
    return v.isValid() && !v.isNull() ? v.toLongLong() : 1;
}

} // namespace

FrmAidatList::FrmAidatList(store::Database &db, const AidatSecimBaglami &baglam, QWidget *parent)
    : QDialog(parent)
    , m_db(db)
    , m_baglam(baglam)
{
    setObjectName(QStringLiteral("frmAidatList"));
    setWindowTitle(QStringLiteral("Aidat Seçimi"));
    const QString bicim = users::durum().ParaFormati;
    m_liste = new ui::Grid(this);
    m_liste->setObjectName(QStringLiteral("vaSpread1"));
    m_liste->setColumns(
        {{QStringLiteral("Aidat Tanımı"), ui::ColumnKind::Text, 200, false},
         {QStringLiteral("Toplam Tutar"), ui::ColumnKind::Money, 110, false, false, 0, {}, bicim},
         {QStringLiteral("KayitID"), ui::ColumnKind::Number, 0, false, true},
         {QStringLiteral("Adet"), ui::ColumnKind::Number, 60, false},
         {QStringLiteral("Birim Fiyat"),
          ui::ColumnKind::Money,
          110,
          false,
          false,
          0,
          {},
          QStringLiteral("#,##0.00##")}});
    m_liste->horizontalHeader()->setSectionResizeMode(SAd, QHeaderView::Stretch);
    m_liste->setMinimumSize(520, 260);
    m_degistir = new QCheckBox(QStringLiteral("Aidat Adet ve Birim Fiyat Değiştir"), this);
    m_degistir->setObjectName(QStringLiteral("chkAdetFiyatDegistir"));
    m_tamam = ui::button(QStringLiteral("cmdTamam"), QStringLiteral("&Tamam"), this);
    auto *vazgec = ui::button(QStringLiteral("cmdVazgec"), QStringLiteral("&Vazgeç"), this);

    auto *alt = new QHBoxLayout;
    alt->addWidget(m_degistir);
    alt->addStretch();
    alt->addWidget(m_tamam);
    alt->addWidget(vazgec);
    auto *root = new QVBoxLayout(this);
    root->addWidget(m_liste, 1);
    root->addLayout(alt);

    connect(m_degistir, &QCheckBox::toggled, this, &FrmAidatList::degistirSecildi);
    connect(m_liste, &ui::Grid::cellEdited, this, &FrmAidatList::satirDuzenlendi);
    connect(m_liste, &QAbstractItemView::doubleClicked, this, [this] {
        if (!m_degistir->isChecked()) {
            cmdTamam_Click();
        }
    });
    connect(m_tamam, &QPushButton::clicked, this, &FrmAidatList::cmdTamam_Click);
    connect(vazgec, &QPushButton::clicked, this, &QDialog::reject);
    // A definition saved or deleted meanwhile shows at once.
    connect(&ui::Bildirimler::instance(), &ui::Bildirimler::aidatTanimlariDegisti, this,
            &FrmAidatList::AidatYukle);

    AidatYukle();
    resize(600, 360);
}

void FrmAidatList::AidatYukle()
{
    base::Result<QList<AidatListeSatiri>> liste
        = AidatTaksitGoster(m_db, QStringLiteral("FrmAidatList:AidatYukle"));
    if (!liste) {
        ui::HataBildir(liste.error());
        return;
    }
    m_satirlar = *liste;
    const int current = m_liste->currentRowIndex();
    m_liste->clearRows();
    for (const AidatListeSatiri &s : std::as_const(m_satirlar)) {
        const int row = m_liste->appendRow();
        m_liste->setValue(row, SAd, s.aidatTanim);
        m_liste->setValue(row, SToplam, QVariant::fromValue(s.toplam));
        m_liste->setValue(row, SKayitId, s.kayitId);
        m_liste->setValue(row, SAdet, s.birimAdeti == 0 ? QVariant() : QVariant(s.birimAdeti));
        m_liste->setValue(row, SFiyat,
                          s.birimFiyati.isZero() ? QVariant() : QVariant::fromValue(s.birimFiyati));
    }
    if (m_liste->rowCount() > 0) {
        m_liste->setCurrentCell(qBound(0, current, m_liste->rowCount() - 1), SAd);
    }
}

void FrmAidatList::degistirSecildi(bool degistir)
{
    m_tamam->setText(degistir ? QStringLiteral("&Değiştir") : QStringLiteral("&Tamam"));
    m_liste->setColumnEditable(SAdet, degistir);
    m_liste->setColumnEditable(SFiyat, degistir);
    if (!degistir) {
        // Leaving the mode drops what was typed: the definitions' own values stand again.
        AidatYukle();
    }
}

void FrmAidatList::satirDuzenlendi(int row, int column)
{
    if (column != SAdet && column != SFiyat) {
        return;
    }
    const Para fiyat = m_liste->para(row, SFiyat);
    m_liste->setValue(row, SToplam,
                      QVariant::fromValue(fiyat * adetOf(m_liste->value(row, SAdet))));
}

void FrmAidatList::cmdTamam_Click()
{
    const int row = m_liste->currentRowIndex();
    if (row < 0 || row >= m_satirlar.size()) {
        return;
    }
    const AidatListeSatiri &tanim = m_satirlar.at(row);
    AidatSecimi secim;
    secim.aidatId = tanim.kayitId;
    secim.aidatTanim = tanim.aidatTanim;
    secim.toplam = m_liste->para(row, SToplam);
    secim.adet = m_liste->value(row, SAdet).isNull() ? 0 : m_liste->number(row, SAdet);
    secim.birimFiyat = m_liste->para(row, SFiyat);
    secim.degistirildi = secim.adet != tanim.birimAdeti || secim.birimFiyat != tanim.birimFiyati;

    if (m_baglam.ogrenciAidatIdleri.contains(secim.aidatId)) {
        ui::notify(QStringLiteral("UYARI"),
                   secim.aidatTanim + QStringLiteral(" öğrencide tanımlanmış."), ui::Icon::Warning,
                   this);
        return;
    }
    if (secim.degistirildi) {
        const QString bicim = users::durum().ParaFormati;
        const QString soru = QStringLiteral("%1 aidatı %2 adet x %3 = %4 tutarıyla eklensin mi?")
                                 .arg(secim.aidatTanim)
                                 .arg(adetOf(m_liste->value(row, SAdet)))
                                 .arg(base::Bicimle(secim.birimFiyat, QStringLiteral("#,##0.00##")),
                                      base::Bicimle(secim.toplam, bicim));
        if (!ui::askYesNo(QStringLiteral("Uyarı"), soru, this)) {
            return;
        }
    }
    if (m_baglam.aktifBorc > Para()) {
        const QString soru = m_baglam.aktifAidatAdi + QStringLiteral(" aidatını ")
                             + secim.aidatTanim
                             + QStringLiteral(" ile değiştirmek istiyor musunuz?") + u'\n'
                             + QStringLiteral("(Not: Öğrencinin daha önce yaptığı ödemeler "
                                              "değişmeyecektir.)");
        if (!ui::askYesNo(QStringLiteral("Uyarı"), soru, this)) {
            reject();
            return;
        }
    }
    m_secim = secim;
    emit aidatSecildi(m_secim);
    accept();
}

} // namespace fees
