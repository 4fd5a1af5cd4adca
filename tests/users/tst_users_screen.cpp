#include "gui_support.h"
#include "office.h"
#include "test_support.h"

#include "maintenance/school.h"
#include "maintenance/working_years.h"
#include "shell/main_window.h"
#include "store/database.h"
#include "store/migration.h"
#include "ui/grid.h"
#include "ui/screen.h"
#include "users/frm_sifre.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/session.h"
#include "users/user_admin.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>

using testing::click;
using testing::typeInto;

using testing::run;
using testing::scalar;

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
};

void tst_UsersScreen::administratorGivesLimitedRights()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db));
    users::durum().AktifKullanici = QStringLiteral("Müdür");
    testing::MessageRecorder messages;
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.show();

    QVERIFY(users::KullaniciKaydet(db, QStringLiteral("zerna"), QStringLiteral("servis")).ok());
    w.ActBar_Click(QStringLiteral("popKullanici"));
    QMdiSubWindow *sub = w.screenWindow(QStringLiteral("Kullanici_Sifre"));
    QVERIFY(sub);
    QWidget *screen = sub->widget();
    auto *users = screen->findChild<ui::Grid *>(QStringLiteral("vaSpread1"));
    auto *rights = screen->findChild<ui::Grid *>(QStringLiteral("vaSpread2"));
    // Every user who can log in is listed, the service user too; no password is shown.
    QCOMPARE(users->rowCount(), 2);
    QCOMPARE(users->text(0, 0), QStringLiteral("Müdür"));
    QCOMPARE(users->text(1, 0), QStringLiteral("zerna"));
    QCOMPARE(users->text(0, 1), QStringLiteral("••••••"));
    QCOMPARE(users->text(1, 1), QStringLiteral("••••••"));

    // The administrator keeps every right: once any right exists, a command without one is closed.
    users->setCurrentCell(0, 0);
    click(screen, QStringLiteral("Command3"));
    click(screen, QStringLiteral("Command4"));
    QCOMPARE(screen->findChild<QPushButton *>(QStringLiteral("Command3"))->text(),
             QStringLiteral("&Okuma İşaretsiz"));
    QVERIFY(rights->checked(0, 1) && rights->checked(rights->rowCount() - 1, 2));

    // A new user with no name, then with a password that is not confirmed, is refused.
    click(screen, QStringLiteral("Command2"));
    QCOMPARE(users->rowCount(), 3);
    click(screen, QStringLiteral("Command2"));
    QCOMPARE(messages.texts().value(0), QStringLiteral("Geçerli Bir Kullanıcı Tanımlamalısınız!"));
    users->gridModel()->setData(users->gridModel()->index(2, 0), QStringLiteral("Sekreter"),
                                Qt::EditRole);
    typeInto(screen, QStringLiteral("Txt_Yeni1"), QStringLiteral("abc"));
    typeInto(screen, QStringLiteral("Txt_Yeni2"), QStringLiteral("abd"));
    click(screen, QStringLiteral("Cmd_Ok"));
    QCOMPARE(messages.texts().value(1), QStringLiteral("Geçersiz veya yanlış şifre tanımlaması."));
    QCOMPARE(users->text(2, 1), QString());
    typeInto(screen, QStringLiteral("Txt_Yeni1"), QStringLiteral("abc"));
    typeInto(screen, QStringLiteral("Txt_Yeni2"), QStringLiteral("abc"));
    click(screen, QStringLiteral("Cmd_Ok"));
    QCOMPARE(users->text(2, 1), QStringLiteral("••••••"));
    // The secretary may read the school's settings, and nothing else.
    const int okul = rowOf(rights, 3, QStringLiteral("popOkulBilgileri"));
    QVERIFY(okul >= 0);
    rights->gridModel()->setData(rights->gridModel()->index(okul, 1), Qt::Checked,
                                 Qt::CheckStateRole);
    testing::screenshot(screen, QStringLiteral("kullanici-sifre"));
    messages.clear();
    click(screen, QStringLiteral("cmdKaydet"));
    QCOMPARE(messages.texts(), QStringList{QStringLiteral("Kullanıcılar ve hakları kaydedildi.")});
    QCOMPARE(users->rowCount(), 3);
    const QString sekreter = *users::Sifrele(QStringLiteral("Sekreter"));
    QVERIFY(users::SifreOzetiMi(
        scalar(db, QStringLiteral("SELECT Password FROM Sifre WHERE Username = ?"), {sekreter})
            .toString()));
    QCOMPARE(scalar(db,
                    QStringLiteral(
                        "SELECT count(*) FROM Haklar WHERE Kullanici_Adi = ? AND Haklar_Okuma = 1"),
                    {sekreter})
                 .toInt(),
             1);
    sub->close();
    QVERIFY(!w.screenWindow(QStringLiteral("Kullanici_Sifre")));

    // The secretary logs in.
    testing::ModalDriver driver;
    driver.then([](QWidget *d) {
        typeInto(d, QStringLiteral("txtKullaniciAdi"), QStringLiteral("Sekreter"));
        typeInto(d, QStringLiteral("txtSifre"), QStringLiteral("abc"));
        click(d, QStringLiteral("CmdOk"));
    });
    users::FrmSifre login(db);
    QCOMPARE(login.exec(), int(QDialog::Accepted));
    QCOMPARE(users::durum().AktifKullanici, QStringLiteral("Sekreter"));

    // The users screen is closed to her...
    messages.clear();
    w.ActBar_Click(QStringLiteral("popKullanici"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral(
                 "Bu programa giriş yetkiniz yok. Lütfen Sistem yetkilisi ile görüşünüz.")});
    QVERIFY(!w.screenWindow(QStringLiteral("Kullanici_Sifre")));
    // ...the school's settings open for reading, and the save is refused, by the screen and by
    // the store alike.
    w.ActBar_Click(QStringLiteral("popOkulBilgileri"));
    QMdiSubWindow *okulSub = w.screenWindow(QStringLiteral("FrmOkulBilgileri"));
    QVERIFY(okulSub);
    typeInto(okulSub->widget(), QStringLiteral("txtOkulAdi"), QStringLiteral("Değiştirilmiş Ad"));
    messages.clear();
    click(okulSub->widget(), QStringLiteral("cmdKaydet"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral(
                 "Değişiklik yapma yetkiniz yok. Lütfen sistem yetkilisi ile görüşünüz")});
    base::Result<maintenance::OkulBilgisi> row = maintenance::OkulbilgisiGetir(db);
    row.value().OkulAdi = QStringLiteral("Arka Kapıdan");
    const base::Status direct = maintenance::OkulbilgisiKaydet(db, *row);
    QVERIFY(!direct);
    QCOMPARE(direct.error().number, store::YazmaYetkisiYokHatasi);
    QCOMPARE(scalar(db, QStringLiteral("SELECT OkulAdi FROM Sabit")).toString(),
             QStringLiteral("Deneme Okulu"));
    static_cast<ui::Screen *>(okulSub->widget())->setDirty(false);
    w.mdiArea()->closeAllSubWindows();
    store::setDefaultDatabase(nullptr);
}

