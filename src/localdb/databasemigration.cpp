#include "databasemigration.h"

#include "localdb/batchstatement.h"
#include "localdb/databaseconnection.h"
#include "localdb/localdatabase.h"
#include "localdb/openerror.h"
#include "localdb/rowinserter.h"
#include "localdb/schemacatalog.h"
#include "localdb/schemafile.h"
#include "localdb/shippedschema.h"
#include "localdb/sqldialect.h"

#include "core/apperror.h"
#include "core/money.h"
#include "core/prompter.h"
#include "startup/envvar.h"

#include <QDir>
#include <QFileInfo>

namespace pg::localdb {

namespace {

const QString CrLf = QStringLiteral("\r\n");

bool isAmount(const SchemaField &field)
{
    return field.type == DaoDouble || field.type == DaoCurrency || field.type == DaoSingle ||
           field.type == DaoDecimal;
}

// What a table holds, told the same way on both sides: its rows, and the sum of each amount
// column in cents.
struct TableFigures
{
    qint64 rows = 0;
    QList<qint64> sums;

    bool operator==(const TableFigures &) const = default;
};

TableFigures figuresOf(QSqlDatabase &db, const SchemaTable &table)
{
    QStringList parts{QStringLiteral("COUNT(*)")};
    QList<const SchemaField *> amounts;
    for (const SchemaField &field : table.fields)
        if (isAmount(field)) {
            parts << QStringLiteral("SUM(%1)").arg(field.name);
            amounts << &field;
        }
    BatchStatement query(db, QStringLiteral("SELECT ") + parts.join(QStringLiteral(", ")) +
                                 QStringLiteral(" FROM ") + table.name);
    TableFigures figures;
    if (query.next()) {
        figures.rows = query.value(0).toLongLong();
        for (int i = 0; i < amounts.size(); ++i)
            figures.sums << money::toCents(query.real(i + 1));
    }
    return figures;
}

QString figuresText(const TableFigures &figures)
{
    QString text = QStringLiteral("%1 righe").arg(figures.rows);
    qint64 total = 0;
    for (qint64 cents : figures.sums)
        total += cents;
    if (!figures.sums.isEmpty())
        text += QStringLiteral(", somma degli importi %1").arg(double(total) / 100.0, 0, 'f', 2);
    return text;
}

void copyTable(QSqlDatabase &from, QSqlDatabase &to, const SchemaTable &table)
{
    QStringList columns;
    for (const SchemaField &field : table.fields)
        columns << field.name;
    BatchStatement read(from, QStringLiteral("SELECT ") + columns.join(QStringLiteral(", ")) +
                                  QStringLiteral(" FROM ") + table.name +
                                  QStringLiteral(" ORDER BY rowid"));
    RowInserter write(to, table.name, columns);
    while (read.next()) {
        QVariantList values;
        values.reserve(columns.size());
        for (int i = 0; i < columns.size(); ++i)
            values << (read.isNull(i) ? QVariant() : read.value(i));
        write.add(values);
    }
    write.finish();
}

} // namespace

bool DatabaseMigration::migrate(const QString &sourceFile, const DatabaseLocation &target,
                                QStringList *report)
{
    const QString file = QDir::toNativeSeparators(sourceFile);
    if (!QFileInfo(sourceFile).isFile()) {
        msgBox(QStringLiteral("Il database %1 non esiste: non c'è nulla da trasferire.").arg(file),
               Buttons::Ok, Icon::Critical);
        return false;
    }
    DatabaseConnection source(sourceFile);
    if (!source.isOpen()) {
        msgBox(databaseOpenError(source).description(), Buttons::Ok, Icon::Critical);
        return false;
    }
    DatabaseConnection server(target);
    if (!server.isOpen()) {
        msgBox(databaseOpenError(server).description(), Buttons::Ok, Icon::Critical);
        return false;
    }
    const DatabaseSchema schema = parseSchemaDescription(shippedSchemaDescription());
    try {
        const QString version = ReadEnvVar(source.database(), VersionVariable, QString());
        if (version != CurrentVersion) {
            msgBox(QStringLiteral("Il database %1 è della versione %2: avviare una volta il "
                                  "programma su questa azienda, che lo porta alla versione %3, "
                                  "poi ripetere il trasferimento.")
                       .arg(file, version.isEmpty() ? QStringLiteral("sconosciuta") : version,
                            CurrentVersion),
                   Buttons::Ok, Icon::Exclamation);
            return false;
        }
        for (const SchemaTable &table : schema.tables)
            if (!SchemaCatalog::hasTable(source.database(), table.name)) {
                msgBox(QStringLiteral("Il database %1 non ha la tabella %2: avviare una volta il "
                                      "programma su questa azienda, poi ripetere il "
                                      "trasferimento.")
                           .arg(file, table.name),
                       Buttons::Ok, Icon::Exclamation);
                return false;
            }
        QSqlDatabase &db = server.database();
        const QStringList existing = SqlDialect::of(db).tables(db);
        if (!existing.isEmpty()) {
            msgBox(QStringLiteral("Il database %1 del server non è vuoto (contiene %2 tabelle): il "
                                  "trasferimento va fatto in un database nuovo, vuoto.")
                       .arg(target.displayName())
                       .arg(existing.size()),
                   Buttons::Ok, Icon::Exclamation);
            return false;
        }
        Transaction transaction(db);
        SchemaCatalog::build(db, schema);
        QStringList lines;
        for (const SchemaTable &table : schema.tables) {
            copyTable(source.database(), db, table);
            const TableFigures before = figuresOf(source.database(), table);
            const TableFigures after = figuresOf(db, table);
            if (before != after) {
                msgBox(QStringLiteral("Trasferimento annullato: la tabella %1 ha %2 nel file e "
                                      "%3 sul server. Il server è rimasto vuoto.")
                           .arg(table.name, figuresText(before), figuresText(after)),
                       Buttons::Ok, Icon::Critical);
                return false;
            }
            lines << QStringLiteral("%1: %2, uguali nel file e sul server")
                         .arg(table.name, figuresText(after));
        }
        transaction.commit();
        *report = lines;
        return true;
    } catch (const SchemaError &error) {
        msgBox(error.message());
        return false;
    } catch (const AppError &error) {
        msgBox(QStringLiteral("Trasferimento non riuscito, il server è rimasto vuoto.") + CrLf +
                   error.description(),
               Buttons::Ok, Icon::Critical);
        return false;
    }
}

} // namespace pg::localdb
