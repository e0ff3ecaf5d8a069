#pragma once

#include "localdb/databaselocation.h"

#include <QString>

// Whether the account that runs the program can use the company's database, and why not.
namespace pg::localdb {

// What keeps this account from using the database file: the file, its working files beside
// it ("-wal", "-shm") or its folder without the permission it needs, in plain words for the
// administrator (owner and permissions named); empty when nothing of that kind is wrong.
QString fileAccessProblem(const QString &path);

// Start-up's check that the database opens; false after a message that says why in plain
// words: no permission, in use by another program, not a database, the server not reached.
bool databaseOpens(const DatabaseLocation &location);

} // namespace pg::localdb
