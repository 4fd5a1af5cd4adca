#include "gui_support.h"
#include "office.h"
#include "test_support.h"

#include "shell/main_window.h"
#include "store/database.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// An office with its main window up, as the operator has it after the login.
struct OpenOffice
{
    testing::TestStore store{store::Engine::SQLite};
    testing::MessageRecorder messages;
    std::unique_ptr<shell::MDIAidat> window;

    bool start()
    {
        store::setDefaultDatabase(&store.db());
        if (!testing::openOffice(store.db()))
            return false;
        window = std::make_unique<shell::MDIAidat>(store.db());
        window->MenuDurumAyarla(true);
        window->show();
        QApplication::setActiveWindow(window.get());
        return true;
    }
    // The screen a command opens, through the command table.
    QWidget *open(const QString &tool, const QString &screen)
    {
        window->ActBar_Click(tool);
        QMdiSubWindow *sub = window->screenWindow(screen);
        return sub ? sub->widget() : nullptr;
    }
    ~OpenOffice()
    {
        window.reset();
        store::setDefaultDatabase(nullptr);
    }
};

// The screens built so far, by the command that opens each.
const QList<QPair<const char *, const char *>> s_screens
    = {{"popOkulBilgileri", "FrmOkulBilgileri"},
       {"popKullanici", "Kullanici_Sifre"},
       {"btnOgrenciBilgileri", "FrmOgrenci"},
       {"popAidatTanimlama", "FrmAidatTanimlama"},
       {"popHizliOgrenciGirisi", "FrmHizliOgrenciKayit"},
       {"popSinifAtlatma", "Form_Sinif_Atlatma"},
       {"popTopluBorcSinifDegistirme", "FrmTopluSinifDegistirme"},
       {"popLogGoster", "Frm_Log"}};

// One row a screen, or one for each way of closing it.
void addScreenRows(const QStringList &ways = {})
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("way");
    for (const auto &[tool, screen] : s_screens) {
        for (const QString &way : ways.isEmpty() ? QStringList{QString()} : ways)
            QTest::addRow("%s%s", screen, qPrintable(way.isEmpty() ? way : u'-' + way))
                << QString::fromLatin1(tool) << QString::fromLatin1(screen) << way;
    }
}

// The letter a caption answers to with Alt, in Turkish capitals; "" when it has none.
QString mnemonic(const QString &text)
{
    const qsizetype at = text.indexOf(u'&');
    if (at < 0 || at + 1 >= text.size() || text[at + 1] == u'&')
        return QString();
    return QLocale(QLocale::Turkish).toUpper(text.mid(at + 1, 1));
}

// The tab page a control stands on; nullptr for a control outside the pages.
QWidget *pageOf(QWidget *root, QWidget *w)
{
    for (QWidget *p = w->parentWidget(); p && p != root; p = p->parentWidget()) {
        if (p->parentWidget() && qobject_cast<QTabWidget *>(p->parentWidget()->parentWidget()))
            return p;
    }
    return nullptr;
}

// Where a control stands, in the screen's own coordinates.
QRect placeIn(QWidget *root, QWidget *w)
{
    return QRect(w->mapTo(root, QPoint(0, 0)), w->size());
}

// The controls Tab goes through, from the first one of the screen until it comes round again
// or leaves the screen. A grid is one stop however many cells Tab walks in it.
QList<QWidget *> tabWalk(QWidget *root)
{
    QWidget *first = nullptr;
    for (QWidget *w = root->nextInFocusChain(); w != root; w = w->nextInFocusChain()) {
        if (w->isVisible() && w->isEnabled() && (w->focusPolicy() & Qt::TabFocus)
            && !w->focusProxy()) {
            first = w;
            break;
        }
    }
    QList<QWidget *> walk;
    if (!first)
        return walk;
    first->setFocus(Qt::TabFocusReason);
    for (int keys = 0; keys < 500; ++keys) {
        QWidget *w = QApplication::focusWidget();
        if (!w || !root->isAncestorOf(w))
            break;
        if (walk.isEmpty() || walk.last() != w) {
            if (walk.contains(w))
                break;
            walk.append(w);
        }
        QTest::keyClick(w, Qt::Key_Tab);
    }
    return walk;
}

