#include "base/turkish_text.h"

#include <QByteArray>
#include <QMetaType>

#include <array>
#include <charconv>
#include <limits>

namespace base {

namespace {

// ---- numbers as text ---------------------------------------------------------------------

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// True when the text holds a digit from `lowest` to 9.
bool hasDigitFrom(QStringView text, QChar lowest)
{
    for (const QChar c : text) {
        if (c >= lowest && c <= u'9') {
            return true;
        }
    }
    return false;
}

// A value that left the range: saturated at its end, with the overflow flag set.
Para saturated(bool negative)
{
    const qint64 end
        = negative ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    return Para::fromRaw(end) * 2;
}

// The shortest C-locale text in fixed notation that reads back as the same double.
template<typename Floating>
QString shortestText(Floating value)
{
    char buffer[512];
    const auto [end, error]
        = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    if (error != std::errc()) {
        return QString();
    }
    return QString::fromLatin1(buffer, end - buffer);
}

// A Turkish number as the whole of a text ("1.250,50", "-12", "0,5"), turned into the C-locale
// text that Para and from_chars read ("-1250.50"). "." may only group thousands: a first group
// of one to three digits, then groups of exactly three. nullopt when the text is not a number.
std::optional<QString> strictNumberText(const QString &metin)
{
    const QString text = metin.trimmed();
    qsizetype i = 0;
    QString normal;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        if (text[i] == u'-') {
            normal += u'-';
        }
        ++i;
    }
    const qsizetype comma = text.indexOf(u',', i);
    const QStringView integer = QStringView(text).mid(i, comma < 0 ? -1 : comma - i);
    const QStringView fraction = comma < 0 ? QStringView() : QStringView(text).mid(comma + 1);

