#pragma once

#include <QSqlDatabase>
#include <QString>

namespace pg {

// The database's own named values (table _tblSys_EnvVar, one row per name); the program
// keeps "VersioneDatabase" there. Names and values are bound, never written into SQL text.
// A database failure raises an AppError, so that the caller knows the operation failed.

// The value of the variable, or the default when there is no such row or its value is null.
QString ReadEnvVar(QSqlDatabase &db, const QString &name, const QString &defaultValue);

// Sets the variable, adding its row when it does not exist; never more than one row a name.
void WriteEnvVar(QSqlDatabase &db, const QString &name, const QString &value);

} // namespace pg
