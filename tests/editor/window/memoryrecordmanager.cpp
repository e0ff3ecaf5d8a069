#include "memoryrecordmanager.h"

#include "archives/store/archiveerror.h"
#include "archives/store/recordlayout.h"

#include <algorithm>

using namespace pg::archives;

qint32 MemoryRecordManager::VBInit(qint32 handle)
{
    calls << QStringLiteral("VBInit %1").arg(handle);
    return m_vbInit;
}

void MemoryRecordManager::VBEnd(qint32 handle)
{
    calls << QStringLiteral("VBEnd %1").arg(handle);
}

qint16 MemoryRecordManager::AperturaFile(qint32, qint32 archive, qint32 mode)
{
    calls << QStringLiteral("open %1 %2").arg(archive).arg(mode);
    return result(m_openFailures.value(archive, 0));
}

qint16 MemoryRecordManager::ChiusuraFile(qint32, qint32 archive)
{
    calls << QStringLiteral("close %1").arg(archive);
    return result(0);
}

qint16 MemoryRecordManager::LetturaEqRec32(qint32, qint32 archive, qint32 key, QByteArray &record)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    const QByteArray wanted = layout->keyOf(record, key);
    for (const QByteArray &r : m_records.value(archive)) {
        if (layout->keyOf(r, key) == wanted) {
            record = r;
            return result(0);
        }
    }
    return result(NotFound);
}

qint16 MemoryRecordManager::LetturaFirstRec32(qint32, qint32 archive, qint32 key,
                                              QByteArray &record, const QByteArray &startKey)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    m_walk = m_records.value(archive);
    std::stable_sort(m_walk.begin(), m_walk.end(), [&](const QByteArray &a, const QByteArray &b) {
        return layout->keyOf(a, key) < layout->keyOf(b, key);
    });
    while (!m_walk.isEmpty() && layout->keyOf(m_walk.first(), key) < startKey)
        m_walk.removeFirst();
    if (m_walk.isEmpty())
        return result(EndOfArchive);
    record = m_walk.takeFirst();
    return result(0);
}

qint16 MemoryRecordManager::LetturaNextRec32(qint32, qint32, QByteArray &record)
{
    if (m_walk.isEmpty())
        return result(EndOfArchive);
    record = m_walk.takeFirst();
    return result(0);
}

qint16 MemoryRecordManager::LetturaGenRec32(qint32, qint32, qint32, QByteArray &)
{
    return result(NotFound);
}

qint16 MemoryRecordManager::RiscritturaRec32(qint32, qint32 archive, const QByteArray &record)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    QList<QByteArray> &records = m_records[archive];
    for (QByteArray &r : records) {
        if (layout->keyOf(r, 1) == layout->keyOf(record, 1)) {
            r = record;
            return result(0);
        }
    }
    return result(NoCurrentRecord);
}
