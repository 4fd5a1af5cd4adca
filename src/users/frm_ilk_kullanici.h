#pragma once

#include <QDialog>

class QLineEdit;

namespace store {
class Database;
}

namespace users {

// Asked once, on an empty user table: nobody could log in otherwise.
class FrmIlkKullanici : public QDialog
{
    Q_OBJECT

public:
    explicit FrmIlkKullanici(store::Database &db, QWidget *parent = nullptr);

private:
    void kaydet();

    store::Database &m_db;
    QLineEdit *m_ad = nullptr;
    QLineEdit *m_sifre1 = nullptr;
    QLineEdit *m_sifre2 = nullptr;
};

} // namespace users
