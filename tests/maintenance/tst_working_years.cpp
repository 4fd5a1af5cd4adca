#include "test_support.h"

#include "maintenance/working_years.h"
#include "store/database.h"
#include "users/session.h"

#include <QTest>

using namespace Qt::StringLiterals;

using namespace maintenance;

class tst_WorkingYears : public QObject
{
    Q_OBJECT

private slots:
    void yearsComeAndGo_data() { testing::addEngineRows(); }
    void yearsComeAndGo();
};

void tst_WorkingYears::yearsComeAndGo()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(store::DatabaseAc(db, store::Store::Global, true, false));
    const int first = *CalismaKaydet(db, u"2024-2025"_s);
    const int second = *CalismaKaydet(db, u"2025-2026"_s);
    const int third = *CalismaKaydet(db, u"Deneme"_s);
    // A year is listed once its store exists: the first opening makes it.
    for (int id : {first, second, third}) {
        db.selectYear(id);
        QVERIFY(store::DatabaseAc(db, store::Store::Year, true, true));
    }
    QCOMPARE(CalismaDoldur(db)->size(), 3);
    QCOMPARE(CalismaDoldur(db)->first().adi, u"Deneme"_s);

    // A year whose store is gone is not listed.
    QVERIFY(db.drop(third).ok());
    const QList<Calisma> listed = *CalismaDoldur(db);
    QCOMPARE(listed.size(), 2);
    QCOMPARE(listed[0].id, second);
    QCOMPARE(listed[1].id, first);

    // A year whose first opening never made its store does not hold its name.
    QVERIFY(CalismaKaydet(db, u"Yarım Kalan"_s));
    QCOMPARE(*CalismaAdiVar(db, u"Yarım Kalan"_s), false);

    // Names are unique; a rename to its own name is no clash.
    QCOMPARE(*CalismaAdiVar(db, u" 2024-2025 "_s), true);
    QCOMPARE(*CalismaAdiVar(db, u"2024-2025"_s, first), false);
    QVERIFY(CalismaAdiDegistir(db, first, u"Geçen Yıl"_s).ok());
    QCOMPARE(CalismaDoldur(db)->at(1).adi, u"Geçen Yıl"_s);

    // The remembered choice; a position beyond the list falls back on the first.
    CalismaSecimiYap(db, listed[1], 1);
    QCOMPARE(db.selectedYear(), first);
    QCOMPARE(users::durum().AktifCalismaID, first);
    QCOMPARE(KayitliCalismaSirasi(db, 2), 1);
    QCOMPARE(KayitliCalismaSirasi(db, 1), 0);

    // The year in use is never deleted: it is refused, and its files and row stay.
    const base::Status refused = CalismaSil(db, first);
    QVERIFY(!refused.ok() && refused.error().isRefusal());
    QVERIFY(db.exists(store::Store::Year, first));
    QCOMPARE(CalismaDoldur(db)->size(), 2);
    CalismaSecimiYap(db, listed[0], 0);
    QVERIFY(store::DatabaseAc(db, store::Store::Year, true, true));
    QCOMPARE(db.openYear(), second);
    QVERIFY(!CalismaSil(db, second).ok());

    QVERIFY(CalismaSil(db, first).ok());
    QVERIFY(!db.exists(store::Store::Year, first));
    QVERIFY(!db.exists(store::Store::Log, first));
    QCOMPARE(CalismaDoldur(db)->size(), 1);
}

QTEST_GUILESS_MAIN(tst_WorkingYears)
#include "tst_working_years.moc"
