#pragma once

#include <QDate>
#include <QLineEdit>

#include <functional>

namespace pg::ui {

// The date box of the program: "dd/mm/yyyy" typed into the mask "99/99/9999" with '_' in
// the empty places, so that an empty box reads "__/__/____". The letter "d" (or "D") types
// today's date and moves on as a Tab would; a year typed with two digits is completed with
// "20" when the box is left. Owners decide through two hooks whether a key may change the
// box and whether the box may be left.
class MaskedDateEdit : public QLineEdit
{
    Q_OBJECT

public:
    enum class Leave { Accept, KeepFocus, KeepFocusSelected };

    explicit MaskedDateEdit(QWidget *parent = nullptr);

    // The box as the user sees it: "__/__/____" when empty.
    QString maskedText() const { return displayText(); }
    // Fills the box with a "dd/mm/yyyy" text, or empties it for an empty or masked-empty one.
    void setMaskedText(const QString &text);
    void setDate(const QDate &date);
    // The date in the box; invalid when the box is empty or does not hold a real day.
    QDate date() const;
    bool isEmptyDate() const;

    // Called before a key changes the box; false refuses the key.
    void setKeyGuard(std::function<bool()> guard) { m_keyGuard = std::move(guard); }
    // Called when the box is left (after a two-digit year was completed).
    void setLeaveValidator(std::function<Leave(MaskedDateEdit &)> validator)
    {
        m_validator = std::move(validator);
    }

    // Completes a two-digit year and runs the leave validator, as leaving the box does;
    // false when the box wants to keep the focus (it takes it back).
    bool validateNow();

    // Types today's date as the letter "d" does, without moving on.
    void typeToday();
    // Whether the letter "d" also moves on to the next control (the default).
    void setAdvanceAfterToday(bool advance) { m_advanceAfterToday = advance; }

signals:
    // A key was accepted and changed (or may have changed) the box.
    void keyAccepted();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void keepFocus(bool selected);

    std::function<bool()> m_keyGuard;
    std::function<Leave(MaskedDateEdit &)> m_validator;
    bool m_validating = false;
    bool m_advanceAfterToday = true;
};

} // namespace pg::ui
