#pragma once

#include <QLockFile>
#include <QString>

namespace pg::distinta {

// One write to the suite's due items at a time for a company, across every Pagamenti running
// on it (the desktop program and the command line): a lock file beside the local database,
// held from the moment an operation works out its changes until it has carried them out,
// so that no operation works from marks that another one is about to change. A lock left
// by a program that died is taken over.
class WriteBackLock
{
public:
    explicit WriteBackLock(const QString &databasePath);

    // Waits a little for another program to finish; false, after telling the clerk, when it
    // does not.
    bool acquire();

private:
    QLockFile m_lock;
};

} // namespace pg::distinta
