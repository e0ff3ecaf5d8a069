#include "quitwhenshown.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

namespace pg::app {

QuitWhenShown::QuitWhenShown(QWidget &window) : QObject(&window), m_window(&window) {}

void QuitWhenShown::armFromEnvironment(QWidget &window)
{
    if (qEnvironmentVariableIsEmpty("PAGAMENTI_QUIT_WHEN_SHOWN"))
        return;
    qApp->installEventFilter(new QuitWhenShown(window));
}

bool QuitWhenShown::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && watched->isWidgetType() &&
        static_cast<QWidget *>(watched)->window() == m_window) {
        qApp->removeEventFilter(this);
        // Closed once the whole paint has been done and flushed to the screen.
        QTimer::singleShot(0, m_window, [window = m_window] { window->close(); });
    }
    return false;
}

} // namespace pg::app
