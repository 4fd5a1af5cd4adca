// Times the store's opening work on generated data:
//  - creating a working year at the model shape and migrating it to the full schema;
//  - opening an up-to-date year (the migration finds nothing to do), empty and with
//    10,000 students and their ledgers;
//  - the balance of one student among 10,000.
// Usage: bench_store [students]   (PostgreSQL too when VORTEL_TEST_PG names a server)
#include "store/database.h"
#include "store/migration.h"

#include "generate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <memory>
#include <vector>

using namespace store;

namespace {

QTextStream out(stdout);

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

bool openYear(Database &db, int year)
{
    db.selectYear(year);
    if (!DatabaseAc(db, Store::Global, true, false) || !DatabaseAc(db, Store::Year, true, true))
        return false;
    SonAlanlariEkle(db);
    return true;
}

void run(const ConnectionSettings &settings, const QString &engineName, int students)
{
    out << "== " << engineName << " ==\n";
    std::vector<double> create;
    std::vector<double> noop;
    Database db(settings);
    for (int year = 1; year <= 5; ++year) {
        QElapsedTimer t;
        t.start();
        if (!openYear(db, year)) {
            out << "opening failed\n";
            return;
        }
        create.push_back(t.nsecsElapsed() / 1e6);
    }
    for (int i = 0; i < 20; ++i) {
        DatabaseKapat(db);
        QElapsedTimer t;
        t.start();
        if (!openYear(db, 1 + i % 5))
            return;
        noop.push_back(t.nsecsElapsed() / 1e6);
    }
    out << QStringLiteral("create + migrate a year        : %1 ms (median of 5)\n")
               .arg(median(create), 0, 'f', 1);
    out << QStringLiteral("open an up-to-date year (empty): %1 ms (median of 20)\n")
               .arg(median(noop), 0, 'f', 1);

    db.selectYear(9);
    if (!openYear(db, 9))
        return;
    QElapsedTimer g;
    g.start();
    if (!bench::generate(db, students)) {
        out << "generating failed\n";
        return;
    }
    // What the server's autovacuum does soon after a load of this size: statistics for the planner.
    if (db.engine() == Engine::PostgreSQL)
        (void)db.exec(QStringLiteral("ANALYZE"));
    out << QStringLiteral("generated %1 students, %2 installments, %3 payments in %4 s\n")
               .arg(students)
               .arg(students * 20)
               .arg(students * 10)
               .arg(g.elapsed() / 1000.0, 0, 'f', 1);
    std::vector<double> full;
    for (int i = 0; i < 10; ++i) {
        DatabaseKapat(db);
        QElapsedTimer t;
        t.start();
        if (!openYear(db, 9))
            return;
        full.push_back(t.nsecsElapsed() / 1e6);
    }
    out << QStringLiteral("open an up-to-date year (%1 students): %2 ms (median of 10)\n")
               .arg(students)
               .arg(median(full), 0, 'f', 1);

    std::vector<double> balance;
    for (int i = 0; i < 200; ++i) {
        QElapsedTimer t;
        t.start();
        Query q(db, QStringLiteral(
                        "SELECT (SELECT sum(Odenecek) FROM OgrenciAidatDetay D WHERE D.KayitID "
                        "= T.KayitID), (SELECT sum(Odenen) FROM OgrenciAidatOdeme O WHERE "
                        "O.KayitID = T.KayitID) FROM OgrenciAidatTanim T WHERE T.OgrKayitID = ?"));
        q.bind((i * 37) % students + 1);
        if (!q.exec())
            return;
        while (q.next()) {
        }
        balance.push_back(t.nsecsElapsed() / 1e6);
    }
    out << QStringLiteral("balance of one student among %1: %2 ms (median of 200)\n")
               .arg(students)
               .arg(median(balance), 0, 'f', 3);
    out.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int students = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 10000;
    QTemporaryDir folder;
    run(ConnectionSettings::sqlite(folder.path()), QStringLiteral("SQLite"), students);
    const QString pg = qEnvironmentVariable("VORTEL_TEST_PG");
    if (!pg.isEmpty()) {
        if (const std::optional<ConnectionSettings> s = ConnectionSettings::fromConnInfo(pg))
            run(*s, QStringLiteral("PostgreSQL"), students);
    }
    return 0;
}
