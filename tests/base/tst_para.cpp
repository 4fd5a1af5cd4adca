#include "base/para.h"

#include <QString>
#include <QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

using base::Para;
using base::RoundingMode;

namespace {

// A literal amount in C-locale digits; every literal of these tests is well formed.
Para p(const QString &text)
{
    const std::optional<Para> value = Para::fromDecimalString(text);
    Q_ASSERT(value);
    return value.value_or(Para());
}

Para p(const char *text)
{
    return p(QString::fromLatin1(text));
}

// What a step gave: its decimal text, or "yok" when it gave no value.
QString yaz(const std::optional<Para> &value)
{
    return value ? value->toDecimalString() : u"yok"_s;
}

constexpr qint64 MaxRaw = std::numeric_limits<qint64>::max();
constexpr qint64 MinRaw = std::numeric_limits<qint64>::min();
constexpr RoundingMode Half = RoundingMode::HalfAwayFromZero;
constexpr RoundingMode Floor = RoundingMode::Floor;
constexpr RoundingMode Fix = RoundingMode::TowardZero;
constexpr RoundingMode Ceiling = RoundingMode::Ceiling;

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
        QTest::addRow("yuvarlanip-sinir-otesi") << "922337203685477.58075" << "";
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

    // A Double field holds the decimal its double was made from (the shortest text that reads
    // back as that double), or no amount at all; only a rounding that is asked for rounds.
    void fromDouble_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("exact");
        QTest::addColumn<QString>("halfRounded");

