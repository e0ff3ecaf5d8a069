#pragma once

#include <QHash>
#include <QList>
#include <QString>

namespace pg::distinta {

// The rows of one table of a distinta, held in memory between a read and a save, with the
// changes made since: rows added, changed and removed. A save writes exactly those changes
// and then accepts them; a save that fails keeps them pending, so that nothing the clerk did
// is lost. Rows are kept in the order they were read or added.
//
// Record must have key(): rows of one distinta are found by it (the suite's due-item key for
// rows, the code for the header) in constant time.
template<typename Record>
class RecordSet
{
public:
    enum class Status { Unchanged, Added, Changed };

    struct Entry
    {
        Record data;
        qint64 rowid = 0; // the row in the database; 0 until first saved
        Status status = Status::Added;
    };

    int size() const { return int(m_rows.size()); }
    // Both at the start and at the end: no rows.
    bool isEmpty() const { return m_rows.isEmpty(); }

    const Record &at(int i) const { return m_rows.at(i).data; }
    const Record &first() const { return m_rows.first().data; }
    // The row, to be changed: it will be written back by the next save.
    Record &edit(int i)
    {
        Entry &e = m_rows[i];
        if (e.status == Status::Unchanged)
            e.status = Status::Changed;
        return e.data;
    }
    Record &editFirst() { return edit(0); }

    // Puts another record in the row's place; the row is written back by the next save.
    void replace(int i, const Record &record)
    {
        edit(i) = record;
        m_indexValid = false;
    }

    int append(const Record &record)
    {
        m_rows.append(Entry{record, 0, Status::Added});
        const int i = int(m_rows.size()) - 1;
        if (m_indexValid)
            m_index.insert(record.key(), i);
        return i;
    }

    void removeAt(int i)
    {
        if (m_rows.at(i).rowid != 0)
            m_removed.append(m_rows.at(i).rowid);
        m_rows.removeAt(i);
        m_indexValid = false;
    }

    // Removes every row (each one is deleted by the next save).
    void removeAll()
    {
        for (const Entry &e : std::as_const(m_rows))
            if (e.rowid != 0)
                m_removed.append(e.rowid);
        m_rows.clear();
        m_index.clear();
        m_indexValid = true;
    }

    // The position of the row with that key, or -1.
    int indexOfKey(const QString &key) const
    {
        if (!m_indexValid) {
            m_index.clear();
            for (int i = 0; i < m_rows.size(); ++i)
                m_index.insert(m_rows.at(i).data.key(), i);
            m_indexValid = true;
        }
        return m_index.value(key, -1);
    }

    // Replaces the content with rows as read from the database: no pending changes.
    void load(QList<Entry> rows)
    {
        m_rows = std::move(rows);
        for (Entry &e : m_rows)
            e.status = Status::Unchanged;
        m_removed.clear();
        m_index.clear();
        m_indexValid = false;
    }

    bool hasChanges() const
    {
        if (!m_removed.isEmpty())
            return true;
        for (const Entry &e : m_rows)
            if (e.status != Status::Unchanged)
                return true;
        return false;
    }

    const QList<Entry> &entries() const { return m_rows; }
    const QList<qint64> &removedRowids() const { return m_removed; }

    // After a committed save: the new rows get their database identities and nothing is
    // pending any more. newRowids are given for the added rows, in row order.
    void acceptChanges(const QList<qint64> &newRowids)
    {
        int n = 0;
        for (Entry &e : m_rows) {
            if (e.status == Status::Added && n < newRowids.size())
                e.rowid = newRowids.at(n++);
            e.status = Status::Unchanged;
        }
        m_removed.clear();
    }

private:
    QList<Entry> m_rows;
    QList<qint64> m_removed;
    mutable QHash<QString, int> m_index;
    mutable bool m_indexValid = true;
};

} // namespace pg::distinta
