#pragma once

#include "fees/account.h"
#include "ui/screen.h"

#include <QVariantMap>

class QCheckBox;
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

// "Öğrenci Cari Durumu": one student's fee accounts. The account list above; the active
// account's installments and payments side by side below it, each with its down payment; the
// month's position of the student at the right. Every edit of a list or a down payment is saved
// at once, as a whole account, in one transaction.
class FrmOgrenciAidat : public ui::Screen
{
    Q_OBJECT

public:
    explicit FrmOgrenciAidat(store::Database &db, QWidget *parent = nullptr);
    ~FrmOgrenciAidat() override;

    // Opens the student: takes his record lock and shows his accounts. False, with the
    // message shown, when another user holds him or the store failed.
    bool OgrenciGoster(qint64 ogrKayitId);
    // The student's account lines; the active one is loaded.
    void OgrenciAidatTanimGoster(int aktif = 0);
    // Loads the account of a line into the two lists.
    void HesapGoster(int satir);
    // Writes the active account; true when written (or nothing was to be written).
    bool Kaydet();
    // "&Taksidi Öde" on the active installment.
    void TaksidiOde();
    // "Aidat Penceresi (F10)": gives the active line a fee, or replaces its fee.
    void AidatPenceresi();
    // "&Otomatik Taksitlendirme": the active account planned anew from its fee, with its
    // discounts.
    void OtomatikTaksitlendirme();
    // "Satır A&ç" and "Satır &Sil" on the list that last had the focus.
    void SatirAc();
    void SatirSil();

    qint64 ogrKayitId() const { return m_ogrKayitId; }
    const HesapKaydi &hesap() const { return m_hesap; }
    bool saltOkunur() const { return m_saltOkunur; }

public slots:
    // Opened again on another student ("ogrKayitId").
    void ekranAyarla(const QVariantMap &ayar);

protected:
    bool save() override { return Kaydet(); }
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeLayout();
    QWidget *makeStudentStrip();
    QWidget *makeAccountPart();
    QWidget *makeInstallmentPart();
    QWidget *makePaymentPart();
    QWidget *makeCommands();
    QWidget *makeLowerTabs();
    void indirimleriGoster();
    void faturalariGoster();
    void bursDokumuAl();
    void bursDokumuKaydet();
    void bursSil();

    void ogrenciNumarasiGirildi();
    void ogrenciListesi();
    void bosEkran();
    // The active account's rows into the lists and boxes, and back.
    void listeleriDoldur();
    void hesapSatiriniGoster(int satir);
    void toplamlariGoster();
    void genelKutulariGoster(const QDate &ay);
    // An edit of the operator: into the account, then saved.
    void taksitDuzenlendi(int row, int column);
    void odemeDuzenlendi(int row, int column);
    void pesinatDuzenlendi();
    void degisiklikKaydet(bool tutarDegisti);
    void kasayaAktar();
    void cekDugmesiniAyarla();
    // "Çek Detayı": the cheque's number, bank, branch, endorsement and due date of the row.
    void cekBilgisi();
    // The entry dialog of the locked screen: one installment or payment, saved.
    void yeniEkle(bool odeme);
    int aktifHesapSatiri() const;
    ui::Grid *sonListe() const;

    store::Database &m_db;
    bool m_yazma = true;
    bool m_saltOkunur = false;
    bool m_kasaAktar = false;
    bool m_dolduruluyor = false; // the program fills the lists: no edit events
    qint64 m_ogrKayitId = 0;
    QString m_ogrSinif;
    HesapKaydi m_hesap;
    int m_aktifSatir = -1;

    QLineEdit *m_numara = nullptr;
    QLabel *m_adSoyad = nullptr;
    QLabel *m_sinif = nullptr;
    ui::Grid *m_hesaplar = nullptr;
    QLabel *m_genelBorc = nullptr;
    QLabel *m_genelOdenen = nullptr;
    QLabel *m_genelKalan = nullptr;
    QLineEdit *m_buAy = nullptr;
    QLineEdit *m_onceki = nullptr;
    QLineEdit *m_toplam = nullptr;
    QLabel *m_cariMetin = nullptr;
    ui::Grid *m_taksitler = nullptr;
    ui::MoneyEdit *m_pesinat = nullptr;
    QCheckBox *m_odemeSekliIsle = nullptr;
    ui::Grid *m_odemeler = nullptr;
    ui::MoneyEdit *m_odenenPesinat = nullptr;
    ui::DateEdit *m_pesinatTarihi = nullptr;
    QPushButton *m_cek = nullptr;
    QPushButton *m_taksidiOde = nullptr;
    QPushButton *m_aidatPenceresi = nullptr;
    QPushButton *m_otomatik = nullptr;
    QPushButton *m_satirAc = nullptr;
    QPushButton *m_satirSil = nullptr;
    QPushButton *m_kaydet = nullptr;
    ui::Grid *m_sonListe = nullptr;
    ui::Grid *m_indirimler = nullptr;
    ui::Grid *m_faturalar = nullptr;
    ui::Grid *m_burslar = nullptr;
};

} // namespace fees
