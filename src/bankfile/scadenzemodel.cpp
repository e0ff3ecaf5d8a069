#include "scadenzemodel.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/paymenttype.h"
#include "core/vbdate.h"
#include "core/vbformat.h"

namespace pg::bankfile {

namespace {

const QString DesScadenza = QStringLiteral("des_scadenza");

// The number pattern of a currency's decimals.
QString amountPattern(int decimals)
{
    switch (decimals) {
    case 4:
        return QStringLiteral("#,0.0000");
    case 5:
        return QStringLiteral("#,0.00000");
    case 6:
        return QStringLiteral("#,0.000000");
    default:
        return QStringLiteral("#,0.00");
    }
}

// The row's column of that name; nothing for a key that is not a column.
QVariant fieldValue(const distinta::Riga &row, const QString &key)
{
    for (const auto &c : distinta::Riga::columns())
        if (c.name == key)
            return c.value(row);
    return {};
}

} // namespace

ScadenzeModel::ScadenzeModel(const QList<editor::ListColumn> &columns, archives::ErpSession *erp,
                             QObject *parent)
    : QAbstractTableModel(parent), m_erp(erp)
{
    for (const editor::ListColumn &c : columns)
        if (c.visible)
            m_columns << c;
}

void ScadenzeModel::setRows(const distinta::RecordSet<distinta::Riga> &rows)
{
    beginResetModel();
    m_rows = rows;
    m_changed = false;
    endResetModel();
}

int ScadenzeModel::columnOf(const QString &key) const
{
    for (int i = 0; i < m_columns.size(); ++i)
        if (m_columns.at(i).field == key)
            return i;
    return -1;
}

int ScadenzeModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int ScadenzeModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

int ScadenzeModel::currencyDecimals(const QString &currency) const
{
    const auto cached = m_decimals.constFind(currency);
    if (cached != m_decimals.cend())
        return *cached;
    int decimals = 2;
    if (m_erp) {
        archives::ErpRecord record(archives::TabelleComuni, QStringLiteral("VL "));
        record.setText(QStringLiteral("codice"), currency);
        bool ok = false;
        if (m_erp->readEq(record, 1)) {
            const int stored = record.trimmed(QStringLiteral("decimali")).toInt(&ok);
            if (ok)
                decimals = stored;
        }
    }
    m_decimals.insert(currency, decimals);
    return decimals;
}

QString ScadenzeModel::accountField(const QString &code, const QString &field) const
{
    const QString key = code + u'\n' + field;
    const auto cached = m_accounts.constFind(key);
    if (cached != m_accounts.cend())
        return *cached;
    QString text;
    if (m_erp) {
        archives::ErpRecord record(archives::AnagraficheComuni);
        record.setText(QStringLiteral("cod_clifor"), code);
        if (m_erp->readEq(record, 1))
            text = record.trimmed(field);
    }
    m_accounts.insert(key, text);
    return text;
}

QString ScadenzeModel::cellText(const distinta::Riga &row, const QString &key) const
{
    const QVariant value = fieldValue(row, key);
    // The rows keep their dates as the suite's yyyymmdd text.
    if (key.startsWith(u"dat"))
        return value.isNull() ? QString() : dates::ymdToDmy(value.toString());
    if (key.startsWith(u"val"))
        return value.isNull()
                   ? QString()
                   : vb::format(value.toDouble(), amountPattern(currencyDecimals(row.cod_valuta)));
    if (key == u"cod_tipo_pag")
        return PaymentTypeName(row.cod_tipo_pag.trimmed());
    if (key == u"des_num_doc") {
        QString text = row.des_num_doc.trimmed();
        if (row.des_serie_doc != QStringLiteral(" "))
            text += u'/' + row.des_serie_doc.trimmed();
        return text;
    }
    if (key == u"ragsoc")
        return accountField(row.cod_clifor, QStringLiteral("ragsoc"));
    if (key == u"Piva")
        return accountField(row.cod_clifor, QStringLiteral("partita_iva"));
    return value.toString();
}

QVariant ScadenzeModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const editor::ListColumn &c = m_columns.at(index.column());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return cellText(m_rows.at(index.row()), c.field);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            Qt::AlignVCenter |
            (c.alignment == editor::ListColumn::Alignment::Right ? Qt::AlignRight : Qt::AlignLeft));
    default:
        return {};
    }
}

QVariant ScadenzeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole)
        return m_columns.at(section).header;
    return {};
}

Qt::ItemFlags ScadenzeModel::flags(const QModelIndex &index) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (m_columns.at(index.column()).field == DesScadenza)
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool ScadenzeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) ||
        m_columns.at(index.column()).field != DesScadenza)
        return false;
    // The row is found again by its line key, the due item's flag and link.
    const int row = m_rows.indexOfKey(m_rows.at(index.row()).key());
    if (row < 0)
        return false;
    const QString text = value.toString();
    if (m_rows.at(row).des_scadenza == text)
        return true;
    m_rows.edit(row).des_scadenza = text;
    m_changed = true;
    emit dataChanged(this->index(row, index.column()), this->index(row, index.column()));
    return true;
}

} // namespace pg::bankfile
