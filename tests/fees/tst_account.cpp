#include "fees_support.h"

#include "fees/account.h"
#include "fees/ledger.h"
#include "fees/statement.h"
#include "store/database.h"
#include "users/session.h"

#include <QSqlRecord>
#include <QTest>

using namespace Qt::StringLiterals;

using base::Para;
using fees::DetaySatiri;
using fees::HesapKaydi;
using fees::OdemeSatiri;
using testing::scalar;

namespace {

Para tl(const char *amount)
{
    return Para::fromDecimalString(QString::fromLatin1(amount)).value();
}

QDateTime gun(int y, int m, int d)
{
    return QDateTime(QDate(y, m, d), QTime(0, 0));
}

const fees::KayitBaglami s_baglam{u"Müdür"_s, 1, false};

void addStudent(store::Database &db, qint64 kayitId)
{
    store::Query q(db, u"INSERT INTO Ogrenci (KayitID, Ogr_Numarasi) VALUES (?, ?)"_s);
    q.bind(kayitId).bind(kayitId);
    QVERIFY(q.exec());
}

// A tuition account of student 1: a down payment of 1.000 paid on 2 September, five
// installments from September, two payments, a sibling discount.
HesapKaydi tuition()
{
    HesapKaydi h;
    h.satir.ogrKayitId = 1;
    h.satir.aidatId = 7;
    h.satir.aidatTanim = u"Öğrenim"_s;
    h.satir.sira = 1;
    h.satir.iskontoTutari = tl("500");
    h.pesinat = tl("1000");
    h.odenenPesinat = fees::OdenenPesinat{tl("1000"), QDate(2025, 9, 2), 1};
    for (int i = 1; i <= 5; ++i)
        h.taksitler.append(
            DetaySatiri{i, gun(2025, 9, 5).addMonths(i - 1), tl("1700"), u"Nakit"_s, 0, 1, true});
    OdemeSatiri o;
    o.elle = true;
    o.sira = 1;
    o.odemeTarihi = gun(2025, 9, 5);
    o.odenen = tl("1700");
    o.odemeSekli = u"N"_s;
    o.aciklama = u"Eylül"_s;
    h.odemeler.append(o);
    o.sira = 2;
    o.odemeTarihi = gun(2025, 10, 7);
    o.odenen = tl("850.50");
    o.odemeSekli = u"K"_s;
    o.aciklama = u"O'Neil ödedi"_s;
    o.fisNo = 12;
    h.odemeler.append(o);
    h.iskontolar.append(
        fees::IskontoSatiri{3, u"Kardeş İndirimi"_s, tl("5"), tl("500"), tl("10000"), 1, 0, 1});
    return h;
}

// Every stored row of the account, in a fixed order, as text: what "unchanged" means.
QString dump(store::Database &db, qint64 kayitId)
{
    QStringList rows;
    const QStringList queries
        = {u"SELECT AidatTanim, Borc, Kalan, AidatID, Sira, IskontoTutari, YTLCevrim "
           "FROM OgrenciAidatTanim WHERE KayitID = ?"_s,
           u"SELECT Sira, PesinatTaksitID, OdemeTarihi, Odenecek, OdemeSekli, Fatura_ID "
           "FROM OgrenciAidatDetay WHERE KayitID = ? ORDER BY Sira"_s,
           u"SELECT Sira, PesinatTaksitID, OdemeTarihi, Odenen, OdemeSekli, "
           "Ogr_Cari_Durum_Aciklamasi, FisNo, Tahsilat_Vade_Tarihi, Pesinat_Tarihi "
           "FROM OgrenciAidatOdeme WHERE KayitID = ? ORDER BY Sira, OdemeTarihi"_s,
           u"SELECT IskontoID, IskontoAdi, IskontoOrani, IskontoMiktari, IskontoSirasi "
           "FROM OgrenciIskonto WHERE KayitID = ? ORDER BY IskontoID"_s};
    for (const QString &sql : queries) {
        store::Query q(db, sql);
        q.bind(kayitId);
        if (!q.exec())
            return q.error(QString()).text;
        while (q.next()) {
            QStringList cells;
            for (int i = 0; i < q.raw().record().count(); ++i)
                cells << q.value(i).toString();
            rows << cells.join(u'|');
        }
    }
    return rows.join(u'\n');
}

// Saves as the screen does; a failure is shown in the test's output.
bool kaydet(store::Database &db, HesapKaydi &h)
{
    const base::Result<fees::HesapKayitSonucu> r = fees::HesapKaydet(db, h, s_baglam);
    if (!r)
        qWarning("%s", qPrintable(r.error().text));
    return bool(r);
}

int logRows(store::Database &db, const QString &table, const QString &islem)
{
    return scalar(db,
                  u"SELECT count(*) FROM %1 WHERE Islem_Turu = ?"_s.arg(
                      db.table(store::Store::Log, table)),
                  {islem})
        .toInt();
}

} // namespace

