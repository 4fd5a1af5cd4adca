#include "test_support.h"

#include "store/database.h"
#include "store/dialect.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <optional>

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
    Query rows(db,
               QStringLiteral("SELECT Ogr_Numarasi, Ogr_Adi FROM Ogrenci ORDER BY Ogr_Numarasi"));
    if (!rows.exec()) {
        return {rows.error(QString()).text};
    }
    while (rows.next()) {
        out << rows.text(0) + QLatin1Char(' ') + rows.text(1);
    }
    for (Store store : {Store::Global, Store::Year}) {
        base::Result<Catalog> c = db.dialect().readCatalog(db, store);
        if (!c) {
            return {c.error().text};
        }
        for (const QString &t : c->tableNames()) {
            for (const ColumnInfo &col : c->columns(t)) {
                out << t.toLower() + QLatin1Char('.') + col.name.toLower();
            }
        }
        for (int i = 1; i <= 3; ++i) {
            const QString index = QStringLiteral("Ek_Indeks%1").arg(i);
            if (c->hasIndex(index)) {
                out << index;
            }
        }
    }
    return out;
}

bool addStudents(Database &db)
{
    return testing::run(db, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi) VALUES "
                                           "(1, 'Ali'), (2, 'Ayşe'), (3, 'Can')"))
           && db.exec(QStringLiteral("CREATE TABLE Hazir1 (a INTEGER)")).ok()
           && db.exec(QStringLiteral("CREATE TABLE Hazir2 (a INTEGER)")).ok()
           && db.exec(QStringLiteral("CREATE TABLE Hazir3 (a INTEGER)")).ok();
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
    const QString update = QStringLiteral("UPDATE Ogrenci SET Ogr_Adi = 'Değişti' WHERE "
                                          "Ogr_Numarasi = %1");
    const struct
    {
        const char *tag;
        Path path;
        QString sql;
        bool writes;
    } shapes[] = {
        {"insert", Path::Query,
         QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi) VALUES (1%1, 'Yeni')"), true},
        {"update", Path::Query, update, true},
        {"delete", Path::Query, QStringLiteral("DELETE FROM Ogrenci WHERE Ogr_Numarasi = %1"),
         true},
        {"with-update", Path::Query,
         QStringLiteral("WITH x AS (SELECT %1 AS n) UPDATE Ogrenci SET Ogr_Adi = 'Değişti' "
                        "WHERE Ogr_Numarasi IN (SELECT n FROM x)"),
         true},
        {"line-comment", Path::Query, QStringLiteral("-- yalnız okunur\n") + update, true},
        {"block-comment", Path::Query,
         QStringLiteral("/* okunur */ DELETE FROM Ogrenci WHERE Ogr_Numarasi = %1"), true},
        {"database-exec", Path::Exec, update, true},
        {"try-exec", Path::TryExec, update, true},
        {"raw-query", Path::Raw,
         QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi) VALUES (1%1, 'Yeni')"), true},
        {"create-table", Path::Exec, QStringLiteral("CREATE TABLE Deneme%1 (a INTEGER)"), true},
        {"drop-table", Path::Raw, QStringLiteral("DROP TABLE Hazir%1"), true},
        {"alter-table", Path::Exec, QStringLiteral("ALTER TABLE Ogrenci ADD COLUMN Ek%1 INTEGER"),
         true},
        {"create-index", Path::TryExec, QStringLiteral("CREATE INDEX Ek_Indeks%1 ON Hazir1 (a)"),
         true},
        {"select", Path::Query,
         QStringLiteral("SELECT count(*) FROM Ogrenci WHERE Ogr_Numarasi = %1"), false},
        {"select-raw", Path::Raw,
         QStringLiteral("SELECT Ogr_Adi FROM Ogrenci WHERE Ogr_Numarasi = %1"), false},
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
        QCOMPARE(testing::scalar(db, QStringLiteral("SELECT count(*) FROM Ogrenci")).toInt(), 3);
        {
            const WriteGuardExemption own;
            QCOMPARE(runBy(db, Path::Query,
                           QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (4)")),
                     0);
        }
        QCOMPARE(testing::scalar(db, QStringLiteral("SELECT count(*) FROM Ogrenci")).toInt(), 4);
        QVERIFY(tx.commit());
    }
    QCOMPARE(testing::scalar(db, QStringLiteral("SELECT count(*) FROM Ogrenci")).toInt(), 4);
    {
        // Begun under an exemption, the transaction writes no more once it has ended.
        std::optional<WriteGuardExemption> own;
        own.emplace();
        Transaction tx(db);
        QVERIFY(tx);
        QCOMPARE(
            runBy(db, Path::Exec, QStringLiteral("DELETE FROM Ogrenci WHERE Ogr_Numarasi = 1")), 0);
        own.reset();
        QCOMPARE(runBy(db, Path::Raw, QStringLiteral("DELETE FROM Ogrenci WHERE Ogr_Numarasi = 2")),
                 YazmaYetkisiYokHatasi);
    }
    QCOMPARE(testing::scalar(db, QStringLiteral("SELECT count(*) FROM Ogrenci")).toInt(), 4);
    QCOMPARE(db.transactionDepth(), 0);
}

void tst_WriteGuard::statementFollowsTheGuardWhenItRuns()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    QVERIFY(addStudents(db));
    const GuardSays no(false);
    const auto count = [&db] {
        return testing::scalar(db, QStringLiteral("SELECT count(*) FROM Ogrenci")).toInt();
    };

    // Made under the exemption, or before it while the guard said no: each runs under the
    // exemption, with its values, and neither runs after it.
    std::optional<Query> madeInside;
    Query madeBefore(db, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (?)"));
    {
        const WriteGuardExemption own;
        madeInside.emplace(db, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (?)"));
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
    Query broken(db, QStringLiteral("INSERT INTO Ogrenci (Yok) VALUES (1)"));
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
    const int create = runBy(db, Path::Exec, QStringLiteral("CREATE TEMP TABLE Liste (a INTEGER)"));
    if (db.engine() == Engine::PostgreSQL) {
        QCOMPARE(create, YazmaYetkisiYokHatasi);
        const WriteGuardExemption own;
        QCOMPARE(runBy(db, Path::Exec, QStringLiteral("CREATE TEMP TABLE Liste (a INTEGER)")), 0);
    } else {
        QCOMPARE(create, 0);
    }
    QCOMPARE(runBy(db, Path::Query, QStringLiteral("INSERT INTO Liste (a) VALUES (1), (2)")), 0);
    QCOMPARE(runBy(db, Path::Raw, QStringLiteral("UPDATE Liste SET a = a + 10")), 0);
    QCOMPARE(testing::scalar(db, QStringLiteral("SELECT SUM(a) FROM Liste")).toInt(), 23);
}

QTEST_GUILESS_MAIN(tst_WriteGuard)
#include "tst_write_guard.moc"
