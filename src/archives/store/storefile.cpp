#include "storefile.h"

#include "archivenumbers.h"

#include <QFileInfo>

namespace pg::archives {

namespace {

// Marks a SQLite file as an archive store ("PgAr"), and the version of its tables.
constexpr int StoreApplicationId = 0x50674172;
constexpr int StoreFormat = 1;

bool bindBlob(sqlite3_stmt *statement, int index, const QByteArray &bytes)
{
    return sqlite3_bind_blob(statement, index, bytes.constData(), int(bytes.size()),
                             SQLITE_TRANSIENT) == SQLITE_OK;
}

} // namespace

StoreFile::~StoreFile()
{
    close();
}

QString StoreFile::fileName()
{
    return QStringLiteral("archivi.db");
}

QString StoreFile::pathIn(const QString &archiveDir)
{
    // No directory is not the current one: an environment that was never resolved must not
    // find or leave a store wherever the program was started.
    if (archiveDir.isEmpty())
        return {};
    if (archiveDir.endsWith(u'/') || archiveDir.endsWith(u'\\'))
        return archiveDir + fileName();
    return archiveDir + u'/' + fileName();
}

bool StoreFile::isCommonArchive(int archive)
{
    return archive == TabelleComuni || archive == AnagraficheComuni;
}

QByteArray StoreFile::tableName(int archive)
{
    return "archivio_" + QByteArray::number(archive);
}

QByteArray StoreFile::keyColumn(int key)
{
    return "chiave_" + QByteArray::number(key);
}

QByteArray StoreFile::layoutSignature(const ArchiveLayout &layout)
{
    QByteArray out = QByteArray::number(layout.length);
    for (int key : layout.keyNumbers()) {
        out += ';' + QByteArray::number(key) + '=';
        const QList<FieldDef> &fields = layout.keyFields(key);
        for (qsizetype i = 0; i < fields.size(); ++i) {
            if (i > 0)
                out += ',';
            out += QByteArray::number(fields.at(i).offset) + '+' +
                   QByteArray::number(fields.at(i).width);
        }
    }
    return out;
}

ArchiveError StoreFile::archiveErrorOf(int sqliteCode)
{
    switch (sqliteCode & 0xff) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return Ok;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Locked;
    // The store's statements are fixed: one that the engine cannot run means tables that
    // are not those of a store.
    case SQLITE_ERROR:
    case SQLITE_SCHEMA:
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
    case SQLITE_MISMATCH:
        return Damaged;
    default:
        return IoError;
    }
}

ArchiveError StoreFile::open(const QString &path, Access access)
{
    close();
    m_path = path;
    m_lastError = Ok;
    m_errorText.clear();
    if (path.isEmpty())
        return failWith(NotFound, QStringLiteral("Cartella degli archivi non indicata."));
    const bool exists = QFileInfo(path).isFile();
    if (!exists && access == Access::Existing)
        return failWith(NotFound, QStringLiteral("Il file %1 non esiste.").arg(path));

    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    if (access == Access::CreateWhenMissing)
        flags |= SQLITE_OPEN_CREATE;
    int rc = sqlite3_open_v2(path.toUtf8().constData(), &m_db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const ArchiveError error = fail(rc);
        close();
        return error;
    }
    // Another program's write is waited out for a few seconds before a call reports Locked.
    m_busyWait.install(m_db, path);

    // Reading the header is what tells a store from any other file.
    auto pragmaInt = [this](const char *sql, int *value) {
        sqlite3_stmt *statement = nullptr;
        int rc = sqlite3_prepare_v2(m_db, sql, -1, &statement, nullptr);
        if (rc == SQLITE_OK) {
            rc = sqlite3_step(statement);
            if (rc == SQLITE_ROW) {
                *value = sqlite3_column_int(statement, 0);
                rc = SQLITE_OK;
            }
        }
        sqlite3_finalize(statement);
        return rc;
    };
    int applicationId = 0;
    int format = 0;
    int tables = 0;
    rc = pragmaInt("PRAGMA application_id", &applicationId);
    if (rc == SQLITE_OK)
        rc = pragmaInt("PRAGMA user_version", &format);
    if (rc == SQLITE_OK)
        rc = pragmaInt("SELECT count(*) FROM sqlite_master", &tables);
    if (rc != SQLITE_OK) {
        const ArchiveError error = fail(rc);
        close();
        return error;
    }
    const bool isNew = applicationId == 0 && tables == 0 && access == Access::CreateWhenMissing;
    bool ok = isNew || (applicationId == StoreApplicationId && format <= StoreFormat);
    if (!ok)
        failWith(Damaged, QStringLiteral("Il file %1 non è un archivio.").arg(path));
    // Write-ahead log (kept in the file) and normal synchronisation (per connection): each
    // commit survives a crash of the program without waiting for the disk.
    ok = ok && exec("PRAGMA journal_mode = WAL") && exec("PRAGMA synchronous = NORMAL");
    if (ok && isNew)
        ok = initialiseNewStore();
    if (!ok) {
        const ArchiveError error = m_lastError;
        const QString text = m_errorText;
        close();
        m_lastError = error;
        m_errorText = text;
        return error;
    }
    return Ok;
}

