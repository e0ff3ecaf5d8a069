#pragma once

#include <QtGlobal>

namespace pg::money {

// Amounts are kept as doubles, as the distinte always kept them; every comparison and sum
// that decides something goes through cents so that binary fractions never tip a result.
qint64 toCents(double amount);
double fromCents(qint64 cents);
bool sameAmount(double a, double b);
// a > b by at least one cent.
bool exceeds(double a, double b);

} // namespace pg::money