    const QList<QStringView> groups = integer.split(u'.');
    for (qsizetype g = 0; g < groups.size(); ++g) {
        const QStringView group = groups[g];
        const bool first = g == 0;
        const bool wellGrouped = first ? !group.isEmpty() && group.size() <= 3 : group.size() == 3;
        if (groups.size() > 1 && !wellGrouped) {
            return std::nullopt;
        }
        for (const QChar c : group) {
            if (!isDigit(c)) {
                return std::nullopt;
            }
        }
        normal += group;
    }
    for (const QChar c : fraction) {
        if (!isDigit(c)) {
            return std::nullopt;
        }
    }
    if (integer.isEmpty() && fraction.isEmpty()) {
        return std::nullopt;
    }
    if (integer.isEmpty()) {
        normal += u'0';
    }
    if (!fraction.isEmpty()) {
        normal += u'.' + fraction.toString();
    }
    return normal;
}

// The number that a strict Turkish number text stands for, in double precision.
std::optional<double> strictNumber(const QString &metin)
{
    const std::optional<QString> normal = strictNumberText(metin);
    if (!normal) {
        return std::nullopt;
    }
    const QByteArray latin = normal->toLatin1();
    double value = 0;
    const auto [end, error]
        = std::from_chars(latin.constData(), latin.constData() + latin.size(), value);
    if (error != std::errc() || end != latin.constData() + latin.size()) {
        return std::nullopt;
    }
    return value;
}

// ---- pictures ----------------------------------------------------------------------------

struct Picture
{
    bool grouping = false;    // "," before the decimal point: thousands grouped with "."
    int minIntegerDigits = 0; // the "0"s before the point
    int minDecimals = 0;      // the "0"s after it
    int decimals = 0;         // the "0"s and "#"s after it
};

Picture readPicture(const QString &bicim)
{
    Picture picture;
    const qsizetype point = bicim.indexOf(u'.');
    const QStringView integer = QStringView(bicim).left(point < 0 ? bicim.size() : point);
    const QStringView fraction = point < 0 ? QStringView() : QStringView(bicim).mid(point + 1);
    picture.grouping = integer.contains(u',');
    picture.minIntegerDigits = int(integer.count(u'0'));
    picture.minDecimals = int(fraction.count(u'0'));
    picture.decimals = picture.minDecimals + int(fraction.count(u'#'));
    return picture;
}

// Lays an already rounded magnitude into the picture. `decimals` holds exactly
// picture.decimals digits. No sign is shown when no digit other than 0 is.
QString layOut(bool negative, quint64 integer, QString decimals, const Picture &picture)
{
    QString digits = integer == 0 ? QString() : QString::number(integer);
    while (digits.size() < picture.minIntegerDigits) {
        digits.prepend(u'0');
    }
    if (picture.grouping) {
        for (qsizetype at = digits.size() - 3; at > 0; at -= 3) {
            digits.insert(at, u'.');
        }
    }
    while (decimals.size() > picture.minDecimals && decimals.endsWith(u'0')) {
        decimals.chop(1);
    }
    QString text = decimals.isEmpty() ? digits : digits + u',' + decimals;
    if (negative && (integer != 0 || hasDigitFrom(decimals, u'1'))) {
        text.prepend(u'-');
    }
    return text;
}

// ---- words -------------------------------------------------------------------------------

const std::array<QString, 10> Hundreds = {
    QString(),
    QStringLiteral("YÜZ"),
    QStringLiteral("İKİYÜZ"),
    QStringLiteral("ÜÇYÜZ"),
    QStringLiteral("DÖRTYÜZ"),
    QStringLiteral("BEŞYÜZ"),
    QStringLiteral("ALTIYÜZ"),
    QStringLiteral("YEDİYÜZ"),
    QStringLiteral("SEKİZYÜZ"),
    QStringLiteral("DOKUZYÜZ"),
};

const std::array<QString, 10> Tens = {
    QString(),
    QStringLiteral("ON"),
    QStringLiteral("YİRMİ"),
    QStringLiteral("OTUZ"),
    QStringLiteral("KIRK"),
    QStringLiteral("ELLİ"),
    QStringLiteral("ALTMIŞ"),
    QStringLiteral("YETMİŞ"),
    QStringLiteral("SEKSEN"),
    QStringLiteral("DOKSAN"),
};

const std::array<QString, 10> Ones = {
    QString(),
    QStringLiteral("BİR"),
    QStringLiteral("İKİ"),
    QStringLiteral("ÜÇ"),
    QStringLiteral("DÖRT"),
    QStringLiteral("BEŞ"),
    QStringLiteral("ALTI"),
    QStringLiteral("YEDİ"),
    QStringLiteral("SEKİZ"),
    QStringLiteral("DOKUZ"),
};

// The scale word of a group counted from the right, from 1; groups past the sixth have none.
QString scaleWord(int group)
{
    static const std::array<QString, 7> words = {
        QString(),
        QString(),
        QStringLiteral("BİN"),
        QStringLiteral("MİLYON"),
        QStringLiteral("MİLYAR"),
        QStringLiteral("TRİLYON"),
        QStringLiteral("KATRİLYON"),
    };
    return group < int(words.size()) ? words[group] : QString();
}

// A character of the digit text as a digit: the sign, "," and anything else count as 0.
int digitValue(QChar c)
{
    return isDigit(c) ? c.unicode() - u'0' : 0;
}

// The digits that SayiyiYaziya accepts: an optional sign, then digits with at most one ",".
bool isWholeDigitText(const QString &text)
{
    qsizetype i = 0;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        ++i;
    }
    bool anyDigit = false;
    bool comma = false;
    for (; i < text.size(); ++i) {
        if (text[i] == u',' && !comma) {
            comma = true;
        } else if (isDigit(text[i])) {
            anyDigit = true;
        } else {
            return false;
        }
    }
    return anyDigit;
}

// ---- Turkish letters -----------------------------------------------------------------------

struct LetterPair
{
    char16_t upper;
    char16_t lower;
};

// The letters whose case the ordinary mapping gets wrong for Turkish, or does not know.
constexpr std::array<LetterPair, 7> TurkishPairs = {{
    {u'Ü', u'ü'},
    {u'Ş', u'ş'},
    {u'Ğ', u'ğ'},
    {u'Ö', u'ö'},
    {u'Ç', u'ç'},
    {u'İ', u'i'},
    {u'I', u'ı'},
}};

QString dateText(const QDate &tarih)
{
    return QStringLiteral("%1.%2.%3")
        .arg(tarih.day(), 2, 10, QLatin1Char('0'))
        .arg(tarih.month(), 2, 10, QLatin1Char('0'))
        .arg(tarih.year(), 4, 10, QLatin1Char('0'));
}

QString timeText(const QTime &saat)
{
    return QStringLiteral("%1:%2:%3")
        .arg(saat.hour(), 2, 10, QLatin1Char('0'))
        .arg(saat.minute(), 2, 10, QLatin1Char('0'))
        .arg(saat.second(), 2, 10, QLatin1Char('0'));
}

// The value of two or four characters that must all be digits; -1 when one is not.
int fieldValue(QStringView field)
{
    int value = 0;
    for (const QChar c : field) {
        if (!isDigit(c)) {
            return -1;
        }
        value = value * 10 + digitValue(c);
    }
    return value;
}

