#include "dberror.h"

namespace pg {

namespace {

int engineCode(const QSqlError &error)
{
    bool ok = false;
    const int code = error.nativeErrorCode().toInt(&ok);
    return ok ? code : 0;
}

} // namespace

AppError databaseError(const QSqlError &error, std::source_location where)
{
    QString text = error.text().trimmed();
    if (text.isEmpty())
        text = QStringLiteral("Errore del database");
    return AppError(AppError::DatabaseBase + (engineCode(error) & 0xff), text,
                    QStringLiteral("Database"), where);
}

bool isBusy(const QSqlError &error)
{
    const int primary = engineCode(error) & 0xff;
    return primary == 5 || primary == 6; // SQLITE_BUSY, SQLITE_LOCKED
}

bool isNotADatabase(const QSqlError &error)
{
    const int primary = engineCode(error) & 0xff;
    return primary == 26 || primary == 11; // SQLITE_NOTADB, SQLITE_CORRUPT
}

} // namespace pg
