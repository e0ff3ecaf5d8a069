#pragma once

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace pg::test {

// The clerk's hands on a modal window: the program waits in the window's own event loop, so
// the test acts from a timer once the window of the expected kind is on screen. When a step
// fails, every modal window still open is closed, so that the test ends instead of waiting.
class ModalDriver
{
public:
    // Runs act on the modal window of type T once it is the one on top (within half a minute).
    template<typename T>
    static void whenShown(std::function<void(T *)> act)
    {
        poll([](QWidget *modal) { return qobject_cast<T *>(modal) != nullptr; },
             [act](QWidget *modal) { act(qobject_cast<T *>(modal)); });
    }

    // Closes every modal window (a failed step must not leave the program waiting).
    static void closeModals();

private:
    static void poll(std::function<bool(QWidget *)> matches, std::function<void(QWidget *)> act);
};

} // namespace pg::test
