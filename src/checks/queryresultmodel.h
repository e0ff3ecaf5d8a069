#pragma once

#include "distinta/distintestore.h"

#include <QAbstractTableModel>

namespace pg::checks {

// A read-only table over the result of a query: one column per result column, headed by its
// name. Dates show as "dd/mm/yyyy" (the rows' yyyymmdd text and the header's dates alike),
// amounts ("val_" columns) as "#,0.00" under the locale.
class QueryResultModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit QueryResultModel(QObject *parent = nullptr);

    void setResult(const distinta::QueryResult &result);
    const distinta::QueryResult &result() const { return m_result; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // The text of a value of the named column, as the list and its print show it.
    static QString displayText(const QString &column, const QVariant &value);

private:
    distinta::QueryResult m_result;
};

} // namespace pg::checks
