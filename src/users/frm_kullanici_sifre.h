#pragma once

#include "ui/screen.h"
#include "users/user_admin.h"

class QLineEdit;
class QPushButton;

namespace store {
class Database;
}
namespace ui {
class Grid;
}

namespace users {

// "Kullanıcı Belirleme ve Şifre Verme": the users (every one who can log in, the service user
// too), and for the chosen user the read and write marks of every command.
class Kullanici_Sifre : public ui::Screen
{
    Q_OBJECT

public:
    explicit Kullanici_Sifre(store::Database &db, QWidget *parent = nullptr);

    void KullaniciYukle();
    bool Kaydet();
    // "Öğrenci Kilitlerini Kaldır": clears every mark on students, one left by a killed program
    // included.
    void KilitleriKaldir();

protected:
    bool save() override { return Kaydet(); }

private:
    void showUsers();
    void userChosen(int row);
    void keepRights();
    void Command2_Click(); // EKLE
    void Command1_Click(); // SİL
    void Command3_Click(); // the read column
    void Command4_Click(); // the write column
    void Cmd_Ok_Click();   // the password boxes
    void userEdited(int row, int column);
    QString rightsKey(int row) const;

    store::Database &m_db;
    QList<KullaniciSatiri> m_users;
    QHash<QString, QList<HakSatiri>> m_rights;
    int m_shownUser = -1;
    ui::Grid *m_vaSpread1 = nullptr;
    ui::Grid *m_vaSpread2 = nullptr;
    QPushButton *m_okuma = nullptr;
    QPushButton *m_yazma = nullptr;
    QLineEdit *m_eski = nullptr;
    QLineEdit *m_yeni1 = nullptr;
    QLineEdit *m_yeni2 = nullptr;
    bool m_filling = false;
};

} // namespace users