// Two controls out of the order the eye reads them in: the later one stands above the earlier
// in the same column, or left of it in the same row. A second column may start at the top
// again once the first is done, and a column may be a group of boxes of its own.
QString outOfOrder(QWidget *root, const QList<QWidget *> &walk)
{
    const auto name = [](QWidget *w) {
        return w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className())
                                         : w->objectName();
    };
    for (qsizetype i = 0; i < walk.size(); ++i) {
        const QRect a = placeIn(root, walk[i]);
        for (qsizetype j = i + 1; j < walk.size(); ++j) {
            const QRect b = placeIn(root, walk[j]);
            const bool sameRow = (b.center().y() >= a.top() && b.center().y() <= a.bottom())
                                 || (a.center().y() >= b.top() && a.center().y() <= b.bottom());
            const bool sameColumn = (b.center().x() >= a.left() && b.center().x() <= a.right())
                                    || (a.center().x() >= b.left() && a.center().x() <= b.right());
            if ((sameRow && b.center().x() < a.center().x())
                || (sameColumn && !sameRow && b.center().y() < a.center().y()))
                return name(walk[i]) + u" → "_s + name(walk[j]);
        }
    }
    return QString();
}

} // namespace

// Every screen opened from the command table takes the keyboard at once, closes whole, and
// answers each Alt+letter once.
class tst_ScreenFocus : public QObject
{
    Q_OBJECT

private slots:
    void theFirstBoxHasTheFocus_data() { addScreenRows(); }
    void theFirstBoxHasTheFocus();
    void everyWayOfClosingTakesTheFrame_data()
    {
        addScreenRows({u"cikis"_s, u"escape"_s, u"ctrl-f4"_s});
    }
    void everyWayOfClosingTakesTheFrame();
    void mnemonicsAreUnique_data() { addScreenRows(); }
    void mnemonicsAreUnique();
    void tabFollowsTheScreensLayout_data() { addScreenRows(); }
    void tabFollowsTheScreensLayout();
    void ctrlTabGoesRoundTheOpenScreens_data();
    void ctrlTabGoesRoundTheOpenScreens();
    void ctrlPageTurnsTheTabs_data();
    void ctrlPageTurnsTheTabs();
    void everyTextBoxHasItsLimit_data() { addScreenRows(); }
    void everyTextBoxHasItsLimit();
    void everyScreenFitsAnOfficeDisplay_data() { addScreenRows(); }
    void everyScreenFitsAnOfficeDisplay();
    void aTooLongAddressIsRefusedNotCut();
    void theScreensLetterWinsOverTheMenus();
    void everyMenuEntryHasItsOwnLetter();
    void aSavedScreenClosesWithoutAsking();
    void turkishLettersReachTheirButtons_data();
    void turkishLettersReachTheirButtons();
};

void tst_ScreenFocus::theFirstBoxHasTheFocus()
{
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    OpenOffice office;
    QVERIFY(office.start());
    QWidget *root = office.open(tool, screen);
    QVERIFY(root);
    QWidget *focused = QApplication::focusWidget();
    QVERIFY2(focused && root->isAncestorOf(focused),
             qPrintable(focused ? focused->objectName() : u"<yok>"_s));
    // A box, a list or a grid that takes what is typed: not a tab bar, not a button.
    QVERIFY2(qobject_cast<QLineEdit *>(focused) || qobject_cast<QComboBox *>(focused)
                 || qobject_cast<QAbstractItemView *>(focused)
                 || qobject_cast<QPlainTextEdit *>(focused),
             focused->metaObject()->className());
}

void tst_ScreenFocus::everyWayOfClosingTakesTheFrame()
{
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    QFETCH(QString, way);
    OpenOffice office;
    QVERIFY(office.start());
    QMdiArea *area = office.window->mdiArea();
    QVERIFY(office.open(tool, screen));
    // Asked for again while it is open, the screen comes forward: no second copy.
    QWidget *root = office.open(tool, screen);
    QCOMPARE(area->subWindowList().size(), 1);
    if (way == u"cikis") {
        auto *cikis = root->findChild<QAbstractButton *>(u"cmdCikis"_s);
        QVERIFY(cikis);
        cikis->click();
    } else if (way == u"escape") {
        QWidget *focused = QApplication::focusWidget();
        QTest::keyClick(focused ? focused : root, Qt::Key_Escape);
    } else {
        QTest::keyClick(office.window->screenWindow(screen), Qt::Key_F4, Qt::ControlModifier);
    }
    QTRY_COMPARE(area->subWindowList().size(), 0);
}

