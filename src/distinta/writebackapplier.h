#pragma once

#include "erpwriteback.h"
#include "writebackentry.h"

#include <QList>
#include <QSqlDatabase>

namespace pg::distinta {

// Carries journal entries out on the suite's due items, in their order, and ticks them off
// in the journal: entries done (or found done) are removed in batches, entries that met a
// due item changed by someone else (or gone) are marked as conflicts. An entry that could not
// be carried out now stays in the journal, to be completed later.
class WriteBackApplier
{
public:
    struct Result
    {
        int done = 0;                    // carried out, or found already done
        QList<WriteBackEntry> conflicts; // left alone: changed by someone else, or gone
        QList<WriteBackEntry> pending;   // still to do (the archive failed, or not reached)
        ErpWriteBack::Applied failure = ErpWriteBack::Applied::Done; // what stopped the run
    };

    WriteBackApplier(archives::ErpSession &erp, QSqlDatabase &db) : m_erp(erp), m_db(db) {}

    // stopAtRowFailure: a save's rule, the first row whose due item cannot be read or
    // rewritten ends the run (the entries after it are not tried); otherwise every entry is
    // tried. Released items never stop a run.
    Result apply(const QList<WriteBackEntry> &entries, bool stopAtRowFailure);

    // The clerk's description of a due item of an entry ("F 2026000000123").
    static QString itemName(const WriteBackEntry &entry);
    // Lines of the conflicts for a message, at most maxLines, then how many more.
    static QString conflictLines(const QList<WriteBackEntry> &conflicts, int maxLines = 15);

private:
    ErpWriteBack m_erp;
    QSqlDatabase &m_db;
};

} // namespace pg::distinta