class tst_Account : public QObject
{
    Q_OBJECT

private slots:
    void init() { users::durum() = users::CalismaDurumu(); }
    void anUnchangedAccountIsWrittenBackUnchanged_data() { testing::addEngineRows(); }
    void anUnchangedAccountIsWrittenBackUnchanged();
    void rowsKeepTheirSiraAndOnlyRealRowsAreWritten_data() { testing::addEngineRows(); }
    void rowsKeepTheirSiraAndOnlyRealRowsAreWritten();
    void aSaveOverAnotherWorkstationsWriteIsRefused_data() { testing::addEngineRows(); }
    void aSaveOverAnotherWorkstationsWriteIsRefused();
    void twoWorkstationsSavingAtOnceLoseNothing_data() { testing::addEngineRows(); }
    void twoWorkstationsSavingAtOnceLoseNothing();
    void aFailedSaveWritesNothing_data() { testing::addEngineRows(); }
    void aFailedSaveWritesNothing();
    void inInvoiceModePaymentsTakeTheirInvoices_data() { testing::addEngineRows(); }
    void inInvoiceModePaymentsTakeTheirInvoices();
    void theStatementLaysTheListsSideBySide_data() { testing::addEngineRows(); }
    void theStatementLaysTheListsSideBySide();
    void theMonthSumsFollowEveryWrite_data() { testing::addEngineRows(); }
    void theMonthSumsFollowEveryWrite();
    void cariDurum_data();
    void cariDurum();
};

void tst_Account::anUnchangedAccountIsWrittenBackUnchanged()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    addStudent(db, 1);
    HesapKaydi h = tuition();
    QVERIFY(kaydet(db, h));
    QVERIFY(h.satir.kayitId > 0);
    // Borc and Kalan are the sums of what was written, the down payment included.
    QCOMPARE(h.satir.borc, tl("9500"));
    QCOMPARE(h.satir.kalan, tl("5949.50"));
    QCOMPARE(scalar(db, u"SELECT Kalan FROM OgrenciAidatTanim"_s).toLongLong(),
             tl("5949.50").raw());

    // Rows as an older program left them: an installment without a date, a payment of 0.
    QVERIFY(scalar(db,
                   u"INSERT INTO OgrenciAidatDetay (KayitID, Sira, PesinatTaksitID, Odenecek, "
                   "Fatura_ID, YTLCevrim) VALUES (?, 9, 0, 0, 0, 1) RETURNING KayitID"_s,
                   {h.satir.kayitId})
                .isValid());
    store::Query zero(db, u"INSERT INTO OgrenciAidatOdeme (KayitID, Sira, PesinatTaksitID, "
                          "OdemeTarihi, Odenen, FisNo, Fatura_ID, YTLCevrim) "
                          "VALUES (?, 8, 0, ?, 0, 0, 0, 1)"_s);
    zero.bind(h.satir.kayitId).bind(gun(2025, 11, 1));
    QVERIFY(zero.exec());

    const QString before = dump(db, h.satir.kayitId);
    const base::Result<HesapKaydi> read = fees::HesapOku(db, h.satir.kayitId, false);
    QVERIFY(read);
    HesapKaydi again = *read;
    QCOMPARE(again.taksitler.size(), 6);
    QCOMPARE(again.taksitler.first().sira, 9); // the row without a date comes first
    QCOMPARE(again.iskontolar, h.iskontolar);
    QVERIFY(kaydet(db, again));
    QCOMPARE(dump(db, h.satir.kayitId), before);
    // One header entry and one entry per payment row, each save.
    QCOMPARE(logRows(db, u"OgrenciAidatTanim"_s, u"AddNew"_s), 1);
    QCOMPARE(logRows(db, u"OgrenciAidatTanim"_s, u"Edit"_s), 1);
    QCOMPARE(logRows(db, u"OgrenciAidatOdeme"_s, u"AddNew"_s), 3 + 4);

    QVERIFY(fees::AidatSil(db, again.satir, u"Müdür"_s));
    QCOMPARE(dump(db, h.satir.kayitId), QString());
    QCOMPARE(logRows(db, u"OgrenciAidatTanim"_s, u"Delete"_s), 1);
}

