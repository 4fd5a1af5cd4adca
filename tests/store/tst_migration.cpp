#include "test_support.h"

#include "store/database.h"
#include "store/dialect.h"
#include "store/migration.h"
#include "store/schema.h"

#include <QTest>

using namespace Qt::StringLiterals;

using namespace store;

using testing::run;
using testing::scalar;

namespace {

// Everything the year's store holds, as text: each column with its type, each index.
QStringList snapshot(Database &db)
{
    QStringList out;
    base::Result<Catalog> c = db.dialect().readCatalog(db, Store::Year);
    if (!c)
        return {u"catalogue: "_s + c.error().text};
    for (const QString &t : c->tableNames()) {
        int position = 0;
        for (const ColumnInfo &col : c->columns(t))
            out << u"%1.%2#%3:%4"_s.arg(t.toLower(), col.name.toLower())
                       .arg(position++)
                       .arg(col.typeName);
    }
    for (const schema::Table &t : schema::tables()) {
        for (const schema::Index &ix : t.indexes) {
            if (t.store == Store::Year && c->hasIndex(ix.name))
                out << u"index "_s + ix.name.toLower();
        }
    }
    out.sort();
    return out;
}

// Opens year 1 without migrating it: the store is born at the model shape.
bool openModel(testing::TestStore &s)
{
    if (!DatabaseAc(s.db(), Store::Global, true, false))
        return false;
    s.db().selectYear(1);
    return DatabaseAc(s.db(), Store::Year, true, false);
}

int columnPosition(Database &db, const QString &table, const QString &column)
{
    base::Result<Catalog> c = db.dialect().readCatalog(db, Store::Year);
    const QList<ColumnInfo> cols = c->columns(table);
    for (int i = 0; i < cols.size(); ++i) {
        if (cols[i].name.compare(column, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

} // namespace

class tst_Migration : public QObject
{
    Q_OBJECT

private slots:
    void modelReachesFullSchemaOnceAndForAll_data() { testing::addEngineRows(); }
    void modelReachesFullSchemaOnceAndForAll();
    void backFillsRunEveryTimeOrForNewFieldsOnly_data() { testing::addEngineRows(); }
    void backFillsRunEveryTimeOrForNewFieldsOnly();
    void oldRowsAreCarriedForward_data() { testing::addEngineRows(); }
    void oldRowsAreCarriedForward();
    void discountOrderFollowsDefinitionKeys_data() { testing::addEngineRows(); }
    void discountOrderFollowsDefinitionKeys();
    void shortNoteFieldGrowsInPlace_data() { testing::addEngineRows(); }
    void shortNoteFieldGrowsInPlace();
    void failedStepIsResumedAtNextOpen_data() { testing::addEngineRows(); }
    void failedStepIsResumedAtNextOpen();
    void aFailedMigrationLeavesTheYearOpenAndSaysSo_data() { testing::addEngineRows(); }
    void aFailedMigrationLeavesTheYearOpenAndSaysSo();
    void lateFieldsOfTheMainWindowPassQuietly_data() { testing::addEngineRows(); }
    void lateFieldsOfTheMainWindowPassQuietly();
    void onlyAnOlderVersionRunsTheSteps_data();
    void onlyAnOlderVersionRunsTheSteps();
};

void tst_Migration::modelReachesFullSchemaOnceAndForAll()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(openModel(s));
    // The model: what the migration adds is not there yet.
    QVERIFY(!Field_Exist(db, Store::Year, u"Sabit"_s, u"ParaTuru"_s));
    QVERIFY(Field_Exist(db, Store::Year, u"OgrenciAidatOdeme"_s, u"Aciklama"_s));
    QVERIFY(TabloYoksaEkle(db, Store::Year, u"IskontoTanim"_s));
    QVERIFY(TabloYoksaEkle(db, Store::Year, u"Haklar"_s));

    testing::StoreMessages messages;
    // As the program opens a year: the migration, then the main window's three fields.
    QVERIFY(DatabaseGuncelle(db).ok());
    SonAlanlariEkle(db);
    base::Result<Catalog> c = db.dialect().readCatalog(db, Store::Year);
    QVERIFY(c);
    for (const schema::Table &t : schema::tables()) {
        if (t.store != Store::Year)
            continue;
        QVERIFY2(c->hasTable(t.name), qPrintable(t.name));
        for (const schema::Field &f : t.fields)
            QVERIFY2(c->hasColumn(t.name, f.name), qPrintable(t.name + u'.' + f.name));
        for (const schema::Index &ix : t.indexes)
            QVERIFY2(c->hasIndex(ix.name), qPrintable(ix.name));
    }
    QVERIFY(!c->hasColumn(u"OgrenciAidatOdeme"_s, u"Aciklama"_s));
    QCOMPARE(*db.dialect().schemaVersion(db, Store::Year), yearSchemaVersion());

    const QStringList once = snapshot(db);
    QVERIFY(DatabaseGuncelle(db).ok());
    SonAlanlariEkle(db);
    QCOMPARE(snapshot(db), once);
    QCOMPARE(scalar(db, u"SELECT count(*) FROM IskontoTanim"_s).toInt(), 1);
    QCOMPARE(scalar(db, u"SELECT IskontoAciklama FROM IskontoTanim"_s).toString(),
             u"Serbest İndirim"_s);
    QVERIFY(messages.texts().isEmpty());
}

void tst_Migration::backFillsRunEveryTimeOrForNewFieldsOnly()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(openModel(s));
    QVERIFY(run(
        db, u"INSERT INTO Sabit (OkulAdi, OgretimYili) VALUES ('Deneme Koleji', '2025-2026')"_s));
    QVERIFY(run(db, u"INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi) VALUES (5, 'Ece')"_s));
    QVERIFY(DatabaseGuncelle(db).ok());
    // New fields on an existing row: each filled as its step says.
    QCOMPARE(scalar(db, u"SELECT ParaBirimi FROM Sabit"_s).toString(), u"TL"_s);
    QCOMPARE(scalar(db, u"SELECT EgitimDestekAy1 || '-' || EgitimDestekAy2 || '-' || "
                        "EgitimDestekAy3 || '-' || EgitimDestekAy4 FROM Sabit"_s)
                 .toString(),
             u"12-2-6-0"_s);
    QCOMPARE(scalar(db, u"SELECT Ogr_EgitimDestekDurumu FROM Ogrenci"_s).toInt(), 0);
    QCOMPARE(
        scalar(db, u"SELECT count(*) FROM Ogrenci WHERE Ogr_Islem_Yapan_Kullanici = ''"_s).toInt(),
        1);

    // The school's own months stay; Nulls of fields filled "every time" are filled again, in a
    // year that is up to date.
    QCOMPARE(*db.dialect().schemaVersion(db, Store::Year), yearSchemaVersion());
    QVERIFY(run(db, u"UPDATE Sabit SET EgitimDestekAy1 = 9, ParaTuru = NULL, OgrAOtoDeg = NULL"_s));
    QVERIFY(run(db, u"UPDATE Ogrenci SET Ogr_EgitimDestekDurumu = NULL"_s));
    QVERIFY(run(db, u"INSERT INTO OgrenciAidatDetay (KayitID, Sira, Odenecek) VALUES (1, 1, 0)"_s));
    QVERIFY(DatabaseGuncelle(db).ok());
    QCOMPARE(scalar(db, u"SELECT EgitimDestekAy1 FROM Sabit"_s).toInt(), 9);
    QCOMPARE(scalar(db, u"SELECT ParaTuru FROM Sabit"_s).toInt(), 0);
    QCOMPARE(scalar(db, u"SELECT OgrAOtoDeg FROM Sabit"_s).toString(), u"0"_s);
    QCOMPARE(scalar(db, u"SELECT Fatura_ID FROM OgrenciAidatDetay"_s).toDouble(), 0.0);
    QCOMPARE(scalar(db, u"SELECT YTLCevrim FROM OgrenciAidatDetay"_s).toInt(), 0);
    QVERIFY(
        scalar(db, u"SELECT count(*) FROM Ogrenci WHERE Ogr_EgitimDestekDurumu IS NULL"_s).toInt()
        == 1);
}

void tst_Migration::oldRowsAreCarriedForward()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(openModel(s));
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(run(db, u"INSERT INTO OgrenciAidatOdeme (KayitID, Sira, Odenen, Aciklama) "
                        "VALUES (7, %1, %2, 'taksit %1')"_s.arg(i)
                            .arg(i * 1000000)));
        QVERIFY(run(db, u"INSERT INTO Fatura (KayitID, FaturaNo) VALUES (7, %1)"_s.arg(100 + i)));
    }
    QVERIFY(DatabaseGuncelle(db).ok());
    Query q(db, u"SELECT ID, Sira, Ogr_Cari_Durum_Aciklamasi, Odenen, YTLCevrim FROM "
                "OgrenciAidatOdeme ORDER BY ID"_s);
    QVERIFY(q.exec());
    QList<qint64> ids;
    while (q.next()) {
        ids << q.integer(0);
        QCOMPARE(q.text(2), u"taksit %1"_s.arg(q.integer(1)));
        QCOMPARE(q.para(3), base::Para::fromWholeUnits(100 * q.integer(1)).value());
        QCOMPARE(q.integer(4), 0);
    }
    QCOMPARE(ids.size(), 3);
    QVERIFY(ids[0] < ids[1] && ids[1] < ids[2]);
    // New rows keep counting after the old ones.
    Query added(db, u"INSERT INTO Fatura (KayitID, FaturaNo) VALUES (8, 200) RETURNING ID"_s);
    QVERIFY(added.exec() && added.next());
    QVERIFY(added.integer(0) > 3);
}

