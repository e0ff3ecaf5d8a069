#include "openerror.h"

#include "localdb/databaseconnection.h"

#include <QDir>

namespace pg::localdb {

AppError databaseOpenError(const DatabaseConnection &connection)
{
    const QString file = QDir::toNativeSeparators(connection.filePath());
    QString reason;
    switch (connection.errorCode()) {
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
    const QString engine = connection.errorText().trimmed();
    if (!engine.isEmpty())
        reason += QStringLiteral(" (") + engine + u')';
    return AppError(AppError::DatabaseBase + connection.errorCode(), reason,
                    QStringLiteral("Database"));
}

} // namespace pg::localdb
