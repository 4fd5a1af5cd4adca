#include "fees_support.h"

#include "fees/ledger.h"
#include "store/database.h"

#include <QTest>

using namespace Qt::StringLiterals;

using base::Para;
using testing::scalar;

namespace {

const QString s_etiket = u"FrmDeneme:Defter"_s;

Para tl(const char *amount)
{
    return Para::fromDecimalString(QString::fromLatin1(amount)).value();
}

// Ledger rows written as the fee screens write them.
class Defter
{
public:
    explicit Defter(store::Database &db)
        : m_db(db)
    {}

    void ogrenci(qint64 kayitId)
    {
        store::Query q(m_db, u"INSERT INTO Ogrenci (KayitID, Ogr_Numarasi) VALUES (?, ?)"_s);
        q.bind(kayitId).bind(kayitId);
        QVERIFY(q.exec());
    }
    qint64 hesap(qint64 ogrenci, const QString &ad, qint64 aidatId = 1, const char *borc = "0",
                 const char *kalan = "0")
    {
        store::Query q(m_db, u"INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, "
                             "Kalan, AidatID, AidatTanim) VALUES (?, 1, ?, ?, ?, ?) "
                             "RETURNING KayitID"_s);
        q.bind(ogrenci).bind(tl(borc)).bind(tl(kalan)).bind(aidatId).bind(ad);
        if (!q.exec() || !q.next()) {
            qWarning("%s", qPrintable(q.error(QString()).text));
            return 0;
        }
        return q.integer(0);
    }
    void taksit(qint64 hesap, const QDateTime &tarih, const char *tutar)
    {
        satir(u"OgrenciAidatDetay"_s, u"Odenecek"_s, hesap, tarih, tutar);
    }
    void odeme(qint64 hesap, const QDateTime &tarih, const char *tutar)
    {
        satir(u"OgrenciAidatOdeme"_s, u"Odenen"_s, hesap, tarih, tutar);
    }

private:
    void satir(const QString &tablo, const QString &alan, qint64 hesap, const QDateTime &tarih,
               const char *tutar)
    {
        const int sira
            = scalar(m_db, u"SELECT count(*) FROM %1 WHERE KayitID = ?"_s.arg(tablo), {hesap})
                  .toInt()
              + 1;
        store::Query q(m_db, u"INSERT INTO %1 (KayitID, Sira, OdemeTarihi, %2, "
                             "PesinatTaksitID) VALUES (?, ?, ?, ?, 1)"_s.arg(tablo, alan));
        q.bind(hesap).bind(sira).bind(tarih).bind(tl(tutar));
        QVERIFY(q.exec());
    }

    store::Database &m_db;
};

QDateTime gun(int y, int m, int d, int saat = 0, int dakika = 0, int saniye = 0)
{
    return QDateTime(QDate(y, m, d), QTime(saat, dakika, saniye));
}

} // namespace

class tst_Ledger : public QObject
{
    Q_OBJECT

private slots:
    void accountSums_data();
    void accountSums();
    void monthTotals_data();
    void monthTotals();
    void aStudentsAccountOfAFee_data();
    void aStudentsAccountOfAFee();
};

// Student 1: three accounts whose names sort differently by bytes and in Turkish, two of them
// of the same name, with rows on both sides of a month's end. Student 2: sums beyond 32 bits.
// Student 3: no account.
void tst_Ledger::accountSums_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<qint64>("ogrenci");
    QTest::addColumn<QDate>("oncesi");
    QTest::addColumn<QString>("beklenen"); // "name odenecek/odenen", by fee name and key
    for (store::Engine e : testing::engines()) {
        const char *en = testing::engineName(e);
        const int g = int(e);
        QTest::addRow("%s-tum-satirlar", en)
            << g << qint64(1) << QDate()
            << "Çanta 0/0 | Dans 3000.3/1650.05 | Yemek 400/400 | Yemek 100/0";
        QTest::addRow("%s-ay-sonuna-kadar", en)
            << g << qint64(1) << QDate(2025, 12, 1)
            << "Çanta 0/0 | Dans 2000.2/1600.05 | Yemek 400/400 | Yemek 0/0";
        QTest::addRow("%s-ilk-taksit-gunu-haric", en)
            << g << qint64(1) << QDate(2025, 9, 1)
            << "Çanta 0/0 | Dans 0/0 | Yemek 0/400 | Yemek 0/0";
        QTest::addRow("%s-buyuk-tutarlar", en)
            << g << qint64(2) << QDate() << "Bağış 600000000/300000000.0001";
        QTest::addRow("%s-hesabi-yok", en) << g << qint64(3) << QDate() << "";
    }
}

