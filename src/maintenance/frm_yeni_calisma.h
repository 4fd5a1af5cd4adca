#pragma once

#include "maintenance/working_years.h"

#include <QDialog>

class QLineEdit;

namespace store {
class Database;
}

namespace maintenance {

// Names a new working year.
class FrmYeniCalisma : public QDialog
{
    Q_OBJECT

public:
    explicit FrmYeniCalisma(store::Database &db, QWidget *parent = nullptr);

    Calisma calisma() const { return m_calisma; }

private:
    void CalismaKaydet();

    store::Database &m_db;
    QLineEdit *m_ad = nullptr;
    Calisma m_calisma;
};

} // namespace maintenance
