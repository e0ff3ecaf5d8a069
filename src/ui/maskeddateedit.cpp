#include "maskeddateedit.h"

#include "codelineedit.h"

#include "core/vbdate.h"

#include <QKeyEvent>
#include <QPointer>
#include <QTimer>

namespace pg::ui {

namespace {

// Set while a box takes the focus back after a refused leave: the box that had just received
// the focus must not validate itself on losing it again.
bool g_takingFocusBack = false;

} // namespace

MaskedDateEdit::MaskedDateEdit(QWidget *parent) : QLineEdit(parent)
{
    setInputMask(QStringLiteral("99/99/9999;_"));
    const int width = fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) + 16;
    setMinimumWidth(width);
    setMaximumWidth(width + 24);
}

void MaskedDateEdit::setMaskedText(const QString &text)
{
    if (text.isEmpty() || text == QStringView(dates::EmptyMaskedDate))
        clear();
    else
        setText(text);
}

void MaskedDateEdit::setDate(const QDate &date)
{
    setMaskedText(dates::toDmy(date));
}

QDate MaskedDateEdit::date() const
{
    return dates::parseDmy(maskedText());
}

bool MaskedDateEdit::isEmptyDate() const
{
    return maskedText() == QStringView(dates::EmptyMaskedDate);
}

void MaskedDateEdit::typeToday()
{
    setDate(dates::today());
}

void MaskedDateEdit::keyPressEvent(QKeyEvent *event)
{
    if (!keyChangesText(event) || isReadOnly()) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    if (m_keyGuard && !m_keyGuard()) {
        event->accept();
        return;
    }
    if (event->text().compare(QStringLiteral("d"), Qt::CaseInsensitive) == 0) {
        typeToday();
        emit keyAccepted();
        if (m_advanceAfterToday)
            focusNextChild();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
    emit keyAccepted();
}

bool MaskedDateEdit::validateNow()
{
    if (m_validating)
        return true;
    m_validating = true;
    const QString completed = dates::completeTwoDigitYear(maskedText());
    if (completed != maskedText())
        setMaskedText(completed);
    const Leave leave = m_validator ? m_validator(*this) : Leave::Accept;
    m_validating = false;
    if (leave == Leave::Accept)
        return true;
    keepFocus(leave == Leave::KeepFocusSelected);
    return false;
}

void MaskedDateEdit::keepFocus(bool selected)
{
    QPointer<MaskedDateEdit> self(this);
    QTimer::singleShot(0, this, [self, selected] {
        if (!self)
            return;
        g_takingFocusBack = true;
        self->setFocus(Qt::OtherFocusReason);
        g_takingFocusBack = false;
        if (selected)
            self->selectAll();
    });
}

void MaskedDateEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // Only a move to another control of the window is a leave; a message box or another
    // window taking the focus is not.
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::MouseFocusReason:
    case Qt::ShortcutFocusReason:
    case Qt::OtherFocusReason:
        break;
    default:
        return;
    }
    if (g_takingFocusBack || isReadOnly())
        return;
    // Validation shows its messages once the focus has settled on the next control.
    QPointer<MaskedDateEdit> self(this);
    QTimer::singleShot(0, this, [self] {
        if (self)
            self->validateNow();
    });
}

} // namespace pg::ui
