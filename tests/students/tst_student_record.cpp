#include "test_support.h"

#include "base/turkish_text.h"
#include "store/database.h"
#include "students/class_moves.h"
#include "students/student_list.h"
#include "students/student_record.h"
#include "users/session.h"

#include <QTest>

#include <tuple>

using namespace students;
using base::Para;

using testing::run;
using testing::scalar;

namespace {

int count(store::Database &db, const QString &table, const QString &where = QString(),
          const QVariantList &values = {})
{
    return scalar(db,
                  QStringLiteral("SELECT COUNT(*) FROM ") + table
                      + (where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where),
                  values)
        .toInt();
}

bool openOffice(testing::TestStore &s)
{
    users::durum() = users::CalismaDurumu();
    users::durum().AktifKullanici = QStringLiteral("muhasebe");
    users::durum().OgretimYili = QStringLiteral("2025-2026");
    users::durum().CariAy = QStringLiteral("202511");
    return s.openYear(1);
}

OgrenciKaydi student(qint64 numara, const QString &adi, const QString &soyadi,
                     const QString &sinif = QStringLiteral("9-A"))
{
    OgrenciKaydi k;
    k.ogrenci.insert(QStringLiteral("Ogr_Numarasi"), numara);
    k.ogrenci.insert(QStringLiteral("Ogr_Adi"), adi);
    k.ogrenci.insert(QStringLiteral("Ogr_Soyadi"), soyadi);
    k.ogrenci.insert(QStringLiteral("Ogr_Sinif"), sinif);
    return k;
}

qint64 save(store::Database &db, const OgrenciKaydi &k, bool close = false)
{
    base::Result<KaydetSonucu> r = OgrenciKaydet(db, k, close);
    if (!r) {
        qWarning("%s", qPrintable(r.error().text));
        return 0;
    }
    return r->kayitId;
}

// An account with its installments and payments: (date, amount in kuruş) pairs.
qint64 account(store::Database &db, qint64 ogrenci, const QString &name,
               const QList<QPair<QDate, qint64>> &due, const QList<QPair<QDate, qint64>> &paid)
{
    store::Query t(db,
                   QStringLiteral("INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, "
                                  "AidatID, AidatTanim) VALUES (?, 1, 0, 0, 1, ?) "
                                  "RETURNING KayitID"));
    t.bind(ogrenci).bind(name);
    if (!t.exec() || !t.next()) {
        return 0;
    }
    const qint64 key = t.integer(0);
    t.finish();
    int sira = 0;
    for (const auto &d : due) {
        store::Query q(db,
                       QStringLiteral("INSERT INTO OgrenciAidatDetay (KayitID, Sira, OdemeTarihi, "
                                      "Odenecek, PesinatTaksitID) VALUES (?, ?, ?, ?, 1)"));
        q.bind(key).bind(++sira).bind(d.first).bind(Para::fromRaw(d.second * 100));
        if (!q.exec()) {
            return 0;
        }
    }
    sira = 0;
    for (const auto &p : paid) {
        store::Query q(db,
                       QStringLiteral("INSERT INTO OgrenciAidatOdeme (KayitID, Sira, OdemeTarihi, "
                                      "Odenen, OdemeSekli, PesinatTaksitID) "
                                      "VALUES (?, ?, ?, ?, 'N', 1)"));
        q.bind(key).bind(++sira).bind(p.first).bind(Para::fromRaw(p.second * 100));
        if (!q.exec()) {
            return 0;
        }
    }
    return key;
}

Para kurus(qint64 k)
{
    return Para::fromRaw(k * 100);
}

} // namespace

class tst_StudentRecord : public QObject
{
    Q_OBJECT

private slots:
    void aRecordIsSavedWholeAndReadBack_data() { testing::addEngineRows(); }
    void aRecordIsSavedWholeAndReadBack();
    void aFailedSaveLeavesNothing_data() { testing::addEngineRows(); }
    void aFailedSaveLeavesNothing();
    void leavingClosesTheDebtsOnlyWithADate_data();
    void leavingClosesTheDebtsOnlyWithADate();
    void deletingTakesTheAccountsAndLeavesNotesAndSiblings_data() { testing::addEngineRows(); }
    void deletingTakesTheAccountsAndLeavesNotesAndSiblings();
    void theSearchWalksEveryKeyInTurkishOrder_data() { testing::addEngineRows(); }
    void theSearchWalksEveryKeyInTurkishOrder();
    void totalsComeFromTheLedgerRows_data() { testing::addEngineRows(); }
    void totalsComeFromTheLedgerRows();
    void theNameChangeTouchesTheShownStudentOnly_data() { testing::addEngineRows(); }
    void theNameChangeTouchesTheShownStudentOnly();
    void thePickListFindsNamesInTurkishUpperCase_data() { testing::addEngineRows(); }
    void thePickListFindsNamesInTurkishUpperCase();
    void quickEntryAndClassMoves_data() { testing::addEngineRows(); }
    void quickEntryAndClassMoves();
    void codesBecomeWords_data();
    void codesBecomeWords();
};

