#include "localdatabase.h"

#include "localdb/databaseconnection.h"
#include "localdb/openerror.h"
#include "localdb/schemacatalog.h"
#include "localdb/schemacompleteness.h"
#include "localdb/schemafile.h"
#include "localdb/shippedschema.h"

#include "core/apperror.h"
#include "core/prompter.h"
#include "startup/companyenvironment.h"
#include "startup/paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

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

bool CreateDatabaseFromSchema(const QString &directory, const QString &fileName)
{
    const QString schemaPath = paths::resolveCase(ProgramDir() + SchemaFileName);
    QFile schemaFile(schemaPath);
    if (!QFileInfo(schemaPath).isFile() || !schemaFile.open(QIODevice::ReadOnly)) {
        msgBox(QStringLiteral("Errore d'installazione. Non è stato trovato il file QXARTRAC.DAT "
                              "nella cartella d'installazione."));
        return false;
    }
    DatabaseSchema schema;
    try {
        schema = parseSchemaDescription(schemaFile.readAll());
        requireProgramSchema(schema, parseSchemaDescription(shippedSchemaDescription()));
    } catch (const SchemaError &error) {
        msgBox(error.message());
        return false;
    }

    const QString target = databasePath(directory, fileName);
    if (QFileInfo::exists(target)) {
        cannotCreate(target, QStringLiteral("Il file esiste già."));
        return false;
    }
    // Built aside and moved into place whole: a failure leaves no database behind.
    QTemporaryFile temporary(target + QStringLiteral(".XXXXXX"));
    if (!temporary.open()) {
        cannotCreate(target, temporary.errorString());
        return false;
    }
    temporary.close();
    const QString building = temporary.fileName();
    try {
        DatabaseConnection connection(building);
        if (!connection.isOpen())
            throw databaseOpenError(connection);
        Transaction transaction(connection.database());
        SchemaCatalog::build(connection.database(), schema);
        transaction.commit();
    } catch (const SchemaError &error) {
        removeCompanions(building);
        msgBox(error.message());
        return false;
    } catch (const AppError &error) {
        removeCompanions(building);
        cannotCreate(target, error.description());
        return false;
    }
    // The last connection's close folds the log back into the file; the file alone is the
    // database only when nothing is left beside it.
    if (hasCompanions(building)) {
        removeCompanions(building);
        cannotCreate(target, QStringLiteral("Il registro delle modifiche non è stato chiuso."));
        return false;
    }
    removeCompanions(building);
    if (!temporary.rename(target)) {
        cannotCreate(target, temporary.errorString());
        return false;
    }
    temporary.setAutoRemove(false);
    return true;
}

} // namespace pg::localdb
