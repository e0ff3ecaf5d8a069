#pragma once

#include "localdb/databaselocation.h"

#include <QStringList>

namespace pg::localdb {

// Moves a company's local database from its SQLite file to an empty database on a PostgreSQL
// server: the tables made from the installation's schema file, then every row of every table
// (distinte, rows, grouped rows, variables, the write-back journal, the versions) copied,
// counted and summed again on both sides, all in one transaction of the server, so that it
// holds the whole copy or nothing. The file is only read: it stays as it was.
class DatabaseMigration
{
public:
    // False, after a message through the prompting seam, when nothing was copied. The lines
    // of the checks made (a table each: rows and sums on both sides) in *report.
    static bool migrate(const QString &sourceFile, const DatabaseLocation &target,
                        QStringList *report);
};

} // namespace pg::localdb
