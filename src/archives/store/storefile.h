#pragma once

#include "archiveerror.h"
#include "busywait.h"
#include "recordlayout.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <sqlite3.h>

#include <memory>

namespace pg::archives {

// Finalizes a statement that the caller owns.
struct StatementDeleter
{
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementDeleter>;

// One embedded archive store: the SQLite file of an archive directory, holding one table per
// archive. Each table keeps the record bytes and, for every key of the archive's layout, the
// key's bytes in an indexed column; records are read in the order of a key and, for equal
// keys, in the order they were inserted (the table's id).
//
//   archivio_<n> (id INTEGER PRIMARY KEY, record BLOB, chiave_1 BLOB, chiave_2 BLOB, ...)
//   index archivio_<n>_chiave_<k> on each key column
//   tracciati (archivio INTEGER PRIMARY KEY, firma TEXT): the record length and key fields
//   each table was built with, so that a store written under other layouts is not read as
//   if its keys were current.
//
// The file is marked with its own application id; anything else is a damaged store.
class StoreFile
{
public:
    enum class Access {
        Existing,         // the record manager: a missing file is NotFound
        CreateWhenMissing // the archive writer
    };

    StoreFile() = default;
    ~StoreFile();
    StoreFile(const StoreFile &) = delete;
    StoreFile &operator=(const StoreFile &) = delete;

    // The store's file name in every archive directory, and its path in one (empty for an
    // empty directory: a store that cannot be opened).
    static QString fileName();
    static QString pathIn(const QString &archiveDir);
    // The common archives (15 and 0) live in the common directory's store, all others in the
    // company directory's.
    static bool isCommonArchive(int archive);

    static QByteArray tableName(int archive);
    static QByteArray keyColumn(int key);
    // Record length and key fields of a layout, as kept in "tracciati".
    static QByteArray layoutSignature(const ArchiveLayout &layout);
    // The archive error of an engine result code.
    static ArchiveError archiveErrorOf(int sqliteCode);

    // Opens the file with write-ahead logging and normal synchronisation; a new file (writer
    // only) is marked as a store. Returns Ok, NotFound, Damaged, Locked or IoError.
    ArchiveError open(const QString &path, Access access);
    void close();
    bool isOpen() const { return m_db != nullptr; }
    const QString &path() const { return m_path; }
    sqlite3 *handle() const { return m_db; }

    // Whether the archive's table is there (NotFound otherwise) and built for its current
    // layout (Damaged otherwise).
    ArchiveError checkArchive(const ArchiveLayout &layout);
    // Creates the archive's table when missing, and rebuilds it (keys recomputed, records
    // cut or blank-padded to the record length) when it was built for another layout. Runs
    // inside the caller's transaction.
    bool prepareArchive(const ArchiveLayout &layout);

    // A statement kept for the life of the connection, reset and with no bindings. Null on a
    // failure (see lastError()).
    sqlite3_stmt *cached(const QByteArray &sql);
    // A statement the caller owns (a cursor that outlives the call).
    Statement prepare(const QByteArray &sql);
    bool exec(const char *sql);

    // The last failure of this connection: its archive error and the engine's words.
    ArchiveError lastError() const { return m_lastError; }
    QString errorText() const { return m_errorText; }
    // Records a failure of the engine call that returned rc; returns its archive error.
    ArchiveError fail(int rc);

private:
    ArchiveError failWith(ArchiveError error, const QString &text);
    bool initialiseNewStore();

    sqlite3 *m_db = nullptr;
    QString m_path;
    BusyWait m_busyWait;
    QHash<QByteArray, sqlite3_stmt *> m_cache;
    ArchiveError m_lastError = Ok;
    QString m_errorText;
};

} // namespace pg::archives
