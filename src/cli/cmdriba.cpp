// pagamenti-cli riba N [--out FILE] [--raggruppa]
#include "cmdriba.h"

#include "bankfileargs.h"
#include "commandargs.h"
#include "commandcontext.h"
#include "distintasession.h"

#include "bankfile/confirmedribafiledialog.h"
#include "bankfile/ribafilecommand.h"

namespace pg::cli {

int runRiba(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {QStringLiteral("--out")}, {QStringLiteral("--raggruppa")},
                    &error))
        return context.usageError(error);
    BankFileArgs file;
    if (const std::optional<int> wrong = file.read(context, args))
        return *wrong;

    DistintaSession session;
    if (!session.open(file.number))
        return ExitFailure;
    bankfile::ConfirmedRibaFileDialog dialog(file.out, args.has(QStringLiteral("--raggruppa")));
    bankfile::RibaFileCommand command(session.store(), session.erp(), session.company(), dialog);
    if (command.cmdCreaFile(session.distinta(), false, {}) !=
        bankfile::RibaFileCommand::Outcome::Written)
        return ExitFailure;
    BankFileArgs::printWritten(context, command.outputPath());
    return ExitSuccess;
}

} // namespace pg::cli