void tst_StudentRecord::aRecordIsSavedWholeAndReadBack()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();

    OgrenciKaydi k = student(1024, QStringLiteral("  Ayşe  "), QStringLiteral("O'Connor"));
    k.ogrenci.insert(QStringLiteral("Ogr_Adres"),
                     QStringLiteral("Çınar Sok. ") + QString(200, u'x'));
    k.ogrenci.insert(QStringLiteral("Ogr_Kayit_Tarihi"), QDate(2025, 9, 1));
    k.ogrenci.insert(QStringLiteral("Ogr_Kayit_Turu"), QStringLiteral("Kayıt Yenileme"));
    k.ogrenci.insert(QStringLiteral("Ogr_Muaf"), QStringLiteral("1"));
    k.ogrenci.insert(QStringLiteral("Ogr_Veli_Maas"), QVariant::fromValue(kurus(1725050)));
    k.ogrenci.insert(QStringLiteral("Ogr_Ucret_Odeme_Turu"), qint64(2));
    k.ogrenci.insert(QStringLiteral("Ogr_Ana_isyeriSahibiMi"), qint64(1));
    k.ogrenci.insert(QStringLiteral("Ogr_Okulda_Okuyan_Kardes_Say"), qint64(3));
    k.nufus.insert(QStringLiteral("Ogr_MernisNo"), QStringLiteral("12345678901"));
    k.nufus.insert(QStringLiteral("Ogr_Nufus_Cinsiyet"), QStringLiteral("KIZ"));
    k.nufus.insert(QStringLiteral("Ogr_Nufus_Dogum_Tarih"), QDate(2010, 2, 28));
    k.ozelBilgi = QStringLiteral("Fıstık alerjisi var.\nServisle gelir.");
    k.kardesler = {Kardes{QStringLiteral("Ali"), QStringLiteral("O'Connor"), QString(), QString()},
                   Kardes{QString(), QStringLiteral("yazılmadı"), QString(), QString()},
                   Kardes{QStringLiteral("Can"), QStringLiteral("O'Connor"),
                          QStringLiteral("Zerna Koleji"), QStringLiteral("5-B")}};
    k.resim = QByteArray("\xff\xd8 resim \xff\xd9", 12);

    const qint64 key = save(db, k);
    QVERIFY(key > 0);
    // Stored trimmed and cut to the field; the apostrophe is kept.
    QCOMPARE(scalar(db, QStringLiteral("SELECT Ogr_Adi FROM Ogrenci WHERE KayitID = ?"), {key})
                 .toString(),
             QStringLiteral("Ayşe"));
    QCOMPARE(scalar(db, QStringLiteral("SELECT Ogr_Soyadi FROM Ogrenci WHERE KayitID = ?"), {key})
                 .toString(),
             QStringLiteral("O'Connor"));
    QCOMPARE(scalar(db, QStringLiteral("SELECT Ogr_Adres FROM Ogrenci WHERE KayitID = ?"), {key})
                 .toString()
                 .size(),
             150);
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT Donem FROM Ogrenci WHERE KayitID = ?"), {key}).toString(),
        QStringLiteral("2025-2026"));
    QCOMPARE(scalar(db,
                    QStringLiteral(
                        "SELECT Ogr_Islem_Yapan_Kullanici_Ilk FROM Ogrenci WHERE KayitID = ?"),
                    {key})
                 .toString(),
             QStringLiteral("muhasebe"));
    // An empty registration date is Null; an empty registry date is the zero date.
    QVERIFY(scalar(db,
                   QStringLiteral("SELECT Ogr_Kayit_Silme_Tarihi FROM Ogrenci WHERE KayitID = ?"),
                   {key})
                .isNull());
    QCOMPARE(store::fromStoredDate(scalar(db,
                                          QStringLiteral("SELECT Ogr_Nufus_Veris_Tarihi FROM "
                                                         "OgrenciNufus WHERE KayitID = ?"),
                                          {key})),
             base::SifirTarih);
    QCOMPARE(scalar(db, QStringLiteral("SELECT Donem FROM OgrenciNufus WHERE KayitID = ?"), {key})
                 .toString(),
             QStringLiteral("2025-2026"));
    // Siblings: a row without a first name is not stored; an empty school or class is "-".
    QCOMPARE(count(db, QStringLiteral("OgrenciKardesler"), QStringLiteral("OgrAnaNo = ?"), {key}),
             2);
    QCOMPARE(scalar(db, QStringLiteral(
                            "SELECT OgrKardesOkul FROM OgrenciKardesler WHERE OgrKardesAd = 'Ali'"))
                 .toString(),
             QStringLiteral("-"));
    // The change log has the new student, once.
    const QString log = db.table(store::Store::Log, QStringLiteral("Ogrenci"));
    QCOMPARE(count(db, log,
                   QStringLiteral("Kayit_Id = ? AND Islem_Turu = 'AddNew' AND Kullanici = "
                                  "'muhasebe' AND Ogr_Numarasi = 1024 AND Donem = '2025-2026'"),
                   {key}),
             1);

    base::Result<std::optional<OgrenciKaydi>> read = OgrenciOku(db, key);
    QVERIFY(read && read->has_value());
    const OgrenciKaydi &r = **read;
    QCOMPARE(r.adi(), QStringLiteral("Ayşe"));
    QCOMPARE(r.ogrenci.value(QStringLiteral("Ogr_Kayit_Tarihi")).toDate(), QDate(2025, 9, 1));
    QVERIFY(!r.nufus.value(QStringLiteral("Ogr_Nufus_Veris_Tarihi")).toDate().isValid());
    QCOMPARE(r.nufus.value(QStringLiteral("Ogr_Nufus_Dogum_Tarih")).toDate(), QDate(2010, 2, 28));
    QCOMPARE(r.ogrenci.value(QStringLiteral("Ogr_Veli_Maas")).value<Para>(), kurus(1725050));
    QCOMPARE(r.ogrenci.value(QStringLiteral("Ogr_Ucret_Odeme_Turu")).toLongLong(), 2);
    QCOMPARE(r.ogrenci.value(QStringLiteral("Ogr_Muaf")).toString(), QStringLiteral("1"));
    QCOMPARE(r.ozelBilgi, k.ozelBilgi);
    QCOMPARE(r.kardesler.size(), 2);
    QCOMPARE(r.resim, k.resim);
    QCOMPARE(r.ilkKullanici, QStringLiteral("muhasebe"));

    // A second save by another user edits: no new log row, the first user stays, the picture
    // taken off the screen leaves the store.
    users::durum().AktifKullanici = QStringLiteral("sekreter");
    OgrenciKaydi edit = r;
    edit.ogrenci.insert(QStringLiteral("Ogr_Sinif"), QStringLiteral("10-A"));
    edit.resim.clear();
    edit.kardesler.removeLast();
    QCOMPARE(save(db, edit), key);
    QCOMPARE(count(db, log), 1);
    QCOMPARE(count(db, QStringLiteral("Ogrenci")), 1);
    QCOMPARE(count(db, QStringLiteral("OgrenciNufus")), 1);
    QCOMPARE(count(db, QStringLiteral("OgrenciOzel")), 1);
    QCOMPARE(count(db, QStringLiteral("OgrenciKardesler")), 1);
    QCOMPARE(count(db, QStringLiteral("OgrenciFotograf")), 0);
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT Ogr_Islem_Yapan_Kullanici_Ilk FROM Ogrenci")).toString(),
        QStringLiteral("muhasebe"));

    // The triple is found again; a shown key whose row has gone is added anew.
    QCOMPARE(
        AyniOgrenciyiBul(db, 1024, QStringLiteral("O'Connor"), QStringLiteral("Ayşe"))->value_or(0),
        key);
    QVERIFY(!AyniOgrenciyiBul(db, 1024, QStringLiteral("O'Connor"), QStringLiteral("Ayse"))
                 ->has_value());
    QVERIFY(db.exec(QStringLiteral("DELETE FROM Ogrenci")).ok());
    const qint64 again = save(db, edit);
    QVERIFY(again > 0 && again != key);
    QCOMPARE(count(db, log), 2);
}

