#pragma once

#include "fees/definitions.h"
#include "ui/screen.h"

#include <QList>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace store {
class Database;
}
namespace ui {
class DateEdit;
class Grid;
class MoneyEdit;
} // namespace ui

namespace fees {

// "Aidat/Taksit Tanımlama": the school's fee definitions with their installment plans, and the
// frame of the standard discounts.
class FrmAidatTanimlama : public ui::Screen
{
    Q_OBJECT

public:
    explicit FrmAidatTanimlama(store::Database &db, QWidget *parent = nullptr);

    // The list of definitions.
    void AidatTaksitGoster();
    // Opens one definition into the boxes and the plan.
    void AidatTaksitDetayGoster(qint64 kayitId);
    bool AidatTaksitDetayKaydet();
    void TaksitAidatSil();
    // "Ödeme Planı": the installments from the boxes.
    void TaksitPlanla();
    // The totals under the plan.
    void TaksitTutarHesapla();
    // "&Yeni": empty boxes, no rows.
    void Yeni();
    // Saving is open only with a name, a total and a real start date.
    void KaydetKontrol();

    // The discount frame.
    void IskontoGoster();
    void IskontoKaydet();
    void IskontoSil();
    void IskontoEkle();
    void IskontoTasi(int yon);

    qint64 acikKayitId() const { return m_kayitId; }

protected:
    bool save() override { return AidatTaksitDetayKaydet(); }
    void closeEvent(QCloseEvent *event) override;

private:
    struct BoxRow;
    static const QList<BoxRow> &boxTable();
    QGroupBox *makeListBox(const QString &format);
    // The boxes of the open definition, made from the table, in their form.
    QWidget *makeDefinitionBoxes(QWidget *parent);
    QGroupBox *makePlanBox(const QString &format);
    void makeDiscountFrame();

    // "İskonto &Tanımlama": shows the discount frame, or hides it when it shows.
    void iskontoAcKapa();
    void taksitSayisiCikis();
    void listeSecimi(int row);
    void birimFiyatCikis();
    void ondalikDegisti();
    void adetCikis();
    void ondalikSecildi(bool ondalik);
    bool taksitSayisiOku(int *sayi, bool uyar);
    qint64 adetDegeri() const;
    base::Para kutuDegeri(const ui::MoneyEdit *kutu) const;
    void satirSec(qint64 kayitId);

    store::Database &m_db;
    qint64 m_kayitId = 0;
    bool m_dolduruluyor = false;

    ui::Grid *m_liste = nullptr; // vaSpread1
    QLineEdit *m_ad = nullptr;
    QComboBox *m_tur = nullptr;
    ui::MoneyEdit *m_birimFiyat = nullptr; // CInputBoxX
    ui::MoneyEdit *m_miktar = nullptr;     // Spmiktar
    QLineEdit *m_adet = nullptr;
    QCheckBox *m_ondalik = nullptr;
    ui::MoneyEdit *m_kdv = nullptr;
    ui::MoneyEdit *m_toplam = nullptr;
    ui::MoneyEdit *m_pesinat = nullptr;
    QLineEdit *m_taksitSayisi = nullptr;
    ui::DateEdit *m_basTarihi = nullptr;
    ui::Grid *m_taksitler = nullptr; // vaSpread2
    QLineEdit *m_taksitToplami = nullptr;
    QLineEdit *m_ikinciKutu = nullptr;
    QLineEdit *m_pesinatOzet = nullptr;
    QLineEdit *m_kalan = nullptr;
    QLabel *m_kalanEtiketi = nullptr;
    QPushButton *m_kaydet = nullptr;

    QGroupBox *m_iskontoCercevesi = nullptr;
    ui::Grid *m_indirimler = nullptr; // Spr_Indirim
};

} // namespace fees
