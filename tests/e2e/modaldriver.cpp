#include "modaldriver.h"

#include <QDialog>

namespace pg::test {

void ModalDriver::poll(std::function<bool(QWidget *)> matches, std::function<void(QWidget *)> act)
{
    auto *timer = new QTimer(qApp);
    auto tries = std::make_shared<int>(0);
    timer->setInterval(20);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, tries, matches, act] {
        QWidget *modal = QApplication::activeModalWidget();
        if (modal && modal->isVisible() && matches(modal)) {
            // Stopped first: the act may open a window of its own and wait in its loop.
            timer->stop();
            timer->deleteLater();
            act(modal);
            if (QTest::currentTestFailed())
                closeModals();
            return;
        }
        // Another window (a progress window, the dialog that opens the one expected) waits.
        if (++*tries > 1500) {
            timer->stop();
            timer->deleteLater();
            QTest::qFail("the expected window never showed", __FILE__, __LINE__);
            closeModals();
        }
    });
    timer->start();
}

void ModalDriver::closeModals()
{
    while (QWidget *modal = QApplication::activeModalWidget()) {
        if (auto *dialog = qobject_cast<QDialog *>(modal))
            dialog->reject();
        else
            modal->close();
        QApplication::processEvents();
        if (QApplication::activeModalWidget() == modal)
            break;
    }
}

} // namespace pg::test
