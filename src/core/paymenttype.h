#pragma once

#include <QString>
#include <QStringList>

namespace pg {

// The name of a payment type code "0" to "9" ("Tratta" ... "RID"); empty for any other code.
QString PaymentTypeName(const QString &code);

// The ten names in code order, as the selection lists them.
const QStringList &paymentTypeNames();

} // namespace pg
