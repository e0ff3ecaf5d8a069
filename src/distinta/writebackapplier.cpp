#include "writebackapplier.h"

#include "writebackjournal.h"

namespace pg::distinta {

namespace {

// Entries ticked off together: a crash loses at most this many ticks, and an entry not
// ticked is found done by the next run.
constexpr int TickBatch = 512;

QString marksText(const DueItemMarks &marks)
{
    return QStringLiteral("stato %1, segno %2")
        .arg(marks.stato.trimmed(), marks.markDist.trimmed());
}

} // namespace

WriteBackApplier::Result WriteBackApplier::apply(const QList<WriteBackEntry> &entries,
                                                 bool stopAtRowFailure)
{
    Result result;
    QList<WriteBackEntry> done;
    auto tick = [&] {
        WriteBackJournal::markDone(m_db, done);
        result.done += int(done.size());
        done.clear();
    };
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const WriteBackEntry &entry = entries.at(i);
        const ErpWriteBack::Applied applied = m_erp.apply(entry);
        switch (applied) {
        case ErpWriteBack::Applied::Done:
        case ErpWriteBack::Applied::AlreadyDone:
            done << entry;
            if (done.size() >= TickBatch)
                tick();
            continue;
        case ErpWriteBack::Applied::Conflict:
        case ErpWriteBack::Applied::Vanished:
            result.conflicts << entry;
            continue;
        case ErpWriteBack::Applied::ReadFailed:
        case ErpWriteBack::Applied::RewriteFailed:
            result.pending << entry;
            if (result.failure == ErpWriteBack::Applied::Done &&
                entry.kind == WriteBackEntry::Kind::Row)
                result.failure = applied;
            if (stopAtRowFailure && entry.kind == WriteBackEntry::Kind::Row) {
                result.pending << entries.mid(i + 1);
                tick();
                WriteBackJournal::markConflicts(m_db, result.conflicts);
                return result;
            }
            continue;
        }
    }
    tick();
    WriteBackJournal::markConflicts(m_db, result.conflicts);
    return result;
}

QString WriteBackApplier::itemName(const WriteBackEntry &entry)
{
    return entry.flag + u' ' + entry.link.trimmed();
}

QString WriteBackApplier::conflictLines(const QList<WriteBackEntry> &conflicts, int maxLines)
{
    QString text;
    for (qsizetype i = 0; i < conflicts.size() && i < maxLines; ++i) {
        const WriteBackEntry &e = conflicts.at(i);
        text += QStringLiteral("\r\n") + itemName(e) + QStringLiteral(": da ") +
                marksText(e.before) + QStringLiteral(" a ") + marksText(e.after);
    }
    if (conflicts.size() > maxLines)
        text += QStringLiteral("\r\n... e altre %1.").arg(conflicts.size() - maxLines);
    return text;
}

} // namespace pg::distinta
