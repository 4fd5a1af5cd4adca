#pragma once

#include "ui/screen.h"

class QComboBox;

namespace store {
class Database;
}
namespace ui {
class DateEdit;
class Grid;
} // namespace ui

namespace fees {

// "Yapılan Değişiklerin Gösterilmesi": what a user wrote into one table of the working year in a
// date range, from the change log, and its export to an Excel workbook.
class FrmLog : public ui::Screen
{
    Q_OBJECT

public:
    explicit FrmLog(store::Database &db, QWidget *parent = nullptr);

    void Listele();
    // Writes the list to the file; says whether it was made.
    bool ExcelAktar(const QString &dosya);

private:
    void excelSor();

    store::Database &m_db;
    QComboBox *m_kullanici = nullptr;
    ui::DateEdit *m_ilk = nullptr;
    ui::DateEdit *m_son = nullptr;
    QComboBox *m_tablo = nullptr;
    ui::Grid *m_liste = nullptr;
    QStringList m_basliklar;
    QList<QStringList> m_satirlar;
};

} // namespace fees
