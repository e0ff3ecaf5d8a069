// pagamenti-cli archive dump NUMERO [--key K]
// pagamenti-cli archive load FILE
#include "commandargs.h"
#include "commandcontext.h"
#include "commands.h"

#include "archives/store/erpsession.h"
#include "archives/store/recordmanagerfactory.h"
#include "archives/text/archivetextfile.h"
#include "startup/companyenvironment.h"

#include <QDir>

namespace pg::cli {

namespace {

// The session handle of the command line: it has no window.
constexpr qint32 CliSession = 1;

int dump(CommandContext &context, const CommandArgs &args)
{
    if (args.positional().size() != 2)
        return context.usageError(QStringLiteral("Indicare il numero dell'archivio."));
    bool ok = false;
    const int archive = args.positional().at(1).toInt(&ok);
    if (!ok || archive < 0)
        return context.usageError(
            QStringLiteral("Numero di archivio non valido: %1").arg(args.positional().at(1)));
    qint64 key = 1;
    QString error;
    if (!args.number(QStringLiteral("--key"), 1, 99, &key, &error))
        return context.usageError(error);

    // The program's record manager: the embedded store, or the library that
    // PAGAMENTI_RECORD_MANAGER names.
    const std::unique_ptr<archives::RecordManager> manager = archives::createRecordManager();
    if (manager->VBInit(CliSession) == 0)
        return context.fail(QStringLiteral("Impossibile inizializzare le librerie di [orvida]. "
                                           "Impossibile continuare."));
    archives::ErpSession session(*manager, CliSession);
    const bool dumped =
        archives::ArchiveTextFile::dump(session, archive, int(key), context.out(), &error);
    manager->VBEnd(CliSession);
    return dumped ? ExitSuccess : context.fail(error);
}

int load(CommandContext &context, const CommandArgs &args)
{
    if (args.has(QStringLiteral("--key")))
        return context.usageError(QStringLiteral("L'opzione --key vale solo per dump."));
    if (args.positional().size() != 2)
        return context.usageError(QStringLiteral("Indicare il file da caricare."));
    const QString path = args.positional().at(1);
    QStringList problems;
    QMap<int, qint64> records;
    if (!archives::ArchiveTextFile::load(path, CompanyArchiveDir(), CommonArchiveDir(), &problems,
                                         &records))
        return context.fail(QStringLiteral("Il file %1 non è stato caricato: nessun record è "
                                           "stato scritto.\n")
                                .arg(QDir::toNativeSeparators(path)) +
                            problems.join(u'\n'));
    qint64 total = 0;
    QStringList perArchive;
    for (auto it = records.cbegin(); it != records.cend(); ++it) {
        total += it.value();
        perArchive << QStringLiteral("archivio %1: %2").arg(it.key()).arg(it.value());
    }
    context.out() << QStringLiteral("Caricati %1 record dal file %2")
                         .arg(total)
                         .arg(QDir::toNativeSeparators(path));
    if (!perArchive.isEmpty())
        context.out() << " (" << perArchive.join(QStringLiteral(", ")) << ')';
    context.out() << '\n';
    return ExitSuccess;
}

} // namespace

int runArchive(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {QStringLiteral("--key")}, {}, &error))
        return context.usageError(error);
    const QString action = args.positional().value(0);
    if (action == u"dump")
        return dump(context, args);
    if (action == u"load")
        return load(context, args);
    return context.usageError(action.isEmpty()
                                  ? QStringLiteral("Indicare dump o load.")
                                  : QStringLiteral("Azione sconosciuta: %1").arg(action));
}

} // namespace pg::cli
