#pragma once

#include "students/student_record.h"

#include <QDialog>
#include <QList>

class QLineEdit;

namespace store {
class Database;
}

namespace students {

// "Numara Ad Soyad Sınıf Değiştirme": the shown student's number, names and class, old and new
// side by side; "&Değiştir" writes the new ones when they differ, "İ&ptal" leaves them.
class FrmBilgiDegistir : public QDialog
{
    Q_OBJECT

public:
    FrmBilgiDegistir(store::Database &db, qint64 kayitId, const Kimlik &eski,
                     QWidget *parent = nullptr);

    // True when the new values were written.
    bool degisti() const { return m_degisti; }

private:
    void degistir();

    store::Database &m_db;
    qint64 m_kayitId = 0;
    Kimlik m_eski;
    QList<QLineEdit *> m_kutular; // number, first name, surname, class
    bool m_degisti = false;
};

} // namespace students
