#include "testdatabase.h"

#include "localdb/databaseconnection.h"
#include "localdb/localdatabase.h"

#include <QAtomicInteger>
#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace pg::test {

namespace {

localdb::DatabaseLocation serverDatabase(const QString &name)
{
    localdb::DatabaseLocation location;
    location.engine = localdb::DatabaseLocation::Engine::PostgreSQL;
    location.host = qEnvironmentVariable("PAGAMENTI_TEST_PGHOST");
    location.port = qEnvironmentVariableIntValue("PAGAMENTI_TEST_PGPORT");
    location.database = name;
    location.user = QStringLiteral("postgres");
    return location;
}

QString uniqueName()
{
    static QAtomicInteger<int> counter;
    return QStringLiteral("t%1_%2").arg(QCoreApplication::applicationPid()).arg(++counter);
}

} // namespace

bool onServer()
{
    return qEnvironmentVariable("PAGAMENTI_TEST_ENGINE") == u"postgresql";
}

bool onServerAdmin(const QString &sql)
{
    const QString connection = QStringLiteral("test-admin");
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), connection);
        db.setConnectOptions(serverDatabase(QStringLiteral("postgres")).libpqOptions());
        if (db.open()) {
            QSqlQuery query(db);
            ok = query.exec(sql);
            if (!ok)
                qWarning("%s: %s", qPrintable(sql), qPrintable(query.lastError().text()));
        } else {
            qWarning("test server: %s", qPrintable(db.lastError().text()));
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
    return ok;
}

TestDatabase::TestDatabase(const QString &companyDir)
{
    if (!onServer()) {
        m_location = localdb::DatabaseLocation::file(companyDir + localdb::FileName);
        m_valid = true;
        return;
    }
    m_location = serverDatabase(uniqueName());
    if (!onServerAdmin(QStringLiteral("CREATE DATABASE ") + m_location.database))
        return;
    QFile ini(companyDir + localdb::SettingsFileName);
    if (!ini.open(QIODevice::WriteOnly))
        return;
    ini.write(QStringLiteral("[Database]\r\nEngine=PostgreSQL\r\nHost=%1\r\nPort=%2\r\n"
                             "Database=%3\r\nUser=%4\r\n")
                  .arg(m_location.host)
                  .arg(m_location.port)
                  .arg(m_location.database, m_location.user)
                  .toUtf8());
    m_valid = true;
}

DatabaseHold::DatabaseHold(const localdb::DatabaseLocation &location)
    : m_connection(std::make_unique<DatabaseConnection>(location))
{
    if (!m_connection->isOpen())
        return;
    QSqlQuery hold(m_connection->database());
    m_held = location.isPostgres()
                 ? hold.exec(QStringLiteral("BEGIN")) &&
                       hold.exec(QStringLiteral("LOCK TABLE TB_TESTATA, TB_RIGHE, TB_RIGHE_RAGG IN "
                                                "EXCLUSIVE MODE"))
                 : hold.exec(QStringLiteral("BEGIN IMMEDIATE"));
}

DatabaseHold::~DatabaseHold()
{
    release();
}

void DatabaseHold::release()
{
    if (!m_held)
        return;
    QSqlQuery(m_connection->database()).exec(QStringLiteral("ROLLBACK"));
    m_held = false;
}

TestDatabase::~TestDatabase()
{
    if (m_location.isPostgres() && m_valid)
        onServerAdmin(QStringLiteral("DROP DATABASE IF EXISTS ") + m_location.database +
                      QStringLiteral(" WITH (FORCE)"));
}

} // namespace pg::test
