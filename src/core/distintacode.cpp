#include "distintacode.h"

#include "vbformat.h"

namespace pg {

QString formatDistintaCode(qint64 number)
{
    return vb::format(QString::number(number), u"@@@@@@");
}

qint64 distintaNumber(const QString &code)
{
    return vb::leadingNumber(code);
}

} // namespace pg
