#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace pg::test {

// What one run of pagamenti-cli left: its exit code (-1 when it did not end normally) and
// what it wrote.
struct CliRun
{
    int exitCode = -1;
    QString out;
    QString err;
};

// The environment of a run on the installation whose ORVIDA.INI is in iniDir (the one the
// user's environment names when empty), on the embedded archive store whatever the
// environment asks.
QProcessEnvironment cliEnvironment(const QString &iniDir);

// pagamenti-cli of this build, run as a process of its own, as administrators and scripts
// run it.
CliRun runCli(const QStringList &arguments, const QProcessEnvironment &environment);
CliRun runCli(const QStringList &arguments, const QString &iniDir);

// The rows of a query on the local database ("Pagame.db") found below iniDir, as the command
// line left it; and the first of them, empty when there is none.
QList<QVariantList> localDatabaseRows(const QString &iniDir, const QString &sql);
QVariantList localDatabaseRow(const QString &iniDir, const QString &sql);

} // namespace pg::test
