#include "fees_support.h"

#include "base/turkish_text.h"
#include "fees/definitions.h"
#include "fees/discounts.h"
#include "store/database.h"
#include "users/session.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

using base::Para;
using fees::AidatTanimi;
using fees::IskontoTanimi;
using fees::TaksitSatiri;

using testing::run;
using testing::scalar;

namespace {

Para para(const char *c)
{
    return Para::fromDecimalString(QString::fromLatin1(c)).value();
}

qint64 count(store::Database &db, const QString &sqlText)
{
    return scalar(db, sqlText).toLongLong();
}

AidatTanimi ogrenimUcreti()
{
    AidatTanimi t;
    t.aidatTanim = u"  Öğrenim Ücreti 'A' Şubesi "_s;
    t.aidatTuru = 0;
    t.toplam = para("125000.5");
    t.pesinat = para("25000.5");
    t.birimFiyati = para("125000.5");
    t.birimAdeti = 1;
    t.kdvOrani = para("10");
    t.taksitSayisi = 10;
    t.odemeBasTarihi = QDate(2025, 8, 31);
    for (int i = 0; i < 10; ++i) {
        t.taksitler.append(TaksitSatiri{base::AyEkle(t.odemeBasTarihi, i), para("10000")});
    }
    return t;
}

void addAccount(store::Database &db, qint64 ogrenci, qint64 aidatId)
{
    store::Query q(db, u"INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, "
                       "AidatID, AidatTanim) VALUES (?, 1, ?, ?, ?, ?)"_s);
    q.bind(ogrenci).bind(para("1000")).bind(para("1000")).bind(aidatId).bind("Öğrenim");
    QVERIFY(q.exec());
}

} // namespace

class tst_FeeDefinitions : public QObject
{
    Q_OBJECT

private slots:
    void init() { users::durum() = users::CalismaDurumu(); }
    void aDefinitionComesBackAsSaved_data() { testing::addEngineRows(); }
    void aDefinitionComesBackAsSaved();
    void aFailedSaveWritesNothing_data() { testing::addEngineRows(); }
    void aFailedSaveWritesNothing();
    void aDefinitionInUseIsNotDeleted_data() { testing::addEngineRows(); }
    void aDefinitionInUseIsNotDeleted();
    void withoutTheWriteRightNothingIsWritten();
    void discountsKeepTheirListOrder_data() { testing::addEngineRows(); }
    void discountsKeepTheirListOrder();
    void theGeneralRateIsTheLowestIdRow_data() { testing::addEngineRows(); }
    void theGeneralRateIsTheLowestIdRow();
    void unkeepableFiguresFailUnderTheScreensLabel_data() { testing::addEngineRows(); }
    void unkeepableFiguresFailUnderTheScreensLabel();
};

void tst_FeeDefinitions::aDefinitionComesBackAsSaved()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    AidatTanimi t = ogrenimUcreti();
    t.taksitler[3].odemeTarihi = QDate(); // a cell that holds no date
    base::Result<fees::KayitSonucu> saved = fees::AidatTaksitDetayKaydet(db, t);
    QVERIFY2(saved.ok(), qPrintable(saved.error().text));
    QVERIFY(saved->kayitId > 0);

    base::Result<std::optional<AidatTanimi>> read
        = fees::AidatTaksitDetayGoster(db, saved->kayitId);
    QVERIFY(read.ok());
    QVERIFY(read->has_value());
    const AidatTanimi &r = **read;
    QCOMPARE(r.aidatTanim, u"Öğrenim Ücreti 'A' Şubesi"_s);
    QCOMPARE(r.toplam, t.toplam);
    QCOMPARE(r.pesinat, t.pesinat);
    QCOMPARE(r.birimFiyati, t.birimFiyati);
    QCOMPARE(r.birimAdeti, qint64(1));
    QCOMPARE(r.kdvOrani, para("10"));
    QCOMPARE(r.taksitSayisi, 10);
    QCOMPARE(r.odemeBasTarihi, QDate(2025, 8, 31));
    QCOMPARE(r.ytlCevrim, 1);
    QCOMPARE(r.taksitler, t.taksitler);
    // The row without a date is kept as the zero date, in its place.
    store::Query zero(db, u"SELECT OdemeTarihi FROM AidatDetay WHERE KayitID = ? AND Sira = 4"_s);
    zero.bind(saved->kayitId);
    QVERIFY(zero.exec() && zero.next());
    QVERIFY(base::SifirTarihMi(zero.dateTime(0)));
    QCOMPARE(count(db, u"SELECT MIN(Sira) FROM AidatDetay"_s), 1);
    QCOMPARE(count(db, u"SELECT MAX(Sira) FROM AidatDetay"_s), 10);

    // A second save keeps the key and replaces the rows.
    AidatTanimi again = r;
    again.aidatTanim = u"Öğrenim Ücreti"_s;
    again.taksitler = {TaksitSatiri{QDate(2025, 9, 1), para("50000")},
                       TaksitSatiri{QDate(2025, 10, 1), para("50000")}};
    saved = fees::AidatTaksitDetayKaydet(db, again);
    QVERIFY(saved.ok());
    QCOMPARE(saved->kayitId, r.kayitId);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatTanim"_s), 1);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatDetay"_s), 2);
    base::Result<QList<fees::AidatListeSatiri>> list = fees::AidatTaksitGoster(db);
    QVERIFY(list.ok());
    QCOMPARE(list->size(), 1);
    QCOMPARE(list->first().aidatTanim, u"Öğrenim Ücreti"_s);
    QCOMPARE(list->first().toplam, t.toplam);
}

