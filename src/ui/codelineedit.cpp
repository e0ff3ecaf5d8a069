#include "codelineedit.h"

#include <QKeyEvent>

namespace pg::ui {

bool keyChangesText(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Paste) || event->matches(QKeySequence::Cut) ||
        event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo) ||
        event->matches(QKeySequence::DeleteEndOfWord) ||
        event->matches(QKeySequence::DeleteStartOfWord))
        return true;
    if (event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete)
        return true;
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    const QString text = event->text();
    return !text.isEmpty() && text.at(0).isPrint();
}

CodeLineEdit::CodeLineEdit(QWidget *parent) : QLineEdit(parent) {}

void CodeLineEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F4 && event->modifiers() == Qt::NoModifier) {
        event->accept();
        emit lookupRequested();
        return;
    }
    if (!isReadOnly() && keyChangesText(event) && m_keyGuard && !m_keyGuard()) {
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void CodeLineEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::MouseFocusReason:
    case Qt::ShortcutFocusReason:
        if (!isReadOnly())
            emit left();
        break;
    default:
        break;
    }
}

} // namespace pg::ui
