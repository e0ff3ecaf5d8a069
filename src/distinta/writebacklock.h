#pragma once

#include "localdb/databaselocation.h"

#include <QLockFile>
#include <QString>

#include <memory>
#include <optional>

namespace pg {
class DatabaseConnection;
}

namespace pg::distinta {

// One write to the suite's due items at a time for a company, across every Pagamenti running
// on it (the desktop program and the command line, on this computer or on the other clerks'),
// held from the moment an operation works out its changes until it has carried them out, so
// that no operation works from marks that another one is about to change and two saves that
// share a due item count each other's rows. With the SQLite file: a lock file beside it, a
// lock left by a program that died taken over. With a server: an advisory lock of the
// company's database, held by a connection of its own and freed by the server when the
// program ends, however it ends.
class WriteBackLock
{
public:
    explicit WriteBackLock(const localdb::DatabaseLocation &location);
    ~WriteBackLock();

    // Waits a little for another program to finish; false, after telling the clerk, when it
    // does not.
    bool acquire();

private:
    bool acquireOnServer();

    localdb::DatabaseLocation m_location;
    std::optional<QLockFile> m_file;
    std::unique_ptr<DatabaseConnection> m_server;
};

} // namespace pg::distinta
