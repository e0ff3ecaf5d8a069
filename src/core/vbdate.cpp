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
    static const QRegularExpression form(QStringLiteral("^\\s*(\\d{1,2})/(\\d{1,2})/(\\d{4})\\s*$"));
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
    return date.isValid() ? date.toString(QStringLiteral("dd/MM/yyyy")) : QString();
}

QString completeTwoDigitYear(const QString &masked)
{
    if (masked.size() == 10 && masked.endsWith(QStringLiteral("__")))
        return masked.left(6) + QStringLiteral("20") + masked.mid(6, 2);
    return masked;
}

QString toYmd(const QDate &date)
{
    return date.isValid() ? date.toString(QStringLiteral("yyyyMMdd")) : QString();
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
    return date.isValid() ? date.toString(QStringLiteral("ddMMyy")) : QString();
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
