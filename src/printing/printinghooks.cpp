#include "printinghooks.h"

#include "editoroutput.h"
#include "mergefieldsdialog.h"
#include "outputchoice.h"
#include "previewoutput.h"
#include "printeroutput.h"
#include "printersdialog.h"
#include "printprogress.h"
#include "printrun.h"
#include "stampadialog.h"
#include "templatestore.h"

#include "editor/window/distintaeditor.h"
#include "editor/window/mainwindowhooks.h"
#include "editor/window/mainwindowload.h"
#include "lists/usersettings.h"
#include "startup/companyenvironment.h"

#include <QCheckBox>

namespace pg::printing {

namespace {

// The main window's "Seleziona Modello": whether the clerk picks the template from the list.
bool chooseTemplate(QWidget *window)
{
    const auto *box =
        window ? window->findChild<QCheckBox *>(QStringLiteral("chkModello")) : nullptr;
    return box && box->isChecked();
}

void printDistinta(editor::MainWindowLoad &load, const editor::PrinterCatalog &printers,
                   const std::function<void()> &printerChanged, StampaDialog *loaded,
                   editor::DistintaEditor &editor, QWidget *window)
{
    if (!load.store() || !editor.hasDistinta())
        return;
    std::unique_ptr<StampaDialog> own;
    if (!loaded)
        own = std::make_unique<StampaDialog>(printers, window);
    StampaDialog &dialog = loaded ? *loaded : *own;
    dialog.load(editor.state(), chooseTemplate(window), TemplateStore().names(), currentSettings());
    dialog.setLauncher([&](const PrintOptions &options) {
        PrintRun run(*load.store(), load.erp(), load.company());
        run.setAggiornaFlagStato([&editor](distinta::Distinta &) { editor.AggiornaFlagStato(); });
        // A long print shows its pages and can be stopped.
        PrintProgress progress(&dialog);
        run.setProgress(progress.progress());
        const std::unique_ptr<PrintOutput> output = desktopOutput(options, &dialog);
        return run.LanciaStampa(editor.distinta(), options, *output);
    });
    const std::optional<editor::PrinterInfo> before = editor::currentPrinter();
    dialog.exec();
    if (editor::currentPrinter() != before && printerChanged)
        printerChanged();
}

} // namespace

std::unique_ptr<PrintOutput> desktopOutput(const PrintOptions &options, QWidget *parent)
{
    const UserSettings &settings = currentSettings();
    switch (outputKind(settings, options.autoPrint)) {
    case OutputKind::ExternalProgram:
        return std::make_unique<EditorOutput>(settings.editorPath,
                                              OrvidaDir() + QStringLiteral("D_STM/"));
    case OutputKind::Printer:
        return std::make_unique<PrinterOutput>(editor::currentPrinter());
    case OutputKind::Preview:
        break;
    }
    return std::make_unique<PreviewOutput>(editor::currentPrinter(), parent);
}

void installPrintingHooks(editor::MainWindowHooks &hooks, editor::MainWindowLoad &load,
                          const editor::PrinterCatalog &printers,
                          std::function<void()> printerChanged, StampaDialog *printDialog)
{
    hooks.printDistinta = [&load, &printers, printerChanged,
                           printDialog](editor::DistintaEditor &editor, QWidget *window) {
        printDistinta(load, printers, printerChanged, printDialog, editor, window);
    };
    hooks.choosePrinter = [&printers](QWidget *window) {
        PrintersDialog dialog(printers, window);
        dialog.exec();
        return dialog.printerChanged();
    };
    hooks.templateFields = [](QWidget *window) {
        MergeFieldsDialog dialog(window);
        dialog.exec();
    };
}

} // namespace pg::printing
