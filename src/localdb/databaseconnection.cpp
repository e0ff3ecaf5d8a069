#include "databaseconnection.h"

#include "core/crashpoint.h"
#include "startup/dberror.h"

#include <QAtomicInteger>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

namespace pg {

namespace {

QString uniqueConnectionName()
{
    static QAtomicInteger<quint64> counter;
    return QStringLiteral("pagamenti-%1").arg(++counter);
}

// SQLite's primary code of a failure; a server's five-character state gives none.
int engineCode(const QSqlError &error)
{
    const QString native = error.nativeErrorCode();
    bool ok = false;
    const int code = native.toInt(&ok);
    return ok && native.size() < 5 ? (code & 0xff) : 0;
}

} // namespace

DatabaseConnection::DatabaseConnection(const QString &filePath, Mode mode)
    : DatabaseConnection(localdb::DatabaseLocation::file(filePath), mode)
{
}

DatabaseConnection::DatabaseConnection(const localdb::DatabaseLocation &location, Mode mode)
    : m_name(uniqueConnectionName())
    , m_location(location)
{
    if (location.isPostgres())
        openServer(mode);
    else
        openFile(mode);
}

void DatabaseConnection::failed(const QSqlError &error)
{
    m_error = error.text().trimmed();
    m_errorCode = engineCode(error);
}

void DatabaseConnection::openFile(Mode mode)
{
    const QString &filePath = m_location.filePath;
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    m_db.setDatabaseName(filePath);
    m_db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000"));
    if (!QFileInfo(filePath).isFile()) {
        m_error = QStringLiteral("Il file %1 non esiste.").arg(filePath);
        m_errorCode = 14; // SQLITE_CANTOPEN
        return;
    }
    if (!m_db.open()) {
        failed(m_db.lastError());
        return;
    }
    if (!configureFile(mode))
        m_db.close();
}

void DatabaseConnection::openServer(Mode mode)
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_name);
    if (!m_db.isValid()) {
        m_error = QStringLiteral("Il driver PostgreSQL di Qt (libqt6sql6-psql) non è installato.");
        m_errorCode = ServerRefused;
        return;
    }
    // Everything goes through libpq's own options, so that a service of pg_service.conf and
    // the password file work as for any other client of the server.
    m_db.setConnectOptions(m_location.libpqOptions() +
                           QStringLiteral(" connect_timeout=10 application_name='Pagamenti' "
                                          "client_encoding='UTF8'"));
    if (!m_db.open()) {
        const QString text = m_db.lastError().text();
        m_error = text.trimmed();
        if (text.contains(QLatin1String("password")) ||
            text.contains(QLatin1String("authentication")))
            m_errorCode = ServerAuthentication;
        else if (text.contains(QLatin1String("does not exist")))
            m_errorCode = ServerDatabaseMissing;
        else if (text.contains(QLatin1String("connect")) || text.contains(QLatin1String("timeout")) ||
                 text.contains(QLatin1String("Connection")) || text.contains(QLatin1String("server")))
            m_errorCode = ServerUnreachable;
        else
            m_errorCode = ServerRefused;
        return;
    }
    QSqlQuery q(m_db);
    // A lock another clerk's program holds is waited for, within reason; an administrator can
    // set the server's options otherwise through PGOPTIONS, which libpq reads.
    if (!q.exec(QStringLiteral("SET client_min_messages TO warning")) ||
        (!qEnvironmentVariableIsSet("PGOPTIONS") &&
         !q.exec(QStringLiteral("SET lock_timeout = '30s'")))) {
        failed(q.lastError());
        m_db.close();
        return;
    }
    if (mode == Mode::Exclusive) {
        // Alone on the database, or not at all: another clerk's program must not work on it
        // while it is converted.
        if (!q.exec(QStringLiteral("SELECT count(*) FROM pg_stat_activity WHERE datname = "
                                   "current_database() AND pid <> pg_backend_pid()")) ||
            !q.next()) {
            failed(q.lastError());
            m_db.close();
            return;
        }
        if (q.value(0).toInt() > 0) {
            m_error = QStringLiteral("Il database è in uso da altri utenti.");
            m_errorCode = 5; // as SQLite's busy
            m_db.close();
        }
    }
}

bool DatabaseConnection::configureFile(Mode mode)
{
    QSqlQuery q(m_db);
    QStringList pragmas{QStringLiteral("PRAGMA foreign_keys = ON")};
    if (mode == Mode::Exclusive)
        pragmas << QStringLiteral("PRAGMA locking_mode = EXCLUSIVE");
    pragmas << QStringLiteral("PRAGMA journal_mode = WAL")
            << QStringLiteral("PRAGMA synchronous = NORMAL");
    for (const QString &pragma : pragmas) {
        if (!q.exec(pragma)) {
            failed(q.lastError());
            return false;
        }
    }
    // The first read is what tells a database from any other file, and a file another
    // program holds from a free one.
    if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master"))) {
        failed(q.lastError());
        return false;
    }
    if (mode == Mode::Exclusive) {
        // Taking the write lock now makes the open fail while anyone else uses the file.
        if (!q.exec(QStringLiteral("BEGIN EXCLUSIVE")) || !q.exec(QStringLiteral("COMMIT"))) {
            failed(q.lastError());
            return false;
        }
    }
    return true;
}

DatabaseConnection::~DatabaseConnection()
{
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_name);
}

void DatabaseConnection::setDurableCommits(bool durable)
{
    if (isPostgres())
        return;
    QSqlQuery q(m_db);
    if (!q.exec(durable ? QStringLiteral("PRAGMA synchronous = FULL")
                        : QStringLiteral("PRAGMA synchronous = NORMAL")))
        throw databaseError(q.lastError());
}

bool DatabaseConnection::isOpen() const
{
    return m_db.isOpen();
}

QString DatabaseConnection::filePath() const
{
    return isPostgres() ? m_location.displayName() : m_location.filePath;
}

bool isPostgres(const QSqlDatabase &db)
{
    return db.driverName() == QLatin1String("QPSQL");
}

Transaction::Transaction(QSqlDatabase &db)
    : m_db(db)
{
    if (!m_db.transaction())
        throw databaseError(m_db.lastError());
    m_active = true;
}

Transaction::~Transaction()
{
    if (m_active)
        m_db.rollback();
}

void Transaction::commit()
{
    crashPoint();
    if (!m_db.commit()) {
        const QSqlError error = m_db.lastError();
        m_db.rollback();
        m_active = false;
        throw databaseError(error);
    }
    m_active = false;
    crashPoint();
}

void Transaction::rollback()
{
    if (m_active)
        m_db.rollback();
    m_active = false;
}

} // namespace pg
