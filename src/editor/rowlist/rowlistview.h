#pragma once

#include <QHash>
#include <QStringList>
#include <QTableView>

namespace pg {
struct UserSettings;
}
namespace pg::archives {
class ErpSession;
}
namespace pg::distinta {
struct Distinta;
}

namespace pg::editor {

class RowListModel;
class RowListProxy;

// lvwScadenze: the list of the due items in the current distinta, in the middle of the main
// window. Full-row, multiple selection; a click on a header sorts by that column with an arrow;
// a double click (or F2) on the residual amount or the description edits it in the cell, when
// the list's rules allow. The distinta's rows are the
// truth: the list is refilled from them after every add, removal, load or new distinta. The
// right button is left to the window that holds the list, which opens its menu mnuLista.
class RowListView : public QTableView
{
    Q_OBJECT

public:
    explicit RowListView(QWidget *parent = nullptr);

    using QTableView::edit;

    RowListModel *rowModel() const { return m_model; }
    RowListProxy *proxy() const { return m_proxy; }

    void setSession(archives::ErpSession *erp);
    void setDistinta(distinta::Distinta *d);

    // LV_InizializzaLista: the list's font and columns from the clerk's settings.
    void LV_InizializzaLista();
    void LV_InizializzaLista(const UserSettings &settings);
    // LV_RefreshLista: the lines again from the distinta's rows, widths fitted.
    void LV_RefreshLista();
    // LV_AdattaColonne: every visible column as wide as its header and contents.
    void LV_AdattaColonne();
    // LV_ShowHeaderIcon: the sort arrow on a column.
    void LV_ShowHeaderIcon(int column, Qt::SortOrder order);
    // lvwSelectRow: every line selected, or none.
    void lvwSelectRow(bool selected);

    // The line keys of the selected lines, in the order the list shows them.
    QStringList selectedRowKeys() const;
    // The line key of the current line; empty when there is none.
    QString currentRowKey() const;
    // The columns as the clerk arranged them, "field=width" in the order shown, ";" between
    // (UserSettings::columnLayout); LV_InizializzaLista puts them back so.
    QString columnLayout() const;

    // Whether the list shows a column with that header.
    bool hasListColumn(const QString &header) const;
    int listRowCount() const;

signals:
    // A row was changed in the list: the window recomputes the totals and enables saving.
    void rowEdited();
    // A hint for the status bar.
    void statusHint(const QString &text);

protected:
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;

private:
    // Moves the columns into the saved order and keeps their saved widths as their least.
    void applyColumnLayout(const QString &layout);

    RowListModel *m_model;
    RowListProxy *m_proxy;
    // Saved widths by field: a column fitted to its contents is never narrower.
    QHash<QString, int> m_savedWidths;
};

} // namespace pg::editor
