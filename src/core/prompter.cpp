#include "prompter.h"

#include "stderrprompter.h"

#include <cstdlib>

namespace pg {

namespace {

Prompter *&current()
{
    static StderrPrompter fallback;
    static Prompter *installed = &fallback;
    return installed;
}

} // namespace

Prompter &prompter()
{
    return *current();
}

PrompterScope::PrompterScope(Prompter &replacement)
    : m_previous(current())
{
    current() = &replacement;
}

PrompterScope::~PrompterScope()
{
    current() = m_previous;
}

Answer msgBox(const QString &text, Buttons buttons, Icon icon, const QString &title)
{
    return prompter().ask(Message{text, title, icon, buttons});
}

Answer askDestructive(const QString &text)
{
    return prompter().ask(Message{text, {}, Icon::Question, Buttons::YesNo, Answer::No});
}

void endProcess(int exitCode)
{
    prompter().endProcess(exitCode);
    // Nothing of the program may run after the end of the process, whatever the prompter.
    std::abort();
}

} // namespace pg