bool StoreFile::initialiseNewStore()
{
    const QByteArray setup =
        "BEGIN IMMEDIATE; PRAGMA application_id = " + QByteArray::number(StoreApplicationId) +
        "; PRAGMA user_version = " + QByteArray::number(StoreFormat) +
        "; CREATE TABLE IF NOT EXISTS tracciati "
        "(archivio INTEGER PRIMARY KEY, firma TEXT NOT NULL); COMMIT;";
    if (exec(setup.constData()))
        return true;
    sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
    return false;
}

void StoreFile::close()
{
    for (sqlite3_stmt *statement : std::as_const(m_cache))
        sqlite3_finalize(statement);
    m_cache.clear();
    if (m_db) {
        // Cursors still held by their owners are finalized by them; the connection goes
        // when the last of them does.
        sqlite3_close_v2(m_db);
        m_db = nullptr;
    }
}

ArchiveError StoreFile::checkArchive(const ArchiveLayout &layout)
{
    sqlite3_stmt *table =
        cached("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = ?1");
    if (!table)
        return m_lastError;
    const QByteArray name = tableName(layout.number);
    sqlite3_bind_text(table, 1, name.constData(), int(name.size()), SQLITE_TRANSIENT);
    int rc = sqlite3_step(table);
    if (rc != SQLITE_ROW)
        return fail(rc);
    const bool exists = sqlite3_column_int(table, 0) > 0;
    sqlite3_reset(table);
    if (!exists)
        return failWith(
            NotFound,
            QStringLiteral("L'archivio %1 non è nel file %2.").arg(layout.number).arg(m_path));

    sqlite3_stmt *signature = cached("SELECT firma FROM tracciati WHERE archivio = ?1");
    if (!signature)
        return m_lastError;
    sqlite3_bind_int(signature, 1, layout.number);
    rc = sqlite3_step(signature);
    if (rc != SQLITE_ROW && rc != SQLITE_DONE)
        return fail(rc);
    const bool current = rc == SQLITE_ROW &&
                         QByteArray(static_cast<const char *>(sqlite3_column_blob(signature, 0)),
                                    sqlite3_column_bytes(signature, 0)) == layoutSignature(layout);
    sqlite3_reset(signature);
    if (!current)
        return failWith(Damaged,
                        QStringLiteral("L'archivio %1 del file %2 ha un tracciato diverso.")
                            .arg(layout.number)
                            .arg(m_path));
    return Ok;
}

