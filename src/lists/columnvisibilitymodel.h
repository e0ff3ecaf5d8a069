#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>

namespace pg::lists {

// One column the row list can show, as the options offer it: its header and whether it is
// shown now.
struct ColumnChoice
{
    QString header;
    bool visible = true;
};

// "Colonne DA NON visualizzare": one checkable line per column of the row list, checked when
// the column is hidden.
class ColumnVisibilityModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit ColumnVisibilityModel(QObject *parent = nullptr);

    void setColumns(const QList<ColumnChoice> &columns);
    const QList<ColumnChoice> &columns() const { return m_columns; }
    void setHidden(int row, bool hidden);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    QList<ColumnChoice> m_columns;
};

} // namespace pg::lists
