#include "paymenttype.h"

namespace pg {

const QStringList &paymentTypeNames()
{
    static const QStringList names{
        QStringLiteral("Tratta"),          QStringLiteral("Ricevuta bancaria"),
        QStringLiteral("Avviso"),          QStringLiteral("Rimessa diretta"),
        QStringLiteral("Contanti"),        QStringLiteral("Cessioni"),
        QStringLiteral("Bonifico"),        QStringLiteral("Contrassegno"),
        QStringLiteral("Assegno circolare"), QStringLiteral("RID"),
    };
    return names;
}

QString PaymentTypeName(const QString &code)
{
    if (code.size() != 1 || code[0] < u'0' || code[0] > u'9')
        return {};
    return paymentTypeNames().at(code[0].unicode() - u'0');
}

} // namespace pg
