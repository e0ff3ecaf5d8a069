#pragma once

#include <QAbstractTableModel>

namespace pg::printing {

// The list of template variables ("Elenco variabili modelli"): one line per field or
// section a template may use, with how it is written, where it may be used and what it
// holds.
class MergeFieldsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Campo, Uso, Descrizione, ColumnCount };

    explicit MergeFieldsModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
};

} // namespace pg::printing