void tst_StudentRecord::aFailedSaveLeavesNothing()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    // The siblings' table is the last but one step of a save: without it the save fails late.
    QVERIFY(db.exec(QStringLiteral("DROP TABLE ")
                    + db.table(store::Store::Year, QStringLiteral("OgrenciKardesler")))
                .ok());
    OgrenciKaydi k = student(7, QStringLiteral("Deniz"), QStringLiteral("Kaya"));
    k.kardesler = {Kardes{QStringLiteral("Ece"), QStringLiteral("Kaya"), QString(), QString()}};
    base::Result<KaydetSonucu> r = OgrenciKaydet(db, k, false);
    QVERIFY(!r);
    QCOMPARE(r.error().label, QStringLiteral("FRMOGRENCI:OgrenciKaydet"));
    QCOMPARE(count(db, QStringLiteral("Ogrenci")), 0);
    QCOMPARE(count(db, QStringLiteral("OgrenciNufus")), 0);
    QCOMPARE(count(db, db.table(store::Store::Log, QStringLiteral("Ogrenci"))), 0);

    // The quick entry is one transaction too: a failing change log writes no student.
    QVERIFY(db.exec(QStringLiteral("DROP TABLE ")
                    + db.table(store::Store::Log, QStringLiteral("Ogrenci")))
                .ok());
    base::Result<QList<qint64>> quick
        = HizliOgrenciKaydet(db, {HizliSatir{1, QStringLiteral("A"), QStringLiteral("B"), QString(),
                                             QString(), QString(), QString()}});
    QVERIFY(!quick);
    QCOMPARE(quick.error().label, QStringLiteral("FrmHizliOgrenciKayit:AlanBolumYabancidilCombo"));
    QCOMPARE(count(db, QStringLiteral("Ogrenci")), 0);
}

