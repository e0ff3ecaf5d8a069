#pragma once

#include "editor/window/distintaview.h"

#include <QStringList>

#include <array>
#include <functional>
#include <optional>

namespace pg::test {

using editor::DateBox;
using editor::SelectionResult;

// The window as the editor sees it: what it was told to show, and scripted dialogs.
class RecordingView : public editor::DistintaView
{
public:
    std::array<bool, 6> buttons{};
    bool aggiungi = false;
    QString dates[2] = {QStringLiteral("__/__/____"), QStringLiteral("__/__/____")};
    std::optional<SelectionResult> selection;
    std::optional<QString> chosen;
    std::function<void(distinta::Distinta &)> adder;
    QStringList selectedKeys;
    int selectionShown = 0;
    int rowLoads = 0;
    int binds = 0;
    int focusedBox = -1;

    QString maskShown() const
    {
        QString m;
        for (bool b : buttons)
            m += b ? u'Y' : u'N';
        return m;
    }

    void setManagementButton(int index, bool enabled) override { buttons[index] = enabled; }
    void BindControls() override { ++binds; }
    void PulisciMaschera() override {}
    void setAggiungiEnabled(bool enabled) override { aggiungi = enabled; }
    void showTotals() override {}
    QString dateBoxText(DateBox box) const override { return dates[int(box)]; }
    void setDateBoxText(DateBox box, const QString &text) override { dates[int(box)] = text; }
    void focusDateBox(DateBox box, bool) override { focusedBox = int(box); }
    void focusHeaderField(int) override {}
    void LoadRows() override { ++rowLoads; }
    QStringList selectedRowKeys() const override { return selectedKeys; }
    void deselectRows() override {}
    bool hasListColumn(const QString &) const override { return true; }
    int listRowCount() const override { return 0; }
    QString currentRowKey() const override { return {}; }
    std::optional<SelectionResult> showSelectionDialog() override
    {
        ++selectionShown;
        return selection;
    }
    void addSelectedDueItems(distinta::Distinta &d) override
    {
        if (adder)
            adder(d);
    }
    std::optional<QString> chooseDistinta() override { return chosen; }
    QString lookupBanksAndAgencies() override { return {}; }
    void showDueItemDetail(const archives::ErpRecord &) override {}
    void showAccountDetail(const QString &, const QString &, const QString &) override {}
};

} // namespace pg::test