void tst_FeeDefinitions::aFailedSaveWritesNothing()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    base::Result<fees::KayitSonucu> first = fees::AidatTaksitDetayKaydet(db, ogrenimUcreti());
    QVERIFY(first.ok());
    // The installment rows cannot be written: neither the header nor a new row may stay.
    QVERIFY(db.exec(u"DROP TABLE AidatDetay"_s).ok());
    AidatTanimi changed = ogrenimUcreti();
    changed.kayitId = first->kayitId;
    changed.aidatTanim = u"Değişti"_s;
    changed.toplam = para("1");
    base::Result<fees::KayitSonucu> failed = fees::AidatTaksitDetayKaydet(db, changed);
    QVERIFY(!failed.ok());
    QCOMPARE(failed.error().label, u"FrmAidatTanimlama:AidatTaksitDetayKaydet"_s);
    AidatTanimi fresh = ogrenimUcreti();
    fresh.aidatTanim = u"Yemek"_s;
    QVERIFY(!fees::AidatTaksitDetayKaydet(db, fresh).ok());
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatTanim"_s), 1);
    QCOMPARE(scalar(db, u"SELECT AidatTanim FROM AidatTanim"_s).toString(),
             u"Öğrenim Ücreti 'A' Şubesi"_s);
}

void tst_FeeDefinitions::aDefinitionInUseIsNotDeleted()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    const qint64 used = fees::AidatTaksitDetayKaydet(db, ogrenimUcreti())->kayitId;
    AidatTanimi other = ogrenimUcreti();
    other.aidatTanim = u"Servis"_s;
    const qint64 free = fees::AidatTaksitDetayKaydet(db, other)->kayitId;
    addAccount(db, 7, used);

    base::Status r = fees::TaksitAidatSil(db, used, u"Öğrenim"_s);
    QVERIFY(!r.ok() && r.error().isRefusal());
    QCOMPARE(r.error().red->baslik, u"AİDAT KULLANILIYOR"_s);
    QCOMPARE(r.error().red->metin,
             u"Öğrenim Aidat/Taksit tanımlaması kullanıldığı için silinemedi!"_s);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatTanim"_s), 2);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatDetay"_s), 20);

    // A definition in use can still be changed; the account keeps its own rows.
    AidatTanimi changed = ogrenimUcreti();
    changed.kayitId = used;
    changed.toplam = para("1");
    QVERIFY(fees::AidatTaksitDetayKaydet(db, changed).ok());
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM OgrenciAidatTanim WHERE AidatID = %1"_s.arg(used)),
             1);

    r = fees::TaksitAidatSil(db, free, other.aidatTanim);
    QVERIFY2(r.ok(), qPrintable(r.error().text));
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatTanim WHERE KayitID = %1"_s.arg(free)), 0);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatDetay WHERE KayitID = %1"_s.arg(free)), 0);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatDetay WHERE KayitID = %1"_s.arg(used)), 10);
}

void tst_FeeDefinitions::withoutTheWriteRightNothingIsWritten()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    const qint64 key = fees::AidatTaksitDetayKaydet(db, ogrenimUcreti())->kayitId;
    users::durum().HakYazma = false;

    // Each of the four is refused with the same notice, and nothing is written.
    QList<IskontoTanimi> list = {IskontoTanimi{0, u"Kardeş"_s, para("10")}};
    const QList<base::Error> refusals = {
        fees::AidatTaksitDetayKaydet(db, ogrenimUcreti()).error(),
        fees::TaksitAidatSil(db, key, u"x"_s).error(),
        fees::IskontoTanimlariKaydet(db, list).error(),
        fees::IskontoTanimiSil(db, 1).error(),
    };
    for (const base::Error &e : refusals) {
        QVERIFY(e.isRefusal());
        QCOMPARE(e.red->baslik, u"Uyarı !"_s);
        QCOMPARE(e.red->metin, u"Değişiklik yapma yetkiniz yok. Lütfen sistem "
                               "yetkilisi ile görüşünüz"_s);
    }
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatTanim"_s), 1);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM IskontoTanim WHERE IskontoAciklama = 'Kardeş'"_s), 0);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM IskontoTanim WHERE ID = 1"_s), 1);
}

