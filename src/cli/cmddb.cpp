// pagamenti-cli db migra --verso SERVIZIO
#include "commandargs.h"
#include "commandcontext.h"
#include "commands.h"

#include "localdb/databasemigration.h"
#include "localdb/localdatabase.h"
#include "startup/companyenvironment.h"

#include <QDir>

namespace pg::cli {

int runDb(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {QStringLiteral("--verso")}, {}, &error))
        return context.usageError(error);
    if (args.positional() != QStringList{QStringLiteral("migra")})
        return context.usageError(QStringLiteral("Il comando db conosce solo \"migra\"."));
    const QString service = args.value(QStringLiteral("--verso")).trimmed();
    if (service.isEmpty())
        return context.usageError(
            QStringLiteral("Indicare con --verso il servizio PostgreSQL (di pg_service.conf) "
                           "del database di destinazione."));

    localdb::DatabaseLocation target;
    target.engine = localdb::DatabaseLocation::Engine::PostgreSQL;
    target.service = service;
    const QString source = CompanyArchiveDir() + localdb::FileName;
    QStringList report;
    if (!localdb::DatabaseMigration::migrate(source, target, &report))
        return ExitFailure;
    QTextStream &out = context.out();
    for (const QString &line : std::as_const(report))
        out << line << '\n';
    out << QStringLiteral("Trasferimento completato. Il file %1 non è stato modificato.\n"
                          "Per usare il server, scrivere nel file %2 di questa azienda:\n"
                          "  [Database]\n"
                          "  Engine=PostgreSQL\n"
                          "  Service=%3\n")
               .arg(QDir::toNativeSeparators(source),
                    QDir::toNativeSeparators(CompanyArchiveDir() + localdb::SettingsFileName),
                    service);
    return ExitSuccess;
}

} // namespace pg::cli
