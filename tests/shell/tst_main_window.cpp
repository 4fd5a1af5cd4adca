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
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

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
            QCOMPARE(d->objectName(), QStringLiteral("FrmIlkKullanici"));
            typeInto(d, QStringLiteral("txtKullaniciAdi"), QStringLiteral("Müdür"));
            typeInto(d, QStringLiteral("txtSifre1"), QStringLiteral("gizli-123"));
            typeInto(d, QStringLiteral("txtSifre2"), QStringLiteral("gizli-123"));
            testing::screenshot(d, QStringLiteral("ilk-kullanici"));
            click(d, QStringLiteral("cmdKaydet"));
        });
        driver.then([](QWidget *d) {
            QCOMPARE(d->objectName(), QStringLiteral("FrmSifre"));
            QCOMPARE(d->windowTitle(), QStringLiteral("Programa Giriş Şifresi"));
            // Ctrl+B is the service user's shortcut; the office's own name replaces it.
            auto *ad = d->findChild<QLineEdit *>(QStringLiteral("txtKullaniciAdi"));
            ad->setFocus();
            QTest::keyClick(ad, Qt::Key_B, Qt::ControlModifier);
            QCOMPARE(ad->text(), QStringLiteral("Zerna"));
            typeInto(d, QStringLiteral("txtKullaniciAdi"), QStringLiteral("Müdür"));
            QTest::keyClick(ad, Qt::Key_Return); // Enter moves on like Tab
            auto *sifre = d->findChild<QLineEdit *>(QStringLiteral("txtSifre"));
            QVERIFY(sifre->hasFocus());
            testing::typeText(sifre, QStringLiteral("gizli-123"));
            testing::screenshot(d, QStringLiteral("giris"));
            click(d, QStringLiteral("CmdOk"));
        });
        driver.then([](QWidget *d) {
            QCOMPARE(d->objectName(), QStringLiteral("frmCalismaAc"));
            QVERIFY(d->findChild<QRadioButton *>(QStringLiteral("optYeni"))->isChecked());
            click(d, QStringLiteral("cmdTamam"));
        });
        driver.then([](QWidget *d) {
            QCOMPARE(d->objectName(), QStringLiteral("FrmYeniCalisma"));
            typeInto(d, QStringLiteral("txtCalismaAdi"), QStringLiteral("2025-2026 Dönemi"));
            testing::screenshot(d, QStringLiteral("yeni-calisma"));
            click(d, QStringLiteral("cmdKaydet"));
        });
        QVERIFY(w.MDIForm_Load());
        QCOMPARE(driver.remaining(), 0);
        QCOMPARE(users::durum().AktifKullanici, QStringLiteral("Müdür"));
        QCOMPARE(db.openYear(), 1);
        QCOMPARE(w.windowTitle(),
                 QStringLiteral("Zerna Vortel Programı (Ver.: 1.0.0) [ 2025-2026 Dönemi ]"));
        QVERIFY(w.action(QStringLiteral("btnCariDurum"))->isEnabled());
        // The year was born and migrated in one opening.
        QVERIFY(store::Field_Exist(db, store::Store::Year, QStringLiteral("AidatTanim"),
                                   QStringLiteral("AidatBirimAdeti")));

        // No school settings yet: a command with the school test asks for them first.
        w.ActBar_Click(QStringLiteral("btnCariDurum"));
        QCOMPARE(messages.texts().value(0),
                 QStringLiteral("Okul Bilgileriniz Girilmedi. Lütfen Okul Bilgilerinizi Giriniz."));
        QMdiSubWindow *sub = w.screenWindow(QStringLiteral("FrmOkulBilgileri"));
        QVERIFY(sub);
        QWidget *okul = sub->widget();
        typeInto(okul, QStringLiteral("txtOkulAdi"), QStringLiteral("Özel Zerna Koleji"));
        typeInto(okul, QStringLiteral("txtOkulIlAdi"), QStringLiteral("İzmir"));
        auto *yil = okul->findChild<QComboBox *>(QStringLiteral("CmbOgretimYili"));
        yil->setCurrentText(QStringLiteral("2025-2026"));
        auto *cari = okul->findChild<QComboBox *>(QStringLiteral("CmbCariAy"));
        cari->setCurrentIndex(cari->findData(202510));
        w.resize(1180, 760);
        testing::screenshot(okul, QStringLiteral("okul-bilgileri"));
        auto *tabs = okul->findChild<QTabWidget *>();
        tabs->setCurrentIndex(1);
        testing::screenshot(okul, QStringLiteral("okul-bilgileri-donem"));
        tabs->setCurrentIndex(0);
        messages.clear();
        click(okul, QStringLiteral("cmdKaydet"));
        QCOMPARE(messages.texts(), QStringList{QStringLiteral("Okul bilgileri kaydedildi.")});
        QCOMPARE(w.windowTitle(), QStringLiteral("Zerna Vortel Programı (Ver.: 1.0.0) [ 2025-2026 "
                                                 "Dönemi ] [ 2025-2026 ÖĞRETİM YILI ]"));
        QCOMPARE(w.background()->okulAdi(), QStringLiteral("Özel Zerna Koleji"));
        QCOMPARE(w.cariAyCombo()->currentData().toInt(), 202510);
        sub->close();

        // The working month changes from the tool band and is kept.
        w.cariAyCombo()->setCurrentIndex(w.cariAyCombo()->findData(202511));
        QCOMPARE(scalar(db, QStringLiteral("SELECT CariAy FROM Sabit")).toString(),
                 QStringLiteral("202511"));
        QCOMPARE(w.background()->cariAySatiri(),
                 QStringLiteral("Aktif Çalışma : 2025-2026 Dönemi   Cari Ay : KASIM - 2025"));
        QCOMPARE(w.background()->bilgiSatirlari().value(3),
                 QStringLiteral("TOPLAM ÖĞRENCİ SAYISI : 0"));
        w.show();
        testing::screenshot(&w, QStringLiteral("ana-pencere"));
        w.close();
    }

    // Started again: the same user logs in, the year comes up chosen, the month is kept.
    resetState();
    MDIAidat again(db);
    testing::ModalDriver driver;
    driver.then([](QWidget *d) {
        typeInto(d, QStringLiteral("txtKullaniciAdi"), QStringLiteral("Müdür"));
        typeInto(d, QStringLiteral("txtSifre"), QStringLiteral("gizli-123"));
        click(d, QStringLiteral("CmdOk"));
    });
    driver.then([](QWidget *d) {
        QVERIFY(d->findChild<QRadioButton *>(QStringLiteral("optProjeAc"))->isChecked());
        testing::screenshot(d, QStringLiteral("calisma-ac"));
        click(d, QStringLiteral("cmdTamam"));
    });
    QVERIFY(again.MDIForm_Load());
    QCOMPARE(again.cariAyCombo()->currentData().toInt(), 202511);
    QCOMPARE(
        again.windowTitle(),
        QStringLiteral(
            "Zerna Vortel Programı (Ver.: 1.0.0) [ 2025-2026 Dönemi ] [ 2025-2026 ÖĞRETİM YILI ]"));
    again.close();
    store::setDefaultDatabase(nullptr);
}

