#pragma once

#include "maintenance/working_years.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace store {
class Database;
}

namespace maintenance {

// The working-year screen: open an existing year, start a new one, delete or rename one.
// Accepted when a year was chosen.
class FrmCalismaAc : public QDialog
{
    Q_OBJECT

public:
    // callerMark: "" when the start-up opens it, "xXx" when the command does.
    FrmCalismaAc(store::Database &db, const QString &callerMark, QWidget *parent = nullptr);

    QString callerMark() const { return m_callerMark; }

private:
    void CalismaDoldur();
    void cmdTamam_Click();
    void cmdSil_Click();
    void MnuDegistir_Click();
    bool rightsForChange();

    store::Database &m_db;
    QString m_callerMark;
    QList<Calisma> m_years;
    QRadioButton *m_optYeni = nullptr;
    QRadioButton *m_optProjeAc = nullptr;
    QListWidget *m_lstRecent = nullptr;
    QCheckBox *m_chkBakim = nullptr;
};

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
