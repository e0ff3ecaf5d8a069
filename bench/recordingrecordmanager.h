#pragma once

// A record manager that passes every call on to another one and records the reads and
// rewrites made, so that the same archive work can be replayed plainly: the limit a command
// that reads and marks the suite's records is measured beside.

#include "archives/store/recordmanager.h"

#include <QList>

namespace pg::bench {

class RecordingRecordManager : public archives::RecordManager
{
public:
    struct Call
    {
        enum Kind { Equal, First, Next, Rewrite } kind;
        qint32 archive;
        qint32 key;
        QByteArray record;
        QByteArray startKey;
    };

    explicit RecordingRecordManager(archives::RecordManager &inner)
        : m_inner(inner)
    {
    }

    const QList<Call> &calls() const { return m_calls; }
    void clear() { m_calls.clear(); }

    // Makes the recorded calls again on the inner record manager, in the same order.
    void replay(qint32 handle)
    {
        QByteArray record;
        for (const Call &c : std::as_const(m_calls)) {
            record = c.record;
            switch (c.kind) {
            case Call::Equal:
                m_inner.LetturaEqRec32(handle, c.archive, c.key, record);
                break;
            case Call::First:
                m_inner.LetturaFirstRec32(handle, c.archive, c.key, record, c.startKey);
                break;
            case Call::Next:
                m_inner.LetturaNextRec32(handle, c.archive, record);
                break;
            case Call::Rewrite:
                // A rewrite needs the record read just before it, which the replay has read.
                m_inner.RiscritturaRec32(handle, c.archive, c.record);
                break;
            }
        }
    }

    qint32 VBInit(qint32 handle) override { return m_inner.VBInit(handle); }
    void VBEnd(qint32 handle) override { m_inner.VBEnd(handle); }
    qint16 AperturaFile(qint32 handle, qint32 archive, qint32 mode) override
    {
        return m_inner.AperturaFile(handle, archive, mode);
    }
    qint16 ChiusuraFile(qint32 handle, qint32 archive) override { return m_inner.ChiusuraFile(handle, archive); }
    qint16 LetturaEqRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record) override
    {
        m_calls.append({Call::Equal, archive, key, record, {}});
        return m_inner.LetturaEqRec32(handle, archive, key, record);
    }
    qint16 LetturaFirstRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record,
                             const QByteArray &startKey) override
    {
        m_calls.append({Call::First, archive, key, record, startKey});
        return m_inner.LetturaFirstRec32(handle, archive, key, record, startKey);
    }
    qint16 LetturaNextRec32(qint32 handle, qint32 archive, QByteArray &record) override
    {
        m_calls.append({Call::Next, archive, 0, {}, {}});
        return m_inner.LetturaNextRec32(handle, archive, record);
    }
    qint16 LetturaGenRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record) override
    {
        return m_inner.LetturaGenRec32(handle, archive, key, record);
    }
    qint16 RiscritturaRec32(qint32 handle, qint32 archive, const QByteArray &record) override
    {
        m_calls.append({Call::Rewrite, archive, 0, record, {}});
        return m_inner.RiscritturaRec32(handle, archive, record);
    }
    qint32 TqGetErcode() override { return m_inner.TqGetErcode(); }

private:
    archives::RecordManager &m_inner;
    QList<Call> m_calls;
};

} // namespace pg::bench