void tst_FeeDefinitions::discountsKeepTheirListOrder()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    // A new year starts with the free discount, computed last.
    base::Result<QList<IskontoTanimi>> read = fees::IskontoTanimlariOku(db);
    QVERIFY(read.ok());
    QCOMPARE(read->size(), 1);
    QCOMPARE(read->first().aciklama, u"Serbest İndirim"_s);
    QCOMPARE(read->first().tipi, int(fees::Tutar));
    QCOMPARE(read->first().kalanTutardan, int(fees::KalanTutardan));

    QList<IskontoTanimi> list = {
        IskontoTanimi{0, u"Kardeş İndirimi"_s, para("12.5"), fees::EsasTutardan, fees::Oran},
        IskontoTanimi{0, u"Personel"_s, para("750.25"), fees::KalanTutardan, fees::Tutar},
        IskontoTanimi{0, u"  "_s, para("5")}, // a new row left empty
        read->first(),
    };
    QVERIFY(fees::IskontoTanimlariKaydet(db, list).ok());
    QVERIFY(list[0].id > 0 && list[1].id > 0);
    QCOMPARE(list[2].id, 0);
    read = fees::IskontoTanimlariOku(db);
    QStringList names;
    for (const IskontoTanimi &t : *read) {
        names << u"%1:%2:%3"_s.arg(t.sira).arg(t.aciklama, t.deger.toDecimalString());
    }
    QCOMPARE(names,
             (QStringList{"1:Kardeş İndirimi:12.5", "2:Personel:750.25", "3:Serbest İndirim:0"}));
    QCOMPARE(read->at(1).tipi, int(fees::Tutar));
    QVERIFY(fees::IskontoTanimiSil(db, list[0].id).ok());
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM IskontoTanim"_s), 2);
}

void tst_FeeDefinitions::theGeneralRateIsTheLowestIdRow()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    // The free discount of a new year stands first and holds an amount: no general rate.
    QCOMPARE(fees::GenelIskontoOrani(db).value(), Para());
    QVERIFY(db.exec(u"DELETE FROM IskontoTanim"_s).ok());
    QCOMPARE(fees::GenelIskontoOrani(db).value(), Para());

    QList<IskontoTanimi> list = {
        IskontoTanimi{0, u"Genel"_s, para("7.5")},
        IskontoTanimi{0, u"Kardeş"_s, para("20")},
    };
    QVERIFY(fees::IskontoTanimlariKaydet(db, list).ok());
    // Moved to be computed first, a row keeps its key: the general rate is the lowest key's.
    QList<IskontoTanimi> reversed = {list[1], list[0]};
    QVERIFY(fees::IskontoTanimlariKaydet(db, reversed).ok());
    QCOMPARE(fees::IskontoTanimlariOku(db)->first().aciklama, u"Kardeş"_s);
    QCOMPARE(fees::GenelIskontoOrani(db).value(), para("7.5"));

    // A first row that holds an amount is no rate.
    list[0].tipi = fees::Tutar;
    list[0].deger = para("500");
    QList<IskontoTanimi> again = {list[0], list[1]};
    QVERIFY(fees::IskontoTanimlariKaydet(db, again).ok());
    QCOMPARE(fees::GenelIskontoOrani(db).value(), Para());
}

// A rate that no four-place decimal holds, and an amount beyond the range, fail as errors that
// carry the screen's label, and nothing is written.
void tst_FeeDefinitions::unkeepableFiguresFailUnderTheScreensLabel()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    base::Result<fees::KayitSonucu> saved = fees::AidatTaksitDetayKaydet(db, ogrenimUcreti());
    QVERIFY(saved.ok());
    QVERIFY(run(db, u"UPDATE AidatTanim SET KDVOrani = 0.12345"_s));
    const auto read = fees::AidatTaksitDetayGoster(db, saved->kayitId);
    QCOMPARE(read.ok() ? 0 : read.error().number, 13);
    QCOMPARE(read.error().label, u"FrmAidatTanimlama:AidatTaksitDetayGoster"_s);
    QVERIFY(run(db, u"UPDATE IskontoTanim SET IskontoOrani = 1e300"_s));
    const auto discounts = fees::IskontoTanimlariOku(db);
    QCOMPARE(discounts.ok() ? 0 : discounts.error().number, base::TasmaHatasi);
    QCOMPARE(discounts.error().label, u"FrmAidatTanimlama:IskontoGoster"_s);

    AidatTanimi tooBig = ogrenimUcreti();
    tooBig.aidatTanim = u"Taşan"_s;
    tooBig.toplam = Para::fromRaw(std::numeric_limits<qint64>::max()) + para("1");
    const auto failed = fees::AidatTaksitDetayKaydet(db, tooBig);
    QCOMPARE(failed.ok() ? 0 : failed.error().number, base::TasmaHatasi);
    QCOMPARE(failed.error().label, u"FrmAidatTanimlama:AidatTaksitDetayKaydet"_s);
    QCOMPARE(count(db, u"SELECT COUNT(*) FROM AidatTanim"_s), 1);
}

QTEST_GUILESS_MAIN(tst_FeeDefinitions)
#include "tst_fee_definitions.moc"
