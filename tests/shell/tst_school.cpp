#include "test_support.h"

#include "base/turkish_text.h"
#include "maintenance/school.h"
#include "shell/dashboard.h"
#include "shell/working_month.h"
#include "store/database.h"
#include "store/migration.h"
#include "users/session.h"

#include <QTest>

using namespace Qt::StringLiterals;

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
    void theWorkingYearGivesTheSchoolYear_data();
    void theWorkingYearGivesTheSchoolYear();
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
    users::durum().ParaBirimi = u"TL"_s;
    QVERIFY(!maintenance::SabitBilgileriOku(db));
    QCOMPARE(users::durum().ParaBirimi, u"YTL"_s);
    QCOMPARE(users::durum().ParaFormati, u"#,##0.00"_s);
    QCOMPARE(users::durum().TaksitYuvarlama, base::Para::fromUnits(1000000));

    // A row of the old lira, with no period dates: the dates read as the zero date, the money
    // still as YTL.
    QVERIFY(run(db,
                u"INSERT INTO Sabit (OkulAdi, OgretimYili, ParaTuru, ParaBirimi, "
                "TaksitYuvarlama, CariAy, TaksitKilitle, FisNoKilitle) VALUES "
                "('Eski Okul', '2004-2005', 0, 'TL', ?, '200410', 1, '1')"_s,
                {QVariant(base::Para::fromUnits(1000000).raw())}));
    QVERIFY(maintenance::SabitBilgileriOku(db));
    QCOMPARE(users::durum().OkulAdi, u"Eski Okul"_s);
    QCOMPARE(users::durum().DonemBasTarihi, base::SifirTarih);
    QCOMPARE(users::durum().ParaTuru, 1);
    QCOMPARE(users::durum().ParaFormati, u"#,##0.00"_s);
    QVERIFY(users::durum().TaksitKilitle);
    QVERIFY(users::durum().FisNoKilitle);

    // The newest school year is the one in force, before a row without one on either engine; a
    // save writes that row and no other.
    QVERIFY(run(db, u"INSERT INTO Sabit (OkulAdi) VALUES ('Yılsız Satır')"_s));
    QVERIFY(
        run(db, u"INSERT INTO Sabit (OkulAdi, OgretimYili) VALUES ('Yeni Okul', '2025-2026')"_s));
    base::Result<maintenance::OkulBilgisi> row = maintenance::OkulbilgisiGetir(db);
    QCOMPARE(row->OkulAdi, u"Yeni Okul"_s);
    row.value().OkulAdi = u"Yeni Okul Ltd. Şti."_s;
    row.value().TaksitYuvarlama = tl(0.5);
    row.value().DonemBasTarihi = QDateTime(QDate(2025, 9, 8), QTime(0, 0));
    QVERIFY(maintenance::OkulbilgisiKaydet(db, *row).ok());
    QVERIFY(maintenance::CariAyKaydet(db, u"202603"_s).ok());
    const maintenance::OkulBilgisi back = *maintenance::OkulbilgisiGetir(db);
    QCOMPARE(back.OkulAdi, u"Yeni Okul Ltd. Şti."_s);
    QCOMPARE(back.TaksitYuvarlama, tl(0.5));
    QCOMPARE(back.DonemBasTarihi.date(), QDate(2025, 9, 8));
    QCOMPARE(back.CariAy, u"202603"_s);
    store::Query old(db, u"SELECT OkulAdi, CariAy FROM Sabit WHERE OgretimYili = '2004-2005'"_s);
    QVERIFY(old.exec() && old.next());
    QCOMPARE(old.text(0), u"Eski Okul"_s);
    QCOMPARE(old.text(1), u"200410"_s);

    QVERIFY(scalar(db, u"SELECT CariAy FROM Sabit WHERE OgretimYili IS NULL"_s).isNull());

    // The row and the office switches go together or not at all.
    maintenance::OfisAyarlari ofis;
    ofis.okKilit = true;
    ofis.kasaAyarVar = true;
    ofis.kasaAktar = 1;
    ofis.kasaKod = u"120"_s;
    store::setWriteGuard([] { return false; });
    QVERIFY(!maintenance::OkulbilgisiKaydet(db, back, &ofis));
    store::setWriteGuard(nullptr);
    QVERIFY(!maintenance::OfisAyarlariOku(db).okKilit);
    QVERIFY(maintenance::OkulbilgisiKaydet(db, back, &ofis).ok());
    QVERIFY(maintenance::OfisAyarlariOku(db).okKilit);
    QCOMPARE(maintenance::OfisAyarlariOku(db).kasaKod, u"120"_s);
    QVERIFY(maintenance::OkulbilgisiSil(db).ok());
    QVERIFY(!maintenance::SabitBilgileriOku(db));
}

