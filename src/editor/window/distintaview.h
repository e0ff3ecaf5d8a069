#pragma once

#include "editor/selection/selectionresult.h"

#include "distinta/distinta.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace pg::archives {
class ErpRecord;
}

namespace pg::editor {

// The two date boxes of the header: mskData (creation date) and mskDataValuta (value date).
enum class DateBox { Creazione, Valuta };

// What the distinta editor needs from the main window: the controls it sets, and the dialogs
// and lists that it opens. The window implements it; tests implement it with a recording fake.
class DistintaView
{
public:
    virtual ~DistintaView() = default;

    // Management button i enabled or not, with its image (enabled i+1, disabled i+7).
    virtual void setManagementButton(int index, bool enabled) = 0;
    // BindControls: every header control shows the current header (or is empty without one).
    virtual void BindControls() = 0;
    // PulisciMaschera: empties the header controls and the row list.
    virtual void PulisciMaschera() = 0;
    virtual void setAggiungiEnabled(bool enabled) = 0;
    // The total and the number of dispositions after CalcolaTotali.
    virtual void showTotals() = 0;

    // The text a date box holds ("__/__/____" when empty), and setting it.
    virtual QString dateBoxText(DateBox box) const = 0;
    virtual void setDateBoxText(DateBox box, const QString &text) = 0;
    virtual void focusDateBox(DateBox box, bool selectText) = 0;
    // Moves the focus to a header field (txtTestata index).
    virtual void focusHeaderField(int index) = 0;

    // The row list: refilled from the distinta's rows, the keys of its selected lines, its
    // lines deselected, whether a column with that header is shown, the key of the current
    // line.
    virtual void LoadRows() = 0;
    virtual QStringList selectedRowKeys() const = 0;
    virtual void deselectRows() = 0;
    virtual bool hasListColumn(const QString &header) const = 0;
    virtual int listRowCount() const = 0;
    virtual QString currentRowKey() const = 0;

    // The selection dialog of due items; nothing when it was closed without confirming.
    virtual std::optional<SelectionResult> showSelectionDialog() = 0;
    // The walk over the suite's due items that adds the selected ones as rows.
    virtual void addSelectedDueItems(distinta::Distinta &distinta) = 0;
    // The list of saved distinte; the chosen distinta's code, or nothing.
    virtual std::optional<QString> chooseDistinta() = 0;
    // The F4 list of banks and agencies (list 16): the chosen entry ("AAAAA CCCCC"), or empty.
    virtual QString lookupBanksAndAgencies() = 0;
    // The detail views of a due item and of a customer or supplier.
    virtual void showDueItemDetail(const archives::ErpRecord &dueItem) = 0;
    virtual void showAccountDetail(const QString &code, const QString &caption,
                                   const QString &frame) = 0;
};

} // namespace pg::editor
