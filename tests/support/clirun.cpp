#include "clirun.h"

#include <QDirIterator>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

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
    QString path;
    QDirIterator it(iniDir, {QStringLiteral("Pagame.db")}, QDir::Files,
                    QDirIterator::Subdirectories);
    if (it.hasNext())
        path = it.next();
    QList<QVariantList> rows;
    {
        QSqlDatabase db =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("check"));
        db.setDatabaseName(path);
        if (!path.isEmpty() && db.open()) {
            QSqlQuery query(db);
            if (query.exec(sql))
                while (query.next()) {
                    QVariantList values;
                    for (int i = 0; i < query.record().count(); ++i)
                        values << query.value(i);
                    rows << values;
                }
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("check"));
    return rows;
}

QVariantList localDatabaseRow(const QString &iniDir, const QString &sql)
{
    const QList<QVariantList> rows = localDatabaseRows(iniDir, sql);
    return rows.isEmpty() ? QVariantList() : rows.first();
}

} // namespace pg::test
