#pragma once

#include "localdb/schema.h"

#include <QSqlDatabase>

namespace pg::localdb {

// The description of the local database kept inside it. SQLite has no place for much of what
// the description carries (type numbers, attributes, index flags, query properties, relation
// names), so the whole description is kept in catalog tables whose names begin "MSys": system
// objects, like the system tables of the suite's databases, that the generator skips. The
// engine's own schema is built from the same description (see sqlitemapping.h) and enforces
// what it can; reading a database back takes the catalog first and describes from the engine
// whatever the catalog does not know (a column, index, view or foreign key added by hand).
class SchemaCatalog
{
public:
    // Creates every table, index, query and relation of the description and its catalog in
    // an open, empty database, inside the caller's transaction. A relation whose name is
    // already taken is created as its name followed by "_" and the first free number. Throws
    // SchemaError (with the file's line) for a query the engine refuses, AppError for a
    // database failure.
    static void build(QSqlDatabase &db, const DatabaseSchema &schema);

    // The description of an open database: name from the catalog (fallbackName when it has
    // none), version left empty for the caller, tables, queries and relations in the order
    // they were created.
    static DatabaseSchema describe(QSqlDatabase &db, const QString &fallbackName);

    // Whether the database has a table of that name (letter case aside).
    static bool hasTable(QSqlDatabase &db, const QString &table);
    // Adds a table with its indexes to an existing database, and to the catalog when the
    // database has one, inside the caller's transaction.
    static void addTable(QSqlDatabase &db, const SchemaTable &table);

    // Adds a column to an existing table, and to the catalog when the database has one.
    static void addField(QSqlDatabase &db, const QString &table, const SchemaField &field);

    static bool hasCatalog(QSqlDatabase &db);
};

} // namespace pg::localdb
