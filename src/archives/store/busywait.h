#pragma once

#include <QElapsedTimer>
#include <QString>

#include <functional>

struct sqlite3;

namespace pg::archives {

// The wait of an archive store for another program of the suite that holds it: a moment of
// contention (another module saving) is waited out, retrying, for up to a few seconds
// (PAGAMENTI_ARCHIVE_WAIT seconds, 10 by default) before the call fails with Locked. From
// the first second on the program is told, so that the clerk sees the wait and may end it.
//
// One object a connection: it holds the connection's wait in progress.
class BusyWait
{
public:
    struct Notice
    {
        QString path; // the store's file
        int waitedMs; // how long this wait has lasted
        int limitMs;  // how long it lasts at most
        bool first;   // the first notice of this wait
    };
    // Told about four times a second while a wait lasts, on the thread that waits; false ends
    // the wait at once (the call then fails with Locked).
    using Observer = std::function<bool(const Notice &notice)>;

    static constexpr int DefaultLimitMs = 10000;
    static constexpr int NoticeAfterMs = 1000;

    // The observer of every store of the program; none by default.
    static void setObserver(Observer observer);
    // The longest wait, from PAGAMENTI_ARCHIVE_WAIT (seconds, decimals allowed).
    static int limitMs();

    // Makes the connection wait this way whenever the store is busy.
    void install(sqlite3 *db, const QString &path);

private:
    static int onBusy(void *self, int attempt);

    QString m_path;
    QElapsedTimer m_timer;
    int m_limitMs = DefaultLimitMs;
    qint64 m_lastNoticeMs = -1;
};

} // namespace pg::archives
