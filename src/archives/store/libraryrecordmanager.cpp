#include "libraryrecordmanager.h"

#include "archiveerror.h"
#include "recordlayout.h"
#include "recordmanagerabi.h"

#include <QDir>
#include <QLibrary>

#include <cstring>

namespace pg::archives {

class LibraryRecordManager::Private
{
public:
    bool load(const QString &library, const QString &vbInitLibrary);
    template<typename Fn>
    bool resolve(QLibrary &library, const char *name, Fn *function);

    // A call the binding refuses itself: its code is what TqGetErcode gives next.
    qint16 refuse(ArchiveError error)
    {
        ownError = error;
        return qint16(-error);
    }
    // The archive's record length, or 0 (after refusing the call) when there is no layout.
    int lengthOf(qint32 archive)
    {
        const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
        if (!layout)
            refuse(UnknownArchive);
        return layout ? layout->length : 0;
    }
    // The record handed to the library: the caller's bytes at the record length.
    char *bufferFrom(const QByteArray &record, int length);
    // After a read: the record the library wrote, when the read succeeded.
    void readBack(QByteArray &record, int length);

    QLibrary recordManager;
    QLibrary vbInit;
    bool loaded = false;
    QString error;
    int ownError = -1; // the binding's own refusal of the last call, -1 when none
    QByteArray buffer;

