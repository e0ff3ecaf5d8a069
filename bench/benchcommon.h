#pragma once

// What every benchmark prints and how it times: one line a measure with its name, its size,
// the median time of its runs, the median time of the limit it is measured beside (the same
// machine, the same run), and the ratio of the two.

#include <QElapsedTimer>
#include <QtGlobal>
#include <QList>
#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <functional>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

namespace pg::bench {

// The whole number that follows an option ("--rows 10000") among the arguments, or the default.
inline int intOption(const QStringList &args, QStringView name, int fallback)
{
    const qsizetype i = args.indexOf(name.toString());
    return i >= 0 && i + 1 < args.size() ? args.at(i + 1).toInt() : fallback;
}

inline double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

inline double timedMs(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

inline void report(const char *name, qint64 size, double ms, double limitMs)
{
    std::printf("%-28s %9lld %11.1f ms %11.1f ms %7.2f\n", name, static_cast<long long>(size), ms,
                limitMs, limitMs > 0 ? ms / limitMs : 0.0);
    std::fflush(stdout);
}

// The peak resident size of this process so far, in megabytes (0 where it is not known).
inline double peakResidentMb()
{
#ifdef Q_OS_UNIX
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) == 0)
        return double(usage.ru_maxrss) / 1024.0; // kilobytes on Linux
#endif
    return 0;
}

inline void reportMemory(const char *name)
{
    std::printf("%-28s picco di memoria %.0f MB\n", name, peakResidentMb());
    std::fflush(stdout);
}

} // namespace pg::bench
