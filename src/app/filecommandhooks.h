#pragma once

namespace pg::editor {
class MainWindow;
class MainWindowLoad;
} // namespace pg::editor

namespace pg::app {

// Puts the commands that write files into the main window's hooks: "File Bonifici" (the
// bank file, through its dialogs: the credit-transfer file of a suppliers' distinta, the RiBa
// file of a customers' one), the completeness check (its report opened for the clerk
// when it lists errors) and "Verifica" (the reconciliation of the due items with the saved
// distinte, its report opened when they disagree). The first two save pending changes first
// without asking, and the window shows the distinta again afterwards: the bank file moves it
// to "F", the check refreshes the rows' bank data. window and load must outlive the hooks.
void installFileCommandHooks(editor::MainWindow &window, editor::MainWindowLoad &load);

} // namespace pg::app
