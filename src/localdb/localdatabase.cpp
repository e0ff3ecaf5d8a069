#include "localdatabase.h"

#include "localdb/databaseaccess.h"
#include "localdb/databaseconnection.h"
#include "localdb/openerror.h"
#include "localdb/schemacatalog.h"
#include "localdb/schemacompleteness.h"
#include "localdb/schemafile.h"
#include "localdb/shippedschema.h"
#include "localdb/sqldialect.h"

#include "core/apperror.h"
#include "core/prompter.h"
#include "startup/companyenvironment.h"
#include "startup/paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

namespace pg::localdb {

namespace {

const QString CrLf = QStringLiteral("\r\n");

QString databasePath(const QString &directory, const QString &fileName)
{
    return paths::withTrailingSeparator(directory) + fileName;
}

void cannotCreate(const QString &path, const QString &why)
{
    msgBox(
        QStringLiteral("Impossibile creare il database %1.").arg(QDir::toNativeSeparators(path)) +
        CrLf + why);
}

// What a database file leaves beside it while it is open.
void removeCompanions(const QString &path)
{
    for (const char *suffix : {"-wal", "-shm", "-journal"})
        QFile::remove(path + QLatin1String(suffix));
}

// The schema description file of the installation, read whole; nothing after a message when it
// is missing or not correct.
std::optional<DatabaseSchema> shippedSchemaFile()
{
    const QString schemaPath = paths::resolveCase(ProgramDir() + SchemaFileName);
    QFile schemaFile(schemaPath);
    if (!QFileInfo(schemaPath).isFile() || !schemaFile.open(QIODevice::ReadOnly)) {
        msgBox(QStringLiteral("Errore d'installazione. Non è stato trovato il file QXARTRAC.DAT "
                              "nella cartella d'installazione."));
        return std::nullopt;
    }
    try {
        // Only a whole file makes a database: one cut short (at a table's end, say) would make
        // an incomplete one that every later start would take as it is.
        DatabaseSchema schema = parseSchemaDescription(schemaFile.readAll());
        requireProgramSchema(schema, parseSchemaDescription(shippedSchemaDescription()));
        return schema;
    } catch (const SchemaError &error) {
        msgBox(error.message());
        return std::nullopt;
    }
}

// The file a new database is built in, beside it: made as any new file of the directory is,
// with the permissions the directory and the umask give (a temporary file would be readable
// by its creator alone), so that the other accounts the administrator allows can open the
// database. False, with the reason, when it cannot be made.
bool newFileBeside(const QString &target, QString *path, QString *why)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QString candidate =
            target + QStringLiteral(".%1").arg(QRandomGenerator::global()->bounded(1000000), 6, 10,
                                               QLatin1Char('0'));
        QFile file(candidate);
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            *path = candidate;
            return true;
        }
        if (!file.exists()) {
            *why = file.errorString();
            return false;
        }
    }
    *why = QStringLiteral("Impossibile creare un file nella cartella.");
    return false;
}

// A database being built that will not be one, with what it left beside it.
void removeBuilding(const QString &path)
{
    removeCompanions(path);
    QFile::remove(path);
}

bool hasCompanions(const QString &path)
{
    for (const char *suffix : {"-wal", "-journal"})
        if (QFileInfo::exists(path + QLatin1String(suffix)))
            return true;
    return false;
}

} // namespace

QString localDatabasePath()
{
    return CompanyArchiveDir() + FileName;
}

std::optional<DatabaseLocation> companyDatabase()
{
    QString error;
    const std::optional<DatabaseLocation> location =
        DatabaseLocation::ofCompany(CompanyArchiveDir(), &error);
    if (!location)
        msgBox(error, Buttons::Ok, Icon::Critical);
    return location;
}

bool databaseExists(const DatabaseLocation &location)
{
    if (!location.isPostgres())
        return QFileInfo(location.filePath).isFile();
    DatabaseConnection connection(location);
    return connection.isOpen() &&
           SchemaCatalog::hasTable(connection.database(), QStringLiteral("_tblSys_EnvVar"));
}

bool CreateDatabase(const DatabaseLocation &location)
{
    if (!location.isPostgres()) {
        const QFileInfo file(location.filePath);
        return CreateDatabaseFromSchema(file.absolutePath(), file.fileName());
    }
    std::optional<DatabaseSchema> schema = shippedSchemaFile();
    if (!schema)
        return false;
    DatabaseConnection connection(location);
    if (!connection.isOpen()) {
        msgBox(databaseOpenError(connection).description(), Buttons::Ok, Icon::Critical);
        return false;
    }
    QSqlDatabase &db = connection.database();
    try {
        const QStringList tables = SqlDialect::of(db).tables(db);
        if (!tables.isEmpty()) {
            cannotCreate(location.displayName(),
                         QStringLiteral("Il database contiene già %1 tabelle che non sono del "
                                        "programma (per esempio %2): il programma usa solo un "
                                        "database vuoto, creato apposta.")
                             .arg(tables.size())
                             .arg(tables.first()));
            return false;
        }
        // A server creates tables inside a transaction: a failure leaves the database empty.
        Transaction transaction(db);
        SchemaCatalog::build(db, *schema);
        transaction.commit();
    } catch (const SchemaError &error) {
        msgBox(error.message());
        return false;
    } catch (const AppError &error) {
        cannotCreate(location.displayName(), error.description());
        return false;
    }
    return true;
}

bool CreateDatabaseFromSchema(const QString &directory, const QString &fileName)
{
    const std::optional<DatabaseSchema> schema = shippedSchemaFile();
    if (!schema)
        return false;

    const QString target = databasePath(directory, fileName);
    if (QFileInfo::exists(target)) {
        cannotCreate(target, QStringLiteral("Il file esiste già."));
        return false;
    }
    // Built aside and moved into place whole: a failure leaves no database behind.
    QString building;
    QString why;
    if (!newFileBeside(target, &building, &why)) {
        cannotCreate(target, why);
        return false;
    }
    try {
        DatabaseConnection connection(building);
        if (!connection.isOpen())
            throw databaseOpenError(connection);
        Transaction transaction(connection.database());
        SchemaCatalog::build(connection.database(), *schema);
        transaction.commit();
    } catch (const SchemaError &error) {
        removeBuilding(building);
        msgBox(error.message());
        return false;
    } catch (const AppError &error) {
        removeBuilding(building);
        cannotCreate(target, error.description());
        return false;
    }
    // The last connection's close folds the log back into the file; the file alone is the
    // database only when nothing is left beside it.
    if (hasCompanions(building)) {
        removeBuilding(building);
        cannotCreate(target, QStringLiteral("Il registro delle modifiche non è stato chiuso."));
        return false;
    }
    removeCompanions(building);
    QFile built(building);
    if (!built.rename(target)) {
        const QString error = built.errorString();
        removeBuilding(building);
        cannotCreate(target, error);
        return false;
    }
    return true;
}

} // namespace pg::localdb
