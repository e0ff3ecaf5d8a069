#pragma once

#include <QLineEdit>

#include <functional>

namespace pg::ui {

// A text box of the program's forms: the owner can refuse keys that would change it (a
// distinta printed in final form), F4 asks for the lookup window, and leaving the box for
// another control of the window is reported so that the owner can check what was typed.
class CodeLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit CodeLineEdit(QWidget *parent = nullptr);

    // Called before a key changes the box; false refuses the key.
    void setKeyGuard(std::function<bool()> guard) { m_keyGuard = std::move(guard); }

    // The widest text the box must show whole ("999.999.999,99" for a total, "00000" for an
    // ABI): the box never gets narrower than that text in the font it has at any moment, and
    // is no wider when its size policy is fixed.
    void setWidestText(const QString &text);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void lookupRequested();
    // The focus moved from the box to another control of the window.
    void left();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    std::function<bool()> m_keyGuard;
    QString m_widest;
};

// Whether a key changes the text of a box (typing, deleting, cutting, pasting).
bool keyChangesText(QKeyEvent *event);

// The width a line box needs to show the text whole in its present font, its frame and
// margins included.
int widthToShow(const QLineEdit *box, const QString &text);

} // namespace pg::ui