void tst_Migration::discountOrderFollowsDefinitionKeys()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(openModel(s));
    // A file from before the running order: definitions and students' discounts exist.
    QVERIFY(createDeclaredTable(db, *schema::table(Store::Year, u"IskontoTanim"_s)).ok());
    QVERIFY(createDeclaredTable(db, *schema::table(Store::Year, u"OgrenciIskonto"_s)).ok());
    QVERIFY(run(db, u"INSERT INTO IskontoTanim (ID, IskontoAciklama, IskontoOrani) "
                    "VALUES (5, 'Kardeş', 10)"_s));
    QVERIFY(run(db, u"INSERT INTO IskontoTanim (ID, IskontoAciklama, IskontoOrani) "
                    "VALUES (2, 'Genel', 5)"_s));
    QVERIFY(run(db, u"INSERT INTO IskontoTanim (ID, IskontoAciklama, IskontoOrani) "
                    "VALUES (9, 'Personel', 50)"_s));
    QVERIFY(run(db, u"INSERT INTO OgrenciIskonto (KayitID, IskontoID) VALUES (1, 9)"_s));
    QVERIFY(run(db, u"INSERT INTO OgrenciIskonto (KayitID, IskontoID) VALUES (1, 2)"_s));
    QVERIFY(DatabaseGuncelle(db).ok());
    Query q(db, u"SELECT IskontoAciklama, IskontoSirasi, IskontoTipi, IskontoKalanTutardan "
                "FROM IskontoTanim ORDER BY IskontoSirasi"_s);
    QVERIFY(q.exec());
    QStringList got;
    while (q.next())
        got << u"%1=%2/%3/%4"_s.arg(q.text(0))
                   .arg(q.integer(1))
                   .arg(q.integer(2))
                   .arg(q.integer(3));
    QCOMPARE(got, (QStringList{u"Genel=1/0/0"_s, u"Kardeş=2/0/0"_s, u"Personel=3/0/0"_s,
                               u"Serbest İndirim=4/1/1"_s}));
    Query students(db, u"SELECT IskontoID, IskontoSirasi FROM OgrenciIskonto ORDER BY IskontoID"_s);
    QVERIFY(students.exec());
    QVERIFY(students.next());
    QCOMPARE(students.integer(1), 1);
    QVERIFY(students.next());
    QCOMPARE(students.integer(1), 3);
    // A second run numbers nothing again and adds no second free-form discount.
    QVERIFY(DatabaseGuncelle(db).ok());
    QCOMPARE(scalar(db, u"SELECT count(*) FROM IskontoTanim"_s).toInt(), 4);
}

