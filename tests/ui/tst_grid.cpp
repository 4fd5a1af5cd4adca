#include "gui_support.h"
#include "test_support.h"

#include "base/turkish_text.h"
#include "ui/grid.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace ui;

namespace {

// Key, hidden; amount; due date; a locked note; a check.
QList<GridColumn> columns()
{
    return {GridColumn{u"Kayıt"_s, ColumnKind::Number, 60, false, true},
            GridColumn{u"Tutar"_s, ColumnKind::Money, 100},
            GridColumn{u"Tarih"_s, ColumnKind::Date, 100},
            GridColumn{u"Not"_s, ColumnKind::Text, 120, false},
            GridColumn{u"Seç"_s, ColumnKind::Check, 40}};
}

// The grid shown and active, with one row: 7,00 as the amount, 01.01.2025 as the date, "eski"
// as the note.
int showWithARow(Grid &g, const QList<GridColumn> &cols = columns())
{
    g.setColumns(cols);
    g.show();
    QApplication::setActiveWindow(&g);
    const int row = g.appendRow();
    g.setValue(row, 1, QVariant::fromValue(base::Para::fromUnits(7)));
    g.setValue(row, 2, QDate(2025, 1, 1));
    g.setValue(row, 3, u"eski"_s);
    return row;
}

} // namespace

class tst_Grid : public QObject
{
    Q_OBJECT

private slots:
    void cellsTakeOnlyWhatTheyMean_data();
    void cellsTakeOnlyWhatTheyMean();
    void enterSkipsHiddenAndLockedCells();
    void everyKeyTypedIsKept_data();
    void everyKeyTypedIsKept();
};

void tst_Grid::cellsTakeOnlyWhatTheyMean_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("refused");
    // clang-format off
    QTest::addRow("tutar") << 1 << "1.250,5" << "1.250,50" << false;
    QTest::addRow("tutar-harf") << 1 << "12a" << "7,00" << true;
    QTest::addRow("tutar-nokta-ondalik") << 1 << "12.5" << "7,00" << true;
    QTest::addRow("tarih") << 2 << "29022024" << "29.02.2024" << false;
    QTest::addRow("tarih-olmayan-gun") << 2 << "31022024" << "01.01.2025" << true;
    // clang-format on
}

void tst_Grid::cellsTakeOnlyWhatTheyMean()
{
    QFETCH(int, column);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(bool, refused);
    testing::MessageRecorder messages;
    Grid g;
    const int row = showWithARow(g);
    testing::typeCell(&g, row, column, typed);
    QCOMPARE(g.text(row, column), shown);
    QCOMPARE(messages.texts().size(), refused ? 1 : 0);
}

void tst_Grid::enterSkipsHiddenAndLockedCells()
{
    Grid g;
    g.setColumns(columns());
    g.show();
    QApplication::setActiveWindow(&g);
    g.appendRow();
    g.appendRow();
    g.setCurrentCell(0, 2);
    QTest::keyClick(&g, Qt::Key_Return);
    QCOMPARE(g.currentIndex().column(), 4); // the locked note is passed over
    QTest::keyClick(&g, Qt::Key_Space);
    QVERIFY(g.checked(0, 4));
    QTest::keyClick(&g, Qt::Key_Return);
    QCOMPARE(g.currentIndex().row(), 1);
    QCOMPARE(g.currentIndex().column(), 1); // the hidden key is passed over
    g.gridModel()->setRowLocked(1, true);
    QTest::keyClick(&g, Qt::Key_Space);
    QVERIFY(!g.checked(1, 4));
}

void tst_Grid::everyKeyTypedIsKept_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    // clang-format off
    QTest::addRow("tutar") << 1 << "105" << "105,00";
    QTest::addRow("isim") << 3 << "Mehmet" << "Mehmet";
    QTest::addRow("turkce-ilk-harf") << 3 << "Şahin" << "Şahin";
    QTest::addRow("iki-kelime") << 3 << "Kardeş İndirimi" << "Kardeş İndirimi";
    // clang-format on
}

void tst_Grid::everyKeyTypedIsKept()
{
    // The operator types over a cell without opening it first: the first key opens it, and
    // it and every key after it land in the cell.
    QFETCH(int, column);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    Grid g;
    QList<GridColumn> cols = columns();
    cols[3].editable = true;
    const int row = showWithARow(g, cols);
    g.setFocus();
    g.setCurrentCell(row, column);
    testing::typeText(&g, typed.left(1));
    QApplication::processEvents(); // keys come in bursts: the loop may run after any of them
    QWidget *editor = QApplication::focusWidget();
    QVERIFY(editor && editor != &g);
    testing::typeText(editor, typed.mid(1));
    QTest::keyClick(editor, Qt::Key_Return);
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
    QCOMPARE(g.text(row, column), shown);
}

QTEST_MAIN(tst_Grid)
#include "tst_grid.moc"
