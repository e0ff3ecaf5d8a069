#include "fieldfill.h"

#include "core/vbformat.h"

namespace pg::bankfile {

QString trimBlanks(const QString &text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == u' ')
        ++begin;
    while (end > begin && text.at(end - 1) == u' ')
        --end;
    return text.mid(begin, end - begin);
}

QString RiempiCampoA(const QString &text, int n)
{
    return (trimBlanks(text) + QString(n, u' ')).left(n);
}

QString RiempiCampoN(const QString &text, int n)
{
    return (QString(n, u'0') + trimBlanks(text)).right(n);
}

QString RiempiCampoEuro(double amount, int n, const QLocale &locale)
{
    QString text = trimBlanks(vb::format(amount, u"0.00", locale));
    text.remove(u',');
    return (QString(n, u'0') + text).right(n);
}

QString RiempiSinistra(const QString &text, int n, const QString &fill)
{
    const QString padding = fill.isEmpty() ? QString(n, u' ') : fill.repeated(n);
    return (padding + trimBlanks(text)).right(n);
}

} // namespace pg::bankfile
