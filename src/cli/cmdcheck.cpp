// pagamenti-cli check N
#include "cmdcheck.h"

#include "commandargs.h"
#include "commandcontext.h"
#include "distintasession.h"

#include "checks/completenesscheck.h"

#include <QDir>

namespace pg::cli {

int runCheck(CommandContext &context)
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
    checks::CompletenessCheck check(session.store(), session.erp());
    const checks::CompletenessCheck::Result result =
        check.chkDatiBAnca(session.distinta(), false, {});
    if (!result.reportWritten)
        return ExitFailure;
    context.out() << QDir::toNativeSeparators(result.reportPath) << '\n';
    return result.errorsFound ? ExitFailure : ExitSuccess;
}

} // namespace pg::cli
