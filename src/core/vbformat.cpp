#include "vbformat.h"

#include "apperror.h"

#include <charconv>
#include <cmath>

namespace pg::vb {

namespace {

// A non-negative decimal number as digit strings, the form in which all rounding is done so
// that cents never drift through binary fractions.
struct Decimal
{
    bool negative = false;
    QByteArray integer; // at least one digit
    QByteArray fraction;
};

enum class Rounding { HalfAway, HalfEven };

Decimal toDecimal(double value)
{
    Decimal d;
    if (!std::isfinite(value)) {
        d.integer = "0";
        return d;
    }
    d.negative = std::signbit(value);
    char buffer[512];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                                      std::chars_format::fixed);
    const QByteArray text(buffer, int(result.ptr - buffer));
    const int dot = text.indexOf('.');
    d.integer = dot < 0 ? text : text.left(dot);
    d.fraction = dot < 0 ? QByteArray() : text.mid(dot + 1);
    return d;
}

bool isZero(const Decimal &d)
{
    for (char c : d.integer)
        if (c != '0')
            return false;
    for (char c : d.fraction)
        if (c != '0')
            return false;
    return true;
}

Decimal rounded(Decimal d, int decimals, Rounding mode)
{
    if (d.fraction.size() <= decimals) {
        d.fraction.append(QByteArray(decimals - d.fraction.size(), '0'));
        return d;
    }
    const char first = d.fraction.at(decimals);
    bool up = first > '5';
    if (first == '5') {
        bool beyond = false;
        for (int i = decimals + 1; i < d.fraction.size(); ++i)
            beyond = beyond || d.fraction.at(i) != '0';
        if (beyond || mode == Rounding::HalfAway) {
            up = true;
        } else {
            const char last = decimals > 0 ? d.fraction.at(decimals - 1) : d.integer.back();
            up = (last - '0') % 2 == 1;
        }
    }
    d.fraction.truncate(decimals);
    if (up) {
        QByteArray all = d.integer + d.fraction;
        int i = all.size() - 1;
        while (i >= 0 && all[i] == '9')
            all[i--] = '0';
        if (i < 0)
            all.prepend('1');
        else
            all[i] = char(all[i] + 1);
        d.integer = all.left(all.size() - decimals);
        d.fraction = all.right(decimals);
    }
    if (isZero(d))
        d.negative = false;
    return d;
}

double toDouble(const Decimal &d)
{
    QByteArray text = d.integer;
    if (!d.fraction.isEmpty())
        text += '.' + d.fraction;
    const double magnitude = text.toDouble();
    return d.negative ? -magnitude : magnitude;
}

struct NumberPattern
{
    QString prefix;
    QString suffix;
    int minIntegerDigits = 0;
    bool grouping = false;
    bool hasDecimalPoint = false;
    int requiredDecimals = 0;
    int optionalDecimals = 0;
};

bool isPlaceholder(QChar c)
{
    return c == u'0' || c == u'#';
}

NumberPattern parsePattern(QStringView pattern)
{
    NumberPattern p;
    int first = -1;
    int last = -1;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (isPlaceholder(c) || c == u'.' || c == u',') {
            if (first < 0)
                first = i;
            last = i;
        }
    }
    if (first < 0) {
        p.prefix = pattern.toString();
        return p;
    }
    p.prefix = pattern.left(first).toString();
    p.suffix = pattern.mid(last + 1).toString();
    bool afterPoint = false;
    for (int i = first; i <= last; ++i) {
        const QChar c = pattern[i];
        if (c == u'.') {
            afterPoint = true;
            p.hasDecimalPoint = true;
        } else if (c == u',' && !afterPoint) {
            p.grouping = true;
        } else if (c == u'0') {
            afterPoint ? ++p.requiredDecimals : ++p.minIntegerDigits;
        } else if (c == u'#' && afterPoint) {
            ++p.optionalDecimals;
        }
    }
    return p;
}