void tst_StudentRecord::leavingClosesTheDebtsOnlyWithADate_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<bool>("tarihli");
    QTest::addColumn<bool>("kapat");
    QTest::addColumn<int>("kalanHesap");
    for (store::Engine e : testing::engines()) {
        const char *n = testing::engineName(e);
        QTest::addRow("%s-tarihli-kapat", n) << int(e) << true << true << 0;
        QTest::addRow("%s-tarihli-kapatma", n) << int(e) << true << false << 1;
        QTest::addRow("%s-tarihsiz", n) << int(e) << false << true << 1;
    }
}

void tst_StudentRecord::leavingClosesTheDebtsOnlyWithADate()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(bool, tarihli);
    QFETCH(bool, kapat);
    QFETCH(int, kalanHesap);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    OgrenciKaydi k = student(3, QStringLiteral("Emre"), QStringLiteral("Uçar"));
    const qint64 key = save(db, k);
    const qint64 other = save(db, student(4, QStringLiteral("Ümit"), QStringLiteral("Uçar")));
    account(db, key, QStringLiteral("Yemek"), {{QDate(2025, 9, 1), 1000}},
            {{QDate(2025, 9, 2), 500}});
    account(db, other, QStringLiteral("Yemek"), {{QDate(2025, 9, 1), 1000}}, {});
    k.kayitId = key;
    k.ogrenci.insert(QStringLiteral("Ogr_Ayrildi"), QStringLiteral("1"));
    if (tarihli) {
        k.ogrenci.insert(QStringLiteral("Ogr_Kayit_Silme_Tarihi"), QDate(2025, 11, 14));
    }
    QCOMPARE(save(db, k, kapat), key);
    QCOMPARE(
        count(db, QStringLiteral("OgrenciAidatTanim"), QStringLiteral("OgrKayitID = ?"), {key}),
        kalanHesap);
    QCOMPARE(count(db, QStringLiteral("OgrenciAidatDetay")), kalanHesap + 1);
    QCOMPARE(count(db, QStringLiteral("OgrenciAidatOdeme")), kalanHesap);
    QCOMPARE(
        count(db, QStringLiteral("OgrenciAidatTanim"), QStringLiteral("OgrKayitID = ?"), {other}),
        1);
}

void tst_StudentRecord::deletingTakesTheAccountsAndLeavesNotesAndSiblings()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    OgrenciKaydi k = student(12, QStringLiteral("İpek"), QStringLiteral("Doğan"));
    k.ozelBilgi = QStringLiteral("not");
    k.kardesler = {Kardes{QStringLiteral("Oğuz"), QStringLiteral("Doğan"), QString(), QString()}};
    k.resim = QByteArray("jpeg");
    const qint64 first = save(db, k);
    // The confirmed twin: same number, surname and first name.
    const qint64 twin = save(db, k);
    QVERIFY(first > 0 && twin > first);
    const qint64 acc = account(db, twin, QStringLiteral("Servis"), {{QDate(2025, 9, 1), 800}},
                               {{QDate(2025, 9, 1), 800}});
    account(db, first, QStringLiteral("Servis"), {{QDate(2025, 9, 1), 800}}, {});
    store::Query f(
        db, QStringLiteral("INSERT INTO Fatura (OgrKayitID, KayitID, FaturaNo) VALUES (?, ?, 5)"));
    f.bind(twin).bind(acc);
    QVERIFY(f.exec());

    // A triple that the screen no longer matches deletes nothing.
    QCOMPARE(*OgrenciSil(db, twin, 12, QStringLiteral("Ipek"), QStringLiteral("Doğan")), 0);
    // The shown twin goes, not the first one with the triple.
    QCOMPARE(*OgrenciSil(db, twin, 12, QStringLiteral("İpek"), QStringLiteral("Doğan")), twin);
    QCOMPARE(count(db, QStringLiteral("Ogrenci")), 1);
    QCOMPARE(scalar(db, QStringLiteral("SELECT KayitID FROM Ogrenci")).toLongLong(), first);
    QCOMPARE(count(db, QStringLiteral("OgrenciNufus"), QStringLiteral("KayitID = ?"), {twin}), 0);
    QCOMPARE(
        count(db, QStringLiteral("OgrenciAidatTanim"), QStringLiteral("OgrKayitID = ?"), {twin}),
        0);
    QCOMPARE(count(db, QStringLiteral("OgrenciAidatDetay"), QStringLiteral("KayitID = ?"), {acc}),
             0);
    QCOMPARE(count(db, QStringLiteral("OgrenciAidatOdeme"), QStringLiteral("KayitID = ?"), {acc}),
             0);
    QCOMPARE(count(db, QStringLiteral("Fatura")), 0);
    QCOMPARE(count(db, QStringLiteral("OgrenciFotograf"), QStringLiteral("KayitID = ?"), {twin}),
             0);
    // Notes and siblings stay behind; the first twin keeps everything.
    QCOMPARE(count(db, QStringLiteral("OgrenciOzel"), QStringLiteral("KayitID = ?"), {twin}), 1);
    QCOMPARE(count(db, QStringLiteral("OgrenciKardesler"), QStringLiteral("OgrAnaNo = ?"), {twin}),
             1);
    QCOMPARE(count(db, QStringLiteral("OgrenciAidatDetay")), 1);
    QCOMPARE(count(db, QStringLiteral("OgrenciFotograf")), 1);
}

