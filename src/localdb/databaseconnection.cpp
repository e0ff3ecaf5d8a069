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

int engineCode(const QSqlError &error)
{
    bool ok = false;
    const int code = error.nativeErrorCode().toInt(&ok);
    return ok ? (code & 0xff) : 0;
}

} // namespace

DatabaseConnection::DatabaseConnection(const QString &filePath, Mode mode)
    : m_name(uniqueConnectionName())
    , m_path(filePath)
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    m_db.setDatabaseName(filePath);
    // The file must already exist: creating it is the schema's work, never a side effect.
    m_db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000"));
    if (!QFileInfo(filePath).isFile()) {
        m_error = QStringLiteral("Il file %1 non esiste.").arg(filePath);
        m_errorCode = 14; // SQLITE_CANTOPEN
        return;
    }
    if (!m_db.open()) {
        m_error = m_db.lastError().text();
        m_errorCode = engineCode(m_db.lastError());
        return;
    }
    if (!configure(mode))
        m_db.close();
}

bool DatabaseConnection::configure(Mode mode)
{
    QSqlQuery q(m_db);
    QStringList pragmas{QStringLiteral("PRAGMA foreign_keys = ON")};
    if (mode == Mode::Exclusive)
        pragmas << QStringLiteral("PRAGMA locking_mode = EXCLUSIVE");
    pragmas << QStringLiteral("PRAGMA journal_mode = WAL")
            << QStringLiteral("PRAGMA synchronous = NORMAL");
    for (const QString &pragma : pragmas) {
        if (!q.exec(pragma)) {
            m_error = q.lastError().text();
            m_errorCode = engineCode(q.lastError());
            return false;
        }
    }
    // The first read is what tells a database from any other file, and a file another
    // program holds from a free one.
    if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master"))) {
        m_error = q.lastError().text();
        m_errorCode = engineCode(q.lastError());
        return false;
    }
    if (mode == Mode::Exclusive) {
        // Taking the write lock now makes the open fail while anyone else uses the file.
        if (!q.exec(QStringLiteral("BEGIN EXCLUSIVE")) || !q.exec(QStringLiteral("COMMIT"))) {
            m_error = q.lastError().text();
            m_errorCode = engineCode(q.lastError());
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
    QSqlQuery q(m_db);
    if (!q.exec(durable ? QStringLiteral("PRAGMA synchronous = FULL")
                        : QStringLiteral("PRAGMA synchronous = NORMAL")))
        throw databaseError(q.lastError());
}

bool DatabaseConnection::isOpen() const
{
    return m_db.isOpen();
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
