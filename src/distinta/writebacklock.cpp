#include "writebacklock.h"

#include "core/prompter.h"
#include "localdb/databaseconnection.h"
#include "localdb/openerror.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

namespace pg::distinta {

namespace {

// Long enough for another program to save a large distinta.
constexpr int WaitMs = 30000;

// The server's advisory lock of the write-back: one pair of numbers for every Pagamenti of the
// database ("PG" and "SCAD" in ASCII).
constexpr int LockClass = 0x5047;
constexpr int LockKey = 0x53434144;

void tellBusy()
{
    msgBox(QStringLiteral("Un altro programma sta aggiornando le scadenze di [orvida] per "
                          "questa azienda. Riprovare fra qualche istante."),
           Buttons::Ok, Icon::Exclamation);
}

} // namespace

WriteBackLock::WriteBackLock(const localdb::DatabaseLocation &location) : m_location(location)
{
    if (location.isPostgres())
        return;
    m_file.emplace(location.filePath + QStringLiteral(".lock"));
    // Held only while a program lives: never taken from a running one, however long it works.
    m_file->setStaleLockTime(0);
}

WriteBackLock::~WriteBackLock() = default;

bool WriteBackLock::acquire()
{
    if (m_location.isPostgres())
        return acquireOnServer();
    if (m_file->tryLock(WaitMs))
        return true;
    if (m_file->error() == QLockFile::LockFailedError)
        tellBusy();
    else
        msgBox(QStringLiteral("Impossibile creare il file %1: le scadenze di [orvida] non "
                              "possono essere aggiornate. Verificare i permessi della cartella.")
                   .arg(QDir::toNativeSeparators(m_file->fileName())),
               Buttons::Ok, Icon::Critical);
    return false;
}

bool WriteBackLock::acquireOnServer()
{
    m_server = std::make_unique<DatabaseConnection>(m_location);
    if (!m_server->isOpen()) {
        msgBox(localdb::databaseOpenError(*m_server).description(), Buttons::Ok, Icon::Critical);
        m_server.reset();
        return false;
    }
    QSqlQuery query(m_server->database());
    if (!query.prepare(QStringLiteral("SELECT pg_try_advisory_lock(?, ?)"))) {
        msgBox(query.lastError().text(), Buttons::Ok, Icon::Critical);
        return false;
    }
    const QDeadlineTimer deadline(WaitMs);
    for (;;) {
        query.addBindValue(LockClass);
        query.addBindValue(LockKey);
        if (!query.exec() || !query.next()) {
            msgBox(localdb::databaseOpenError(*m_server).description() + QStringLiteral("\r\n") +
                       query.lastError().text(),
                   Buttons::Ok, Icon::Critical);
            return false;
        }
        if (query.value(0).toBool())
            return true;
        query.finish();
        if (deadline.hasExpired()) {
            tellBusy();
            return false;
        }
        QThread::msleep(50);
    }
}

} // namespace pg::distinta
