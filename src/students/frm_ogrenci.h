#pragma once

#include "students/student_record.h"
#include "ui/screen.h"

#include <QHash>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;

namespace store {
class Database;
}
namespace ui {
class Grid;
}

namespace students {

// "FrmOgrenci": one student's record with its tabs, the search through the students, and the
// totals of his fee accounts.
class FrmOgrenci : public ui::Screen
{
    Q_OBJECT

public:
    FrmOgrenci(store::Database &db, QWidget *mainWindow = nullptr, QWidget *parent = nullptr);

    // Loads and shows a student by his number (the first with it) or, with `kayitIdIle`, by his
    // key. False when there is none, or another user holds him; a missing one changes nothing.
    bool OgrenciGoster(qint64 numara, bool kayitIdIle);
    bool OgrenciKaydet();
    void OgrenciSil();
    void OgrenciBilgiDegistir();
    void OgrenciAra(Yon yon);
    void Genel_Durum();
    void BuAyYapilacakOdemeler();
    void AlanBolumYabancidilCombo();
    void ekraniTemizle();

    qint64 kayitId() const { return m_kayitId; }
    // The picture in the frame (JPEG), as it would be saved.
    const QByteArray &resim() const { return m_resim; }
    void resimSec(const QString &dosya);

protected:
    bool save() override { return OgrenciKaydet(); }
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QGroupBox *makeMainFrame();
    QHBoxLayout *makeSearchRow();
    QWidget *makeAccountPage();
    // A page of a part's fields in columns, each under its label.
    QWidget *makeFieldPage(Bolum bolum, int columns, QWidget *parent);
    QGroupBox *makeParentGroup(const QString &title, Bolum bolum, QWidget *parent);
    QWidget *makeSiblingsPage();
    QHBoxLayout *makeCommandRow();
    // Lays the boxes of a part's fields out in columns, each under its label; a tick box takes
    // its box's place, and two tick boxes that follow one another share a row. Gives the
    // number of rows of a column.
    int placeFields(QGridLayout *grid, Bolum bolum, int columns, QWidget *parent);
    QWidget *makeFieldBox(const OgrenciAlani &alan, QWidget *parent);
    // "&Yeni Öğrenci": empty boxes, after the question about unsaved changes.
    void yeniOgrenci();
    void COMBO_DOLDUR();
    QVariant kutuDegeri(const QString &alan) const;
    void kutuyaYaz(const QString &alan, const QVariant &deger);
    OgrenciKaydi ekrandanKayit();
    Kimlik ekrandakiKimlik() const;
    bool girisleriDenetle();
    void kayitDurumu();
    void kardesSayisiniYaz();
    void kardesEkle();
    void kardesSil();
    void resmiGoster();
    void fotografAl();
    void tusaBas(int key);
    void cariDurum();
    void gecmisYilAidatlari();
    void listedenSec();
    void bildir(qint64 kayitId, bool aidat);
    void baskasiDegistirdi(qint64 kayitId);

    store::Database &m_db;
    QWidget *m_anaPencere = nullptr;
    qint64 m_kayitId = 0;
    // Whether this user sees guardians' card numbers in clear.
    bool m_kartNoAcik = true;
    bool m_bildiriyor = false; // while this screen tells the others of its own change
    Kimlik m_yuklenen;
    OgrenciKaydi m_kayit;
    QByteArray m_resim;

    QHash<QString, OgrenciAlani> m_alanlar;
    QHash<QString, QWidget *> m_kutular;
    QTabWidget *m_tabs = nullptr;
    QLineEdit *m_numara = nullptr;
    QLineEdit *m_adi = nullptr;
    QLineEdit *m_soyadi = nullptr;
    QComboBox *m_sinif = nullptr;
    QLabel *m_ilkKullanici = nullptr;
    QLabel *m_islemYapan = nullptr;
    QLabel *m_foto = nullptr;
    QComboBox *m_arama = nullptr;
    QLineEdit *m_kardesSayisi = nullptr;
    ui::Grid *m_kardesler = nullptr;
    ui::Grid *m_buAy = nullptr;
    QLabel *m_buAyToplam = nullptr;
    QLabel *m_toplamBorc = nullptr;
    QLabel *m_toplamOdenen = nullptr;
    QLabel *m_kalan = nullptr;
    QPlainTextEdit *m_ozel = nullptr;
    QPushButton *m_cmdKaydet = nullptr;
    QPushButton *m_cmdSil = nullptr;
    QPushButton *m_cmdDegistir = nullptr;
    QPushButton *m_cmdCariDurum = nullptr;
    QPushButton *m_cmdFotograf = nullptr;
};

} // namespace students
