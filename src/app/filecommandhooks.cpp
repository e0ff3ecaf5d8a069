#include "filecommandhooks.h"

#include "bankfile/creafilecommand.h"
#include "bankfile/desktopcreafiledialog.h"
#include "bankfile/ribafilecommand.h"
#include "checks/completenesscheck.h"
#include "checks/reportviewer.h"
#include "checks/verificacommand.h"
#include "editor/window/distintaeditor.h"
#include "editor/window/mainwindow.h"
#include "editor/window/mainwindowload.h"

namespace pg::app {

namespace {

// The distinta read again by its number and shown, with the buttons of a saved distinta (the
// state still disables delete for "F" and "D").
void showSaved(editor::MainWindow &window, distinta::DistinteStore &store)
{
    editor::DistintaEditor &editor = *window.editor();
    store.Leggi(editor.distinta(), editor.distinta().header().cod_distinta);
    window.BindControls();
    window.LoadRows();
    window.showTotals();
    editor.SetBtnGestione(QStringLiteral("YYNYYY"));
}

// Both commands save pending changes without asking: totals, save, read again.
std::function<bool(distinta::Distinta &)> saveWithoutAsking(editor::MainWindow &window,
                                                            distinta::DistinteStore &store)
{
    return [&window, &store](distinta::Distinta &d) {
        window.editor()->CalcolaTotali();
        if (!store.Salva(d, false, false))
            return false;
        showSaved(window, store);
        return true;
    };
}

// Runs a bank-file command on the distinta shown; true when the file was written.
template<typename Command, typename Dialog>
bool writeBankFile(editor::MainWindow &window, editor::MainWindowLoad &load,
                   editor::DistintaEditor &editor, Dialog &dialog)
{
    Command command(*load.store(), *load.erp(), load.company(), dialog);
    return command.cmdCreaFile(editor.distinta(), editor.hasUnsavedChanges(),
                               saveWithoutAsking(window, *load.store())) ==
           Command::Outcome::Written;
}

} // namespace

void installFileCommandHooks(editor::MainWindow &window, editor::MainWindowLoad &load)
{
    editor::MainWindowHooks &hooks = window.hooks();
    hooks.createBankFile = [&window, &load](editor::DistintaEditor &editor, QWidget *parent) {
        if (!load.store() || !load.erp())
            return;
        bankfile::DesktopCreaFileDialog dialog(*load.store(), load.erp(), parent);
        // A customers' distinta presents its ricevute bancarie: its file is the RiBa one.
        const bool written =
            bankfile::RibaFileCommand::isCustomersDistinta(editor.distinta().header())
                ? writeBankFile<bankfile::RibaFileCommand>(window, load, editor, dialog)
                : writeBankFile<bankfile::CreaFileCommand>(window, load, editor, dialog);
        if (written)
            showSaved(window, *load.store());
    };
    hooks.completenessCheck = [&window, &load](editor::DistintaEditor &editor, QWidget *parent) {
        if (!load.store() || !load.erp() || !editor.hasDistinta())
            return;
        checks::CompletenessCheck check(*load.store(), *load.erp());
        const checks::CompletenessCheck::Result result =
            check.chkDatiBAnca(editor.distinta(), editor.hasUnsavedChanges(),
                               saveWithoutAsking(window, *load.store()));
        if (!result.reportWritten)
            return;
        // The rows now carry the bank data of the account masters, as saved.
        showSaved(window, *load.store());
        if (result.errorsFound)
            checks::openReport(result.reportPath, parent);
    };
    hooks.verifyDueItems = [&load](QWidget *parent) {
        if (load.store() && load.erp())
            checks::cmdVerifica(*load.store(), *load.erp(), parent);
    };
}

} // namespace pg::app
