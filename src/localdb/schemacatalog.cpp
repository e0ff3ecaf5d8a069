#include "schemacatalog.h"

#include "localdb/databaseconnection.h"
#include "localdb/sqldialect.h"
#include "localdb/sqlitemapping.h"

#include "startup/dberror.h"

#include <QHash>
#include <QMap>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <functional>

#include <algorithm>

namespace pg::localdb {


namespace {

// The catalog's own tables: fixed text, every value bound.
const char *const CatalogTables[] = {
    "CREATE TABLE MSysSchemaProperties (Name TEXT NOT NULL PRIMARY KEY, Value TEXT)",
    "CREATE TABLE MSysSchemaTables (Position INTEGER NOT NULL, Name TEXT NOT NULL COLLATE NOCASE "
    "UNIQUE)",
    "CREATE TABLE MSysSchemaFields (TableName TEXT NOT NULL COLLATE NOCASE, Position INTEGER NOT "
    "NULL, Name TEXT NOT NULL COLLATE NOCASE, Type INTEGER NOT NULL, Size INTEGER NOT NULL, "
    "Attributes INTEGER NOT NULL, AllowZeroLength BOOLEAN NOT NULL, DefaultValue TEXT NOT NULL, "
    "Required BOOLEAN NOT NULL, PRIMARY KEY (TableName, Name))",
    "CREATE TABLE MSysSchemaIndexes (TableName TEXT NOT NULL COLLATE NOCASE, Position INTEGER NOT "
    "NULL, Name TEXT NOT NULL COLLATE NOCASE, IgnoreNulls BOOLEAN NOT NULL, IsPrimary BOOLEAN NOT "
    "NULL, IsUnique BOOLEAN NOT NULL, PRIMARY KEY (TableName, Name))",
    "CREATE TABLE MSysSchemaIndexColumns (TableName TEXT NOT NULL COLLATE NOCASE, IndexName TEXT "
    "NOT NULL COLLATE NOCASE, Position INTEGER NOT NULL, FieldName TEXT NOT NULL, PRIMARY KEY "
    "(TableName, IndexName, Position))",
    "CREATE TABLE MSysSchemaQueries (Position INTEGER NOT NULL, Name TEXT NOT NULL COLLATE NOCASE "
    "UNIQUE, SqlText TEXT NOT NULL, MaxRecords INTEGER NOT NULL, IsView BOOLEAN NOT NULL)",
    "CREATE TABLE MSysSchemaRelations (Position INTEGER NOT NULL, Name TEXT NOT NULL COLLATE "
    "NOCASE UNIQUE, Attributes INTEGER NOT NULL, ForeignTable TEXT NOT NULL, TableName TEXT NOT "
    "NULL)",
    "CREATE TABLE MSysSchemaRelationFields (RelationName TEXT NOT NULL COLLATE NOCASE, Position "
    "INTEGER NOT NULL, FieldName TEXT NOT NULL, ForeignFieldName TEXT NOT NULL, PRIMARY KEY "
    "(RelationName, Position))",
};

const QString DatabaseNameProperty = QStringLiteral("DatabaseName");

void execute(QSqlDatabase &db, const QString &sql)
{
    QSqlQuery query(db);
    if (!query.exec(sql))
        throw databaseError(query.lastError());
}

// A statement with its values bound, run once.
void execute(QSqlDatabase &db, const QString &sql, const QVariantList &values)
{
    QSqlQuery query(db);
    if (!query.prepare(sql))
        throw databaseError(query.lastError());
    for (const QVariant &value : values)
        query.addBindValue(value);
    if (!query.exec())
        throw databaseError(query.lastError());
}

QString joinedColumns(const SqlDialect &dialect, const QStringList &names)
{
    QStringList quoted;
    for (const QString &name : names)
        quoted << dialect.identifier(name);
    return quoted.join(QLatin1String(", "));
}

// A text for a column that holds no nulls: an empty text stays empty, never null.
QString nonNull(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

bool containsName(const QStringList &names, const QString &name)
{
    return std::any_of(names.begin(), names.end(),
                       [&](const QString &n) { return sameName(n, name); });
}

// The query text as the engine takes it: without blanks and semicolons at the end.
QString statementText(const QString &sql)
{
    QString text = sql.trimmed();
    while (text.endsWith(u';'))
        text = text.chopped(1).trimmed();
    return text;
}

bool isSelect(const QString &sql)
{
    static const QRegularExpression select(QStringLiteral("^\\s*SELECT\\b"),
                                           QRegularExpression::CaseInsensitiveOption);
    return select.match(sql).hasMatch();
}

QString createTableSql(const SqlDialect &dialect, const SchemaTable &table,
                       const QList<SchemaRelation> &relations)
{
    QStringList primaryColumns;
    for (const SchemaIndex &index : table.indexes)
        if (index.primary)
            primaryColumns << index.columns;
    QStringList parts;
    for (const SchemaField &field : table.fields)
        parts << dialect.columnDefinition(field, containsName(primaryColumns, field.name));
    if (!dialect.rowIdentityColumn().isEmpty())
        parts << dialect.rowIdentityColumn();
    for (const SchemaRelation &r : relations) {
        if (!r.enforced() || !sameName(r.foreignTable, table.name))
            continue;
        QStringList foreignFields, fields;
        for (const RelationField &f : r.fields) {
            foreignFields << f.foreignName;
            fields << f.name;
        }
        QString fk = QLatin1String("CONSTRAINT ") + dialect.identifier(r.name) +
                     QLatin1String(" FOREIGN KEY (") + joinedColumns(dialect, foreignFields) +
                     QLatin1String(") REFERENCES ") + dialect.identifier(r.table) +
                     QLatin1String(" (") + joinedColumns(dialect, fields) + u')';
        if (r.attributes & DaoRelationUpdateCascade)
            fk += QLatin1String(" ON UPDATE CASCADE");
        if (r.attributes & DaoRelationDeleteCascade)
            fk += QLatin1String(" ON DELETE CASCADE");
        fk += QLatin1String(" DEFERRABLE INITIALLY DEFERRED");
        parts << fk;
    }
    return QLatin1String("CREATE TABLE ") + dialect.identifier(table.name) +
           QLatin1String(" (") + parts.join(QLatin1String(", ")) + u')';
}

QString createIndexSql(const SqlDialect &dialect, const SchemaTable &table,
                       const SchemaIndex &index)
{
    QString sql =
        QLatin1String((index.unique || index.primary) ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
        dialect.identifier(sqlmap::indexName(table.name, index.name)) + QLatin1String(" ON ") +
        dialect.identifier(table.name) + QLatin1String(" (") +
        joinedColumns(dialect, index.columns) + u')';
    if (index.ignoreNulls) {
        QStringList conditions;
        for (const QString &column : index.columns)
            conditions << dialect.identifier(column) + QLatin1String(" IS NOT NULL");
        sql += QLatin1String(" WHERE ") + conditions.join(QLatin1String(" AND "));
    }
    return sql;
}

// Runs a statement that may fail without spoiling the caller's transaction: a server aborts
// the whole transaction at the first failed statement, so it runs inside a savepoint there.
bool tryStatement(QSqlDatabase &db, const std::function<bool(QSqlQuery &)> &statement,
                  QSqlError *error = nullptr)
{
    const bool server = isPostgres(db);
    QSqlQuery q(db);
    if (server)
        execute(db, QStringLiteral("SAVEPOINT pagamenti_prova"));
    const bool ok = statement(q);
    if (!ok && error)
        *error = q.lastError();
    q.finish();
    if (server)
        execute(db, ok ? QStringLiteral("RELEASE SAVEPOINT pagamenti_prova")
                       : QStringLiteral("ROLLBACK TO SAVEPOINT pagamenti_prova"));
    return ok;
}

// Creates the query's view when it is a SELECT the engine accepts as one; false otherwise.
bool createQuery(QSqlDatabase &db, const SchemaQuery &query)
{
    const QString text = statementText(query.sql);
    QSqlError error;
    if (!tryStatement(db, [&](QSqlQuery &q) { return q.prepare(text); }, &error))
        throw SchemaError{query.line,
                          QStringLiteral("la query \"%1\" non è valida: %2")
                              .arg(query.name, error.databaseText()),
                          false};
    if (!isSelect(text))
        return false;
    QString body = text;
    if (query.maxRecords > 0)
        body = QLatin1String("SELECT * FROM (") + text + QLatin1String(") AS q LIMIT ") +
               QString::number(query.maxRecords);
    // A query that takes parameters is a valid statement but cannot be a view: it stays a
    // stored query only.
    const QString create = QLatin1String("CREATE VIEW ") +
                           SqlDialect::of(db).identifier(query.name) + QLatin1String(" AS ") +
                           body;
    return tryStatement(db, [&](QSqlQuery &q) { return q.exec(create); });
}

QList<SchemaRelation> namedRelations(const QList<SchemaRelation> &relations)
{
    QList<SchemaRelation> out;
    QStringList taken;
    for (SchemaRelation r : relations) {
        if (containsName(taken, r.name)) {
            int n = 1;
            while (containsName(taken, r.name + u'_' + QString::number(n)))
                ++n;
            r.name += u'_' + QString::number(n);
        }
        taken << r.name;
        out << r;
    }
    return out;
}

bool truth(const QVariant &value)
{
    return value.toLongLong() != 0;
}

SchemaField catalogField(const QVariantList &row)
{
    SchemaField f;
    f.name = row.at(0).toString();
    f.type = row.at(1).toInt();
    f.size = row.at(2).toInt();
    f.attributes = row.at(3).toInt();
    f.allowZeroLength = truth(row.at(4));
    f.defaultValue = row.at(5).toString();
    f.required = truth(row.at(6));
    return f;
}

// The indexes of a table: those of the catalog that the engine still has, then the engine's
// others.
QList<SchemaIndex> describeIndexes(QSqlDatabase &db, const QString &table, bool catalog)
{
    const QList<EngineIndex> engine = SqlDialect::of(db).indexes(db, table);
    QStringList engineIndexes;
    for (const EngineIndex &index : engine)
        engineIndexes << index.name;
    QList<SchemaIndex> out;
    QStringList described;
    if (catalog) {
        for (const QVariantList &row :
             queryRows(db,
                       QStringLiteral("SELECT Name, IgnoreNulls, IsPrimary, IsUnique FROM "
                                      "MSysSchemaIndexes WHERE lower(TableName) = lower(?) "
                                      "ORDER BY Position"),
                       {table})) {
            const QString engineName = sqlmap::indexName(table, row.at(0).toString());
            if (!containsName(engineIndexes, engineName))
                continue;
            SchemaIndex index{
                row.at(0).toString(), truth(row.at(1)), truth(row.at(2)), truth(row.at(3)), {}, 0};
            for (const QVariantList &c :
                 queryRows(db,
                           QStringLiteral("SELECT FieldName FROM MSysSchemaIndexColumns WHERE "
                                          "lower(TableName) = lower(?) AND lower(IndexName) = "
                                          "lower(?) ORDER BY Position"),
                           {table, index.name}))
                index.columns << c.at(0).toString();
            out << index;
            described << engineName;
        }
    }
    QList<SchemaIndex> others;
    for (const EngineIndex &e : engine) {
        if (containsName(described, e.name) || e.onExpression || e.columns.isEmpty())
            continue;
        SchemaIndex index;
        const QString prefix = table + u'.';
        index.name = e.primaryKey ? QStringLiteral("PrimaryKey")
                     : e.name.startsWith(prefix, Qt::CaseInsensitive) ? e.name.mid(prefix.size())
                                                                      : e.name;
        index.primary = e.primaryKey;
        index.unique = e.unique;
        index.ignoreNulls = e.partial;
        index.columns = e.columns;
        others << index;
    }
    std::sort(others.begin(), others.end(),
              [](const SchemaIndex &a, const SchemaIndex &b) { return a.name < b.name; });
    return out + others;
}

SchemaTable describeTable(QSqlDatabase &db, const QString &name, bool catalog)
{
    SchemaTable table;
    table.name = name;
    QHash<QString, SchemaField> known;
    if (catalog)
        for (const QVariantList &row :
             queryRows(db,
                       QStringLiteral("SELECT Name, Type, Size, Attributes, AllowZeroLength, "
                                      "DefaultValue, Required FROM MSysSchemaFields WHERE "
                                      "lower(TableName) = lower(?)"),
                       {name}))
            known.insert(row.at(0).toString().toLower(), catalogField(row));
    for (const SchemaField &column : SqlDialect::of(db).columns(db, name)) {
        const auto it = known.constFind(column.name.toLower());
        table.fields << (it != known.constEnd() ? *it : column);
    }
    table.indexes = describeIndexes(db, name, catalog);
    return table;
}

// The foreign keys that the catalog's relations do not account for, as relations.
QList<SchemaRelation> foreignKeyRelations(QSqlDatabase &db, const QList<SchemaTable> &tables,
                                          const QList<SchemaRelation> &known)
{
    QList<SchemaRelation> out;
    QStringList taken;
    for (const SchemaRelation &r : known)
        taken << r.name;
    for (const SchemaTable &table : tables) {
        for (SchemaRelation r : SqlDialect::of(db).foreignKeys(db, table.name)) {
            const bool accounted = std::any_of(known.begin(), known.end(), [&](const auto &k) {
                if (!sameName(k.foreignTable, r.foreignTable) || !sameName(k.table, r.table) ||
                    k.fields.size() != r.fields.size())
                    return false;
                for (qsizetype i = 0; i < k.fields.size(); ++i)
                    if (!sameName(k.fields.at(i).name, r.fields.at(i).name) ||
                        !sameName(k.fields.at(i).foreignName, r.fields.at(i).foreignName))
                        return false;
                return true;
            });
            if (accounted)
                continue;
            // Named as the suite names a relation: the primary table, then the foreign one.
            r.name = r.table + r.foreignTable;
            if (containsName(taken, r.name)) {
                int n = 1;
                while (containsName(taken, r.name + u'_' + QString::number(n)))
                    ++n;
                r.name += u'_' + QString::number(n);
            }
            taken << r.name;
            out << r;
        }
    }
    return out;
}

// A table with its indexes, and its entries in the catalog when there is one; the table takes
// the next position of the catalog's list.
void createTable(QSqlDatabase &db, const SchemaTable &table, const QList<SchemaRelation> &relations,
                 bool catalog)
{
    const SqlDialect &dialect = SqlDialect::of(db);
    execute(db, createTableSql(dialect, table, relations));
    for (const SchemaIndex &index : table.indexes)
        execute(db, createIndexSql(dialect, table, index));
    if (!catalog)
        return;
    execute(db,
            QStringLiteral("INSERT INTO MSysSchemaTables (Position, Name) VALUES ((SELECT "
                           "COALESCE(MAX(Position), 0) + 1 FROM MSysSchemaTables), ?)"),
            {table.name});
    for (qsizetype f = 0; f < table.fields.size(); ++f) {
        const SchemaField &field = table.fields.at(f);
        execute(db,
                QStringLiteral("INSERT INTO MSysSchemaFields (TableName, Position, Name, Type, "
                               "Size, Attributes, AllowZeroLength, DefaultValue, Required) "
                               "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                {table.name, f + 1, field.name, field.type, field.size, field.attributes,
                 field.allowZeroLength, nonNull(field.defaultValue), field.required});
    }
    for (qsizetype i = 0; i < table.indexes.size(); ++i) {
        const SchemaIndex &index = table.indexes.at(i);
        execute(db,
                QStringLiteral("INSERT INTO MSysSchemaIndexes (TableName, Position, Name, "
                               "IgnoreNulls, IsPrimary, IsUnique) VALUES (?, ?, ?, ?, ?, ?)"),
                {table.name, i + 1, index.name, index.ignoreNulls, index.primary, index.unique});
        for (qsizetype c = 0; c < index.columns.size(); ++c)
            execute(db,
                    QStringLiteral("INSERT INTO MSysSchemaIndexColumns (TableName, IndexName, "
                                   "Position, FieldName) VALUES (?, ?, ?, ?)"),
                    {table.name, index.name, c + 1, index.columns.at(c)});
    }
}

} // namespace

bool SchemaCatalog::hasCatalog(QSqlDatabase &db)
{
    return hasTable(db, QStringLiteral("MSysSchemaFields"));
}

void SchemaCatalog::build(QSqlDatabase &db, const DatabaseSchema &schema)
{
    // The catalog's names are compared without regard to letter case: SQLite's collation says
    // so, a server's catalog queries compare them in lower case.
    const bool server = isPostgres(db);
    for (const char *sql : CatalogTables)
        execute(db, server ? QString::fromLatin1(sql).remove(QLatin1String(" COLLATE NOCASE"))
                           : QString::fromLatin1(sql));
    execute(db, QStringLiteral("INSERT INTO MSysSchemaProperties (Name, Value) VALUES (?, ?)"),
            {DatabaseNameProperty, schema.name});

    const QList<SchemaRelation> relations = namedRelations(schema.relations);
    for (qsizetype t = 0; t < schema.tables.size(); ++t)
        createTable(db, schema.tables.at(t), relations, true);
    for (qsizetype q = 0; q < schema.queries.size(); ++q) {
        const SchemaQuery &query = schema.queries.at(q);
        const bool view = createQuery(db, query);
        execute(db,
                QStringLiteral("INSERT INTO MSysSchemaQueries (Position, Name, SqlText, "
                               "MaxRecords, IsView) VALUES (?, ?, ?, ?, ?)"),
                {q + 1, query.name, query.sql, query.maxRecords, view});
    }
    for (qsizetype r = 0; r < relations.size(); ++r) {
        const SchemaRelation &relation = relations.at(r);
        execute(db,
                QStringLiteral("INSERT INTO MSysSchemaRelations (Position, Name, Attributes, "
                               "ForeignTable, TableName) VALUES (?, ?, ?, ?, ?)"),
                {r + 1, relation.name, relation.attributes, relation.foreignTable, relation.table});
        for (qsizetype f = 0; f < relation.fields.size(); ++f)
            execute(db,
                    QStringLiteral("INSERT INTO MSysSchemaRelationFields (RelationName, Position, "
                                   "FieldName, ForeignFieldName) VALUES (?, ?, ?, ?)"),
                    {relation.name, f + 1, relation.fields.at(f).name,
                     relation.fields.at(f).foreignName});
    }
}

DatabaseSchema SchemaCatalog::describe(QSqlDatabase &db, const QString &fallbackName)
{
    DatabaseSchema schema;
    const bool catalog = hasCatalog(db);
    schema.name = fallbackName;
    if (catalog) {
        const auto name = queryRows(db,
                               QStringLiteral("SELECT Value FROM MSysSchemaProperties WHERE "
                                              "Name = ?"),
                               {DatabaseNameProperty});
        if (!name.isEmpty() && !name.first().at(0).toString().isEmpty())
            schema.name = name.first().at(0).toString();
    }

    const SqlDialect &dialect = SqlDialect::of(db);
    QStringList engineTables;
    for (const QString &name : dialect.tables(db))
        if (!isSystemObjectName(name))
            engineTables << name;
    // Tables the catalog knows take its name (a server keeps names in lower case).
    QStringList ordered;
    if (catalog)
        for (const QVariantList &row :
             queryRows(db, QStringLiteral("SELECT Name FROM MSysSchemaTables ORDER BY Position")))
            if (containsName(engineTables, row.at(0).toString()) &&
                !containsName(ordered, row.at(0).toString()))
                ordered << row.at(0).toString();
    for (const QString &t : std::as_const(engineTables))
        if (!containsName(ordered, t))
            ordered << t;
    for (const QString &t : std::as_const(ordered))
        schema.tables << describeTable(db, t, catalog);

    QStringList queryNames;
    if (catalog)
        for (const QVariantList &row :
             queryRows(db, QStringLiteral("SELECT Name, SqlText, MaxRecords FROM MSysSchemaQueries "
                                     "ORDER BY Position"))) {
            schema.queries << SchemaQuery{row.at(0).toString(), row.at(1).toString(),
                                          row.at(2).toInt(), 0};
            queryNames << row.at(0).toString();
        }
    for (const auto &[name, select] : dialect.views(db))
        if (!containsName(queryNames, name) && !isSystemObjectName(name))
            schema.queries << SchemaQuery{name, select, 0, 0};

    if (catalog)
        for (const QVariantList &row :
             queryRows(db, QStringLiteral("SELECT Name, Attributes, ForeignTable, TableName FROM "
                                     "MSysSchemaRelations ORDER BY Position"))) {
            SchemaRelation r;
            r.name = row.at(0).toString();
            r.attributes = row.at(1).toInt();
            r.foreignTable = row.at(2).toString();
            r.table = row.at(3).toString();
            for (const QVariantList &f :
                 queryRows(db,
                      QStringLiteral("SELECT FieldName, ForeignFieldName FROM "
                                     "MSysSchemaRelationFields WHERE lower(RelationName) = "
                                     "lower(?) ORDER BY Position"),
                      {r.name}))
                r.fields << RelationField{f.at(0).toString(), f.at(1).toString()};
            schema.relations << r;
        }
    schema.relations << foreignKeyRelations(db, schema.tables, schema.relations);
    return schema;
}

bool SchemaCatalog::hasTable(QSqlDatabase &db, const QString &table)
{
    return containsName(SqlDialect::of(db).tables(db), table);
}

void SchemaCatalog::addTable(QSqlDatabase &db, const SchemaTable &table)
{
    createTable(db, table, {}, hasCatalog(db));
}

void SchemaCatalog::addField(QSqlDatabase &db, const QString &table, const SchemaField &field)
{
    const SqlDialect &dialect = SqlDialect::of(db);
    execute(db, QLatin1String("ALTER TABLE ") + dialect.identifier(table) +
                    QLatin1String(" ADD COLUMN ") + dialect.columnDefinition(field, false));
    if (!hasCatalog(db))
        return;
    execute(db,
            QStringLiteral("INSERT INTO MSysSchemaFields (TableName, Position, Name, Type, Size, "
                           "Attributes, AllowZeroLength, DefaultValue, Required) VALUES (?, "
                           "(SELECT COALESCE(MAX(Position), 0) + 1 FROM MSysSchemaFields WHERE "
                           "lower(TableName) = lower(?)), ?, ?, ?, ?, ?, ?, ?)"),
            {table, table, field.name, field.type, field.size, field.attributes,
             field.allowZeroLength, nonNull(field.defaultValue), field.required});
}

} // namespace pg::localdb
