#pragma once

#include "erpwriteback.h"
#include "testata.h"
#include "writebackentry.h"

#include <QHash>
#include <QList>

#include <functional>

namespace pg::distinta {

// The changes one operation is going to make to the suite's due items, worked out before
// anything is written: each due item is read once, the rules of the write-back are applied
// in the operation's order (an item released and then marked again ends with both applied),
// and what the item shows now and what it must show after become one journal entry. Items
// whose marks would not change need no entry.
class WriteBackPlan
{
public:
    explicit WriteBackPlan(archives::ErpSession &erp) : m_erp(erp) {}

    // An item the clerk removed from the distinta since it was created or read. It is left
    // alone when the suite no longer has it, when it is already free (distinta mark "0"), or
    // when it is in state "3" while a distinta never saved is being saved (it is then in
    // another distinta, not in this one).
    ErpWriteBack::Read releaseRemoved(const QString &key, bool newDistinta);
    // The due item of a row of a distinta being deleted, freed. NotFound: the suite no longer
    // has it, there is nothing to free.
    ErpWriteBack::Read releaseRow(const Riga &row);
    // The due item of a row of a saved distinta, marked; rowsWithKey(key) counts the rows of
    // all the distinte that hold it.
    ErpWriteBack::Read markRow(const Riga &row, const Testata &header,
                               const std::function<int(const QString &key)> &rowsWithKey);

    // What the suite showed of a due item when it was planned (nothing when it was not).
    const DueItemMarks *before(const QString &key) const;

    // The entries that change something, in the order they were first planned.
    QList<WriteBackEntry> entries() const;

private:
    // The entry of the item (planned before, or read now and made of that kind); -1 when it
    // could not be read.
    int entryOf(const QString &flag, const QString &link, ErpWriteBack::Read *read,
                WriteBackEntry::Kind kind);

    ErpWriteBack m_erp;
    QList<WriteBackEntry> m_entries;
    QHash<QString, int> m_byKey;
};

} // namespace pg::distinta