void tst_Migration::shortNoteFieldGrowsInPlace()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    // An older file kept the note in a hundred characters.
    schema::Field shortNote
        = *schema::field(Store::Year, u"Ogrenci"_s, u"Ogr_Cari_Durum_Aciklama"_s);
    shortNote.size = 100;
    QVERIFY(AlanDegistir(db, Store::Year, u"Ogrenci"_s, shortNote).ok());
    QVERIFY(db.dialect().setSchemaVersion(db, Store::Year, 0).ok());
    const int position = columnPosition(db, u"Ogrenci"_s, u"Ogr_Cari_Durum_Aciklama"_s);
    QVERIFY(position > 0);
    QVERIFY(run(db, u"INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi, Ogr_Cari_Durum_Aciklama) "
                    "VALUES (12, 'Ümit', 'Ekim taksidi veliyle konuşuldu')"_s));
    base::Result<Catalog> before = db.dialect().readCatalog(db, Store::Year);
    QCOMPARE(before->column(u"Ogrenci"_s, u"Ogr_Cari_Durum_Aciklama"_s)->size, 100);

    QVERIFY(DatabaseGuncelle(db).ok());
    base::Result<Catalog> after = db.dialect().readCatalog(db, Store::Year);
    QCOMPARE(after->column(u"Ogrenci"_s, u"Ogr_Cari_Durum_Aciklama"_s)->size, 250);
    QCOMPARE(columnPosition(db, u"Ogrenci"_s, u"Ogr_Cari_Durum_Aciklama"_s), position);
    QCOMPARE(scalar(db, u"SELECT Ogr_Cari_Durum_Aciklama FROM Ogrenci WHERE Ogr_Numarasi = 12"_s)
                 .toString(),
             u"Ekim taksidi veliyle konuşuldu"_s);
    // The student keeps his key, and the key its counting.
    QVERIFY(run(db, u"INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (13)"_s));
    QCOMPARE(scalar(db, u"SELECT count(DISTINCT KayitID) FROM Ogrenci"_s).toInt(), 2);
    QVERIFY(before->hasIndex(u"Ogrenci_index2"_s));
    QVERIFY(after->hasIndex(u"Ogrenci_index2"_s));
}

