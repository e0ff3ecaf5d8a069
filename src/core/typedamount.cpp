#include "typedamount.h"

#include <QStringList>

namespace pg::vb {

namespace {

constexpr int MaxIntegerDigits = 13;

bool allDigits(QStringView text)
{
    for (QChar c : text)
        if (c < u'0' || c > u'9')
            return false;
    return true;
}

// "1.234.567": a first group of one to three digits that does not start with a zero (unless it
// is the zero alone, which then has no group after it), then groups of exactly three.
bool isGrouped(const QString &text, QString *digits)
{
    const QStringList groups = text.split(u'.');
    if (groups.size() < 2)
        return false;
    const QString &first = groups.first();
    if (first.isEmpty() || first.size() > 3 || !allDigits(first) || first.startsWith(u'0'))
        return false;
    for (qsizetype i = 1; i < groups.size(); ++i)
        if (groups.at(i).size() != 3 || !allDigits(groups.at(i)))
            return false;
    *digits = groups.join(QString());
    return true;
}

// The integer part before a decimal comma: plain digits or grouped ones (empty reads as 0).
bool integerPart(const QString &text, QString *digits)
{
    if (!text.contains(u'.')) {
        if (!allDigits(text))
            return false;
        *digits = text;
        return true;
    }
    return isGrouped(text, digits);
}

} // namespace

TypedAmount TypedAmount::read(const QString &text, int maxDecimals)
{
    TypedAmount result;
    QString rest = text.trimmed();
    if (rest.isEmpty())
        return result;
    result.outcome = Outcome::Invalid;
    QString sign;
    if (rest.startsWith(u'-') || rest.startsWith(u'+')) {
        if (rest.startsWith(u'-'))
            sign = QStringLiteral("-");
        rest.remove(0, 1);
    }
    if (rest.isEmpty() || rest.count(u',') > 1)
        return result;

    QString integer;
    QString decimals;
    const qsizetype comma = rest.indexOf(u',');
    if (comma >= 0) {
        decimals = rest.mid(comma + 1);
        if (!allDigits(decimals) || !integerPart(rest.left(comma), &integer))
            return result;
    } else if (!integerPart(rest, &integer)) {
        // One point that cannot be a grouping is the decimal sign: "12.5", "1234.50".
        const qsizetype point = rest.indexOf(u'.');
        if (rest.count(u'.') != 1 || !allDigits(rest.left(point)))
            return result;
        integer = rest.left(point);
        decimals = rest.mid(point + 1);
        if (!allDigits(decimals))
            return result;
    }
    if (decimals.size() > maxDecimals || (integer.isEmpty() && decimals.isEmpty()))
        return result;
    while (integer.size() > 1 && integer.startsWith(u'0'))
        integer.remove(0, 1);
    if (integer.size() > MaxIntegerDigits)
        return result;
    if (integer.isEmpty())
        integer = QStringLiteral("0");

    bool ok = false;
    const QString canonical = sign + integer + (decimals.isEmpty() ? QString() : u'.' + decimals);
    result.value = canonical.toDouble(&ok);
    if (!ok)
        return result;
    if (result.value == 0)
        result.value = 0; // no negative zero
    result.plain = sign + integer + (decimals.isEmpty() ? QString() : u',' + decimals);
    result.outcome = Outcome::Valid;
    return result;
}

QString TypedAmount::invalidMessage(const QString &text)
{
    return QStringLiteral("Importo non valido: \"%1\".\r\nScrivere l'importo con la virgola per i "
                          "decimali e, se si vuole, il punto per le migliaia (per esempio "
                          "1.234,56).")
        .arg(text.trimmed());
}

} // namespace pg::vb
