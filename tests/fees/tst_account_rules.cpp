#include "fees/account_rules.h"
#include "fees/auto_plan.h"
#include "fees/definitions.h"

#include <QTest>

using namespace Qt::StringLiterals;

using base::Para;
using fees::DetaySatiri;
using fees::HesapKaydi;

namespace {

Para tl(const char *amount)
{
    return Para::fromDecimalString(QString::fromLatin1(amount)).value();
}

QList<Para> amounts(const QString &list)
{
    QList<Para> out;
    for (const QString &a : list.split(u' ', Qt::SkipEmptyParts))
        out << Para::fromDecimalString(a).value();
    return out;
}

} // namespace

class tst_AccountRules : public QObject
{
    Q_OBJECT

private slots:
    void paymentCodes_data();
    void paymentCodes();
    void firstInFirstOut_data();
    void firstInFirstOut();
    void invoiceMode_data();
    void invoiceMode();
    void payingAnInstallment();
    void replacingTheFee();
    void discountsInTheirOrder_data();
    void discountsInTheirOrder();
    void replanFromAnEditedRow_data();
    void replanFromAnEditedRow();
    void applyingThePlan();
};

void tst_AccountRules::paymentCodes_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("code");
    // The installment list's own words, then those it shares with the payment kinds.
    QTest::newRow("kredi-karti") << u"Kredi Kartı"_s << u"K"_s;
    QTest::newRow("havale") << u"Banka Havalesi"_s << u"B"_s;
    QTest::newRow("kart-taksit") << u"Kredi Kart Taksit"_s << u"T"_s;
    QTest::newRow("nakit") << u"Nakit"_s << u"N"_s;
    QTest::newRow("cek") << u"Çek"_s << u"C"_s;
    QTest::newRow("senet") << u"Senet"_s << u"S"_s;
    QTest::newRow("bloke") << u"Bloke"_s << u"L"_s;
    QTest::newRow("diger") << u"Diğer"_s << u"D"_s;
    QTest::newRow("bos") << QString() << QString();
    QTest::newRow("bilinmeyen") << u"Havale"_s << QString();
}

void tst_AccountRules::paymentCodes()
{
    QFETCH(QString, word);
    QFETCH(QString, code);
    QCOMPARE(fees::OdemeSekliKodu(word), code);
}

void tst_AccountRules::firstInFirstOut_data()
{
    QTest::addColumn<QString>("installments");
    QTest::addColumn<QString>("paid");
    QTest::addColumn<QString>("unpaid");
    QTest::newRow("nothing-paid") << "100 100 100"
                                  << "0"
                                  << "100 100 100";
    QTest::newRow("exactly-one") << "100 100 100"
                                 << "100"
                                 << "0 100 100";
    QTest::newRow("part-of-second") << "100 100 100"
                                    << "150.25"
                                    << "0 49.75 100";
    QTest::newRow("overpaid") << "100 100"
                              << "250"
                              << "0 0";
    QTest::newRow("zero-installment") << "0 100"
                                      << "50"
                                      << "0 50";
    QTest::newRow("refund-owes-more") << "100 100"
                                      << "-20"
                                      << "120 100";
}

void tst_AccountRules::firstInFirstOut()
{
    QFETCH(QString, installments);
    QFETCH(QString, paid);
    QFETCH(QString, unpaid);
    QCOMPARE(fees::OdenmemisKisimlar(amounts(installments), amounts(paid).value(0)),
             amounts(unpaid));
}

void tst_AccountRules::invoiceMode_data()
{
    // Installments of 1.000: the first two on invoice 41 (which holds 2.000), the third on 42
    // (1.000). Payments "amount" or "amount/own invoice"; the invoices they take; the notes.
    QTest::addColumn<QString>("payments");
    QTest::addColumn<QString>("invoices");
    QTest::addColumn<int>("notes");
    QTest::newRow("fills-exactly") << "2000 1000"
                                   << "41 42" << 0;
    QTest::newRow("fills-in-two") << "500 1500 1000"
                                  << "41 41 42" << 0;
    QTest::newRow("too-large") << "2500 1000"
                               << "41 42" << 1;
    QTest::newRow("past-the-last") << "2000 1000 300 300/77"
                                   << "41 42 0 77" << 0;
    QTest::newRow("zero-amount-keeps-its-own") << "0/5 2000"
                                               << "5 41" << 0;
}