void tst_Migration::failedStepIsResumedAtNextOpen()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(openModel(s));
    testing::StoreMessages messages;
    failMigrationStepForTest(15);
    base::Status failed = DatabaseGuncelle(db);
    QVERIFY(!failed);
    // The migration shows nothing itself: its notice comes back with its error.
    QVERIFY(messages.texts().isEmpty());
    QVERIFY(failed.error().bildiri);
    QCOMPARE(failed.error().bildiri->baslik, u"HATA"_s);
    QVERIFY(failed.error().bildiri->metin.startsWith(u"Database güncellemede hata!\n"_s));
    // Steps before the failing one stay done; the failing one left nothing half.
    QVERIFY(!TabloYoksaEkle(db, Store::Year, u"Bankalar"_s));
    QVERIFY(TabloYoksaEkle(db, Store::Year, u"KASA"_s));
    QVERIFY(!Field_Exist(db, Store::Year, u"Sabit"_s, u"MersisNo"_s));

    // The next opening of the year goes on from there.
    DatabaseKapat(db);
    db.selectYear(1);
    QVERIFY(DatabaseAc(db, Store::Year, false, true));
    QVERIFY(!TabloYoksaEkle(db, Store::Year, u"KASA"_s));
    QVERIFY(Field_Exist(db, Store::Year, u"Sabit"_s, u"MersisNo"_s));
    QVERIFY(messages.texts().isEmpty());
}

