#include "openerror.h"

#include "localdb/databaseaccess.h"
#include "localdb/databaseconnection.h"

#include <QDir>

namespace pg::localdb {

AppError databaseOpenError(const DatabaseConnection &connection)
{
    const QString file = connection.isPostgres() ? connection.filePath()
                                                 : QDir::toNativeSeparators(connection.filePath());
    QString reason;
    switch (connection.errorCode()) {
    case DatabaseConnection::ServerUnreachable:
        reason = QStringLiteral("Il database %1 non risponde: verificare che il server sia "
                                "acceso e raggiungibile dalla rete, poi riavviare il programma.")
                     .arg(file);
        break;
    case DatabaseConnection::ServerAuthentication:
        reason = QStringLiteral("Il server ha rifiutato l'accesso al database %1: utente o password non "
                                "validi. La password va indicata nel file .pgpass dell'utente "
                                "(o nel file indicato da PGPASSFILE).")
                     .arg(file);
        break;
    case DatabaseConnection::ServerDatabaseMissing:
        reason = QStringLiteral("Il database %1 non esiste sul server: l'amministratore deve crearlo "
                                "(vuoto) prima del primo avvio.")
                     .arg(file);
        break;
    case DatabaseConnection::ServerRefused:
        reason = QStringLiteral("Impossibile usare il database %1.").arg(file);
        break;
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        reason = QStringLiteral("Il database %1 è in uso da un altro programma.").arg(file);
        break;
    case 8: // SQLITE_READONLY
        reason = QStringLiteral("Il database %1 è di sola lettura.").arg(file);
        break;
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        reason = QStringLiteral("Il file %1 non è un database o è danneggiato.").arg(file);
        break;
    case 14: // SQLITE_CANTOPEN
        reason = QStringLiteral("Impossibile aprire il file %1.").arg(file);
        break;
    default:
        reason = QStringLiteral("Impossibile usare il database %1.").arg(file);
        break;
    }
    // A file this account may not use: who may, and what the administrator must change.
    if (!connection.isPostgres()) {
        const QString access = fileAccessProblem(connection.filePath());
        if (!access.isEmpty())
            reason = access;
    }
    const QString engine = connection.errorText().trimmed();
    if (!engine.isEmpty())
        reason += QStringLiteral(" (") + engine + u')';
    return AppError(AppError::DatabaseBase + connection.errorCode(), reason,
                    QStringLiteral("Database"));
}

} // namespace pg::localdb