bool isDateSeparator(QChar c)
{
    return c == u'/' || c == u'-' || c == u'.';
}

} // namespace

// ---- money and numbers -------------------------------------------------------------------

QString Bicimle(Para deger, const QString &bicim)
{
    if (bicim.isEmpty()) {
        // No picture: the plain number, as the old general format wrote it.
        return deger.toDecimalString().replace(u'.', u',');
    }
    const Picture picture = readPicture(bicim);
    const int places = std::min(picture.decimals, 4);
    const qint64 raw = deger.raw();
    const quint64 magnitude = raw < 0 ? 0 - static_cast<quint64>(raw) : static_cast<quint64>(raw);

    // Half away from zero on the magnitude, in steps of the picture's last decimal.
    quint64 step = 1;
    for (int i = places; i < 4; ++i) {
        step *= 10;
    }
    quint64 steps = magnitude / step;
    if (2 * (magnitude % step) >= step) {
        ++steps;
    }
    quint64 perUnit = 1;
    for (int i = 0; i < places; ++i) {
        perUnit *= 10;
    }
    QString decimals
        = places == 0 ? QString()
                      : QStringLiteral("%1").arg(steps % perUnit, places, 10, QLatin1Char('0'));
    decimals += QString(picture.decimals - places, u'0');
    return layOut(raw < 0, steps / perUnit, decimals, picture);
}

QString Bicimle(qint64 deger, const QString &bicim)
{
    if (bicim.isEmpty()) {
        return QString::number(deger);
    }
    const Picture picture = readPicture(bicim);
    const quint64 magnitude
        = deger < 0 ? 0 - static_cast<quint64>(deger) : static_cast<quint64>(deger);
    return layOut(deger < 0, magnitude, QString(picture.decimals, u'0'), picture);
}

int BicimOndalik(const QString &bicim)
{
    return readPicture(bicim).decimals;
}

Para BicimeYuvarla(Para deger, const QString &bicim)
{
    if (bicim.isEmpty()) {
        return deger;
    }
    return deger.rounded(std::min(BicimOndalik(bicim), 4), RoundingMode::HalfAwayFromZero);
}

Para SayiOku(const QString &metin)
{
    QString text = metin;
    text.remove(u'.');
    text = text.trimmed();
    text.replace(u',', u'.');

    // The leading number, read as the old Val read it: blanks inside are skipped, and the
    // first character that cannot continue the number ends it.
    QString number;
    bool point = false;
    for (const QChar c : std::as_const(text)) {
        if (c == u' ' || c == u'\t' || c == u'\n' || c == u'\r') {
            continue;
        }
        if ((c == u'-' || c == u'+') && number.isEmpty()) {
            number += c;
        } else if (c == u'.' && !point) {
            point = true;
            number += c;
        } else if (isDigit(c)) {
            number += c;
        } else {
            break;
        }
    }
    if (const std::optional<Para> value = Para::fromDecimalString(number)) {
        return *value;
    }
    // Either no digit was read, or the digits do not fit.
    return hasDigitFrom(number, u'0') ? saturated(number.startsWith(u'-')) : Para();
}

std::optional<Para> ParaCoz(const QString &metin)
{
    const std::optional<QString> normal = strictNumberText(metin);
    if (!normal) {
        return std::nullopt;
    }
    return Para::fromDecimalString(*normal);
}

std::optional<qint64> TamSayiCoz(const QString &metin)
{
    const QString text = metin.trimmed();
    qsizetype i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        negative = text[i] == u'-';
        ++i;
    }
    if (i == text.size()) {
        return std::nullopt;
    }
    // Gathered on the negative side, which reaches one further than the positive.
    qint64 value = 0;
    for (; i < text.size(); ++i) {
        if (!isDigit(text[i])) {
            return std::nullopt;
        }
        if (__builtin_mul_overflow(value, 10, &value)
            || __builtin_sub_overflow(value, digitValue(text[i]), &value)) {
            return std::nullopt;
        }
    }
    if (negative) {
        return value;
    }
    if (value == std::numeric_limits<qint64>::min()) {
        return std::nullopt;
    }
    return -value;
}

// ---- amounts in words --------------------------------------------------------------------