void tst_Migration::aFailedMigrationLeavesTheYearOpenAndSaysSo()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(openModel(s));
    testing::StoreMessages messages;
    failMigrationStepForTest(15);
    const base::Result<Acilis> opened = openStore(db, Store::Year, true);
    QVERIFY(opened);
    QVERIFY(opened->guncelleme);
    QCOMPARE(opened->guncelleme->bildiri->baslik, u"HATA"_s);
    QVERIFY(messages.texts().isEmpty());
    QVERIFY(run(db, u"INSERT INTO Ogrenci (Ogr_Numarasi) VALUES (1)"_s));

    // DatabaseAc shows a failed migration even when told to be quiet, and the year is usable.
    failMigrationStepForTest(15);
    QVERIFY(DatabaseAc(db, Store::Year, true, true));
    QCOMPARE(messages.titles(), QStringList{u"HATA"_s});
    QVERIFY(messages.texts().value(0).startsWith(u"Database güncellemede hata!\n"_s));
    QVERIFY(DatabaseAc(db, Store::Year, true, true));
    QCOMPARE(messages.texts().size(), 1);
}

void tst_Migration::lateFieldsOfTheMainWindowPassQuietly()
{
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(openModel(s));
    QVERIFY(!Field_Exist(db, Store::Year, u"AidatTanim"_s, u"AidatBirimAdeti"_s));
    testing::StoreMessages messages;
    SonAlanlariEkle(db);
    QVERIFY(Field_Exist(db, Store::Year, u"AidatTanim"_s, u"AidatBirimFiyati"_s));
    QVERIFY(Field_Exist(db, Store::Year, u"AidatTanim"_s, u"AidatBirimAdeti"_s));
    QVERIFY(Field_Exist(db, Store::Year, u"Sabit"_s, u"OgrKayitSilinenRapordaGoster"_s));
    const QStringList once = snapshot(db);
    SonAlanlariEkle(db); // the unit count's add is tried again and refused quietly
    QCOMPARE(snapshot(db), once);
    QVERIFY(!Field_Exist(db, Store::Year, u"AidatTanim"_s, u"AidatBirimAdet"_s));
    QVERIFY(messages.texts().isEmpty());
}

void tst_Migration::onlyAnOlderVersionRunsTheSteps_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("stepsRun");
    for (Engine e : testing::engines()) {
        const char *en = testing::engineName(e);
        QTest::addRow("%s-surumsuz", en) << int(e) << 0 << true;
        QTest::addRow("%s-eski-surum", en) << int(e) << yearSchemaVersion() - 2 << true;
        QTest::addRow("%s-guncel", en) << int(e) << yearSchemaVersion() << false;
    }
}

void tst_Migration::onlyAnOlderVersionRunsTheSteps()
{
    QFETCH(int, version);
    QFETCH(bool, stepsRun);
    VORTEL_STORE_FOR_ROW(s);
    Database &db = s.db();
    QVERIFY(s.openYear());
    // An index that a step makes is gone, and a fill is due.
    QVERIFY(db.exec(u"DROP INDEX %1.OgrenciAidatOdeme_KayitID"_s.arg(db.schema(Store::Year))));
    QVERIFY(run(db, u"INSERT INTO OgrenciAidatOdeme (KayitID, Sira, Odenen) VALUES (3, 1, 0)"_s));
    QVERIFY(db.dialect().setSchemaVersion(db, Store::Year, version).ok());

    QVERIFY(DatabaseGuncelle(db).ok());
    QCOMPARE(Field_Exist(db, Store::Year, u"OgrenciAidatOdeme"_s, u"ID"_s), true);
    base::Result<Catalog> c = db.dialect().readCatalog(db, Store::Year);
    QVERIFY(c);
    QCOMPARE(c->hasIndex(u"OgrenciAidatOdeme_KayitID"_s), stepsRun);
    QCOMPARE(scalar(db, u"SELECT YTLCevrim FROM OgrenciAidatOdeme"_s).toInt(), 0);
    QCOMPARE(*db.dialect().schemaVersion(db, Store::Year), yearSchemaVersion());
}

QTEST_GUILESS_MAIN(tst_Migration)
#include "tst_migration.moc"
