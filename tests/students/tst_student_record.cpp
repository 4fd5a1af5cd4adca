#include "test_support.h"

#include "base/turkish_text.h"
#include "store/database.h"
#include "students/class_moves.h"
#include "students/student_list.h"
#include "students/student_record.h"
#include "users/session.h"

#include <QTest>

#include <tuple>

using namespace Qt::StringLiterals;

using namespace students;
using base::Para;

using testing::count;
using testing::field;
using testing::scalar;

namespace {

bool openOffice(testing::TestStore &s)
{
    users::durum() = users::CalismaDurumu();
    users::durum().AktifKullanici = u"muhasebe"_s;
    users::durum().OgretimYili = u"2025-2026"_s;
    users::durum().CariAy = u"202511"_s;
    return s.openYear(1);
}

OgrenciKaydi student(qint64 numara, const QString &adi, const QString &soyadi,
                     const QString &sinif = u"9-A"_s)
{
    OgrenciKaydi k;
    k.ogrenci.insert(u"Ogr_Numarasi"_s, numara);
    k.ogrenci.insert(u"Ogr_Adi"_s, adi);
    k.ogrenci.insert(u"Ogr_Soyadi"_s, soyadi);
    k.ogrenci.insert(u"Ogr_Sinif"_s, sinif);
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
    store::Query t(db, u"INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, "
                       "AidatID, AidatTanim) VALUES (?, 1, 0, 0, 1, ?) RETURNING KayitID"_s);
    t.bind(ogrenci).bind(name);
    if (!t.exec() || !t.next()) {
        return 0;
    }
    const qint64 key = t.integer(0);
    t.finish();
    int sira = 0;
    for (const auto &d : due) {
        store::Query q(db, u"INSERT INTO OgrenciAidatDetay (KayitID, Sira, OdemeTarihi, "
                           "Odenecek, PesinatTaksitID) VALUES (?, ?, ?, ?, 1)"_s);
        q.bind(key).bind(++sira).bind(d.first).bind(Para::fromRaw(d.second * 100));
        if (!q.exec()) {
            return 0;
        }
    }
    sira = 0;
    for (const auto &p : paid) {
        store::Query q(db, u"INSERT INTO OgrenciAidatOdeme (KayitID, Sira, OdemeTarihi, "
                           "Odenen, OdemeSekli, PesinatTaksitID) VALUES (?, ?, ?, ?, 'N', 1)"_s);
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

    OgrenciKaydi k = student(1024, u"  Ayşe  "_s, u"O'Connor"_s);
    k.ogrenci.insert(u"Ogr_Adres"_s, u"Çınar Sok. "_s + QString(200, u'x'));
    k.ogrenci.insert(u"Ogr_Kayit_Tarihi"_s, QDate(2025, 9, 1));
    k.ogrenci.insert(u"Ogr_Kayit_Turu"_s, u"Kayıt Yenileme"_s);
    k.ogrenci.insert(u"Ogr_Muaf"_s, u"1"_s);
    k.ogrenci.insert(u"Ogr_Veli_Maas"_s, QVariant::fromValue(kurus(1725050)));
    k.ogrenci.insert(u"Ogr_Ucret_Odeme_Turu"_s, qint64(2));
    k.ogrenci.insert(u"Ogr_Ana_isyeriSahibiMi"_s, qint64(1));
    k.ogrenci.insert(u"Ogr_Okulda_Okuyan_Kardes_Say"_s, qint64(3));
    k.nufus.insert(u"Ogr_MernisNo"_s, u"12345678901"_s);
    k.nufus.insert(u"Ogr_Nufus_Cinsiyet"_s, u"KIZ"_s);
    k.nufus.insert(u"Ogr_Nufus_Dogum_Tarih"_s, QDate(2010, 2, 28));
    k.ozelBilgi = u"Fıstık alerjisi var.\nServisle gelir."_s;
    k.kardesler = {Kardes{u"Ali"_s, u"O'Connor"_s, QString(), QString()},
                   Kardes{QString(), u"yazılmadı"_s, QString(), QString()},
                   Kardes{u"Can"_s, u"O'Connor"_s, u"Zerna Koleji"_s, u"5-B"_s}};
    k.resim = QByteArray("\xff\xd8 resim \xff\xd9", 12);

    const qint64 key = save(db, k);
    QVERIFY(key > 0);
    auto ogrenci = [&](const char *column) {
        return field(db, u"Ogrenci"_s, QString::fromLatin1(column), key).toString();
    };
    // Stored trimmed and cut to the field; the apostrophe is kept.
    QCOMPARE(ogrenci("Ogr_Adi"), u"Ayşe"_s);
    QCOMPARE(ogrenci("Ogr_Soyadi"), u"O'Connor"_s);
    QCOMPARE(ogrenci("Ogr_Adres").size(), 150);
    QCOMPARE(ogrenci("Donem"), u"2025-2026"_s);
    QCOMPARE(ogrenci("Ogr_Islem_Yapan_Kullanici_Ilk"), u"muhasebe"_s);
    // An empty registration date is Null; an empty registry date is the zero date.
    QVERIFY(field(db, u"Ogrenci"_s, u"Ogr_Kayit_Silme_Tarihi"_s, key).isNull());
    QCOMPARE(store::fromStoredDate(field(db, u"OgrenciNufus"_s, u"Ogr_Nufus_Veris_Tarihi"_s, key)),
             base::SifirTarih);
    QCOMPARE(field(db, u"OgrenciNufus"_s, u"Donem"_s, key).toString(), u"2025-2026"_s);
    // Siblings: a row without a first name is not stored; an empty school or class is "-".
    QCOMPARE(count(db, u"OgrenciKardesler"_s, u"OgrAnaNo = ?"_s, {key}), 2);
    QCOMPARE(scalar(db, u"SELECT OgrKardesOkul FROM OgrenciKardesler WHERE OgrKardesAd = 'Ali'"_s)
                 .toString(),
             u"-"_s);
    // The change log has the new student, once.
    const QString log = db.table(store::Store::Log, u"Ogrenci"_s);
    QCOMPARE(count(db, log,
                   u"Kayit_Id = ? AND Islem_Turu = 'AddNew' AND Kullanici = "
                   "'muhasebe' AND Ogr_Numarasi = 1024 AND Donem = '2025-2026'"_s,
                   {key}),
             1);

    base::Result<std::optional<OgrenciKaydi>> read = OgrenciOku(db, key);
    QVERIFY(read && read->has_value());
    const OgrenciKaydi &r = **read;
    QCOMPARE(r.adi(), u"Ayşe"_s);
    QCOMPARE(r.ogrenci.value(u"Ogr_Kayit_Tarihi"_s).toDate(), QDate(2025, 9, 1));
    QVERIFY(!r.nufus.value(u"Ogr_Nufus_Veris_Tarihi"_s).toDate().isValid());
    QCOMPARE(r.nufus.value(u"Ogr_Nufus_Dogum_Tarih"_s).toDate(), QDate(2010, 2, 28));
    QCOMPARE(r.ogrenci.value(u"Ogr_Veli_Maas"_s).value<Para>(), kurus(1725050));
    QCOMPARE(r.ogrenci.value(u"Ogr_Ucret_Odeme_Turu"_s).toLongLong(), 2);
    QCOMPARE(r.ogrenci.value(u"Ogr_Muaf"_s).toString(), u"1"_s);
    QCOMPARE(r.ozelBilgi, k.ozelBilgi);
    QCOMPARE(r.kardesler.size(), 2);
    QCOMPARE(r.resim, k.resim);
    QCOMPARE(r.ilkKullanici, u"muhasebe"_s);

    // A second save by another user edits: no new log row, the first user stays, the picture
    // taken off the screen leaves the store.
    users::durum().AktifKullanici = u"sekreter"_s;
    OgrenciKaydi edit = r;
    edit.ogrenci.insert(u"Ogr_Sinif"_s, u"10-A"_s);
    edit.resim.clear();
    edit.kardesler.removeLast();
    QCOMPARE(save(db, edit), key);
    QCOMPARE(count(db, log), 1);
    QCOMPARE(count(db, u"Ogrenci"_s), 1);
    QCOMPARE(count(db, u"OgrenciNufus"_s), 1);
    QCOMPARE(count(db, u"OgrenciOzel"_s), 1);
    QCOMPARE(count(db, u"OgrenciKardesler"_s), 1);
    QCOMPARE(count(db, u"OgrenciFotograf"_s), 0);
    QCOMPARE(scalar(db, u"SELECT Ogr_Islem_Yapan_Kullanici_Ilk FROM Ogrenci"_s).toString(),
             u"muhasebe"_s);

    // The triple is found again; a shown key whose row has gone is added anew.
    QCOMPARE(AyniOgrenciyiBul(db, 1024, u"O'Connor"_s, u"Ayşe"_s)->value_or(0), key);
    QVERIFY(!AyniOgrenciyiBul(db, 1024, u"O'Connor"_s, u"Ayse"_s)->has_value());
    QVERIFY(db.exec(u"DELETE FROM Ogrenci"_s).ok());
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
    QVERIFY(db.exec(u"DROP TABLE "_s + db.table(store::Store::Year, u"OgrenciKardesler"_s)).ok());
    OgrenciKaydi k = student(7, u"Deniz"_s, u"Kaya"_s);
    k.kardesler = {Kardes{u"Ece"_s, u"Kaya"_s, QString(), QString()}};
    base::Result<KaydetSonucu> r = OgrenciKaydet(db, k, false);
    QVERIFY(!r);
    QCOMPARE(r.error().label, u"FRMOGRENCI:OgrenciKaydet"_s);
    QCOMPARE(count(db, u"Ogrenci"_s), 0);
    QCOMPARE(count(db, u"OgrenciNufus"_s), 0);
    QCOMPARE(count(db, db.table(store::Store::Log, u"Ogrenci"_s)), 0);

    // The quick entry is one transaction too: a failing change log writes no student.
    QVERIFY(db.exec(u"DROP TABLE "_s + db.table(store::Store::Log, u"Ogrenci"_s)).ok());
    base::Result<QList<qint64>> quick = HizliOgrenciKaydet(
        db, {HizliSatir{1, u"A"_s, u"B"_s, QString(), QString(), QString(), QString()}});
    QVERIFY(!quick);
    QCOMPARE(quick.error().label, u"FrmHizliOgrenciKayit:AlanBolumYabancidilCombo"_s);
    QCOMPARE(count(db, u"Ogrenci"_s), 0);
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
    OgrenciKaydi k = student(3, u"Emre"_s, u"Uçar"_s);
    const qint64 key = save(db, k);
    const qint64 other = save(db, student(4, u"Ümit"_s, u"Uçar"_s));
    account(db, key, u"Yemek"_s, {{QDate(2025, 9, 1), 1000}}, {{QDate(2025, 9, 2), 500}});
    account(db, other, u"Yemek"_s, {{QDate(2025, 9, 1), 1000}}, {});
    k.kayitId = key;
    k.ogrenci.insert(u"Ogr_Ayrildi"_s, u"1"_s);
    if (tarihli) {
        k.ogrenci.insert(u"Ogr_Kayit_Silme_Tarihi"_s, QDate(2025, 11, 14));
    }
    QCOMPARE(save(db, k, kapat), key);
    QCOMPARE(count(db, u"OgrenciAidatTanim"_s, u"OgrKayitID = ?"_s, {key}), kalanHesap);
    QCOMPARE(count(db, u"OgrenciAidatDetay"_s), kalanHesap + 1);
    QCOMPARE(count(db, u"OgrenciAidatOdeme"_s), kalanHesap);
    QCOMPARE(count(db, u"OgrenciAidatTanim"_s, u"OgrKayitID = ?"_s, {other}), 1);
}

void tst_StudentRecord::deletingTakesTheAccountsAndLeavesNotesAndSiblings()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    OgrenciKaydi k = student(12, u"İpek"_s, u"Doğan"_s);
    k.ozelBilgi = u"not"_s;
    k.kardesler = {Kardes{u"Oğuz"_s, u"Doğan"_s, QString(), QString()}};
    k.resim = QByteArray("jpeg");
    const qint64 first = save(db, k);
    // The confirmed twin: same number, surname and first name.
    const qint64 twin = save(db, k);
    QVERIFY(first > 0 && twin > first);
    const qint64 acc
        = account(db, twin, u"Servis"_s, {{QDate(2025, 9, 1), 800}}, {{QDate(2025, 9, 1), 800}});
    account(db, first, u"Servis"_s, {{QDate(2025, 9, 1), 800}}, {});
    store::Query f(db, u"INSERT INTO Fatura (OgrKayitID, KayitID, FaturaNo) VALUES (?, ?, 5)"_s);
    f.bind(twin).bind(acc);
    QVERIFY(f.exec());

    // A triple that the screen no longer matches deletes nothing.
    QCOMPARE(*OgrenciSil(db, twin, 12, u"Ipek"_s, u"Doğan"_s), 0);
    // The shown twin goes, not the first one with the triple.
    QCOMPARE(*OgrenciSil(db, twin, 12, u"İpek"_s, u"Doğan"_s), twin);
    QCOMPARE(count(db, u"Ogrenci"_s), 1);
    QCOMPARE(scalar(db, u"SELECT KayitID FROM Ogrenci"_s).toLongLong(), first);
    QCOMPARE(count(db, u"OgrenciNufus"_s, u"KayitID = ?"_s, {twin}), 0);
    QCOMPARE(count(db, u"OgrenciAidatTanim"_s, u"OgrKayitID = ?"_s, {twin}), 0);
    QCOMPARE(count(db, u"OgrenciAidatDetay"_s, u"KayitID = ?"_s, {acc}), 0);
    QCOMPARE(count(db, u"OgrenciAidatOdeme"_s, u"KayitID = ?"_s, {acc}), 0);
    QCOMPARE(count(db, u"Fatura"_s), 0);
    QCOMPARE(count(db, u"OgrenciFotograf"_s, u"KayitID = ?"_s, {twin}), 0);
    // Notes and siblings stay behind; the first twin keeps everything.
    QCOMPARE(count(db, u"OgrenciOzel"_s, u"KayitID = ?"_s, {twin}), 1);
    QCOMPARE(count(db, u"OgrenciKardesler"_s, u"OgrAnaNo = ?"_s, {twin}), 1);
    QCOMPARE(count(db, u"OgrenciAidatDetay"_s), 1);
    QCOMPARE(count(db, u"OgrenciFotograf"_s), 1);
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
            return u"-"_s;
        }
        return key.key(**r);
    };
    using A = AramaAnahtari;
    // Numbers: two students share 3, and the next one after the first of them is the second.
    QCOMPARE(go(A::Numara, Yon::Ilk, "Can"), u"İbrahim"_s);
    QCOMPARE(go(A::Numara, Yon::Sonraki, "Çağla"), u"Deniz"_s);
    QCOMPARE(go(A::Numara, Yon::Onceki, "Deniz"), u"Çağla"_s);
    QCOMPARE(go(A::Numara, Yon::Son, "Can"), u"Oğuz"_s);
    QCOMPARE(go(A::Numara, Yon::Sonraki, "Oğuz"), u"-"_s);
    // First names in Turkish order: C < Ç < D, I < İ, O < Ö.
    QCOMPARE(go(A::Ad, Yon::Sonraki, "Can"), u"Çağla"_s);
    QCOMPARE(go(A::Ad, Yon::Sonraki, "Irmak"), u"İbrahim"_s);
    QCOMPARE(go(A::Ad, Yon::Onceki, "Ömer"), u"Oğuz"_s);
    QCOMPARE(go(A::Ad, Yon::Son, "Can"), u"Ömer"_s);
    QCOMPARE(go(A::Soyad, Yon::Ilk, "Ömer"), u"Çağla"_s);
    QCOMPARE(go(A::Soyad, Yon::Sonraki, "Irmak"), u"İbrahim"_s);
    // Classes: next and previous stay in the class by number; first and last start at it.
    QCOMPARE(go(A::Sinif, Yon::Sonraki, "İbrahim"), u"Çağla"_s);
    QCOMPARE(go(A::Sinif, Yon::Sonraki, "Çağla"), u"Can"_s);
    QCOMPARE(go(A::Sinif, Yon::Sonraki, "Can"), u"-"_s);
    QCOMPARE(go(A::Sinif, Yon::Onceki, "Oğuz"), u"Deniz"_s);
    QCOMPARE(go(A::Sinif, Yon::Ilk, "Oğuz"), u"Deniz"_s);
    QCOMPARE(go(A::Sinif, Yon::Son, "Can"), u"Can"_s);
    QCOMPARE(go(A::Sinif, Yon::Ilk, "Ömer"), u"Ömer"_s);
    // By number: the first with it.
    QCOMPARE(NumaradanBul(db, 3)->value_or(0), key.value(u"Çağla"_s));
}