QString groupDigits(const QByteArray &digits, const QString &separator)
{
    QString out;
    const int n = digits.size();
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0)
            out += separator;
        out += QLatin1Char(digits.at(i));
    }
    return out;
}

} // namespace

QString format(double value, QStringView pattern, const QLocale &locale)
{
    const NumberPattern p = parsePattern(pattern);
    Decimal d = rounded(toDecimal(value), p.requiredDecimals + p.optionalDecimals,
                        Rounding::HalfAway);
    // Optional decimals are dropped when they are trailing zeros.
    while (d.fraction.size() > p.requiredDecimals && d.fraction.endsWith('0'))
        d.fraction.chop(1);
    QByteArray integer = d.integer;
    while (integer.size() > 1 && integer.startsWith('0'))
        integer.remove(0, 1);
    if (integer == "0")
        integer.clear();
    if (integer.size() < p.minIntegerDigits)
        integer.prepend(QByteArray(p.minIntegerDigits - integer.size(), '0'));

    QString out = p.grouping ? groupDigits(integer, locale.groupSeparator())
                             : QString::fromLatin1(integer);
    if (p.hasDecimalPoint && (!d.fraction.isEmpty() || p.requiredDecimals > 0))
        out += locale.decimalPoint() + QString::fromLatin1(d.fraction);
    else if (p.hasDecimalPoint && p.optionalDecimals > 0 && out.isEmpty())
        out = QStringLiteral("0");
    if (d.negative)
        out.prepend(u'-');
    return p.prefix + out + p.suffix;
}

QString format(const QString &text, QStringView pattern, const QLocale &locale)
{
    const qsizetype ats = pattern.count(u'@');
    if (ats > 0) {
        if (text.size() >= ats)
            return text;
        return QString(ats - text.size(), u' ') + text;
    }
    double value = 0;
    if (!toNumber(text, &value, locale))
        return text;
    return format(value, pattern, locale);
}

double roundHalfEven(double value, int decimals)
{
    return toDouble(rounded(toDecimal(value), decimals, Rounding::HalfEven));
}

double roundHalfAway(double value, int decimals)
{
    return toDouble(rounded(toDecimal(value), decimals, Rounding::HalfAway));
}

qint16 cint(double value)
{
    const double r = roundHalfEven(value, 0);
    if (!std::isfinite(value) || r < -32768.0 || r > 32767.0)
        throw AppError(AppError::Overflow, QStringLiteral("Overflow"));
    return qint16(r);
}

QString cstr(double value, const QLocale &locale)
{
    if (!std::isfinite(value))
        return QStringLiteral("0");
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
    QString text = QString::fromLatin1(buffer, int(result.ptr - buffer));
    if (text.contains(u'e')) {
        // Beyond 15 digits the number is written out in full, never in exponent form.
        text = QString::fromLatin1(QByteArray::number(value, 'f', 0));
    }
    if (text == QStringLiteral("-0"))
        text = QStringLiteral("0");
    text.replace(u'.', locale.decimalPoint());
    return text;
}

bool toNumber(const QString &text, double *value, const QLocale &locale)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return false;
    bool ok = false;
    double v = locale.toDouble(trimmed, &ok);
    if (!ok) {
        // Grouping signs in odd places ("1.2345,6") are still a number to the user.
        QString plain = trimmed;
        plain.remove(locale.groupSeparator());
        v = locale.toDouble(plain, &ok);
    }
    if (ok && value)
        *value = v;
    return ok;
}

qint64 leadingNumber(QStringView text)
{
    qsizetype i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        negative = text[i] == u'-';
        ++i;
    }
    qint64 n = 0;
    while (i < text.size() && text[i] >= u'0' && text[i] <= u'9' && n < (qint64(1) << 58))
        n = n * 10 + (text[i++].unicode() - u'0');
    return negative ? -n : n;
}

} // namespace pg::vb
