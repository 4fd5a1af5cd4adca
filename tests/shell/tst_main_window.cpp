#include "gui_support.h"
#include "office.h"
#include "test_support.h"

#include "maintenance/school.h"
#include "maintenance/working_years.h"
#include "shell/frm_background.h"
#include "shell/main_window.h"
#include "store/database.h"
#include "store/migration.h"
#include "store/settings.h"
#include "ui/screen.h"
#include "users/command_table.h"
#include "users/frm_sifre.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/session.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRadioButton>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace shell;
using namespace base;
using testing::click;
using testing::typeInto;

using testing::run;
using testing::scalar;

namespace {

void resetState()
{
    users::durum() = users::CalismaDurumu();
}

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        resetState();
        users::FrmSifre::setThrottleForTest(false);
    }
    void aNewOfficeStartsUp();
    void everyCommandOpensItsScreenOrSaysItIsNotReady();
    void rightsCloseCommandsOnceAnyRightExists();
    void explanationsFollowTheirSetting();
    void theWindowOpensMaximisedThenWhereItWasLeft();
    void theFiguresWaitForAnOpenYear();
};

void tst_MainWindow::aNewOfficeStartsUp()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    testing::MessageRecorder messages;
    {
        MDIAidat w(db);
        testing::ModalDriver driver;
        driver.then([](QWidget *d) {
            QCOMPARE(d->objectName(), u"FrmIlkKullanici"_s);
            typeInto(d, u"txtKullaniciAdi"_s, u"Müdür"_s);
            typeInto(d, u"txtSifre1"_s, u"gizli-123"_s);
            typeInto(d, u"txtSifre2"_s, u"gizli-123"_s);
            testing::screenshot(d, u"ilk-kullanici"_s);
            click(d, u"cmdKaydet"_s);
        });
        driver.then([](QWidget *d) {
            QCOMPARE(d->objectName(), u"FrmSifre"_s);
            QCOMPARE(d->windowTitle(), u"Programa Giriş Şifresi"_s);
            // Ctrl+B is the service user's shortcut; the office's own name replaces it.
            auto *ad = d->findChild<QLineEdit *>(u"txtKullaniciAdi"_s);
            ad->setFocus();
            QTest::keyClick(ad, Qt::Key_B, Qt::ControlModifier);
            QCOMPARE(ad->text(), u"Zerna"_s);
            typeInto(d, u"txtKullaniciAdi"_s, u"Müdür"_s);
            QTest::keyClick(ad, Qt::Key_Return); // Enter moves on like Tab
            auto *sifre = d->findChild<QLineEdit *>(u"txtSifre"_s);
            QVERIFY(sifre->hasFocus());
            testing::typeText(sifre, u"gizli-123"_s);
            testing::screenshot(d, u"giris"_s);
            click(d, u"CmdOk"_s);
        });
        driver.then([](QWidget *d) {
            QCOMPARE(d->objectName(), u"frmCalismaAc"_s);
            QVERIFY(d->findChild<QRadioButton *>(u"optYeni"_s)->isChecked());
            click(d, u"cmdTamam"_s);
        });
        driver.then([](QWidget *d) {
            QCOMPARE(d->objectName(), u"FrmYeniCalisma"_s);
            typeInto(d, u"txtCalismaAdi"_s, u"2025-2026 Dönemi"_s);
            testing::screenshot(d, u"yeni-calisma"_s);
            click(d, u"cmdKaydet"_s);
        });
        QVERIFY(w.MDIForm_Load());
        QCOMPARE(driver.remaining(), 0);
        QCOMPARE(users::durum().AktifKullanici, u"Müdür"_s);
        QCOMPARE(db.openYear(), 1);
        // Who is at work stays in the status band when a menu's hint passes over it.
        auto *durum = w.findChild<QLabel *>(u"lblDurum"_s);
        QVERIFY(durum && durum->text().startsWith(u"Kullanıcı: Müdür"_s));
        w.statusBar()->showMessage(u"Okul Bilgileri"_s);
        w.statusBar()->clearMessage();
        QVERIFY(durum->isVisible() && durum->text().startsWith(u"Kullanıcı: Müdür"_s));
        QCOMPARE(w.windowTitle(), u"Zerna Vortel Programı (Ver.: 1.0.0) [ 2025-2026 Dönemi ]"_s);
        QVERIFY(w.action(u"btnCariDurum"_s)->isEnabled());
        // The year was born and migrated in one opening.
        QVERIFY(store::Field_Exist(db, store::Store::Year, u"AidatTanim"_s, u"AidatBirimAdeti"_s));

        // No school settings yet: a command with the school test asks for them first.
        w.ActBar_Click(u"btnCariDurum"_s);
        QCOMPARE(messages.texts().value(0),
                 u"Okul Bilgileriniz Girilmedi. Lütfen Okul Bilgilerinizi Giriniz."_s);
        QMdiSubWindow *sub = w.screenWindow(u"FrmOkulBilgileri"_s);
        QVERIFY(sub);
        QWidget *okul = sub->widget();
        typeInto(okul, u"txtOkulAdi"_s, u"Özel Zerna Koleji"_s);
        typeInto(okul, u"txtOkulIlAdi"_s, u"İzmir"_s);
        auto *yil = okul->findChild<QComboBox *>(u"CmbOgretimYili"_s);
        yil->setCurrentText(u"2025-2026"_s);
        auto *cari = okul->findChild<QComboBox *>(u"CmbCariAy"_s);
        cari->setCurrentIndex(cari->findData(202510));
        w.resize(1180, 760);
        testing::screenshot(okul, u"okul-bilgileri"_s);
        auto *tabs = okul->findChild<QTabWidget *>();
        tabs->setCurrentIndex(1);
        testing::screenshot(okul, u"okul-bilgileri-donem"_s);
        tabs->setCurrentIndex(0);
        messages.clear();
        click(okul, u"cmdKaydet"_s);
        QCOMPARE(messages.texts(), QStringList{u"Okul bilgileri kaydedildi."_s});
        QCOMPARE(w.windowTitle(), u"Zerna Vortel Programı (Ver.: 1.0.0) [ 2025-2026 "
                                  "Dönemi ] [ 2025-2026 ÖĞRETİM YILI ]"_s);
        QCOMPARE(w.background()->okulAdi(), u"Özel Zerna Koleji"_s);
        QCOMPARE(w.cariAyCombo()->currentData().toInt(), 202510);
        sub->close();

        // The working month changes from the tool band and is kept.
        w.cariAyCombo()->setCurrentIndex(w.cariAyCombo()->findData(202511));
        QCOMPARE(scalar(db, u"SELECT CariAy FROM Sabit"_s).toString(), u"202511"_s);
        QCOMPARE(w.background()->cariAySatiri(),
                 u"Aktif Çalışma : 2025-2026 Dönemi   Cari Ay : KASIM - 2025"_s);
        QCOMPARE(w.background()->bilgiSatirlari().value(3), u"TOPLAM ÖĞRENCİ SAYISI : 0"_s);
        w.show();
        testing::screenshot(&w, u"ana-pencere"_s);
        w.close();
    }

    // Started again: the same user logs in, the year comes up chosen, the month is kept.
    resetState();
    MDIAidat again(db);
    testing::ModalDriver driver;
    driver.then([](QWidget *d) {
        typeInto(d, u"txtKullaniciAdi"_s, u"Müdür"_s);
        typeInto(d, u"txtSifre"_s, u"gizli-123"_s);
        click(d, u"CmdOk"_s);
    });
    driver.then([](QWidget *d) {
        QVERIFY(d->findChild<QRadioButton *>(u"optProjeAc"_s)->isChecked());
        testing::screenshot(d, u"calisma-ac"_s);
        click(d, u"cmdTamam"_s);
    });
    QVERIFY(again.MDIForm_Load());
    QCOMPARE(again.cariAyCombo()->currentData().toInt(), 202511);
    QCOMPARE(
        again.windowTitle(),
        u"Zerna Vortel Programı (Ver.: 1.0.0) [ 2025-2026 Dönemi ] [ 2025-2026 ÖĞRETİM YILI ]"_s);
    again.close();
    store::setDefaultDatabase(nullptr);
}