void tst_Ledger::accountSums()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(qint64, ogrenci);
    QFETCH(QDate, oncesi);
    QFETCH(QString, beklenen);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    Defter d(db);
    const qint64 dans = d.hesap(1, u"Dans"_s);
    d.taksit(dans, gun(2025, 9, 1), "1000.10");
    d.taksit(dans, gun(2025, 11, 30), "1000.10");
    d.taksit(dans, gun(2025, 12, 1), "1000.10");
    d.odeme(dans, gun(2025, 9, 3, 14, 30), "1500.05");
    d.odeme(dans, gun(2025, 11, 30, 23, 59, 59), "100");
    d.odeme(dans, gun(2025, 12, 1), "50");
    d.hesap(1, u"Çanta"_s);
    const qint64 yemek = d.hesap(1, u"Yemek"_s);
    d.taksit(yemek, gun(2025, 9, 1), "400");
    d.odeme(yemek, gun(2025, 8, 31, 9), "400");
    const qint64 yemek2 = d.hesap(1, u"Yemek"_s);
    d.taksit(yemek2, gun(2026, 1, 1), "100");
    const qint64 bagis = d.hesap(2, u"Bağış"_s);
    d.taksit(bagis, gun(2025, 9, 1), "300000000");
    d.taksit(bagis, gun(2025, 10, 1), "300000000");
    d.odeme(bagis, gun(2025, 9, 1), "300000000.0001");

    const base::Result<QList<fees::HesapToplami>> r
        = fees::HesapToplamlari(db, ogrenci, oncesi, s_etiket);
    QVERIFY2(r, qPrintable(r.error().text));
    QStringList satirlar;
    qint64 oncekiYemek = 0;
    for (const fees::HesapToplami &h : *r) {
        satirlar << u"%1 %2/%3"_s.arg(h.aidatTanim, h.odenecek.toDecimalString(),
                                      h.odenen.toDecimalString());
        if (h.aidatTanim == "Yemek"_L1) {
            QVERIFY(h.hesapId > oncekiYemek);
            oncekiYemek = h.hesapId;
        }
    }
    QCOMPARE(satirlar.join(u" | "_s), beklenen);
}

// Students 1 and 2 exist; the accounts of student 9, who was deleted, are not counted.
void tst_Ledger::monthTotals_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<QDate>("oncesi");
    QTest::addColumn<QString>("beklenen"); // "yyyy-MM odenecek/odenen", in month order
    for (store::Engine e : testing::engines()) {
        const char *en = testing::engineName(e);
        const int g = int(e);
        // August has a payment but no installment: it is no month of the list.
        QTest::addRow("%s-kasim-sonuna-kadar", en)
            << g << QDate(2025, 12, 1)
            << "2025-09 1000/1000 | 2025-10 1500.25/200 | 2025-11 1000/400.1";
        QTest::addRow("%s-yil-donumu", en)
            << g << QDate(2026, 2, 1)
            << "2025-09 1000/1000 | 2025-10 1500.25/200 | 2025-11 1000/400.1 | "
               "2025-12 500.25/100 | 2026-01 1000/0";
        QTest::addRow("%s-sinir-gunu-haric", en) << g << QDate(2025, 9, 6) << "2025-09 1000/0";
        QTest::addRow("%s-taksit-yok", en) << g << QDate(2025, 9, 5) << "";
    }
}

