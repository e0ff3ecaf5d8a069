#pragma once

#include "distinta/recordset.h"
#include "distinta/riga.h"
#include "editor/rowlist/listcolumns.h"

#include <QAbstractTableModel>
#include <QHash>

namespace pg::archives {
class ErpSession;
}

namespace pg::bankfile {

// The list of the payments of a distinta in the file dialog (lvwScadenze of frmCreaFileR): one
// line per row, the columns the clerk shows in the main window's row list, and the
// description (des_scadenza) editable. The model works on its own copy of the rows; the
// dialog takes them back when it is confirmed.
class ScadenzeModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // columns: the list's column table; only the visible columns are shown. erp: the suite,
    // for the currencies' decimals and the accounts' names and VAT numbers (none: two
    // decimals, no names).
    ScadenzeModel(const QList<editor::ListColumn> &columns, archives::ErpSession *erp,
                  QObject *parent = nullptr);

    void setRows(const distinta::RecordSet<distinta::Riga> &rows);
    const distinta::RecordSet<distinta::Riga> &rows() const { return m_rows; }
    // True once a description was changed.
    bool descriptionsChanged() const { return m_changed; }
    // The column with that key (a TB_RIGHE column, "ragsoc" or "Piva"), or -1.
    int columnOf(const QString &key) const;
    const editor::ListColumn &column(int index) const { return m_columns.at(index); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

private:
    QString cellText(const distinta::Riga &row, const QString &key) const;
    int currencyDecimals(const QString &currency) const;
    QString accountField(const QString &code, const QString &field) const;

    QList<editor::ListColumn> m_columns;
    archives::ErpSession *m_erp;
    distinta::RecordSet<distinta::Riga> m_rows;
    bool m_changed = false;
    mutable QHash<QString, int> m_decimals;
    mutable QHash<QString, QString> m_accounts; // code + field -> text
};

} // namespace pg::bankfile
