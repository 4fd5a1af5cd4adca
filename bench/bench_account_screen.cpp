// Times the account screen ("Öğrenci Cari Durumu") from the student asked for to the screen
// painted, on a year of generated students (10,000 by default, three fees each of a down
// payment and ten installments, six of them paid): the screen made, the student's record lock
// taken, his accounts and the first one read into the lists, the month's position worked out,
// the whole painted offscreen. Students are picked at random with a fixed seed.
// Usage: bench_account_screen [students] [repetitions]
#include "generate.h"

#include "fees/frm_ogrenci_aidat.h"
#include "maintenance/school.h"
#include "store/database.h"
#include "store/migration.h"
#include "users/session.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    const int students = argc > 1 ? std::atoi(argv[1]) : 10000;
    const int reps = argc > 2 ? std::atoi(argv[2]) : 50;
    QTemporaryDir dir;
    store::Database db(store::ConnectionSettings::sqlite(dir.path()));
    if (!store::DatabaseAc(db, store::Store::Global, true, false))
        return 1;
    db.selectYear(1);
    if (!store::DatabaseAc(db, store::Store::Year, true, true))
        return 1;
    store::SonAlanlariEkle(db);
    maintenance::OkulBilgisi okul = maintenance::YeniOkulBilgisi(QDate(2025, 11, 1));
    okul.OkulAdi = QStringLiteral("Ölçüm Koleji");
    if (!maintenance::OkulbilgisiKaydet(db, okul).ok())
        return 1;
    maintenance::SabitBilgileriOku(db);
    bench::Shape shape;
    shape.students = students;
    shape.fees = 3;
    shape.downPayment = true;
    shape.installments = 10;
    shape.paid = 6;
    shape.moneyScale = 1;
    if (!bench::generate(db, shape))
        return 1;
    store::setDefaultDatabase(&db);
    users::durum().AktifKullanici = QStringLiteral("MUHASEBE");

    std::vector<qint64> keys;
    QSqlQuery q(db.sql());
    if (!q.exec(QStringLiteral("SELECT KayitID FROM Ogrenci ORDER BY KayitID")))
        return 1;
    while (q.next())
        keys.push_back(q.value(0).toLongLong());
    std::mt19937_64 random(20251123);

    std::vector<double> times;
    for (int i = 0; i < reps + 5; ++i) {
        const qint64 student = keys[random() % keys.size()];
        QElapsedTimer t;
        t.start();
        fees::FrmOgrenciAidat screen(db);
        screen.resize(1300, 600);
        screen.OgrenciGoster(student);
        (void)screen.grab();
        const double ms = t.nsecsElapsed() / 1e6;
        if (i >= 5) // the first openings warm the caches
            times.push_back(ms);
    }
    std::sort(times.begin(), times.end());
    std::printf("SQLite: %d students: account screen asked to painted: median %.2f ms, p95 %.2f "
                "ms (n=%zu)\n",
                students, times[times.size() / 2], times[times.size() * 95 / 100], times.size());
    store::setDefaultDatabase(nullptr);
    return 0;
}
