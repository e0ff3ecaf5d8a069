#pragma once

#include "core/prompter.h"

#include <QMessageBox>

namespace pg::ui {

// The prompting seam of the desktop program: every message and question of the program is a
// modal message box over the window in front, with the icon, buttons and title asked for
// (the program's name when no title is given) and the standard buttons in the user's
// language. Ending the process ends it at once.
class MessageBoxPrompter : public Prompter
{
public:
    Answer ask(const Message &message) override;
    [[noreturn]] void endProcess(int exitCode) override;

    // The message box a message is shown in, not yet shown (the caller owns it).
    static QMessageBox *createBox(const Message &message, QWidget *parent);
    static QMessageBox::Icon boxIcon(Icon icon);
    static QMessageBox::StandardButtons boxButtons(Buttons buttons);
    static Answer answerOf(int standardButton);
    static QMessageBox::StandardButton standardButtonOf(Answer answer);
};

} // namespace pg::ui