void tst_ScreenFocus::mnemonicsAreUnique()
{
    // No two controls answer to the same Alt+letter: on each tab page, the page's own controls
    // and those outside the pages together.
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    OpenOffice office;
    QVERIFY(office.start());
    QWidget *root = office.open(tool, screen);
    QVERIFY(root);
    QMultiHash<QWidget *, QString> byPage; // the captions with a letter, by page
    for (QAbstractButton *b : root->findChildren<QAbstractButton *>())
        byPage.insert(pageOf(root, b), b->text());
    for (QLabel *l : root->findChildren<QLabel *>()) {
        if (l->buddy())
            byPage.insert(pageOf(root, l), l->text());
    }
    for (QTabWidget *tabs : root->findChildren<QTabWidget *>()) {
        for (int i = 0; i < tabs->count(); ++i)
            byPage.insert(nullptr, tabs->tabText(i));
    }
    QStringList clashes;
    for (QWidget *page : byPage.uniqueKeys()) {
        QStringList captions = byPage.values(page);
        if (page)
            captions += byPage.values(nullptr);
        captions.removeDuplicates();
        QHash<QString, QString> seen;
        for (const QString &caption : captions) {
            const QString m = mnemonic(caption);
            if (m.isEmpty())
                continue;
            if (seen.contains(m))
                clashes << seen.value(m) + u" / "_s + caption;
            seen.insert(m, caption);
        }
    }
    clashes.removeDuplicates();
    QVERIFY2(clashes.isEmpty(), qPrintable(clashes.join(u"; "_s)));
}

void tst_ScreenFocus::everyTextBoxHasItsLimit()
{
    // A box that takes typing stops at its field's size: none is left at the toolkit's 32767.
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    OpenOffice office;
    QVERIFY(office.start());
    QWidget *root = office.open(tool, screen);
    QVERIFY(root);
    QStringList unlimited;
    for (QLineEdit *e : root->findChildren<QLineEdit *>()) {
        if (!e->isReadOnly() && e->maxLength() == QLineEdit().maxLength())
            unlimited << e->objectName() + u'/' + e->parentWidget()->objectName();
    }
    QVERIFY2(unlimited.isEmpty(), qPrintable(unlimited.join(u", "_s)));
}

void tst_ScreenFocus::everyScreenFitsAnOfficeDisplay()
{
    // On a 1366×768 display the screen lies whole inside the area, nothing to scroll to, and
    // is not squeezed below what its controls need.
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    OpenOffice office;
    QVERIFY(office.start());
    office.window->showNormal();
    office.window->resize(1366, 738); // a window manager's title bar takes the rest
    QMdiArea *area = office.window->mdiArea();
    QTRY_COMPARE(area->viewport()->width(), 1366);
    QWidget *root = office.open(tool, screen);
    QVERIFY(root);
    const QRect frame = office.window->screenWindow(screen)->geometry();
    QVERIFY2(
        area->viewport()->rect().contains(frame),
        qPrintable(
            u"%1,%2 %3×%4"_s.arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height())));
    QVERIFY(!area->horizontalScrollBar()->isVisible());
    QVERIFY(!area->verticalScrollBar()->isVisible());
    QVERIFY(root->width() >= root->minimumSizeHint().width());
    QVERIFY(root->height() >= root->minimumSizeHint().height());
}

void tst_ScreenFocus::tabFollowsTheScreensLayout()
{
    // On the screen and on each page of its tabs, Tab reads as the eye does.
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    OpenOffice office;
    QVERIFY(office.start());
    QWidget *root = office.open(tool, screen);
    QVERIFY(root);
    QList<QTabWidget *> tabs = root->findChildren<QTabWidget *>();
    if (tabs.isEmpty())
        tabs.append(nullptr); // the screen as it is
    for (QTabWidget *tab : tabs) {
        for (int page = 0; page < (tab ? tab->count() : 1); ++page) {
            if (tab) {
                if (!tab->isVisible() || !tab->isTabEnabled(page))
                    continue;
                tab->setCurrentIndex(page);
            }
            QList<QWidget *> walk = tabWalk(root);
            walk.removeIf([](QWidget *w) { return qobject_cast<QTabBar *>(w) != nullptr; });
            QVERIFY2(walk.size() > 1, qPrintable(screen));
            const QString where = tab ? tab->tabText(page) : screen;
            QVERIFY2(outOfOrder(root, walk).isEmpty(),
                     qPrintable(where + u": "_s + outOfOrder(root, walk)));
        }
    }
}

void tst_ScreenFocus::ctrlTabGoesRoundTheOpenScreens_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("control"); // "": the screen's tab bar
    QTest::addRow("okul-adres-kutusu") << u"FrmOkulBilgileri"_s << u"txtAdres"_s;
    QTest::addRow("okul-sekmeleri") << u"FrmOkulBilgileri"_s << QString();
    QTest::addRow("kullanici-tablosu") << u"Kullanici_Sifre"_s << u"vaSpread1"_s;
    QTest::addRow("ogrenci-kutusu") << u"FrmOgrenci"_s << u"Ogr_Numarasi"_s;
}

