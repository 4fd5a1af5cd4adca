#pragma once

#include "ui/screen.h"

class QLineEdit;
class QListWidget;

namespace store {
class Database;
}

namespace users {

// "Programa Giriş Şifresi Değiştirme": the small maintenance screen of the users table.
class FrmProgramaGirisSifresiDegistirme : public ui::Screen
{
    Q_OBJECT

public:
    explicit FrmProgramaGirisSifresiDegistirme(store::Database &db, QWidget *parent = nullptr);

    void KullaniciAdiYukle();

private:
    void CmdKaydet_Click();
    void CmdSil_Click();

    store::Database &m_db;
    QListWidget *m_list = nullptr;
    QLineEdit *m_ad = nullptr;
    QLineEdit *m_sifre = nullptr;
    QLineEdit *m_sifre2 = nullptr;
};

} // namespace users
