#include "busywait.h"

#include <sqlite3.h>

#include <algorithm>

namespace pg::archives {

namespace {

BusyWait::Observer &observer()
{
    static BusyWait::Observer current;
    return current;
}

constexpr int NoticeEveryMs = 250;

} // namespace

void BusyWait::setObserver(Observer observer)
{
    archives::observer() = std::move(observer);
}

int BusyWait::limitMs()
{
    bool ok = false;
    const double seconds = qEnvironmentVariable("PAGAMENTI_ARCHIVE_WAIT").toDouble(&ok);
    if (!ok || seconds < 0 || seconds > 3600)
        return DefaultLimitMs;
    return int(seconds * 1000);
}

void BusyWait::install(sqlite3 *db, const QString &path)
{
    m_path = path;
    sqlite3_busy_handler(db, &BusyWait::onBusy, this);
}

int BusyWait::onBusy(void *self, int attempt)
{
    auto *wait = static_cast<BusyWait *>(self);
    if (attempt == 0) {
        wait->m_timer.start();
        wait->m_limitMs = limitMs();
        wait->m_lastNoticeMs = -1;
    }
    const qint64 waited = wait->m_timer.elapsed();
    if (waited >= wait->m_limitMs)
        return 0;
    if (waited >= NoticeAfterMs && observer() &&
        (wait->m_lastNoticeMs < 0 || waited - wait->m_lastNoticeMs >= NoticeEveryMs)) {
        const bool first = wait->m_lastNoticeMs < 0;
        wait->m_lastNoticeMs = waited;
        if (!observer()(Notice{wait->m_path, int(waited), wait->m_limitMs, first}))
            return 0;
    }
    // Short sleeps at first (most holds end within milliseconds), then a tenth of a second.
    const int sleep =
        std::min({attempt < 10 ? 5 + 5 * attempt : 100, int(wait->m_limitMs - waited), 100});
    sqlite3_sleep(std::max(sleep, 1));
    return 1;
}

} // namespace pg::archives