void tst_ScreenFocus::ctrlTabGoesRoundTheOpenScreens()
{
    // Ctrl+Tab brings another open screen forward and Ctrl+Shift+Tab the one left, the focus
    // in each, whatever control had the key.
    QFETCH(QString, screen);
    QFETCH(QString, control);
    OpenOffice office;
    QVERIFY(office.start());
    for (int i = 0; i < 3; ++i)
        QVERIFY(office.open(QString::fromLatin1(s_screens[i].first),
                            QString::fromLatin1(s_screens[i].second)));
    QMdiArea *area = office.window->mdiArea();
    QMdiSubWindow *start = office.window->screenWindow(screen);
    area->setActiveSubWindow(start);
    QWidget *w = control.isEmpty() ? start->widget()->findChild<QTabBar *>()
                                   : start->widget()->findChild<QWidget *>(control);
    QVERIFY(w);
    w->setFocus();
    QCOMPARE(QApplication::focusWidget(), w);
    const auto focusIn = [](QMdiSubWindow *sub) {
        return sub && sub->widget()->isAncestorOf(QApplication::focusWidget());
    };
    // The key moves between the screens only: no page of the screen's tabs turns with it.
    auto *tabs = start->widget()->findChild<QTabWidget *>();
    const int page = tabs ? tabs->currentIndex() : -1;
    QTest::keyClick(w, Qt::Key_Tab, Qt::ControlModifier);
    QMdiSubWindow *next = area->activeSubWindow();
    QVERIFY(next && next != start);
    QVERIFY(focusIn(next));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab,
                    Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(area->activeSubWindow(), start);
    QVERIFY(focusIn(start));
    QCOMPARE(tabs ? tabs->currentIndex() : -1, page);
}

void tst_ScreenFocus::ctrlPageTurnsTheTabs_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("first");
    const int down = Qt::Key_PageDown;
    const int up = Qt::Key_PageUp;
    const QString okul = u"FrmOkulBilgileri"_s;
    QTest::addRow("okul-kutudan") << okul << u"txtOkulAdi"_s << down << 1 << u"CmbOgretimYili"_s;
    QTest::addRow("okul-dugmeden") << okul << u"cmdKaydet"_s << down << 1 << u"CmbOgretimYili"_s;
    QTest::addRow("okul-ilkten-sona") << okul << u"txtTelefon"_s << up << 3 << u"chkOkKilit"_s;
    QTest::addRow("ogrenci-ust-kutudan")
        << u"FrmOgrenci"_s << u"Ogr_Numarasi"_s << down << 1 << u"Ogr_Veli_Adi"_s;
    QTest::addRow("ogrenci-tablodan")
        << u"FrmOgrenci"_s << u"grdBuAy"_s << down << 1 << u"Ogr_Veli_Adi"_s;
}

void tst_ScreenFocus::ctrlPageTurnsTheTabs()
{
    QFETCH(QString, screen);
    QFETCH(QString, control);
    QFETCH(int, key);
    QFETCH(int, page);
    QFETCH(QString, first);
    OpenOffice office;
    QVERIFY(office.start());
    const auto at = std::find_if(s_screens.begin(), s_screens.end(),
                                 [&](const auto &s) { return screen == QLatin1String(s.second); });
    QWidget *root = office.open(QString::fromLatin1(at->first), screen);
    QVERIFY(root);
    auto *tabs = root->findChild<QTabWidget *>();
    QVERIFY(tabs && tabs->currentIndex() == 0);
    auto *w = root->findChild<QWidget *>(control);
    QVERIFY(w);
    w->setFocus();
    QTest::keyClick(w, Qt::Key(key), Qt::ControlModifier);
    QCOMPARE(tabs->currentIndex(), page);
    QVERIFY(QApplication::focusWidget());
    QCOMPARE(QApplication::focusWidget()->objectName(), first);
}

void tst_ScreenFocus::aTooLongAddressIsRefusedNotCut()
{
    OpenOffice office;
    QVERIFY(office.start());
    const QString before
        = testing::scalar(office.store.db(), u"SELECT Adres FROM Sabit"_s).toString();
    QWidget *root = office.open(u"popOkulBilgileri"_s, u"FrmOkulBilgileri"_s);
    auto *adres = root->findChild<QPlainTextEdit *>(u"txtAdres"_s);
    QVERIFY(adres);
    adres->setPlainText(QString(151, u'a'));
    testing::click(root, u"cmdKaydet"_s);
    QCOMPARE(office.messages.texts().value(0),
             u"Adres en fazla 150 karakter olabilir; şu anda 151 karakter."_s);
    QCOMPARE(testing::scalar(office.store.db(), u"SELECT Adres FROM Sabit"_s).toString(), before);
}