void tst_School::workingMonthSelector_data()
{
    QTest::addColumn<QString>("cariAy");
    QTest::addColumn<QString>("ogretimYili");
    QTest::addColumn<QString>("shown");
    // clang-format off
    QTest::addRow("listede") << "202510" << "2025-2026" << "EKİM - 2025";
    QTest::addRow("ilk-ay") << "202401" << "2025-2026" << "OCAK - 2024";
    QTest::addRow("son-ay") << "202712" << "2025-2026" << "ARALIK - 2027";
    QTest::addRow("bos-simdiki-ay") << "" << "2025-2026" << "KASIM - 2025";
    QTest::addRow("liste-disi-simdiki-ay") << "201905" << "2025-2026" << "KASIM - 2025";
    QTest::addRow("bozuk-metin") << "abc" << "2025-2026" << "KASIM - 2025";
    // clang-format on
}

void tst_School::theWorkingYearGivesTheSchoolYear_data()
{
    QTest::addColumn<QString>("calisma");
    QTest::addColumn<QDate>("bugun");
    QTest::addColumn<QString>("ogretimYili");
    QTest::addColumn<QString>("cariAy");
    QTest::addColumn<QString>("secici");
    // clang-format off
    QTest::addRow("gecen-yil-kasim") << "2025-2026" << QDate(2026, 11, 22) << "2025-2026" << "202511" << "2025-2026";
    QTest::addRow("gecen-yil-mart") << "2025-2026" << QDate(2026, 3, 2) << "2025-2026" << "202603" << "2025-2026";
    QTest::addRow("bosluklu") << " 2024 - 2025 " << QDate(2026, 9, 1) << "2024-2025" << "202409" << "2024-2025";
    QTest::addRow("okul-yili-degil") << "Deneme" << QDate(2026, 11, 22) << "2026-2027" << "202611" << "2026-2027";
    QTest::addRow("ardisik-degil") << "2025-2027" << QDate(2026, 3, 2) << "2025-2026" << "202603" << "2026-2027";
    // clang-format on
}

void tst_School::theWorkingYearGivesTheSchoolYear()
{
    // A new year named "2025-2026" opened in November 2026 works in KASIM 2025, both in a new
    // school row and in the selector of a year whose school has set no school year yet.
    QFETCH(QString, calisma);
    QFETCH(QDate, bugun);
    QFETCH(QString, ogretimYili);
    QFETCH(QString, cariAy);
    QFETCH(QString, secici);
    const maintenance::OkulBilgisi o = maintenance::YeniOkulBilgisi(bugun, calisma);
    QCOMPARE(o.OgretimYili, ogretimYili);
    QCOMPARE(o.CariAy, cariAy);
    QCOMPARE(VarsayilanOgretimYili(bugun, calisma), secici);
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
        QVERIFY(run(db, u"INSERT INTO Ogrenci (KayitID, Ogr_Numarasi) VALUES (?, ?)"_s,
                    {student, student}));
    for (int account : {10, 20, 30})
        QVERIFY(run(db,
                    u"INSERT INTO OgrenciAidatTanim (KayitID, OgrKayitID, Sira) VALUES (?, ?, 1)"_s,
                    {account, account / 10}));
    auto due = [&db](int account, int sira, const QDate &day, double amount) {
        return run(db,
                   u"INSERT INTO OgrenciAidatDetay (KayitID, Sira, OdemeTarihi, "
                   "Odenecek) VALUES (?, ?, ?, ?)"_s,
                   {account, sira, QDateTime(day, QTime(0, 0)), tl(amount).raw()});
    };
    auto paid = [&db](int account, int sira, const QDate &day, double amount) {
        return run(db,
                   u"INSERT INTO OgrenciAidatOdeme (KayitID, Sira, OdemeTarihi, "
                   "Odenen) VALUES (?, ?, ?, ?)"_s,
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
    const base::Result<PanoBilgisi> pano = RaporHazirla(db, u"202511"_s);
    QVERIFY2(pano, qPrintable(pano.error().text));
    QCOMPARE(pano->ayAdi, u"KASIM"_s);
    // September 0; October 1.500,25 - 200 = 1.300,25; November 1.500,25 - 400,10.
    QCOMPARE(pano->gecmis, tl(1300.25));
    QCOMPARE(pano->buAy, tl(1100.15));
    QCOMPARE(pano->toplam, tl(2400.40));
    QCOMPARE(pano->ogrenciSayisi, 2);
}

QTEST_GUILESS_MAIN(tst_School)
#include "tst_school.moc"
