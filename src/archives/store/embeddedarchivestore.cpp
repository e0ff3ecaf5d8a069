#include "embeddedarchivestore.h"

#include "archivenumbers.h"
#include "storefile.h"

#include "startup/companyenvironment.h"

#include <QDir>

#include <cstring>
#include <map>
#include <unordered_map>

namespace pg::archives {

namespace {

struct OpenArchive;

// A store file in use, shared by every session that opened one of its archives.
struct Store
{
    StoreFile file;
    int users = 0;
    // The one archive whose walk has a live cursor on this store. Every other call on the
    // store suspends it first, so that no read snapshot outlives the walk's own next-reads:
    // an older snapshot would hide other programs' changes from equal reads and make
    // rewrites fail once another program has written.
    OpenArchive *walker = nullptr;
};

// An archive opened by a session: its mode, the position of its last positioning read and
// the record last read.
struct OpenArchive
{
    const ArchiveLayout *layout = nullptr;
    Store *store = nullptr;
    QByteArray table;
    bool rewritable = false;

    // The position: the key order of the last positioning read and the last record returned
    // in it (its key and id). A live cursor stands on that record while the walk goes on;
    // without one (suspended, or after an equal read), a next-read seeks past the position.
    int key = 0; // 0: no position
    Statement cursor;
    bool cursorOnRow = false;
    QByteArray lastKey;
    qint64 lastId = 0;
    bool atEnd = false;

    qint64 current = 0; // id of the record last read, 0 when there is none
};

using Session = std::map<int, std::unique_ptr<OpenArchive>>;

} // namespace

class EmbeddedArchiveStore::Private
{
public:
    qint16 done(ArchiveError error)
    {
        lastError = error;
        return error == Ok ? qint16(0) : qint16(-error);
    }
    qint16 failed(OpenArchive &open) { return done(open.store->file.lastError()); }

    // The open archive of the session, or the reason there is none.
    OpenArchive *find(qint32 handle, qint32 archive, ArchiveError *error);
    void release(std::unique_ptr<OpenArchive> open);
    // Copies the record of column 1 of the statement's row into the buffer.
    void readRecord(const OpenArchive &open, sqlite3_stmt *statement, QByteArray &record);
    // Starts a walk in key order at the first record at or after the start key.
    qint16 position(OpenArchive &open, int key, const QByteArray &startKey, QByteArray &record);
    // Writes the record over the one with the archive's current id, in one transaction.
    ArchiveError rewrite(OpenArchive &open, const QByteArray &bytes);
    // Stops the live cursor on the store, if any, remembering where it stood.
    void suspendWalker(Store *store);
    // Drops the archive's position and record last read.
    void forget(OpenArchive &open);

