#pragma once

#include "localdb/databaselocation.h"

#include <QSqlDatabase>
#include <QString>

namespace pg {

// One connection to the local database, open for the life of the object. Every operation of
// the program opens its own and closes it before it returns, as the distinte always did.
// - SQLite through Qt SQL: write-ahead log with normal synchronisation (every commit survives
//   a crash of the program; ten thousand rows save in well under a second), foreign keys
//   enforced and a short wait on a busy file. The file must exist: creating it is the
//   schema's work, never a side effect.
// - PostgreSQL through Qt SQL and libpq: the connection the company's Pagame.ini names, a
//   bounded wait to connect, texts in UTF-8; every commit is durable on the server.
class DatabaseConnection
{
public:
    enum class Mode { Normal, Exclusive };

    // Why an open failed, for the messages: the engine's own code for SQLite (SQLITE_BUSY 5,
    // SQLITE_NOTADB 26), and these for a server.
    enum ServerFailure {
        ServerUnreachable = 1001,
        ServerAuthentication = 1002,
        ServerDatabaseMissing = 1003,
        ServerRefused = 1004,
    };

    explicit DatabaseConnection(const localdb::DatabaseLocation &location,
                                Mode mode = Mode::Normal);
    explicit DatabaseConnection(const QString &filePath, Mode mode = Mode::Normal);
    ~DatabaseConnection();
    DatabaseConnection(const DatabaseConnection &) = delete;
    DatabaseConnection &operator=(const DatabaseConnection &) = delete;

    bool isOpen() const;
    // Why the open failed, in words for the user.
    QString errorText() const { return m_error; }
    // The engine's code of the failure (see above), 0 when it opened.
    int errorCode() const { return m_errorCode; }

    // Makes every later commit wait until it is on the disk (not only safe from a crash of
    // the program but from a power cut too), or back to the normal synchronisation. Used
    // around the commits after which the suite's archives are written: what they write
    // must never outlive the commit it follows. A server's commits are always durable.
    // Raises the database's AppError on failure.
    void setDurableCommits(bool durable);

    QSqlDatabase &database() { return m_db; }
    const localdb::DatabaseLocation &location() const { return m_location; }
    bool isPostgres() const { return m_location.isPostgres(); }
    // The SQLite file, or the server's database as messages name it.
    QString filePath() const;

private:
    void openFile(Mode mode);
    void openServer(Mode mode);
    bool configureFile(Mode mode);
    void failed(const QSqlError &error);

    QString m_name;
    localdb::DatabaseLocation m_location;
    QSqlDatabase m_db;
    QString m_error;
    int m_errorCode = 0;
};

// Whether a connection of Qt SQL talks to a PostgreSQL server (else to SQLite).
bool isPostgres(const QSqlDatabase &db);

// The unit of work of a write: begun on construction, rolled back on destruction unless
// committed. A failure to begin or to commit raises the database's AppError.
class Transaction
{
public:
    explicit Transaction(QSqlDatabase &db);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    void commit();
    void rollback();
    bool isActive() const { return m_active; }

private:
    QSqlDatabase &m_db;
    bool m_active = false;
};

} // namespace pg