bool StoreFile::prepareArchive(const ArchiveLayout &layout)
{
    if (!exec("CREATE TABLE IF NOT EXISTS tracciati "
              "(archivio INTEGER PRIMARY KEY, firma TEXT NOT NULL)"))
        return false;
    const ArchiveError state = checkArchive(layout);
    if (state == Ok)
        return true;
    if (state != NotFound && state != Damaged)
        return false;
    const bool rebuild = state == Damaged;

    const QByteArray table = tableName(layout.number);
    const QByteArray target = rebuild ? table + "_nuovo" : table;
    const QList<int> keys = layout.keyNumbers();
    QByteArray create = "CREATE TABLE " + target + " (id INTEGER PRIMARY KEY, record BLOB NOT NULL";
    for (int key : keys)
        create += ", " + keyColumn(key) + " BLOB NOT NULL";
    create += ')';
    if (!exec(create.constData()))
        return false;

    if (rebuild) {
        // Every record again, cut or padded to the record length, its keys computed anew.
        Statement from = prepare("SELECT id, record FROM " + table + " ORDER BY id");
        QByteArray insert = "INSERT INTO " + target + " (id, record";
        QByteArray values = "VALUES (?1, ?2";
        for (qsizetype i = 0; i < keys.size(); ++i) {
            insert += ", " + keyColumn(keys.at(i));
            values += ", ?" + QByteArray::number(i + 3);
        }
        Statement to = prepare(insert + ") " + values + ')');
        if (!from || !to)
            return false;
        int rc;
        while ((rc = sqlite3_step(from.get())) == SQLITE_ROW) {
            QByteArray record(static_cast<const char *>(sqlite3_column_blob(from.get(), 1)),
                              sqlite3_column_bytes(from.get(), 1));
            record = record.leftJustified(layout.length, ' ', true);
            sqlite3_reset(to.get());
            sqlite3_bind_int64(to.get(), 1, sqlite3_column_int64(from.get(), 0));
            bindBlob(to.get(), 2, record);
            for (qsizetype i = 0; i < keys.size(); ++i)
                bindBlob(to.get(), int(i + 3), layout.keyOf(record, keys.at(i)));
            const int written = sqlite3_step(to.get());
            if (written != SQLITE_DONE) {
                fail(written);
                return false;
            }
        }
        if (rc != SQLITE_DONE) {
            fail(rc);
            return false;
        }
        from.reset();
        to.reset();
        // Cached statements may name the old table.
        for (sqlite3_stmt *statement : std::as_const(m_cache))
            sqlite3_finalize(statement);
        m_cache.clear();
        if (!exec(("DROP TABLE " + table).constData()) ||
            !exec(("ALTER TABLE " + target + " RENAME TO " + table).constData()))
            return false;
    }
    for (int key : keys) {
        const QByteArray index = "CREATE INDEX " + table + '_' + keyColumn(key) + " ON " + table +
                                 " (" + keyColumn(key) + ')';
        if (!exec(index.constData()))
            return false;
    }
    sqlite3_stmt *record =
        cached("INSERT OR REPLACE INTO tracciati (archivio, firma) VALUES (?1, ?2)");
    if (!record)
        return false;
    const QByteArray signature = layoutSignature(layout);
    sqlite3_bind_int(record, 1, layout.number);
    sqlite3_bind_text(record, 2, signature.constData(), int(signature.size()), SQLITE_TRANSIENT);
    const int rc = sqlite3_step(record);
    sqlite3_reset(record);
    if (rc != SQLITE_DONE) {
        fail(rc);
        return false;
    }
    return true;
}

sqlite3_stmt *StoreFile::cached(const QByteArray &sql)
{
    const auto it = m_cache.constFind(sql);
    if (it != m_cache.constEnd()) {
        sqlite3_reset(*it);
        sqlite3_clear_bindings(*it);
        return *it;
    }
    sqlite3_stmt *statement = nullptr;
    const int rc = sqlite3_prepare_v3(m_db, sql.constData(), int(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (rc != SQLITE_OK) {
        fail(rc);
        return nullptr;
    }
    m_cache.insert(sql, statement);
    return statement;
}

Statement StoreFile::prepare(const QByteArray &sql)
{
    sqlite3_stmt *statement = nullptr;
    const int rc = sqlite3_prepare_v2(m_db, sql.constData(), int(sql.size()), &statement, nullptr);
    if (rc != SQLITE_OK) {
        fail(rc);
        sqlite3_finalize(statement);
        return {};
    }
    return Statement(statement);
}

bool StoreFile::exec(const char *sql)
{
    const int rc = sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) {
        fail(rc);
        return false;
    }
    return true;
}

ArchiveError StoreFile::fail(int rc)
{
    return failWith(archiveErrorOf(rc), m_db ? QString::fromUtf8(sqlite3_errmsg(m_db))
                                             : QString::fromUtf8(sqlite3_errstr(rc)));
}

ArchiveError StoreFile::failWith(ArchiveError error, const QString &text)
{
    m_lastError = error;
    m_errorText = text;
    return error;
}

} // namespace pg::archives