        // clang-format off
        QTest::addRow("0,1") << 0.1 << "0.1" << "0.1";
        QTest::addRow("kdv-18") << 18.0 << "18" << "18";
        QTest::addRow("7,25") << 7.25 << "7.25" << "7.25";
        QTest::addRow("33,3333") << 33.3333 << "33.3333" << "33.3333";
        QTest::addRow("2,675-oldugu-gibi") << 2.675 << "2.675" << "2.675";
        QTest::addRow("toplam-hatasi") << 0.1 + 0.2 << "yok" << "0.3";
        QTest::addRow("bes-ondalik-eksi") << -0.00005 << "yok" << "-0.0001";
        QTest::addRow("sinir-otesi") << 922337203685478.0 << "yok" << "yok";
        QTest::addRow("sayi-degil") << double(NAN) << "yok" << "yok";
        // clang-format on
    }

    void fromDouble()
    {
        QFETCH(double, value);
        QFETCH(QString, exact);
        QFETCH(QString, halfRounded);
        QCOMPARE(yaz(Para::fromDouble(value)), exact);
        QCOMPARE(yaz(Para::roundedFromDouble(value, Half)), halfRounded);
        if (const std::optional<Para> amount = Para::fromDouble(value)) {
            QCOMPARE(amount->toDouble().value_or(-1), value);
        }
    }

    void toDoubleOnlyWhereItReadsBack()
    {
        // Up to 2^39 units every double lies closer than half a ten-thousandth to the next;
        // above, 549.755.813.888,0003 shares its double with ,0002.
        QVERIFY(p("549755813887.9999").toDouble());
        QVERIFY(!p("549755813888.0003").toDouble());
        QVERIFY(!(Para::fromRaw(MaxRaw) + p("1")).toDouble());
        QCOMPARE(yaz(Para::roundedFromDouble(-0.00001, Floor)), "-0.0001");
        QCOMPARE(yaz(Para::roundedFromDouble(0.00009, Fix)), "0");
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
        QTest::addRow("bolum-tek-yuvarlama") << *p("37.0349").divided(3, 2, Half) << p("12.34");
        QTest::addRow("bolum-negatif-int") << *p("-1000").divided(3, 2, Floor) << p("-333.34");
        QTest::addRow("bolum-negatif-bolen") << *p("10").divided(-4, 0, Half) << p("-3");
        QTest::addRow("yuzde-kdv") << *p("1234.56").percent(p("18"), 2, Half) << p("222.22");
        QTest::addRow("yuzde-yarim") << *p("-0.05").percent(p("8.5"), 4, Half) << p("-0.0043");
        // 12,34495...: once it is 12,34.
        QTest::addRow("yuzde-tek-yuvarlama") << *p("37.0349").percent(p("33.3333"), 2, Half)
                                             << p("12.34");
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

    // (a x b - d x e) / c, exact in 128 bits and rounded once as the mode says.
    void mulDiv_data()
    {
        QTest::addColumn<QString>("terms"); // "a b d e c", the last three optional
        QTest::addColumn<int>("places");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("expected");

        // 1 / 8 = 0,125 and -1 / 8: the half at two places, under every mode.
        const struct
        {
            const char *name;
            RoundingMode mode;
            const char *plus;
            const char *minus;
        } halves[] = {{"half", Half, "0.13", "-0.13"},
                      {"floor", Floor, "0.12", "-0.13"},
                      {"fix", Fix, "0.12", "-0.12"},
                      {"ceiling", Ceiling, "0.13", "-0.12"}};
        for (const auto &h : halves) {
            QTest::addRow("yarim-arti-%s", h.name) << "1 1 0 0 8" << 2 << int(h.mode) << h.plus;
            QTest::addRow("yarim-eksi-%s", h.name) << "-1 1 0 0 8" << 2 << int(h.mode) << h.minus;
        }
        // clang-format off
        QTest::addRow("eksi-bolen") << "10 1 0 0 -4" << 0 << int(Half) << "-3";
        QTest::addRow("sifir-bolen") << "1000 2 0 0 0" << 2 << int(Half) << "yok";
        // 900 trillion x 3 leaves 64 bits on the way; the quotient is exact all the same.
        QTest::addRow("ara-sonuc-128-bit") << "900000000000000 3 0 0 3" << 4 << int(Half)
                                           << "900000000000000";
        QTest::addRow("tasma") << "900000000000000 3 0 0 2" << 4 << int(Half) << "yok";
        // 1000,01 less its 7,5 percent is 925,00925, rounded only once.
        QTest::addRow("pay-dusulmus") << "1000.01 92.5 0 0 100" << 2 << int(Half) << "925.01";
        // (1000 x 90 - 100 x 100) / 400: an installment after a down payment.
        QTest::addRow("iki-carpim") << "1000 90 100 100 400" << 2 << int(Half) << "200";
        // Both products near 2^126; their difference is exact.
        QTest::addRow("iki-buyuk-carpim")
            << "922337203685477.5807 922337203685477.5807 922337203685477.5806 "
               "922337203685477.5807 922337203685477.5807" << 4 << int(Half) << "0.0001";
        // clang-format on
    }

    void mulDiv()
    {
        QFETCH(QString, terms);
        QFETCH(int, places);
        QFETCH(int, mode);
        QFETCH(QString, expected);
        const QStringList t = terms.split(u' ');
        const auto m = RoundingMode(mode);
        QCOMPARE(yaz(Para::mulDiv(p(t[0]), p(t[1]), p(t[2]), p(t[3]), p(t[4]), places, m)),
                 expected);
        if (t[2] == "0"_L1) {
            QCOMPARE(yaz(Para::mulDiv(p(t[0]), p(t[1]), p(t[4]), places, m)), expected);
        }
    }

    void floorDiv()
    {
        QCOMPARE(p("1234.5").floorDiv(p("100")).value_or(0), qint64(12));
        QCOMPARE(p("-2.5").floorDiv(p("1")).value_or(0), qint64(-3));
        QVERIFY(!p("5").floorDiv(p("0")));
    }

    // A value beyond the range is marked, the mark stays, and no checked step gives a value
    // from it: nothing is cut to fit.
    void overflowIsNeverAValue()
    {
        const Para max = Para::fromRaw(MaxRaw);
        QVERIFY((-Para::fromRaw(MinRaw)).overflowed());
        QVERIFY(max.rounded(0).overflowed());
        Para total = max + Para::fromRaw(1);
        total -= p("1");
        QVERIFY(total.overflowed());
        QVERIFY(!total.checked());
        QCOMPARE(yaz(Para::mulDiv(total, p("1"), p("1"), 4, Half)), "yok");
        QCOMPARE(yaz(p("100").percent(total, 2, Half)), "yok");
        QCOMPARE(yaz(p("5").divided(0, 2, Half)), "yok");

        QCOMPARE(yaz(Para::fromWholeUnits(922337203685477)), "922337203685477");
        QCOMPARE(yaz(Para::fromWholeUnits(922337203685478)), "yok");
    }
};

QTEST_GUILESS_MAIN(tst_Para)
#include "tst_para.moc"