void tst_Ledger::monthTotals()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(QDate, oncesi);
    QFETCH(QString, beklenen);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    Defter d(db);
    d.ogrenci(1);
    d.ogrenci(2);
    const qint64 a = d.hesap(1, u"Öğrenim"_s);
    const qint64 b = d.hesap(2, u"Öğrenim"_s);
    const qint64 gone = d.hesap(9, u"Öğrenim"_s);
    for (int m : {9, 10, 11}) {
        d.taksit(a, gun(2025, m, 5), "1000");
    }
    d.taksit(a, gun(2026, 1, 5), "1000");
    d.taksit(b, gun(2025, 10, 31), "500.25");
    d.taksit(b, gun(2025, 12, 1), "500.25");
    d.taksit(gone, gun(2025, 10, 1), "7777");
    d.odeme(a, gun(2025, 8, 20), "300");
    d.odeme(a, gun(2025, 9, 6), "1000");
    d.odeme(b, gun(2025, 10, 31, 14, 30), "200");
    d.odeme(a, gun(2025, 11, 2), "400.10");
    d.odeme(b, gun(2025, 12, 31, 23, 59, 59), "100");
    d.odeme(gone, gun(2025, 10, 2), "7777");

    const base::Result<QList<fees::AyToplami>> r = fees::AyToplamlari(db, oncesi, s_etiket);
    QVERIFY2(r, qPrintable(r.error().text));
    QStringList aylar;
    for (const fees::AyToplami &m : *r) {
        aylar << u"%1-%2 %3/%4"_s.arg(m.yil)
                     .arg(m.ay, 2, 10, QChar(u'0'))
                     .arg(m.odenecek.toDecimalString(), m.odenen.toDecimalString());
    }
    QCOMPARE(aylar.join(u" | "_s), beklenen);
}

// Student 5 holds fee 3 twice and a placeholder; student 6 holds fee 4.
void tst_Ledger::aStudentsAccountOfAFee_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<qint64>("ogrenci");
    QTest::addColumn<qint64>("aidat");
    QTest::addColumn<QString>("beklenen"); // "name borc/kalan" of the first account, "-": none
    QTest::addColumn<bool>("kullaniliyor");
    for (store::Engine e : testing::engines()) {
        const char *en = testing::engineName(e);
        const int g = int(e);
        QTest::addRow("%s-ilk-hesap", en)
            << g << qint64(5) << qint64(3) << "Öğrenim 1000/250" << true;
        QTest::addRow("%s-yer-tutucu", en)
            << g << qint64(5) << qint64(0) << "Aidat Tanımı 750/0" << true;
        QTest::addRow("%s-baska-ogrencinin-aidati", en)
            << g << qint64(5) << qint64(4) << "-" << true;
        QTest::addRow("%s-hesabi-olmayan-ogrenci", en)
            << g << qint64(7) << qint64(3) << "-" << true;
        QTest::addRow("%s-kullanilmayan-aidat", en) << g << qint64(5) << qint64(8) << "-" << false;
    }
}

void tst_Ledger::aStudentsAccountOfAFee()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(qint64, ogrenci);
    QFETCH(qint64, aidat);
    QFETCH(QString, beklenen);
    QFETCH(bool, kullaniliyor);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    Defter d(db);
    const qint64 ilk = d.hesap(5, u"Öğrenim"_s, 3, "1000", "250");
    d.hesap(5, u"Öğrenim"_s, 3, "1000", "1000");
    d.hesap(5, fees::YerTutucuHesapAdi, 0, "750", "0");
    d.hesap(6, u"Yemek"_s, 4, "300", "300");

    const base::Result<std::optional<fees::Hesap>> h
        = fees::OgrenciHesabi(db, ogrenci, aidat, s_etiket);
    QVERIFY2(h, qPrintable(h.error().text));
    QCOMPARE(h->has_value() ? u"%1 %2/%3"_s.arg((*h)->aidatTanim, (*h)->borc.toDecimalString(),
                                                (*h)->kalan.toDecimalString())
                            : u"-"_s,
             beklenen);
    if (h->has_value()) {
        QCOMPARE((*h)->aidatId, aidat);
        if (aidat == 3) {
            QCOMPARE((*h)->kayitId, ilk);
        }
    }
    const base::Result<bool> k = fees::AidatKullaniliyor(db, aidat, s_etiket);
    QVERIFY(k);
    QCOMPARE(*k, kullaniliyor);
}

QTEST_GUILESS_MAIN(tst_Ledger)
#include "tst_ledger.moc"
