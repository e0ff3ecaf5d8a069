#pragma once

#include "erprecord.h"
#include "recordmanager.h"

namespace pg::archives {

// The program's session with the record manager: the session handle passed first on every
// call, and the rule that a call's outcome is the error code fetched right after it.
class ErpSession
{
public:
    ErpSession(RecordManager &manager, qint32 handle)
        : m_manager(&manager)
        , m_handle(handle)
    {
    }

    RecordManager &manager() const { return *m_manager; }
    qint32 handle() const { return m_handle; }

    // Each returns the error code of the call (0 success).
    qint32 open(int archive, int mode);
    qint32 close(int archive);

    // Each returns true when the error code after the call is 0.
    bool readEq(ErpRecord &record, int key);
    bool readFirst(ErpRecord &record, int key, const QByteArray &startKey);
    bool readNext(ErpRecord &record);
    bool readGen(ErpRecord &record, int key);
    bool rewrite(const ErpRecord &record);

    // The code of the last call made through this session.
    qint32 lastError() const { return m_lastError; }

private:
    RecordManager *m_manager;
    qint32 m_handle;
    qint32 m_lastError = 0;
};

} // namespace pg::archives
