#include "base/turkish_text.h"
#include "fees/installment_plan.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

using base::Para;
using fees::PlanDurumu;
using fees::PlanGirdisi;
using fees::PlanSonucu;

namespace {

Para para(const char *c)
{
    return Para::fromDecimalString(QString::fromLatin1(c)).value();
}

QList<Para> paralar(const QStringList &texts)
{
    QList<Para> out;
    for (const QString &t : texts) {
        out.append(Para::fromDecimalString(t).value());
    }
    return out;
}

QList<Para> tutarlar(const PlanSonucu &plan)
{
    QList<Para> out;
    for (const fees::TaksitSatiri &s : plan.taksitler) {
        out.append(s.tutar);
    }
    return out;
}

Para toplami(const QList<Para> &list)
{
    Para sum;
    for (const Para &p : list) {
        sum += p;
    }
    return sum;
}

QString yaz(const QList<Para> &list)
{
    QStringList out;
    for (const Para &p : list) {
        out << p.toDecimalString();
    }
    return out.join(u' ');
}

} // namespace

class tst_InstallmentPlan : public QObject
{
    Q_OBJECT

private slots:
    void amounts_data();
    void amounts();
    void datesCountFromTheStart_data();
    void datesCountFromTheStart();
    void nothingIsPlannedWithoutCountOrDate();
    void totalsUnderThePlan_data();
    void totalsUnderThePlan();
    void unitPriceTotals_data();
    void unitPriceTotals();
    void figuresBeyondTheRange_data();
    void figuresBeyondTheRange();
    void totalsBeyondTheRange();
};

void tst_InstallmentPlan::amounts_data()
{
    QTest::addColumn<QString>("toplam");
    QTest::addColumn<QString>("pesinat");
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("oran");
    QTest::addColumn<QString>("yuvarlama");
    QTest::addColumn<QString>("bicim");
    QTest::addColumn<QStringList>("beklenen");
    const QString kurus = u"#,##0.00"_s;
    using L = QStringList;
    // clang-format off
    QTest::addRow("ornek-1000-100-4-yuvarlama-10")
        << "1000" << "100" << 4 << "0" << "10" << kurus << L{"240", "220", "220", "220"};
    // The default step of a school that never set one: everything on the first installment.
    QTest::addRow("yuvarlama-taksitten-buyuk")
        << "1000" << "100" << 4 << "0" << "1000000" << kurus << L{"900", "0", "0", "0"};
    QTest::addRow("yuvarlamasiz-kurus-ilk-taksite")
        << "1000" << "0" << 3 << "0" << "0" << kurus << L{"333.34", "333.33", "333.33"};
    QTest::addRow("eksi-yuvarlama-yuvarlamasiz-sayilir")
        << "1000" << "0" << 3 << "0" << "-5" << kurus << L{"333.34", "333.33", "333.33"};
    // Without rounding the general rate comes back onto the first installment.
    QTest::addRow("iskonto-yuvarlamasiz-ilk-taksite-doner")
        << "1000" << "100" << 4 << "10" << "0" << kurus << L{"300", "200", "200", "200"};
    QTest::addRow("iskonto-yuvarlamali")
        << "1000" << "100" << 4 << "10" << "10" << kurus << L{"200", "200", "200", "200"};
    QTest::addRow("kesirli-yuvarlama-0,5")
        << "1000" << "0" << 3 << "0" << "0.5" << kurus << L{"334", "333", "333"};
    // 0,30 / 0,1 is exactly 3 steps, not 2,999...: nothing moves to the first installment.
    QTest::addRow("kesirli-yuvarlama-tam-kat")
        << "0.9" << "0" << 3 << "0" << "0.1" << kurus << L{"0.3", "0.3", "0.3"};
    // Pesinat above Toplam: negative installments, cut downwards to the step.
    QTest::addRow("eksi-taksit-asagi-kesilir")
        << "100" << "200" << 3 << "0" << "10" << kurus << L{"-20", "-40", "-40"};
    // Kalan 1979,2099 / 2 = 989,60495: rounded once it is 989,60, never 989,61 by way of
    // 989,6050; the cent that is left over goes first.
    QTest::addRow("kalan-bolu-n-bir-kez-yuvarlanir")
        << "1999" << "0" << 2 << "0.99" << "0.01" << kurus << L{"989.61", "989.6"};
    // Kalan keeps all six places of Toplam x rate / 100: 925,00925 is 925,01 in the first row.
    QTest::addRow("kalan-yuvarlanmaz")
        << "1000.01" << "0" << 2 << "7.5" << "0.01" << kurus << L{"462.51", "462.5"};
    QTest::addRow("eski-lira-tam-sayi")
        << "1000000" << "0" << 3 << "0" << "0" << u"#,###"_s << L{"333334", "333333", "333333"};
    QTest::addRow("tek-taksit") << "1250.5" << "250.5" << 1 << "0" << "10" << kurus << L{"1000"};
    // clang-format on
}

