// pagamenti-cli delete N [--yes]
#include "commandargs.h"
#include "commandcontext.h"
#include "commands.h"
#include "distintasession.h"

#include "core/prompter.h"
#include "distinta/distintestore.h"

namespace pg::cli {

int runDelete(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {}, {}, &error))
        return context.usageError(error);
    const qint64 number = DistintaSession::number(args.positional(), &error);
    if (number == 0)
        return context.usageError(error);
    DistintaSession session;
    if (!session.open(number))
        return ExitFailure;

    // The main window offers no deletion once the distinta is printed in final form or
    // presented to the bank; neither does the command line.
    const QString state = session.distinta().header().flg_stato;
    if (state == u"D")
        return context.fail(
            QStringLiteral("Distinta già stampata in definitivo. Impossibile modificare."));
    if (state == u"F")
        return context.fail(
            QStringLiteral("Distinta già presentata in banca: non può essere eliminata."));

    if (msgBox(QStringLiteral("Elimina Distinta?"), Buttons::YesNo, Icon::Question) !=
        Answer::Yes) {
        context.out() << QStringLiteral("Distinta %1 non eliminata.\n").arg(number);
        return ExitFailure;
    }
    if (!session.store().Cancella(session.distinta()))
        return context.fail(QStringLiteral("La distinta %1 non è stata eliminata.").arg(number));
    context.out() << QStringLiteral(
                         "Distinta %1 eliminata: le sue scadenze sono di nuovo libere.\n")
                         .arg(number);
    return ExitSuccess;
}

} // namespace pg::cli
