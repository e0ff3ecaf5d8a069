#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

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

} // namespace pg::test
