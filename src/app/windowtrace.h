#pragma once

#include <QObject>

namespace pg::editor {
class MainWindow;
}

namespace pg::app {

// What the clerk sees, told on the log category "pagamenti.finestre" (silent unless
// QT_LOGGING_RULES turns its info messages on): every window as it is shown, by name, and
// every distinta the main window shows, by number. Support follows a session with it, and
// the tests of the program follow the real program through it.
class WindowTrace : public QObject
{
    Q_OBJECT

public:
    // Starts telling about the program's windows and the main window's distinta, when the
    // category is on; does nothing otherwise.
    static void attach(editor::MainWindow &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using QObject::QObject;
};

} // namespace pg::app