QString YaziyaCevir(Para tutar, bool cerceveli, bool kurusDahil)
{
    QString result;
    if (kurusDahil) {
        // "1250,50": the kuruş are the last two characters, the lira all before the comma.
        // A minus sign stays with the lira digits and is read as a 0.
        const QString text = Bicimle(tutar, QStringLiteral("#0.00"));
        const QString kurus = text.right(2);
        const QString lira = text.left(text.size() - 3);
        if (SayiOku(lira).raw() != 0) {
            result = SayiyiYaziya(lira) + QStringLiteral(" TL");
        }
        if (SayiOku(kurus).raw() != 0) {
            if (!result.isEmpty()) {
                result += u' ';
            }
            result += SayiyiYaziya(kurus) + QStringLiteral(" KRŞ");
        }
    } else if (!tutar.isZero()) {
        result = SayiyiYaziya(tutar.toDecimalString().replace(u'.', u','));
    }
    if (cerceveli) {
        result = u'#' + result + u'#';
    }
    return result;
}

QString YaziyaCevir(const QVariant &tutar, bool cerceveli, bool kurusDahil)
{
    if (tutar.isNull() || NullStr(tutar).isEmpty()) {
        return QString();
    }
    std::optional<Para> amount;
    switch (tutar.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
        amount = Para::roundedFromDouble(tutar.toDouble(), RoundingMode::HalfAwayFromZero);
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        amount = Para::fromWholeUnits(tutar.toLongLong());
        break;
    default:
        amount = SayiOku(NullStr(tutar)).checked();
        break;
    }
    // An amount beyond the range has no words.
    return amount ? YaziyaCevir(*amount, cerceveli, kurusDahil) : QString();
}

QString SayiyiYaziya(const QString &rakamlar)
{
    const QString digits = rakamlar.trimmed();
    if (!isWholeDigitText(digits)) {
        return QString();
    }
    // Groups of three from the right, written from the left; the first may be shorter.
    const int length = int(digits.size());
    const int groups = length / 3 + (length % 3 != 0 ? 1 : 0);
    const int firstLength = length % 3 == 0 ? 3 : length % 3;

    QString words;
    int at = 0;
    for (int group = groups; group >= 1; --group) {
        const int size = group == groups ? firstLength : 3;
        const QStringView part = QStringView(digits).mid(at, size);
        at += size;
        int value = 0;
        for (const QChar c : part) {
            value = value * 10 + digitValue(c);
        }
        for (int i = 0; i < size; ++i) {
            const int digit = digitValue(part[i]);
            const int position = size - i; // 3 hundreds, 2 tens, 1 ones
            if (position == 3) {
                words += Hundreds[digit];
            } else if (position == 2) {
                words += Tens[digit];
            } else if (!(group == 2 && digit == 1 && value <= 1)) {
                // "BİN", never "BİRBİN"; but "YÜZBİRBİN" and "YİRMİBİRBİN".
                words += Ones[digit];
            }
        }
        if (value > 0) {
            words += scaleWord(group);
        }
    }
    return words;
}

// ---- words ---------------------------------------------------------------------------------

QString AyAdi(int ay)
{
    static const std::array<QString, 12> months = {
        QStringLiteral("OCAK"),   QStringLiteral("ŞUBAT"),   QStringLiteral("MART"),
        QStringLiteral("NİSAN"),  QStringLiteral("MAYIS"),   QStringLiteral("HAZİRAN"),
        QStringLiteral("TEMMUZ"), QStringLiteral("AĞUSTOS"), QStringLiteral("EYLÜL"),
        QStringLiteral("EKİM"),   QStringLiteral("KASIM"),   QStringLiteral("ARALIK"),
    };
    if (ay < 1 || ay > 12) {
        return QStringLiteral("-");
    }
    return months[ay - 1];
}

QString BuyukHarf(const QString &metin)
{
    QString text = metin;
    for (const LetterPair &pair : TurkishPairs) {
        text.replace(QChar(pair.lower), QChar(pair.upper));
    }
    return text.toUpper();
}

QString KucukHarf(const QString &metin)
{
    QString text = metin;
    for (const LetterPair &pair : TurkishPairs) {
        text.replace(QChar(pair.upper), QChar(pair.lower));
    }
    return text.toLower();
}

