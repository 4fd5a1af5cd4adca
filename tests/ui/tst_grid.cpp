#include "gui_support.h"
#include "test_support.h"

#include "base/turkish_text.h"
#include "ui/grid.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

using namespace ui;

namespace {

// Key, hidden; amount; due date; a locked note; a check.
QList<GridColumn> columns()
{
    return {GridColumn{QStringLiteral("Kayıt"), ColumnKind::Number, 60, false, true},
            GridColumn{QStringLiteral("Tutar"), ColumnKind::Money, 100},
            GridColumn{QStringLiteral("Tarih"), ColumnKind::Date, 100},
            GridColumn{QStringLiteral("Not"), ColumnKind::Text, 120, false},
            GridColumn{QStringLiteral("Seç"), ColumnKind::Check, 40}};
}

} // namespace

class tst_Grid : public QObject
{
    Q_OBJECT

private slots:
    void cellsTakeOnlyWhatTheyMean_data();
    void cellsTakeOnlyWhatTheyMean();
    void enterSkipsHiddenAndLockedCells();
};

void tst_Grid::cellsTakeOnlyWhatTheyMean_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("refused");
    QTest::addRow("tutar") << 1 << "1.250,5" << "1.250,50" << false;
    QTest::addRow("tutar-harf") << 1 << "12a" << "7,00" << true;
    QTest::addRow("tutar-nokta-ondalik") << 1 << "12.5" << "7,00" << true;
    QTest::addRow("tarih") << 2 << "29022024" << "29.02.2024" << false;
    QTest::addRow("tarih-olmayan-gun") << 2 << "31022024" << "01.01.2025" << true;
}

void tst_Grid::cellsTakeOnlyWhatTheyMean()
{
    QFETCH(int, column);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(bool, refused);
    testing::MessageRecorder messages;
    Grid g;
    g.setColumns(columns());
    g.show();
    const int row = g.appendRow();
    g.setValue(row, 1, QVariant::fromValue(base::Para::fromUnits(7)));
    g.setValue(row, 2, QDate(2025, 1, 1));
    QApplication::setActiveWindow(&g);
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

QTEST_MAIN(tst_Grid)
#include "tst_grid.moc"
