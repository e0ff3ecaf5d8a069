#include "fieldfill.h"

#include "core/vbformat.h"

#include <algorithm>

namespace pg::bankfile {

namespace {

// The text without its leading and trailing blanks (blanks only, as the suite trims).
QStringView blanksTrimmed(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == u' ')
        ++begin;
    while (end > begin && text.at(end - 1) == u' ')
        --end;
    return text.sliced(begin, end - begin);
}

// The last n characters of fill repeated and text after it: text cut on the left, or padded.
QString rightAligned(QStringView text, int n, QChar fill)
{
    if (text.size() >= n)
        return text.right(n).toString();
    QString out(n - text.size(), fill);
    out += text;
    return out;
}

} // namespace

QString trimBlanks(const QString &text)
{
    return blanksTrimmed(text).toString();
}

QString RiempiCampoA(const QString &text, int n)
{
    const QStringView t = blanksTrimmed(text);
    if (t.size() >= n)
        return t.left(n).toString();
    QString out(n, u' ');
    std::copy(t.begin(), t.end(), out.begin());
    return out;
}

QString RiempiCampoN(const QString &text, int n)
{
    return rightAligned(blanksTrimmed(text), n, u'0');
}

QString RiempiCampoEuro(double amount, int n, const QLocale &locale)
{
    QString text = trimBlanks(vb::format(amount, u"0.00", locale));
    text.remove(u',');
    return (QString(n, u'0') + text).right(n);
}

QString RiempiSinistra(const QString &text, int n, const QString &fill)
{
    if (fill.size() == 1)
        return rightAligned(blanksTrimmed(text), n, fill.at(0));
    const QString padding = fill.isEmpty() ? QString(n, u' ') : fill.repeated(n);
    return (padding + trimBlanks(text)).right(n);
}

} // namespace pg::bankfile