void tst_StudentRecord::totalsComeFromTheLedgerRows()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    const qint64 ogr = save(db, student(1, u"Selin"_s, u"Tekin"_s));
    // Öğrenim: 3 x 1.000,10 due Sep-Nov and one in December; 1.500,05 paid.
    account(db, ogr, u"Öğrenim"_s,
            {{QDate(2025, 9, 1), 100010},
             {QDate(2025, 10, 1), 100010},
             {QDate(2025, 11, 30), 100010},
             {QDate(2025, 12, 1), 100010}},
            {{QDate(2025, 9, 3), 150005}});
    // Yemek: paid ahead, in full.
    account(db, ogr, u"Yemek"_s, {{QDate(2025, 9, 1), 40000}, {QDate(2025, 12, 1), 40000}},
            {{QDate(2025, 9, 1), 80000}});
    // Kitap: nothing but a plan.
    account(db, ogr, u"Kitap"_s, {}, {});

    base::Result<GenelDurumSonucu> g = GenelDurum(db, ogr);
    QVERIFY(g);
    QCOMPARE(g->toplamBorc, kurus(480040));
    QCOMPARE(g->toplamOdenen, kurus(230005));
    QCOMPARE(g->kalan, kurus(250035));

    QCOMPARE(BuAySonu(u"202511"_s), QDate(2025, 12, 1));
    QCOMPARE(BuAySonu(u"202512"_s), QDate(2026, 1, 1));
    const QDate today = QDate::currentDate();
    QCOMPARE(BuAySonu(u""_s), QDate(today.year(), today.month(), 1).addMonths(1));

    base::Result<BuAySonucu> b = BuAyYapilacakOdemeler(db, ogr, u"202511"_s);
    QVERIFY(b);
    QCOMPARE(b->satirlar.size(), 3);
    QCOMPARE(b->satirlar.at(0).aidatTanim, u"Kitap"_s);
    QVERIFY(!b->satirlar.at(0).tutar);
    QCOMPARE(b->satirlar.at(1).aidatTanim, u"Öğrenim"_s);
    QCOMPARE(*b->satirlar.at(1).tutar, kurus(150025));
    // Yemek paid more than has fallen due: an empty cell, and nothing taken off the total.
    QVERIFY(!b->satirlar.at(2).tutar);
    QCOMPARE(b->toplam, kurus(150025));
    QCOMPARE(base::Bicimle(b->toplam, u"#,##0.00"_s), u"1.500,25"_s);
}

