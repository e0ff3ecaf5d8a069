#include "writebacklock.h"

#include "core/prompter.h"

#include <QDir>

namespace pg::distinta {

namespace {

// Long enough for another program to save a large distinta.
constexpr int WaitMs = 30000;

} // namespace

WriteBackLock::WriteBackLock(const QString &databasePath)
    : m_lock(databasePath + QStringLiteral(".lock"))
{
    // Held only while a program lives: never taken from a running one, however long it works.
    m_lock.setStaleLockTime(0);
}

bool WriteBackLock::acquire()
{
    if (m_lock.tryLock(WaitMs))
        return true;
    if (m_lock.error() == QLockFile::LockFailedError)
        msgBox(QStringLiteral("Un altro programma sta aggiornando le scadenze di [orvida] per "
                              "questa azienda. Riprovare fra qualche istante."),
               Buttons::Ok, Icon::Exclamation);
    else
        msgBox(QStringLiteral("Impossibile creare il file %1: le scadenze di [orvida] non "
                              "possono essere aggiornate. Verificare i permessi della cartella.")
                   .arg(QDir::toNativeSeparators(m_lock.fileName())),
               Buttons::Ok, Icon::Critical);
    return false;
}

} // namespace pg::distinta
