#include "office_window.h"

#include "maintenance/school.h"
#include "ui/grid.h"
#include "ui/screen.h"
#include "users/frm_sifre.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/user_admin.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

using testing::click;
using testing::scalar;
using testing::typeInto;

namespace {

int rowOf(ui::Grid *grid, int column, const QString &text)
{
    for (int r = 0; r < grid->rowCount(); ++r) {
        if (grid->text(r, column) == text)
            return r;
    }
    return -1;
}

} // namespace

class tst_UsersScreen : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        users::durum() = users::CalismaDurumu();
        users::FrmSifre::setThrottleForTest(false);
    }
    void administratorGivesLimitedRights();
    void passwordMaintenanceScreen();
    void theWaitAfterWrongLoginsKeepsThePasswordBox();
};

void tst_UsersScreen::administratorGivesLimitedRights()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare());
    store::Database &db = o.db();
    testing::MessageRecorder &messages = o.messages;
    o.start();
    shell::MDIAidat &w = o.w();

    QVERIFY(users::KullaniciKaydet(db, u"zerna"_s, u"servis"_s).ok());
    w.ActBar_Click(u"popKullanici"_s);
    QMdiSubWindow *sub = w.screenWindow(u"Kullanici_Sifre"_s);
    QVERIFY(sub);
    QWidget *screen = sub->widget();
    auto *users = screen->findChild<ui::Grid *>(u"vaSpread1"_s);
    auto *rights = screen->findChild<ui::Grid *>(u"vaSpread2"_s);
    // Every user who can log in is listed, the service user too; no password is shown.
    QCOMPARE(users->rowCount(), 2);
    QCOMPARE(users->text(0, 0), u"Müdür"_s);
    QCOMPARE(users->text(1, 0), u"zerna"_s);
    QCOMPARE(users->text(0, 1), u"••••••"_s);
    QCOMPARE(users->text(1, 1), u"••••••"_s);

    // The administrator keeps every right: once any right exists, a command without one is closed.
    users->setCurrentCell(0, 0);
    click(screen, u"Command3"_s);
    click(screen, u"Command4"_s);
    QCOMPARE(screen->findChild<QPushButton *>(u"Command3"_s)->text(), u"&Okuma İşaretsiz"_s);
    QVERIFY(rights->checked(0, 1) && rights->checked(rights->rowCount() - 1, 2));

    // A new user with no name, then with a password that is not confirmed, is refused.
    click(screen, u"Command2"_s);
    QCOMPARE(users->rowCount(), 3);
    click(screen, u"Command2"_s);
    QCOMPARE(messages.texts().value(0), u"Geçerli Bir Kullanıcı Tanımlamalısınız!"_s);
    users->gridModel()->setData(users->gridModel()->index(2, 0), u"Sekreter"_s, Qt::EditRole);
    typeInto(screen, u"Txt_Yeni1"_s, u"abc"_s);
    typeInto(screen, u"Txt_Yeni2"_s, u"abd"_s);
    click(screen, u"Cmd_Ok"_s);
    QCOMPARE(messages.texts().value(1), u"Geçersiz veya yanlış şifre tanımlaması."_s);
    QCOMPARE(users->text(2, 1), QString());
    typeInto(screen, u"Txt_Yeni1"_s, u"abc"_s);
    typeInto(screen, u"Txt_Yeni2"_s, u"abc"_s);
    click(screen, u"Cmd_Ok"_s);
    QCOMPARE(users->text(2, 1), u"••••••"_s);
    // The secretary may read the school's settings, and nothing else.
    // The grid names commands by their captions; the tool name stays out of sight.
    QVERIFY(rights->isColumnHidden(3) && !rights->isColumnHidden(0));
    const int okul = rowOf(rights, 3, u"popOkulBilgileri"_s);
    QVERIFY(okul >= 0);
    rights->gridModel()->setData(rights->gridModel()->index(okul, 1), Qt::Checked,
                                 Qt::CheckStateRole);
    testing::screenshot(screen, u"kullanici-sifre"_s);
    messages.clear();
    click(screen, u"cmdKaydet"_s);
    QCOMPARE(messages.texts(), QStringList{u"Kullanıcılar ve hakları kaydedildi."_s});
    QCOMPARE(users->rowCount(), 3);
    const QString sekreter = *users::Sifrele(u"Sekreter"_s);
    QVERIFY(users::SifreOzetiMi(
        scalar(db, u"SELECT Password FROM Sifre WHERE Username = ?"_s, {sekreter}).toString()));
    QCOMPARE(scalar(db,
                    u"SELECT count(*) FROM Haklar WHERE Kullanici_Adi = ? AND Haklar_Okuma = 1"_s,
                    {sekreter})
                 .toInt(),
             1);
    sub->close();
    QVERIFY(!w.screenWindow(u"Kullanici_Sifre"_s));

    // The secretary logs in.
    testing::ModalDriver driver;
    driver.then([](QWidget *d) {
        typeInto(d, u"txtKullaniciAdi"_s, u"Sekreter"_s);
        typeInto(d, u"txtSifre"_s, u"abc"_s);
        click(d, u"CmdOk"_s);
    });
    users::FrmSifre login(db);
    QCOMPARE(login.exec(), int(QDialog::Accepted));
    QCOMPARE(users::durum().AktifKullanici, u"Sekreter"_s);

    // The users screen is closed to her...
    messages.clear();
    w.ActBar_Click(u"popKullanici"_s);
    QCOMPARE(
        messages.texts(),
        QStringList{u"Bu programa giriş yetkiniz yok. Lütfen Sistem yetkilisi ile görüşünüz."_s});
    QVERIFY(!w.screenWindow(u"Kullanici_Sifre"_s));
    // ...the school's settings open for reading, and the save is refused, by the screen and by
    // the store alike.
    w.ActBar_Click(u"popOkulBilgileri"_s);
    QMdiSubWindow *okulSub = w.screenWindow(u"FrmOkulBilgileri"_s);
    QVERIFY(okulSub);
    typeInto(okulSub->widget(), u"txtOkulAdi"_s, u"Değiştirilmiş Ad"_s);
    messages.clear();
    click(okulSub->widget(), u"cmdKaydet"_s);
    QCOMPARE(
        messages.texts(),
        QStringList{u"Değişiklik yapma yetkiniz yok. Lütfen sistem yetkilisi ile görüşünüz"_s});
    base::Result<maintenance::OkulBilgisi> row = maintenance::OkulbilgisiGetir(db);
    row.value().OkulAdi = u"Arka Kapıdan"_s;
    const base::Status direct = maintenance::OkulbilgisiKaydet(db, *row);
    QVERIFY(!direct);
    QCOMPARE(direct.error().number, store::YazmaYetkisiYokHatasi);
    QCOMPARE(scalar(db, u"SELECT OkulAdi FROM Sabit"_s).toString(), u"Deneme Okulu"_s);
    static_cast<ui::Screen *>(okulSub->widget())->setDirty(false);
}

