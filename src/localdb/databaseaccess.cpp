#include "databaseaccess.h"

#include "localdb/databaseconnection.h"
#include "localdb/openerror.h"

#include "core/prompter.h"

#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace pg::localdb {

namespace {

// "rw-r-----": the permissions of owner, group and others, as ls shows them.
QString permissionText(QFileDevice::Permissions p)
{
    QString text;
    for (const auto &[read, write] : {std::pair{QFileDevice::ReadOwner, QFileDevice::WriteOwner},
                                      std::pair{QFileDevice::ReadGroup, QFileDevice::WriteGroup},
                                      std::pair{QFileDevice::ReadOther, QFileDevice::WriteOther}})
        text += QString(p.testFlag(read) ? u'r' : u'-') + QString(p.testFlag(write) ? u'w' : u'-');
    return text;
}

QString accountName()
{
    const QString user = qEnvironmentVariable("USER", qEnvironmentVariable("USERNAME"));
    return user.isEmpty() ? QStringLiteral("che avvia il programma") : user;
}

QString notAllowed(const QFileInfo &file, const QString &what)
{
    return QStringLiteral("L'utente %1 non ha il permesso di %2 %3 (proprietario %4, permessi "
                          "%5). L'amministratore deve dare agli utenti del programma il permesso "
                          "di lettura e scrittura sul database, sui suoi file di lavoro e sulla "
                          "sua cartella.")
        .arg(accountName(), what, QDir::toNativeSeparators(file.absoluteFilePath()), file.owner(),
             permissionText(file.permissions()));
}

} // namespace

QString fileAccessProblem(const QString &path)
{
#ifdef Q_OS_UNIX
    // Access as the system grants it to this account (groups and all), not by reading bits.
    auto allows = [](const QFileInfo &info, int mode) {
        return ::access(QFile::encodeName(info.absoluteFilePath()).constData(), mode) == 0;
    };
#else
    auto allows = [](const QFileInfo &info, int mode) {
        return (mode & 2) ? info.isWritable() : info.isReadable();
    };
    constexpr int R_OK = 4, W_OK = 2;
#endif
    const QFileInfo file(path);
    if (file.exists() && !allows(file, R_OK | W_OK))
        return notAllowed(file, QStringLiteral("leggere e scrivere il database"));
    for (const char *suffix : {"-wal", "-shm"}) {
        const QFileInfo companion(path + QLatin1String(suffix));
        if (companion.exists() && !allows(companion, R_OK | W_OK))
            return notAllowed(companion, QStringLiteral("scrivere il file di lavoro"));
    }
    // The working files are made beside the database by whoever opens it first.
    const QFileInfo folder(file.absolutePath());
    if (folder.exists() && !allows(folder, W_OK))
        return notAllowed(folder, QStringLiteral("creare i file di lavoro del database nella "
                                                 "cartella"));
    return {};
}

bool databaseOpens(const DatabaseLocation &location)
{
    DatabaseConnection connection(location);
    if (connection.isOpen())
        return true;
    msgBox(QStringLiteral("Impossibile aprire il database locale del programma.\r\n") +
               databaseOpenError(connection).description(),
           Buttons::Ok, Icon::Critical, QStringLiteral("ERRORE"));
    return false;
}

} // namespace pg::localdb
