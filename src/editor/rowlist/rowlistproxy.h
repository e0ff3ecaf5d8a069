#pragma once

#include <QSortFilterProxyModel>
#include <QVector>

namespace pg::editor {

// The row list in the order the clerk chose by clicking a column header: each column sorts
// by its sort form (dates by year, month and day, document numbers as numbers, amounts as
// amounts, texts without regard to case). Until a column is chosen the lines keep the order
// of the distinta's rows; an edit never moves a line under the clerk's eyes.
//
// The sort forms of the sorted column are read once per sort, not once per comparison, so
// that ten thousand lines sort at once.
class RowListProxy : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit RowListProxy(QObject *parent = nullptr);

    // The line key of a line of the list.
    QString keyAt(int row) const;

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    struct SortKey
    {
        bool isNumber = false;
        double number = 0;
        QString text;
    };

    void readKeys(int column) const;

    mutable QVector<SortKey> m_keys;
    mutable int m_keysColumn = -1;
    mutable quint64 m_keysGeneration = 0;
};

} // namespace pg::editor
