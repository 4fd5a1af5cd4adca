#pragma once

#include "fees/definitions.h"

#include <QDialog>

class QCheckBox;
class QPushButton;

namespace store {
class Database;
}
namespace ui {
class Grid;
}

namespace fees {

// What the student's account screen tells the choice about the account it is on.
struct AidatSecimBaglami
{
    QList<qint64> ogrenciAidatIdleri; // AidatID of every account line of the student
    QString aktifAidatAdi;            // the active account line, the one to be replaced
    Para aktifBorc;
};

// The fee chosen, with the count and unit price to charge it by.
struct AidatSecimi
{
    qint64 aidatId = 0;
    QString aidatTanim;
    Para toplam;
    qint64 adet = 0;
    Para birimFiyat;
    bool degistirildi = false; // count or price differ from the definition's
};

// "Aidat Seçimi": picks a definition for a student's account. On "&Tamam" a fee the student
// already holds is refused, replacing an account with a debt is asked first, and the choice goes
// to the caller through aidatSecildi() and secim(), which adds it to the account.
class FrmAidatList : public QDialog
{
    Q_OBJECT

public:
    FrmAidatList(store::Database &db, const AidatSecimBaglami &baglam, QWidget *parent = nullptr);

    // Fills the list from the definitions.
    void AidatYukle();
    const AidatSecimi &secim() const { return m_secim; }

signals:
    void aidatSecildi(const fees::AidatSecimi &secim);

private:
    void cmdTamam_Click();
    void degistirSecildi(bool degistir);
    void satirDuzenlendi(int row, int column);

    store::Database &m_db;
    AidatSecimBaglami m_baglam;
    AidatSecimi m_secim;
    QList<AidatListeSatiri> m_satirlar;
    ui::Grid *m_liste = nullptr;
    QCheckBox *m_degistir = nullptr;
    QPushButton *m_tamam = nullptr;
};

} // namespace fees