void tst_StudentRecord::theSearchWalksEveryKeyInTurkishOrder()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    QHash<QString, qint64> key;
    const struct
    {
        qint64 no;
        const char *ad;
        const char *soyad;
        const char *sinif;
    } rows[] = {
        {5, "Can", "Zengin", "9-A"},  {3, "Çağla", "Akın", "9-A"},   {3, "Deniz", "Bal", "9-B"},
        {8, "Irmak", "Işık", "10-A"}, {1, "İbrahim", "İnce", "9-A"}, {9, "Oğuz", "Öztürk", "9-B"},
        {2, "Ömer", "Uçar", "10-A"},
    };
    for (const auto &r : rows) {
        key.insert(QString::fromUtf8(r.ad),
                   save(db, student(r.no, QString::fromUtf8(r.ad), QString::fromUtf8(r.soyad),
                                    QString::fromUtf8(r.sinif))));
    }
    auto from = [&](const char *ad) {
        base::Result<std::optional<OgrenciKaydi>> r
            = OgrenciOku(db, key.value(QString::fromUtf8(ad)));
        const OgrenciKaydi &k = **r;
        return std::make_pair(Kimlik{k.numara(), k.adi(), k.soyadi(), k.sinif()}, k.kayitId);
    };
    auto go = [&](AramaAnahtari a, Yon y, const char *ad) -> QString {
        const auto at = from(ad);
        base::Result<std::optional<qint64>> r = OgrenciAra(db, a, y, at.first, at.second);
        if (!r || !r->has_value()) {
            return QStringLiteral("-");
        }
        return key.key(**r);
    };
    using A = AramaAnahtari;
    // Numbers: two students share 3, and the next one after the first of them is the second.
    QCOMPARE(go(A::Numara, Yon::Ilk, "Can"), QStringLiteral("İbrahim"));
    QCOMPARE(go(A::Numara, Yon::Sonraki, "Çağla"), QStringLiteral("Deniz"));
    QCOMPARE(go(A::Numara, Yon::Onceki, "Deniz"), QStringLiteral("Çağla"));
    QCOMPARE(go(A::Numara, Yon::Son, "Can"), QStringLiteral("Oğuz"));
    QCOMPARE(go(A::Numara, Yon::Sonraki, "Oğuz"), QStringLiteral("-"));
    // First names in Turkish order: C < Ç < D, I < İ, O < Ö.
    QCOMPARE(go(A::Ad, Yon::Sonraki, "Can"), QStringLiteral("Çağla"));
    QCOMPARE(go(A::Ad, Yon::Sonraki, "Irmak"), QStringLiteral("İbrahim"));
    QCOMPARE(go(A::Ad, Yon::Onceki, "Ömer"), QStringLiteral("Oğuz"));
    QCOMPARE(go(A::Ad, Yon::Son, "Can"), QStringLiteral("Ömer"));
    QCOMPARE(go(A::Soyad, Yon::Ilk, "Ömer"), QStringLiteral("Çağla"));
    QCOMPARE(go(A::Soyad, Yon::Sonraki, "Irmak"), QStringLiteral("İbrahim"));
    // Classes: next and previous stay in the class by number; first and last start at it.
    QCOMPARE(go(A::Sinif, Yon::Sonraki, "İbrahim"), QStringLiteral("Çağla"));
    QCOMPARE(go(A::Sinif, Yon::Sonraki, "Çağla"), QStringLiteral("Can"));
    QCOMPARE(go(A::Sinif, Yon::Sonraki, "Can"), QStringLiteral("-"));
    QCOMPARE(go(A::Sinif, Yon::Onceki, "Oğuz"), QStringLiteral("Deniz"));
    QCOMPARE(go(A::Sinif, Yon::Ilk, "Oğuz"), QStringLiteral("Deniz"));
    QCOMPARE(go(A::Sinif, Yon::Son, "Can"), QStringLiteral("Can"));
    QCOMPARE(go(A::Sinif, Yon::Ilk, "Ömer"), QStringLiteral("Ömer"));
    // By number: the first with it.
    QCOMPARE(NumaradanBul(db, 3)->value_or(0), key.value(QStringLiteral("Çağla")));
}