    abi::AperturaFileFn aperturaFile = nullptr;
    abi::ChiusuraFileFn chiusuraFile = nullptr;
    abi::LetturaEqRec32Fn letturaEq = nullptr;
    abi::LetturaFirstRec32Fn letturaFirst = nullptr;
    abi::LetturaNextRec32Fn letturaNext = nullptr;
    abi::LetturaGenRec32Fn letturaGen = nullptr;
    abi::RiscritturaRec32Fn riscrittura = nullptr;
    abi::TqGetErcodeFn tqGetErcode = nullptr;
    abi::VBInitFn vbInitFn = nullptr;
    abi::VBEndFn vbEndFn = nullptr;
};

template<typename Fn>
bool LibraryRecordManager::Private::resolve(QLibrary &library, const char *name, Fn *function)
{
    *function = reinterpret_cast<Fn>(library.resolve(name));
    if (*function)
        return true;
    error = QStringLiteral("La libreria %1 non contiene la funzione %2.")
                .arg(QDir::toNativeSeparators(library.fileName()), QString::fromLatin1(name));
    return false;
}

bool LibraryRecordManager::Private::load(const QString &library, const QString &vbInitLibrary)
{
    recordManager.setFileName(library);
    if (!recordManager.load()) {
        error = QStringLiteral("Impossibile caricare la libreria del gestore archivi %1: %2")
                    .arg(QDir::toNativeSeparators(library), recordManager.errorString());
        return false;
    }
    QLibrary *initLibrary = &recordManager;
    if (!vbInitLibrary.isEmpty()) {
        vbInit.setFileName(vbInitLibrary);
        if (!vbInit.load()) {
            error = QStringLiteral("Impossibile caricare la libreria di inizializzazione %1: %2")
                        .arg(QDir::toNativeSeparators(vbInitLibrary), vbInit.errorString());
            return false;
        }
        initLibrary = &vbInit;
    }
    return resolve(recordManager, "AperturaFile", &aperturaFile) &&
           resolve(recordManager, "ChiusuraFile", &chiusuraFile) &&
           resolve(recordManager, "LetturaEqRec32", &letturaEq) &&
           resolve(recordManager, "LetturaFirstRec32", &letturaFirst) &&
           resolve(recordManager, "LetturaNextRec32", &letturaNext) &&
           resolve(recordManager, "LetturaGenRec32", &letturaGen) &&
           resolve(recordManager, "RiscritturaRec32", &riscrittura) &&
           resolve(recordManager, "TqGetErcode", &tqGetErcode) &&
           resolve(*initLibrary, "VBInit", &vbInitFn) && resolve(*initLibrary, "VBEnd", &vbEndFn);
}

char *LibraryRecordManager::Private::bufferFrom(const QByteArray &record, int length)
{
    buffer.resize(length);
    const int copied = std::min(int(record.size()), length);
    if (copied > 0)
        std::memcpy(buffer.data(), record.constData(), size_t(copied));
    if (copied < length)
        std::memset(buffer.data() + copied, ' ', size_t(length - copied));
    return buffer.data();
}

void LibraryRecordManager::Private::readBack(QByteArray &record, int length)
{
    if (tqGetErcode() != Ok)
        return;
    record.resize(length);
    std::memcpy(record.data(), buffer.constData(), size_t(length));
}

LibraryRecordManager::LibraryRecordManager(const QString &library, const QString &vbInitLibrary)
    : d(std::make_unique<Private>())
{
    d->loaded = d->load(library, vbInitLibrary);
    if (!d->loaded) {
        // Nothing of a library that lacks a function is called.
        d->vbInitFn = nullptr;
        d->vbEndFn = nullptr;
    }
}

LibraryRecordManager::~LibraryRecordManager() = default;

bool LibraryRecordManager::isLoaded() const
{
    return d->loaded;
}

QString LibraryRecordManager::errorString() const
{
    return d->error;
}

qint32 LibraryRecordManager::VBInit(qint32 handle)
{
    if (!d->loaded) {
        d->ownError = NotInitialised;
        return 0;
    }
    return d->vbInitFn(handle);
}

void LibraryRecordManager::VBEnd(qint32 handle)
{
    if (d->loaded)
        d->vbEndFn(handle);
}

qint16 LibraryRecordManager::AperturaFile(qint32 handle, qint32 archive, qint32 mode)
{
    if (!d->loaded)
        return d->refuse(NotInitialised);
    d->ownError = -1;
    return d->aperturaFile(handle, archive, mode);
}

qint16 LibraryRecordManager::ChiusuraFile(qint32 handle, qint32 archive)
{
    if (!d->loaded)
        return d->refuse(NotInitialised);
    d->ownError = -1;
    return d->chiusuraFile(handle, archive);
}

qint16 LibraryRecordManager::LetturaEqRec32(qint32 handle, qint32 archive, qint32 key,
                                            QByteArray &record)
{
    if (!d->loaded)
        return d->refuse(NotInitialised);
    const int length = d->lengthOf(archive);
    if (length == 0)
        return qint16(-UnknownArchive);
    d->ownError = -1;
    const qint16 status = d->letturaEq(handle, archive, key, d->bufferFrom(record, length));
    d->readBack(record, length);
    return status;
}

qint16 LibraryRecordManager::LetturaFirstRec32(qint32 handle, qint32 archive, qint32 key,
                                               QByteArray &record, const QByteArray &startKey)
{
    if (!d->loaded)
        return d->refuse(NotInitialised);
    const int length = d->lengthOf(archive);
    if (length == 0)
        return qint16(-UnknownArchive);
    d->ownError = -1;
    // A QByteArray's data always ends in a NUL: the start key goes as the C text it is.
    const qint16 status =
        d->letturaFirst(handle, archive, key, d->bufferFrom(record, length), startKey.constData());
    d->readBack(record, length);
    return status;
}

qint16 LibraryRecordManager::LetturaNextRec32(qint32 handle, qint32 archive, QByteArray &record)
{
    if (!d->loaded)
        return d->refuse(NotInitialised);
    const int length = d->lengthOf(archive);
    if (length == 0)
        return qint16(-UnknownArchive);
    d->ownError = -1;
    d->buffer.resize(length);
    const qint16 status = d->letturaNext(handle, archive, d->buffer.data());
    d->readBack(record, length);
    return status;
}

qint16 LibraryRecordManager::LetturaGenRec32(qint32 handle, qint32 archive, qint32 key,
                                             QByteArray &record)
{
    if (!d->loaded)
        return d->refuse(NotInitialised);
    const int length = d->lengthOf(archive);
    if (length == 0)
        return qint16(-UnknownArchive);
    d->ownError = -1;
    const qint16 status = d->letturaGen(handle, archive, key, d->bufferFrom(record, length));
    d->readBack(record, length);
    return status;
}

qint16 LibraryRecordManager::RiscritturaRec32(qint32 handle, qint32 archive,
                                              const QByteArray &record)
{
    if (!d->loaded)
        return d->refuse(NotInitialised);
    const int length = d->lengthOf(archive);
    if (length == 0)
        return qint16(-UnknownArchive);
    // The library reads a whole record from the buffer: a shorter one never reaches it.
    if (record.size() < length)
        return d->refuse(BadRecord);
    d->ownError = -1;
    return d->riscrittura(handle, archive, d->bufferFrom(record, length));
}

qint32 LibraryRecordManager::TqGetErcode()
{
    if (d->ownError >= 0)
        return d->ownError;
    return d->tqGetErcode ? d->tqGetErcode() : qint32(NotInitialised);
}

} // namespace pg::archives
