#pragma once

// What every benchmark prints and how it times: one line a measure with its name, its size,
// the median time of its runs, the median time of the limit it is measured beside (the same
// machine, the same run), and the ratio of the two.

#include <QElapsedTimer>
#include <QList>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace pg::bench {

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

} // namespace pg::bench