void tst_MainWindow::everyCommandOpensItsScreenOrSaysItIsNotReady()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db, QStringLiteral("muhasebe")));
    MDIAidat w(db);
    w.MenuDurumAyarla(true);
    testing::MessageRecorder messages;
    for (const users::Komut &k : users::KomutTablosu()) {
        if (k.tool == QLatin1String("popCikis") || k.tool == QLatin1String("btnCikis")
            || k.tool == QLatin1String("btnCalismaAc")) {
            continue;
        }
        messages.clear();
        const int before = int(w.mdiArea()->subWindowList().size());
        w.ActBar_Click(k.tool);
        const QMdiSubWindow *opened = w.screenWindow(k.screen);
        if (opened) {
            QVERIFY2(opened->widget()->layout(),
                     qPrintable(k.screen + QStringLiteral(" is empty")));
        } else {
            QCOMPARE(int(w.mdiArea()->subWindowList().size()), before);
            QVERIFY2(messages.texts().value(0).endsWith(
                         QStringLiteral("bölümü bu sürümde henüz hazır değil.")),
                     qPrintable(k.tool + QStringLiteral(": ")
                                + messages.texts().join(QLatin1Char('|'))));
        }
    }
    // A second command for an open screen brings it forward instead of opening it twice.
    w.ActBar_Click(QStringLiteral("popOkulBilgileri"));
    w.ActBar_Click(QStringLiteral("btnOkulBilgileri"));
    int count = 0;
    for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
        count += sub->widget()->objectName() == QLatin1String("FrmOkulBilgileri");
    QCOMPARE(count, 1);
    w.mdiArea()->closeAllSubWindows();
    store::setDefaultDatabase(nullptr);
}