void tst_InstallmentPlan::amounts()
{
    QFETCH(QString, toplam);
    QFETCH(QString, pesinat);
    QFETCH(int, n);
    QFETCH(QString, oran);
    QFETCH(QString, yuvarlama);
    QFETCH(QString, bicim);
    QFETCH(QStringList, beklenen);
    PlanGirdisi g;
    g.toplam = Para::fromDecimalString(toplam).value();
    g.pesinat = Para::fromDecimalString(pesinat).value();
    g.taksitSayisi = n;
    g.baslangic = QDate(2025, 9, 15);
    g.genelOran = Para::fromDecimalString(oran).value();
    g.yuvarlama = Para::fromDecimalString(yuvarlama).value();
    g.paraFormati = bicim;
    const PlanSonucu plan = fees::TaksitPlanla(g).value_or(PlanSonucu{});
    QCOMPARE(plan.durum, PlanDurumu::Planlandi);
    QCOMPARE(yaz(tutarlar(plan)), yaz(paralar(beklenen)));
    // The sum is exact: Toplam - Pesinat without rounding, the money-format Kalan with it.
    const Para sum = toplami(tutarlar(plan));
    if (g.yuvarlama > Para()) {
        QCOMPARE(sum, plan.kalan);
    } else {
        QCOMPARE(sum, g.toplam - g.pesinat);
    }
}

void tst_InstallmentPlan::datesCountFromTheStart_data()
{
    QTest::addColumn<QDate>("baslangic");
    QTest::addColumn<QStringList>("tarihler");
    QTest::addRow("29-ocak-artik-yil")
        << QDate(2024, 1, 29)
        << QStringList{"29.01.2024", "29.02.2024", "29.03.2024", "29.04.2024"};
    QTest::addRow("29-ocak-normal-yil")
        << QDate(2025, 1, 29)
        << QStringList{"29.01.2025", "28.02.2025", "29.03.2025", "29.04.2025"};
    QTest::addRow("30-ocak") << QDate(2025, 1, 30)
                             << QStringList{"30.01.2025", "28.02.2025", "30.03.2025", "30.04.2025"};
    QTest::addRow("31-ocak-artik-yil")
        << QDate(2024, 1, 31)
        << QStringList{"31.01.2024", "29.02.2024", "31.03.2024", "30.04.2024", "31.05.2024"};
    QTest::addRow("30-kasim-yil-donumu")
        << QDate(2023, 11, 30)
        << QStringList{"30.11.2023", "30.12.2023", "30.01.2024", "29.02.2024", "30.03.2024"};
    QTest::addRow("31-agustos-ders-yili")
        << QDate(2025, 8, 31)
        << QStringList{"31.08.2025", "30.09.2025", "31.10.2025", "30.11.2025", "31.12.2025",
                       "31.01.2026", "28.02.2026", "31.03.2026", "30.04.2026", "31.05.2026"};
}

void tst_InstallmentPlan::datesCountFromTheStart()
{
    QFETCH(QDate, baslangic);
    QFETCH(QStringList, tarihler);
    PlanGirdisi g;
    g.toplam = para("1000");
    g.taksitSayisi = int(tarihler.size());
    g.baslangic = baslangic;
    const PlanSonucu plan = fees::TaksitPlanla(g).value_or(PlanSonucu{});
    QStringList got;
    for (const fees::TaksitSatiri &s : plan.taksitler) {
        got << s.odemeTarihi.toString(u"dd.MM.yyyy"_s);
    }
    QCOMPARE(got, tarihler);
}

