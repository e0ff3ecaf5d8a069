#pragma once

#include "listcolumns.h"
#include "rowlistaccounts.h"
#include "rowlistrules.h"

#include "distinta/distinta.h"

#include <QAbstractTableModel>
#include <QLocale>

namespace pg::archives {
class ErpSession;
}

namespace pg::editor {

// The rows of the current distinta as the list lvwScadenze shows them: one line per row of
// the distinta, in the order of its rows; first the hidden column "Col_Nascosta", then one
// column per visible entry of the list's column table. The distinta's rows are the truth: the
// model reads them when asked and writes the clerk's edits straight into them.
class RowListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        KeyRole = Qt::UserRole + 1, // the line key: flag and link of the due item
        SortRole,                   // the value the column sorts by
        FieldRole,                  // the column's field (also on the header)
        PartialRole,                // the row's residual was changed by hand ("P")
    };

    static const QString HiddenColumn; // "Col_Nascosta"
    static const QString PartialToolTip;

    explicit RowListModel(QObject *parent = nullptr);

    void setSession(archives::ErpSession *erp);
    void setDistinta(distinta::Distinta *d);
    distinta::Distinta *distinta() const { return m_d; }
    void setLocale(const QLocale &locale) { m_locale = locale; }

    // LV_InizializzaLista: the hidden column, then the visible columns of the table in table
    // order.
    void LV_InizializzaLista(const QList<ListColumn> &columns);
    // LV_RefreshLista: the lines again from the distinta's rows.
    void LV_RefreshLista();

    const ListColumn &column(int section) const { return m_columns.at(section); }
    int columnOfField(const QString &field) const;
    int columnOfHeader(const QString &header) const;
    QString keyAt(int row) const;
    int rowOfKey(const QString &key) const;

    // Changes with every refill and every edit: what was derived from the rows before is stale.
    quint64 generation() const { return m_generation; }

    // lvwScadenze_ItemClick for a cell.
    bool ItemClick(const QModelIndex &index, QString *status = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    // lvwScadenze_changeComplete: the edit is written into the row through the list's rules.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

signals:
    // A row of the distinta was changed in the list: the totals and the buttons follow.
    void rowEdited(int row);

private:
    QString displayText(const distinta::Riga &r, const QString &field) const;
    QVariant sortValue(const distinta::Riga &r, const QString &field) const;
    QString editText(const distinta::Riga &r, const QString &field) const;

    distinta::Distinta *m_d = nullptr;
    QList<ListColumn> m_columns;
    RowListAccounts m_accounts;
    RowListRules m_rules;
    QLocale m_locale;
    quint64 m_generation = 0;
};

} // namespace pg::editor
