// Times the figures of the background that the main window shows after the login: this
// month's dues, the arrears of the months before and the number of students, over a year of
// generated students (10,000 by default), each with two fees of ten monthly installments from
// September, all paid on their day: 200,000 installments and 200,000 payments. Working months
// in the middle and at the end of the year (where the whole ledger lies before the month).
// Usage: bench_dashboard [students]   (PostgreSQL too when VORTEL_TEST_PG names a server)
#include "generate.h"

#include "shell/dashboard.h"
#include "store/database.h"
#include "store/migration.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

void run(const store::ConnectionSettings &settings, const char *engine, int students)
{
    store::Database db(settings);
    const int year = 71;
    if (!store::DatabaseAc(db, store::Store::Global, true, false)) {
        std::printf("%s: the store does not open\n", engine);
        return;
    }
    if (db.exists(store::Store::Year, year))
        (void)db.drop(year);
    db.selectYear(year);
    if (!store::DatabaseAc(db, store::Store::Year, true, true)) {
        std::printf("%s: the year does not open\n", engine);
        return;
    }
    store::SonAlanlariEkle(db);
    QElapsedTimer g;
    g.start();
    if (!bench::generate(db, students, 10)) {
        std::printf("%s: generating failed\n", engine);
        return;
    }
    // What the server's autovacuum does soon after a load of this size.
    if (db.engine() == store::Engine::PostgreSQL)
        (void)db.exec(QStringLiteral("ANALYZE"));
    std::printf("%s: generated %d students, %d installments, %d payments in %.1f s\n", engine,
                students, students * 20, students * 20, g.elapsed() / 1000.0);
    for (const char *month : {"202511", "202606"}) {
        std::vector<double> times;
        shell::PanoBilgisi pano;
        for (int i = 0; i < 21; ++i) {
            QElapsedTimer t;
            t.start();
            const base::Result<shell::PanoBilgisi> r
                = shell::RaporHazirla(db, QString::fromLatin1(month));
            times.push_back(t.nsecsElapsed() / 1e6);
            if (!r) {
                std::printf("%s: %s\n", engine, qPrintable(r.error().text));
                return;
            }
            pano = *r;
        }
        std::printf("%s: dashboard for %s: %7.2f ms (median of 21)  this month %s, before %s, "
                    "%lld students\n",
                    engine, month, median(times), qPrintable(pano.buAy.toDecimalString()),
                    qPrintable(pano.gecmis.toDecimalString()), pano.ogrenciSayisi);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int students = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 10000;
    QTemporaryDir folder;
    run(store::ConnectionSettings::sqlite(folder.path()), "SQLite", students);
    const QString pg = qEnvironmentVariable("VORTEL_TEST_PG");
    if (!pg.isEmpty()) {
        if (const std::optional<store::ConnectionSettings> s
            = store::ConnectionSettings::fromConnInfo(pg)) {
            run(*s, "PostgreSQL", students);
        }
    }
    return 0;
}
