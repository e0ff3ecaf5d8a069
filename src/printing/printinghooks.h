#pragma once

#include "printoptions.h"
#include "printoutput.h"

#include <functional>
#include <memory>

class QWidget;

namespace pg::editor {
class MainWindowLoad;
class PrinterCatalog;
struct MainWindowHooks;
} // namespace pg::editor

namespace pg::printing {

class StampaDialog;

// Puts the print commands into the main window's hooks: "Stampa" opens the print dialog over
// the window's distinta and a final print ends with the window's AggiornaFlagStato;
// "Scelta stampante" (and a double click on the printer's picture) opens the printer dialog;
// "Elenco variabili modelli" lists the templates' fields. load gives the distinta component,
// the suite's archives and the company's data; both must outlive the window. printerChanged
// runs when the printer in use was changed from the print dialog's printer list (the window
// shows the printer again). printDialog is the print dialog the program loaded at start-up,
// used for every print (one of its own for each print when there is none); it must outlive
// the window's commands.
void installPrintingHooks(editor::MainWindowHooks &hooks, editor::MainWindowLoad &load,
                          const editor::PrinterCatalog &printers,
                          std::function<void()> printerChanged = {},
                          StampaDialog *printDialog = nullptr);

// Where the desktop program sends a print with these options (see outputKind).
std::unique_ptr<PrintOutput> desktopOutput(const PrintOptions &options, QWidget *parent);

} // namespace pg::printing
