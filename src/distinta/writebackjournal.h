#pragma once

#include "writebackentry.h"

#include <QList>
#include <QSqlDatabase>

namespace pg::distinta {

// The journal of the write-back, table TB_GIORNALE of the local database: every change that
// an operation is going to make to the suite's due items, written in the same transaction
// as the operation's own changes to the distinte, so that the two are kept or lost
// together. Entries are removed once carried out; an entry that found its due item changed
// by someone else stays, marked as a conflict, for the administrator. Entries still to
// carry out after a crash or a failure of the archives are completed by the next start or
// the next operation.
class WriteBackJournal
{
public:
    // The operations that write to the due items, as the journal names them.
    enum class Operation { Save, Delete, BankFile, Repair };

    // Records the entries of one operation inside the caller's transaction and numbers them
    // (operation and position).
    static void record(QSqlDatabase &db, Operation operation, const QString &codDistinta,
                       QList<WriteBackEntry> &entries);
    // The entries still to carry out, in the order they were recorded.
    static QList<WriteBackEntry> pending(QSqlDatabase &db);
    // Entries carried out (or found done): removed from the journal.
    static void markDone(QSqlDatabase &db, const QList<WriteBackEntry> &entries);
    // Entries whose due item showed neither the marks before nor those after.
    static void markConflicts(QSqlDatabase &db, const QList<WriteBackEntry> &entries);
};

} // namespace pg::distinta
