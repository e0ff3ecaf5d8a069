#pragma once

#include <QObject>

class QWidget;

namespace pg::app {

// The start-up benchmark's end of the program: with PAGAMENTI_QUIT_WHEN_SHOWN set (not
// empty), the main window closes, the usual way (closing checks, archives closed, libraries
// released), as soon as it has been painted once, so that a run measures the start-up up to
// the first painted window and the ordinary shutdown.
class QuitWhenShown : public QObject
{
    Q_OBJECT

public:
    // Arms the end for the window when the environment asks for it.
    static void armFromEnvironment(QWidget &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit QuitWhenShown(QWidget &window);

    QWidget *m_window;
};

} // namespace pg::app
