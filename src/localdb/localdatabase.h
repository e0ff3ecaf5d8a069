#pragma once

#include "localdb/databaselocation.h"

#include <QString>

#include <optional>

// The local database of the company: its file, its version, and the four steps of start-up
// that make it ready (creation from the schema description file, regeneration of the file in
// a development tree, version check with the one conversion the program knows).
namespace pg::localdb {

// The database file in the company's archive directory.
inline const QString FileName = QStringLiteral("Pagame.db");
// The version this program writes and expects; the one older version it converts.
inline const QString CurrentVersion = QStringLiteral("06.07.01");
inline const QString PreviousVersion = QStringLiteral("06.07.00");
// The variable of _tblSys_EnvVar that holds the version.
inline const QString VersionVariable = QStringLiteral("VersioneDatabase");
// The schema description file in the program directory, and the generator's output there.
inline const QString SchemaFileName = QStringLiteral("QXARTRAC.DAT");
inline const QString GeneratedSchemaFileName = QStringLiteral("tracciati_new.txt");

// CompanyArchiveDir() + FileName.
QString localDatabasePath();

// The current company's database, as its Pagame.ini says (the file "Pagame.db" without one).
// Nothing, after a message, when Pagame.ini cannot be used.
std::optional<DatabaseLocation> companyDatabase();

// Whether the database is there: the file, or our tables in the server's database (false
// when the server cannot be reached: creating it then says why).
bool databaseExists(const DatabaseLocation &location);

// Creates the database from ProgramDir() + "QXARTRAC.DAT": the file as CreateDatabaseFromSchema
// does, or every table in the server's database, which the administrator made empty for the
// program; all of it in one transaction, so that a failure leaves nothing behind. A server's
// database that holds tables of another program is never touched. Failures are shown.
bool CreateDatabase(const DatabaseLocation &location);


// Creates the database directory + fileName from ProgramDir() + "QXARTRAC.DAT". The database
// is built in a new file of the same directory (with the permissions the directory and the
// umask give any new file) and moved into place only when all of it was built, so a failure
// never leaves a database behind; an existing file is never replaced.
// Every failure is shown through the prompting seam and gives false.
bool CreateDatabaseFromSchema(const QString &directory, const QString &fileName);

// Describes the database directory + fileName in ProgramDir() + "tracciati_new.txt" (written
// as "tracciati_new.txt_new", then the old file is deleted and the new one renamed). Nothing
// happens when the database does not exist; a failure is shown and start-up goes on.
void GenerateSchemaFile(const QString &directory, const QString &fileName);
void GenerateSchemaFile(const DatabaseLocation &location);

// Opens the database, stamps the current version when it has none, converts a "Pagame.db"
// of version "06.07.00" (a failed conversion ends the process) and adds to "Pagame.db" the
// tables it lacks. False (after a
// message) when the database cannot be opened or read, so that the program does not go on.
bool CheckDatabaseVersion(const QString &fileName);
bool CheckDatabaseVersion(const DatabaseLocation &location);

// Adds the tables of the program's own schema description that the database lacks (a
// database made by an earlier release has no write-back journal), with their indexes, in one
// transaction; the tables it has are left as they are. Raises AppError on a database failure.
void AddMissingTables(const QString &fileName);
void AddMissingTables(const DatabaseLocation &location);

// The conversion from "06.07.00": opens the database exclusively (asking to retry while
// another program holds it), adds val_imp_indist_eur and val_imp_indist_val to TB_RIGHE and
// TB_RIGHE_RAGG with the residual amounts copied, and writes the current version, all in one
// transaction. False, after a message, when it did not happen.
bool UpgradeTo060701(const QString &fileName);
bool UpgradeTo060701(const DatabaseLocation &location);

} // namespace pg::localdb
