#pragma once

#include "students/student_list.h"

#include <QDialog>
#include <QStringList>

#include <optional>

class QLineEdit;

namespace store {
class Database;
}
namespace ui {
class Grid;
}

namespace students {

// "frmOgrenciList": the pick-list of students. Typing in a box moves the cursor to the first
// student whose name begins with the text; Enter in a box keeps only those students. "&Tamam",
// a double click or Enter on the list hands the chosen key back.
class FrmOgrenciList : public QDialog
{
    Q_OBJECT

public:
    explicit FrmOgrenciList(store::Database &db, QWidget *parent = nullptr);

    // Fills the list in the order of the box's name, keeping the students whose name begins
    // with the box's text when `suz` is set. False when the store failed.
    bool OgrenciYukle(ListeSirasi tur, bool suz = false);
    // The key of the row under the cursor, 0 when the list is empty.
    qint64 seciliKayit() const;
    ui::Grid *grid() const { return m_grid; }
    int rowCount() const;

signals:
    void ogrenciSecildi(qint64 kayitId);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void imleciTasi(ListeSirasi tur, const QString &metin);
    void tamam();

    store::Database &m_db;
    QLineEdit *m_ad = nullptr;
    QLineEdit *m_soyad = nullptr;
    ui::Grid *m_grid = nullptr;
    ListeSirasi m_sira = ListeSirasi::Ad;
    QStringList m_anahtarlar;
};

// Opens the pick-list and waits: the key chosen, nullopt when it was closed without one.
std::optional<qint64> OgrenciSec(store::Database &db, QWidget *parent);

} // namespace students
