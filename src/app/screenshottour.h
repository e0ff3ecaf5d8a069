#pragma once

namespace pg::editor {
class MainWindow;
}

namespace pg::app {

// The pictures of the user documentation, taken by the program itself: when the environment
// variable PAGAMENTI_SCREENSHOTS names a directory, the shown window opens the first saved
// distinta, saves a PNG of itself and of the selection dialog, the options, the bank-file
// dialog, the supplier of a row, the print dialog and the print preview (each closed without
// doing anything), and closes. Without the variable nothing happens. script/screenshots runs
// it on a demo installation.
void startScreenshotTour(editor::MainWindow &window);

} // namespace pg::app
