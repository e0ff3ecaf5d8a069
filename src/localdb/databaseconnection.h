#pragma once

#include <QSqlDatabase>
#include <QString>

namespace pg {

// One connection to the local database, open for the life of the object: SQLite through
// Qt SQL, write-ahead log with normal synchronisation (every commit survives a crash of
// the program; ten thousand rows save in well under a second), foreign keys enforced and a
// short wait on a busy file. Every operation of the program opens its own and closes it
// before it returns, as the distinte always did.
class DatabaseConnection
{
public:
    enum class Mode { Normal, Exclusive };

    explicit DatabaseConnection(const QString &filePath, Mode mode = Mode::Normal);
    ~DatabaseConnection();
    DatabaseConnection(const DatabaseConnection &) = delete;
    DatabaseConnection &operator=(const DatabaseConnection &) = delete;

    bool isOpen() const;
    // Why the open failed, in words for the user.
    QString errorText() const { return m_error; }
    // The engine's code of the failure (SQLITE_BUSY 5, SQLITE_NOTADB 26), 0 when it opened.
    int errorCode() const { return m_errorCode; }

    // Makes every later commit wait until it is on the disk (not only safe from a crash of
    // the program but from a power cut too), or back to the normal synchronisation. Used
    // around the commits after which the suite's archives are written: what they write
    // must never outlive the commit it follows. Raises the database's AppError on failure.
    void setDurableCommits(bool durable);

    QSqlDatabase &database() { return m_db; }
    const QString &filePath() const { return m_path; }

private:
    bool configure(Mode mode);

    QString m_name;
    QString m_path;
    QSqlDatabase m_db;
    QString m_error;
    int m_errorCode = 0;
};

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
