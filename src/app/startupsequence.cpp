#include "startupsequence.h"

#include "olderdatabase.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/companyarchives.h"
#include "core/prompter.h"
#include "editor/window/mainwindowload.h"
#include "localdb/databaseaccess.h"
#include "localdb/databasefilecheck.h"
#include "localdb/localdatabase.h"
#include "startup/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace pg::app {

StartupSequence::Steps StartupSequence::programSteps()
{
    Steps steps;
    steps.isOnlyInstance = [] { return true; };
    steps.ActivatePrevInstance = [] {};
    steps.resolveCompanyEnvironment = &ResolveCompanyEnvironment;
    steps.applicationDirPath = [] { return QCoreApplication::applicationDirPath(); };
    steps.directoryExists = [](const QString &path) { return QFileInfo(path).isDir(); };
    steps.locateDatabase = &localdb::companyDatabase;
    steps.databaseExists = &localdb::databaseExists;
    steps.createDatabase = &localdb::CreateDatabase;
    steps.generateSchemaFile = [](const localdb::DatabaseLocation &location) {
        localdb::GenerateSchemaFile(location);
    };
    steps.checkDatabaseVersion = [](const localdb::DatabaseLocation &location) {
        // A database this account cannot open is told as such, before any version check.
        return localdb::databaseOpens(location) && localdb::CheckDatabaseVersion(location);
    };
    steps.noticeOlderDatabase = &OlderDatabase::notice;
    steps.companyArchivesProblem = [](const QString &dir) {
        return archives::companyArchivesProblem(dir);
    };
    steps.databaseFileProblem = &localdb::localDatabaseFileProblem;
    return steps;
}

StartupSequence::StartupSequence(Steps steps) : m_steps(std::move(steps)) {}

bool StartupSequence::isAcceptedCommandLine(const QStringList &arguments)
{
    return arguments.size() == 1 && arguments.first() == u"Pagamenti";
}

QString StartupSequence::developmentTreeProbe(const QString &applicationDirPath)
{
    QString dir = applicationDirPath;
    while (dir.size() > 1 && (dir.endsWith(u'/') || dir.endsWith(u'\\')))
        dir.chop(1);
    return dir + QStringLiteral("..\\..\\src");
}

void StartupSequence::run(const QStringList &arguments)
{
    // The suite starts the module with exactly this argument; anything else ends silently.
    if (!isAcceptedCommandLine(arguments))
        endProcess(0);

    if (!m_steps.isOnlyInstance()) {
        m_steps.ActivatePrevInstance();
        endProcess(0);
    }

    CompanyEnvironment environment = m_steps.resolveCompanyEnvironment();
    environment.ProgramDir = programDirOf(environment.OrvidaDir);
    setCompanyEnvironment(environment);

    // "..." is the suite's mark for no company selected.
    if (environment.CompanyCode == u"...") {
        msgBox(QStringLiteral("Nessuna azienda corrente.\r\n\r\nEntrare in [orvida] e "
                              "selezionare una azienda Valida"),
               Buttons::Ok, Icon::Critical, QStringLiteral("ERRORE"));
        endProcess(1);
    }

    // The file "Pagame.db" beside the company's archives, or the server its Pagame.ini names.
    const std::optional<localdb::DatabaseLocation> database = m_steps.locateDatabase();
    if (!database)
        endProcess(1);
    if (!m_steps.databaseExists(*database)) {
        // Nothing is created for a directory that does not hold the company's archives: the
        // parpe file may name the wrong one.
        const QString problem = m_steps.companyArchivesProblem(environment.CompanyArchiveDir);
        if (!problem.isEmpty()) {
            msgBox(editor::MainWindowLoad::openFailureMessage(archives::Scadenze, problem),
                   Buttons::Ok, Icon::None, QStringLiteral("ERRORE"));
            endProcess(1);
        }
        if (!m_steps.createDatabase(*database))
            endProcess(1);
    }
    // A file that is not the program's database is never written into, and a damaged one is
    // named before anything is read from it.
    if (!database->isPostgres()) {
        if (const QString problem = m_steps.databaseFileProblem(database->filePath);
            !problem.isEmpty()) {
            msgBox(problem, Buttons::Ok, Icon::Critical, QStringLiteral("ERRORE"));
            endProcess(1);
        }
    }

    if (m_steps.directoryExists(developmentTreeProbe(m_steps.applicationDirPath())))
        m_steps.generateSchemaFile(*database);

    if (!m_steps.checkDatabaseVersion(*database))
        endProcess(1);

    if (m_steps.noticeOlderDatabase)
        m_steps.noticeOlderDatabase(environment, *database);
}

} // namespace pg::app
