#include "codelineedit.h"

#include <QKeyEvent>
#include <QStyle>
#include <QStyleOptionFrame>

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

int widthToShow(const QLineEdit *box, const QString &text)
{
    // As QLineEdit sizes itself: the text, its two-pixel margins and the text margins, then
    // the style's frame around them.
    QStyleOptionFrame option;
    option.initFrom(box);
    option.lineWidth =
        box->hasFrame() ? box->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, box) : 0;
    option.features = QStyleOptionFrame::None;
    const QMargins margins = box->textMargins();
    const QSize contents(box->fontMetrics().horizontalAdvance(text) + 4 + margins.left() +
                             margins.right() + 2,
                         box->fontMetrics().height());
    return box->style()->sizeFromContents(QStyle::CT_LineEdit, &option, contents, box).width();
}

CodeLineEdit::CodeLineEdit(QWidget *parent) : QLineEdit(parent) {}

void CodeLineEdit::setWidestText(const QString &text)
{
    m_widest = text;
    updateGeometry();
}

QSize CodeLineEdit::sizeHint() const
{
    QSize size = QLineEdit::sizeHint();
    if (!m_widest.isEmpty())
        size.setWidth(widthToShow(this, m_widest));
    return size;
}

QSize CodeLineEdit::minimumSizeHint() const
{
    QSize size = QLineEdit::minimumSizeHint();
    if (!m_widest.isEmpty())
        size.setWidth(std::max(size.width(), widthToShow(this, m_widest)));
    return size;
}

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
