#include "test_support.h"

#include "store/database.h"
#include "users/record_lock.h"
#include "users/session.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace users;

namespace {

bool addStudents(store::Database &db, int count)
{
    for (int i = 1; i <= count; ++i) {
        store::Query q(db,
                       QStringLiteral("INSERT INTO Ogrenci (KayitID, Ogr_Numarasi) VALUES (?, ?)"));
        q.bind(i).bind(i);
        if (!q.exec())
            return false;
    }
    return true;
}

QString holderOf(store::Database &db, int id)
{
    store::Query q(
        db, QStringLiteral("SELECT Ogr_Islem_Yapan_Kullanici FROM Ogrenci WHERE KayitID = ?"));
    q.bind(id);
    return q.exec() && q.next() ? q.text(0) : QStringLiteral("<yok>");
}

} // namespace

class tst_RecordLock : public QObject
{
    Q_OBJECT

private slots:
    void marksBetweenWorkstations_data() { testing::addEngineRows(); }
    void marksBetweenWorkstations();
    void twoWorkstationsAtOnceNeverBothTakeHim_data() { testing::addEngineRows(); }
    void twoWorkstationsAtOnceNeverBothTakeHim();
};

void tst_RecordLock::marksBetweenWorkstations()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(s.openYear());
    QVERIFY(addStudents(s.db(), 3));
    std::unique_ptr<store::Database> other = s.newConnection();
    other->selectYear(1);
    QVERIFY(store::DatabaseAc(*other, store::Store::Year, true, false));

    users::durum().AktifKullanici = QStringLiteral("ali");
    QVERIFY(OgrenciKilitle(s.db(), 1).ok());
    QVERIFY(OgrenciKilitle(s.db(), 1).ok()); // his own mark never stops him
    QCOMPARE(holderOf(s.db(), 1), QStringLiteral("ali"));

    // At the other workstation another user is warned and takes nothing.
    QCOMPARE(*KilidiAl(*other, 1, QStringLiteral("veli")), QStringLiteral("ali"));
    users::durum().AktifKullanici = QStringLiteral("veli");
    const base::Status refused = OgrenciKilitle(*other, 1);
    QVERIFY(!refused.ok() && refused.error().isRefusal());
    QVERIFY(!OgrenciKilitOK());
    QCOMPARE(refused.error().red->metin,
             QStringLiteral("ali İSİMLİ KULLANICI\n\nBU ÖĞRENCİDE İŞLEM YAPMAKTADIR."));
    QCOMPARE(refused.error().red->baslik, QStringLiteral("UYARI"));
    const base::Status checked = OgrenciKilitKontrol(*other, 1);
    QVERIFY(!checked.ok() && checked.error().isRefusal());
    QCOMPARE(holderOf(s.db(), 1), QStringLiteral("ali"));
    // Two sessions of one user name do not stop each other.
    QCOMPARE(*KilidiAl(*other, 1, QStringLiteral("ali")), QString());

    // A user holds one student at a time.
    QCOMPARE(*KilidiAl(s.db(), 2, QStringLiteral("ali")), QString());
    QCOMPARE(holderOf(s.db(), 1), QString());
    QCOMPARE(holderOf(s.db(), 2), QStringLiteral("ali"));
    QCOMPARE(*KilidiAl(*other, 3, QStringLiteral("veli")), QString());

    // Letting go: one's own marks, or every mark (a program killed on a workstation).
    users::durum().AktifKullanici = QStringLiteral("ali");
    QVERIFY(OgrenciKilitBirak(s.db(), false).ok());
    QCOMPARE(holderOf(s.db(), 2), QString());
    QCOMPARE(holderOf(s.db(), 3), QStringLiteral("veli"));
    QVERIFY(OgrenciKilitBirak(s.db(), true).ok());
    QCOMPARE(holderOf(s.db(), 3), QString());

    // A name longer than the mark's twenty characters is still its own holder.
    users::durum().AktifKullanici = QStringLiteral("Muhasebe Müdür Yardımcısı");
    QVERIFY(OgrenciKilitle(s.db(), 1).ok());
    QVERIFY(OgrenciKilitKontrol(s.db(), 1).ok());
    QVERIFY(OgrenciKilitle(s.db(), 1).ok());
}

void tst_RecordLock::twoWorkstationsAtOnceNeverBothTakeHim()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(s.openYear());
    QVERIFY(addStudents(s.db(), 1));
    const store::ConnectionSettings settings = s.settings();
    for (int round = 0; round < 10; ++round) {
        QVERIFY(OgrenciKilitBirak(s.db(), true).ok());
        std::atomic<int> ready{0};
        std::atomic<int> winners{0};
        std::atomic<int> failures{0};
        auto workstation = [&](const QString &user) {
            store::Database db(settings);
            db.selectYear(1);
            if (!store::DatabaseAc(db, store::Store::Year, true, false)) {
                ++failures;
                return;
            }
            ++ready;
            while (ready < 2) {
            }
            const base::Result<QString> holder = KilidiAl(db, 1, user);
            if (!holder)
                ++failures;
            else if (holder->isEmpty())
                ++winners;
        };
        std::thread a(workstation, QStringLiteral("ayse"));
        std::thread b(workstation, QStringLiteral("fatma"));
        a.join();
        b.join();
        QCOMPARE(failures.load(), 0);
        QCOMPARE(winners.load(), 1);
    }
}

QTEST_GUILESS_MAIN(tst_RecordLock)
#include "tst_record_lock.moc"