void tst_Account::rowsKeepTheirSiraAndOnlyRealRowsAreWritten()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    addStudent(db, 1);
    HesapKaydi h = tuition();
    QVERIFY(kaydet(db, h));
    HesapKaydi shown = *fees::HesapOku(db, h.satir.kayitId, false);

    // The second installment goes; a new one and two unfinished rows are typed.
    shown.taksitler.removeAt(1);
    shown.taksitler.append(
        DetaySatiri{fees::YeniSira(shown.taksitler), gun(2026, 2, 5), tl("1700"), {}, 0, 1, true});
    shown.taksitler.append(
        DetaySatiri{fees::YeniSira(shown.taksitler), {}, tl("99"), {}, 0, 1, true});
    OdemeSatiri noAmount;
    noAmount.elle = true;
    noAmount.sira = fees::YeniSira(shown.odemeler);
    noAmount.odemeTarihi = gun(2025, 11, 5);
    shown.odemeler.append(noAmount);
    const fees::Toplamlar t = fees::ToplamlariYenile(shown);
    QCOMPARE(t.borc, tl("9500")); // 1.000 + 5 × 1.700: the undated 99 is not counted
    QVERIFY(kaydet(db, shown));
    QList<int> siras;
    store::Query q(db, u"SELECT Sira FROM OgrenciAidatDetay ORDER BY Sira"_s);
    QVERIFY(q.exec());
    while (q.next())
        siras << int(q.integer(0));
    QCOMPARE(siras, (QList<int>{0, 1, 3, 4, 5, 6}));
    QCOMPARE(scalar(db, u"SELECT count(*) FROM OgrenciAidatOdeme WHERE Sira > 0"_s).toInt(), 2);
    QCOMPARE(scalar(db, u"SELECT Borc FROM OgrenciAidatTanim"_s).toLongLong(), t.borc.raw());
}

void tst_Account::aSaveOverAnotherWorkstationsWriteIsRefused()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    addStudent(db, 1);
    HesapKaydi h = tuition();
    QVERIFY(kaydet(db, h));

    // Two screens hold the account; the first to save wins, the second is told and writes
    // nothing.
    std::unique_ptr<store::Database> other = s.newConnection();
    other->selectYear(1);
    QVERIFY(store::DatabaseAc(*other, store::Store::Year, true, false));
    HesapKaydi first = *fees::HesapOku(*other, h.satir.kayitId, false);
    HesapKaydi second = *fees::HesapOku(db, h.satir.kayitId, false);
    first.odemeler[1].odenen = tl("1700");
    first.odemeler[1].elle = true;
    QVERIFY(kaydet(*other, first));
    const QString written = dump(db, h.satir.kayitId);
    second.odemeler.removeAt(0);
    const base::Result<fees::HesapKayitSonucu> refused = fees::HesapKaydet(db, second, s_baglam);
    QVERIFY(!refused);
    QVERIFY(refused.error().isRefusal());
    QVERIFY(refused.error().text.contains(u"başka bir yerde değiştirildi"_s));
    QCOMPARE(dump(db, h.satir.kayitId), written);
    // Read again, the account saves.
    HesapKaydi fresh = *fees::HesapOku(db, h.satir.kayitId, false);
    QVERIFY(kaydet(db, fresh));
}

