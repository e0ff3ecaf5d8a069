#pragma once

#include "commandtable.h"

#include <QStringList>
#include <QTextStream>

namespace pg::cli {

// Exit codes of pagamenti-cli.
enum ExitCode : int {
    ExitSuccess = 0,
    ExitFailure = 1,
    ExitUsage = 2,
};

// What a command runs with: its arguments (the global options removed), the output stream
// for its results, and the ways to end it. Messages for the user go through the prompting
// seam, which the command line writes to standard error.
class CommandContext
{
public:
    CommandContext(const Command &command, const QStringList &arguments, QTextStream &out,
                   QTextStream &err);

    const Command &command() const { return *m_command; }
    const QStringList &arguments() const { return m_arguments; }
    QTextStream &out() { return m_out; }

    // A wrong use of the command: the reason and the command's usage on standard error.
    int usageError(const QString &reason);
    // A failure: the message (critical) through the prompting seam.
    int fail(const QString &message);

private:
    const Command *m_command;
    QStringList m_arguments;
    QTextStream &m_out;
    QTextStream &m_err;
};

} // namespace pg::cli
