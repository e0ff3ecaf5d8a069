#pragma once

#include "duitemmarks.h"
#include "writebackentry.h"

#include "archives/store/erpsession.h"

namespace pg::distinta {

// The due items of the suite as the distinte read and write them: each record is read by
// key 2 (flag and link) and rewritten whole at once; the archive has no transaction, so
// every change goes through an entry of the write-back journal (see WriteBackJournal).
class ErpWriteBack
{
public:
    enum class Read { Found, NotFound, Failed };
    enum class Applied {
        Done,          // rewritten with the marks after
        AlreadyDone,   // it already showed the marks after
        Conflict,      // it showed neither the marks before nor those after: left alone
        Vanished,      // the due item is no longer in the archive
        ReadFailed,    // the archive could not be read: still to do
        RewriteFailed, // the archive could not be written: still to do
    };

    explicit ErpWriteBack(archives::ErpSession &erp)
        : m_erp(erp)
    {
    }

    // The marks a due item shows now.
    Read read(const QString &flag, const QString &link, DueItemMarks *marks);

    // Carries one entry out on its due item, as safe to repeat as the entry says.
    Applied apply(const WriteBackEntry &entry);

private:
    archives::ErpSession &m_erp;
};

} // namespace pg::distinta
