#include "envvar.h"

#include "dberror.h"

#include <QSqlQuery>
#include <QVariant>

namespace pg {

namespace {

QSqlQuery prepared(QSqlDatabase &db, const QString &sql)
{
    QSqlQuery query(db);
    if (!query.prepare(sql))
        throw databaseError(query.lastError());
    return query;
}

void run(QSqlQuery &query)
{
    if (!query.exec())
        throw databaseError(query.lastError());
}

} // namespace

QString ReadEnvVar(QSqlDatabase &db, const QString &name, const QString &defaultValue)
{
    QSqlQuery query = prepared(
        db, QStringLiteral("SELECT Value FROM _tblSys_EnvVar WHERE Var = ? ORDER BY rowid LIMIT 1"));
    query.addBindValue(name);
    run(query);
    if (!query.next() || query.value(0).isNull())
        return defaultValue;
    return query.value(0).toString();
}

void WriteEnvVar(QSqlDatabase &db, const QString &name, const QString &value)
{
    QSqlQuery find = prepared(
        db, QStringLiteral("SELECT rowid FROM _tblSys_EnvVar WHERE Var = ? ORDER BY rowid LIMIT 1"));
    find.addBindValue(name);
    run(find);
    if (find.next()) {
        const QVariant rowid = find.value(0);
        find.finish();
        QSqlQuery update =
            prepared(db, QStringLiteral("UPDATE _tblSys_EnvVar SET Value = ? WHERE rowid = ?"));
        update.addBindValue(value);
        update.addBindValue(rowid);
        run(update);
        return;
    }
    find.finish();
    QSqlQuery insert =
        prepared(db, QStringLiteral("INSERT INTO _tblSys_EnvVar (Var, Value) VALUES (?, ?)"));
    insert.addBindValue(name);
    insert.addBindValue(value);
    run(insert);
}

} // namespace pg