void tst_Account::twoWorkstationsSavingAtOnceLoseNothing()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    QList<qint64> hesaplar;
    for (qint64 ogrenci : {1, 2}) {
        addStudent(db, ogrenci);
        HesapKaydi h = tuition();
        h.satir.ogrKayitId = ogrenci;
        QVERIFY(kaydet(db, h));
        hesaplar << h.satir.kayitId;
    }
    // Each workstation pays twenty times on its own student, reading the account anew each
    // time, as the screen does after its save.
    const QStringList failures = testing::raceTwo(s.settings(), [&](store::Database &w, int which) {
        for (int i = 0; i < 20; ++i) {
            const base::Result<HesapKaydi> read = fees::HesapOku(w, hesaplar.at(which), false);
            if (!read)
                return read.error().text;
            HesapKaydi h = *read;
            OdemeSatiri o;
            o.elle = true;
            o.sira = fees::YeniSira(h.odemeler);
            o.odemeTarihi = gun(2025, 11, 1);
            o.odenen = tl("10");
            h.odemeler.append(o);
            const base::Result<fees::HesapKayitSonucu> r = fees::HesapKaydet(w, h, s_baglam);
            if (!r)
                return r.error().text;
        }
        return QString();
    });
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(u"; "_s)));
    for (qint64 hesap : hesaplar) {
        QCOMPARE(testing::scalar(db,
                                 u"SELECT count(*) FROM OgrenciAidatOdeme WHERE KayitID = ? "
                                 "AND Sira > 0"_s,
                                 {hesap})
                     .toInt(),
                 2 + 20);
        QCOMPARE(
            testing::scalar(db, u"SELECT Kalan FROM OgrenciAidatTanim WHERE KayitID = ?"_s, {hesap})
                .toLongLong(),
            tl("5749.50").raw());
    }
}

void tst_Account::aFailedSaveWritesNothing()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    addStudent(db, 1);
    HesapKaydi h = tuition();
    QVERIFY(kaydet(db, h));
    const QString before = dump(db, h.satir.kayitId);
    const int logsBefore = logRows(db, u"OgrenciAidatOdeme"_s, u"AddNew"_s);
    // Two installments with one Sira: the store refuses the second after the header, the
    // first installments and nothing else were written.
    HesapKaydi broken = h;
    broken.odemeler.removeAt(0);
    broken.taksitler[4].sira = 2;
    broken.taksitler[4].elle = true;
    QVERIFY(!fees::HesapKaydet(db, broken, s_baglam));
    QCOMPARE(dump(db, h.satir.kayitId), before);
    QCOMPARE(logRows(db, u"OgrenciAidatOdeme"_s, u"AddNew"_s), logsBefore);
    QCOMPARE(logRows(db, u"OgrenciAidatTanim"_s, u"Edit"_s), 0);
    // The account on screen is as it was: its version still matches the store.
    QVERIFY(kaydet(db, h));
}

void tst_Account::inInvoiceModePaymentsTakeTheirInvoices()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    addStudent(db, 1);
    HesapKaydi h = tuition();
    QVERIFY(kaydet(db, h));
    // The first two installments invoiced as number 41, which holds 3.400.
    store::Query fatura(db, u"INSERT INTO Fatura (OgrKayitID, KayitID, FaturaNo, OdenenTutar) "
                            "VALUES (1, ?, 41, ?)"_s);
    fatura.bind(h.satir.kayitId).bind(tl("3400"));
    QVERIFY(fatura.exec());
    h.taksitler[0].faturaNo = 41;
    h.taksitler[1].faturaNo = 41;
    const base::Result<fees::HesapKayitSonucu> r
        = fees::HesapKaydet(db, h, fees::KayitBaglami{u"Müdür"_s, 1, true});
    QVERIFY(r);
    QVERIFY(r->uyarilar.isEmpty());
    QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM OgrenciAidatOdeme WHERE Fatura_ID = 41"_s)
                 .toInt(),
             2);
    QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM OgrenciAidatDetay WHERE Fatura_ID = 41"_s)
                 .toInt(),
             2);
}

