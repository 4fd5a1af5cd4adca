#include "test_support.h"

#include "base/turkish_text.h"
#include "store/database.h"
#include "store/migration.h"
#include "store/schema.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <cstring>

#include <atomic>
#include <limits>
#include <thread>

using namespace store;
using base::Para;

class tst_Database : public QObject
{
    Q_OBJECT

private slots:
    void openingNeedsAChosenYear_data() { testing::addEngineRows(); }
    void openingNeedsAChosenYear();
    void openingFailuresComeBackAsValues_data();
    void openingFailuresComeBackAsValues();
    void changingYearClosesTheOldOne_data() { testing::addEngineRows(); }
    void changingYearClosesTheOldOne();
    void valuesComeBackAsTheyWent_data() { testing::addEngineRows(); }
    void valuesComeBackAsTheyWent();
    void decimalsComeBackExactly_data() { testing::addEngineRows(); }
    void decimalsComeBackExactly();
    void valuesNoDecimalCanHoldAreErrors_data() { testing::addEngineRows(); }
    void valuesNoDecimalCanHoldAreErrors();
    void turkishOrderAndDateFunctions_data() { testing::addEngineRows(); }
    void turkishOrderAndDateFunctions();
    void saveAndLogCommitTogether_data() { testing::addEngineRows(); }
    void saveAndLogCommitTogether();
    void failedInnerStepUndoesTheWhole_data() { testing::addEngineRows(); }
    void failedInnerStepUndoesTheWhole();
    void failuresGetReporterNumbers_data() { testing::addEngineRows(); }
    void failuresGetReporterNumbers();
    void busyFileIsWaitedFor();
    void compactingSurvivesLeftovers();
    void anInterruptedCompactionLosesNoYear_data();
    void anInterruptedCompactionLosesNoYear();
    void aKilledCompactionLosesNoYear();
    void straySuperJournalsGoWhenNoJournalNamesThem();
};

void tst_Database::openingNeedsAChosenYear()
{
    VORTEL_STORE_FOR_ROW(s);
    testing::StoreMessages messages;
    QVERIFY(DatabaseAc(s.db(), Store::Global, false, false));
    QVERIFY(DatabaseAcikMi(s.db(), Store::Global));

    QVERIFY(!DatabaseAc(s.db(), Store::Year, true, false));
    QVERIFY(messages.texts().isEmpty());
    QVERIFY(!DatabaseAc(s.db(), Store::Year, false, false));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("Programın Veri Dosyası Bulunamadı. ()")});
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("Dikkat!")});

    s.db().selectYear(7);
    QVERIFY(!s.db().exists(Store::Year, 7));
    QVERIFY(DatabaseAc(s.db(), Store::Year, false, true));
    QVERIFY(s.db().exists(Store::Year, 7));
    QVERIFY(s.db().exists(Store::Log, 7));
    QVERIFY(DatabaseAcikMi(s.db(), Store::Year));
    QCOMPARE(messages.texts().size(), 1);
}

void tst_Database::openingFailuresComeBackAsValues_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<QString>("bozuk"); // what stands in the way: "", "veri", "yil", "log"
    QTest::addColumn<int>("tur");
    QTest::addColumn<QString>("metin");
    QTest::addColumn<QString>("bildiri"); // "{yer}": the file of the store asked for
    const QString yil = QStringLiteral("Çalışma dosyası açılamadı.");
    const QString yok = QStringLiteral("Programın Veri Dosyası Bulunamadı. ({yer})");
    for (Engine e : testing::engines()) {
        const char *en = testing::engineName(e);
        QTest::addRow("%s-yil-secilmemis", en)
            << int(e) << "" << int(Store::Year) << yil << "Programın Veri Dosyası Bulunamadı. ()";
        QTest::addRow("%s-log-yil-secilmemis", en)
            << int(e) << "" << int(Store::Log) << yil << "Programın Veri Dosyası Bulunamadı. ()";
    }
    // Files that cannot be opened: folders where the files should be.
    const int sqlite = int(Engine::SQLite);
    QTest::addRow("sqlite-veri-klasoru-dosya")
        << sqlite << "veri" << int(Store::Global) << "Veri dosyası açılamadı." << yok;
    QTest::addRow("sqlite-yil-dosyasi-klasor") << sqlite << "yil" << int(Store::Year) << yil << yok;
    QTest::addRow("sqlite-log-dosyasi-klasor") << sqlite << "log" << int(Store::Log) << yil
                                               << "Programın Log Veri Dosyası Bulunamadı. ({yer})";
}

