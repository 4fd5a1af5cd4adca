#pragma once

#include "base/result.h"

#include <QtGlobal>

#include <compare>
#include <optional>

class QString;

namespace base {

// How a lossy step rounds. Every division, percentage or rounding of money names one.
enum class RoundingMode {
    HalfAwayFromZero, // 2,675 -> 2,68 and -2,675 -> -2,68: what the money format does
    Floor,            // towards minus infinity: Int(-2,5) = -3
    TowardZero,       // Fix(-2,5) = -2
    Ceiling,
};

// An amount that left the range, as the failure reporter gets it: the number of the old
// run-time "Overflow", which the failure table shows as an entry too large for its place, and
// the text "Tutar çok büyük: hesap sınırı aşıldı." for the error table.
inline constexpr int TasmaHatasi = 6;
Error TutarTasmasi(const QString &label = QString());

// Money: a 64-bit count of ten-thousandths, like a database Currency.
// Sums, differences, comparisons and whole multiples are exact. A quotient or a percentage is
// computed from its exact value and rounded once, straight to the places asked for, so that
// 12,344999... never becomes 12,35 by passing through 12,3450.
// Rates (VAT, discount percentages) are carried in the same fixed point with four decimals.
//
// Nothing is ever cut to fit the range. The steps that can fail on their own (conversions,
// percentages, divisions) give std::nullopt. The exact operators (+, -, * n) cannot, so a result
// beyond the range is marked: overflowed() is true, the mark stays with every value computed
// from it, its digits mean nothing, and the store refuses to write it. Whoever shows or keeps a
// computed amount turns the mark into TutarTasmasi().
class Para
{
public:
    static constexpr qint64 Scale = 10000;

    constexpr Para() = default;

    static constexpr Para fromRaw(qint64 tenThousandths) { return Para(tenThousandths); }
    // Whole units of a literal or a count that fits an int: never beyond the range.
    static constexpr Para fromUnits(int units) { return Para(qint64(units) * Scale); }
    // A wider count may not fit: fromWholeUnits says so.
    static Para fromUnits(qint64 units) = delete;
    static std::optional<Para> fromWholeUnits(qint64 units);
    // A C-locale decimal text ("1250.5", "-0.005"); more than four decimals round half away
    // from zero. Nothing but an optional sign, digits and one point is accepted; nullopt also
    // for a value beyond the range.
    static std::optional<Para> fromDecimalString(const QString &text);
    // The decimal that a double stands for, exactly: the shortest text that reads back as the
    // same double, so 0.1 is 0,1 (not 0,1000000000000000055...), 18 is 18 and 7.5 is 7,5.
    // nullopt when that decimal has more than four places, is beyond the range, or the double
    // is not a number: nothing is rounded or cut to fit.
    static std::optional<Para> fromDouble(double value);
    // The same decimal rounded once to four places with `mode`, for a figure that may lose what
    // lies beyond (an amount written in words). nullopt beyond the range or for no number.
    static std::optional<Para> roundedFromDouble(double value, RoundingMode mode);

    constexpr qint64 raw() const { return m_raw; }
    constexpr bool isZero() const { return m_raw == 0; }
    constexpr bool isNegative() const { return m_raw < 0; }
    constexpr bool overflowed() const { return m_overflow; }
    // The amount, or nullopt when it overflowed on its way here.
    std::optional<Para> checked() const;
    // The double that fromDouble reads back as this very amount. Up to 2^39 units (some 549
    // billion) every amount has one; beyond, neighbouring amounts share a double, and an
    // overflowed amount has none: nullopt.
    std::optional<double> toDouble() const;
    // "1250.5", "-0.005", "12": the shortest exact C-locale decimal text
    QString toDecimalString() const;

    Para operator+(Para other) const;
    Para operator-(Para other) const;
    Para operator-() const;
    Para operator*(qint64 factor) const;
    Para &operator+=(Para other);
    Para &operator-=(Para other);

    friend constexpr bool operator==(Para a, Para b) { return a.m_raw == b.m_raw; }
    friend constexpr std::strong_ordering operator<=>(Para a, Para b)
    {
        return a.m_raw <=> b.m_raw;
    }

    // Rounded to `places` decimals (0 to 4); marked when rounding away leaves the range.
    Para rounded(int places, RoundingMode mode = RoundingMode::HalfAwayFromZero) const;
    // this / divisor, rounded once to `places` decimals. nullopt for a zero divisor.
    [[nodiscard]] std::optional<Para> divided(qint64 divisor, int places, RoundingMode mode) const;
    // this * rate / 100, rounded once to `places` decimals.
    [[nodiscard]] std::optional<Para> percent(Para rate, int places, RoundingMode mode) const;
    // a * b / c, computed exactly in 128 bits and rounded once to `places` decimals (0 to 4)
    // with `mode`. nullopt when c is zero, when an operand overflowed, or when the result is
    // beyond the range.
    [[nodiscard]] static std::optional<Para> mulDiv(Para a, Para b, Para c, int places,
                                                    RoundingMode mode);
    // (a * b - d * e) / c alike: the difference is exact before its one rounding, so that a
    // share taken off an amount is never rounded on its own first.
    [[nodiscard]] static std::optional<Para> mulDiv(Para a, Para b, Para d, Para e, Para c,
                                                    int places, RoundingMode mode);
    // Int(this / step) * step, exactly: the greatest multiple of step not above this.
    // A step of zero or below leaves the value as it is.
    Para floorToMultiple(Para step) const;
    // Int(this / step): the whole number of steps, going down for negative values. nullopt for
    // a zero step or a count beyond 64 bits.
    [[nodiscard]] std::optional<qint64> floorDiv(Para step) const;

private:
    constexpr explicit Para(qint64 raw, bool overflow = false)
        : m_raw(raw)
        , m_overflow(overflow)
    {}

    qint64 m_raw = 0;
    bool m_overflow = false;
};

} // namespace base