void tst_UsersScreen::passwordMaintenanceScreen()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db));
    QVERIFY(users::KullaniciSil(db, *users::Sifrele(QStringLiteral("Müdür"))).ok());
    testing::MessageRecorder messages;
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.ActBar_Click(QStringLiteral("popProgramaGirisSifresiDegistirme"));
    QCOMPARE(
        messages.texts(),
        QStringList{QStringLiteral(
            "Tanımlı hiç bir kullanıcı bulunamadı.\nLütfen yeni bir kullanıcı tanımlayınız.")});
    QWidget *screen = w.screenWindow(QStringLiteral("FrmProgramaGirisSifresiDegistirme"))->widget();
    typeInto(screen, QStringLiteral("txtUsername"), QStringLiteral("Kasiyer"));
    typeInto(screen, QStringLiteral("txtPassword"), QStringLiteral("x1"));
    typeInto(screen, QStringLiteral("txtPassword2"), QStringLiteral("x1"));
    click(screen, QStringLiteral("cmdKaydet"));
    testing::screenshot(screen, QStringLiteral("giris-sifresi-degistirme"));
    auto *list = screen->findChild<QListWidget *>(QStringLiteral("ListUsername"));
    QCOMPARE(list->count(), 1);
    QCOMPARE(list->item(0)->text(), QStringLiteral("Kasiyer"));
    QCOMPARE(*users::SifreKontrol(db, QStringLiteral("Kasiyer"), QStringLiteral("x1")),
             users::GirisSonucu::Kabul);
    // Choosing a name never brings its password back.
    list->setCurrentRow(0);
    QCOMPARE(screen->findChild<QLineEdit *>(QStringLiteral("txtPassword"))->text(), QString());
    click(screen, QStringLiteral("cmdSil"));
    QCOMPARE(scalar(db, QStringLiteral("SELECT count(*) FROM Sifre")).toInt(), 0);
    w.mdiArea()->closeAllSubWindows();
    store::setDefaultDatabase(nullptr);
}

QTEST_MAIN(tst_UsersScreen)
#include "tst_users_screen.moc"
