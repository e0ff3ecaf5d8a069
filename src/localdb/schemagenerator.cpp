// GenerateSchemaFile: the description of an existing local database, in the schema file's form.
#include "localdb/localdatabase.h"

#include "localdb/databaseconnection.h"
#include "localdb/openerror.h"
#include "localdb/schemacatalog.h"
#include "localdb/schemafile.h"

#include "core/apperror.h"
#include "core/prompter.h"
#include "startup/companyenvironment.h"
#include "startup/envvar.h"
#include "startup/paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pg::localdb {

namespace {

AppError fileError(const QFile &file)
{
    return AppError(AppError::PathFileAccess,
                    QDir::toNativeSeparators(file.fileName()) + QStringLiteral(": ") +
                        file.errorString(),
                    QStringLiteral("Pagamenti"));
}

DatabaseSchema describeDatabase(const DatabaseLocation &location)
{
    DatabaseConnection connection(location);
    if (!connection.isOpen())
        throw databaseOpenError(connection);
    const QString version = ReadEnvVar(connection.database(), VersionVariable, CurrentVersion);
    DatabaseSchema schema =
        SchemaCatalog::describe(connection.database(),
                                location.isPostgres()
                                    ? (location.database.isEmpty() ? location.service
                                                                   : location.database)
                                    : QFileInfo(location.filePath).completeBaseName());
    schema.version = version;
    return schema;
}

// The new file is written whole under a name of its own before the old one goes.
void replaceFile(const QString &path, const QByteArray &bytes)
{
    QFile fresh(path + QStringLiteral("_new"));
    if (!fresh.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw fileError(fresh);
    if (fresh.write(bytes) != bytes.size() || !fresh.flush())
        throw fileError(fresh);
    fresh.close();
    QFile old(path);
    if (old.exists() && !old.remove())
        throw fileError(old);
    if (!fresh.rename(path))
        throw fileError(fresh);
}

} // namespace

void GenerateSchemaFile(const QString &directory, const QString &fileName)
{
    GenerateSchemaFile(DatabaseLocation::file(paths::withTrailingSeparator(directory) + fileName));
}

void GenerateSchemaFile(const DatabaseLocation &location)
{
    if (!databaseExists(location))
        return;
    try {
        const DatabaseSchema schema = describeDatabase(location);
        replaceFile(ProgramDir() + GeneratedSchemaFileName, writeSchemaDescription(schema));
    } catch (const AppError &error) {
        msgBox(
            QStringLiteral("Errore non previsto durante la generazione del file QXARTRAC.DAT. ") +
            QString::number(error.number()) + QStringLiteral(" - ") + error.description());
    }
}

} // namespace pg::localdb
