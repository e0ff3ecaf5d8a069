#include "sqldialect.h"

#include "localdb/databaseconnection.h"
#include "localdb/postgresdialect.h"
#include "localdb/sqlitemapping.h"

#include "startup/dberror.h"

#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>

namespace pg::localdb {

namespace {

bool truth(const QVariant &value)
{
    return value.toLongLong() != 0;
}

// SQLite: the schema in sqlite_master and the pragma tables; its rowid identifies rows.
class SqliteDialect : public SqlDialect
{
public:
    QString identifier(const QString &name) const override { return sqlmap::quoteIdentifier(name); }
    QString columnDefinition(const SchemaField &field, bool inPrimaryIndex) const override
    {
        return sqlmap::columnDefinition(field, inPrimaryIndex);
    }
    QString rowIdentityColumn() const override { return QString(); }
    QString caseFreeText() const override { return QStringLiteral("TEXT COLLATE NOCASE"); }

    QStringList tables(QSqlDatabase &db) const override
    {
        QStringList out;
        for (const QVariantList &row : queryRows(
                 db, QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' ORDER "
                                    "BY rowid")))
            out << row.at(0).toString();
        return out;
    }

    QList<std::pair<QString, QString>> views(QSqlDatabase &db) const override
    {
        QList<std::pair<QString, QString>> out;
        for (const QVariantList &row :
             queryRows(db, QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type = 'view' "
                                          "ORDER BY name")))
            out.append({row.at(0).toString(), sqlmap::viewText(row.at(1).toString())});
        return out;
    }

    QList<SchemaField> columns(QSqlDatabase &db, const QString &table) const override
    {
        QList<SchemaField> out;
        for (const QVariantList &row :
             queryRows(db,
                       QStringLiteral("SELECT name, type, \"notnull\", dflt_value FROM "
                                      "pragma_table_info(?) ORDER BY cid"),
                       {table}))
            out << sqlmap::fieldFromColumn(row.at(0).toString(), row.at(1).toString(),
                                           truth(row.at(2)), row.at(3).toString());
        return out;
    }

    QList<EngineIndex> indexes(QSqlDatabase &db, const QString &table) const override
    {
        QList<EngineIndex> out;
        for (const QVariantList &row :
             queryRows(db,
                       QStringLiteral("SELECT name, \"unique\", origin, partial FROM "
                                      "pragma_index_list(?)"),
                       {table})) {
            EngineIndex index;
            index.name = row.at(0).toString();
            index.unique = truth(row.at(1));
            index.primaryKey = row.at(2).toString() == QLatin1String("pk");
            index.partial = truth(row.at(3));
            for (const QVariantList &c : queryRows(
                     db, QStringLiteral("SELECT name FROM pragma_index_info(?) ORDER BY seqno"),
                     {index.name})) {
                index.onExpression = index.onExpression || c.at(0).isNull();
                index.columns << c.at(0).toString();
            }
            out << index;
        }
        return out;
    }

    QList<SchemaRelation> foreignKeys(QSqlDatabase &db, const QString &table) const override
    {
        QMap<int, SchemaRelation> byId;
        for (const QVariantList &row :
             queryRows(db,
                       QStringLiteral("SELECT id, \"table\", \"from\", \"to\", on_update, "
                                      "on_delete FROM pragma_foreign_key_list(?) ORDER BY id, "
                                      "seq"),
                       {table})) {
            SchemaRelation &r = byId[row.at(0).toInt()];
            r.foreignTable = table;
            r.table = row.at(1).toString();
            QString field = row.at(3).toString();
            if (row.at(3).isNull()) {
                // A reference to the primary key without naming it: the key's columns in order.
                const QList<QVariantList> pk =
                    queryRows(db,
                              QStringLiteral("SELECT name FROM pragma_table_info(?) WHERE pk > 0 "
                                             "ORDER BY pk"),
                              {r.table});
                if (r.fields.size() < pk.size())
                    field = pk.at(r.fields.size()).at(0).toString();
            }
            r.fields << RelationField{field, row.at(2).toString()};
            r.attributes = 0;
            if (row.at(4).toString() == QLatin1String("CASCADE"))
                r.attributes |= DaoRelationUpdateCascade;
            if (row.at(5).toString() == QLatin1String("CASCADE"))
                r.attributes |= DaoRelationDeleteCascade;
        }
        return byId.values();
    }
};

} // namespace

const SqlDialect &SqlDialect::of(const QSqlDatabase &db)
{
    static const SqliteDialect sqlite;
    return isPostgres(db) ? postgresDialect() : static_cast<const SqlDialect &>(sqlite);
}

QSqlQuery runQuery(QSqlDatabase &db, const QString &sql, const QVariantList &values)
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        throw databaseError(query.lastError());
    for (const QVariant &value : values)
        query.addBindValue(value);
    if (!query.exec())
        throw databaseError(query.lastError());
    return query;
}

QList<QVariantList> queryRows(QSqlDatabase &db, const QString &sql, const QVariantList &values)
{
    QSqlQuery query = runQuery(db, sql, values);
    QList<QVariantList> out;
    const int columns = query.record().count();
    while (query.next()) {
        QVariantList row;
        for (int i = 0; i < columns; ++i)
            row << query.value(i);
        out << row;
    }
    return out;
}

} // namespace pg::localdb
