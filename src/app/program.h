#pragma once

#include "startupsequence.h"

#include "editor/window/mainwindow.h"
#include "editor/window/mainwindowload.h"
#include "printing/stampadialog.h"
#include "printing/systemprinters.h"
#include "startup/singleinstance.h"

#include <memory>

class QCoreApplication;

namespace pg::app {

// The desktop program put together: the start-up sequence, the single running copy, the main
// window with its load step, and the parts of the program that plug into the window.
class Program
{
public:
    Program();
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    // The start-up steps that reach outside the program (tests replace some of them).
    StartupSequence::Steps &steps() { return m_steps; }

    // Start-up through the main window's load step. False when the program ends there (the
    // window unloaded itself); otherwise the window is ready to be shown.
    bool start(const QStringList &arguments);
    // Shows the main window; a later start of the program brings it to the front from now on.
    void show();

    editor::MainWindow *mainWindow() const { return m_window.get(); }
    editor::MainWindowLoad *load() const { return m_load.get(); }
    SingleInstance &instance() { return m_instance; }

    // The standard buttons of the message boxes and dialogs in Italian ("Sì", "No",
    // "Annulla"), from Qt's own translations.
    static void installTranslations(QCoreApplication &application);

private:
    // The print dialog is prepared, hidden, before the main window loads.
    void loadPrintDialog();
    // The entries of the window's commands whose work lives in other parts of the program.
    void connectOtherParts(editor::MainWindow &window);

    SingleInstance m_instance;
    StartupSequence::Steps m_steps;
    editor::SystemPrinters m_printers;
    std::unique_ptr<editor::MainWindowLoad> m_load;
    std::unique_ptr<editor::MainWindow> m_window;
    // Loaded hidden before the main window, shown by every print; released before the window.
    std::unique_ptr<printing::StampaDialog> m_printDialog;
};

// The program's entry: start-up, the main window, the event loop; the process's exit code.
int Main(int argc, char *argv[]);

} // namespace pg::app
