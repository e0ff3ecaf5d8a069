#pragma once

#include <QList>
#include <QString>

namespace pg::cli {

class CommandContext;

// One command of pagamenti-cli: its name, its usage line, what it does, whether it works on
// the suite's current company, and the function that runs it.
struct Command
{
    QString name;
    QString usage;       // the arguments after the name, as the usage text shows them
    QString description; // one line
    bool needsEnvironment = true;
    int (*run)(CommandContext &context) = nullptr;
};

// Every command, in the order the usage text lists them. A new command is one entry here and
// one file with its run function.
const QList<Command> &commandTable();
const Command *findCommand(const QString &name);

// The usage text of the whole program, and of one command.
QString usageText();
QString usageText(const Command &command);

} // namespace pg::cli
