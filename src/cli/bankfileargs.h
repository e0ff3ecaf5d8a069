#pragma once

#include <QString>

#include <optional>

namespace pg::cli {

class CommandArgs;
class CommandContext;

// What the commands that write a bank file share: the distinta's number and the file given
// with --out, used as it stands (from the current folder when it is relative).
struct BankFileArgs
{
    qint64 number = 0;
    QString out; // absolute; empty when none was given: the proposed file is written

    // Reads them from the parsed arguments; the exit code of a wrong use, after telling why.
    std::optional<int> read(CommandContext &context, const CommandArgs &args);
    // Prints the path of the file written, the command's result.
    static void printWritten(CommandContext &context, const QString &path);
};

} // namespace pg::cli
