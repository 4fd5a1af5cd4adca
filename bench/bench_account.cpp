// Times the fee-account core on a year of generated students (10,000 by default), each with
// three fees of a down payment and ten monthly installments from September, the down payment
// and six installments paid: 330,000 installment rows and 210,000 payments. Students are
// picked at random with a fixed seed.
//  (a) opening one student's account: the list of his accounts and the first of them whole;
//  (b) saving that account unchanged (one transaction over the year and its change log, with
//      the store's synchronous writes), the account read just before and only the save timed;
//  (c) the student's position at March 2026.
// For (b) a floor is timed too: a transaction that changes one header and writes one log row,
// which costs the commit's syncs and little else.
// Usage: bench_account [students] [repetitions]
//        (PostgreSQL too when VORTEL_TEST_PG names a server)
#include "generate.h"

#include "fees/account.h"
#include "store/change_log.h"
#include "store/database.h"
#include "store/migration.h"
#include "users/session.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

namespace {

struct Figures
{
    double median = 0;
    double p95 = 0;
};

Figures figures(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return {v[v.size() / 2], v[std::min(v.size() - 1, v.size() * 95 / 100)]};
}

void report(const char *engine, const char *what, const std::vector<double> &times)
{
    const Figures f = figures(times);
    std::printf("%s: %-46s n=%-5zu median %8.3f ms  p95 %8.3f ms\n", engine, what, times.size(),
                f.median, f.p95);
}

double ms(const QElapsedTimer &t)
{
    return t.nsecsElapsed() / 1e6;
}

// The indexes of the fee tables, to show what the statements can use.
void showIndexes(store::Database &db, const char *engine)
{
    if (db.engine() != store::Engine::SQLite)
        return;
    QSqlQuery q(db.sql());
    if (!q.exec(QStringLiteral("SELECT tbl_name, name, sql FROM aidat.sqlite_master "
                               "WHERE type = 'index' AND tbl_name LIKE 'OgrenciAidat%' "
                               "ORDER BY tbl_name, name"))) {
        return;
    }
    while (q.next()) {
        std::printf("%s:   index %s: %s\n", engine, qPrintable(q.value(1).toString()),
                    qPrintable(q.value(2).toString().section(QLatin1Char('('), 1)));
    }
}

void run(const store::ConnectionSettings &settings, const char *engine, int students, int reps)
{
    store::Database db(settings);
    const int year = 73;
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
    bench::Shape shape;
    shape.students = students;
    shape.fees = 3;
    shape.downPayment = true;
    shape.installments = 10;
    shape.paid = 6;
    shape.moneyScale = 1; // the school's ParaTuru, so that a save writes every row back as it was
    QElapsedTimer g;
    g.start();
    if (!bench::generate(db, shape)) {
        std::printf("%s: generating failed\n", engine);
        return;
    }
    if (db.engine() == store::Engine::PostgreSQL)
        (void)db.exec(QStringLiteral("ANALYZE"));
    const int accounts = students * shape.fees;
    std::printf("%s: generated %d students, %d accounts, %d installment rows, %d payments "
                "in %.1f s\n",
                engine, students, accounts, accounts * (shape.installments + 1),
                accounts * (shape.paid + 1), g.elapsed() / 1000.0);
    showIndexes(db, engine);

    std::vector<qint64> keys;
    {
        QSqlQuery q(db.sql());
        if (!q.exec(QStringLiteral("SELECT KayitID FROM Ogrenci ORDER BY KayitID")))
            return;
        while (q.next())
            keys.push_back(q.value(0).toLongLong());
    }
    std::mt19937_64 random(20250901);
    const auto pick = [&]() { return keys[random() % keys.size()]; };

    users::durum().HakYazma = true;
    users::durum().AktifKullanici = QStringLiteral("MUHASEBE");
    const fees::KayitBaglami baglam{QStringLiteral("MUHASEBE"), 1, false};

    // The account screen's opening of a student: his accounts, then the first one whole.
    const auto open = [&](qint64 student) -> std::optional<fees::HesapKaydi> {
        const base::Result<QList<fees::HesapSatiri>> list
            = fees::OgrenciAidatTanimGoster(db, student);
        if (!list || list->isEmpty())
            return std::nullopt;
        base::Result<fees::HesapKaydi> hesap
            = fees::HesapOku(db, list->first().kayitId, baglam.taksitFatura);
        if (!hesap)
            return std::nullopt;
        return *hesap;
    };

    for (int i = 0; i < 200; ++i) {
        if (!open(pick())) {
            std::printf("%s: an account does not open\n", engine);
            return;
        }
    }
    std::vector<double> ta;
    qint64 rows = 0;
    for (int i = 0; i < reps; ++i) {
        const qint64 student = pick();
        QElapsedTimer t;
        t.start();
        const std::optional<fees::HesapKaydi> h = open(student);
        ta.push_back(ms(t));
        if (!h) {
            std::printf("%s: an account does not open\n", engine);
            return;
        }
        rows += h->taksitler.size() + h->odemeler.size();
    }
    report(engine, "(a) open one student's first account", ta);

    std::vector<double> tb;
    int changed = 0;
    for (int i = 0; i < std::max(1, reps / 7); ++i) {
        std::optional<fees::HesapKaydi> h = open(pick());
        if (!h) {
            std::printf("%s: an account does not open\n", engine);
            return;
        }
        QElapsedTimer t;
        t.start();
        const base::Result<fees::HesapKayitSonucu> saved = fees::HesapKaydet(db, *h, baglam);
        tb.push_back(ms(t));
        if (!saved) {
            std::printf("%s: the save failed: %s\n", engine, qPrintable(saved.error().text));
            return;
        }
        // Unchanged: what is read back is what the screen holds after the save.
        const base::Result<fees::HesapKaydi> again
            = fees::HesapOku(db, h->satir.kayitId, baglam.taksitFatura);
        if (!again || !(*again == *h))
            ++changed;
    }
    report(engine, "(b) save it unchanged", tb);
    if (changed > 0)
        std::printf("%s:     %d saves read back different from what they wrote\n", engine, changed);

    std::vector<double> floor;
    for (int i = 0; i < std::max(1, reps / 7); ++i) {
        const qint64 account = 1 + qint64(random() % accounts);
        QElapsedTimer t;
        t.start();
        store::Transaction tx(db);
        store::Query header(db, QStringLiteral("UPDATE OgrenciAidatTanim SET Surum = Surum + 1 "
                                               "WHERE KayitID = ?"));
        header.bind(account);
        store::Query log(
            db, QStringLiteral("INSERT INTO %1 (KayitID, Islem_Turu) VALUES (?, ?)")
                    .arg(db.table(store::Store::Log, QStringLiteral("OgrenciAidatTanim"))));
        log.bind(account).bind(store::LogDegisiklik);
        if (!header.exec() || !log.exec() || !tx.commit()) {
            std::printf("%s: the floor's transaction failed\n", engine);
            return;
        }
        floor.push_back(ms(t));
    }
    report(engine, "    floor: one header and one log row", floor);

    std::vector<double> tc;
    const QDate march(2026, 3, 1);
    base::Para owed;
    for (int i = 0; i < reps; ++i) {
        const qint64 student = pick();
        QElapsedTimer t;
        t.start();
        const base::Result<fees::CariDurum> cari
            = fees::CariDurumHesapla(db, student, march, users::durum().ParaFormati);
        tc.push_back(ms(t));
        if (!cari) {
            std::printf("%s: %s\n", engine, qPrintable(cari.error().text));
            return;
        }
        owed = owed + cari->toplam();
    }
    report(engine, "(c) position of one student at 2026-03", tc);
    std::printf("%s: (checksum %lld rows, %s TL owed)\n", engine, rows,
                qPrintable(owed.toDecimalString()));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int students = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 10000;
    const int reps = argc > 2 ? QString::fromLocal8Bit(argv[2]).toInt() : 2000;
    QTemporaryDir folder;
    run(store::ConnectionSettings::sqlite(folder.path()), "SQLite", students, reps);
    const QString pg = qEnvironmentVariable("VORTEL_TEST_PG");
    if (!pg.isEmpty()) {
        if (const std::optional<store::ConnectionSettings> s
            = store::ConnectionSettings::fromConnInfo(pg)) {
            run(*s, "PostgreSQL", students, reps);
        }
    }
    return 0;
}
