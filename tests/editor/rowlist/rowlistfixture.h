#pragma once

// The rows, distinte, accounts and window of the row list's tests.

#include "archives/store/erprecord.h"
#include "distinta/distinta.h"
#include "editor/rowlist/rowlistview.h"
#include "editor/window/distintaview.h"
#include "lists/usersettings.h"

namespace pg::test::rowlist {

using distinta::Riga;
using editor::DateBox;
using editor::SelectionResult;

QString link(int n);
void set(Riga &r, const QString &assignments);
// A free credit transfer of 100.00 euro to supplier 400001.
Riga row(int n, const QString &assignments = {});
distinta::Distinta distintaOf(const QList<Riga> &rows, const QString &state = QStringLiteral("P"));
// Every column of the list shown.
UserSettings allColumns();
QList<archives::ErpRecord> accounts();
archives::ErpRecord dueItemInState(int n, const QString &state);

// The main window as the distinta editor sees it, with the real row list in the middle.
class ListOnlyView : public editor::DistintaView
{
public:
    explicit ListOnlyView(editor::RowListView &list) : m_list(list) {}
    void setManagementButton(int, bool) override {}
    void BindControls() override {}
    void PulisciMaschera() override {}
    void setAggiungiEnabled(bool) override {}
    void showTotals() override {}
    QString dateBoxText(DateBox) const override { return QStringLiteral("__/__/____"); }
    void setDateBoxText(DateBox, const QString &) override {}
    void focusDateBox(DateBox, bool) override {}
    void focusHeaderField(int) override {}
    void LoadRows() override { m_list.LV_RefreshLista(); }
    QStringList selectedRowKeys() const override { return m_list.selectedRowKeys(); }
    void deselectRows() override { m_list.lvwSelectRow(false); }
    bool hasListColumn(const QString &header) const override
    {
        return m_list.hasListColumn(header);
    }
    int listRowCount() const override { return m_list.listRowCount(); }
    QString currentRowKey() const override { return m_list.currentRowKey(); }
    std::optional<SelectionResult> showSelectionDialog() override { return std::nullopt; }
    void addSelectedDueItems(distinta::Distinta &) override {}
    std::optional<QString> chooseDistinta() override { return std::nullopt; }
    QString lookupBanksAndAgencies() override { return {}; }
    void showDueItemDetail(const archives::ErpRecord &dueItem) override
    {
        shown << dueItem.text(QStringLiteral("link"));
    }
    void showAccountDetail(const QString &code, const QString &caption,
                           const QString &frame) override
    {
        shown << code + u'|' + caption + u'|' + frame;
    }

    QStringList shown; // the detail views opened

private:
    editor::RowListView &m_list;
};

} // namespace pg::test::rowlist
