#include "startupsequence.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/companyarchives.h"
#include "core/prompter.h"
#include "editor/window/mainwindowload.h"
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
    steps.fileExists = [](const QString &path) { return paths::fileExists(path); };
    steps.companyArchivesProblem = [](const QString &dir) {
        return archives::companyArchivesProblem(dir);
    };
    steps.createDatabase = &localdb::CreateDatabaseFromSchema;
    steps.databaseFileProblem = &localdb::localDatabaseFileProblem;
    steps.generateSchemaFile = &localdb::GenerateSchemaFile;
    steps.checkDatabaseVersion = &localdb::CheckDatabaseVersion;
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

    const QString database = environment.CompanyArchiveDir + localdb::FileName;
    if (!m_steps.fileExists(database)) {
        // Nothing is created in a directory that does not hold the company's archives: the
        // parpe file may name the wrong one.
        const QString problem = m_steps.companyArchivesProblem(environment.CompanyArchiveDir);
        if (!problem.isEmpty()) {
            msgBox(editor::MainWindowLoad::openFailureMessage(archives::Scadenze, problem),
                   Buttons::Ok, Icon::None, QStringLiteral("ERRORE"));
            endProcess(1);
        }
        if (!m_steps.createDatabase(environment.CompanyArchiveDir, localdb::FileName))
            endProcess(1);
    }
    // A file that is not the program's database is never written into, and a damaged one is
    // named before anything is read from it.
    if (const QString problem = m_steps.databaseFileProblem(database); !problem.isEmpty()) {
        msgBox(problem, Buttons::Ok, Icon::Critical, QStringLiteral("ERRORE"));
        endProcess(1);
    }

    if (m_steps.directoryExists(developmentTreeProbe(m_steps.applicationDirPath())))
        m_steps.generateSchemaFile(environment.CompanyArchiveDir, localdb::FileName);

    if (!m_steps.checkDatabaseVersion(database))
        endProcess(1);
}

} // namespace pg::app