void tst_StudentRecord::totalsComeFromTheLedgerRows()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    const qint64 ogr = save(db, student(1, QStringLiteral("Selin"), QStringLiteral("Tekin")));
    // Öğrenim: 3 x 1.000,10 due Sep-Nov and one in December; 1.500,05 paid.
    account(db, ogr, QStringLiteral("Öğrenim"),
            {{QDate(2025, 9, 1), 100010},
             {QDate(2025, 10, 1), 100010},
             {QDate(2025, 11, 30), 100010},
             {QDate(2025, 12, 1), 100010}},
            {{QDate(2025, 9, 3), 150005}});
    // Yemek: paid ahead, in full.
    account(db, ogr, QStringLiteral("Yemek"),
            {{QDate(2025, 9, 1), 40000}, {QDate(2025, 12, 1), 40000}},
            {{QDate(2025, 9, 1), 80000}});
    // Kitap: nothing but a plan.
    account(db, ogr, QStringLiteral("Kitap"), {}, {});

    base::Result<GenelDurumSonucu> g = GenelDurum(db, ogr);
    QVERIFY(g);
    QCOMPARE(g->toplamBorc, kurus(480040));
    QCOMPARE(g->toplamOdenen, kurus(230005));
    QCOMPARE(g->kalan, kurus(250035));

    QCOMPARE(BuAySonu(QStringLiteral("202511")), QDate(2025, 12, 1));
    QCOMPARE(BuAySonu(QStringLiteral("202512")), QDate(2026, 1, 1));
    const QDate today = QDate::currentDate();
    QCOMPARE(BuAySonu(QStringLiteral("")), QDate(today.year(), today.month(), 1).addMonths(1));

    base::Result<BuAySonucu> b = BuAyYapilacakOdemeler(db, ogr, QStringLiteral("202511"));
    QVERIFY(b);
    QCOMPARE(b->satirlar.size(), 3);
    QCOMPARE(b->satirlar.at(0).aidatTanim, QStringLiteral("Kitap"));
    QVERIFY(!b->satirlar.at(0).tutar);
    QCOMPARE(b->satirlar.at(1).aidatTanim, QStringLiteral("Öğrenim"));
    QCOMPARE(*b->satirlar.at(1).tutar, kurus(150025));
    // Yemek paid more than has fallen due: an empty cell, and nothing taken off the total.
    QVERIFY(!b->satirlar.at(2).tutar);
    QCOMPARE(b->toplam, kurus(150025));
    QCOMPARE(base::Bicimle(b->toplam, QStringLiteral("#,##0.00")), QStringLiteral("1.500,25"));
}

void tst_StudentRecord::theNameChangeTouchesTheShownStudentOnly()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    const OgrenciKaydi k
        = student(40, QStringLiteral("Leyla"), QStringLiteral("Şahin"), QStringLiteral("11-C"));
    const qint64 a = save(db, k);
    const qint64 b = save(db, k);
    const Kimlik old{40, QStringLiteral("Leyla"), QStringLiteral("Şahin"), QStringLiteral("11-C")};
    const Kimlik neu{41, QStringLiteral("Leyla"), QStringLiteral("Şahin-Kaya"),
                     QStringLiteral("12-C")};
    QCOMPARE(*OgrenciBilgiDegistir(db, b, old, neu), 1);
    QCOMPARE(scalar(db, QStringLiteral("SELECT Ogr_Numarasi FROM Ogrenci WHERE KayitID = ?"), {a})
                 .toInt(),
             40);
    QCOMPARE(scalar(db, QStringLiteral("SELECT Ogr_Soyadi FROM Ogrenci WHERE KayitID = ?"), {b})
                 .toString(),
             QStringLiteral("Şahin-Kaya"));
    // Values that changed meanwhile elsewhere are not overwritten.
    QCOMPARE(*OgrenciBilgiDegistir(db, b, old, neu), 0);
}

