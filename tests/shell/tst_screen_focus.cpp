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
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QTabWidget>
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
    void mnemonicsAreUnique_data() { theFirstBoxHasTheFocus_data(); }
    void mnemonicsAreUnique();
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

void tst_ScreenFocus::mnemonicsAreUnique()
{
    // No two controls of a screen answer to the same Alt+letter: on each tab page, the page's
    // own controls and those outside the pages together.
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
    w.ActBar_Click(tool);
    QWidget *root = w.screenWindow(screen)->widget();
    const auto mnemonic = [](const QString &text) {
        const qsizetype at = text.indexOf(u'&');
        return at >= 0 && at + 1 < text.size() && text[at + 1] != u'&'
                   ? QLocale(QLocale::Turkish).toUpper(text.mid(at + 1, 1))
                   : QString();
    };
    // Every captioned control with the tab page it stands on (none for those outside pages).
    QMultiHash<QWidget *, QPair<QString, QString>> byPage;
    const auto pageOf = [root](QWidget *w) -> QWidget * {
        for (QWidget *p = w->parentWidget(); p && p != root; p = p->parentWidget()) {
            if (qobject_cast<QTabWidget *>(p->parentWidget() ? p->parentWidget()->parentWidget()
                                                             : nullptr))
                return p;
        }
        return nullptr;
    };
    for (QAbstractButton *b : root->findChildren<QAbstractButton *>()) {
        if (const QString m = mnemonic(b->text()); !m.isEmpty())
            byPage.insert(pageOf(b), {m, b->text()});
    }
    for (QLabel *l : root->findChildren<QLabel *>()) {
        if (const QString m = mnemonic(l->text()); !m.isEmpty() && l->buddy())
            byPage.insert(pageOf(l), {m, l->text()});
    }
    for (QTabWidget *tabs : root->findChildren<QTabWidget *>()) {
        for (int i = 0; i < tabs->count(); ++i) {
            if (const QString m = mnemonic(tabs->tabText(i)); !m.isEmpty())
                byPage.insert(nullptr, {m, tabs->tabText(i)});
        }
    }
    QStringList clashes;
    const QList<QWidget *> pages = byPage.uniqueKeys();
    for (QWidget *page : pages) {
        QHash<QString, QString> seen;
        QList<QPair<QString, QString>> all = byPage.values(page);
        if (page)
            all += byPage.values(nullptr);
        for (const auto &[m, text] : all) {
            if (seen.contains(m) && seen.value(m) != text)
                clashes << seen.value(m) + u" / "_s + text;
            seen.insert(m, text);
        }
    }
    clashes.removeDuplicates();
    QVERIFY2(clashes.isEmpty(), qPrintable(clashes.join(u"; "_s)));
    store::setDefaultDatabase(nullptr);
}

QTEST_MAIN(tst_ScreenFocus)
#include "tst_screen_focus.moc"
