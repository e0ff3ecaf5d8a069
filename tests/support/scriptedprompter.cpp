#include "scriptedprompter.h"

namespace pg::test {

ScriptedPrompter::ScriptedPrompter()
    : m_scope(*this)
{
}

void ScriptedPrompter::script(std::initializer_list<Answer> answers)
{
    for (Answer a : answers)
        m_answers.enqueue(a);
}

Answer ScriptedPrompter::ask(const Message &message)
{
    m_shown.append(message);
    if (message.buttons == Buttons::Ok)
        return Answer::Ok;
    if (!m_answers.isEmpty())
        return m_answers.dequeue();
    ++m_unscripted;
    switch (message.buttons) {
    case Buttons::YesNo:
        return Answer::No;
    default:
        return Answer::Cancel;
    }
}

void ScriptedPrompter::endProcess(int exitCode)
{
    throw ProcessEnded{exitCode};
}

QStringList ScriptedPrompter::texts() const
{
    QStringList out;
    for (const Message &m : m_shown)
        out << m.text;
    return out;
}

void ScriptedPrompter::clear()
{
    m_shown.clear();
    m_answers.clear();
    m_unscripted = 0;
}

} // namespace pg::test
