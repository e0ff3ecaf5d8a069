#pragma once

#include "core/apperror.h"

namespace pg {
class DatabaseConnection;
}

namespace pg::localdb {

// Why a connection to the local database did not open, as the program's error: number
// AppError::DatabaseBase plus the engine's code, and a description in Italian that names the
// file (the engine's own words follow in brackets).
AppError databaseOpenError(const DatabaseConnection &connection);

} // namespace pg::localdb