void tst_MainWindow::rightsCloseCommandsOnceAnyRightExists()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db, QStringLiteral("muhasebe")));
    // Another user may read the school's settings and nothing else.
    const QString other = *users::Sifrele(QStringLiteral("sekreter"));
    store::Query q(db,
                   QStringLiteral("INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, Haklar_Yazma, "
                                  "Haklar_Program_Adi, Kullanici_Program) VALUES (?, 1, 0, ?, ?)"));
    q.bind(other).bind(QStringLiteral("Okul Bilgileri")).bind(QStringLiteral("popOkulBilgileri"));
    QVERIFY(q.exec());
    MDIAidat w(db);
    w.MenuDurumAyarla(true);
    testing::MessageRecorder messages;

    users::durum().AktifKullanici = QStringLiteral("sekreter");
    w.ActBar_Click(QStringLiteral("popKullanici"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral(
                 "Bu programa giriş yetkiniz yok. Lütfen Sistem yetkilisi ile görüşünüz.")});
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("Uyarı !")});
    // The three report commands pass without the test.
    messages.clear();
    w.ActBar_Click(QStringLiteral("popDiger"));
    QVERIFY(messages.texts().value(0).contains(QStringLiteral("henüz hazır değil")));

    // The screen opens for reading; its save is refused, also after a command that she may
    // write but that opens nothing leaves its rights behind.
    store::Query more(
        db, QStringLiteral("INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, Haklar_Yazma, "
                           "Haklar_Program_Adi, Kullanici_Program) VALUES (?, 1, 1, ?, ?)"));
    more.bind(other)
        .bind(QStringLiteral("Yönetici Raporu"))
        .bind(QStringLiteral("popYoneticiRaporu"));
    {
        const store::WriteGuardExemption setUp; // the administrator's doing, not hers
        QVERIFY(more.exec());
    }
    messages.clear();
    w.ActBar_Click(QStringLiteral("popOkulBilgileri"));
    QMdiSubWindow *sub = w.screenWindow(QStringLiteral("FrmOkulBilgileri"));
    QVERIFY(sub);
    w.ActBar_Click(QStringLiteral("popYoneticiRaporu"));
    QVERIFY(messages.texts().value(0).contains(QStringLiteral("henüz hazır değil")));
    messages.clear();
    typeInto(sub->widget(), QStringLiteral("txtOkulAdi"), QStringLiteral("Başka Ad"));
    click(sub->widget(), QStringLiteral("cmdKaydet"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral(
                 "Değişiklik yapma yetkiniz yok. Lütfen sistem yetkilisi ile görüşünüz")});
    QCOMPARE(scalar(db, QStringLiteral("SELECT OkulAdi FROM Sabit")).toString(),
             QStringLiteral("Deneme Okulu"));
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
    store::INIAyar(s.db(), QStringLiteral("WRITE"), QStringLiteral("mnuShow.ini"),
                   QStringLiteral("MENU"), QStringLiteral("AÇIKLAMALAR"), QStringLiteral("FALSE"));
    MDIAidat again(s.db());
    again.MenuAciklamaOku();
    QVERIFY(!again.background()->aciklamalarGorunur());
    store::setDefaultDatabase(nullptr);
}

QTEST_MAIN(tst_MainWindow)
#include "tst_main_window.moc"
