#pragma once

#include <QSortFilterProxyModel>

namespace pg::editor {

// The row list in the order the clerk chose by clicking a column header: each column sorts
// by its sort form (dates by year, month and day, document numbers as numbers, amounts as
// amounts, texts without regard to case). Until a column is chosen the lines keep the order
// of the distinta's rows; an edit never moves a line under the clerk's eyes.
class RowListProxy : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit RowListProxy(QObject *parent = nullptr);

    // The line key of a line of the list.
    QString keyAt(int row) const;
};

} // namespace pg::editor