void tst_StudentRecord::theNameChangeTouchesTheShownStudentOnly()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(openOffice(s));
    store::Database &db = s.db();
    const OgrenciKaydi k = student(40, u"Leyla"_s, u"Şahin"_s, u"11-C"_s);
    const qint64 a = save(db, k);
    const qint64 b = save(db, k);
    const Kimlik old{40, u"Leyla"_s, u"Şahin"_s, u"11-C"_s};
    const Kimlik neu{41, u"Leyla"_s, u"Şahin-Kaya"_s, u"12-C"_s};
    QCOMPARE(*OgrenciBilgiDegistir(db, b, old, neu), 1);
    QCOMPARE(field(db, u"Ogrenci"_s, u"Ogr_Numarasi"_s, a).toInt(), 40);
    QCOMPARE(field(db, u"Ogrenci"_s, u"Ogr_Soyadi"_s, b).toString(), u"Şahin-Kaya"_s);
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
        k.nufus.insert(u"Ogr_MernisNo"_s, u"1000000000%1"_s.arg(no));
        QVERIFY(save(db, k) > 0);
    }
    auto names = [&](ListeSirasi tur, const QString &text) {
        QStringList r;
        const base::Result<QList<ListeSatiri>> rows = OgrenciYukle(db, tur, text);
        for (const ListeSatiri &row : *rows) {
            r << (tur == ListeSirasi::Ad ? row.adi : row.soyadi);
        }
        return r.join(u',');
    };
    QCOMPARE(names(ListeSirasi::Ad, QString()), u"Can,Irmak,Işıl,İsmail,ismet"_s);
    // "i" is the dotted letter in Turkish upper case, "ı" the dotless one.
    QCOMPARE(names(ListeSirasi::Ad, u"is"_s), u"İsmail,ismet"_s);
    QCOMPARE(names(ListeSirasi::Ad, u"ı"_s), u"Irmak,Işıl"_s);
    QCOMPARE(names(ListeSirasi::Soyad, u"yıl"_s), u"Yıldız,Yılmaz"_s);
    QCOMPARE(names(ListeSirasi::Soyad, u"IŞ"_s), u"ışık"_s);
    const QList<ListeSatiri> all = *OgrenciYukle(db, ListeSirasi::Soyad);
    QCOMPARE(all.first().tcNo, u"10000000004"_s);
    QStringList keys;
    for (const ListeSatiri &r : all) {
        keys << ListeAnahtari(r, ListeSirasi::Soyad);
    }
    QCOMPARE(IlkEslesen(keys, u"y"_s), 3);
    QCOMPARE(IlkEslesen(keys, u"yılm"_s), 4);
    QCOMPARE(IlkEslesen(keys, u"x"_s), -1);
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
        {HizliSatir{101, u"Bora"_s, u"Kurt"_s, u"9-A"_s, u"ERKEK"_s, u"Fen"_s, u"İngilizce"_s},
         HizliSatir{102, u"Burcu"_s, u"Kurt"_s, u"9-A"_s, u"KIZ"_s, u"Fen"_s, u"Almanca"_s},
         // One number twice in one entry passes: the names tell them apart.
         HizliSatir{102, u"Cemile"_s, u"Koç"_s, u"9-A"_s, u"KIZ"_s, QString(), QString()},
         HizliSatir{103, u"Derya"_s, u"Polat"_s, u""_s, QString(), QString(), QString()}},
        [&](int done, int total) { progress = done * 100 / total; });
    QVERIFY(keys);
    QCOMPARE(keys->size(), 4);
    QCOMPARE(progress, 100);
    QCOMPARE(*OgrenciNoKontrol(db, 101), true);
    QCOMPARE(count(db, u"Ogrenci"_s, u"Donem = '2025-2026'"_s), 4);
    QCOMPARE(count(db, u"OgrenciNufus"_s, u"Ogr_Nufus_Cinsiyet = 'KIZ' AND Donem = '2025-2026'"_s),
             2);
    QCOMPARE(count(db, db.table(store::Store::Log, u"Ogrenci"_s), u"Islem_Turu = 'AddNew'"_s), 4);
    // Nothing else of the student is filled.
    QCOMPARE(count(db, u"Ogrenci"_s, u"Ogr_Kayit_Tarihi IS NULL"_s), 4);
    QCOMPARE(count(db, u"OgrenciOzel"_s), 0);
    QCOMPARE(FarkliDegerler(db, u"Ogr_Sinif"_s, true)->join(u'|'), u"|9-A"_s);
    QCOMPARE(FarkliDegerler(db, u"Ogr_YabanciDil"_s)->join(u'|'), u"Almanca|İngilizce"_s);

    // Sınıf Atlatma by class and number: the first 102 of 9-A moves, then the second.
    QCOMPARE(SinifOgrencileri(db, u"9-A"_s, QString())->size(), 3);
    auto sinif = [&](int i) { return field(db, u"Ogrenci"_s, u"Ogr_Sinif"_s, keys->at(i)); };
    QCOMPARE(SinifAtlat(db, u"9-A"_s, u"10-A"_s, {102})->size(), 1);
    QCOMPARE(sinif(1).toString(), u"10-A"_s);
    QCOMPARE(sinif(2).toString(), u"9-A"_s);
    QCOMPARE(*SinifAtlat(db, u"9-A"_s, u"10-A"_s, {101, 102, 999}),
             (QList<qint64>{keys->at(0), keys->at(2)}));
    // The class of those without one, and the move to the empty class.
    QCOMPARE(SinifOgrencileri(db, QString(), QString())->constFirst().adi, u"Derya"_s);
    QCOMPARE(SinifAtlat(db, u"10-A"_s, QString(), {101})->size(), 1);
    QCOMPARE(count(db, u"Ogrenci"_s, u"Ogr_Sinif = ''"_s), 2);
    // A move leaves Donem alone.
    QCOMPARE(count(db, u"Ogrenci"_s, u"Donem = '2025-2026'"_s), 4);

    // Toplu Sınıf Değiştirme by key; a class is cut to its field.
    QCOMPARE(*TopluSinifDegistir(db, {{keys->at(3), u"11-FEN-X"_s}, {keys->at(1), u"11-B"_s}}), 2);
    QCOMPARE(sinif(3).toString(), u"11-FEN"_s);
}

