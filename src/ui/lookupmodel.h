#pragma once

#include "archives/store/lookupservice.h"

#include <QAbstractTableModel>

namespace pg::ui {

// The rows of a lookup list, one line per entry, one column per header.
class LookupModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LookupModel(QObject *parent = nullptr);

    void setList(archives::LookupList list);
    const archives::LookupList &list() const { return m_list; }
    // The text handed back when the entry of that line is chosen.
    QString choiceAt(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    archives::LookupList m_list;
};

} // namespace pg::ui