void tst_InstallmentPlan::nothingIsPlannedWithoutCountOrDate()
{
    PlanGirdisi g;
    g.toplam = para("1000");
    g.taksitSayisi = 0;
    g.baslangic = QDate(2025, 9, 1);
    PlanSonucu plan = fees::TaksitPlanla(g).value_or(PlanSonucu{});
    QCOMPARE(plan.durum, PlanDurumu::TaksitYok);
    QVERIFY(plan.taksitler.isEmpty());
    g.taksitSayisi = -2;
    QCOMPARE(fees::TaksitPlanla(g).value_or(PlanSonucu{}).durum, PlanDurumu::TaksitYok);
    // 31.02.2024 never reaches the plan: the date box gives no date for it.
    g.taksitSayisi = 4;
    g.baslangic = QDate(2024, 2, 31);
    plan = fees::TaksitPlanla(g).value_or(PlanSonucu{});
    QCOMPARE(plan.durum, PlanDurumu::TarihGecersiz);
    QVERIFY(plan.taksitler.isEmpty());
}

void tst_InstallmentPlan::totalsUnderThePlan_data()
{
    QTest::addColumn<QString>("oran");
    QTest::addColumn<QStringList>("plan");
    QTest::addColumn<QString>("etiket");
    QTest::addColumn<QString>("kalan");
    QTest::addColumn<QString>("ikinci");
    // Toplam 1000, Pesinat 100 in every row.
    using L = QStringList;
    // clang-format off
    QTest::addRow("oransiz-dengeli")
        << "0" << L{"240", "220", "220", "220"} << "Kalan" << "0" << "1000";
    QTest::addRow("oransiz-taksit-degisti")
        << "0" << L{"250", "220", "220", "220"} << "Kalan" << "-10" << "1000";
    QTest::addRow("oranli-iskonto-gorunur")
        << "10" << L{"200", "200", "200", "200"} << "İskonto" << "100" << "900";
    QTest::addRow("oranli-yuvarlamasiz-plan")
        << "10" << L{"300", "200", "200", "200"} << "İskonto" << "0" << "900";
    QTest::addRow("oran-kurusa-yuvarlanir")
        << "12.3456" << L{"700"} << "İskonto" << "200" << "876.54";
    // clang-format on
}

void tst_InstallmentPlan::totalsUnderThePlan()
{
    QFETCH(QString, oran);
    QFETCH(QStringList, plan);
    QFETCH(QString, etiket);
    QFETCH(QString, kalan);
    QFETCH(QString, ikinci);
    const base::Result<fees::TaksitOzeti> hesaplanan
        = fees::TaksitTutarHesapla(para("1000"), para("100"), paralar(plan),
                                   Para::fromDecimalString(oran).value(), u"#,##0.00"_s);
    QVERIFY(hesaplanan.ok());
    const fees::TaksitOzeti &ozet = *hesaplanan;
    QCOMPARE(ozet.etiket, etiket);
    QCOMPARE(ozet.kalan.toDecimalString(), kalan);
    QCOMPARE(ozet.ikinciKutu.toDecimalString(), ikinci);
    QCOMPARE(ozet.taksitToplami, toplami(paralar(plan)));
}

void tst_InstallmentPlan::unitPriceTotals_data()
{
    QTest::addColumn<QString>("fiyat");
    QTest::addColumn<int>("adet");
    QTest::addColumn<QString>("ondalik");
    QTest::addColumn<QString>("parali");
    // The decimal path reads the digits behind the comma as a number: 12 >= 5 raises.
    // clang-format off
    QTest::addRow("12,12") << "12.12" << 1 << "13" << "12.12";
    QTest::addRow("12,04") << "12.04" << 1 << "12" << "12.04";
    QTest::addRow("12,5") << "12.5" << 1 << "13" << "12.5";
    QTest::addRow("tam") << "12" << 1 << "12" << "12";
    QTest::addRow("carpim-4,04x3") << "4.04" << 3 << "13" << "12.12";
    QTest::addRow("carpim-0,1x3") << "0.1" << 3 << "0" << "0.3";
    QTest::addRow("carpim-1,06x10") << "1.06" << 10 << "11" << "10.6";
    QTest::addRow("yemek-27,35x180") << "27.35" << 180 << "4923" << "4923";
    // clang-format on
}

