// pagamenti-cli print N --pdf FILE [--final] [--grouped] [--totals] [--date GG/MM/AAAA]
//                        [--template NOME]
#include "cmdprint.h"

#include "cmdcbi.h"
#include "commandargs.h"
#include "commandcontext.h"

#include "core/vbdate.h"
#include "printing/pdfoutput.h"
#include "printing/printrun.h"

#include <QDir>
#include <QFileInfo>

namespace pg::cli {

int runPrint(CommandContext &context)
{
    CommandArgs args;
    QString error;
    const QString pdf = QStringLiteral("--pdf");
    const QString date = QStringLiteral("--date");
    const QString templateName = QStringLiteral("--template");
    const QString final = QStringLiteral("--final");
    const QString grouped = QStringLiteral("--grouped");
    const QString totals = QStringLiteral("--totals");
    if (!args.parse(context.arguments(), {pdf, date, templateName}, {final, grouped, totals},
                    &error))
        return context.usageError(error);
    const qint64 number = DistintaSession::number(args.positional(), &error);
    if (number == 0)
        return context.usageError(error);
    if (args.value(pdf).trimmed().isEmpty())
        return context.usageError(QStringLiteral("Indicare il file PDF con --pdf."));

    printing::PrintOptions options;
    options.totals = args.has(totals);
    options.grouped = args.has(grouped);
    options.templateName = args.value(templateName).trimmed();
    if (args.has(date)) {
        options.presentationDate = dates::parseDmy(args.value(date));
        if (!options.presentationDate.isValid())
            return context.usageError(
                QStringLiteral("Data di presentazione non valida: %1").arg(args.value(date)));
    }
    if (args.has(templateName) && options.templateName.isEmpty())
        return context.usageError(QStringLiteral("Indicare il modello per --template."));

    // A file that cannot be written is told before anything is read or printed.
    const QString path = QFileInfo(args.value(pdf)).absoluteFilePath();
    if (const QString problem = printing::PdfOutput::pathProblem(path); !problem.isEmpty())
        return context.fail(problem);

    DistintaSession session;
    if (!session.open(number))
        return ExitFailure;
    options.definitive = args.has(final) || session.distinta().header().flg_stato == u"D";
    printing::PrintRun run(session.store(), &session.erp(), session.company());
    printing::PdfOutput output(path);
    if (!run.LanciaStampa(session.distinta(), options, output))
        return ExitFailure;
    context.out() << QDir::toNativeSeparators(path) << '\n';
    return ExitSuccess;
}

} // namespace pg::cli
