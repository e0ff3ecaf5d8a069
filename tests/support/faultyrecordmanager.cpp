#include "faultyrecordmanager.h"

#include "archives/store/archiveerror.h"

namespace pg::test {

void FaultyRecordManager::reset()
{
    m_rewritesBeforeFailure = -1;
    m_readsBeforeFailure = -1;
    m_nextReadsBeforeFailure = -1;
    m_missingKey.clear();
    m_equalReads = 0;
    m_rewrites = 0;
}

qint16 FaultyRecordManager::AperturaFile(qint32 handle, qint32 archive, qint32 mode)
{
    m_forcedError = 0;
    return m_inner.AperturaFile(handle, archive, mode);
}

qint16 FaultyRecordManager::ChiusuraFile(qint32 handle, qint32 archive)
{
    m_forcedError = 0;
    return m_inner.ChiusuraFile(handle, archive);
}

qint16 FaultyRecordManager::LetturaEqRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record)
{
    ++m_equalReads;
    m_forcedError = 0;
    if (m_readsBeforeFailure == 0) {
        m_forcedError = archives::IoError;
        return -1;
    }
    if (m_readsBeforeFailure > 0)
        --m_readsBeforeFailure;
    // Archive 38's key 2 is the flag and the link, at the start of the record.
    if (!m_missingKey.isEmpty() && archive == 38 && key == 2 && record.startsWith(m_missingKey)) {
        m_forcedError = archives::NotFound;
        return -1;
    }
    return m_inner.LetturaEqRec32(handle, archive, key, record);
}

qint16 FaultyRecordManager::LetturaFirstRec32(qint32 handle, qint32 archive, qint32 key,
                                              QByteArray &record, const QByteArray &startKey)
{
    m_forcedError = 0;
    return m_inner.LetturaFirstRec32(handle, archive, key, record, startKey);
}

qint16 FaultyRecordManager::LetturaNextRec32(qint32 handle, qint32 archive, QByteArray &record)
{
    m_forcedError = 0;
    if (m_nextReadsBeforeFailure == 0) {
        m_forcedError = archives::IoError;
        return -1;
    }
    if (m_nextReadsBeforeFailure > 0)
        --m_nextReadsBeforeFailure;
    return m_inner.LetturaNextRec32(handle, archive, record);
}

qint16 FaultyRecordManager::LetturaGenRec32(qint32 handle, qint32 archive, qint32 key, QByteArray &record)
{
    m_forcedError = 0;
    return m_inner.LetturaGenRec32(handle, archive, key, record);
}

qint16 FaultyRecordManager::RiscritturaRec32(qint32 handle, qint32 archive, const QByteArray &record)
{
    ++m_rewrites;
    m_forcedError = 0;
    if (m_rewritesBeforeFailure == 0) {
        m_forcedError = archives::IoError;
        return -1;
    }
    if (m_rewritesBeforeFailure > 0)
        --m_rewritesBeforeFailure;
    return m_inner.RiscritturaRec32(handle, archive, record);
}

qint32 FaultyRecordManager::TqGetErcode()
{
    return m_forcedError != 0 ? m_forcedError : m_inner.TqGetErcode();
}

} // namespace pg::test