void tst_UsersScreen::passwordMaintenanceScreen()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare());
    store::Database &db = o.db();
    QVERIFY(users::KullaniciSil(db, *users::Sifrele(u"Müdür"_s)).ok());
    o.start();
    QWidget *screen
        = o.open(u"popProgramaGirisSifresiDegistirme"_s, u"FrmProgramaGirisSifresiDegistirme"_s);
    QCOMPARE(
        o.messages.texts(),
        QStringList{
            u"Tanımlı hiç bir kullanıcı bulunamadı.\nLütfen yeni bir kullanıcı tanımlayınız."_s});
    QVERIFY(screen);
    typeInto(screen, u"txtUsername"_s, u"Kasiyer"_s);
    typeInto(screen, u"txtPassword"_s, u"x1"_s);
    typeInto(screen, u"txtPassword2"_s, u"x1"_s);
    click(screen, u"cmdKaydet"_s);
    testing::screenshot(screen, u"giris-sifresi-degistirme"_s);
    auto *list = screen->findChild<QListWidget *>(u"ListUsername"_s);
    QCOMPARE(list->count(), 1);
    QCOMPARE(list->item(0)->text(), u"Kasiyer"_s);
    QCOMPARE(*users::SifreKontrol(db, u"Kasiyer"_s, u"x1"_s), users::GirisSonucu::Kabul);
    // Choosing a name never brings its password back.
    list->setCurrentRow(0);
    QCOMPARE(screen->findChild<QLineEdit *>(u"txtPassword"_s)->text(), QString());
    click(screen, u"cmdSil"_s);
    QCOMPARE(testing::count(db, u"Sifre"_s), 0);
}

QTEST_MAIN(tst_UsersScreen)
void tst_UsersScreen::theWaitAfterWrongLoginsKeepsThePasswordBox()
{
    // Three wrong passwords: the next try is told to wait, in a line of the window, with the
    // focus left in the password box and "Tamam" still in reach of Enter.
    testing::TestStore s(store::Engine::SQLite);
    QVERIFY(testing::openOffice(s.db()));
    for (int i = 0; i < 3; ++i)
        users::GirisSonucuKaydet(s.db(), u"Müdür"_s, false);
    users::FrmSifre::setThrottleForTest(true);
    users::FrmSifre login(s.db());
    login.show();
    QApplication::setActiveWindow(&login);
    typeInto(&login, u"txtKullaniciAdi"_s, u"Müdür"_s);
    typeInto(&login, u"txtSifre"_s, u"gizli"_s);
    click(&login, u"CmdOk"_s);
    QVERIFY(login.findChild<QLabel *>(u"lblBekle"_s)->text().contains(u"bekleyiniz"_s));
    QVERIFY(login.findChild<QPushButton *>(u"CmdOk"_s)->isEnabled());
    QCOMPARE(QApplication::focusWidget(), login.findChild<QLineEdit *>(u"txtSifre"_s));
    QCOMPARE(login.result(), 0);
}

#include "tst_users_screen.moc"
