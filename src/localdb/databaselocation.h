#pragma once

#include <QString>

#include <optional>

namespace pg::localdb {

// Where a company's local database lives: the embedded SQLite file beside the company's
// archives (the default, nothing to set up), or a database on a PostgreSQL server shared by
// the clerks of an office. A file "Pagame.ini" in the company's archive directory chooses the
// server, section [Database]:
//
//   [Database]
//   Engine=PostgreSQL
//   Service=pagamenti_rossi        ; a service of pg_service.conf, or:
//   Host=server.ufficio.lan
//   Port=5432
//   Database=pagamenti_rossi
//   User=clerk
//
// The password never sits there: libpq finds it in ~/.pgpass (or PGPASSFILE). Without the
// file, or with Engine=SQLite, the database is the file "Pagame.db" of the directory.
struct DatabaseLocation
{
    enum class Engine { SQLite, PostgreSQL };

    Engine engine = Engine::SQLite;
    QString filePath; // SQLite: the database file
    // PostgreSQL: the libpq connection; empty values are left to libpq's defaults.
    QString service;
    QString host;
    int port = 0;
    QString database;
    QString user;

    bool isPostgres() const { return engine == Engine::PostgreSQL; }

    // The SQLite file.
    static DatabaseLocation file(const QString &path);
    // The database of a company whose archives are in that directory, as its Pagame.ini says
    // (SQLite "Pagame.db" there without one). A Pagame.ini that cannot be used gives nothing
    // and says why in *error (Italian, for the clerk).
    static std::optional<DatabaseLocation> ofCompany(const QString &companyArchiveDir,
                                                     QString *error);

    // The connection string the distinta component is given: "Data Source=<file>;" for SQLite,
    // "Provider=PostgreSQL;Service=...;Host=...;Port=...;Database=...;User=...;" for a server
    // (empty parts left out); and back.
    QString connectionString() const;
    static DatabaseLocation fromConnectionString(const QString &connectionString);

    // libpq's connection options of a server ("service=... host=..."), values quoted.
    QString libpqOptions() const;
    // How messages name it: the file, or "<database> sul server <host>".
    QString displayName() const;

    bool operator==(const DatabaseLocation &other) const = default;
};

// The settings file of a company's database, in its archive directory.
inline const QString SettingsFileName = QStringLiteral("Pagame.ini");

} // namespace pg::localdb
