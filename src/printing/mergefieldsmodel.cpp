#include "mergefieldsmodel.h"

#include "mergefield.h"

namespace pg::printing {

MergeFieldsModel::MergeFieldsModel(QObject *parent) : QAbstractTableModel(parent) {}

int MergeFieldsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(MergeField::all().size());
}

int MergeFieldsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant MergeFieldsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= ColumnCount)
        return {};
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const MergeField &field = MergeField::all().at(index.row());
    switch (index.column()) {
    case Campo:
        return field.scope == MergeField::Scope::Sezione
                   ? QStringLiteral("{{#%1}} ... {{/%1}}").arg(field.name)
                   : QStringLiteral("{{%1}}").arg(field.name);
    case Uso:
        return MergeField::scopeName(field.scope);
    case Descrizione:
        return field.description;
    default:
        return {};
    }
}

QVariant MergeFieldsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Campo:
        return QStringLiteral("Variabile");
    case Uso:
        return QStringLiteral("Uso");
    case Descrizione:
        return QStringLiteral("Descrizione");
    default:
        return {};
    }
}

} // namespace pg::printing
