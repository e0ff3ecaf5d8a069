#pragma once

#include "localdb/schema.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <utility>

namespace pg::localdb {

// An index as the engine itself has it.
struct EngineIndex
{
    QString name; // the engine's name ("<table>.<index>" when the schema made it)
    bool unique = false;
    bool primaryKey = false; // the engine's own primary key (not one made from a description)
    bool partial = false;
    QStringList columns;
    bool onExpression = false; // an index on expressions, which no description can hold
};

// How one engine writes what the schema description says, and what the engine itself says of
// a database beyond the catalog (see SchemaCatalog). SQLite keeps its own schema in
// sqlite_master and the pragma tables; a PostgreSQL server in its catalogs. Identifiers are
// written only through identifier(); values are always bound.
class SqlDialect
{
public:
    virtual ~SqlDialect() = default;

    // The dialect of the connection's engine.
    static const SqlDialect &of(const QSqlDatabase &db);

    // An object's name as DDL writes it.
    virtual QString identifier(const QString &name) const = 0;
    // The column definition of a field for CREATE TABLE and ALTER TABLE ADD COLUMN.
    virtual QString columnDefinition(const SchemaField &field, bool inPrimaryIndex) const = 0;
    // The column that identifies a row when the engine has none of its own ("rowid"), with
    // its definition; empty when the engine numbers its rows itself.
    virtual QString rowIdentityColumn() const = 0;
    // The catalog's column types: a name compared without regard to letter case.
    virtual QString caseFreeText() const = 0;

    // The engine's tables in the order they were created, its views with their SELECT.
    virtual QStringList tables(QSqlDatabase &db) const = 0;
    virtual QList<std::pair<QString, QString>> views(QSqlDatabase &db) const = 0;
    // The columns of a table described from the engine (the row identity left out).
    virtual QList<SchemaField> columns(QSqlDatabase &db, const QString &table) const = 0;
    virtual QList<EngineIndex> indexes(QSqlDatabase &db, const QString &table) const = 0;
    // The foreign keys of a (referencing) table, as relations without names.
    virtual QList<SchemaRelation> foreignKeys(QSqlDatabase &db, const QString &table) const = 0;
};

// A statement run with its values bound, forward only (a failure raises the database's
// AppError), and the rows of a query so run.
QSqlQuery runQuery(QSqlDatabase &db, const QString &sql, const QVariantList &values = {});
QList<QVariantList> queryRows(QSqlDatabase &db, const QString &sql,
                              const QVariantList &values = {});

} // namespace pg::localdb
