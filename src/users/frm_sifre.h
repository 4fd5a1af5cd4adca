#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;

namespace store {
class Database;
}

namespace users {

// "Programa Giriş Şifresi": the login. Accepted when SifreKontrol lets the user in; "Çıkış"
// rejects it, and the program ends.
class FrmSifre : public QDialog
{
    Q_OBJECT

public:
    explicit FrmSifre(store::Database &db, QWidget *parent = nullptr);

    // For the tests: no waiting between failed tries.
    static void setThrottleForTest(bool on);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void CmdOk_Click();
    void fillServiceUser();
    void updateWait();

    store::Database &m_db;
    QLineEdit *m_ad = nullptr;
    QLineEdit *m_sifre = nullptr;
    QPushButton *m_tamam = nullptr;
    QLabel *m_bekle = nullptr;
    QTimer *m_timer = nullptr;
    int m_kalan = 0;
};

} // namespace users
