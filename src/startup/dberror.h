#pragma once

#include "core/apperror.h"

#include <QSqlError>

#include <source_location>

namespace pg {

// A database failure as the program's error: number AppError::DatabaseBase plus the engine's
// own code (SQLITE_BUSY 5 gives 3005), the engine's text as description.
AppError databaseError(const QSqlError &error,
                       std::source_location where = std::source_location::current());

// Engine codes the program tells apart.
bool isBusy(const QSqlError &error);
bool isNotADatabase(const QSqlError &error);
// A unique index refused the row (a number another clerk took first).
bool isUniqueViolation(const QSqlError &error);
// The server went away in the middle of the work.
bool isConnectionLost(const QSqlError &error);

} // namespace pg
