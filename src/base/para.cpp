#include "base/para.h"

#include <QString>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace base {

namespace {

// Products of two amounts reach 2^126 at most: an __int128 holds every intermediate exactly.
using Wide = __int128;

constexpr qint64 MaxRaw = std::numeric_limits<qint64>::max();
constexpr qint64 MinRaw = std::numeric_limits<qint64>::min();

// Integer parts above this cannot fit any more; the reader stops multiplying there.
constexpr Wide IntegerCap = Wide(1000000000000000000LL);

// The number of ten-thousandths in one step of `places` decimals: 1 for 4 places, 10000 for 0.
qint64 stepOf(int places)
{
    qint64 step = 1;
    for (int i = std::clamp(places, 0, 4); i < 4; ++i) {
        step *= 10;
    }
    return step;
}

// num / den, rounded once from its exact value. den is never zero.
Wide roundedQuotient(Wide num, Wide den, RoundingMode mode)
{
    if (den < 0) {
        num = -num;
        den = -den;
    }
    const Wide quotient = num / den;  // truncated towards zero
    const Wide remainder = num % den; // carries the sign of num
    if (remainder == 0) {
        return quotient;
    }
    switch (mode) {
    case RoundingMode::TowardZero:
        return quotient;
    case RoundingMode::Floor:
        return num < 0 ? quotient - 1 : quotient;
    case RoundingMode::Ceiling:
        return num > 0 ? quotient + 1 : quotient;
    case RoundingMode::HalfAwayFromZero: {
        const Wide twice = 2 * (remainder < 0 ? -remainder : remainder);
        if (twice < den) {
            return quotient;
        }
        return num < 0 ? quotient - 1 : quotient + 1;
    }
    }
    return quotient;
}

// A wide value back in 64 bits; nullopt when it does not fit.
std::optional<qint64> fit(Wide value)
{
    if (value > MaxRaw || value < MinRaw) {
        return std::nullopt;
    }
    return static_cast<qint64>(value);
}

// The same for the exact operators, whose results carry the overflow mark instead: the digits
// of a marked value mean nothing, and are left at the range's end.
struct Narrowed
{
    qint64 raw = 0;
    bool overflow = false;
};

Narrowed narrow(Wide value)
{
    if (const std::optional<qint64> raw = fit(value)) {
        return {*raw, false};
    }
    return {value < 0 ? MinRaw : MaxRaw, true};
}

struct ParsedDecimal
{
    bool valid = false;
    bool negative = false;
    bool tooBig = false;     // the integer part alone leaves 64 bits
    Wide magnitude = 0;      // in ten-thousandths, digits past the fourth decimal dropped
    int firstDropped = 0;    // the fifth decimal
    bool anyDropped = false; // a digit other than 0 past the fourth decimal
};

// "-1250.50", "+0.00005", ".5": an optional sign, digits and at most one point, nothing else.
ParsedDecimal parseDecimal(QStringView text)
{
    ParsedDecimal parsed;
    qsizetype i = 0;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        parsed.negative = text[i] == u'-';
        ++i;
    }
    Wide integer = 0;
    qint64 fraction = 0;
    int decimals = -1; // -1 until the point is met
    bool anyDigit = false;
    for (; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c == u'.') {
            if (decimals >= 0) {
                return {};
            }
            decimals = 0;
            continue;
        }
        if (c < u'0' || c > u'9') {
            return {};
        }
        anyDigit = true;
        const int digit = c - u'0';
        if (decimals < 0) {
            if (integer > IntegerCap) {
                parsed.tooBig = true;
            } else {
                integer = integer * 10 + digit;
            }
        } else if (decimals < 4) {
            fraction = fraction * 10 + digit;
            ++decimals;
        } else {
            if (decimals == 4) {
                parsed.firstDropped = digit;
            }
            parsed.anyDropped = parsed.anyDropped || digit != 0;
            ++decimals;
        }
    }
    if (!anyDigit) {
        return {};
    }
    parsed.valid = true;
    parsed.magnitude = integer * Para::Scale + Wide(fraction) * stepOf(std::clamp(decimals, 0, 4));
    return parsed;
}

