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

void RowListProxy::readKeys(int column) const
{
    const QAbstractItemModel *source = sourceModel();
    const auto *rows = qobject_cast<const RowListModel *>(source);
    const quint64 generation = rows ? rows->generation() : 0;
    const int count = source->rowCount();
    if (rows && column == m_keysColumn && generation == m_keysGeneration && m_keys.size() == count)
        return;
    m_keys.resize(count);
    for (int r = 0; r < count; ++r) {
        const QVariant value = source->index(r, column).data(sortRole());
        SortKey &key = m_keys[r];
        key.isNumber = value.typeId() == QMetaType::Double;
        key.number = key.isNumber ? value.toDouble() : 0;
        key.text = key.isNumber ? QString() : value.toString();
    }
    m_keysColumn = column;
    m_keysGeneration = generation;
}

bool RowListProxy::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    readKeys(left.column());
    const SortKey &a = m_keys.at(left.row());
    const SortKey &b = m_keys.at(right.row());
    if (a.isNumber && b.isNumber)
        return a.number < b.number;
    return QString::compare(a.text, b.text, sortCaseSensitivity()) < 0;
}

} // namespace pg::editor
