#pragma once

#include <QByteArray>

namespace pg::archives {

// The suite's record manager: every access to the suite's archives goes through these
// operations, by archive number, key number and a fixed-length single-byte record buffer.
// Each call returns a short status; the outcome is always taken from TqGetErcode() called
// right after it, 0 meaning success.
//
// - Equal reads take the key from the record itself: the key fields of the key number are
//   set in the buffer (blank-padded to their width), the rest is ignored.
// - First-reads position on the start key in the order of the key number (a shorter start
//   key is a prefix) and read the first record at or after it; next-reads continue in the
//   order of the last positioning read.
// - A rewrite writes back, whole, the record last read by the session on that archive; it
//   needs the archive opened in mode 2 and is durable when the call returns.
// - Record buffers are resized by reads to the archive's record length; a rewrite with a
//   shorter buffer fails with BadRecord.
//
// Implementations: the embedded archive store (default) and the library binding, which loads
// any shared library exporting the same operations as C functions.
class RecordManager
{
public:
    virtual ~RecordManager() = default;

    // Initialise and release the suite's libraries for a session (a window handle).
    // VBInit returns non-zero on success.
    virtual qint32 VBInit(qint32 handle) = 0;
    virtual void VBEnd(qint32 handle) = 0;

    virtual qint16 AperturaFile(qint32 handle, qint32 archive, qint32 mode) = 0;
    virtual qint16 ChiusuraFile(qint32 handle, qint32 archive) = 0;
    virtual qint16 LetturaEqRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record) = 0;
    virtual qint16 LetturaFirstRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record,
                                     const QByteArray &startKey) = 0;
    virtual qint16 LetturaNextRec32(qint32 handle, qint32 archive, QByteArray &record) = 0;
    // A positioning read: the first record whose key is at or after the key set in the
    // record (used by the due-item detail view).
    virtual qint16 LetturaGenRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record) = 0;
    virtual qint16 RiscritturaRec32(qint32 handle, qint32 archive, const QByteArray &record) = 0;
    virtual qint32 TqGetErcode() = 0;
};

} // namespace pg::archives
