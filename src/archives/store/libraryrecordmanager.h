#pragma once

#include "recordmanager.h"

#include <QString>

#include <memory>

namespace pg::archives {

// The record manager of a shared library that exports the suite's C functions (AperturaFile,
// ChiusuraFile, LetturaEqRec32, LetturaFirstRec32, LetturaNextRec32, LetturaGenRec32,
// RiscritturaRec32, TqGetErcode): the suite's own library on Windows, the program's tqzdbm32
// elsewhere. VBInit and VBEnd come from a second library when one is given (the suite keeps
// them apart), otherwise from the same one.
//
// Record buffers are handed to the library at the archive's record length from the program's
// layouts: shorter ones are blank-padded, and after a successful read the buffer holds the
// whole record. What the binding cannot hand over safely it refuses itself, and TqGetErcode
// then gives its code: a read or rewrite of an archive without a layout (UnknownArchive), a
// rewrite of a buffer shorter than the record (BadRecord), any call when the library could
// not be loaded (NotInitialised; VBInit returns 0).
class LibraryRecordManager : public RecordManager
{
public:
    // A path or a name that the platform's library search finds ("tqzdbm32").
    explicit LibraryRecordManager(const QString &library, const QString &vbInitLibrary = {});
    ~LibraryRecordManager() override;
    LibraryRecordManager(const LibraryRecordManager &) = delete;
    LibraryRecordManager &operator=(const LibraryRecordManager &) = delete;

    // Whether every function was found; otherwise errorString() says what is missing.
    bool isLoaded() const;
    QString errorString() const;

    qint32 VBInit(qint32 handle) override;
    void VBEnd(qint32 handle) override;

    qint16 AperturaFile(qint32 handle, qint32 archive, qint32 mode) override;
    qint16 ChiusuraFile(qint32 handle, qint32 archive) override;
    qint16 LetturaEqRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record) override;
    qint16 LetturaFirstRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record,
                             const QByteArray &startKey) override;
    qint16 LetturaNextRec32(qint32 handle, qint32 archive, QByteArray &record) override;
    qint16 LetturaGenRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record) override;
    qint16 RiscritturaRec32(qint32 handle, qint32 archive, const QByteArray &record) override;
    qint32 TqGetErcode() override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace pg::archives
