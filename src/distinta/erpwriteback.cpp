#include "erpwriteback.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"

namespace pg::distinta {

namespace {

archives::ErpRecord keyed(const QString &flag, const QString &link)
{
    archives::ErpRecord record(archives::Scadenze);
    record.setText(QStringLiteral("flag_colpar"), flag);
    record.setText(QStringLiteral("link"), link);
    return record;
}

} // namespace

ErpWriteBack::Read ErpWriteBack::read(const QString &flag, const QString &link, DueItemMarks *marks)
{
    archives::ErpRecord record = keyed(flag, link);
    if (!m_erp.readEq(record, 2))
        return m_erp.lastError() == archives::NotFound ? Read::NotFound : Read::Failed;
    *marks = DueItemMarks::of(record);
    return Read::Found;
}

ErpWriteBack::Applied ErpWriteBack::apply(const WriteBackEntry &entry)
{
    archives::ErpRecord record = keyed(entry.flag, entry.link);
    if (!m_erp.readEq(record, 2))
        return m_erp.lastError() == archives::NotFound ? Applied::Vanished : Applied::ReadFailed;
    const DueItemMarks now = DueItemMarks::of(record);
    if (now == entry.after)
        return Applied::AlreadyDone;
    if (now != entry.before)
        return Applied::Conflict;
    entry.after.writeTo(record);
    return m_erp.rewrite(record) ? Applied::Done : Applied::RewriteFailed;
}

} // namespace pg::distinta
