#include "base/para.h"

#include <QString>
#include <QTest>

#include <cmath>
#include <limits>

using base::Para;
using base::RoundingMode;

namespace {

// A literal amount in C-locale digits; every literal of these tests is well formed.
Para p(const char *text)
{
    const std::optional<Para> value = Para::fromDecimalString(QString::fromLatin1(text));
    Q_ASSERT(value);
    return value.value_or(Para());
}

constexpr qint64 MaxRaw = std::numeric_limits<qint64>::max();
constexpr qint64 MinRaw = std::numeric_limits<qint64>::min();
constexpr RoundingMode Half = RoundingMode::HalfAwayFromZero;
constexpr RoundingMode Floor = RoundingMode::Floor;
constexpr RoundingMode Fix = RoundingMode::TowardZero;

} // namespace

class tst_Para : public QObject
{
    Q_OBJECT

private slots:
    void fromDecimalString_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected"); // empty: refused

        // clang-format off
        QTest::addRow("kesirli") << "1250.50" << "1250.5";
        QTest::addRow("negatif-kurus-alti") << "-0.005" << "-0.005";
        QTest::addRow("bastaki-nokta") << "+.5" << "0.5";
        QTest::addRow("besinci-basamak-yukari") << "0.00005" << "0.0001";
        QTest::addRow("besinci-basamak-asagi") << "1.00004999" << "1";
        QTest::addRow("alt-sinir") << "-922337203685477.5808" << "-922337203685477.5808";
        QTest::addRow("sinir-otesi") << "922337203685477.5808" << "";
        QTest::addRow("virgul") << "1,5" << "";
        QTest::addRow("bosluk") << " 1" << "";
        QTest::addRow("us") << "1e5" << "";
        // clang-format on
    }

    void fromDecimalString()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        const std::optional<Para> value = Para::fromDecimalString(text);
        QCOMPARE(value.has_value(), !expected.isEmpty());
        QCOMPARE(value.value_or(Para()).toDecimalString(), expected.isEmpty() ? "0" : expected);
    }

    void fromDouble()
    {
        // The double's shortest decimal is what the old field meant: 2,675, not 2,67499...
        QCOMPARE(Para::fromDouble(2.675).rounded(2), p("2.68"));
        QCOMPARE(Para::fromDouble(0.1 + 0.2), p("0.3"));
        QCOMPARE(Para::fromDouble(-0.00005), p("-0.0001"));
    }

    // Each row is an operation and the value it must give: rounded once, from the exact value.
    void exactRounding_data()
    {
        QTest::addColumn<Para>("actual");
        QTest::addColumn<Para>("expected");

        // clang-format off
        QTest::addRow("2,675") << p("2.675").rounded(2, Half) << p("2.68");
        QTest::addRow("-2,675") << p("-2.675").rounded(2, Half) << p("-2.68");
        QTest::addRow("0,005") << p("0.005").rounded(2, Half) << p("0.01");
        QTest::addRow("int-negatif") << p("-2.5").rounded(0, Floor) << p("-3");
        QTest::addRow("fix-negatif") << p("-2.5").rounded(0, Fix) << p("-2");
        QTest::addRow("tavan-negatif") << p("-2.009").rounded(2, RoundingMode::Ceiling) << p("-2");
        // 37,0349 / 3 = 12,344966...: by way of 12,3450 it would become 12,35.
        QTest::addRow("bolum-tek-yuvarlama") << p("37.0349").divided(3, 2, Half) << p("12.34");
        QTest::addRow("bolum-negatif-int") << p("-1000").divided(3, 2, Floor) << p("-333.34");
        QTest::addRow("bolum-negatif-bolen") << p("10").divided(-4, 0, Half) << p("-3");
        QTest::addRow("bolum-sifir") << p("5").divided(0, 2, Half) << p("0");
        QTest::addRow("yuzde-kdv") << p("1234.56").percent(p("18"), 2, Half) << p("222.22");
        QTest::addRow("yuzde-yarim") << p("-0.05").percent(p("8.5"), 4, Half) << p("-0.0043");
        // 12,34495...: once it is 12,34.
        QTest::addRow("yuzde-tek-yuvarlama") << p("37.0349").percent(p("33.3333"), 2, Half)
                                             << p("12.34");
        QTest::addRow("oran") << p("1000").mulDiv(p("2"), p("3"), 2, Half) << p("666.67");
        QTest::addRow("oran-sifir-payda") << p("1000").mulDiv(p("2"), p("0"), 2, Half) << p("0");
        QTest::addRow("kat-negatif") << p("-0.015").floorToMultiple(p("0.01")) << p("-0.02");
        QTest::addRow("kat-sifir-adim") << p("5").floorToMultiple(p("0")) << p("5");
        // clang-format on
    }

    void exactRounding()
    {
        QFETCH(Para, actual);
        QFETCH(Para, expected);
        QCOMPARE(actual.toDecimalString(), expected.toDecimalString());
        QVERIFY(!actual.overflowed());
    }

    void floorDiv()
    {
        QCOMPARE(p("1234.5").floorDiv(p("100")), qint64(12));
        QCOMPARE(p("-2.5").floorDiv(p("1")), qint64(-3));
        QCOMPARE(p("5").floorDiv(p("0")), qint64(0));
    }

    void overflowSaturates()
    {
        const Para max = Para::fromRaw(MaxRaw);
        const Para min = Para::fromRaw(MinRaw);
        const Para tick = Para::fromRaw(1);

        QCOMPARE((max + tick).raw(), MaxRaw);
        QVERIFY((max + tick).overflowed());
        QCOMPARE((min + -tick).raw(), MinRaw);
        QCOMPARE((-min).raw(), MaxRaw);
        QVERIFY((-min).overflowed());
        QCOMPARE((max * -2).raw(), MinRaw);
        QVERIFY(Para::fromUnits(-1000000000000000).overflowed());

        // The flag stays with the value through later sums.
        Para total = max + tick;
        total -= p("1");
        QVERIFY(total.overflowed());

        // A product that leaves 64 bits on the way is still exact when the result fits.
        const Para large = Para::fromUnits(900000000000000);
        QCOMPARE(large.mulDiv(p("3"), p("3"), 4, Half), large);
        QVERIFY(!large.mulDiv(p("3"), p("3"), 4, Half).overflowed());
        QVERIFY(large.mulDiv(p("3"), p("2"), 4, Half).overflowed());

        QCOMPARE(Para::fromDouble(-1e300).raw(), MinRaw);
        QVERIFY(Para::fromDouble(-1e300).overflowed());
        QVERIFY(Para::fromDouble(NAN).overflowed());
    }
};

QTEST_GUILESS_MAIN(tst_Para)
#include "tst_para.moc"
