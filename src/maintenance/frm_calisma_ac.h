#pragma once

#include "maintenance/working_years.h"

#include <QDialog>

class QCheckBox;
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

} // namespace maintenance