void tst_Database::openingFailuresComeBackAsValues()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(QString, bozuk);
    QFETCH(int, tur);
    QFETCH(QString, metin);
    QFETCH(QString, bildiri);
    Database &db = s.db();
    const Store store = static_cast<Store>(tur);
    if (bozuk == QLatin1String("veri")) {
        QFile file(s.settings().dataFolder);
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(openStore(db, Store::Global, false));
    }
    if (bozuk == QLatin1String("yil") || bozuk == QLatin1String("log")) {
        db.selectYear(7);
        const Store blocked = bozuk == QLatin1String("yil") ? Store::Year : Store::Log;
        QVERIFY(QDir().mkpath(db.location(blocked, 7)));
    }
    bildiri.replace(QStringLiteral("{yer}"), db.location(store, db.selectedYear()));
    testing::StoreMessages messages;

    const base::Result<Acilis> opened = openStore(db, store, false);
    QVERIFY(!opened);
    QCOMPARE(opened.error().number, 3044);
    QCOMPARE(opened.error().text, metin);
    QVERIFY(!opened.error().isRefusal());
    QVERIFY(opened.error().bildiri);
    QCOMPARE(opened.error().bildiri->baslik, QStringLiteral("Dikkat!"));
    QCOMPARE(opened.error().bildiri->metin, bildiri);

    // An operation fails under its own label, with the notice unless it runs quietly.
    const Operation op(db, store, QStringLiteral("FrmDeneme:Kaydet"));
    QVERIFY(!op);
    QCOMPARE(op.error().label, QStringLiteral("FrmDeneme:Kaydet"));
    QCOMPARE(op.error().text, metin);
    QVERIFY(op.error().bildiri);
    QCOMPARE(op.error().bildiri->metin, bildiri);
    const Operation quiet(db, store, QStringLiteral("FrmDeneme:Oku"), Operation::Notice::Quiet);
    QCOMPARE(quiet.error().number, 3044);
    QVERIFY(!quiet.error().bildiri);
    QVERIFY(messages.texts().isEmpty());

    // Only DatabaseAc shows it, and only when not told to be quiet.
    QVERIFY(!DatabaseAc(db, store, true, false));
    QVERIFY(messages.texts().isEmpty());
    QVERIFY(!DatabaseAc(db, store, false, false));
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("Dikkat!")});
    QCOMPARE(messages.texts(), QStringList{bildiri});
}

void tst_Database::changingYearClosesTheOldOne()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear(1));
    {
        Query a(db, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi) VALUES (?, ?)"));
        a.bind(101).bind("Ali");
        QVERIFY(a.exec());
    }

    db.selectYear(2);
    QVERIFY(DatabaseAc(db, Store::Year, false, true));
    QCOMPARE(db.openYear(), 2);
    {
        Query count(db, QStringLiteral("SELECT count(*) FROM Ogrenci"));
        QVERIFY(count.exec() && count.next());
        QCOMPARE(count.integer(0), 0);
    }

    db.selectYear(1);
    QVERIFY(DatabaseAc(db, Store::Year, false, false));
    {
        Query back(db, QStringLiteral("SELECT Ogr_Adi FROM Ogrenci"));
        QVERIFY(back.exec() && back.next());
        QCOMPARE(back.text(0), QStringLiteral("Ali"));
    }

    QVERIFY(db.drop(2).ok());
    QVERIFY(!db.exists(Store::Year, 2));
    QVERIFY(db.exists(Store::Year, 1));
}

