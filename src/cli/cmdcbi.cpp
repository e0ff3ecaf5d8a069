// pagamenti-cli cbi N [--out PATH]
#include "cmdcbi.h"

#include "commandargs.h"
#include "commandcontext.h"

#include "archives/recordmanagerfactory.h"
#include "bankfile/confirmedcreafiledialog.h"
#include "bankfile/creafilecommand.h"
#include "core/distintacode.h"
#include "core/prompter.h"
#include "distinta/distintestore.h"
#include "localdb/localdatabase.h"
#include "startup/companyenvironment.h"
#include "startup/paths.h"

#include <QDir>
#include <QFileInfo>

namespace pg::cli {

namespace {

// The command line prints nothing: it knows no printers.
class NoPrinters : public editor::PrinterCatalog
{
public:
    QList<editor::PrinterInfo> installedPrinters() const override { return {}; }
    std::optional<editor::PrinterInfo> defaultPrinter() const override { return std::nullopt; }
};

// The handle that names the command line's session with the suite's libraries.
constexpr qint32 CliHandle = 1;

} // namespace

DistintaSession::DistintaSession()
    : m_printers(std::make_unique<NoPrinters>())
    , m_load(std::make_unique<editor::MainWindowLoad>(
          [] { return archives::createRecordManager(); }, *m_printers))
{}

DistintaSession::~DistintaSession() = default;

qint64 DistintaSession::number(const QStringList &positional, QString *error)
{
    if (positional.size() != 1) {
        *error = QStringLiteral("Indicare il numero della distinta.");
        return 0;
    }
    bool ok = false;
    const qint64 n = positional.first().toLongLong(&ok);
    if (!ok || n < 1 || n > 32767) {
        *error = QStringLiteral("Numero di distinta non valido: %1").arg(positional.first());
        return 0;
    }
    return n;
}

bool DistintaSession::open(qint64 number)
{
    // The local database as start-up leaves it: created when missing, converted when older.
    const QString database = CompanyArchiveDir() + localdb::FileName;
    if (!paths::fileExists(database) &&
        !localdb::CreateDatabaseFromSchema(CompanyArchiveDir(), localdb::FileName))
        return false;
    if (!localdb::CheckDatabaseVersion(database))
        return false;
    if (m_load->Load(CliHandle) != editor::MainWindowLoad::Outcome::Ready)
        return false;
    QString code = formatDistintaCode(number);
    if (!store().Esiste(code, 0)) {
        msgBox(QStringLiteral("La distinta %1 non esiste.").arg(number), Buttons::Ok,
               Icon::Critical);
        return false;
    }
    store().Leggi(m_distinta, code);
    return true;
}

int runCbi(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {QStringLiteral("--out")}, {}, &error))
        return context.usageError(error);
    const qint64 number = DistintaSession::number(args.positional(), &error);
    if (number == 0)
        return context.usageError(error);
    const QString out = args.value(QStringLiteral("--out"));
    if (args.has(QStringLiteral("--out")) && out.trimmed().isEmpty())
        return context.usageError(QStringLiteral("Indicare il file per --out."));

    DistintaSession session;
    if (!session.open(number))
        return ExitFailure;
    // The name given is used as it stands, from the current folder when it is relative.
    bankfile::ConfirmedCreaFileDialog dialog(out.isEmpty() ? QString()
                                                           : QFileInfo(out).absoluteFilePath());
    bankfile::CreaFileCommand command(session.store(), session.erp(), session.company(), dialog);
    if (command.cmdCreaFile(session.distinta(), false, {}) !=
        bankfile::CreaFileCommand::Outcome::Written)
        return ExitFailure;
    context.out() << QDir::toNativeSeparators(command.outputPath()) << '\n';
    return ExitSuccess;
}

} // namespace pg::cli
