#pragma once

#include <QStringList>
#include <QTextStream>

namespace pg::cli {

// pagamenti-cli: reads the global options (--yes, --help), finds the command in the command
// table, resolves the suite's company environment for the commands that work on it, as the
// desktop program does at start-up, and runs the command. Messages and questions go to
// standard error through the standard-error prompter; --yes answers the questions Yes.
class CliApplication
{
public:
    CliApplication(QTextStream &out, QTextStream &err);

    // The arguments without the program's name; returns the exit code (ExitCode).
    int run(const QStringList &arguments);

private:
    // Fills the process-wide environment from the suite's ini files; false (after telling
    // why) when there is no current company. A missing parpe file ends the process.
    bool resolveEnvironment();

    QTextStream &m_out;
    QTextStream &m_err;
};

} // namespace pg::cli
