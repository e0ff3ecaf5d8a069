#pragma once

#include <QString>

namespace pg::localdb {

// Whether a file is the program's local database and sound, looked at before anything is
// written into it: a file of another kind (an empty one included: the engine would take it
// for a new database and write into it) is never touched, and a damaged database is named
// before the distinte are read from it. Reads only. Empty when the file is the program's
// database and its pages pass the engine's quick integrity check; otherwise the reason.
QString localDatabaseFileProblem(const QString &path);

} // namespace pg::localdb
