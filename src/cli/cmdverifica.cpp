// pagamenti-cli verifica [--ripara]
#include "commandargs.h"
#include "commandcontext.h"
#include "commands.h"
#include "distintasession.h"

#include "checks/markreconciliation.h"
#include "checks/reportfile.h"

#include <QDir>

namespace pg::cli {

int runVerifica(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {}, {QStringLiteral("--ripara")}, &error))
        return context.usageError(error);
    if (!args.positional().isEmpty())
        return context.usageError(QStringLiteral("Il comando verifica non ha argomenti."));

    DistintaSession session;
    if (!session.openCompany())
        return ExitFailure;
    checks::MarkReconciliation reconciliation(session.store(), session.erp());
    const bool complete = reconciliation.run();
    const QStringList lines = reconciliation.reportLines();
    checks::writeReportFile(checks::MarkReconciliation::reportPath(), lines);
    QTextStream &out = context.out();
    for (const QString &line : lines)
        out << line << '\n';
    if (!complete)
        return ExitFailure;
    const QList<checks::MarkDisagreement> &found = reconciliation.disagreements();
    if (found.isEmpty()) {
        out << QStringLiteral("Le scadenze di [orvida] corrispondono alle distinte salvate.\n");
        return ExitSuccess;
    }
    if (!args.has(QStringLiteral("--ripara")))
        return ExitFailure;

    const int repairable = reconciliation.repairableCount();
    const int left = repairable > 0 ? reconciliation.repair() : 0;
    if (left < 0)
        return ExitFailure;
    out << QStringLiteral("Scadenze corrette come dicono le distinte: %1 di %2.\n")
               .arg(repairable - left)
               .arg(repairable);
    return left == 0 && repairable == found.size() ? ExitSuccess : ExitFailure;
}

} // namespace pg::cli
