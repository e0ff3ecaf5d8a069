#include "clirun.h"

#include "localdb/databaseconnection.h"
#include "localdb/localdatabase.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QSqlQuery>
#include <QSqlRecord>

#include <optional>

namespace pg::test {

QProcessEnvironment cliEnvironment(const QString &iniDir)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("PAGAMENTI_RECORD_MANAGER"));
    env.remove(QStringLiteral("ORVIDA_INI_DIR"));
    if (!iniDir.isEmpty())
        env.insert(QStringLiteral("ORVIDA_INI_DIR"), iniDir);
    return env;
}

CliRun runCli(const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/pagamenti-cli"), arguments);
    CliRun run;
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return run;
    run.exitCode = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

CliRun runCli(const QStringList &arguments, const QString &iniDir)
{
    return runCli(arguments, cliEnvironment(iniDir));
}

QList<QVariantList> localDatabaseRows(const QString &iniDir, const QString &sql)
{
    // The company's Pagame.ini names a server; otherwise its Pagame.db is the database.
    std::optional<localdb::DatabaseLocation> location;
    for (const QString &name : {localdb::SettingsFileName, localdb::FileName}) {
        QDirIterator it(iniDir, {name}, QDir::Files, QDirIterator::Subdirectories);
        if (!location && it.hasNext())
            location = localdb::DatabaseLocation::ofCompany(QFileInfo(it.next()).absolutePath(),
                                                            nullptr);
    }
    QList<QVariantList> rows;
    if (!location)
        return rows;
    DatabaseConnection connection(*location);
    QSqlQuery query(connection.database());
    if (connection.isOpen() && query.exec(sql))
        while (query.next()) {
            QVariantList values;
            for (int i = 0; i < query.record().count(); ++i)
                values << query.value(i);
            rows << values;
        }
    return rows;
}

QVariantList localDatabaseRow(const QString &iniDir, const QString &sql)
{
    const QList<QVariantList> rows = localDatabaseRows(iniDir, sql);
    return rows.isEmpty() ? QVariantList() : rows.first();
}

} // namespace pg::test