void tst_Account::theStatementLaysTheListsSideBySide()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    addStudent(db, 1);
    const fees::OgrenciOzeti ogrenci{1, u"Çağrı"_s, u"O'Neil"_s, u"5-A"_s, 101};
    QCOMPARE(fees::CariDurumListesiDoldur(db, ogrenci).error().text,
             u"Öğrenci İçin Aidat ve Ödeme Bilgileri Bulunamadı."_s);
    HesapKaydi h = tuition();
    QVERIFY(kaydet(db, h));
    // A second account with nothing but a down payment of 200 still has its row.
    HesapKaydi servis;
    servis.satir = {0, 1, 9, u"Servis"_s, 2};
    servis.pesinat = tl("200");
    QVERIFY(kaydet(db, servis));

    const base::Result<QList<QStringList>> rows = fees::CariDurumListesiDoldur(db, ogrenci);
    QVERIFY(rows);
    QCOMPARE(rows->size(), 5 + 1);
    const auto cell = [&](int row, int column) { return rows->at(row).at(column - 1); };
    // Discounts, installments and payments side by side from the block's first row.
    QCOMPARE(cell(0, 13), u"Kardeş İndirimi"_s);
    QCOMPARE(cell(0, 15), u"500,00"_s);
    QCOMPARE(cell(1, 13), QString());
    QCOMPARE(cell(4, 18), u"05.01.2026"_s);
    QCOMPARE(cell(1, 23), u"850,50"_s);
    QCOMPARE(cell(2, 23), QString());
    for (int r = 0; r < 5; ++r) {
        QCOMPARE(cell(r, 10), u"1.000,00"_s);
        QCOMPARE(cell(r, 20), u"9.500,00"_s);
        QCOMPARE(cell(r, 25), u"3.550,50"_s);
        QCOMPARE(cell(r, 31), u"5.949,50"_s);
        QCOMPARE(cell(r, 30), u"Öğrenim"_s);
    }
    QCOMPARE(cell(5, 20), u"200,00"_s);
    QCOMPARE(cell(5, 25), u"-"_s);
    QCOMPARE(cell(5, 17), QString());
    // The student's sums on every row.
    QCOMPARE(cell(5, 26), u"9.700,00"_s);
    QCOMPARE(cell(0, 28), u"6.149,50"_s);
    QCOMPARE(cell(0, 1), u"Çağrı"_s);
}