// The parsed value rounded once to four places with `mode`; nullopt beyond the range.
std::optional<qint64> roundParsed(const ParsedDecimal &parsed, RoundingMode mode)
{
    bool away = false; // one more ten-thousandth in magnitude
    switch (mode) {
    case RoundingMode::HalfAwayFromZero:
        // The exact rest is at least one half precisely when the fifth decimal is 5 or more.
        away = parsed.firstDropped >= 5;
        break;
    case RoundingMode::TowardZero:
        break;
    case RoundingMode::Floor:
        away = parsed.negative && parsed.anyDropped;
        break;
    case RoundingMode::Ceiling:
        away = !parsed.negative && parsed.anyDropped;
        break;
    }
    if (parsed.tooBig) {
        return std::nullopt;
    }
    const Wide magnitude = parsed.magnitude + (away ? 1 : 0);
    return fit(parsed.negative ? -magnitude : magnitude);
}

// The shortest C-locale decimal text that reads back as the same double: 2.675 stays 2.675 and
// is not taken as 2.67499999999999982236431605997495353221893310546875. nullopt for a double
// that is no number or lies far beyond the range (no need to write out three hundred digits to
// learn that).
std::optional<ParsedDecimal> parseDouble(double value)
{
    if (!std::isfinite(value) || std::fabs(value) >= 1e16) {
        return std::nullopt;
    }
    char buffer[512];
    const auto [end, error]
        = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    if (error != std::errc()) {
        return std::nullopt;
    }
    const ParsedDecimal parsed = parseDecimal(QString::fromLatin1(buffer, end - buffer));
    if (!parsed.valid) {
        return std::nullopt;
    }
    return parsed;
}

} // namespace

Error TutarTasmasi(const QString &label)
{
    return Error{TasmaHatasi, QStringLiteral("Tutar çok büyük: hesap sınırı aşıldı."), label};
}

std::optional<Para> Para::fromWholeUnits(qint64 units)
{
    qint64 raw = 0;
    if (__builtin_mul_overflow(units, Scale, &raw)) {
        return std::nullopt;
    }
    return Para(raw);
}

std::optional<Para> Para::fromDecimalString(const QString &text)
{
    const ParsedDecimal parsed = parseDecimal(text);
    if (!parsed.valid) {
        return std::nullopt;
    }
    const std::optional<qint64> raw = roundParsed(parsed, RoundingMode::HalfAwayFromZero);
    return raw ? std::optional<Para>(Para(*raw)) : std::nullopt;
}

std::optional<Para> Para::fromDouble(double value)
{
    const std::optional<ParsedDecimal> parsed = parseDouble(value);
    if (!parsed || parsed->anyDropped) {
        return std::nullopt;
    }
    const std::optional<qint64> raw = roundParsed(*parsed, RoundingMode::TowardZero);
    return raw ? std::optional<Para>(Para(*raw)) : std::nullopt;
}

std::optional<Para> Para::roundedFromDouble(double value, RoundingMode mode)
{
    const std::optional<ParsedDecimal> parsed = parseDouble(value);
    if (!parsed) {
        return std::nullopt;
    }
    const std::optional<qint64> raw = roundParsed(*parsed, mode);
    return raw ? std::optional<Para>(Para(*raw)) : std::nullopt;
}

std::optional<Para> Para::checked() const
{
    if (m_overflow) {
        return std::nullopt;
    }
    return *this;
}

std::optional<double> Para::toDouble() const
{
    // Both operands are exact doubles below 2^53, and one division rounds correctly: the
    // nearest double to the amount. Whether it is the amount's alone, reading it back says.
    constexpr qint64 exactLimit = qint64(1) << 53;
    if (m_overflow || m_raw <= -exactLimit || m_raw >= exactLimit) {
        return std::nullopt;
    }
    const double value = static_cast<double>(m_raw) / Scale;
    if (fromDouble(value) != std::optional<Para>(*this)) {
        return std::nullopt;
    }
    return value;
}

QString Para::toDecimalString() const
{
    const quint64 magnitude
        = m_raw < 0 ? 0 - static_cast<quint64>(m_raw) : static_cast<quint64>(m_raw);
    QString text = QString::number(magnitude / Scale);
    const quint64 fraction = magnitude % Scale;
    if (fraction != 0) {
        QString decimals = QStringLiteral("%1").arg(fraction, 4, 10, QLatin1Char('0'));
        while (decimals.endsWith(u'0')) {
            decimals.chop(1);
        }
        text += u'.' + decimals;
    }
    if (m_raw < 0) {
        text.prepend(u'-');
    }
    return text;
}