void tst_AccountRules::invoiceMode()
{
    QFETCH(QString, payments);
    QFETCH(QString, invoices);
    QFETCH(int, notes);
    HesapKaydi h;
    const QDateTime d(QDate(2025, 9, 5), QTime(0, 0));
    h.taksitler = {DetaySatiri{1, d, tl("1000"), {}, 41}, DetaySatiri{2, d, tl("1000"), {}, 41},
                   DetaySatiri{3, d, tl("1000"), {}, 42}};
    for (const QString &p : payments.split(u' ')) {
        fees::OdemeSatiri o;
        o.sira = int(h.odemeler.size()) + 1;
        o.odemeTarihi = d;
        o.odenen = Para::fromDecimalString(p.section(u'/', 0, 0)).value();
        o.faturaNo = p.section(u'/', 1, 1).toLongLong();
        o.elle = o.odenen.isZero(); // a row of 0 read from the store is written as it stands
        h.odemeler.append(o);
    }
    const fees::FaturaDagilimi r
        = fees::FaturaEslestir(h, {{41, tl("2000")}, {42, tl("1000")}, {0, Para()}});
    QStringList got;
    for (qint64 n : r.faturaNo)
        got << QString::number(n);
    QCOMPARE(got.join(u' '), invoices);
    QCOMPARE(r.uyarilar.size(), notes);
    if (notes)
        QVERIFY(r.uyarilar.first().startsWith(u"1. satırda yazmış olduğunuz ödeme kesilen "
                                              "fatura tutarından 500,00 TL büyüktür."_s));
}

void tst_AccountRules::payingAnInstallment()
{
    HesapKaydi h;
    h.taksitler = {
        DetaySatiri{1, QDateTime(QDate(2025, 9, 5), QTime(0, 0)), tl("1700"), u"Banka Havalesi"_s},
        DetaySatiri{4, QDateTime(QDate(2025, 10, 5), QTime(0, 0)), tl("1700")},
        DetaySatiri{5, {}, tl("1700")}};
    QVERIFY(!fees::TaksidiOdeSorusu(h, 0));
    QCOMPARE(*fees::TaksidiOde(h, 0), 0);
    QCOMPARE(*fees::TaksidiOde(h, 1), 1);
    // The payment carries the installment's Sira, date, amount and way of payment.
    const fees::OdemeSatiri &o = h.odemeler.at(1);
    QCOMPARE(o.sira, 4);
    QCOMPARE(o.odemeTarihi.date(), QDate(2025, 10, 5));
    QCOMPARE(o.odenen, tl("1700"));
    QCOMPARE(h.odemeler.at(0).odemeSekli, u"B"_s);
    QVERIFY(o.elle);
    // Paid again: asked first, Enter answering No.
    const std::optional<base::Soru> soru = fees::TaksidiOdeSorusu(h, 1);
    QVERIFY(soru);
    QCOMPARE(soru->metin, u"05.10.2025 tarihinde yapılmış ödeme bulundu. \nİşleme devam etmek "
                          "istediğinizden emin misiniz?"_s);
    QVERIFY(!soru->evetVarsayilan);
    // An installment without a date pays nothing.
    QVERIFY(!fees::TaksidiOde(h, 2));
    QCOMPARE(h.odemeler.size(), 2);
}

