// pagamenti-cli cbi N [--format xml|flat] [--cuc CODICE] [--out PATH]
#include "cmdcbi.h"

#include "bankfileargs.h"
#include "commandargs.h"
#include "commandcontext.h"

#include "bankfile/confirmedcreafiledialog.h"
#include "bankfile/creafilecommand.h"
#include "bankfile/ribafilecommand.h"
#include "distinta/distintestore.h"

namespace pg::cli {

int runCbi(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(),
                    {QStringLiteral("--out"), QStringLiteral("--format"), QStringLiteral("--cuc")},
                    {}, &error))
        return context.usageError(error);
    BankFileArgs file;
    if (const std::optional<int> wrong = file.read(context, args))
        return *wrong;
    // Scripts written for the flat file go on getting it: the XML message is asked for.
    const QString format = args.value(QStringLiteral("--format"), QStringLiteral("flat")).toLower();
    if (format != u"xml" && format != u"flat")
        return context.usageError(QStringLiteral("--format: indicare xml o flat."));
    const QString cuc = args.value(QStringLiteral("--cuc"));
    if (args.has(QStringLiteral("--cuc")) && cuc.trimmed().isEmpty())
        return context.usageError(QStringLiteral("Indicare il codice per --cuc."));

    DistintaSession session;
    if (!session.open(file.number))
        return ExitFailure;
    // A customers' distinta presents receivables: its file is the RiBa one, as the main
    // window's "File Bonifici" gives it.
    if (bankfile::RibaFileCommand::isCustomersDistinta(session.distinta().header()))
        return context.fail(QStringLiteral("La distinta %1 è una distinta clienti: il suo file è "
                                           "quello delle ricevute bancarie (pagamenti-cli riba "
                                           "%1).")
                                .arg(file.number));
    bankfile::ConfirmedCreaFileDialog dialog(file.out);
    bankfile::CreaFileCommand command(session.store(), session.erp(), session.company(), dialog);
    command.setProposedFormat(format == u"xml" ? BankFileFormat::SepaXml : BankFileFormat::CbiFlat);
    command.setCuc(cuc);
    if (command.cmdCreaFile(session.distinta(), false, {}) !=
        bankfile::CreaFileCommand::Outcome::Written)
        return ExitFailure;
    BankFileArgs::printWritten(context, command.outputPath());
    return ExitSuccess;
}

} // namespace pg::cli
