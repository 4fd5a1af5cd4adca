#include "fees_support.h"

#include "fees/change_check.h"
#include "store/database.h"
#include "users/session.h"

#include <QTest>

using namespace Qt::StringLiterals;

using base::Para;

namespace {

struct Hesap
{
    qint64 aidatId;
    QString aidatTanim;
    QString borc;
    QString kalan;
};

void addAccount(store::Database &db, qint64 ogrenci, const Hesap &h)
{
    store::Query q(db, u"INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, "
                       "AidatID, AidatTanim) VALUES (?, 1, ?, ?, ?, ?)"_s);
    q.bind(ogrenci)
        .bind(Para::fromDecimalString(h.borc).value())
        .bind(Para::fromDecimalString(h.kalan).value())
        .bind(h.aidatId)
        .bind(h.aidatTanim);
    QVERIFY(q.exec());
}

void setSchool(store::Database &db, const QString &ogrAOtoDeg)
{
    store::Query q(db, u"INSERT INTO Sabit (OgretimYili, OgrAOtoDeg) VALUES (?, ?)"_s);
    q.bind(u"2025-2026"_s).bind(ogrAOtoDeg);
    QVERIFY(q.exec());
}

} // namespace

Q_DECLARE_METATYPE(Hesap)

class tst_ChangeCheck : public QObject
{
    Q_OBJECT

private slots:
    void init() { users::durum() = users::CalismaDurumu(); }
    void decides_data();
    void decides();
    void aReadOnlyUserLeavesThePlaceholderAlone();
};

void tst_ChangeCheck::decides_data()
{
    QTest::addColumn<int>("engine");
    QTest::addColumn<QString>("ogrAOtoDeg"); // "" : no school row
    QTest::addColumn<qint64>("ogrenci");
    QTest::addColumn<qint64>("aidat");
    QTest::addColumn<QList<Hesap>>("hesaplar");
    QTest::addColumn<bool>("izin");
    QTest::addColumn<QString>("mesaj");
    QTest::addColumn<QString>("borclarSonra"); // Borc of student 5's accounts afterwards
    const QString odemeVar = u"Bu aidatta ödeme yapılmış. Değişiklik yapılamaz."_s;
    const QString secenek
        = u"Sabit Bilgiler >> Okul Bilgileri ekranındaki seçeneği kontrol ediniz."_s;
    const QString yer = u"Aidat Tanımı"_s;
    using H = QList<Hesap>;
    for (store::Engine e : testing::engines()) {
        const char *en = testing::engineName(e);
        const int g = int(e);
        const qint64 o = 5;
        // clang-format off
        QTest::addRow("%s-okul-yok", en)
            << g << "" << o << qint64(3) << H{} << false << "Okul kaydı bulunamadı." << "";
        QTest::addRow("%s-ogrenci-secilmemis", en) << g << "1" << qint64(0) << qint64(3) << H{}
            << false << "Lütfen öğrenci seçiniz." << "";
        QTest::addRow("%s-bu-aidatta-hesap-yok", en) << g << "0" << o << qint64(3)
            << H{{8, "Öğrenim", "1000", "400"}} << true << "" << "1000";
        QTest::addRow("%s-odeme-var-secenek-acik", en) << g << "1" << o << qint64(3)
            << H{{3, "Öğrenim", "1000", "999.99"}} << false << odemeVar << "1000";
        QTest::addRow("%s-fazla-odeme", en) << g << "1" << o << qint64(3)
            << H{{3, "Öğrenim", "1000", "-50"}} << false << odemeVar << "1000";
        QTest::addRow("%s-dokunulmamis-secenek-acik", en) << g << "1" << o << qint64(3)
            << H{{3, "Öğrenim", "1000", "1000"}} << true << "" << "1000";
        QTest::addRow("%s-dokunulmamis-secenek-kapali", en) << g << "0" << o << qint64(3)
            << H{{3, "Öğrenim", "1000", "1000"}} << false << secenek << "1000";
        // Spent placeholders go to zero (the one still owing stays), then the school decides.
        QTest::addRow("%s-harcanmis-yer-tutucu-onarilir", en) << g << "1" << o << qint64(0)
            << H{{0, yer, "750", "0"}, {0, yer, "300", "-20"}, {0, yer, "200", "50"}} << true << ""
            << "0 0 200";
        QTest::addRow("%s-harcanmis-yer-tutucu-secenek-kapali", en)
            << g << "0" << o << qint64(0) << H{{0, yer, "750", "-5"}} << false << secenek << "0";
        QTest::addRow("%s-yer-tutucu-borclu", en) << g << "1" << o << qint64(0)
            << H{{0, yer, "750", "250"}} << false << odemeVar << "750";
        QTest::addRow("%s-baska-adli-sifir-aidat", en) << g << "1" << o << qint64(0)
            << H{{0, "Eski Aidat", "750", "0"}} << false << odemeVar << "750";
        // clang-format on
    }
}

void tst_ChangeCheck::decides()
{
    VORTEL_STORE_FOR_ROW(s);
    QFETCH(QString, ogrAOtoDeg);
    QFETCH(qint64, ogrenci);
    QFETCH(qint64, aidat);
    QFETCH(QList<Hesap>, hesaplar);
    QFETCH(bool, izin);
    QFETCH(QString, mesaj);
    QFETCH(QString, borclarSonra);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    if (!ogrAOtoDeg.isEmpty()) {
        setSchool(db, ogrAOtoDeg);
    }
    for (const Hesap &h : hesaplar) {
        addAccount(db, 5, h);
    }
    // Another student's spent placeholder is never touched.
    addAccount(db, 6, Hesap{aidat, u"Aidat Tanımı"_s, "900", "-1"});

    const base::Status r = fees::AidatDegisiklikKontrol(db, aidat, ogrenci);
    QVERIFY2(r.ok() || r.error().isRefusal(), qPrintable(r.error().text));
    QCOMPARE(r.ok(), izin);
    QCOMPARE(r.ok() ? QString() : r.error().red->metin, mesaj);
    if (!mesaj.isEmpty()) {
        QCOMPARE(r.error().red->baslik, ogrenci < 1 ? u"Öğrenci Hata"_s : u"Aidat Değişikliği"_s);
    }
    store::Query q(db, u"SELECT OgrKayitID, Borc FROM OgrenciAidatTanim ORDER BY KayitID"_s);
    QVERIFY(q.exec());
    QStringList borclar;
    while (q.next()) {
        if (q.integer(0) == 5) {
            borclar << q.para(1).toDecimalString();
        } else {
            QCOMPARE(q.para(1), Para::fromUnits(900));
        }
    }
    QCOMPARE(borclar.join(u' '), borclarSonra);
}

void tst_ChangeCheck::aReadOnlyUserLeavesThePlaceholderAlone()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    setSchool(db, u"1"_s);
    addAccount(db, 5, Hesap{0, u"Aidat Tanımı"_s, "750", "0"});
    users::durum().HakYazma = false;
    const base::Status r = fees::AidatDegisiklikKontrol(db, 0, 5);
    QVERIFY(!r.ok() && r.error().isRefusal());
    QCOMPARE(r.error().red->metin, u"Bu aidatta ödeme yapılmış. Değişiklik yapılamaz."_s);
}

QTEST_GUILESS_MAIN(tst_ChangeCheck)
#include "tst_change_check.moc"
