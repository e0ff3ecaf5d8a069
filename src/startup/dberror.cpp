#include "dberror.h"

namespace pg {

namespace {

// SQLite's code of a failure (extended codes have at most four digits); a PostgreSQL server
// gives a five-character state instead, which has none.
int engineCode(const QSqlError &error)
{
    const QString native = error.nativeErrorCode();
    bool ok = false;
    const int code = native.toInt(&ok);
    return ok && native.size() < 5 ? code : 0;
}

QString serverState(const QSqlError &error)
{
    const QString native = error.nativeErrorCode();
    return native.size() == 5 ? native : QString();
}

} // namespace

AppError databaseError(const QSqlError &error, std::source_location where)
{
    QString text = error.text().trimmed();
    if (text.isEmpty())
        text = QStringLiteral("Errore del database");
    if (isConnectionLost(error))
        text = QStringLiteral("Connessione al database interrotta: quanto era in corso non è stato "
                              "registrato. (") +
               text + u')';
    return AppError(AppError::DatabaseBase + (engineCode(error) & 0xff), text,
                    QStringLiteral("Database"), where);
}

bool isBusy(const QSqlError &error)
{
    const int primary = engineCode(error) & 0xff;
    const QString state = serverState(error);
    // SQLITE_BUSY, SQLITE_LOCKED; a server's lock not available, serialization failure,
    // deadlock.
    return primary == 5 || primary == 6 || state == QLatin1String("55P03") ||
           state == QLatin1String("40001") || state == QLatin1String("40P01");
}

bool isUniqueViolation(const QSqlError &error)
{
    // SQLITE_CONSTRAINT_UNIQUE and _PRIMARYKEY; a server's unique violation.
    const int code = engineCode(error);
    return code == 2067 || code == 1555 || serverState(error) == QLatin1String("23505");
}

bool isConnectionLost(const QSqlError &error)
{
    // A server's connection exceptions and its ending of the session, and what libpq says
    // when the connection is already gone.
    const QString state = serverState(error);
    return state.startsWith(QLatin1String("08")) || state == QLatin1String("57P01") ||
           state == QLatin1String("57P02") || state == QLatin1String("57P03") ||
           error.databaseText().contains(QLatin1String("no connection to the server")) ||
           error.databaseText().contains(QLatin1String("server closed the connection"));
}

bool isNotADatabase(const QSqlError &error)
{
    const int primary = engineCode(error) & 0xff;
    return primary == 26 || primary == 11; // SQLITE_NOTADB, SQLITE_CORRUPT
}

} // namespace pg
