#pragma once

#include "distintaview.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace pg::editor {

class DistintaEditor;

// The commands of the main window whose work lives in other parts of the program: each part
// sets its entry when the program is put together. A command without its entry does nothing.
struct MainWindowHooks
{
    // The selection dialog of due items ("Nuova distinta", "Aggiungi"): what was confirmed,
    // nothing when it was cancelled.
    std::function<std::optional<SelectionResult>(QWidget *parent)> selectDueItems;
    // The walk over the suite's due items that adds the selected ones to the distinta.
    std::function<void(distinta::Distinta &distinta)> addSelectedDueItems;
    // The print dialog of the distinta ("Stampa"); the final print calls AggiornaFlagStato.
    std::function<void(DistintaEditor &editor, QWidget *parent)> printDistinta;
    // The bank file ("File Bonifici").
    std::function<void(DistintaEditor &editor, QWidget *parent)> createBankFile;
    // The completeness check of the distinta.
    std::function<void(DistintaEditor &editor, QWidget *parent)> completenessCheck;
    // The reconciliation of the suite's due items with the saved distinte ("Verifica").
    std::function<void(QWidget *parent)> verifyDueItems;
    // The choice of the printer ("Scelta stampante"); true when the printer changed.
    std::function<bool(QWidget *parent)> choosePrinter;
    // The list of the templates' merge fields ("Elenco variabili modelli").
    std::function<void(QWidget *parent)> templateFields;
    // The read-only detail views of a due item and of a customer or supplier.
    std::function<void(const archives::ErpRecord &dueItem, QWidget *parent)> dueItemDetail;
    std::function<void(const QString &code, const QString &caption, const QString &frame,
                       QWidget *parent)>
        accountDetail;
};

} // namespace pg::editor
