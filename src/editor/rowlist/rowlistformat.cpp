#include "rowlistformat.h"

#include "core/vbdate.h"
#include "core/vbformat.h"

namespace pg::editor {

QString RowListFormat::numDoc(const QString &number, const QString &series)
{
    QString text = (QString(6, u' ') + number.trimmed()).right(6);
    const QString s = series.trimmed();
    if (!s.isEmpty())
        text += u'/' + s;
    return text;
}

QString RowListFormat::date(const QString &ymd)
{
    if (ymd.trimmed().isEmpty())
        return {};
    return dates::ymdToDmy(ymd);
}

QString RowListFormat::cambio(double rate, const QLocale &locale)
{
    if (rate < 9999)
        return vb::format(rate, u"#,0.000000", locale);
    if (rate < 99999)
        return vb::format(rate, u"#,0.00000", locale);
    if (rate < 999999)
        return vb::format(rate, u"#,0.0000", locale);
    return vb::format(rate, u"#,0.00", locale);
}

QString RowListFormat::amount(std::optional<double> value, const QLocale &locale)
{
    return value ? vb::format(*value, u"#,0.00", locale) : QString();
}

QString RowListFormat::numDocSortKey(const QString &number, const QString &series)
{
    const QString n = number.trimmed();
    qsizetype digits = 0;
    while (digits < n.size() && n.at(digits).isDigit())
        ++digits;
    if (digits == 0)
        return u'1' + n + u'/' + series.trimmed();
    QString integer = n.left(digits);
    while (integer.size() > 1 && integer.startsWith(u'0'))
        integer.remove(0, 1);
    return u'0' + integer.rightJustified(20, u'0') + n.mid(digits) + u'/' + series.trimmed();
}

} // namespace pg::editor