void tst_Database::valuesComeBackAsTheyWent()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    const QDateTime moment(QDate(2024, 2, 29), QTime(23, 59, 58));
    Query insert(
        db, QStringLiteral("INSERT INTO OgrenciAidatOdeme (KayitID, Sira, OdemeTarihi, Odenen, "
                           "Ogr_Cari_Durum_Aciklamasi, Tahsilat_Vade_Tarihi, Pesinat_Tarihi) "
                           "VALUES (?, ?, ?, ?, ?, ?, ?) RETURNING ID"));
    insert.bind(1)
        .bind(1)
        .bind(moment)
        .bind(Para::fromRaw(-12345678901234))
        .bind("Ahmet'in ödemesi; DROP TABLE x")
        .bind(base::SifirTarih)
        .bindNull();
    QVERIFY2(insert.exec(), qPrintable(insert.error(QStringLiteral("t")).text));
    QVERIFY(insert.next());
    QVERIFY(insert.integer(0) > 0);

    Query read(db, QStringLiteral("SELECT * FROM OgrenciAidatOdeme"));
    QVERIFY(read.exec() && read.next());
    QCOMPARE(read.dateTime(QStringLiteral("OdemeTarihi")), moment);
    QCOMPARE(read.para(QStringLiteral("Odenen")), Para::fromRaw(-12345678901234));
    QCOMPARE(read.text(QStringLiteral("Ogr_Cari_Durum_Aciklamasi")),
             QStringLiteral("Ahmet'in ödemesi; DROP TABLE x"));
    QCOMPARE(read.dateTime(QStringLiteral("Tahsilat_Vade_Tarihi")), base::SifirTarih);
    QVERIFY(read.isNull(QStringLiteral("Pesinat_Tarihi")));
    QVERIFY(!read.dateTime(QStringLiteral("Pesinat_Tarihi")).isValid());

    // A day bound as a date finds the row stored with a time of midnight.
    Query byDay(db, QStringLiteral(
                        "SELECT count(*) FROM OgrenciAidatOdeme WHERE Tahsilat_Vade_Tarihi = ?"));
    byDay.bind(QDate(1899, 12, 30));
    QVERIFY(byDay.exec() && byDay.next());
    QCOMPARE(byDay.integer(0), 1);
}

// Rates and discount values live in Double and Single columns; each comes back as the decimal
// that went in, and the engine's own SQL sees that decimal too.
void tst_Database::decimalsComeBackExactly()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    for (const char *text : {"0.1", "18", "7.25", "33.3333", "100", "-0.0001", "12345.6789"}) {
        const Para value = Para::fromDecimalString(QString::fromLatin1(text)).value();
        QVERIFY(testing::run(db, QStringLiteral("DELETE FROM AidatTanim")));
        QVERIFY(testing::run(db, QStringLiteral("DELETE FROM IskontoTanim")));
        // KDVOrani is a Double, IskontoOrani a Single.
        Query rate(db, QStringLiteral("INSERT INTO AidatTanim (AidatTanim, KDVOrani) "
                                      "VALUES ('x', ?)"));
        Query discount(db, QStringLiteral("INSERT INTO IskontoTanim (IskontoAciklama, "
                                          "IskontoOrani) VALUES ('x', ?)"));
        QVERIFY2(rate.bindDecimal(value).exec() && discount.bindDecimal(value).exec(), text);

        Query read(db, QStringLiteral("SELECT KDVOrani, IskontoOrani FROM AidatTanim, "
                                      "IskontoTanim WHERE KDVOrani = %1 AND IskontoOrani = %1")
                           .arg(QString::fromLatin1(text)));
        QVERIFY2(read.exec() && read.next(), text);
        QCOMPARE(read.decimal(QStringLiteral("KDVOrani")).value_or(Para()), value);
        QCOMPARE(read.decimal(1).value_or(Para()), value);
    }
    QVERIFY(testing::run(db, QStringLiteral("UPDATE AidatTanim SET KDVOrani = NULL")));
    Query null(db, QStringLiteral("SELECT KDVOrani FROM AidatTanim"));
    QVERIFY(null.exec() && null.next());
    QCOMPARE(null.decimal(0).value_or(Para::fromUnits(1)), Para());
}

// What no four-place decimal holds, or no column keeps exactly, is an error on the way out and
// on the way in, never a value rounded or cut to fit.
void tst_Database::valuesNoDecimalCanHoldAreErrors()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    const QStringList literals = {"0.12345", "1e300"};
    QString text;
    for (const QString &literal : literals) {
        QVERIFY(testing::run(db, QStringLiteral("DELETE FROM AidatTanim")));
        QVERIFY(testing::run(db, QStringLiteral("INSERT INTO AidatTanim (AidatTanim, KDVOrani) "
                                                "VALUES ('x', %1)")
                                     .arg(literal)));
        Query read(db, QStringLiteral("SELECT KDVOrani FROM AidatTanim"));
        QVERIFY(read.exec() && read.next());
        const base::Result<Para> value = read.decimal(QStringLiteral("KDVOrani"));
        QVERIFY(!value.ok() && !read.decimal(0).ok());
        QCOMPARE(value.error().number, literal == literals[0] ? 13 : base::TasmaHatasi);
        text = text.isEmpty() ? value.error().text : text;
    }
    QCOMPARE(text, QStringLiteral("KDVOrani alanındaki 0,12345 değeri dört ondalık "
                                  "basamaklı bir sayı değil."));

    QVERIFY(testing::run(db, QStringLiteral("DELETE FROM AidatTanim")));
    Query fine(db, QStringLiteral("INSERT INTO AidatTanim (AidatTanim, KDVOrani) VALUES ('x', ?)"));
    fine.bindDecimal(Para::fromDecimalString(QStringLiteral("549755813888.0003")).value());
    QVERIFY(!fine.exec());
    QCOMPARE(fine.error(QStringLiteral("Frm:Kaydet")).number, base::TasmaHatasi);
    QCOMPARE(fine.error(QStringLiteral("Frm:Kaydet")).label, QStringLiteral("Frm:Kaydet"));
    Query sum(db, QStringLiteral("INSERT INTO AidatTanim (AidatTanim, KDVOrani) VALUES ('x', ?)"));
    QVERIFY(!sum.bind(QVariant(0.1 + 0.2)).exec());
    QCOMPARE(sum.error(QString()).number, 13);
    QCOMPARE(testing::scalar(db, QStringLiteral("SELECT count(*) FROM AidatTanim")).toInt(), 0);
}

