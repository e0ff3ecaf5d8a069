#include "fieldcheck.h"

#include "core/cp1252.h"

#include <QDate>

namespace pg::archives {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool allDigits(QByteArrayView text)
{
    for (char c : text)
        if (!isDigit(c))
            return false;
    return !text.isEmpty();
}

QByteArrayView trimmedBlanks(QByteArrayView text, bool leading)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (end > 0 && (text[end - 1] == ' ' || text[end - 1] == '\0'))
        --end;
    while (leading && begin < end && text[begin] == ' ')
        ++begin;
    return text.sliced(begin, end - begin);
}

// Digits, and a point followed by one to `decimals` digits; with a sign first when allowed.
bool isDecimal(QByteArrayView text, int decimals, bool signAllowed)
{
    if (signAllowed && !text.isEmpty() && (text[0] == '-' || text[0] == '+'))
        text = text.sliced(1);
    const qsizetype point = text.indexOf('.');
    if (point < 0)
        return allDigits(text);
    const QByteArrayView fraction = text.sliced(point + 1);
    return allDigits(text.first(point)) && allDigits(fraction) && fraction.size() <= decimals;
}

bool isRealDate(QByteArrayView text)
{
    if (text.size() != 8 || !allDigits(text))
        return false;
    auto number = [&](qsizetype from, qsizetype count) {
        int n = 0;
        for (qsizetype i = from; i < from + count; ++i)
            n = n * 10 + (text[i] - '0');
        return n;
    };
    return number(0, 4) >= 1 && QDate(number(0, 4), number(4, 2), number(6, 2)).isValid();
}

} // namespace

bool isBlankValue(QByteArrayView stored)
{
    return trimmedBlanks(stored, true).isEmpty();
}

QString fieldValueProblem(const FieldDef &field, QByteArrayView stored)
{
    // Amounts and rates sit right-aligned in their fields: leading blanks belong to them.
    const bool aligned = field.kind == FieldKind::Amount || field.kind == FieldKind::Rate;
    const QByteArrayView value = trimmedBlanks(stored, aligned);
    if (isBlankValue(value))
        return {};
    const QString shown = u'"' + cp1252::decode(value) + u'"';
    switch (field.kind) {
    case FieldKind::Text:
        return {};
    case FieldKind::Amount:
        if (isDecimal(value, field.decimals, true))
            return {};
        return QStringLiteral("importo %1 non valido: si scrive con il segno, le cifre e il punto "
                              "prima di al massimo %2 decimali (per esempio -1234.50)")
            .arg(shown)
            .arg(field.decimals);
    case FieldKind::Rate: {
        bool positive = false;
        for (char c : value)
            positive = positive || (c >= '1' && c <= '9');
        if (isDecimal(value, field.decimals, false) && positive)
            return {};
        return QStringLiteral("cambio %1 non valido: si scrive con le cifre e il punto prima di al "
                              "massimo %2 decimali, maggiore di zero (per esempio 1.085600)")
            .arg(shown)
            .arg(field.decimals);
    }
    case FieldKind::Date:
        if (isRealDate(value))
            return {};
        return QStringLiteral("data %1 non valida: serve una data vera di otto cifre, anno, mese "
                              "e giorno (per esempio 20250331)")
            .arg(shown);
    case FieldKind::Digits:
        if (allDigits(value))
            return {};
        return QStringLiteral("valore %1 non valido: sono ammesse solo cifre").arg(shown);
    case FieldKind::Choice:
        if (value.size() == 1 && field.choices.contains(value[0]))
            return {};
        QStringList allowed;
        for (char c : field.choices)
            allowed << QString(QLatin1Char(c));
        return QStringLiteral("valore %1 non ammesso: i valori possibili sono %2")
            .arg(shown, allowed.join(QStringLiteral(", ")));
    }
    return {};
}

} // namespace pg::archives
