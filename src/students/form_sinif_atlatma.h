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

// "Form_Sinif_Atlatma", "Sınıf Atlatma": the ticked students of one class go to another class.
class Form_Sinif_Atlatma : public ui::Screen
{
    Q_OBJECT

public:
    explicit Form_Sinif_Atlatma(store::Database &db, QWidget *parent = nullptr);

    enum Sutun { Sec, No, Ad, Soyad, Sinif, Donem };

    void SinifDoldur();
    void OgrenciGoster();
    void TumunuSec(bool secili);
    bool Kaydet();
    ui::Grid *grid() const { return m_grid; }

private:
    store::Database &m_db;
    QComboBox *m_siniflar = nullptr;
    QComboBox *m_siniflar2 = nullptr;
    ui::Grid *m_grid = nullptr;
    QLabel *m_durum = nullptr;
    QString m_gosterilen; // the class whose students the list holds
    bool m_listeVar = false;
};

} // namespace students
