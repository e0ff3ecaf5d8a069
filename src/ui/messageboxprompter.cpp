#include "messageboxprompter.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace pg::ui {

QMessageBox::Icon MessageBoxPrompter::boxIcon(Icon icon)
{
    switch (icon) {
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons MessageBoxPrompter::boxButtons(Buttons buttons)
{
    switch (buttons) {
    case Buttons::Ok:
        return QMessageBox::Ok;
    case Buttons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case Buttons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::RetryCancel:
        return QMessageBox::Retry | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

Answer MessageBoxPrompter::answerOf(int standardButton)
{
    switch (standardButton) {
    case QMessageBox::Ok:
        return Answer::Ok;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Retry:
        return Answer::Retry;
    default:
        return Answer::Cancel;
    }
}

QMessageBox *MessageBoxPrompter::createBox(const Message &message, QWidget *parent)
{
    auto *box = new QMessageBox(parent);
    box->setWindowTitle(message.title.isEmpty() ? Prompter::programName() : message.title);
    box->setIcon(boxIcon(message.icon));
    box->setText(message.text);
    box->setTextFormat(Qt::PlainText);
    const QMessageBox::StandardButtons buttons = boxButtons(message.buttons);
    box->setStandardButtons(buttons);
    // The first button is the default one, as the program's boxes always had it; Escape
    // answers Cancel where there is one, No for a plain yes/no question.
    switch (message.buttons) {
    case Buttons::Ok:
    case Buttons::OkCancel:
        box->setDefaultButton(QMessageBox::Ok);
        break;
    case Buttons::YesNo:
    case Buttons::YesNoCancel:
        box->setDefaultButton(QMessageBox::Yes);
        break;
    case Buttons::RetryCancel:
        box->setDefaultButton(QMessageBox::Retry);
        break;
    }
    if (buttons.testFlag(QMessageBox::Cancel))
        box->setEscapeButton(QMessageBox::Cancel);
    else if (buttons.testFlag(QMessageBox::No))
        box->setEscapeButton(QMessageBox::No);
    return box;
}

Answer MessageBoxPrompter::ask(const Message &message)
{
    QWidget *parent = QApplication::activeModalWidget();
    if (!parent)
        parent = QApplication::activeWindow();
    std::unique_ptr<QMessageBox> box(createBox(message, parent));
    // A wait cursor must not hide that the program waits for the user.
    const bool busy = QGuiApplication::overrideCursor() != nullptr;
    if (busy)
        QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    const int pressed = box->exec();
    if (busy)
        QGuiApplication::restoreOverrideCursor();
    return answerOf(pressed);
}

void MessageBoxPrompter::endProcess(int exitCode)
{
    std::fflush(stdout);
    std::fflush(stderr);
    std::_Exit(exitCode);
}

} // namespace pg::ui
