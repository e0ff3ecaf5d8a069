#include "windowtrace.h"

#include "editor/window/mainwindow.h"

#include <QApplication>
#include <QLineEdit>
#include <QLoggingCategory>

namespace pg::app {

namespace {

Q_LOGGING_CATEGORY(lcWindows, "pagamenti.finestre", QtWarningMsg)

} // namespace

void WindowTrace::attach(editor::MainWindow &window)
{
    if (!lcWindows().isInfoEnabled())
        return;
    // The trace watches every event of the program, so it is installed only when asked for.
    qApp->installEventFilter(new WindowTrace(&window));
    QObject::connect(window.txtTestata(0), &QLineEdit::textChanged, &window,
                     [](const QString &code) {
                         if (!code.isEmpty())
                             qCInfo(lcWindows, "distinta %s", qUtf8Printable(code));
                     });
}

bool WindowTrace::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && watched->isWidgetType() &&
        static_cast<QWidget *>(watched)->isWindow())
        qCInfo(lcWindows, "finestra %s", qUtf8Printable(watched->objectName()));
    return false;
}

} // namespace pg::app