void tst_InstallmentPlan::unitPriceTotals()
{
    QFETCH(QString, fiyat);
    QFETCH(int, adet);
    QFETCH(QString, ondalik);
    QFETCH(QString, parali);
    const Para p = Para::fromDecimalString(fiyat).value();
    QCOMPARE(fees::OndalikToplam(p, adet).value_or(Para()).toDecimalString(), ondalik);
    QCOMPARE(fees::BirimFiyatToplami(p, adet).value_or(Para()).toDecimalString(), parali);
}

// Figures as the screen reads its boxes; one that leaves the range on the way is the overflow
// error of the plan, never a plan of amounts cut to fit.
void tst_InstallmentPlan::figuresBeyondTheRange_data()
{
    QTest::addColumn<QString>("toplam");
    QTest::addColumn<QString>("pesinat");
    QTest::addColumn<QString>("oran");
    QTest::addColumn<QString>("yuvarlama");
    QTest::addColumn<QString>("beklenen"); // "": the overflow error
    const QString buyuk = u"900.000.000.000.000"_s;
    // clang-format off
    // Toplam x (100 - oran) leaves 64 bits on the way; the plan is exact all the same.
    QTest::addRow("buyuk-ama-sigar")
        << buyuk << "0" << "10" << "0" << "360000000000000 270000000000000 270000000000000";
    QTest::addRow("kutuya-sigmayan-toplam") << "99999999999999999999" << "0" << "0" << "0" << "";
    QTest::addRow("kalan-siniri-asar") << buyuk << "-" + buyuk << "0" << "10" << "";
    // Kalan fits (-900 trillion); without rounding the first installment takes the rate's
    // share back: 1.800 trillion.
    QTest::addRow("ilk-taksit-siniri-asar") << buyuk << "0" << "200" << "0" << "";
    // clang-format on
}

void tst_InstallmentPlan::figuresBeyondTheRange()
{
    QFETCH(QString, toplam);
    QFETCH(QString, pesinat);
    QFETCH(QString, oran);
    QFETCH(QString, yuvarlama);
    QFETCH(QString, beklenen);
    PlanGirdisi g;
    g.toplam = base::SayiOku(toplam);
    g.pesinat = base::SayiOku(pesinat);
    g.genelOran = base::SayiOku(oran);
    g.yuvarlama = base::SayiOku(yuvarlama);
    g.taksitSayisi = 3;
    g.baslangic = QDate(2025, 9, 15);
    const base::Result<PlanSonucu> plan = fees::TaksitPlanla(g);
    if (plan.ok()) {
        QCOMPARE(yaz(tutarlar(*plan)), beklenen);
        return;
    }
    QCOMPARE(QString(), beklenen);
    QCOMPARE(plan.error().number, base::TasmaHatasi);
    QCOMPARE(plan.error().label, u"FrmAidatTanimlama:TaksitPlanla"_s);
}

void tst_InstallmentPlan::totalsBeyondTheRange()
{
    const Para max = Para::fromRaw(std::numeric_limits<qint64>::max());
    const QString bicim = u"#,##0.00"_s;
    QVERIFY(!fees::TaksitTutarHesapla(para("1000"), Para(), {max, para("1")}, Para(), bicim).ok());
    QVERIFY(!fees::TaksitTutarHesapla(para("1000"), Para(), {}, max, bicim).ok());
    const Para fiyat = para("100000000000");
    QVERIFY(fees::BirimFiyatToplami(fiyat, 9000).ok());
    QVERIFY(!fees::BirimFiyatToplami(fiyat, 10000).ok());
    QCOMPARE(fees::OndalikToplam(fiyat, -10000).error().label,
             u"FrmAidatTanimlama:OndalikToplam"_s);
}

QTEST_GUILESS_MAIN(tst_InstallmentPlan)
#include "tst_installment_plan.moc"