void tst_Database::turkishOrderAndDateFunctions()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    const QStringList names
        = {QStringLiteral("İpek"),  QStringLiteral("Ilgın"), QStringLiteral("Çiğdem"),
           QStringLiteral("Can"),   QStringLiteral("ırmak"), QStringLiteral("ipek"),
           QStringLiteral("Derya"), QStringLiteral("Şule"),  QStringLiteral("Selin")};
    int day = 1;
    for (const QString &n : names) {
        Query q(db,
                QStringLiteral("INSERT INTO Ogrenci (Ogr_Adi, Ogr_Kayit_Tarihi) VALUES (?, ?)"));
        q.bind(n).bind(QDate(2025, day % 12 + 1, day));
        QVERIFY(q.exec());
        ++day;
    }
    Query ordered(db, QStringLiteral("SELECT Ogr_Adi FROM Ogrenci ORDER BY Ogr_Adi"));
    QVERIFY(ordered.exec());
    QStringList got;
    while (ordered.next())
        got << ordered.text(0);
    QCOMPARE(got, (QStringList{
                      QStringLiteral("Can"), QStringLiteral("Çiğdem"), QStringLiteral("Derya"),
                      QStringLiteral("Ilgın"), QStringLiteral("ırmak"), QStringLiteral("ipek"),
                      QStringLiteral("İpek"), QStringLiteral("Selin"), QStringLiteral("Şule")}));

    Query exact(db, QStringLiteral("SELECT count(*) FROM Ogrenci WHERE Ogr_Adi = ?"));
    exact.bind(QStringLiteral("ipek"));
    QVERIFY(exact.exec() && exact.next());
    QCOMPARE(exact.integer(0), 1);

    Query parts(db, QStringLiteral("SELECT year(Ogr_Kayit_Tarihi), month(Ogr_Kayit_Tarihi), "
                                   "day(Ogr_Kayit_Tarihi) FROM Ogrenci WHERE Ogr_Adi = ?"));
    parts.bind(QStringLiteral("Derya"));
    QVERIFY(parts.exec() && parts.next());
    QCOMPARE(parts.integer(0), 2025);
    QCOMPARE(parts.integer(1), 8);
    QCOMPARE(parts.integer(2), 7);
}

void tst_Database::saveAndLogCommitTogether()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    auto write = [&db](int number) {
        Query a(db, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (?)"));
        a.bind(number);
        Query b(db, QStringLiteral("INSERT INTO %1 (Kayit_Id, Islem_Turu) VALUES (?, 'AddNew')")
                        .arg(db.table(Store::Log, QStringLiteral("Ogrenci"))));
        b.bind(number);
        return a.exec() && b.exec();
    };
    auto counts = [&db]() {
        Query a(db, QStringLiteral("SELECT count(*) FROM Ogrenci"));
        Query b(db, QStringLiteral("SELECT count(*) FROM %1")
                        .arg(db.table(Store::Log, QStringLiteral("Ogrenci"))));
        return (a.exec() && a.next() && b.exec() && b.next())
                   ? qMakePair(a.integer(0), b.integer(0))
                   : qMakePair(qint64(-1), qint64(-1));
    };
    {
        Transaction tx(db);
        QVERIFY(tx);
        QVERIFY(write(1));
        QVERIFY(tx.commit());
    }
    {
        Transaction tx(db);
        QVERIFY(tx);
        QVERIFY(write(2));
        // leaves scope without commit
    }
    QCOMPARE(counts(), qMakePair(qint64(1), qint64(1)));
}

