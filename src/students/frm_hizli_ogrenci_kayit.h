#pragma once

#include "ui/screen.h"

class QLabel;
class QProgressBar;

namespace store {
class Database;
}
namespace ui {
class Grid;
}

namespace students {

// "FrmHizliOgrenciKayit", "Hızlı Öğrenci Girişi": new students typed into a grid, one a row.
// Column numbers as the office knows them: 1 number, 2 first name, 3 surname, 4 class, 5 sex,
// 6 department, 7 language; the key is hidden behind them.
class FrmHizliOgrenciKayit : public ui::Screen
{
    Q_OBJECT

public:
    explicit FrmHizliOgrenciKayit(store::Database &db, QWidget *parent = nullptr);

    enum Sutun { No, Ad, Soyad, Sinif, Cinsiyet, Bolum, Dil, Kayit };

    void AlanBolumYabancidilCombo();
    // Refuses a number that a student has already; true when the row may keep it.
    bool OgrenciNoKontrol(int row);
    bool Kaydet();
    ui::Grid *grid() const { return m_grid; }

protected:
    bool save() override { return Kaydet(); }

private:
    void hucreDegisti(int row, int column);
    void satiraGirildi(int row);
    void satirSil();

    store::Database &m_db;
    ui::Grid *m_grid = nullptr;
    QProgressBar *m_progress = nullptr;
    QLabel *m_durum = nullptr;
    bool m_kontrolde = false;
};

} // namespace students
