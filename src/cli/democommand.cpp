// pagamenti-cli demo CARTELLA [--company CODICE] [--due-items N] [--seed S] [--today GG/MM/AAAA]
//                   [--empty]
#include "commandargs.h"
#include "commandcontext.h"
#include "commands.h"

#include "archives/demo/demoinstallation.h"
#include "core/vbdate.h"
#include "localdb/shippedschema.h"
#include "printing/templatestore.h"

#include <QDir>

namespace pg::cli {

int runDemo(CommandContext &context)
{
    CommandArgs args;
    QString error;
    const QStringList valueOptions{QStringLiteral("--company"), QStringLiteral("--due-items"),
                                   QStringLiteral("--seed"), QStringLiteral("--today")};
    if (!args.parse(context.arguments(), valueOptions, {QStringLiteral("--empty")}, &error))
        return context.usageError(error);
    if (args.positional().size() != 1)
        return context.usageError(QStringLiteral("Indicare una e una sola cartella."));

    archives::DemoOptions options;
    options.companyCode = args.value(QStringLiteral("--company"), options.companyCode);
    qint64 seed = options.seed;
    if (!args.number(QStringLiteral("--due-items"), 0, 100'000'000, &options.dueItems, &error) ||
        !args.number(QStringLiteral("--seed"), 0, 0xFFFFFFFFll, &seed, &error))
        return context.usageError(error);
    options.seed = quint32(seed);
    if (args.has(QStringLiteral("--today"))) {
        // The day the due dates gather around: with it, a seed gives the same records on any
        // day.
        options.today = dates::parseDmy(args.value(QStringLiteral("--today")));
        if (!options.today.isValid())
            return context.usageError(QStringLiteral("Data non valida per --today: \"%1\" "
                                                     "(serve GG/MM/AAAA).")
                                          .arg(args.value(QStringLiteral("--today"))));
    }
    const bool empty = args.has(QStringLiteral("--empty"));

    archives::DemoInstallation installation(args.positional().first(), options);
    if (!installation.write(shippedSchemaDescription(), empty, &error))
        return context.fail(error);
    // The print templates, for the company to adapt in D_IMG.
    const QString dImg = installation.orvidaDir() + QStringLiteral("D_IMG/");
    if (!printing::TemplateStore::installShipped(dImg, &error))
        return context.fail(error);

    const QString root = QDir::toNativeSeparators(QDir::cleanPath(installation.rootDir()));
    QTextStream &out = context.out();
    out << QStringLiteral("Installazione dimostrativa creata in %1\n").arg(root);
    if (empty)
        out << QStringLiteral("  azienda %1, archivi vuoti\n").arg(options.companyCode);
    else
        out << QStringLiteral("  azienda %1, %2 scadenze, %3 record negli archivi (seme %4)\n")
                   .arg(options.companyCode)
                   .arg(options.dueItems)
                   .arg(installation.recordCount())
                   .arg(options.seed);
    out << QStringLiteral("Per usarla: ORVIDA_INI_DIR=%1\n").arg(root);
    return ExitSuccess;
}

} // namespace pg::cli
