#include "test_support.h"

#include "store/database.h"
#include "users/record_lock.h"
#include "users/session.h"

#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;

using namespace users;

namespace {

bool addStudents(store::Database &db, int count)
{
    for (int i = 1; i <= count; ++i) {
        if (!testing::run(db, u"INSERT INTO Ogrenci (KayitID, Ogr_Numarasi) VALUES (?, ?)"_s,
                          {i, i}))
            return false;
    }
    return true;
}

QString holderOf(store::Database &db, int id)
{
    const QVariant v = testing::field(db, u"Ogrenci"_s, u"Ogr_Islem_Yapan_Kullanici"_s, id);
    return v.isValid() ? v.toString() : u"<yok>"_s;
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

    users::durum().AktifKullanici = u"ali"_s;
    QVERIFY(OgrenciKilitle(s.db(), 1).ok());
    QVERIFY(OgrenciKilitle(s.db(), 1).ok()); // his own mark never stops him
    QCOMPARE(holderOf(s.db(), 1), u"ali"_s);

    // At the other workstation another user is warned and takes nothing.
    QCOMPARE(*KilidiAl(*other, 1, u"veli"_s), u"ali"_s);
    users::durum().AktifKullanici = u"veli"_s;
    const base::Status refused = OgrenciKilitle(*other, 1);
    QVERIFY(!refused.ok() && refused.error().isRefusal());
    QVERIFY(!OgrenciKilitOK());
    QCOMPARE(refused.error().red->metin,
             u"ali İSİMLİ KULLANICI\n\nBU ÖĞRENCİDE İŞLEM YAPMAKTADIR."_s);
    QCOMPARE(refused.error().red->baslik, u"UYARI"_s);
    const base::Status checked = OgrenciKilitKontrol(*other, 1);
    QVERIFY(!checked.ok() && checked.error().isRefusal());
    QCOMPARE(holderOf(s.db(), 1), u"ali"_s);
    // Two sessions of one user name do not stop each other.
    QCOMPARE(*KilidiAl(*other, 1, u"ali"_s), QString());

    // A user holds one student at a time.
    QCOMPARE(*KilidiAl(s.db(), 2, u"ali"_s), QString());
    QCOMPARE(holderOf(s.db(), 1), QString());
    QCOMPARE(holderOf(s.db(), 2), u"ali"_s);
    QCOMPARE(*KilidiAl(*other, 3, u"veli"_s), QString());

    // Letting go: one's own marks, or every mark (a program killed on a workstation).
    users::durum().AktifKullanici = u"ali"_s;
    QVERIFY(OgrenciKilitBirak(s.db(), false).ok());
    QCOMPARE(holderOf(s.db(), 2), QString());
    QCOMPARE(holderOf(s.db(), 3), u"veli"_s);
    QVERIFY(OgrenciKilitBirak(s.db(), true).ok());
    QCOMPARE(holderOf(s.db(), 3), QString());

    // A name longer than the mark's twenty characters is still its own holder.
    users::durum().AktifKullanici = u"Muhasebe Müdür Yardımcısı"_s;
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
        std::atomic<int> winners{0};
        const QStringList failures
            = testing::raceTwo(settings, [&](store::Database &db, int which) {
                  const base::Result<QString> holder
                      = KilidiAl(db, 1, which ? u"fatma"_s : u"ayse"_s);
                  if (!holder) {
                      return holder.error().text;
                  }
                  if (holder->isEmpty()) {
                      ++winners;
                  }
                  return QString();
              });
        QCOMPARE(failures, QStringList());
        QCOMPARE(winners.load(), 1);
    }
}

QTEST_GUILESS_MAIN(tst_RecordLock)
#include "tst_record_lock.moc"