    QString companyDir;
    QString commonDir;
    std::map<QString, std::unique_ptr<Store>> stores; // by path
    std::unordered_map<qint32, Session> sessions;
    ArchiveError lastError = Ok;
};

OpenArchive *EmbeddedArchiveStore::Private::find(qint32 handle, qint32 archive, ArchiveError *error)
{
    if (!RecordLayouts::instance().archive(archive)) {
        *error = UnknownArchive;
        return nullptr;
    }
    const auto session = sessions.find(handle);
    if (session != sessions.end()) {
        const auto open = session->second.find(archive);
        if (open != session->second.end())
            return open->second.get();
    }
    *error = NotOpen;
    return nullptr;
}

void EmbeddedArchiveStore::Private::release(std::unique_ptr<OpenArchive> open)
{
    Store *store = open->store;
    if (store->walker == open.get())
        store->walker = nullptr;
    open.reset();
    if (--store->users == 0)
        stores.erase(store->file.path());
}

void EmbeddedArchiveStore::Private::readRecord(const OpenArchive &open, sqlite3_stmt *statement,
                                               QByteArray &record)
{
    const int length = open.layout->length;
    const char *bytes = static_cast<const char *>(sqlite3_column_blob(statement, 1));
    const int stored = sqlite3_column_bytes(statement, 1);
    record.resize(length);
    char *out = record.data();
    const int copied = std::min(stored, length);
    if (copied > 0)
        std::memcpy(out, bytes, size_t(copied));
    if (copied < length)
        std::memset(out + copied, ' ', size_t(length - copied));
}

qint16 EmbeddedArchiveStore::Private::position(OpenArchive &open, int key,
                                               const QByteArray &startKey, QByteArray &record)
{
    suspendWalker(open.store);
    forget(open);
    const QByteArray column = StoreFile::keyColumn(key);
    open.cursor =
        open.store->file.prepare("SELECT id, record, " + column + " FROM " + open.table +
                                 " WHERE " + column + " >= ?1 ORDER BY " + column + ", id");
    if (!open.cursor)
        return failed(open);
    sqlite3_bind_blob(open.cursor.get(), 1, startKey.constData(), int(startKey.size()),
                      SQLITE_TRANSIENT);
    open.key = key;
    const int rc = sqlite3_step(open.cursor.get());
    if (rc == SQLITE_ROW) {
        open.store->walker = &open;
        open.cursorOnRow = true;
        open.current = sqlite3_column_int64(open.cursor.get(), 0);
        readRecord(open, open.cursor.get(), record);
        return done(Ok);
    }
    open.cursor.reset();
    if (rc == SQLITE_DONE) {
        open.atEnd = true;
        return done(EndOfArchive);
    }
    open.key = 0;
    return done(open.store->file.fail(rc));
}

ArchiveError EmbeddedArchiveStore::Private::rewrite(OpenArchive &open, const QByteArray &bytes)
{
    StoreFile &file = open.store->file;
    const ArchiveLayout &layout = *open.layout;
    const QList<int> keys = layout.keyNumbers();
    sqlite3_stmt *begin = file.cached("BEGIN IMMEDIATE");
    if (!begin)
        return file.lastError();
    int rc = sqlite3_step(begin);
    sqlite3_reset(begin);
    if (rc != SQLITE_DONE)
        return file.fail(rc);

    // Only the keys that change are written: an index entry rewritten to the same value
    // would cost as much as a real move.
    QByteArray select = "SELECT ";
    for (qsizetype i = 0; i < keys.size(); ++i)
        select += (i > 0 ? ", " : "") + StoreFile::keyColumn(keys.at(i));
    select += " FROM " + open.table + " WHERE id = ?1";
    QByteArray update = "UPDATE " + open.table + " SET record = ?1";
    QList<QByteArray> changed;
    ArchiveError result = Ok;
    sqlite3_stmt *current = file.cached(select);
    if (!current) {
        result = file.lastError();
    } else {
        sqlite3_bind_int64(current, 1, open.current);
        rc = sqlite3_step(current);
        if (rc == SQLITE_ROW) {
            for (qsizetype i = 0; i < keys.size(); ++i) {
                QByteArray key = layout.keyOf(bytes, keys.at(i));
                const QByteArrayView stored(
                    static_cast<const char *>(sqlite3_column_blob(current, int(i))),
                    sqlite3_column_bytes(current, int(i)));
                if (stored != key) {
                    update += ", " + StoreFile::keyColumn(keys.at(i)) + " = ?" +
                              QByteArray::number(changed.size() + 3);
                    changed << key;
                }
            }
        } else {
            result = rc == SQLITE_DONE ? NotFound : file.fail(rc);
        }
        sqlite3_reset(current);
    }
    if (result == Ok) {
        sqlite3_stmt *statement = file.cached(update + " WHERE id = ?2");
        if (!statement) {
            result = file.lastError();
        } else {
            sqlite3_bind_blob(statement, 1, bytes.constData(), int(bytes.size()), SQLITE_STATIC);
            sqlite3_bind_int64(statement, 2, open.current);
            for (qsizetype i = 0; i < changed.size(); ++i)
                sqlite3_bind_blob(statement, int(i + 3), changed.at(i).constData(),
                                  int(changed.at(i).size()), SQLITE_STATIC);
            rc = sqlite3_step(statement);
            sqlite3_reset(statement);
            if (rc != SQLITE_DONE)
                result = file.fail(rc);
        }
    }
    sqlite3_stmt *end = file.cached(result == Ok ? "COMMIT" : "ROLLBACK");
    if (!end)
        return result == Ok ? file.lastError() : result;
    rc = sqlite3_step(end);
    sqlite3_reset(end);
    if (rc != SQLITE_DONE && result == Ok) {
        result = file.fail(rc);
        sqlite3_exec(file.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
    return result;
}

void EmbeddedArchiveStore::Private::suspendWalker(Store *store)
{
    OpenArchive *walker = store->walker;
    if (!walker)
        return;
    if (walker->cursorOnRow) {
        sqlite3_stmt *cursor = walker->cursor.get();
        walker->lastId = sqlite3_column_int64(cursor, 0);
        walker->lastKey = QByteArray(static_cast<const char *>(sqlite3_column_blob(cursor, 2)),
                                     sqlite3_column_bytes(cursor, 2));
    }
    walker->cursor.reset();
    walker->cursorOnRow = false;
    store->walker = nullptr;
}

void EmbeddedArchiveStore::Private::forget(OpenArchive &open)
{
    if (open.store->walker == &open)
        open.store->walker = nullptr;
    open.cursor.reset();
    open.cursorOnRow = false;
    open.key = 0;
    open.atEnd = false;
    open.current = 0;
}

EmbeddedArchiveStore::EmbeddedArchiveStore()
    : EmbeddedArchiveStore(CompanyArchiveDir(), CommonArchiveDir())
{}

EmbeddedArchiveStore::EmbeddedArchiveStore(const QString &companyArchiveDir,
                                           const QString &commonArchiveDir)
    : d(std::make_unique<Private>())
{
    d->companyDir = companyArchiveDir;
    d->commonDir = commonArchiveDir;
}

EmbeddedArchiveStore::~EmbeddedArchiveStore()
{
    // Cursors go before the connections they read from.
    d->sessions.clear();
    d->stores.clear();
}

QString EmbeddedArchiveStore::storeFileName()
{
    return StoreFile::fileName();
}

QString EmbeddedArchiveStore::storePath(const QString &archiveDir)
{
    return StoreFile::pathIn(archiveDir);
}

bool EmbeddedArchiveStore::isCommonArchive(int archive)
{
    return StoreFile::isCommonArchive(archive);
}

const QString &EmbeddedArchiveStore::companyArchiveDir() const
{
    return d->companyDir;
}

const QString &EmbeddedArchiveStore::commonArchiveDir() const
{
    return d->commonDir;
}

QString EmbeddedArchiveStore::storePathOf(int archive) const
{
    return QDir::cleanPath(storePath(isCommonArchive(archive) ? d->commonDir : d->companyDir));
}

qint32 EmbeddedArchiveStore::VBInit(qint32)
{
    return 1;
}

void EmbeddedArchiveStore::VBEnd(qint32 handle)
{
    const auto session = d->sessions.find(handle);
    if (session == d->sessions.end())
        return;
    Session archives = std::move(session->second);
    d->sessions.erase(session);
    for (auto &[archive, open] : archives)
        d->release(std::move(open));
}

qint16 EmbeddedArchiveStore::AperturaFile(qint32 handle, qint32 archive, qint32 mode)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    if (!layout)
        return d->done(UnknownArchive);
    Session &session = d->sessions[handle];
    if (session.count(archive))
        return d->done(AlreadyOpen);

    const QString path = storePathOf(archive);
    auto it = d->stores.find(path);
    if (it == d->stores.end()) {
        auto store = std::make_unique<Store>();
        const ArchiveError error = store->file.open(path, StoreFile::Access::Existing);
        if (error != Ok)
            return d->done(error);
        it = d->stores.emplace(path, std::move(store)).first;
    }
    Store *store = it->second.get();
    const ArchiveError error = store->file.checkArchive(*layout);
    if (error != Ok) {
        if (store->users == 0)
            d->stores.erase(it);
        return d->done(error);
    }

    auto open = std::make_unique<OpenArchive>();
    open->layout = layout;
    open->store = store;
    open->table = StoreFile::tableName(archive);
    open->rewritable = mode == ReadRewrite;
    ++store->users;
    session.emplace(archive, std::move(open));
    return d->done(Ok);
}

qint16 EmbeddedArchiveStore::ChiusuraFile(qint32 handle, qint32 archive)
{
    ArchiveError error = Ok;
    if (!d->find(handle, archive, &error))
        return d->done(error);
    Session &session = d->sessions[handle];
    const auto it = session.find(archive);
    std::unique_ptr<OpenArchive> open = std::move(it->second);
    session.erase(it);
    d->release(std::move(open));
    return d->done(Ok);
}

qint16 EmbeddedArchiveStore::LetturaEqRec32(qint32 handle, qint32 archive, qint32 key,
                                            QByteArray &record)
{
    ArchiveError error = Ok;
    OpenArchive *open = d->find(handle, archive, &error);
    if (!open)
        return d->done(error);
    if (!open->layout->hasKey(key))
        return d->done(BadKey);

    d->suspendWalker(open->store);
    const QByteArray keyBytes = open->layout->keyOf(record, key);
    const QByteArray column = StoreFile::keyColumn(key);
    sqlite3_stmt *statement = open->store->file.cached("SELECT id, record FROM " + open->table +
                                                       " WHERE " + column + " = ?1 ORDER BY id");
    if (!statement)
        return d->failed(*open);
    sqlite3_bind_blob(statement, 1, keyBytes.constData(), int(keyBytes.size()), SQLITE_STATIC);
    const int rc = sqlite3_step(statement);
    d->forget(*open);
    if (rc == SQLITE_ROW) {
        // The record found is also the position for next-reads in this key's order.
        open->key = key;
        open->lastKey = keyBytes;
        open->lastId = open->current = sqlite3_column_int64(statement, 0);
        d->readRecord(*open, statement, record);
        sqlite3_reset(statement);
        return d->done(Ok);
    }
    sqlite3_reset(statement);
    if (rc == SQLITE_DONE)
        return d->done(NotFound);
    return d->done(open->store->file.fail(rc));
}

qint16 EmbeddedArchiveStore::LetturaFirstRec32(qint32 handle, qint32 archive, qint32 key,
                                               QByteArray &record, const QByteArray &startKey)
{
    ArchiveError error = Ok;
    OpenArchive *open = d->find(handle, archive, &error);
    if (!open)
        return d->done(error);
    if (!open->layout->hasKey(key) || startKey.size() > open->layout->keyLength(key))
        return d->done(BadKey);
    return d->position(*open, key, startKey, record);
}

qint16 EmbeddedArchiveStore::LetturaGenRec32(qint32 handle, qint32 archive, qint32 key,
                                             QByteArray &record)
{
    ArchiveError error = Ok;
    OpenArchive *open = d->find(handle, archive, &error);
    if (!open)
        return d->done(error);
    if (!open->layout->hasKey(key))
        return d->done(BadKey);
    return d->position(*open, key, open->layout->keyOf(record, key), record);
}

qint16 EmbeddedArchiveStore::LetturaNextRec32(qint32 handle, qint32 archive, QByteArray &record)
{
    ArchiveError error = Ok;
    OpenArchive *open = d->find(handle, archive, &error);
    if (!open)
        return d->done(error);
    if (open->key == 0)
        return d->done(NoCurrentRecord);
    if (open->atEnd) {
        open->current = 0;
        return d->done(EndOfArchive);
    }
    if (open->store->walker != open)
        d->suspendWalker(open->store);
    if (!open->cursor) {
        // The walk was suspended (or began with an equal read): seek past where it stood.
        const QByteArray column = StoreFile::keyColumn(open->key);
        open->cursor = open->store->file.prepare("SELECT id, record, " + column + " FROM " +
                                                 open->table + " WHERE (" + column +
                                                 ", id) > (?1, ?2) ORDER BY " + column + ", id");
        if (!open->cursor)
            return d->failed(*open);
        sqlite3_bind_blob(open->cursor.get(), 1, open->lastKey.constData(),
                          int(open->lastKey.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int64(open->cursor.get(), 2, open->lastId);
        open->store->walker = open;
    }
    sqlite3_stmt *cursor = open->cursor.get();
    const int rc = sqlite3_step(cursor);
    if (rc == SQLITE_ROW) {
        open->cursorOnRow = true;
        open->current = sqlite3_column_int64(cursor, 0);
        d->readRecord(*open, cursor, record);
        return d->done(Ok);
    }
    open->store->walker = nullptr;
    open->cursor.reset();
    open->cursorOnRow = false;
    open->current = 0;
    if (rc == SQLITE_DONE) {
        open->atEnd = true;
        return d->done(EndOfArchive);
    }
    // Where the walk stood is lost with the cursor: it cannot go on.
    open->key = 0;
    return d->done(open->store->file.fail(rc));
}

qint16 EmbeddedArchiveStore::RiscritturaRec32(qint32 handle, qint32 archive,
                                              const QByteArray &record)
{
    ArchiveError error = Ok;
    OpenArchive *open = d->find(handle, archive, &error);
    if (!open)
        return d->done(error);
    if (!open->rewritable)
        return d->done(OpenedReadOnly);
    const ArchiveLayout &layout = *open->layout;
    if (record.size() < layout.length)
        return d->done(BadRecord);
    if (open->current == 0)
        return d->done(NoCurrentRecord);

    // With no cursor open on the connection, the write transaction ends with the call.
    d->suspendWalker(open->store);
    const ArchiveError result = d->rewrite(*open, record.left(layout.length));
    if (result == NotFound)
        open->current = 0; // removed by another program since it was read
    return d->done(result);
}

qint32 EmbeddedArchiveStore::TqGetErcode()
{
    return d->lastError;
}

} // namespace pg::archives
