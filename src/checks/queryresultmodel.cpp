#include "queryresultmodel.h"

#include "core/vbdate.h"
#include "core/vbformat.h"

#include <QDate>

namespace pg::checks {

QueryResultModel::QueryResultModel(QObject *parent) : QAbstractTableModel(parent) {}

void QueryResultModel::setResult(const distinta::QueryResult &result)
{
    beginResetModel();
    m_result = result;
    endResetModel();
}

int QueryResultModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_result.rows.size());
}

int QueryResultModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_result.columns.size());
}

QString QueryResultModel::displayText(const QString &column, const QVariant &value)
{
    if (value.isNull())
        return {};
    if (column.startsWith(u"dat_")) {
        const QString text = value.toString();
        if (text.size() == 8 && dates::fromYmd(text).isValid())
            return dates::ymdToDmy(text);
        const QDate date = value.typeId() == QMetaType::QDate
                               ? value.toDate()
                               : QDate::fromString(text.left(10), Qt::ISODate);
        return date.isValid() ? dates::toDmy(date) : text;
    }
    if (column.startsWith(u"val_"))
        return vb::format(value.toDouble(), u"#,0.00");
    return value.toString();
}

QVariant QueryResultModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const QString &column = m_result.columns.at(index.column());
    if (role == Qt::DisplayRole)
        return displayText(column, m_result.rows.at(index.row()).value(index.column()));
    if (role == Qt::TextAlignmentRole && column.startsWith(u"val_"))
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant QueryResultModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < m_result.columns.size())
        return m_result.columns.at(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

} // namespace pg::checks