QString EkGetir(const QString &isim)
{
    static const QString vowels = QStringLiteral("aeiıüuöoAEİIÜUÖO");
    const QString name = isim.trimmed();
    qsizetype at = name.size() - 1;
    while (at >= 0 && !vowels.contains(name[at])) {
        --at;
    }
    if (at < 0) {
        return QString();
    }
    const QChar vowel = name[at];
    // The suffix follows the case of the whole name: "ALİ'NİN", but "Öz'ün".
    bool upper = false;
    for (const QChar c : name) {
        if (c.isLetter()) {
            if (c.isLower()) {
                upper = false;
                break;
            }
            upper = true;
        }
    }
    QString suffix;
    if (QStringLiteral("aıAI").contains(vowel)) {
        suffix = upper ? QStringLiteral("IN") : QStringLiteral("ın");
    } else if (QStringLiteral("eiEİ").contains(vowel)) {
        suffix = upper ? QStringLiteral("İN") : QStringLiteral("in");
    } else if (QStringLiteral("üöÜÖ").contains(vowel)) {
        suffix = upper ? QStringLiteral("ÜN") : QStringLiteral("ün");
    } else {
        suffix = upper ? QStringLiteral("UN") : QStringLiteral("un");
    }
    // After a vowel the suffix takes a buffer "n": "Ali'nin", "Kaya'nın".
    if (at == name.size() - 1) {
        suffix.prepend(upper ? u'N' : u'n');
    }
    return u'\'' + suffix;
}

// ---- values that may be Null ---------------------------------------------------------------

QString NullStr(const QVariant &alan, bool trimsiz)
{
    if (alan.isNull()) {
        return QString();
    }
    QString text;
    switch (alan.typeId()) {
    case QMetaType::Double:
        text = shortestText(alan.toDouble()).replace(u'.', u',');
        break;
    case QMetaType::Float:
        text = shortestText(alan.toFloat()).replace(u'.', u',');
        break;
    case QMetaType::QDate:
        text = TarihYaz(alan.toDate());
        break;
    case QMetaType::QDateTime: {
        const QDateTime moment = alan.toDateTime();
        text = moment.time() == QTime(0, 0) ? TarihYaz(moment) : TarihSaatYaz(moment);
        break;
    }
    default:
        text = alan.toString();
        break;
    }
    return trimsiz ? text : text.trimmed();
}

QString NullNum(const QVariant &alan)
{
    const QString text = NullStr(alan);
    return strictNumberText(text) ? text : QStringLiteral("0");
}

double SayiDegeri(const QVariant &alan)
{
    if (alan.isNull()) {
        return 0;
    }
    switch (alan.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return alan.toDouble();
    default:
        return strictNumber(NullStr(alan)).value_or(0);
    }
}

QString SifirBos(const QVariant &alan)
{
    const double value = SayiDegeri(alan);
    if (value == 0) {
        return QString();
    }
    return shortestText(value);
}

// ---- dates ---------------------------------------------------------------------------------

bool SifirTarihMi(const QDateTime &tarih)
{
    return tarih.date() == SifirTarih.date() && tarih.time() == SifirTarih.time();
}

bool SifirTarihMi(const QDate &tarih)
{
    return tarih == SifirTarih.date();
}

bool TarihKontrol(const QString &metin)
{
    if (metin.size() != 10 || !isDateSeparator(metin[2]) || !isDateSeparator(metin[5])) {
        return false;
    }
    const int day = fieldValue(QStringView(metin).mid(0, 2));
    const int month = fieldValue(QStringView(metin).mid(3, 2));
    const int year = fieldValue(QStringView(metin).mid(6, 4));
    return day >= 1 && day <= 31 && month >= 1 && month <= 12 && year >= 1900 && year <= 2100;
}

std::optional<QDate> TarihOku(const QString &metin)
{
    if (!TarihKontrol(metin)) {
        return std::nullopt;
    }
    const QDate date(fieldValue(QStringView(metin).mid(6, 4)),
                     fieldValue(QStringView(metin).mid(3, 2)),
                     fieldValue(QStringView(metin).mid(0, 2)));
    if (!date.isValid()) {
        return std::nullopt;
    }
    return date;
}

QString TarihYaz(const QDate &tarih)
{
    if (!tarih.isValid() || SifirTarihMi(tarih)) {
        return QString();
    }
    return dateText(tarih);
}

QString TarihYaz(const QDateTime &tarih)
{
    return TarihYaz(tarih.date());
}

QString TarihSaatYaz(const QDateTime &tarih)
{
    if (!tarih.isValid() || SifirTarihMi(tarih.date())) {
        return QString();
    }
    return dateText(tarih.date()) + u' ' + timeText(tarih.time());
}

QDate AyEkle(const QDate &tarih, int ay)
{
    // QDate clamps a missing day to the month's last, as DateAdd does.
    return tarih.addMonths(ay);
}

} // namespace base