void tst_StudentRecord::thePickListFindsNamesInTurkishUpperCase()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    for (const auto &[no, ad, soyad] :
         {std::tuple{1, "İsmail", "Yıldız"}, std::tuple{2, "Irmak", "ışık"},
          std::tuple{3, "ismet", "Yılmaz"}, std::tuple{4, "Işıl", "Akın"},
          std::tuple{5, "Can", "İnce"}}) {
        OgrenciKaydi k = student(no, QString::fromUtf8(ad), QString::fromUtf8(soyad));
        k.nufus.insert(QStringLiteral("Ogr_MernisNo"), QStringLiteral("1000000000%1").arg(no));
        QVERIFY(save(db, k) > 0);
    }
    auto names = [&](ListeSirasi tur, const QString &text) {
        QStringList r;
        const base::Result<QList<ListeSatiri>> rows = OgrenciYukle(db, tur, text);
        for (const ListeSatiri &row : *rows) {
            r << (tur == ListeSirasi::Ad ? row.adi : row.soyadi);
        }
        return r.join(QLatin1Char(','));
    };
    QCOMPARE(names(ListeSirasi::Ad, QString()), QStringLiteral("Can,Irmak,Işıl,İsmail,ismet"));
    // "i" is the dotted letter in Turkish upper case, "ı" the dotless one.
    QCOMPARE(names(ListeSirasi::Ad, QStringLiteral("is")), QStringLiteral("İsmail,ismet"));
    QCOMPARE(names(ListeSirasi::Ad, QStringLiteral("ı")), QStringLiteral("Irmak,Işıl"));
    QCOMPARE(names(ListeSirasi::Soyad, QStringLiteral("yıl")), QStringLiteral("Yıldız,Yılmaz"));
    QCOMPARE(names(ListeSirasi::Soyad, QStringLiteral("IŞ")), QStringLiteral("ışık"));
    const QList<ListeSatiri> all = *OgrenciYukle(db, ListeSirasi::Soyad);
    QCOMPARE(all.first().tcNo, QStringLiteral("10000000004"));
    QStringList keys;
    for (const ListeSatiri &r : all) {
        keys << ListeAnahtari(r, ListeSirasi::Soyad);
    }
    QCOMPARE(IlkEslesen(keys, QStringLiteral("y")), 3);
    QCOMPARE(IlkEslesen(keys, QStringLiteral("yılm")), 4);
    QCOMPARE(IlkEslesen(keys, QStringLiteral("x")), -1);
}

void tst_StudentRecord::quickEntryAndClassMoves()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    QCOMPARE(*OgrenciNoKontrol(db, 101), false);
    int progress = 0;
    base::Result<QList<qint64>> keys = HizliOgrenciKaydet(
        db,
        {HizliSatir{101, QStringLiteral("Bora"), QStringLiteral("Kurt"), QStringLiteral("9-A"),
                    QStringLiteral("ERKEK"), QStringLiteral("Fen"), QStringLiteral("İngilizce")},
         HizliSatir{102, QStringLiteral("Burcu"), QStringLiteral("Kurt"), QStringLiteral("9-A"),
                    QStringLiteral("KIZ"), QStringLiteral("Fen"), QStringLiteral("Almanca")},
         // One number twice in one entry passes: the names tell them apart.
         HizliSatir{102, QStringLiteral("Cemile"), QStringLiteral("Koç"), QStringLiteral("9-A"),
                    QStringLiteral("KIZ"), QString(), QString()},
         HizliSatir{103, QStringLiteral("Derya"), QStringLiteral("Polat"), QStringLiteral(""),
                    QString(), QString(), QString()}},
        [&](int done, int total) { progress = done * 100 / total; });
    QVERIFY(keys);
    QCOMPARE(keys->size(), 4);
    QCOMPARE(progress, 100);
    QCOMPARE(*OgrenciNoKontrol(db, 101), true);
    QCOMPARE(count(db, QStringLiteral("Ogrenci"), QStringLiteral("Donem = '2025-2026'")), 4);
    QCOMPARE(count(db, QStringLiteral("OgrenciNufus"),
                   QStringLiteral("Ogr_Nufus_Cinsiyet = 'KIZ' AND "
                                  "Donem = '2025-2026'")),
             2);
    QCOMPARE(count(db, db.table(store::Store::Log, QStringLiteral("Ogrenci")),
                   QStringLiteral("Islem_Turu = 'AddNew'")),
             4);
    // Nothing else of the student is filled.
    QCOMPARE(count(db, QStringLiteral("Ogrenci"), QStringLiteral("Ogr_Kayit_Tarihi IS NULL")), 4);
    QCOMPARE(count(db, QStringLiteral("OgrenciOzel")), 0);
    QCOMPARE(FarkliDegerler(db, QStringLiteral("Ogr_Sinif"), true)->join(QLatin1Char('|')),
             QStringLiteral("|9-A"));
    QCOMPARE(FarkliDegerler(db, QStringLiteral("Ogr_YabanciDil"))->join(QLatin1Char('|')),
             QStringLiteral("Almanca|İngilizce"));

    // Sınıf Atlatma by class and number: the first 102 of 9-A moves, then the second.
    QCOMPARE(SinifOgrencileri(db, QStringLiteral("9-A"), QString())->size(), 3);
    QCOMPARE(SinifAtlat(db, QStringLiteral("9-A"), QStringLiteral("10-A"), {102})->size(), 1);
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT Ogr_Sinif FROM Ogrenci WHERE KayitID = ?"), {keys->at(1)})
            .toString(),
        QStringLiteral("10-A"));
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT Ogr_Sinif FROM Ogrenci WHERE KayitID = ?"), {keys->at(2)})
            .toString(),
        QStringLiteral("9-A"));
    QCOMPARE(*SinifAtlat(db, QStringLiteral("9-A"), QStringLiteral("10-A"), {101, 102, 999}),
             (QList<qint64>{keys->at(0), keys->at(2)}));
    // The class of those without one, and the move to the empty class.
    QCOMPARE(SinifOgrencileri(db, QString(), QString())->constFirst().adi, QStringLiteral("Derya"));
    QCOMPARE(SinifAtlat(db, QStringLiteral("10-A"), QString(), {101})->size(), 1);
    QCOMPARE(count(db, QStringLiteral("Ogrenci"), QStringLiteral("Ogr_Sinif = ''")), 2);
    // A move leaves Donem alone.
    QCOMPARE(count(db, QStringLiteral("Ogrenci"), QStringLiteral("Donem = '2025-2026'")), 4);

    // Toplu Sınıf Değiştirme by key; a class is cut to its field.
    QCOMPARE(*TopluSinifDegistir(db, {{keys->at(3), QStringLiteral("11-FEN-X")},
                                      {keys->at(1), QStringLiteral("11-B")}}),
             2);
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT Ogr_Sinif FROM Ogrenci WHERE KayitID = ?"), {keys->at(3)})
            .toString(),
        QStringLiteral("11-FEN"));
}