void tst_Database::failedInnerStepUndoesTheWhole()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    Transaction outer(db);
    QVERIFY(outer);
    Query a(db, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (1)"));
    QVERIFY(a.exec());
    {
        Transaction inner(db);
        QVERIFY(inner);
        Query b(db, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (2)"));
        QVERIFY(b.exec());
    }
    QVERIFY(!outer.commit());
    QVERIFY(outer.error().text.contains(QStringLiteral("hiçbir değişiklik kaydedilmedi")));
    // A connection closed under a transaction ends it; the next one starts from nothing.
    {
        Transaction cut(db);
        QVERIFY(cut);
        DatabaseKapat(db);
        QVERIFY(!cut.commit());
    }
    QCOMPARE(db.transactionDepth(), 0);
    QVERIFY(s.openYear());
    Query count(db, QStringLiteral("SELECT count(*) FROM Ogrenci"));
    QVERIFY(count.exec() && count.next());
    QCOMPARE(count.integer(0), 0);
}

void tst_Database::failuresGetReporterNumbers()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    Query syntax(db, QStringLiteral("SELEC Ogr_Adi FRO Ogrenci"));
    QVERIFY(!syntax.exec());
    QCOMPARE(syntax.error(QStringLiteral("FrmDeneme:Yukle")).number, 3075);
    QCOMPARE(syntax.error(QStringLiteral("FrmDeneme:Yukle")).label,
             QStringLiteral("FrmDeneme:Yukle"));
    Query missing(db, QStringLiteral("SELECT Yok FROM Ogrenci"));
    QVERIFY(!missing.exec());
    QCOMPARE(missing.error(QString()).number, 3061);
}

