#include "money.h"

#include "vbformat.h"

#include <cmath>

namespace pg::money {

qint64 toCents(double amount)
{
    // Rounded on the decimal value first: 1.005 is a cent and a half, not 100.4999... cents.
    return std::llround(vb::roundHalfAway(amount, 2) * 100.0);
}

double fromCents(qint64 cents)
{
    return vb::roundHalfAway(double(cents) / 100.0, 2);
}

bool sameAmount(double a, double b)
{
    return toCents(a) == toCents(b);
}

bool exceeds(double a, double b)
{
    return toCents(a) > toCents(b);
}

} // namespace pg::money
