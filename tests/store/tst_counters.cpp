#include "test_support.h"

#include "store/counters.h"
#include "store/database.h"

#include <QTest>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

using namespace store;

Q_DECLARE_METATYPE(store::Sayac)

namespace {

// The school's rows: last year's, this year's (in force) and one without a year.
bool addSchoolRows(Database &db)
{
    return testing::run(db, u"INSERT INTO Sabit (OgretimYili, SonFaturaNo, SonFisNo, "
                            "SonSenetNo) VALUES ('2024-2025', 10, 20, 30), "
                            "('2025-2026', 100, 200, 300), (NULL, 5000, 5000, 5000)"_s)
           && testing::run(db, u"INSERT INTO KASA (KasaID) VALUES (7), (41)"_s);
}

// One save: draws a number and, for the cash box, writes the row that takes it.
base::Result<qint64> drawAndSave(Database &db, Sayac sayac, bool commit = true,
                                 Transaction::Mode mode = Transaction::Mode::Immediate)
{
    Transaction tx(db, mode);
    if (!tx) {
        return tx.error();
    }
    base::Result<qint64> n = SonrakiNumara(db, sayac);
    if (!n) {
        return n;
    }
    if (sayac == Sayac::KasaID) {
        Query row(db, u"INSERT INTO KASA (KasaID, KasaTip) VALUES (?, 'G')"_s);
        row.bind(*n);
        if (!row.exec()) {
            return row.error(QString());
        }
    }
    if (commit && !tx.commit()) {
        return tx.error();
    }
    return n;
}

// The counters of the rows not in force, added up: they never move.
int otherRows(Database &db)
{
    return testing::scalar(db, u"SELECT SUM(SonFaturaNo + SonFisNo + SonSenetNo) "
                               "FROM Sabit WHERE OgretimYili IS NULL "
                               "OR OgretimYili = '2024-2025'"_s)
        .toInt();
}

// The cash box runs twice in the race: once more in saves whose transaction takes the write
// lock only when it first writes.
void addCounterRows(bool race)
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<Sayac>("sayac");
    QTest::addColumn<qint64>("last");
    QTest::addColumn<bool>("deferred");
    for (Engine e : testing::engines()) {
        const char *n = testing::engineName(e);
        QTest::addRow("%s-fatura", n) << int(e) << Sayac::SonFaturaNo << qint64(100) << false;
        if (!race) {
            QTest::addRow("%s-fis", n) << int(e) << Sayac::SonFisNo << qint64(200) << false;
            QTest::addRow("%s-senet", n) << int(e) << Sayac::SonSenetNo << qint64(300) << false;
        }
        QTest::addRow("%s-kasa", n) << int(e) << Sayac::KasaID << qint64(41) << false;
        if (race) {
            QTest::addRow("%s-kasa-deferred", n) << int(e) << Sayac::KasaID << qint64(41) << true;
        }
    }
}

} // namespace

class tst_Counters : public QObject
{
    Q_OBJECT

private slots:
    void numberBelongsToItsSave_data() { addCounterRows(false); }
    void numberBelongsToItsSave();
    void twoWorkstationsNeverDrawTheSameNumber_data() { addCounterRows(true); }
    void twoWorkstationsNeverDrawTheSameNumber();
};

void tst_Counters::numberBelongsToItsSave()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(Sayac, sayac);
    QFETCH(qint64, last);
    Database &db = s.db();
    QVERIFY(s.openYear());
    QVERIFY(addSchoolRows(db));

    // Outside a save there is no number to draw.
    QVERIFY(!SonrakiNumara(db, sayac));

    base::Result<qint64> first = drawAndSave(db, sayac);
    QVERIFY2(first, qPrintable(first.error().text));
    QCOMPARE(*first, last + 1);

    // A save that rolls back gives its number back.
    base::Result<qint64> undone = drawAndSave(db, sayac, false);
    QVERIFY(undone);
    QCOMPARE(*undone, last + 2);
    base::Result<qint64> again = drawAndSave(db, sayac);
    QVERIFY(again);
    QCOMPARE(*again, last + 2);

    // Raised, never lowered; the cash box's number follows its rows only.
    QVERIFY(raiseCounter(db, sayac, last + 50).ok());
    QVERIFY(raiseCounter(db, sayac, 1).ok());
    base::Result<qint64> raised = drawAndSave(db, sayac);
    QVERIFY(raised);
    QCOMPARE(*raised, sayac == Sayac::KasaID ? last + 3 : last + 51);

    QCOMPARE(otherRows(db), 60 + 15000);
}

void tst_Counters::twoWorkstationsNeverDrawTheSameNumber()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(Sayac, sayac);
    QFETCH(qint64, last);
    QFETCH(bool, deferred);
    QVERIFY(s.openYear());
    QVERIFY(addSchoolRows(s.db()));
    const int draws = 1000;
    const Transaction::Mode mode
        = deferred ? Transaction::Mode::Deferred : Transaction::Mode::Immediate;
    std::vector<qint64> a;
    std::vector<qint64> b;
    const QStringList failures = testing::raceTwo(s.settings(), [&](Database &db, int which) {
        for (int i = 0; i < draws; ++i) {
            const base::Result<qint64> n = drawAndSave(db, sayac, true, mode);
            if (!n) {
                return n.error().text;
            }
            (which ? b : a).push_back(*n);
        }
        return QString();
    });
    QCOMPARE(failures, QStringList());

    // Each workstation's numbers rise; together they are every number once.
    QVERIFY(std::is_sorted(a.begin(), a.end()));
    QVERIFY(std::is_sorted(b.begin(), b.end()));
    std::vector<qint64> all = a;
    all.insert(all.end(), b.begin(), b.end());
    std::sort(all.begin(), all.end());
    std::vector<qint64> expected(2 * draws);
    for (int i = 0; i < 2 * draws; ++i) {
        expected[i] = last + 1 + i;
    }
    QCOMPARE(all, expected);
}

QTEST_GUILESS_MAIN(tst_Counters)
#include "tst_counters.moc"
