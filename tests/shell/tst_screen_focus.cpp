#include "gui_support.h"
#include "office.h"
#include "test_support.h"

#include "shell/main_window.h"
#include "store/database.h"
#include "users/session.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QTest>

using namespace Qt::StringLiterals;

// Every screen opened from the command table takes the keyboard at once: the focus stands in
// its first control, so that what the operator types lands there.
class tst_ScreenFocus : public QObject
{
    Q_OBJECT

private slots:
    void theFirstBoxHasTheFocus_data();
    void theFirstBoxHasTheFocus();
    void everyWayOfClosingTakesTheFrame_data();
    void everyWayOfClosingTakesTheFrame();
    void aTooLongAddressIsRefusedNotCut();
};

void tst_ScreenFocus::theFirstBoxHasTheFocus_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("screen");
    QTest::addRow("okul") << "popOkulBilgileri"
                          << "FrmOkulBilgileri";
    QTest::addRow("kullanici") << "popKullanici"
                               << "Kullanici_Sifre";
    QTest::addRow("ogrenci") << "btnOgrenciBilgileri"
                             << "FrmOgrenci";
    QTest::addRow("aidat") << "popAidatTanimlama"
                           << "FrmAidatTanimlama";
    QTest::addRow("hizli-giris") << "popHizliOgrenciGirisi"
                                 << "FrmHizliOgrenciKayit";
    QTest::addRow("sinif-atlatma") << "popSinifAtlatma"
                                   << "Form_Sinif_Atlatma";
    QTest::addRow("toplu-sinif") << "popTopluBorcSinifDegistirme"
                                 << "FrmTopluSinifDegistirme";
}

void tst_ScreenFocus::theFirstBoxHasTheFocus()
{
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db));
    testing::MessageRecorder messages;
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.show();
    QApplication::setActiveWindow(&w);
    w.ActBar_Click(tool);
    QMdiSubWindow *sub = w.screenWindow(screen);
    QVERIFY(sub);
    QWidget *focused = QApplication::focusWidget();
    QVERIFY2(focused && sub->widget()->isAncestorOf(focused),
             qPrintable(focused ? focused->objectName() : QStringLiteral("<yok>")));
    // A box, a list or a grid that takes what is typed: not a tab bar, not a button.
    QVERIFY2(qobject_cast<QLineEdit *>(focused) || qobject_cast<QComboBox *>(focused)
                 || qobject_cast<QAbstractItemView *>(focused)
                 || qobject_cast<QPlainTextEdit *>(focused),
             focused->metaObject()->className());
    sub->close();
    store::setDefaultDatabase(nullptr);
}

void tst_ScreenFocus::everyWayOfClosingTakesTheFrame_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("way");
    const QList<QPair<const char *, const char *>> screens
        = {{"popOkulBilgileri", "FrmOkulBilgileri"},
           {"popKullanici", "Kullanici_Sifre"},
           {"btnOgrenciBilgileri", "FrmOgrenci"},
           {"popAidatTanimlama", "FrmAidatTanimlama"},
           {"popHizliOgrenciGirisi", "FrmHizliOgrenciKayit"},
           {"popSinifAtlatma", "Form_Sinif_Atlatma"},
           {"popTopluBorcSinifDegistirme", "FrmTopluSinifDegistirme"}};
    for (const auto &[tool, screen] : screens) {
        for (const char *way : {"cikis", "escape", "ctrl-f4"})
            QTest::addRow("%s-%s", screen, way) << tool << screen << way;
    }
}

void tst_ScreenFocus::everyWayOfClosingTakesTheFrame()
{
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    QFETCH(QString, way);
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db));
    testing::MessageRecorder messages;
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.show();
    QApplication::setActiveWindow(&w);
    w.ActBar_Click(tool);
    // Asked for again while it is open, the screen comes forward: no second copy.
    w.ActBar_Click(tool);
    QCOMPARE(w.mdiArea()->subWindowList().size(), 1);
    QMdiSubWindow *sub = w.screenWindow(screen);
    QVERIFY(sub);
    if (way == u"cikis") {
        auto *cikis = sub->widget()->findChild<QAbstractButton *>(u"cmdCikis"_s);
        QVERIFY(cikis);
        cikis->click();
    } else if (way == u"escape") {
        QWidget *focused = QApplication::focusWidget();
        QTest::keyClick(focused ? focused : sub->widget(), Qt::Key_Escape);
    } else {
        QTest::keyClick(sub, Qt::Key_F4, Qt::ControlModifier);
    }
    QTRY_COMPARE(w.mdiArea()->subWindowList().size(), 0);
    store::setDefaultDatabase(nullptr);
}

void tst_ScreenFocus::aTooLongAddressIsRefusedNotCut()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db));
    const QString before = testing::scalar(db, u"SELECT Adres FROM Sabit"_s).toString();
    testing::MessageRecorder messages;
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.show();
    w.ActBar_Click(u"popOkulBilgileri"_s);
    QWidget *screen = w.screenWindow(u"FrmOkulBilgileri"_s)->widget();
    auto *adres = screen->findChild<QPlainTextEdit *>(u"txtAdres"_s);
    QVERIFY(adres);
    adres->setPlainText(QString(151, u'a'));
    testing::click(screen, u"cmdKaydet"_s);
    QCOMPARE(messages.texts().value(0),
             u"Adres en fazla 150 karakter olabilir; şu anda 151 karakter."_s);
    QCOMPARE(testing::scalar(db, u"SELECT Adres FROM Sabit"_s).toString(), before);
    store::setDefaultDatabase(nullptr);
}

QTEST_MAIN(tst_ScreenFocus)
#include "tst_screen_focus.moc"
