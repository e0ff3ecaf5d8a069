#include "columnvisibilitymodel.h"

namespace pg::lists {

ColumnVisibilityModel::ColumnVisibilityModel(QObject *parent) : QAbstractListModel(parent) {}

void ColumnVisibilityModel::setColumns(const QList<ColumnChoice> &columns)
{
    beginResetModel();
    m_columns = columns;
    endResetModel();
}

void ColumnVisibilityModel::setHidden(int row, bool hidden)
{
    setData(index(row), hidden ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
}

int ColumnVisibilityModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant ColumnVisibilityModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ColumnChoice &c = m_columns.at(index.row());
    if (role == Qt::DisplayRole)
        return c.header;
    if (role == Qt::CheckStateRole)
        return c.visible ? Qt::Unchecked : Qt::Checked;
    return {};
}

bool ColumnVisibilityModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != Qt::CheckStateRole)
        return false;
    const bool visible = value.value<Qt::CheckState>() != Qt::Checked;
    ColumnChoice &c = m_columns[index.row()];
    if (c.visible == visible)
        return true;
    c.visible = visible;
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

Qt::ItemFlags ColumnVisibilityModel::flags(const QModelIndex &index) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
}

} // namespace pg::lists