void tst_AccountRules::replacingTheFee()
{
    HesapKaydi h;
    h.satir.aidatTanim = u"Aidat Tanımı"_s;
    h.satir.iskontoTutari = tl("500");
    h.iskontolar.append(fees::IskontoSatiri{3, u"Kardeş"_s});
    h.taksitler = {DetaySatiri{7, {}, tl("1")}};
    h.odemeler.append(fees::OdemeSatiri{2});
    fees::AidatTanimi tanim;
    tanim.kayitId = 9;
    tanim.aidatTanim = u"Servis"_s;
    tanim.pesinat = tl("300");
    tanim.taksitler = {{QDate(2025, 9, 1), tl("350")}, {QDate(1899, 12, 30), tl("350")}};
    QVERIFY(fees::AidatEkle(h, tanim));
    QCOMPARE(h.satir.aidatTanim, u"Servis"_s);
    QCOMPARE(h.satir.aidatId, qint64(9));
    QCOMPARE(h.pesinat, tl("300"));
    QCOMPARE(h.taksitler.size(), 2);
    QCOMPARE(h.taksitler.at(1).sira, 2);
    QVERIFY(!h.taksitler.at(1).odemeTarihi.isValid()); // the zero date is no due date
    QVERIFY(h.iskontolar.isEmpty());
    QCOMPARE(h.satir.iskontoTutari, Para());
    QCOMPARE(h.odemeler.size(), 1);

    // Chosen as 3 × 4.000: the total planned anew from the definition's down payment, count
    // and start; the definition itself keeps its own.
    tanim.taksitSayisi = 2;
    tanim.odemeBasTarihi = QDate(2025, 9, 1);
    const base::Result<fees::AidatTanimi> adetli
        = fees::AdetliTanim(tanim, tl("12000"), Para(), u"#,##0.00"_s);
    QVERIFY(adetli);
    QCOMPARE(adetli->toplam, tl("12000"));
    QCOMPARE(adetli->taksitler.size(), 2);
    QCOMPARE(adetli->taksitler.at(0).tutar + adetli->taksitler.at(1).tutar, tl("11700"));
    QCOMPARE(adetli->taksitler.at(1).odemeTarihi, QDate(2025, 10, 1));
    QCOMPARE(tanim.taksitler.size(), 2);
    tanim.taksitSayisi = 0;
    QVERIFY(!fees::AdetliTanim(tanim, tl("12000"), Para(), u"#,##0.00"_s));

    // Once an installment is invoiced the plan stays.
    h.taksitler[0].faturaNo = 41;
    const HesapKaydi invoiced = h;
    QVERIFY(!fees::AidatEkle(h, tanim));
    QCOMPARE(h, invoiced);
}

void tst_AccountRules::discountsInTheirOrder_data()
{
    // Rows "mark base kind value" (base E/K, kind O for a rate, T for an amount); what each
    // takes off; the total.
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QString>("taken");
    QTest::addColumn<QString>("total");
    QTest::newRow("rate-on-full") << "1EO10 1EO10"
                                  << "1000 1000"
                                  << "2000";
    QTest::newRow("rate-on-rest") << "1EO10 1KO10"
                                  << "1000 900"
                                  << "1900";
    QTest::newRow("amount-then-rate") << "1KT500 1KO10"
                                      << "500 950"
                                      << "1450";
    QTest::newRow("unmarked-empty") << "0EO10 1KO10"
                                    << "0 1000"
                                    << "1000";
    // 33,3333 % of 10.000 is 3.333,33, rounded once; the next row works on what is left.
    QTest::newRow("rounded-once") << "1EO33.3333 1KO50"
                                  << "3333.33 3333.34"
                                  << "6666.67";
    QTest::newRow("more-than-the-fee") << "1KT12000"
                                       << "12000"
                                       << "12000";
    QTest::newRow("rate-above-100-refused") << "1EO10 1KO100.5"
                                            << "0 0"
                                            << "refused";
}