Para Para::operator+(Para other) const
{
    qint64 sum = 0;
    if (__builtin_add_overflow(m_raw, other.m_raw, &sum)) {
        return Para(other.m_raw < 0 ? MinRaw : MaxRaw, true);
    }
    return Para(sum, m_overflow || other.m_overflow);
}

Para Para::operator-(Para other) const
{
    qint64 difference = 0;
    if (__builtin_sub_overflow(m_raw, other.m_raw, &difference)) {
        return Para(other.m_raw < 0 ? MaxRaw : MinRaw, true);
    }
    return Para(difference, m_overflow || other.m_overflow);
}

Para Para::operator-() const
{
    if (m_raw == MinRaw) {
        return Para(MaxRaw, true);
    }
    return Para(-m_raw, m_overflow);
}

Para Para::operator*(qint64 factor) const
{
    qint64 product = 0;
    if (__builtin_mul_overflow(m_raw, factor, &product)) {
        return Para((m_raw < 0) != (factor < 0) ? MinRaw : MaxRaw, true);
    }
    return Para(product, m_overflow);
}

Para &Para::operator+=(Para other)
{
    *this = *this + other;
    return *this;
}

Para &Para::operator-=(Para other)
{
    *this = *this - other;
    return *this;
}

Para Para::rounded(int places, RoundingMode mode) const
{
    const qint64 step = stepOf(places);
    const Narrowed result = narrow(roundedQuotient(m_raw, step, mode) * step);
    return Para(result.raw, result.overflow || m_overflow);
}

std::optional<Para> Para::divided(qint64 divisor, int places, RoundingMode mode) const
{
    if (divisor == 0 || m_overflow) {
        return std::nullopt;
    }
    const qint64 step = stepOf(places);
    const std::optional<qint64> raw
        = fit(roundedQuotient(m_raw, Wide(divisor) * step, mode) * step);
    return raw ? std::optional<Para>(Para(*raw)) : std::nullopt;
}

std::optional<Para> Para::percent(Para rate, int places, RoundingMode mode) const
{
    // a * r / 100 in ten-thousandths, the rate carrying four decimals of its own.
    return mulDiv(*this, rate, fromUnits(100), places, mode);
}

std::optional<Para> Para::mulDiv(Para a, Para b, Para c, int places, RoundingMode mode)
{
    return mulDiv(a, b, Para(), Para(), c, places, mode);
}

std::optional<Para> Para::mulDiv(Para a, Para b, Para d, Para e, Para c, int places,
                                 RoundingMode mode)
{
    if (c.m_raw == 0 || a.m_overflow || b.m_overflow || c.m_overflow || d.m_overflow
        || e.m_overflow) {
        return std::nullopt;
    }
    // In ten-thousandths the scales cancel: (a b - d e) / c. Each product is below 2^126 in
    // magnitude, so their difference fits the 128 bits; the divisor, times a step of at most
    // 10^4, does too.
    Wide numerator = 0;
    if (__builtin_sub_overflow(Wide(a.m_raw) * b.m_raw, Wide(d.m_raw) * e.m_raw, &numerator)) {
        return std::nullopt;
    }
    const qint64 step = stepOf(places);
    const std::optional<qint64> raw
        = fit(roundedQuotient(numerator, Wide(c.m_raw) * step, mode) * step);
    return raw ? std::optional<Para>(Para(*raw)) : std::nullopt;
}

Para Para::floorToMultiple(Para step) const
{
    if (step.m_raw <= 0) {
        return *this;
    }
    const Wide steps = roundedQuotient(m_raw, step.m_raw, RoundingMode::Floor);
    const Narrowed result = narrow(steps * step.m_raw);
    return Para(result.raw, result.overflow || m_overflow || step.m_overflow);
}

std::optional<qint64> Para::floorDiv(Para step) const
{
    if (step.m_raw == 0 || m_overflow || step.m_overflow) {
        return std::nullopt;
    }
    return fit(roundedQuotient(m_raw, step.m_raw, RoundingMode::Floor));
}

} // namespace base
