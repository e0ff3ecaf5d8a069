#include "lookupmodel.h"

namespace pg::ui {

LookupModel::LookupModel(QObject *parent) : QAbstractTableModel(parent) {}

void LookupModel::setList(archives::LookupList list)
{
    beginResetModel();
    m_list = std::move(list);
    endResetModel();
}

QString LookupModel::choiceAt(int row) const
{
    if (row < 0 || row >= m_list.rows.size())
        return {};
    return m_list.rows.at(row).choice;
}

int LookupModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_list.rows.size());
}

int LookupModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_list.headers.size());
}

QVariant LookupModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != Qt::DisplayRole)
        return {};
    const QStringList &cells = m_list.rows.at(index.row()).cells;
    return index.column() < cells.size() ? QVariant(cells.at(index.column()).trimmed())
                                         : QVariant();
}

QVariant LookupModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= m_list.headers.size())
        return QAbstractTableModel::headerData(section, orientation, role);
    return m_list.headers.at(section);
}

} // namespace pg::ui
