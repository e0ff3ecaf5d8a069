#pragma once

#include "prompter.h"

namespace pg {

// The prompter of the command line: every message goes to standard error, questions are
// answered by policy (the command's --yes, or the cautious answer), and the end of the
// process is real.
class StderrPrompter : public Prompter
{
public:
    // With assumeYes a question is answered Yes (or OK); otherwise No (or Cancel).
    void setAssumeYes(bool assumeYes) { m_assumeYes = assumeYes; }

    Answer ask(const Message &message) override;
    [[noreturn]] void endProcess(int exitCode) override;

    // The answer the policy gives to a message with these buttons.
    static Answer policyAnswer(Buttons buttons, bool assumeYes);

private:
    bool m_assumeYes = false;
};

} // namespace pg