void tst_Database::busyFileIsWaitedFor()
{
    testing::TestStore s(Engine::SQLite);
    QVERIFY(s.openYear());
    std::atomic<bool> started{false};
    std::atomic<bool> written{false};
    QString failure;
    Transaction tx(s.db());
    QVERIFY(tx);
    Query mine(s.db(), QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (1)"));
    QVERIFY(mine.exec());
    const ConnectionSettings settings = s.settings();
    std::thread other([&]() {
        Database second(settings);
        second.selectYear(1);
        started = true;
        if (!DatabaseAc(second, Store::Year, true, false)) {
            failure = QStringLiteral("açılamadı");
            return;
        }
        Query q(second, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (2)"));
        if (!q.exec())
            failure = q.error(QString()).text;
        else
            written = true;
    });
    while (!started)
        QTest::qWait(10);
    QTest::qWait(300); // the other workstation is now waiting for the file
    QVERIFY(!written);
    QVERIFY(tx.commit());
    other.join();
    QVERIFY2(written, qPrintable(failure));
}

void tst_Database::compactingSurvivesLeftovers()
{
    testing::TestStore s(Engine::SQLite);
    QVERIFY(s.openYear());
    Query q(s.db(), QStringLiteral("INSERT INTO Ogrenci (Ogr_Adi) VALUES ('Ömer')"));
    QVERIFY(q.exec());
    const QString path = s.db().location(Store::Year, 1);
    DatabaseKapat(s.db());
    for (const char *suffix : {"_tmp", "_old"}) {
        QFile leftover(path + QLatin1String(suffix));
        QVERIFY(leftover.open(QIODevice::WriteOnly));
        leftover.write("yarım kalmış sıkıştırma");
    }
    s.db().setMaintenance(true);
    s.db().selectYear(1);
    QVERIFY(DatabaseAc(s.db(), Store::Year, false, false));
    QVERIFY(QFile::exists(path + QStringLiteral("_old")));
    QVERIFY(!QFile::exists(path + QStringLiteral("_tmp")));
    Query back(s.db(), QStringLiteral("SELECT Ogr_Adi FROM Ogrenci ORDER BY Ogr_Adi"));
    QVERIFY(back.exec() && back.next());
    QCOMPARE(back.text(0), QStringLiteral("Ömer"));
}

namespace {

QString firstName(Database &db)
{
    Query q(db, QStringLiteral("SELECT Ogr_Adi FROM Ogrenci ORDER BY Ogr_Adi"));
    return q.exec() && q.next() ? q.text(0) : QStringLiteral("<yok>");
}

} // namespace

void tst_Database::anInterruptedCompactionLosesNoYear_data()
{
    // Where the kill came: the store renamed away with the copy beside it; the copy half
    // written; both renames done.
    QTest::addColumn<bool>("storeRenamed");
    QTest::addColumn<bool>("copyLeft");
    QTest::addColumn<bool>("copyTookItsPlace");
    QTest::addRow("ilk-ad-degisikliginden-sonra") << true << true << false;
    QTest::addRow("kopya-yarim") << false << true << false;
    QTest::addRow("iki-ad-degisikligi-bitti") << true << false << true;
}

void tst_Database::anInterruptedCompactionLosesNoYear()
{
    QFETCH(bool, storeRenamed);
    QFETCH(bool, copyLeft);
    QFETCH(bool, copyTookItsPlace);
    testing::TestStore s(Engine::SQLite);
    QVERIFY(s.openYear());
    Query q(s.db(), QStringLiteral("INSERT INTO Ogrenci (Ogr_Adi) VALUES ('Ömer')"));
    QVERIFY(q.exec());
    const QString path = s.db().location(Store::Year, 1);
    DatabaseKapat(s.db());
    if (storeRenamed)
        QVERIFY(QFile::rename(path, path + QStringLiteral("_old")));
    if (copyTookItsPlace)
        QVERIFY(QFile::copy(path + QStringLiteral("_old"), path));
    if (copyLeft) {
        QFile half(path + QStringLiteral("_tmp"));
        QVERIFY(half.open(QIODevice::WriteOnly));
        half.write("SQLite format 3\0 yarım");
    }
    QVERIFY(!s.db().exists(Store::Year, 1) || !storeRenamed || copyTookItsPlace);

    s.db().selectYear(1);
    QVERIFY(DatabaseAc(s.db(), Store::Year, true, false));
    QVERIFY(s.db().exists(Store::Year, 1));
    QCOMPARE(firstName(s.db()), QStringLiteral("Ömer"));
    QVERIFY(!QFile::exists(path + QStringLiteral("_tmp")));
    QCOMPARE(QFile::exists(path + QStringLiteral("_old")), copyTookItsPlace);
}

void tst_Database::aKilledCompactionLosesNoYear()
{
    // The program, run again as a child that compacts the year over and over ("Dosyaya Bakım
    // Yap"), killed at random moments: the year is there afterwards, whole, every time.
    testing::TestStore s(Engine::SQLite);
    QVERIFY(s.openYear());
    Query q(s.db(), QStringLiteral("INSERT INTO Ogrenci (Ogr_Adi) VALUES ('Ömer')"));
    QVERIFY(q.exec());
    const QString folder = s.settings().dataFolder;
    DatabaseKapat(s.db());
    for (int round = 0; round < 12; ++round) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("--compact-child"), folder});
        QVERIFY(child.waitForStarted());
        QTest::qWait(int(QRandomGenerator::global()->bounded(50, 400)));
        child.kill();
        child.waitForFinished();
        s.db().selectYear(1);
        QVERIFY2(DatabaseAc(s.db(), Store::Year, true, false), qPrintable(QString::number(round)));
        QCOMPARE(firstName(s.db()), QStringLiteral("Ömer"));
        DatabaseKapat(s.db());
    }
}

void tst_Database::straySuperJournalsGoWhenNoJournalNamesThem()
{
    testing::TestStore s(Engine::SQLite);
    QVERIFY(s.openYear());
    DatabaseKapat(s.db());
    const QDir folder(s.settings().dataFolder);
    const QString stray = folder.filePath(QStringLiteral("Sabit.db-mj1A2B3C4D"));
    const QString journal = folder.filePath(QStringLiteral("Baska.db-journal"));
    for (const QString &f : {stray, journal}) {
        QFile file(f);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    // A journal in the folder may name it: it stays.
    s.db().selectYear(1);
    QVERIFY(DatabaseAc(s.db(), Store::Year, true, false));
    QVERIFY(QFile::exists(stray));
    DatabaseKapat(s.db());
    QVERIFY(QFile::remove(journal));
    QVERIFY(DatabaseAc(s.db(), Store::Year, true, false));
    QVERIFY(!QFile::exists(stray));
}

// With "--compact-child <folder>" the test program is the child of aKilledCompactionLosesNoYear.
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--compact-child") == 0) {
        Database db(ConnectionSettings::sqlite(QString::fromLocal8Bit(argv[2])));
        db.selectYear(1);
        db.setMaintenance(true);
        for (;;) {
            if (!DatabaseAc(db, Store::Year, true, false))
                return 1;
            DatabaseKapat(db);
        }
    }
    tst_Database test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_database.moc"
