#pragma once

#include "localdb/databaselocation.h"
#include "startup/companyenvironment.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace pg::app {

// The start-up of the program up to its windows, in its fixed order: the command line, the
// single running copy, the company environment, the program directory, a current company,
// the local database (the file or the server of the company's Pagame.ini; found, or created
// once the company's archives are found where the parpe file says; a file checked to be the
// program's own and undamaged), the schema file regenerated inside the development tree, the
// database version; last, a word on an earlier version's database left beside the archives.
// The first step that fails ends the process.
class StartupSequence
{
public:
    // The steps that reach outside the program; each starts with the program's own and
    // tests replace what they script.
    struct Steps
    {
        // True when no other copy of the program runs (this one becomes the running one).
        std::function<bool()> isOnlyInstance;
        // Asks the running copy to bring its window to the front.
        std::function<void()> ActivatePrevInstance;
        std::function<CompanyEnvironment()> resolveCompanyEnvironment;
        // The program's own directory, as the system reports it (no closing separator).
        std::function<QString()> applicationDirPath;
        std::function<bool(const QString &path)> directoryExists;
        // The company's database as its Pagame.ini says; nothing (after a message) when the
        // file cannot be used.
        std::function<std::optional<localdb::DatabaseLocation>()> locateDatabase;
        std::function<bool(const localdb::DatabaseLocation &)> databaseExists;
        std::function<bool(const localdb::DatabaseLocation &)> createDatabase;
        std::function<void(const localdb::DatabaseLocation &)> generateSchemaFile;
        std::function<bool(const localdb::DatabaseLocation &)> checkDatabaseVersion;
        // Tells the clerk of an earlier version's database, which is never opened.
        std::function<void(const CompanyEnvironment &, const localdb::DatabaseLocation &)>
            noticeOlderDatabase;
        // Why the company's archive directory does not hold the suite's archives; empty
        // when it does.
        std::function<QString(const QString &companyArchiveDir)> companyArchivesProblem;
        // Why the database file must not be opened (not the program's database, damaged);
        // empty when it may.
        std::function<QString(const QString &fileName)> databaseFileProblem;
    };

    // The program's own steps.
    static Steps programSteps();

    explicit StartupSequence(Steps steps = programSteps());

    // Runs the sequence; returns when the program goes on to its windows, ends the process
    // (through the prompting seam) otherwise.
    void run(const QStringList &arguments);

    // The one command line the program accepts: exactly "Pagamenti".
    static bool isAcceptedCommandLine(const QStringList &arguments);
    // The directory whose existence says that the program runs in its development tree: the
    // program's directory immediately followed by "..\..\src", taken as it stands.
    static QString developmentTreeProbe(const QString &applicationDirPath);

private:
    Steps m_steps;
};

} // namespace pg::app
