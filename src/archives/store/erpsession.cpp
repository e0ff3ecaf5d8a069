#include "erpsession.h"

#include "core/crashpoint.h"

namespace pg::archives {

qint32 ErpSession::open(int archive, int mode)
{
    m_manager->AperturaFile(m_handle, archive, mode);
    return m_lastError = m_manager->TqGetErcode();
}

qint32 ErpSession::close(int archive)
{
    m_manager->ChiusuraFile(m_handle, archive);
    return m_lastError = m_manager->TqGetErcode();
}

bool ErpSession::readEq(ErpRecord &record, int key)
{
    m_manager->LetturaEqRec32(m_handle, record.archive(), key, record.buffer());
    return (m_lastError = m_manager->TqGetErcode()) == 0;
}

bool ErpSession::readFirst(ErpRecord &record, int key, const QByteArray &startKey)
{
    m_manager->LetturaFirstRec32(m_handle, record.archive(), key, record.buffer(), startKey);
    return (m_lastError = m_manager->TqGetErcode()) == 0;
}

bool ErpSession::readNext(ErpRecord &record)
{
    m_manager->LetturaNextRec32(m_handle, record.archive(), record.buffer());
    return (m_lastError = m_manager->TqGetErcode()) == 0;
}

bool ErpSession::readGen(ErpRecord &record, int key)
{
    m_manager->LetturaGenRec32(m_handle, record.archive(), key, record.buffer());
    return (m_lastError = m_manager->TqGetErcode()) == 0;
}

bool ErpSession::rewrite(const ErpRecord &record)
{
    crashPoint();
    m_manager->RiscritturaRec32(m_handle, record.archive(), record.buffer());
    m_lastError = m_manager->TqGetErcode();
    crashPoint();
    return m_lastError == 0;
}

} // namespace pg::archives
