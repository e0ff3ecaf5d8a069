#include "bankfileargs.h"

#include "commandargs.h"
#include "commandcontext.h"
#include "distintasession.h"

#include <QDir>
#include <QFileInfo>

namespace pg::cli {

std::optional<int> BankFileArgs::read(CommandContext &context, const CommandArgs &args)
{
    QString error;
    number = DistintaSession::number(args.positional(), &error);
    if (number == 0)
        return context.usageError(error);
    const QString given = args.value(QStringLiteral("--out"));
    if (args.has(QStringLiteral("--out")) && given.trimmed().isEmpty())
        return context.usageError(QStringLiteral("Indicare il file per --out."));
    out = given.isEmpty() ? QString() : QFileInfo(given).absoluteFilePath();
    return std::nullopt;
}

void BankFileArgs::printWritten(CommandContext &context, const QString &path)
{
    context.out() << QDir::toNativeSeparators(path) << '\n';
}

} // namespace pg::cli
