// CheckDatabaseVersion and UpgradeTo060701: the version of the local database and the one
// conversion the program knows.
#include "localdb/localdatabase.h"

#include "localdb/databaseconnection.h"
#include "localdb/openerror.h"
#include "localdb/schemacatalog.h"
#include "localdb/schemafile.h"
#include "localdb/shippedschema.h"

#include "core/apperror.h"
#include "core/prompter.h"
#include "startup/dberror.h"
#include "startup/envvar.h"

#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>

namespace pg::localdb {

namespace {

const QString CrLf = QStringLiteral("\r\n");

constexpr int EngineBusy = 5;   // SQLITE_BUSY: another connection holds the file
constexpr int EngineLocked = 6; // SQLITE_LOCKED

void showUnexpected(const AppError &error)
{
    msgBox(QStringLiteral("Errore non previsto durante la conversione dell'archivio.") + CrLf +
           QStringLiteral("Errore: ") + QString::number(error.number()) + QStringLiteral(" - ") +
           error.description());
}

// The conversion applies to the company's database file only, whatever the letter case of
// its name.
bool isLocalDatabaseFile(const QString &fileName)
{
    return QFileInfo(fileName).fileName().compare(FileName, Qt::CaseInsensitive) == 0;
}

void execute(QSqlDatabase &db, const QString &sql)
{
    QSqlQuery query(db);
    if (!query.exec(sql))
        throw databaseError(query.lastError());
}

SchemaField amountInDistinta(const QString &name)
{
    SchemaField field;
    field.name = name;
    field.type = DaoDouble;
    field.size = 8;
    field.attributes = DaoFixedField;
    return field;
}

} // namespace

bool CheckDatabaseVersion(const QString &fileName)
{
    return CheckDatabaseVersion(DatabaseLocation::file(fileName));
}

bool CheckDatabaseVersion(const DatabaseLocation &location)
{
    // The conversion and the tables added apply to the company's own database only: its file
    // "Pagame.db" whatever the letter case of its name, or its database on the server.
    const bool ours = location.isPostgres() || isLocalDatabaseFile(location.filePath);
    try {
        bool convert = false;
        {
            DatabaseConnection connection(location);
            if (!connection.isOpen())
                throw databaseOpenError(connection);
            QSqlDatabase &db = connection.database();
            QString version = ReadEnvVar(db, VersionVariable, QString());
            if (version.isEmpty()) {
                // A database without a version is taken as current and stamped.
                WriteEnvVar(db, VersionVariable, CurrentVersion);
                version = ReadEnvVar(db, VersionVariable, QString());
            }
            convert = ours && version == PreviousVersion;
            if (version.compare(CurrentVersion) > 0 && version.size() == CurrentVersion.size())
                msgBox(QStringLiteral("Il database %1 è della versione %2, più recente di quella "
                                      "di questo programma (%3): aggiornare il programma su "
                                      "questo computer.")
                           .arg(connection.filePath(), version, CurrentVersion),
                       Buttons::Ok, Icon::Exclamation);
        }
        if (convert) {
            if (!UpgradeTo060701(location))
                endProcess(1);
            DatabaseConnection reopened(location);
            if (!reopened.isOpen())
                throw databaseOpenError(reopened);
        }
        if (ours)
            AddMissingTables(location);
        return true;
    } catch (const AppError &error) {
        showUnexpected(error);
        return false;
    }
}

void AddMissingTables(const QString &fileName)
{
    AddMissingTables(DatabaseLocation::file(fileName));
}

void AddMissingTables(const DatabaseLocation &location)
{
    const DatabaseSchema schema = parseSchemaDescription(shippedSchemaDescription());
    DatabaseConnection connection(location);
    if (!connection.isOpen())
        throw databaseOpenError(connection);
    QSqlDatabase &db = connection.database();
    QList<SchemaTable> missing;
    for (const SchemaTable &table : schema.tables)
        if (!SchemaCatalog::hasTable(db, table.name))
            missing << table;
    if (missing.isEmpty())
        return;
    Transaction transaction(db);
    for (const SchemaTable &table : std::as_const(missing))
        SchemaCatalog::addTable(db, table);
    transaction.commit();
}

bool UpgradeTo060701(const QString &fileName)
{
    return UpgradeTo060701(DatabaseLocation::file(fileName));
}

bool UpgradeTo060701(const DatabaseLocation &location)
{
    std::unique_ptr<DatabaseConnection> connection;
    for (;;) {
        connection =
            std::make_unique<DatabaseConnection>(location, DatabaseConnection::Mode::Exclusive);
        if (connection->isOpen())
            break;
        const int code = connection->errorCode();
        const AppError error = databaseOpenError(*connection);
        connection.reset();
        if (code != EngineBusy && code != EngineLocked) {
            showUnexpected(error);
            return false;
        }
        const Answer answer =
            msgBox(QStringLiteral("La conversione non può avere inizio fintantoché l'archivo è in "
                                  "uso da altri utenti o programmi.") +
                       CrLf + QStringLiteral("Chiudere tutte le sessioni e riprovare."),
                   Buttons::OkCancel, Icon::Exclamation, QStringLiteral("Conversione archivio"));
        if (answer != Answer::Ok)
            return false;
    }

    QSqlDatabase &db = connection->database();
    try {
        Transaction transaction(db);
        const QStringList tables{QStringLiteral("TB_RIGHE"), QStringLiteral("TB_RIGHE_RAGG")};
        for (const QString &table : tables) {
            SchemaCatalog::addField(db, table,
                                    amountInDistinta(QStringLiteral("val_imp_indist_eur")));
            SchemaCatalog::addField(db, table,
                                    amountInDistinta(QStringLiteral("val_imp_indist_val")));
        }
        // Every row already in a distinta has its residual there.
        execute(db, QStringLiteral("UPDATE TB_RIGHE SET val_imp_indist_eur = val_imp_residuo_eur, "
                                   "val_imp_indist_val = val_imp_residuo_val"));
        execute(db,
                QStringLiteral("UPDATE TB_RIGHE_RAGG SET val_imp_indist_eur = "
                               "val_imp_residuo_eur, val_imp_indist_val = val_imp_residuo_val"));
        WriteEnvVar(db, VersionVariable, CurrentVersion);
        transaction.commit();
    } catch (const AppError &error) {
        msgBox(QStringLiteral("Il database non è stato aggiornato alla versione 06.07.01 e non è "
                              "possibile continuare. Descrizione errore:") +
                   CrLf + error.description(),
               Buttons::Ok, Icon::Exclamation,
               QStringLiteral("E' fallita la procedura di Aggiornamento Database."));
        return false;
    }
    return true;
}

} // namespace pg::localdb
