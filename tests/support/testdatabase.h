#pragma once

#include "localdb/databaselocation.h"

#include <QString>

#include <memory>

namespace pg {
class DatabaseConnection;
}

namespace pg::test {

// Whether this run of a test keeps its local databases on the tests' PostgreSQL server
// (CTest's <name>_pg runs, see cmake/PagamentiTest.cmake) rather than in SQLite files.
bool onServer();

// The local database of a test's company: the SQLite file "Pagame.db" of the company's
// directory, or, on the server, a database of its own, made empty for the test, named in the
// directory's Pagame.ini (so that the program, and the command line started by the test,
// find it as an office's installation would) and dropped when the object goes.
class TestDatabase
{
public:
    explicit TestDatabase(const QString &companyDir);
    ~TestDatabase();
    TestDatabase(const TestDatabase &) = delete;
    TestDatabase &operator=(const TestDatabase &) = delete;

    bool isValid() const { return m_valid; }
    const localdb::DatabaseLocation &location() const { return m_location; }

private:
    localdb::DatabaseLocation m_location;
    bool m_valid = false;
};

// Another program holding the database for writing while the object lives: SQLite's write
// lock, a server's lock on the distinte's tables (waited for one second by the program in the
// tests, then its write fails).
class DatabaseHold
{
public:
    explicit DatabaseHold(const localdb::DatabaseLocation &location);
    ~DatabaseHold();
    bool isHeld() const { return m_held; }
    // Lets go, as the other program ending its transaction.
    void release();

private:
    std::unique_ptr<DatabaseConnection> m_connection;
    bool m_held = false;
};

// Runs a statement on the tests' server as its administrator (CREATE DATABASE and the like);
// false, with a warning, when it fails.
bool onServerAdmin(const QString &sql);

} // namespace pg::test
