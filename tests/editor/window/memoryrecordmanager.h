#pragma once

#include "archives/store/recordmanager.h"

#include <QHash>
#include <QList>
#include <QMap>

// A record manager over records kept in memory, for the tests of the main window: equal reads
// by any key of the layouts, first-reads in key order, scripted open failures, and a log of
// the open, close and library calls in the order they were made.
class MemoryRecordManager : public pg::archives::RecordManager
{
public:
    void put(int archive, const QByteArray &record) { m_records[archive].append(record); }
    void failOpen(int archive, qint32 code) { m_openFailures.insert(archive, code); }
    void setVBInitResult(qint32 result) { m_vbInit = result; }

    QStringList calls;

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
    qint32 TqGetErcode() override { return m_error; }

private:
    qint16 result(qint32 error)
    {
        m_error = error;
        return error == 0 ? 0 : qint16(-error);
    }

    QMap<int, QList<QByteArray>> m_records;
    QHash<int, qint32> m_openFailures;
    qint32 m_vbInit = 1;
    qint32 m_error = 0;
    QList<QByteArray> m_walk;
};
