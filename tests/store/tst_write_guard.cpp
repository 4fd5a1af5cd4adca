#include "test_support.h"

#include "store/database.h"
#include "store/dialect.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

using namespace store;

namespace {

// The ways a statement reaches the engine.
enum class Path { Query, Exec, TryExec, Raw };

// Sets the guard's answer for the life of a scope; no guard afterwards, whatever happens.
class GuardSays
{
public:
    explicit GuardSays(bool mayWrite)
    {
        setWriteGuard([mayWrite] { return mayWrite; });
    }
    ~GuardSays() { setWriteGuard(nullptr); }
};

// Runs a statement one way; the error number it failed with (-1 for tryExec's bare "no"), or
// 0 when it ran.
int runBy(Database &db, Path path, const QString &sqlText)
{
    switch (path) {
    case Path::Query: {
        Query q(db, sqlText);
        return q.exec() ? 0 : q.error(QString()).number;
    }
    case Path::Exec: {
        const base::Status s = db.exec(sqlText);
        return s ? 0 : s.error().number;
    }
    case Path::TryExec:
        return db.tryExec(sqlText) ? 0 : -1;
    case Path::Raw: {
        QSqlQuery q(db.sql());
        return q.exec(sqlText) ? 0 : toError(q.lastError(), QString(), db.engine()).number;
    }
    }
    return -2;
}

// What a write could change: the students and the shape of the global and the year's stores.
QStringList contents(Database &db)
{
    QStringList out;
    Query rows(db, u"SELECT Ogr_Numarasi, Ogr_Adi FROM Ogrenci ORDER BY Ogr_Numarasi"_s);
    if (!rows.exec()) {
        return {rows.error(QString()).text};
    }
    while (rows.next()) {
        out << rows.text(0) + u' ' + rows.text(1);
    }
    for (Store store : {Store::Global, Store::Year}) {
        base::Result<Catalog> c = db.dialect().readCatalog(db, store);
        if (!c) {
            return {c.error().text};
        }
        for (const QString &t : c->tableNames()) {
            for (const ColumnInfo &col : c->columns(t)) {
                out << t.toLower() + u'.' + col.name.toLower();
            }
        }
        for (int i = 1; i <= 3; ++i) {
            const QString index = u"Ek_Indeks%1"_s.arg(i);
            if (c->hasIndex(index)) {
                out << index;
            }
        }
    }
    return out;
}

bool addStudents(Database &db)
{
    return testing::run(db, u"INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi) VALUES "
                            "(1, 'Ali'), (2, 'Ayşe'), (3, 'Can')"_s)
           && db.exec(u"CREATE TABLE Hazir1 (a INTEGER)"_s).ok()
           && db.exec(u"CREATE TABLE Hazir2 (a INTEGER)"_s).ok()
           && db.exec(u"CREATE TABLE Hazir3 (a INTEGER)"_s).ok();
}

} // namespace

class tst_WriteGuard : public QObject
{
    Q_OBJECT

private slots:
    void everyShapeOfWriteIsRefused_data();
    void everyShapeOfWriteIsRefused();
    void exemptionInsideATransaction_data() { testing::addEngineRows(); }
    void exemptionInsideATransaction();
    void statementFollowsTheGuardWhenItRuns_data() { testing::addEngineRows(); }
    void statementFollowsTheGuardWhenItRuns();
    void temporaryTablesStayWritable_data() { testing::addEngineRows(); }
    void temporaryTablesStayWritable();
};

void tst_WriteGuard::everyShapeOfWriteIsRefused_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<int>("path");
    QTest::addColumn<QString>("sql"); // %1: the round, so that each round changes something new
    QTest::addColumn<bool>("writes");
    const QString update = u"UPDATE Ogrenci SET Ogr_Adi = 'Değişti' WHERE Ogr_Numarasi = %1"_s;
    const struct
    {
        const char *tag;
        Path path;
        QString sql;
        bool writes;
    } shapes[] = {
        {"insert", Path::Query,
         u"INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi) VALUES (1%1, 'Yeni')"_s, true},
        {"update", Path::Query, update, true},
        {"delete", Path::Query, u"DELETE FROM Ogrenci WHERE Ogr_Numarasi = %1"_s, true},
        {"with-update", Path::Query,
         u"WITH x AS (SELECT %1 AS n) UPDATE Ogrenci SET Ogr_Adi = 'Değişti' "
         "WHERE Ogr_Numarasi IN (SELECT n FROM x)"_s,
         true},
        {"line-comment", Path::Query, u"-- yalnız okunur\n"_s + update, true},
        {"block-comment", Path::Query,
         u"/* okunur */ DELETE FROM Ogrenci WHERE Ogr_Numarasi = %1"_s, true},
        {"database-exec", Path::Exec, update, true},
        {"try-exec", Path::TryExec, update, true},
        {"raw-query", Path::Raw,
         u"INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi) VALUES (1%1, 'Yeni')"_s, true},
        {"create-table", Path::Exec, u"CREATE TABLE Deneme%1 (a INTEGER)"_s, true},
        {"drop-table", Path::Raw, u"DROP TABLE Hazir%1"_s, true},
        {"alter-table", Path::Exec, u"ALTER TABLE Ogrenci ADD COLUMN Ek%1 INTEGER"_s, true},
        {"create-index", Path::TryExec, u"CREATE INDEX Ek_Indeks%1 ON Hazir1 (a)"_s, true},
        {"select", Path::Query, u"SELECT count(*) FROM Ogrenci WHERE Ogr_Numarasi = %1"_s, false},
        {"select-raw", Path::Raw, u"SELECT Ogr_Adi FROM Ogrenci WHERE Ogr_Numarasi = %1"_s, false},
    };
    for (store::Engine e : testing::engines()) {
        for (const auto &shape : shapes) {
            QTest::addRow("%s-%s", testing::engineName(e), shape.tag)
                << int(e) << int(shape.path) << shape.sql << shape.writes;
        }
    }
}

