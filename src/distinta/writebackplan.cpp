#include "writebackplan.h"

namespace pg::distinta {

int WriteBackPlan::entryOf(const QString &flag, const QString &link, ErpWriteBack::Read *read,
                           WriteBackEntry::Kind kind)
{
    const QString key = Riga::keyOf(flag, link);
    const auto known = m_byKey.constFind(key);
    if (known != m_byKey.cend()) {
        *read = ErpWriteBack::Read::Found;
        return *known;
    }
    WriteBackEntry entry;
    entry.kind = kind;
    entry.flag = key.left(1);
    entry.link = key.mid(1);
    *read = m_erp.read(entry.flag, entry.link, &entry.before);
    if (*read != ErpWriteBack::Read::Found)
        return -1;
    entry.after = entry.before;
    m_entries << entry;
    m_byKey.insert(key, int(m_entries.size()) - 1);
    return int(m_entries.size()) - 1;
}

ErpWriteBack::Read WriteBackPlan::releaseRemoved(const QString &key, bool newDistinta)
{
    ErpWriteBack::Read read;
    const int i = entryOf(key.left(1), key.mid(1), &read, WriteBackEntry::Kind::Release);
    if (i < 0)
        return read;
    WriteBackEntry &e = m_entries[i];
    if (e.after.markDist != u"0" && !(e.after.stato == u"3" && newDistinta))
        e.after = e.after.released();
    return read;
}

ErpWriteBack::Read WriteBackPlan::releaseRow(const Riga &row)
{
    ErpWriteBack::Read read;
    const int i =
        entryOf(row.flg_flag_colpar, row.des_link_orvida, &read, WriteBackEntry::Kind::Row);
    if (i >= 0) {
        m_entries[i].kind = WriteBackEntry::Kind::Row;
        m_entries[i].after = m_entries[i].after.released();
    }
    return read;
}

ErpWriteBack::Read WriteBackPlan::markRow(const Riga &row, const Testata &header,
                                          const std::function<int(const QString &)> &rowsWithKey)
{
    ErpWriteBack::Read read;
    const int i =
        entryOf(row.flg_flag_colpar, row.des_link_orvida, &read, WriteBackEntry::Kind::Row);
    if (i >= 0) {
        WriteBackEntry &e = m_entries[i];
        e.kind = WriteBackEntry::Kind::Row;
        e.after = e.after.markedFor(row, header, [&] { return rowsWithKey(row.key()); });
    }
    return read;
}

const DueItemMarks *WriteBackPlan::before(const QString &key) const
{
    const auto known = m_byKey.constFind(key);
    return known == m_byKey.cend() ? nullptr : &m_entries.at(*known).before;
}

QList<WriteBackEntry> WriteBackPlan::entries() const
{
    QList<WriteBackEntry> changes;
    for (const WriteBackEntry &e : m_entries)
        if (e.after != e.before)
            changes << e;
    return changes;
}

} // namespace pg::distinta
