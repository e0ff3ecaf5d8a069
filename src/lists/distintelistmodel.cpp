#include "distintelistmodel.h"

#include "core/vbdate.h"
#include "core/vbformat.h"

#include <algorithm>
#include <numeric>

namespace pg::lists {

DistinteListModel::DistinteListModel(QObject *parent) : QAbstractTableModel(parent) {}

QStringList DistinteListModel::captions()
{
    return QStringLiteral("N.Distinta:Data dist.:Banca Pres.:Importo Distinta:Stato").split(u':');
}

void DistinteListModel::setRows(const QList<QVariantList> &rows)
{
    beginResetModel();
    m_entries.clear();
    m_entries.reserve(rows.size());
    for (const QVariantList &row : rows) {
        Entry e;
        e.code = row.value(Numero).toString();
        e.date = QDate::fromString(row.value(Data).toString().left(10), Qt::ISODate);
        e.bank = row.value(Banca).toString();
        e.amount = row.value(Importo).toDouble();
        e.state = row.value(Stato).toString();
        m_entries.append(e);
    }
    endResetModel();
}

QString DistinteListModel::codeAt(int row) const
{
    return row >= 0 && row < m_entries.size() ? m_entries.at(row).code : QString();
}

int DistinteListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

int DistinteListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DistinteListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Entry &e = m_entries.at(index.row());
    if (role == Qt::TextAlignmentRole) {
        if (index.column() == Numero || index.column() == Importo)
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        return QVariant::fromValue(Qt::AlignLeft | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Numero:
        return e.code.trimmed();
    case Data:
        return dates::toDmy(e.date);
    case Banca:
        return e.bank.trimmed();
    case Importo:
        return vb::format(e.amount, u"#,0.00");
    case Stato:
        return e.state;
    default:
        return {};
    }
}

QVariant DistinteListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < ColumnCount)
        return captions().at(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

void DistinteListModel::sort(int column, Qt::SortOrder)
{
    if (column < 0 || column >= ColumnCount)
        return;
    // Sorted by the values behind the texts: codes sort as numbers thanks to their
    // alignment, dates by day, amounts by value.
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QList<int> rowsBefore;
    for (const QModelIndex &i : before)
        rowsBefore << i.row();
    QList<int> order(m_entries.size());
    std::iota(order.begin(), order.end(), 0);
    auto less = [&](int a, int b) {
        const Entry &x = m_entries.at(a);
        const Entry &y = m_entries.at(b);
        switch (column) {
        case Numero:
            return x.code < y.code;
        case Data:
            return x.date < y.date;
        case Banca:
            return QString::localeAwareCompare(x.bank, y.bank) < 0;
        case Importo:
            return x.amount < y.amount;
        default:
            return x.state < y.state;
        }
    };
    std::stable_sort(order.begin(), order.end(), less);
    QList<Entry> sorted;
    sorted.reserve(m_entries.size());
    QList<int> newRowOf(m_entries.size());
    for (int i = 0; i < order.size(); ++i) {
        sorted << m_entries.at(order.at(i));
        newRowOf[order.at(i)] = i;
    }
    m_entries = std::move(sorted);
    QModelIndexList after;
    for (int i = 0; i < before.size(); ++i)
        after << index(newRowOf.at(rowsBefore.at(i)), before.at(i).column());
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

} // namespace pg::lists