void tst_Account::theMonthSumsFollowEveryWrite()
{
    // The sums the store keeps by month equal the ledger's rows after saves that rewrite,
    // remove and move rows, and after an account is deleted.
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    addStudent(db, 1);
    HesapKaydi h = tuition();
    QVERIFY(kaydet(db, h));
    HesapKaydi other = tuition();
    QVERIFY(kaydet(db, other));
    h.taksitler[1].odemeTarihi = gun(2026, 2, 5); // moved to another month
    h.taksitler[1].elle = true;
    h.taksitler.removeAt(2);
    h.odemeler[0].odenen = tl("1200");
    h.odemeler[0].elle = true;
    QVERIFY(kaydet(db, h));
    QVERIFY(fees::AidatSil(db, other.satir, u"Müdür"_s));
    const base::Result<QList<fees::AyToplami>> r = fees::AyToplamlari(db, QDate(2026, 3, 1), {});
    QVERIFY(r);
    QStringList got;
    for (const fees::AyToplami &m : *r)
        got << u"%1-%2 %3/%4"_s.arg(m.yil).arg(m.ay).arg(m.odenecek.toDecimalString(),
                                                         m.odenen.toDecimalString());
    // The months with installments: Sep, Dec, Jan and Feb of the saved account (October went to
    // February, November was removed); the down payment's row counts in the month of its save.
    QStringList want;
    store::Query q(db, u"SELECT year(OdemeTarihi) * 100 + month(OdemeTarihi), "
                       "CAST(SUM(Odenecek) AS BIGINT) FROM OgrenciAidatDetay WHERE OdemeTarihi < ? "
                       "GROUP BY year(OdemeTarihi) * 100 + month(OdemeTarihi) ORDER BY 1"_s);
    q.bind(QDate(2026, 3, 1));
    QVERIFY(q.exec());
    while (q.next()) {
        const int ay = int(q.integer(0));
        const QVariant paid
            = testing::scalar(db,
                              u"SELECT CAST(SUM(Odenen) AS BIGINT) FROM OgrenciAidatOdeme WHERE "
                              "year(OdemeTarihi) * 100 + month(OdemeTarihi) = ?"_s,
                              {ay});
        want << u"%1-%2 %3/%4"_s.arg(ay / 100).arg(ay % 100).arg(
            q.para(1).toDecimalString(),
            Para::fromRaw(paid.isNull() ? 0 : paid.toLongLong()).toDecimalString());
    }
    QCOMPARE(got, want);
    QVERIFY(got.size() >= 4);
}

void tst_Account::cariDurum_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<QString>("beklenen"); // "buAy/onceki|metin"
    QTest::addColumn<QDate>("ay");
    for (store::Engine e : testing::engines()) {
        const char *en = testing::engineName(e);
        const int g = int(e);
        // Before the first installment: no arrears, September's 1.700 paid on time.
        QTest::addRow("%s-eylul", en) << g << u"0/0|"_s << QDate(2025, 9, 1);
        // November: September and October paid (the second only half), November open; the
        // month's payment of row 9 meets no installment and stays out of the month's column.
        QTest::addRow("%s-kasim", en)
            << g << u"2000/849.5| Öğrenim : 2.549,50 TL. Yemek : 300,00 TL."_s
            << QDate(2025, 11, 1);
        // After the plan: the overpaid meal account lowers nothing below zero in arrears.
        QTest::addRow("%s-mart", en)
            << g << u"0/5949.5| Öğrenim : 5.949,50 TL."_s << QDate(2026, 3, 1);
    }
}

void tst_Account::cariDurum()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(QString, beklenen);
    QFETCH(QDate, ay);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    addStudent(db, 1);
    HesapKaydi h = tuition();
    QVERIFY(kaydet(db, h));
    // Meals: 300 in November, 600 paid in advance in September under row 9.
    HesapKaydi yemek;
    yemek.satir = {0, 1, 8, u"Yemek"_s, 2};
    yemek.taksitler.append(DetaySatiri{1, gun(2025, 11, 3), tl("300"), {}, 0, 1, true});
    OdemeSatiri advance;
    advance.elle = true;
    advance.sira = 9;
    advance.odemeTarihi = gun(2025, 9, 20);
    advance.odenen = tl("600");
    yemek.odemeler.append(advance);
    advance.odemeTarihi = gun(2025, 11, 10);
    advance.odenen = tl("50");
    yemek.odemeler.append(advance);
    QVERIFY(kaydet(db, yemek));

    const base::Result<fees::CariDurum> c = fees::CariDurumHesapla(db, 1, ay, u"#,##0.00"_s);
    QVERIFY(c);
    QCOMPARE(u"%1/%2|%3"_s.arg(c->buAykiBorc.toDecimalString(),
                               c->oncekiAylarBorc.toDecimalString(), c->metin),
             beklenen);
    QCOMPARE(c->toplam(), c->buAykiBorc + c->oncekiAylarBorc);
    // A student without accounts: nothing owed, no text.
    QCOMPARE(fees::CariDurumHesapla(db, 2, ay, u"#,##0.00"_s)->metin, QString());
}

QTEST_MAIN(tst_Account)
#include "tst_account.moc"
