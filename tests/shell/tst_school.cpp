#include "test_support.h"

#include "base/turkish_text.h"
#include "maintenance/school.h"
#include "shell/dashboard.h"
#include "shell/working_month.h"
#include "store/database.h"
#include "store/migration.h"
#include "users/session.h"

#include <QTest>

using namespace shell;
using namespace maintenance;
using namespace base;

using testing::run;
using testing::scalar;

namespace {

base::Para tl(double units)
{
    return Para::fromDouble(units).value();
}

} // namespace

class tst_School : public QObject
{
    Q_OBJECT

private slots:
    void init() { users::durum() = users::CalismaDurumu(); }
    void readingTheSchoolsRow_data() { testing::addEngineRows(); }
    void readingTheSchoolsRow();
    void workingMonthSelector_data();
    void workingMonthSelector();
    void dashboardFigures_data() { testing::addEngineRows(); }
    void dashboardFigures();
};

void tst_School::readingTheSchoolsRow()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(s.openYear());
    store::SonAlanlariEkle(db);
    // No row: nothing read, and the currency stands on YTL all the same.
    users::durum().ParaBirimi = QStringLiteral("TL");
    QVERIFY(!maintenance::SabitBilgileriOku(db));
    QCOMPARE(users::durum().ParaBirimi, QStringLiteral("YTL"));
    QCOMPARE(users::durum().ParaFormati, QStringLiteral("#,##0.00"));
    QCOMPARE(users::durum().TaksitYuvarlama, base::Para::fromUnits(1000000));

    // A row of the old lira, with no period dates: the dates read as the zero date, the money
    // still as YTL.
    QVERIFY(run(db,
                QStringLiteral("INSERT INTO Sabit (OkulAdi, OgretimYili, ParaTuru, ParaBirimi, "
                               "TaksitYuvarlama, CariAy, TaksitKilitle, FisNoKilitle) VALUES "
                               "('Eski Okul', '2004-2005', 0, 'TL', ?, '200410', 1, '1')"),
                {QVariant(base::Para::fromUnits(1000000).raw())}));
    QVERIFY(maintenance::SabitBilgileriOku(db));
    QCOMPARE(users::durum().OkulAdi, QStringLiteral("Eski Okul"));
    QCOMPARE(users::durum().DonemBasTarihi, base::SifirTarih);
    QCOMPARE(users::durum().ParaTuru, 1);
    QCOMPARE(users::durum().ParaFormati, QStringLiteral("#,##0.00"));
    QVERIFY(users::durum().TaksitKilitle);
    QVERIFY(users::durum().FisNoKilitle);

    // The newest school year is the one in force, before a row without one on either engine; a
    // save writes that row and no other.
    QVERIFY(run(db, QStringLiteral("INSERT INTO Sabit (OkulAdi) VALUES ('Yılsız Satır')")));
    QVERIFY(
        run(db, QStringLiteral(
                    "INSERT INTO Sabit (OkulAdi, OgretimYili) VALUES ('Yeni Okul', '2025-2026')")));
    base::Result<maintenance::OkulBilgisi> row = maintenance::OkulbilgisiGetir(db);
    QCOMPARE(row->OkulAdi, QStringLiteral("Yeni Okul"));
    row.value().OkulAdi = QStringLiteral("Yeni Okul Ltd. Şti.");
    row.value().TaksitYuvarlama = tl(0.5);
    row.value().DonemBasTarihi = QDateTime(QDate(2025, 9, 8), QTime(0, 0));
    QVERIFY(maintenance::OkulbilgisiKaydet(db, *row).ok());
    QVERIFY(maintenance::CariAyKaydet(db, QStringLiteral("202603")).ok());
    const maintenance::OkulBilgisi back = *maintenance::OkulbilgisiGetir(db);
    QCOMPARE(back.OkulAdi, QStringLiteral("Yeni Okul Ltd. Şti."));
    QCOMPARE(back.TaksitYuvarlama, tl(0.5));
    QCOMPARE(back.DonemBasTarihi.date(), QDate(2025, 9, 8));
    QCOMPARE(back.CariAy, QStringLiteral("202603"));
    store::Query old(
        db, QStringLiteral("SELECT OkulAdi, CariAy FROM Sabit WHERE OgretimYili = '2004-2005'"));
    QVERIFY(old.exec() && old.next());
    QCOMPARE(old.text(0), QStringLiteral("Eski Okul"));
    QCOMPARE(old.text(1), QStringLiteral("200410"));

    QVERIFY(
        scalar(db, QStringLiteral("SELECT CariAy FROM Sabit WHERE OgretimYili IS NULL")).isNull());

    // The row and the office switches go together or not at all.
    maintenance::OfisAyarlari ofis;
    ofis.okKilit = true;
    ofis.kasaAyarVar = true;
    ofis.kasaAktar = 1;
    ofis.kasaKod = QStringLiteral("120");
    store::setWriteGuard([] { return false; });
    QVERIFY(!maintenance::OkulbilgisiKaydet(db, back, &ofis));
    store::setWriteGuard(nullptr);
    QVERIFY(!maintenance::OfisAyarlariOku(db).okKilit);
    QVERIFY(maintenance::OkulbilgisiKaydet(db, back, &ofis).ok());
    QVERIFY(maintenance::OfisAyarlariOku(db).okKilit);
    QCOMPARE(maintenance::OfisAyarlariOku(db).kasaKod, QStringLiteral("120"));
    QVERIFY(maintenance::OkulbilgisiSil(db).ok());
    QVERIFY(!maintenance::SabitBilgileriOku(db));
}

