#pragma once

#include "markdisagreement.h"

#include <QByteArray>
#include <QHash>
#include <QList>

#include <functional>

namespace pg::archives {
class ErpSession;
}
namespace pg::distinta {
class DistinteStore;
}

namespace pg::checks {

// The reconciliation of the suite's due items with the saved distinte ("Verifica scadenze"):
// every due item the suite marks as being in a distinta must be in a saved distinta, and
// every row of a saved distinta must have its due item marked, with the state the number of
// distinte holding it calls for ("5" or "3" in one distinta, "4" in more, for the payment
// types that take a state) and the date and bank of a distinta holding it. It walks the whole
// due-items archive once and reads every row of the distinte with one query; the repair sets
// the marks as the distinte say through the write-back journal, never over an item that has
// changed since the walk. Installations that come from earlier programs may disagree already:
// the walk shows each disagreement, nothing is changed without the repair.
class MarkReconciliation
{
public:
    // Told every ProgressInterval due items; false stops the walk.
    using Progress = std::function<bool(qint64 read)>;
    static constexpr int ProgressInterval = 4096;

    MarkReconciliation(distinta::DistinteStore &store, archives::ErpSession &erp);

    void setProgress(Progress progress) { m_progress = std::move(progress); }

    // The walk. False, after telling the clerk why, when the archive could not be read to its
    // end or the walk was stopped: the disagreements found are then not all there are.
    bool run();
    const QList<MarkDisagreement> &disagreements() const { return m_disagreements; }
    qint64 itemsRead() const { return m_read; }
    int repairableCount() const;

    // Sets the marks of every repairable disagreement as the distinte say. The number of
    // items left as they were (changed meanwhile, or not written), -1 when nothing could be
    // done; the clerk has been told.
    int repair();

    // The report: a heading, one line each, and what to do.
    QStringList reportLines() const;
    // ProgramDir() + "verifica.txt".
    static QString reportPath();

    // A row of a saved distinta holding a due item, and all those of one due item (the
    // walk's own bookkeeping).
    struct Holder;
    struct Holding;

private:
    void loadRows(QHash<QByteArray, Holding> &byKey);

    distinta::DistinteStore &m_store;
    archives::ErpSession &m_erp;
    Progress m_progress;
    QList<MarkDisagreement> m_disagreements;
    qint64 m_read = 0;
};

} // namespace pg::checks