void tst_ScreenFocus::theScreensLetterWinsOverTheMenus()
{
    // Alt+D is the screen's "&Dönem ve Seçenekler" tab; Alt+K its "Çı&kış", not the "Çı&kış"
    // of the main window's menu band, which would end the program.
    OpenOffice office;
    QVERIFY(office.start());
    QWidget *root = office.open(u"popOkulBilgileri"_s, u"FrmOkulBilgileri"_s);
    auto *tabs = root->findChild<QTabWidget *>();
    QVERIFY(tabs && tabs->currentIndex() == 0);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_D, Qt::AltModifier);
    QCOMPARE(tabs->currentIndex(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_K, Qt::AltModifier);
    QVERIFY(!QApplication::activePopupWidget());
    QTRY_COMPARE(office.window->mdiArea()->subWindowList().size(), 0);
}

void tst_ScreenFocus::aSavedScreenClosesWithoutAsking()
{
    // Saved, then looked through tab by tab: nothing is left to ask about on the way out.
    OpenOffice office;
    QVERIFY(office.start());
    QVERIFY(office.open(u"popOkulBilgileri"_s, u"FrmOkulBilgileri"_s));
    testing::typeText(QApplication::focusWidget(), u"Zerna Koleji"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::AltModifier);
    QTRY_COMPARE(office.messages.texts(), QStringList{u"Okul bilgileri kaydedildi."_s});
    for (Qt::Key tab : {Qt::Key_D, Qt::Key_E, Qt::Key_F, Qt::Key_O})
        QTest::keyClick(QApplication::focusWidget(), tab, Qt::AltModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QCOMPARE(office.messages.texts(), QStringList{u"Okul bilgileri kaydedildi."_s});
    QTRY_COMPARE(office.window->mdiArea()->subWindowList().size(), 0);
}

void tst_ScreenFocus::turkishLettersReachTheirButtons_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("button");
    // "S&ınıf Listesi Göster": the Turkish keyboard's "ı", and Alt+I where there is no "ı".
    QTest::newRow("ı") << int(Qt::Key_I) << u"ı"_s << u"cmdSinifListesi"_s;
    QTest::newRow("I") << int(Qt::Key_I) << u"i"_s << u"cmdSinifListesi"_s;
    QTest::newRow("ç") << int(Qt::Key_Ccedilla) << u"ç"_s << QString();
    QTest::newRow("k") << int(Qt::Key_K) << u"k"_s << u"cmdCikis"_s;
}

void tst_ScreenFocus::turkishLettersReachTheirButtons()
{
    QFETCH(int, key);
    QFETCH(QString, text);
    QFETCH(QString, button);
    OpenOffice office;
    QVERIFY(office.start());
    QWidget *root = office.open(u"btnOgrenciBilgileri"_s, u"FrmOgrenci"_s);
    QVERIFY(root);
    QHash<QString, int> pressed;
    for (QAbstractButton *b : root->findChildren<QAbstractButton *>())
        connect(b, &QAbstractButton::clicked, this, [&pressed, b] { ++pressed[b->objectName()]; });
    QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key(key), text,
                        Qt::AltModifier);
    QTest::qWait(300); // a button pressed by its letter shows itself down for a moment
    QCOMPARE(pressed.keys(), button.isEmpty() ? QStringList() : QStringList{button});
}

void tst_ScreenFocus::everyMenuEntryHasItsOwnLetter()
{
    // On the menu band and in each menu under it, every entry answers to a letter of its own.
    OpenOffice office;
    QVERIFY(office.start());
    QList<QWidget *> menus{office.window->menuBar()};
    for (QMenu *m : office.window->menuBar()->findChildren<QMenu *>())
        menus.append(m);
    QVERIFY(menus.size() > 10);
    QStringList faults;
    for (QWidget *menu : menus) {
        QHash<QString, QString> seen;
        for (QAction *a : menu->actions()) {
            if (a->isSeparator())
                continue;
            const QString m = mnemonic(a->text());
            if (m.isEmpty() || m == u"İ"_s || m == u"I"_s) // Qt takes i and ı for one letter
                faults << a->text();
            else if (seen.contains(m))
                faults << seen.value(m) + u" / "_s + a->text();
            seen.insert(m, a->text());
        }
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u"; "_s)));
}

QTEST_MAIN(tst_ScreenFocus)
#include "tst_screen_focus.moc"