void tst_StudentRecord::codesBecomeWords_data()
{
    QTest::addColumn<QString>("alan");
    QTest::addColumn<QString>("deger");
    QTest::addColumn<QString>("kelime");
    // clang-format off
    QTest::addRow("okul-turu-bos") << "Ogr_GeldigiOkulTuru" << "0" << "";
    QTest::addRow("okul-turu-genel") << "OGR_GELDIGIOKULTURU" << "2" << "Genel Lise";
    QTest::addRow("okul-turu-bilinmeyen") << "Ogr_GeldigiOkulTuru" << "7" << "7";
    QTest::addRow("nakil-kucuk-harfle") << "ogr_nakildurumu" << "1" << "SINAVSIZ";
    QTest::addRow("sehir") << "Ogr_Mezun_Sehirkoy" << "S" << "ŞEHİR";
    QTest::addRow("koy") << "Ogr_Mezun_Sehirkoy" << "K" << "KÖY";
    QTest::addRow("anne-sag-degil") << "Ogr_Anne_Sag" << "H" << "HAYIR";
    QTest::addRow("baba-sag-bos") << "Ogr_Baba_Sag" << "" << "EVET";
    QTest::addRow("ayri") << "Ogr_Anne_Baba_Ayri" << "E" << "EVET";
    QTest::addRow("ayri-degil") << "Ogr_Anne_Baba_Ayri" << "0" << "HAYIR";
    QTest::addRow("servis") << "Ogr_Servis" << "1" << "EVET";
    QTest::addRow("parasiz-yatili-degil") << "Ogr_Parasiz_Yatili" << "0" << "HAYIR";
    QTest::addRow("yatili") << "Ogr_Yatili" << "1" << "YATILI";
    QTest::addRow("gunduzlu") << "Ogr_Yatili" << "" << "GÜNDÜZLÜ";
    QTest::addRow("karsiligi-yok") << "Ogr_Sinif" << "9-A" << "9-A";
    // clang-format on
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
