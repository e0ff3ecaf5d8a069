#include "rowlistproxy.h"

#include "rowlistmodel.h"

namespace pg::editor {

RowListProxy::RowListProxy(QObject *parent) : QSortFilterProxyModel(parent)
{
    setSortRole(RowListModel::SortRole);
    setSortCaseSensitivity(Qt::CaseInsensitive);
    setDynamicSortFilter(false);
}

QString RowListProxy::keyAt(int row) const
{
    return index(row, 0).data(RowListModel::KeyRole).toString();
}

} // namespace pg::editor
