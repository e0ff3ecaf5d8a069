#pragma once

#include "core/prompter.h"

#include <QList>
#include <QQueue>

namespace pg::test {

// The prompter of the tests: records every message shown, answers from a script, and turns
// the end of the process into a ProcessEnded exception that the test can catch.
class ScriptedPrompter : public Prompter
{
public:
    ScriptedPrompter();

    // Answers given in order to the messages that have more than an OK button. When the
    // script runs out, a question gets the fallback answer (No or Cancel) and is noted in
    // unscripted().
    void script(std::initializer_list<Answer> answers);
    void enqueue(Answer answer) { m_answers.enqueue(answer); }

    Answer ask(const Message &message) override;
    [[noreturn]] void endProcess(int exitCode) override;

    const QList<Message> &shown() const { return m_shown; }
    QStringList texts() const;
    QString lastText() const { return m_shown.isEmpty() ? QString() : m_shown.last().text; }
    int unscripted() const { return m_unscripted; }
    int remainingAnswers() const { return int(m_answers.size()); }
    void clear();

private:
    PrompterScope m_scope;
    QList<Message> m_shown;
    QQueue<Answer> m_answers;
    int m_unscripted = 0;
};

} // namespace pg::test
