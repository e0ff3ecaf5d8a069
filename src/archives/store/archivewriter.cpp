#include "archivewriter.h"

#include "storefile.h"

#include "core/cp1252.h"

#include <QDir>

#include <map>

namespace pg::archives {

namespace {

// The statements that write the records of one archive.
struct ArchiveSql
{
    QByteArray remove; // the records with the key 1, or a unique key, of the new one
    QByteArray insert; // the record and its keys
    // Per unique key: a record with that key written by this load (an id past lastId).
    QList<std::pair<int, QByteArray>> writtenBefore;
    // The archive's last id when the load began, and the last id given since: the load's
    // records take ids of their own past it (the engine would reuse the id of a record
    // just removed), so that they are told from the records already stored.
    qint64 lastId = 0;
    qint64 nextId = 0;
};

// One store of the installation, with the archives it holds.
struct Target
{
    QString path;
    QList<int> archives;
    StoreFile store;
    bool inTransaction = false;
};

} // namespace

class ArchiveWriter::Private
{
public:
    Target *targetOf(int archive);
    bool fail(QString *error, const QString &text);
    bool lastIdOf(StoreFile &store, int archive, qint64 *id);
    // Whether a record with the same unique key was written earlier by this load; the key's
    // number in *key when so. False with the store's error on a failure.
    bool writtenBefore(StoreFile &store, const ArchiveLayout &layout, const QByteArray &record,
                       int *key);
    void rollback();

