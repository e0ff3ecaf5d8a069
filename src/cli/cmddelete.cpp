// pagamenti-cli delete N [--yes]
#include "commandcontext.h"
#include "commands.h"
#include "distintasession.h"

#include "core/prompter.h"
#include "distinta/distintestore.h"

namespace pg::cli {

int runDelete(CommandContext &context)
{
    DistintaSession session;
    if (const std::optional<int> failed = session.openFromArguments(context))
        return *failed;
    const qint64 number = session.openedNumber();

    // The main window offers no deletion once the distinta is printed in final form or
    // presented to the bank; neither does the command line.
    const QString state = session.distinta().header().flg_stato;
    if (state == u"D")
        return context.fail(
            QStringLiteral("Distinta già stampata in definitivo. Impossibile modificare."));
    if (state == u"F")
        return context.fail(
            QStringLiteral("Distinta già presentata in banca: non può essere eliminata."));

    if (askDestructive(QStringLiteral("Elimina Distinta?")) != Answer::Yes) {
        context.out() << QStringLiteral("Distinta %1 non eliminata.\n").arg(number);
        return ExitFailure;
    }
    if (!session.store().Cancella(session.distinta()))
        return context.fail(QStringLiteral("La distinta %1 non è stata eliminata.").arg(number));
    // The releases the archives refused are still in the journal: the items stay blocked,
    // never paid twice, until the next run completes them.
    if (session.store().pendingWriteBacks() > 0) {
        context.out() << QStringLiteral("Distinta %1 eliminata.\n").arg(number);
        return ExitFailure;
    }
    context.out() << QStringLiteral(
                         "Distinta %1 eliminata: le sue scadenze sono di nuovo libere.\n")
                         .arg(number);
    return ExitSuccess;
}

} // namespace pg::cli