void tst_MainWindow::everyCommandOpensItsScreenOrSaysItIsNotReady()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db, u"muhasebe"_s));
    MDIAidat w(db);
    w.MenuDurumAyarla(true);
    testing::MessageRecorder messages;
    for (const users::Komut &k : users::KomutTablosu()) {
        if (k.tool == "popCikis"_L1 || k.tool == "btnCikis"_L1 || k.tool == "btnCalismaAc"_L1) {
            continue;
        }
        messages.clear();
        const int before = int(w.mdiArea()->subWindowList().size());
        w.ActBar_Click(k.tool);
        const QMdiSubWindow *opened = w.screenWindow(k.screen);
        if (opened) {
            QVERIFY2(opened->widget()->layout(), qPrintable(k.screen + u" is empty"_s));
        } else {
            QCOMPARE(int(w.mdiArea()->subWindowList().size()), before);
            QVERIFY2(messages.texts().value(0).endsWith(u"bölümü bu sürümde henüz hazır değil."_s),
                     qPrintable(k.tool + u": "_s + messages.texts().join(u'|')));
        }
    }
    // A second command for an open screen brings it forward instead of opening it twice.
    w.ActBar_Click(u"popOkulBilgileri"_s);
    w.ActBar_Click(u"btnOkulBilgileri"_s);
    int count = 0;
    for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
        count += sub->widget()->objectName() == "FrmOkulBilgileri"_L1;
    QCOMPARE(count, 1);
    w.mdiArea()->closeAllSubWindows();
    store::setDefaultDatabase(nullptr);
}

