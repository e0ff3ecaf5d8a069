#include "crashpoint.h"

#include <QString>
#include <QtGlobal>

#include <csignal>
#include <cstdlib>

namespace pg {

namespace {

long long &passed()
{
    static long long count = 0;
    return count;
}

long long crashAt()
{
    static const long long at = [] {
        bool ok = false;
        const long long n = qEnvironmentVariable("PAGAMENTI_TEST_CRASH_AT").toLongLong(&ok);
        return ok && n > 0 ? n : 0;
    }();
    return at;
}

[[noreturn]] void die()
{
#ifdef SIGKILL
    std::raise(SIGKILL);
#endif
    std::_Exit(137);
}

} // namespace

void crashPoint()
{
    if (++passed() == crashAt())
        die();
}

long long crashPointsPassed()
{
    return passed();
}

} // namespace pg
