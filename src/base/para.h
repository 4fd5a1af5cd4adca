#pragma once

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

// Money: a 64-bit count of ten-thousandths, like a database Currency.
// Sums, differences, comparisons and whole multiples are exact. A quotient or a percentage is
// computed from its exact value and rounded once, straight to the places asked for, so that
// 12,344999... never becomes 12,35 by passing through 12,3450.
// Arithmetic that would leave the 64-bit range saturates at the range's end and sets the
// overflow flag of the result; amounts of a school office never come near it.
// Rates (VAT, discount percentages) are carried in the same fixed point with four decimals.
class Para
{
public:
    static constexpr qint64 Scale = 10000;

    constexpr Para() = default;

    static constexpr Para fromRaw(qint64 tenThousandths) { return Para(tenThousandths); }
    static Para fromUnits(qint64 units);
    // A C-locale decimal text ("1250.5", "-0.005"); more than four decimals round half away
    // from zero. Nothing but an optional sign, digits and one point is accepted.
    static std::optional<Para> fromDecimalString(const QString &text);
    // For values that arrive as floating point (an old Double field, a Single rate): the
    // decimal value nearest to the double, rounded half away from zero to four places.
    static Para fromDouble(double value);

    constexpr qint64 raw() const { return m_raw; }
    constexpr bool isZero() const { return m_raw == 0; }
    constexpr bool isNegative() const { return m_raw < 0; }
    constexpr bool overflowed() const { return m_overflow; }
    double toDouble() const;
    // "1250.5", "-0.005", "12": the shortest exact C-locale decimal text
    QString toDecimalString() const;

    Para operator+(Para other) const;
    Para operator-(Para other) const;
    Para operator-() const;
    Para operator*(qint64 factor) const;
    Para &operator+=(Para other);
    Para &operator-=(Para other);

    friend constexpr bool operator==(Para a, Para b) { return a.m_raw == b.m_raw; }
    friend constexpr std::strong_ordering operator<=>(Para a, Para b) { return a.m_raw <=> b.m_raw; }

    // Rounded to `places` decimals (0 to 4).
    Para rounded(int places, RoundingMode mode = RoundingMode::HalfAwayFromZero) const;
    // this / divisor, rounded once to `places` decimals. A zero divisor gives zero.
    Para divided(qint64 divisor, int places, RoundingMode mode) const;
    // this * numerator / denominator, rounded once to `places` decimals. A zero denominator
    // gives zero.
    Para mulDiv(Para numerator, Para denominator, int places, RoundingMode mode) const;
    // this * rate / 100, rounded once to `places` decimals.
    Para percent(Para rate, int places, RoundingMode mode) const;
    // Int(this / step) * step, exactly: the greatest multiple of step not above this.
    // A step of zero or below leaves the value as it is.
    Para floorToMultiple(Para step) const;
    // Int(this / step): the whole number of steps, going down for negative values.
    qint64 floorDiv(Para step) const;

private:
    constexpr explicit Para(qint64 raw, bool overflow = false)
        : m_raw(raw)
        , m_overflow(overflow)
    {}

    qint64 m_raw = 0;
    bool m_overflow = false;
};

} // namespace base
