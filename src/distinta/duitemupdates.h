#pragma once

#include "distinta.h"
#include "writebackapplier.h"
#include "writebackentry.h"
#include "writebackjournal.h"

#include "archives/store/erpsession.h"

#include <QSqlDatabase>

namespace pg::distinta {

// How the distinte change the suite's due items, so that what the suite shows of a due item
// always agrees with the saved distinte, even across a crash or a failing archive:
// 1. the changes are worked out first, reading each due item (plan*), and recorded in the
//    write-back journal in the same transaction as the operation's own changes to the
//    distinte;
// 2. only after that commit are the due items rewritten, each change ticked off as done
//    (carryOut);
// 3. whatever an interruption left undone is completed before the next operation and at
//    every start (completePending), each change made at most once.
// Failures are the distinta component's application errors (AppError, negative numbers);
// messages about conflicts and pending work go through the prompting seam.
class DueItemUpdates
{
public:
    explicit DueItemUpdates(archives::ErpSession *erp) : m_erp(erp) {}

    // The save: items removed from the distinta are released, then every row is marked.
    // An item removed that the archive fails to give (not one it no longer has) stops the
    // save, as a row does.
    // The row counts for state "3" are taken on db, inside the save's transaction, after its
    // rows are written. A row whose due item cannot be read raises "Errore in ricerca
    // archivi [orvida]" (naming the item when the suite no longer has it).
    // Rows added since the distinta was read whose due item other saved distinte already pay
    // (for its whole amount, or for more than what this row would leave free) are given in
    // paidElsewhere: saving them would pay the item twice.
    QList<WriteBackEntry> planSave(QSqlDatabase &db, const Distinta &d,
                                   QList<Riga> *paidElsewhere) const;
    // The message that tells the clerk which rows were left out of a save, and why.
    static QString leftOutMessage(const QList<Riga> &rows);
    // The delete: the due item of every row as saved is released. Items the suite no longer
    // has need nothing; any other failure to read raises the delete's search error.
    QList<WriteBackEntry> planDelete(const QList<Riga> &savedRows) const;
    // The bank file: every row given is marked again, counted on db.
    QList<WriteBackEntry> planMarks(QSqlDatabase &db, const Testata &header,
                                    const QList<Riga> &rows) const;

    // Carries out the entries of an operation just committed. A save (stopAtRowFailure) stops
    // at the first row whose due item cannot be read or rewritten and raises the matching
    // error; a delete or a repair tries every entry. Conflicts are shown.
    WriteBackApplier::Result carryOut(QSqlDatabase &db, const QList<WriteBackEntry> &entries,
                                      bool stopAtRowFailure, const QString &source) const;

    // Completes what earlier operations left undone, telling the clerk what was completed,
    // what met a conflict and what still cannot be done. False while entries remain.
    bool completePending(QSqlDatabase &db) const;

    // The entries still waiting in the journal.
    static int pendingCount(QSqlDatabase &db);

private:
    archives::ErpSession &erp() const;
    // The message, and after it the archive's reason when the last call failed for another
    // reason than a missing record (a damaged archive, one held by another program).
    QString withCause(const QString &message) const;

    archives::ErpSession *m_erp;
};

} // namespace pg::distinta