void tst_StudentRecord::codesBecomeWords_data()
{
    QTest::addColumn<QString>("alan");
    QTest::addColumn<QString>("deger");
    QTest::addColumn<QString>("kelime");
    QTest::addRow("okul-turu-bos") << "Ogr_GeldigiOkulTuru"
                                   << "0"
                                   << "";
    QTest::addRow("okul-turu-genel") << "OGR_GELDIGIOKULTURU"
                                     << "2"
                                     << "Genel Lise";
    QTest::addRow("okul-turu-bilinmeyen") << "Ogr_GeldigiOkulTuru"
                                          << "7"
                                          << "7";
    QTest::addRow("nakil-kucuk-harfle") << "ogr_nakildurumu"
                                        << "1"
                                        << "SINAVSIZ";
    QTest::addRow("sehir") << "Ogr_Mezun_Sehirkoy"
                           << "S"
                           << "ŞEHİR";
    QTest::addRow("koy") << "Ogr_Mezun_Sehirkoy"
                         << "K"
                         << "KÖY";
    QTest::addRow("anne-sag-degil") << "Ogr_Anne_Sag"
                                    << "H"
                                    << "HAYIR";
    QTest::addRow("baba-sag-bos") << "Ogr_Baba_Sag"
                                  << ""
                                  << "EVET";
    QTest::addRow("ayri") << "Ogr_Anne_Baba_Ayri"
                          << "E"
                          << "EVET";
    QTest::addRow("ayri-degil") << "Ogr_Anne_Baba_Ayri"
                                << "0"
                                << "HAYIR";
    QTest::addRow("servis") << "Ogr_Servis"
                            << "1"
                            << "EVET";
    QTest::addRow("parasiz-yatili-degil") << "Ogr_Parasiz_Yatili"
                                          << "0"
                                          << "HAYIR";
    QTest::addRow("yatili") << "Ogr_Yatili"
                            << "1"
                            << "YATILI";
    QTest::addRow("gunduzlu") << "Ogr_Yatili"
                              << ""
                              << "GÜNDÜZLÜ";
    QTest::addRow("karsiligi-yok") << "Ogr_Sinif"
                                   << "9-A"
                                   << "9-A";
}

void tst_StudentRecord::codesBecomeWords()
{
    QFETCH(QString, alan);
    QFETCH(QString, deger);
    QFETCH(QString, kelime);
    QCOMPARE(KodAciklamasi(alan, deger), kelime);
}

QTEST_GUILESS_MAIN(tst_StudentRecord)
#include "tst_student_record.moc"
