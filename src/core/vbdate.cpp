#include "vbdate.h"

#include <QRegularExpression>

namespace pg::dates {

namespace {

QDate &fixedToday()
{
    static QDate date;
    return date;
}

QString mid(const QString &text, int position, int length)
{
    // 1-based positions, as the stored formats are documented.
    return text.mid(position - 1, length);
}

// A date in a fixed pattern of day, month and year digits ("d" "m" "y", a year of two or four
// digits and separators as written), built directly: the suite's dates are written for every
// row of a large distinta, and Qt's pattern parsing costs more than the date itself. Years
// outside 1 to 9999 take Qt's way.
QString digits(const QDate &date, QStringView pattern, const QString &qtPattern)
{
    if (!date.isValid())
        return {};
    const int year = date.year();
    if (year < 1 || year > 9999)
        return date.toString(qtPattern);
    const int yearDigits = int(pattern.count(u'y'));
    QString out(pattern.size(), Qt::Uninitialized);
    QChar *p = out.data();
    int y = 0, m = 0, d = 0;
    for (QChar c : pattern) {
        int value = -1;
        int place = 0;
        switch (c.unicode()) {
        case u'y':
            value = year;
            place = yearDigits - 1 - y++;
            break;
        case u'm':
            value = date.month();
            place = 1 - m++;
            break;
        case u'd':
            value = date.day();
            place = 1 - d++;
            break;
        default:
            *p++ = c;
            continue;
        }
        for (int i = 0; i < place; ++i)
            value /= 10;
        *p++ = QChar(char16_t(u'0' + value % 10));
    }
    return out;
}

} // namespace

QDate today()
{
    return fixedToday().isValid() ? fixedToday() : QDate::currentDate();
}

void setToday(const QDate &date)
{
    fixedToday() = date;
}

QDate parseDmy(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^\\s*(\\d{1,2})/(\\d{1,2})/(\\d{4})\\s*$"));
    const auto match = form.match(text);
    if (!match.hasMatch())
        return {};
    return QDate(match.captured(3).toInt(), match.captured(2).toInt(), match.captured(1).toInt());
}

bool isValidDmy(const QString &text)
{
    return parseDmy(text).isValid();
}

QString toDmy(const QDate &date)
{
    return digits(date, u"dd/mm/yyyy", QStringLiteral("dd/MM/yyyy"));
}

QString completeTwoDigitYear(const QString &masked)
{
    // Only where two digits of a year were typed: an emptied box stays empty.
    if (masked.size() == 10 && masked.endsWith(QStringLiteral("__")) && masked.at(6).isDigit() &&
        masked.at(7).isDigit())
        return masked.left(6) + QStringLiteral("20") + masked.mid(6, 2);
    return masked;
}

QString toYmd(const QDate &date)
{
    return digits(date, u"yyyymmdd", QStringLiteral("yyyyMMdd"));
}

QDate fromYmd(const QString &ymd)
{
    if (ymd.size() != 8)
        return {};
    bool ok = true;
    for (QChar c : ymd)
        ok = ok && c.isDigit();
    if (!ok)
        return {};
    return QDate(ymd.left(4).toInt(), ymd.mid(4, 2).toInt(), ymd.mid(6, 2).toInt());
}

QString toDdmmyy(const QDate &date)
{
    return digits(date, u"ddmmyy", QStringLiteral("ddMMyy"));
}

QString ymdToDdmmyy(const QString &ymd)
{
    return mid(ymd, 7, 2) + mid(ymd, 5, 2) + mid(ymd, 3, 2);
}

QString ymdToDmy(const QString &ymd)
{
    return mid(ymd, 7, 2) + u'/' + mid(ymd, 5, 2) + u'/' + mid(ymd, 1, 4);
}

QString dmyToYmd(const QString &dmy)
{
    return mid(dmy, 7, 4) + mid(dmy, 4, 2) + mid(dmy, 1, 2);
}

QString jetLiteral(const QDate &date)
{
    return u'#' + date.toString(QStringLiteral("MM/dd/yyyy")) + u'#';
}

QDate parseJetLiteral(const QString &literal)
{
    static const QRegularExpression form(QStringLiteral("^#(\\d{1,2})/(\\d{1,2})/(\\d{4})#$"));
    const auto match = form.match(literal.trimmed());
    if (!match.hasMatch())
        return {};
    return QDate(match.captured(3).toInt(), match.captured(1).toInt(), match.captured(2).toInt());
}

} // namespace pg::dates
