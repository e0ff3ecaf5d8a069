// pagamenti-cli cbi N [--format xml|flat] [--cuc CODICE] [--out PATH]
#include "cmdcbi.h"

#include "commandargs.h"
#include "commandcontext.h"

#include "bankfile/confirmedcreafiledialog.h"
#include "bankfile/creafilecommand.h"
#include "distinta/distintestore.h"

#include <QDir>
#include <QFileInfo>

namespace pg::cli {

int runCbi(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(),
                    {QStringLiteral("--out"), QStringLiteral("--format"), QStringLiteral("--cuc")},
                    {}, &error))
        return context.usageError(error);
    const qint64 number = DistintaSession::number(args.positional(), &error);
    if (number == 0)
        return context.usageError(error);
    const QString out = args.value(QStringLiteral("--out"));
    if (args.has(QStringLiteral("--out")) && out.trimmed().isEmpty())
        return context.usageError(QStringLiteral("Indicare il file per --out."));
    // Scripts written for the flat file go on getting it: the XML message is asked for.
    const QString format = args.value(QStringLiteral("--format"), QStringLiteral("flat")).toLower();
    if (format != u"xml" && format != u"flat")
        return context.usageError(QStringLiteral("--format: indicare xml o flat."));
    const QString cuc = args.value(QStringLiteral("--cuc"));
    if (args.has(QStringLiteral("--cuc")) && cuc.trimmed().isEmpty())
        return context.usageError(QStringLiteral("Indicare il codice per --cuc."));

    DistintaSession session;
    if (!session.open(number))
        return ExitFailure;
    // The name given is used as it stands, from the current folder when it is relative.
    bankfile::ConfirmedCreaFileDialog dialog(out.isEmpty() ? QString()
                                                           : QFileInfo(out).absoluteFilePath());
    bankfile::CreaFileCommand command(session.store(), session.erp(), session.company(), dialog);
    command.setProposedFormat(format == u"xml" ? BankFileFormat::SepaXml : BankFileFormat::CbiFlat);
    command.setCuc(cuc);
    if (command.cmdCreaFile(session.distinta(), false, {}) !=
        bankfile::CreaFileCommand::Outcome::Written)
        return ExitFailure;
    context.out() << QDir::toNativeSeparators(command.outputPath()) << '\n';
    return ExitSuccess;
}

} // namespace pg::cli
