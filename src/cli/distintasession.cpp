#include "distintasession.h"

#include "commandargs.h"
#include "commandcontext.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/companyarchives.h"
#include "archives/store/recordmanagerfactory.h"
#include "core/distintacode.h"
#include "core/prompter.h"
#include "distinta/distintestore.h"
#include "localdb/databaseaccess.h"
#include "localdb/databasefilecheck.h"
#include "localdb/localdatabase.h"
#include "startup/companyenvironment.h"
#include "startup/paths.h"

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

std::optional<int> DistintaSession::openFromArguments(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {}, {}, &error))
        return context.usageError(error);
    const qint64 n = number(args.positional(), &error);
    if (n == 0)
        return context.usageError(error);
    if (!open(n))
        return ExitFailure;
    return std::nullopt;
}

bool DistintaSession::prepareLocalDatabase()
{
    // The file "Pagame.db" beside the company's archives, or the server its Pagame.ini names,
    // made ready as the desktop program's start-up does.
    const std::optional<localdb::DatabaseLocation> database = localdb::companyDatabase();
    if (!database)
        return false;
    if (!localdb::databaseExists(*database)) {
        const QString problem = archives::companyArchivesProblem(CompanyArchiveDir());
        if (!problem.isEmpty()) {
            msgBox(editor::MainWindowLoad::openFailureMessage(archives::Scadenze, problem),
                   Buttons::Ok, Icon::Critical, QStringLiteral("ERRORE"));
            return false;
        }
        if (!localdb::CreateDatabase(*database))
            return false;
    }
    if (!database->isPostgres()) {
        if (const QString problem = localdb::localDatabaseFileProblem(database->filePath);
            !problem.isEmpty()) {
            msgBox(problem, Buttons::Ok, Icon::Critical, QStringLiteral("ERRORE"));
            return false;
        }
    }
    return localdb::databaseOpens(*database) && localdb::CheckDatabaseVersion(*database);
}

bool DistintaSession::openCompany()
{
    return prepareLocalDatabase() &&
           m_load->Load(CliHandle) == editor::MainWindowLoad::Outcome::Ready;
}

bool DistintaSession::open(qint64 number)
{
    m_number = number;
    if (!openCompany())
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

} // namespace pg::cli