void tst_MainWindow::rightsCloseCommandsOnceAnyRightExists()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db, u"muhasebe"_s));
    // Another user may read the school's settings and nothing else.
    const QString other = *users::Sifrele(u"sekreter"_s);
    store::Query q(db, u"INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, Haklar_Yazma, "
                       "Haklar_Program_Adi, Kullanici_Program) VALUES (?, 1, 0, ?, ?)"_s);
    q.bind(other).bind(u"Okul Bilgileri"_s).bind(u"popOkulBilgileri"_s);
    QVERIFY(q.exec());
    MDIAidat w(db);
    users::durum().AktifKullanici = u"sekreter"_s;
    w.MenuDurumAyarla(true);
    testing::MessageRecorder messages;
    // Her menus show what she may open and no more.
    QVERIFY(!w.findChildren<QAction *>(u"popKullanici"_s).isEmpty());
    for (QAction *a : w.findChildren<QAction *>(u"popKullanici"_s))
        QVERIFY(!a->isEnabled());
    QVERIFY(!w.findChildren<QAction *>(u"popOkulBilgileri"_s).isEmpty());
    for (QAction *a : w.findChildren<QAction *>(u"popOkulBilgileri"_s))
        QVERIFY(a->isEnabled());

    w.ActBar_Click(u"popKullanici"_s);
    QCOMPARE(
        messages.texts(),
        QStringList{u"Bu programa giriş yetkiniz yok. Lütfen Sistem yetkilisi ile görüşünüz."_s});
    QCOMPARE(messages.titles(), QStringList{u"Uyarı !"_s});
    // The three report commands pass without the test.
    messages.clear();
    w.ActBar_Click(u"popDiger"_s);
    QVERIFY(messages.texts().value(0).contains(u"henüz hazır değil"_s));

    // The screen opens for reading; its save is refused, also after a command that she may
    // write but that opens nothing leaves its rights behind.
    store::Query more(db, u"INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, Haklar_Yazma, "
                          "Haklar_Program_Adi, Kullanici_Program) VALUES (?, 1, 1, ?, ?)"_s);
    more.bind(other).bind(u"Yönetici Raporu"_s).bind(u"popYoneticiRaporu"_s);
    {
        const store::WriteGuardExemption setUp; // the administrator's doing, not hers
        QVERIFY(more.exec());
    }
    messages.clear();
    w.ActBar_Click(u"popOkulBilgileri"_s);
    QMdiSubWindow *sub = w.screenWindow(u"FrmOkulBilgileri"_s);
    QVERIFY(sub);
    w.ActBar_Click(u"popYoneticiRaporu"_s);
    QVERIFY(messages.texts().value(0).contains(u"henüz hazır değil"_s));
    messages.clear();
    typeInto(sub->widget(), u"txtOkulAdi"_s, u"Başka Ad"_s);
    click(sub->widget(), u"cmdKaydet"_s);
    QCOMPARE(
        messages.texts(),
        QStringList{u"Değişiklik yapma yetkiniz yok. Lütfen sistem yetkilisi ile görüşünüz"_s});
    QCOMPARE(scalar(db, u"SELECT OkulAdi FROM Sabit"_s).toString(), u"Deneme Okulu"_s);
    static_cast<ui::Screen *>(sub->widget())->setDirty(false);
    w.mdiArea()->closeAllSubWindows();
    store::setDefaultDatabase(nullptr);
}

void tst_MainWindow::explanationsFollowTheirSetting()
{
    testing::TestStore s(store::Engine::SQLite);
    store::setDefaultDatabase(&s.db());
    MDIAidat w(s.db());
    w.MenuAciklamaOku();
    QVERIFY(w.background()->aciklamalarGorunur());
    store::INIAyar(s.db(), u"WRITE"_s, u"mnuShow.ini"_s, u"MENU"_s, u"AÇIKLAMALAR"_s, u"FALSE"_s);
    MDIAidat again(s.db());
    again.MenuAciklamaOku();
    QVERIFY(!again.background()->aciklamalarGorunur());
    store::setDefaultDatabase(nullptr);
}

void tst_MainWindow::theWindowOpensMaximisedThenWhereItWasLeft()
{
    // The workstation's settings of this test only.
    QStandardPaths::setTestModeEnabled(true);
    QSettings().clear();
    testing::TestStore s(store::Engine::SQLite);
    QVERIFY(testing::openOffice(s.db()));
    {
        shell::MDIAidat w(s.db());
        w.pencereyiGoster();
        QVERIFY(w.isMaximized());
        w.showNormal();
        w.setGeometry(40, 30, 1000, 700);
        QVERIFY(w.close());
    }
    shell::MDIAidat again(s.db());
    again.pencereyiGoster();
    QVERIFY(!again.isMaximized());
    QCOMPARE(again.size(), QSize(1000, 700));
    QSettings().clear();
}

void tst_MainWindow::theFiguresWaitForAnOpenYear()
{
    testing::TestStore s(store::Engine::SQLite);
    QVERIFY(store::DatabaseAc(s.db(), store::Store::Global, true, false));
    shell::FrmBackGround background(s.db());
    background.show();
    QWidget *pano = background.findChild<QWidget *>(u"Pano"_s);
    QVERIFY(pano);
    QVERIFY(!pano->isVisible());
    QVERIFY(testing::openOffice(s.db()));
    background.BilgiGuncelle();
    QVERIFY(pano->isVisible());
}

QTEST_MAIN(tst_MainWindow)
#include "tst_main_window.moc"
