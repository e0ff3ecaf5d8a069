#pragma once

#include "recordmanager.h"

#include <QString>

#include <memory>

namespace pg::archives {

// The record manager over the program's own embedded archive stores: one SQLite file,
// "archivi.db", in each archive directory. The common archives (15 and 0) are read from the
// store of the common directory, every other archive from the store of the company directory.
// A store file is opened by the first AperturaFile of one of its archives and released when
// the last of them is closed.
//
// Per session handle it keeps the archives opened and their mode, and per open archive the
// position of the last positioning read (a live cursor, so that a walk by next-reads costs
// about what a plain scan of the table costs) and the record last read, which is what a
// rewrite writes. Every rewrite is one committed statement: atomic, and durable (against a
// crash of the program) when the call returns.
//
// Rules of this implementation where the suite leaves them open:
// - An archive whose store file does not exist, or whose store holds no table for it, fails
//   to open with NotFound. A file that is not a store, or a store built for other record
//   layouts, fails with Damaged.
// - Mode 2 opens for reading and rewriting; any other mode opens for reading only.
// - Equal reads take the first record with that key (in insertion order) and also position:
//   a next-read after an equal read continues in the order of that key.
// - First-reads and LetturaGenRec32 that find nothing at or after the key, and next-reads
//   past the last record, end with EndOfArchive; any failed read forgets the record last read.
// - Key 1 is not unique in the store (the archive writer keeps it so); records with equal
//   keys are read in the order they were inserted, and a rewrite keeps that place.
// - Each call returns 0 on success and minus the error code on failure.
// - VBInit always succeeds; VBEnd closes every archive the session left open.
//
// Single-threaded, like the suite's record manager: one object serves one thread.
class EmbeddedArchiveStore : public RecordManager
{
public:
    // The stores of the company environment's directories (resolved at start-up before).
    EmbeddedArchiveStore();
    EmbeddedArchiveStore(const QString &companyArchiveDir, const QString &commonArchiveDir);
    ~EmbeddedArchiveStore() override;
    EmbeddedArchiveStore(const EmbeddedArchiveStore &) = delete;
    EmbeddedArchiveStore &operator=(const EmbeddedArchiveStore &) = delete;

    // The store file's name in every archive directory, and its path in one.
    static QString storeFileName();
    static QString storePath(const QString &archiveDir);
    // True for the archives of the common directory (15 and 0).
    static bool isCommonArchive(int archive);

    const QString &companyArchiveDir() const;
    const QString &commonArchiveDir() const;
    // The store file that holds the archive.
    QString storePathOf(int archive) const;

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