    std::vector<std::unique_ptr<Target>> targets;
    std::map<int, ArchiveSql> statements;
    Target *company = nullptr;
    Target *common = nullptr;
    bool begun = false;
    bool failed = false;
};

Target *ArchiveWriter::Private::targetOf(int archive)
{
    return StoreFile::isCommonArchive(archive) ? common : company;
}

bool ArchiveWriter::Private::fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

bool ArchiveWriter::Private::lastIdOf(StoreFile &store, int archive, qint64 *id)
{
    Statement statement =
        store.prepare("SELECT coalesce(max(id), 0) FROM " + StoreFile::tableName(archive));
    if (!statement)
        return false;
    const int rc = sqlite3_step(statement.get());
    if (rc != SQLITE_ROW) {
        store.fail(rc);
        return false;
    }
    *id = sqlite3_column_int64(statement.get(), 0);
    return true;
}

bool ArchiveWriter::Private::writtenBefore(StoreFile &store, const ArchiveLayout &layout,
                                           const QByteArray &record, int *key)
{
    const ArchiveSql &sql = statements.at(layout.number);
    for (const auto &[unique, select] : sql.writtenBefore) {
        sqlite3_stmt *statement = store.cached(select);
        if (!statement)
            return false;
        const QByteArray bytes = layout.keyOf(record, unique);
        sqlite3_bind_blob(statement, 1, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int64(statement, 2, sql.lastId);
        const int rc = sqlite3_step(statement);
        sqlite3_reset(statement);
        if (rc == SQLITE_ROW) {
            *key = unique;
            return true;
        }
        if (rc != SQLITE_DONE) {
            store.fail(rc);
            return false;
        }
    }
    *key = 0;
    return true;
}

void ArchiveWriter::Private::rollback()
{
    for (const auto &target : targets) {
        if (target->inTransaction)
            target->store.exec("ROLLBACK");
        target->inTransaction = false;
    }
    begun = false;
}

ArchiveWriter::ArchiveWriter(const QString &companyArchiveDir, const QString &commonArchiveDir)
    : d(std::make_unique<Private>())
{
    const QString companyPath = StoreFile::pathIn(companyArchiveDir);
    const QString commonPath = StoreFile::pathIn(commonArchiveDir);
    d->targets.push_back(std::make_unique<Target>());
    d->company = d->targets.back().get();
    d->company->path = companyPath;
    // Both directories may be the same: then one store holds every archive.
    if (QDir::cleanPath(commonPath) == QDir::cleanPath(companyPath)) {
        d->common = d->company;
    } else {
        d->targets.push_back(std::make_unique<Target>());
        d->common = d->targets.back().get();
        d->common->path = commonPath;
    }
    for (int archive : RecordLayouts::instance().archiveNumbers()) {
        d->targetOf(archive)->archives << archive;
        const QByteArray table = StoreFile::tableName(archive);
        const QList<int> keys = RecordLayouts::instance().archive(archive)->keyNumbers();
        ArchiveSql &sql = d->statements[archive];
        sql.remove = "DELETE FROM " + table + " WHERE " + StoreFile::keyColumn(1) + " = ?1";
        const QList<int> &unique = RecordLayouts::instance().archive(archive)->uniqueKeys();
        for (qsizetype i = 0; i < unique.size(); ++i) {
            const QByteArray column = StoreFile::keyColumn(unique.at(i));
            sql.remove += " OR " + column + " = ?" + QByteArray::number(i + 2);
            sql.writtenBefore.append({unique.at(i), "SELECT 1 FROM " + table + " WHERE " + column +
                                                        " = ?1 AND id > ?2"});
        }
        QByteArray values = ") VALUES (?1, ?2";
        sql.insert = "INSERT INTO " + table + " (id, record";
        for (qsizetype i = 0; i < keys.size(); ++i) {
            sql.insert += ", " + StoreFile::keyColumn(keys.at(i));
            values += ", ?" + QByteArray::number(i + 3);
        }
        sql.insert += values + ')';
    }
}

ArchiveWriter::~ArchiveWriter()
{
    d->rollback();
}

bool ArchiveWriter::begin(QString *error)
{
    d->rollback();
    d->failed = false;
    for (const auto &target : d->targets) {
        StoreFile &store = target->store;
        if (!store.isOpen() &&
            store.open(target->path, StoreFile::Access::CreateWhenMissing) != Ok) {
            const QString why = store.errorText();
            d->rollback();
            return d->fail(error, QStringLiteral("Impossibile aprire l'archivio %1: %2")
                                      .arg(QDir::toNativeSeparators(target->path), why));
        }
        // A load writes keys in any order: a large page cache keeps the indexes in memory
        // instead of spilling them to the log halfway through the transaction.
        store.exec("PRAGMA cache_size = -262144");
        // Taking the write lock at once: a store in use elsewhere fails here, not halfway.
        if (!store.exec("BEGIN IMMEDIATE")) {
            const QString why = store.errorText();
            d->rollback();
            return d->fail(error, QStringLiteral("Impossibile scrivere l'archivio %1: %2")
                                      .arg(QDir::toNativeSeparators(target->path), why));
        }
        target->inTransaction = true;
        for (int archive : std::as_const(target->archives)) {
            qint64 lastId = 0;
            if (!store.prepareArchive(*RecordLayouts::instance().archive(archive)) ||
                !d->lastIdOf(store, archive, &lastId)) {
                const QString why = store.errorText();
                d->rollback();
                return d->fail(error,
                               QStringLiteral("Impossibile preparare l'archivio %1 nel file %2: %3")
                                   .arg(archive)
                                   .arg(QDir::toNativeSeparators(target->path), why));
            }
            d->statements[archive].lastId = d->statements[archive].nextId = lastId;
        }
    }
    d->begun = true;
    return true;
}

bool ArchiveWriter::put(int archive, const QByteArray &record, QString *error)
{
    if (!d->begun)
        return d->fail(error, QStringLiteral("Scrittura degli archivi non iniziata."));
    // Any refused record spoils the whole load: commit() will then write nothing.
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    if (!layout) {
        d->failed = true;
        return d->fail(error, QStringLiteral("Archivio %1 sconosciuto.").arg(archive));
    }
    if (record.size() != layout->length) {
        d->failed = true;
        return d->fail(error,
                       QStringLiteral("Record dell'archivio %1 lungo %2 caratteri invece di %3.")
                           .arg(archive)
                           .arg(record.size())
                           .arg(layout->length));
    }

    StoreFile &store = d->targetOf(archive)->store;
    ArchiveSql &sql = d->statements.at(archive);
    const QList<int> keys = layout->keyNumbers();
    const QByteArray key1 = layout->keyOf(record, 1);

    // A unique key names one record: the stored record that holds it is replaced, but two
    // records of the same load with it are two versions of one record, and the load cannot
    // tell which is right.
    int repeated = 0;
    if (!d->writtenBefore(store, *layout, record, &repeated)) {
        d->failed = true;
        return d->fail(error, QStringLiteral("Impossibile leggere l'archivio %1: %2")
                                  .arg(archive)
                                  .arg(store.errorText()));
    }
    if (repeated != 0) {
        d->failed = true;
        QStringList names;
        for (const FieldDef &f : layout->keyFields(repeated))
            names << f.name;
        const QString fields = names.join(QStringLiteral(" e "));
        return d->fail(error,
                       QStringLiteral("un record con gli stessi %1 (\"%2\") è già in una "
                                      "riga precedente del file: nell'archivio %3 non "
                                      "possono esserci due record con gli stessi %1")
                           .arg(fields, cp1252::decode(layout->keyOf(record, repeated)).trimmed())
                           .arg(archive));
    }

    QList<QByteArray> uniqueKeys;
    for (int unique : layout->uniqueKeys())
        uniqueKeys << layout->keyOf(record, unique);
    sqlite3_stmt *remove = store.cached(sql.remove);
    sqlite3_stmt *insert = remove ? store.cached(sql.insert) : nullptr;
    int rc = SQLITE_OK;
    if (insert) {
        sqlite3_bind_blob(remove, 1, key1.constData(), int(key1.size()), SQLITE_STATIC);
        for (qsizetype i = 0; i < uniqueKeys.size(); ++i)
            sqlite3_bind_blob(remove, int(i + 2), uniqueKeys.at(i).constData(),
                              int(uniqueKeys.at(i).size()), SQLITE_STATIC);
        rc = sqlite3_step(remove);
        sqlite3_reset(remove);
    }
    if (insert && rc == SQLITE_DONE) {
        QList<QByteArray> keyBytes;
        keyBytes.reserve(keys.size());
        sqlite3_bind_int64(insert, 1, ++sql.nextId);
        sqlite3_bind_blob(insert, 2, record.constData(), int(record.size()), SQLITE_STATIC);
        for (qsizetype i = 0; i < keys.size(); ++i) {
            keyBytes << layout->keyOf(record, keys.at(i));
            sqlite3_bind_blob(insert, int(i + 3), keyBytes.last().constData(),
                              int(keyBytes.last().size()), SQLITE_STATIC);
        }
        rc = sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    if (!insert || rc != SQLITE_DONE) {
        if (insert)
            store.fail(rc);
        d->failed = true;
        return d->fail(error, QStringLiteral("Impossibile scrivere un record dell'archivio %1: %2")
                                  .arg(archive)
                                  .arg(store.errorText()));
    }
    return true;
}

bool ArchiveWriter::commit(QString *error)
{
    if (!d->begun)
        return d->fail(error, QStringLiteral("Scrittura degli archivi non iniziata."));
    if (d->failed) {
        d->rollback();
        return d->fail(error, QStringLiteral("Scrittura degli archivi annullata: un record non "
                                             "è stato accettato e nessun record è stato scritto."));
    }
    // One transaction per store; the company store is committed first.
    for (const auto &target : d->targets) {
        if (!target->store.exec("COMMIT")) {
            const QString why = target->store.errorText();
            d->rollback();
            return d->fail(error, QStringLiteral("Impossibile salvare l'archivio %1: %2")
                                      .arg(QDir::toNativeSeparators(target->path), why));
        }
        target->inTransaction = false;
    }
    d->begun = false;
    return true;
}

} // namespace pg::archives