void tst_AccountRules::discountsInTheirOrder()
{
    QFETCH(QString, rows);
    QFETCH(QString, taken);
    QFETCH(QString, total);
    QList<fees::IskontoSecimi> list;
    for (const QString &r : rows.split(u' ')) {
        fees::IskontoSecimi s;
        s.isaretli = r.at(0) == u'1';
        s.kalanTutardan = r.at(1) == u'K' ? fees::KalanTutardan : fees::EsasTutardan;
        s.tipi = r.at(2) == u'T' ? fees::Tutar : fees::Oran;
        s.deger = Para::fromDecimalString(r.mid(3)).value();
        list << s;
    }
    const base::Result<Para> sum
        = fees::IskontolariYenidenHesapla(list, tl("10000"), u"#,##0.00"_s);
    if (total == u"refused") {
        QVERIFY(!sum && sum.error().isRefusal());
        QCOMPARE(list.first().indirim, Para()); // nothing changed
        return;
    }
    QVERIFY(sum);
    QStringList got;
    for (const fees::IskontoSecimi &s : list)
        got << s.indirim.toDecimalString();
    QCOMPARE(got.join(u' '), taken);
    QCOMPARE(sum->toDecimalString(), total);
}

void tst_AccountRules::replanFromAnEditedRow_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("from");
    QTest::addColumn<QString>("rounding");
    QTest::addColumn<QString>("after");
    // 9.000 after a down payment of 1.000 over five rows; the second typed as 2.500.
    QTest::newRow("rest-equal") << "1800 2500 1800 1800 1800" << 2 << "0"
                                << "1800 2500 1566.67 1566.67 1566.67";
    QTest::newRow("cut-to-step") << "1800 2500 1800 1800 1800" << 2 << "10"
                                 << "1800 2500 1560 1560 1560";
    QTest::newRow("last-row-changes-nothing") << "1800 1800 1800 1800 2000" << 5 << "0"
                                              << "1800 1800 1800 1800 2000";
}

void tst_AccountRules::replanFromAnEditedRow()
{
    QFETCH(QString, before);
    QFETCH(int, from);
    QFETCH(QString, rounding);
    QFETCH(QString, after);
    const base::Result<QList<Para>> r
        = fees::TaksitleriYenidenDagit(amounts(before), from, tl("10000"), tl("1000"),
                                       Para::fromDecimalString(rounding).value(), u"#,##0.00"_s);
    QVERIFY(r);
    QCOMPARE(*r, amounts(after));
}

void tst_AccountRules::applyingThePlan()
{
    HesapKaydi h;
    h.taksitler = {DetaySatiri{4, {}, tl("1"), u"Senet"_s}};
    fees::OtomatikPlan plan;
    plan.aidatTanim = u"Öğrenim"_s;
    plan.aidatTutari = tl("10000");
    plan.pesinat = tl("1000");
    fees::IskontoSecimi kardes{3, true, u"Kardeş"_s};
    kardes.indirim = tl("1000");
    plan.iskontolar = {kardes, fees::IskontoSecimi{5, false, u"Personel"_s}};
    plan.taksitler = {{QDate(2025, 9, 5), tl("4000")}, {QDate(2025, 10, 5), tl("3999")}};
    // 1 left over: refused, nothing changes.
    const HesapKaydi before = h;
    QCOMPARE(fees::OtomatikTaksitUygula(h, plan).error().text,
             u"Taksitlerin toplamı tutmuyor: Kalan 1,00. Taksitleri düzeltiniz ya da planı "
             "yeniden yapınız."_s);
    QCOMPARE(h, before);
    plan.taksitler[1].tutar = tl("4000");
    QVERIFY(fees::OtomatikTaksitUygula(h, plan));
    QCOMPARE(h.satir.iskontoTutari, tl("1000"));
    QCOMPARE(h.iskontolar.size(), 1);
    QCOMPARE(h.taksitler.size(), 2);
    QCOMPARE(h.taksitler.at(1).sira, 2);
    QCOMPARE(h.taksitler.at(0).odemeSekli, u"Senet"_s); // kept by position
    QCOMPARE(fees::ToplamlariYenile(h).borc + h.satir.iskontoTutari, plan.aidatTutari);
    // Discounts past the down payment: no plan.
    kardes.indirim = tl("9500");
    plan.iskontolar = {kardes};
    QVERIFY(fees::OtomatikTaksitUygula(h, plan).error().text.contains(u"(500,00)"_s));
}

QTEST_MAIN(tst_AccountRules)
#include "tst_account_rules.moc"
