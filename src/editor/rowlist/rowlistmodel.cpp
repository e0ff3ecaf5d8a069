#include "rowlistmodel.h"

#include "rowlistformat.h"

#include "core/paymenttype.h"
#include "core/vbformat.h"

#include <QColor>

#include <limits>

namespace pg::editor {

using distinta::Riga;

const QString RowListModel::HiddenColumn = QStringLiteral("Col_Nascosta");
const QString RowListModel::PartialToolTip =
    QStringLiteral("Pagamento parziale: l'importo residuo è stato modificato.");

namespace {

// Partial payments stand out on a pale amber ground.
const QColor PartialBackground(255, 236, 179);

const distinta::ColumnDef<Riga> *columnDef(const QString &field)
{
    static const QHash<QString, const distinta::ColumnDef<Riga> *> byName = [] {
        QHash<QString, const distinta::ColumnDef<Riga> *> map;
        for (const auto &c : Riga::columns())
            map.insert(QString(c.name), &c);
        return map;
    }();
    return byName.value(field);
}

} // namespace

RowListModel::RowListModel(QObject *parent) : QAbstractTableModel(parent)
{
    ListColumn hidden;
    hidden.field = HiddenColumn;
    m_columns.append(hidden);
}

void RowListModel::setSession(archives::ErpSession *erp)
{
    m_accounts.setSession(erp);
    m_rules.setSession(erp);
}

void RowListModel::setDistinta(distinta::Distinta *d)
{
    beginResetModel();
    ++m_generation;
    m_d = d;
    m_rules.setDistinta(d);
    if (m_d)
        m_accounts.prefetch(m_d->righe);
    endResetModel();
}

void RowListModel::LV_InizializzaLista(const QList<ListColumn> &columns)
{
    beginResetModel();
    ++m_generation;
    m_columns.clear();
    ListColumn hidden;
    hidden.field = HiddenColumn;
    hidden.width = 0;
    m_columns.append(hidden);
    for (const ListColumn &c : columns)
        if (c.visible)
            m_columns.append(c);
    endResetModel();
}

void RowListModel::LV_RefreshLista()
{
    beginResetModel();
    ++m_generation;
    if (m_d)
        m_accounts.prefetch(m_d->righe);
    endResetModel();
}

int RowListModel::columnOfField(const QString &field) const
{
    for (int i = 0; i < m_columns.size(); ++i)
        if (m_columns.at(i).field == field)
            return i;
    return -1;
}

int RowListModel::columnOfHeader(const QString &header) const
{
    for (int i = 1; i < m_columns.size(); ++i)
        if (m_columns.at(i).header == header)
            return i;
    return -1;
}

QString RowListModel::keyAt(int row) const
{
    if (!m_d || row < 0 || row >= m_d->righe.size())
        return {};
    return m_d->righe.at(row).key();
}

int RowListModel::rowOfKey(const QString &key) const
{
    return m_d ? m_d->righe.indexOfKey(key) : -1;
}

int RowListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !m_d ? 0 : m_d->righe.size();
}

int RowListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QString RowListModel::displayText(const Riga &r, const QString &field) const
{
    if (field == HiddenColumn)
        return {};
    if (field == u"des_num_doc")
        return RowListFormat::numDoc(r.des_num_doc, r.des_serie_doc);
    if (field == u"cod_tipo_pag")
        return PaymentTypeName(r.cod_tipo_pag.trimmed());
    if (field == u"ragsoc")
        return m_accounts.account(r.cod_clifor).ragsoc;
    if (field == u"Piva")
        return m_accounts.account(r.cod_clifor).piva;
    if (field == u"val_cambio")
        return RowListFormat::cambio(r.val_cambio, m_locale);
    const distinta::ColumnDef<Riga> *def = columnDef(field);
    if (!def)
        return {};
    const QVariant value = def->value(r);
    if (field.startsWith(u"dat"))
        return RowListFormat::date(value.toString());
    if (field.startsWith(u"val"))
        return RowListFormat::amount(
            value.isNull() ? std::nullopt : std::optional<double>(value.toDouble()), m_locale);
    return value.toString();
}

QVariant RowListModel::sortValue(const Riga &r, const QString &field) const
{
    if (field == u"des_num_doc")
        return RowListFormat::numDocSortKey(r.des_num_doc, r.des_serie_doc);
    if (field.startsWith(u"dat") || field.startsWith(u"val")) {
        if (const distinta::ColumnDef<Riga> *def = columnDef(field)) {
            const QVariant value = def->value(r);
            if (field.startsWith(u"dat"))
                return value.toString();
            return value.isNull() ? std::numeric_limits<double>::lowest() : value.toDouble();
        }
    }
    return displayText(r, field);
}

QString RowListModel::editText(const Riga &r, const QString &field) const
{
    if (field == RowListRules::ResiduoField)
        return vb::format(r.val_imp_residuo_val, u"0.00", m_locale);
    if (field == RowListRules::DescrizioneField)
        return r.des_scadenza;
    return displayText(r, field);
}

QVariant RowListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Riga &r = m_d->righe.at(index.row());
    const ListColumn &c = m_columns.at(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return displayText(r, c.field);
    case Qt::EditRole:
        return editText(r, c.field);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            (c.alignment == ListColumn::Alignment::Right ? Qt::AlignRight : Qt::AlignLeft) |
            Qt::AlignVCenter);
    case Qt::BackgroundRole:
        if (r.flg_ind_dist == u"P")
            return PartialBackground;
        return {};
    case Qt::ToolTipRole:
        if (r.flg_ind_dist == u"P")
            return PartialToolTip;
        return {};
    case KeyRole:
        return r.key();
    case SortRole:
        return sortValue(r, c.field);
    case FieldRole:
        return c.field;
    case PartialRole:
        return r.flg_ind_dist == u"P";
    default:
        return {};
    }
}

QVariant RowListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return QAbstractTableModel::headerData(section, orientation, role);
    const ListColumn &c = m_columns.at(section);
    switch (role) {
    case Qt::DisplayRole:
        return c.header;
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            (c.alignment == ListColumn::Alignment::Right ? Qt::AlignRight : Qt::AlignLeft) |
            Qt::AlignVCenter);
    case FieldRole:
        return c.field;
    default:
        return {};
    }
}

Qt::ItemFlags RowListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid() ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (RowListRules::isEditableField(m_columns.at(index.column()).field))
        f |= Qt::ItemIsEditable;
    return f;
}

bool RowListModel::ItemClick(const QModelIndex &index, QString *status)
{
    if (!index.isValid() ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return false;
    return m_rules.ItemClick(keyAt(index.row()), m_columns.at(index.column()).field, status);
}

bool RowListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid() ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return false;
    const int row = index.row();
    if (!m_rules.changeComplete(keyAt(row), m_columns.at(index.column()).field, value.toString()))
        return false;
    ++m_generation;
    emit dataChanged(this->index(row, 0), this->index(row, columnCount() - 1));
    emit rowEdited(row);
    return true;
}

} // namespace pg::editor
