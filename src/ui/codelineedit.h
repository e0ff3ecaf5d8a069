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

signals:
    void lookupRequested();
    // The focus moved from the box to another control of the window.
    void left();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    std::function<bool()> m_keyGuard;
};

// Whether a key changes the text of a box (typing, deleting, cutting, pasting).
bool keyChangesText(QKeyEvent *event);

} // namespace pg::ui
