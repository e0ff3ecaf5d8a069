#pragma once

#include "archives/store/recordmanager.h"

namespace pg::test {

// A record manager that passes every call to another one, counts them, and fails on demand:
// the tests' way to make a due item vanish or a rewrite fail half-way through a save.
class FaultyRecordManager : public archives::RecordManager
{
public:
    explicit FaultyRecordManager(archives::RecordManager &inner)
        : m_inner(inner)
    {
    }

    // The n-th rewrite from now (1 = the next one) and every later one fail.
    void failRewritesFrom(int n) { m_rewritesBeforeFailure = n - 1; }
    // The n-th equal read from now (1 = the next one) and every later one fail as the
    // archive failing (not as a record not found).
    void failEqualReadsFrom(int n) { m_readsBeforeFailure = n - 1; }
    // The n-th next-read from now fails as the archive failing, in the middle of a walk.
    void failNextReadsFrom(int n) { m_nextReadsBeforeFailure = n - 1; }
    // Equal reads of records whose key 2 begins with this text fail as not found.
    void failReadsOf(const QByteArray &keyPrefix) { m_missingKey = keyPrefix; }
    void reset();

    int equalReads() const { return m_equalReads; }
    int rewrites() const { return m_rewrites; }

    qint32 VBInit(qint32 handle) override { return m_inner.VBInit(handle); }
    void VBEnd(qint32 handle) override { m_inner.VBEnd(handle); }
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
    archives::RecordManager &m_inner;
    int m_rewritesBeforeFailure = -1;
    int m_readsBeforeFailure = -1;
    int m_nextReadsBeforeFailure = -1;
    QByteArray m_missingKey;
    int m_equalReads = 0;
    int m_rewrites = 0;
    qint32 m_forcedError = 0;
};

} // namespace pg::test