void tst_WriteGuard::everyShapeOfWriteIsRefused()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(int, path);
    QFETCH(QString, sql);
    QFETCH(bool, writes);
    Database &db = s.db();
    QVERIFY(s.openYear());
    QVERIFY(addStudents(db));
    const Path by = static_cast<Path>(path);
    const int refused = by == Path::TryExec ? -1 : YazmaYetkisiYokHatasi;

    // Round 1: the guard says no.
    QStringList before = contents(db);
    {
        const GuardSays no(false);
        QCOMPARE(runBy(db, by, sql.arg(1)), writes ? refused : 0);
    }
    QCOMPARE(contents(db), before);

    // Round 2: the guard says no, but the program writes for itself.
    {
        const GuardSays no(false);
        const WriteGuardExemption own;
        QCOMPARE(runBy(db, by, sql.arg(2)), 0);
    }
    QCOMPARE(contents(db) != before, writes);

    // Round 3: the guard says yes.
    before = contents(db);
    {
        const GuardSays yes(true);
        QCOMPARE(runBy(db, by, sql.arg(3)), 0);
    }
    QCOMPARE(contents(db) != before, writes);
}

void tst_WriteGuard::exemptionInsideATransaction()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    QVERIFY(addStudents(db));
    const GuardSays no(false);
    {
        // A reading screen's transaction in which the program writes its own row.
        Transaction tx(db);
        QVERIFY(tx);
        QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM Ogrenci"_s).toInt(), 3);
        {
            const WriteGuardExemption own;
            QCOMPARE(runBy(db, Path::Query, u"INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (4)"_s), 0);
        }
        QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM Ogrenci"_s).toInt(), 4);
        QVERIFY(tx.commit());
    }
    QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM Ogrenci"_s).toInt(), 4);
    {
        // Begun under an exemption, the transaction writes no more once it has ended.
        std::optional<WriteGuardExemption> own;
        own.emplace();
        Transaction tx(db);
        QVERIFY(tx);
        QCOMPARE(runBy(db, Path::Exec, u"DELETE FROM Ogrenci WHERE Ogr_Numarasi = 1"_s), 0);
        own.reset();
        QCOMPARE(runBy(db, Path::Raw, u"DELETE FROM Ogrenci WHERE Ogr_Numarasi = 2"_s),
                 YazmaYetkisiYokHatasi);
    }
    QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM Ogrenci"_s).toInt(), 4);
    QCOMPARE(db.transactionDepth(), 0);
}

void tst_WriteGuard::statementFollowsTheGuardWhenItRuns()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    QVERIFY(addStudents(db));
    const GuardSays no(false);
    const auto count
        = [&db] { return testing::scalar(db, u"SELECT count(*) FROM Ogrenci"_s).toInt(); };

    // Made under the exemption, or before it while the guard said no: each runs under the
    // exemption, with its values, and neither runs after it.
    std::optional<Query> madeInside;
    Query madeBefore(db, u"INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (?)"_s);
    {
        const WriteGuardExemption own;
        madeInside.emplace(db, u"INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (?)"_s);
        madeInside->bind(4);
        QVERIFY(madeInside->exec());
        madeBefore.bind(5);
        QVERIFY2(madeBefore.exec(), qPrintable(madeBefore.error(QString()).text));
    }
    QCOMPARE(count(), 5);
    for (Query *q : {&*madeInside, &madeBefore}) {
        q->bind(6);
        QVERIFY(!q->exec());
        QCOMPARE(q->error(QString()).number, YazmaYetkisiYokHatasi);
    }
    QCOMPARE(count(), 5);

    // A statement the store cannot run at all says so, refused or not.
    Query broken(db, u"INSERT INTO Ogrenci (Yok) VALUES (1)"_s);
    QVERIFY(!broken.exec());
    QCOMPARE(broken.error(QString()).number, 3061);
}

void tst_WriteGuard::temporaryTablesStayWritable()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    const GuardSays no(false);
    // PostgreSQL makes no table in a read-only transaction, not even a temporary one.
    const int create = runBy(db, Path::Exec, u"CREATE TEMP TABLE Liste (a INTEGER)"_s);
    if (db.engine() == Engine::PostgreSQL) {
        QCOMPARE(create, YazmaYetkisiYokHatasi);
        const WriteGuardExemption own;
        QCOMPARE(runBy(db, Path::Exec, u"CREATE TEMP TABLE Liste (a INTEGER)"_s), 0);
    } else {
        QCOMPARE(create, 0);
    }
    QCOMPARE(runBy(db, Path::Query, u"INSERT INTO Liste (a) VALUES (1), (2)"_s), 0);
    QCOMPARE(runBy(db, Path::Raw, u"UPDATE Liste SET a = a + 10"_s), 0);
    QCOMPARE(testing::scalar(db, u"SELECT SUM(a) FROM Liste"_s).toInt(), 23);
}

QTEST_GUILESS_MAIN(tst_WriteGuard)
#include "tst_write_guard.moc"
