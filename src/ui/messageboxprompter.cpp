#include "messageboxprompter.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QPushButton>

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

QMessageBox::StandardButton MessageBoxPrompter::standardButtonOf(Answer answer)
{
    switch (answer) {
    case Answer::Ok:
        return QMessageBox::Ok;
    case Answer::Yes:
        return QMessageBox::Yes;
    case Answer::No:
        return QMessageBox::No;
    case Answer::Retry:
        return QMessageBox::Retry;
    case Answer::Cancel:
        break;
    }
    return QMessageBox::Cancel;
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
    // The first button is the proposed one unless the question proposes another; Escape
    // answers Cancel where there is one, No for a plain yes/no question, or Cancel through a
    // button of its own that the box does not show when the question is to be withdrawn.
    QMessageBox::StandardButton proposed = QMessageBox::Ok;
    switch (message.buttons) {
    case Buttons::Ok:
    case Buttons::OkCancel:
        proposed = QMessageBox::Ok;
        break;
    case Buttons::YesNo:
    case Buttons::YesNoCancel:
        proposed = QMessageBox::Yes;
        break;
    case Buttons::RetryCancel:
        proposed = QMessageBox::Retry;
        break;
    }
    if (message.proposed && buttons.testFlag(standardButtonOf(*message.proposed)))
        proposed = standardButtonOf(*message.proposed);
    box->setDefaultButton(proposed);
    if (buttons.testFlag(QMessageBox::Cancel)) {
        box->setEscapeButton(QMessageBox::Cancel);
    } else if (message.escapeCancels) {
        QPushButton *withdraw = box->addButton(QMessageBox::Cancel);
        withdraw->hide();
        box->setEscapeButton(withdraw);
    } else if (buttons.testFlag(QMessageBox::No)) {
        box->setEscapeButton(QMessageBox::No);
    }
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