void tst_School::workingMonthSelector_data()
{
    QTest::addColumn<QString>("cariAy");
    QTest::addColumn<QString>("ogretimYili");
    QTest::addColumn<QString>("shown");
    QTest::addRow("listede") << "202510"
                             << "2025-2026"
                             << "EKİM - 2025";
    QTest::addRow("ilk-ay") << "202401"
                            << "2025-2026"
                            << "OCAK - 2024";
    QTest::addRow("son-ay") << "202712"
                            << "2025-2026"
                            << "ARALIK - 2027";
    QTest::addRow("bos-simdiki-ay") << ""
                                    << "2025-2026"
                                    << "KASIM - 2025";
    QTest::addRow("liste-disi-simdiki-ay") << "201905"
                                           << "2025-2026"
                                           << "KASIM - 2025";
    QTest::addRow("bozuk-metin") << "abc"
                                 << "2025-2026"
                                 << "KASIM - 2025";
}

void tst_School::workingMonthSelector()
{
    QFETCH(QString, cariAy);
    QFETCH(QString, ogretimYili);
    QFETCH(QString, shown);
    const QList<AyGirdisi> months = CariAyListesi(ogretimYili);
    QCOMPARE(months.size(), 48);
    QCOMPARE(months.first().veri, 202401);
    QCOMPARE(months.last().veri, 202712);
    const int index = CariAySirasi(months, cariAy, ogretimYili, QDate(2026, 11, 22));
    QCOMPARE(months[index].metin, shown);
}

void tst_School::dashboardFigures()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(s.openYear());
    // Two students with an account each, and the account of a student who is gone.
    for (int student : {1, 2})
        QVERIFY(run(db, QStringLiteral("INSERT INTO Ogrenci (KayitID, Ogr_Numarasi) VALUES (?, ?)"),
                    {student, student}));
    for (int account : {10, 20, 30})
        QVERIFY(
            run(db,
                QStringLiteral(
                    "INSERT INTO OgrenciAidatTanim (KayitID, OgrKayitID, Sira) VALUES (?, ?, 1)"),
                {account, account / 10}));
    auto due = [&db](int account, int sira, const QDate &day, double amount) {
        return run(db,
                   QStringLiteral("INSERT INTO OgrenciAidatDetay (KayitID, Sira, OdemeTarihi, "
                                  "Odenecek) VALUES (?, ?, ?, ?)"),
                   {account, sira, QDateTime(day, QTime(0, 0)), tl(amount).raw()});
    };
    auto paid = [&db](int account, int sira, const QDate &day, double amount) {
        return run(db,
                   QStringLiteral("INSERT INTO OgrenciAidatOdeme (KayitID, Sira, OdemeTarihi, "
                                  "Odenen) VALUES (?, ?, ?, ?)"),
                   {account, sira, QDateTime(day, QTime(14, 30)), tl(amount).raw()});
    };
    QVERIFY(due(10, 1, QDate(2025, 9, 5), 1000));
    QVERIFY(due(10, 2, QDate(2025, 10, 5), 1000));
    QVERIFY(due(10, 3, QDate(2025, 11, 5), 1000));
    QVERIFY(due(20, 1, QDate(2025, 10, 31), 500.25));
    QVERIFY(due(20, 2, QDate(2025, 11, 30), 500.25));
    QVERIFY(due(20, 3, QDate(2025, 12, 1), 500.25)); // after the working month
    QVERIFY(due(30, 1, QDate(2025, 10, 1), 7777));   // a student who is gone
    QVERIFY(paid(10, 1, QDate(2025, 9, 6), 1000));
    QVERIFY(paid(20, 1, QDate(2025, 10, 31), 200));
    QVERIFY(paid(10, 2, QDate(2025, 11, 2), 400.10));
    QVERIFY(paid(30, 1, QDate(2025, 10, 2), 7777)); // not counted either
    const base::Result<PanoBilgisi> pano = RaporHazirla(db, QStringLiteral("202511"));
    QVERIFY2(pano, qPrintable(pano.error().text));
    QCOMPARE(pano->ayAdi, QStringLiteral("KASIM"));
    // September 0; October 1.500,25 - 200 = 1.300,25; November 1.500,25 - 400,10.
    QCOMPARE(pano->gecmis, tl(1300.25));
    QCOMPARE(pano->buAy, tl(1100.15));
    QCOMPARE(pano->toplam, tl(2400.40));
    QCOMPARE(pano->ogrenciSayisi, 2);
}

QTEST_GUILESS_MAIN(tst_School)
#include "tst_school.moc"
