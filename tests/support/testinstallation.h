#pragma once

#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "startup/companyenvironment.h"
#include "testdatabase.h"

#include <QTemporaryDir>

#include <memory>

namespace pg::test {

// A throwaway installation of the suite for one test: archive directories with their stores,
// a program directory with the shipped schema file, the company environment pointing at them
// and, unless told otherwise, the local database created from that schema (a file, or on the
// tests' server, see TestDatabase). The previous company environment comes back when the
// installation goes.
class TestInstallation
{
public:
    explicit TestInstallation(bool createDatabase = true);
    ~TestInstallation();
    TestInstallation(const TestInstallation &) = delete;
    TestInstallation &operator=(const TestInstallation &) = delete;

    bool isValid() const { return m_valid; }
    QString root() const { return m_dir.path() + u'/'; }
    // The company's local database, and the distinta component's connection string for it.
    const localdb::DatabaseLocation &database() const;
    QString connectionString() const { return database().connectionString(); }

    // Writes records into the stores, all or nothing (fails the test on error).
    bool put(const QList<archives::ErpRecord> &records);

    // The embedded store over the installation, with the archives opened as the program opens
    // them (38 for rewriting), and the session on it.
    archives::EmbeddedArchiveStore &store();
    archives::ErpSession &erp();
    static constexpr qint32 Handle = 4242;

    // Writes records into the archives of the company and common directories in one go; a
    // failure is logged and gives false.
    static bool putRecords(const QString &companyDir, const QString &commonDir,
                           const QList<archives::ErpRecord> &records);

    // Sets a due item's distinta state and mark through the record manager, as another
    // program of the suite would; false when the item cannot be read or rewritten.
    bool setMarks(const QString &flag, const QString &link, const QString &state,
                  const QString &mark);

    // A due item of archive 38 in state "0" (free), with the fields the program reads.
    static archives::ErpRecord dueItem(const QString &flag, const QString &link,
                                       const QString &type, const QString &account, double amount);

private:
    QTemporaryDir m_dir;
    std::unique_ptr<TestDatabase> m_database;
    CompanyEnvironment m_previous;
    bool m_valid = false;
    std::unique_ptr<archives::EmbeddedArchiveStore> m_store;
    std::unique_ptr<archives::ErpSession> m_erp;
};

} // namespace pg::test
