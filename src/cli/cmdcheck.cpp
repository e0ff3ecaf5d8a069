// pagamenti-cli check N
#include "cmdcheck.h"

#include "commandcontext.h"
#include "distintasession.h"

#include "checks/completenesscheck.h"

#include <QDir>

namespace pg::cli {

int runCheck(CommandContext &context)
{
    DistintaSession session;
    if (const std::optional<int> failed = session.openFromArguments(context))
        return *failed;
    checks::CompletenessCheck check(session.store(), session.erp());
    const checks::CompletenessCheck::Result result =
        check.chkDatiBAnca(session.distinta(), false, {});
    if (!result.reportWritten)
        return ExitFailure;
    context.out() << QDir::toNativeSeparators(result.reportPath) << '\n';
    return result.errorsFound ? ExitFailure : ExitSuccess;
}

} // namespace pg::cli
