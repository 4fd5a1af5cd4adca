#pragma once

#include "ui/screen.h"

class QComboBox;
class QLabel;

namespace store {
class Database;
}
namespace ui {
class Grid;
}

namespace students {

// "FrmTopluSinifDegistirme", "Toplu Sınıf Değiştirmek": the new class is put beside the ticked
// students of a class, and written when the operator confirms.
class FrmTopluSinifDegistirme : public ui::Screen
{
    Q_OBJECT

public:
    explicit FrmTopluSinifDegistirme(store::Database &db, QWidget *parent = nullptr);

    enum Sutun { No, Ad, Soyad, Sinif, Sec, Anahtar };

    void SinifCombo();
    void OgrenciGetir();
    void TumuIsaretli(bool secili);
    void YeniSinifiTasi();
    // With `sor`, the question comes first. True when written.
    bool Kayit(bool sor = true);
    ui::Grid *grid() const { return m_grid; }

protected:
    bool save() override { return Kayit(false); }
    void closeEvent(QCloseEvent *event) override;

private:
    store::Database &m_db;
    QComboBox *m_combo1 = nullptr;
    QComboBox *m_combo2 = nullptr;
    ui::Grid *m_grid = nullptr;
    QLabel *m_durum = nullptr;
};

} // namespace students
