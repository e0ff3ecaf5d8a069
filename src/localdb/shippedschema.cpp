#include "shippedschema.h"

#include <QFile>

namespace pg {

QByteArray shippedSchemaDescription()
{
    QFile file(QStringLiteral(":/QXARTRAC.DAT"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

} // namespace pg
