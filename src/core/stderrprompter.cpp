#include "stderrprompter.h"

#include <QTextStream>

#include <cstdio>
#include <cstdlib>

namespace pg {

namespace {

QString iconWord(Icon icon)
{
    switch (icon) {
    case Icon::Critical:
        return QStringLiteral("ERRORE");
    case Icon::Exclamation:
        return QStringLiteral("ATTENZIONE");
    case Icon::Question:
        return QStringLiteral("DOMANDA");
    case Icon::Information:
        return QStringLiteral("INFO");
    case Icon::None:
        break;
    }
    return {};
}

QString answerWord(Answer answer)
{
    switch (answer) {
    case Answer::Ok:
        return QStringLiteral("OK");
    case Answer::Cancel:
        return QStringLiteral("Annulla");
    case Answer::Yes:
        return QStringLiteral("Sì");
    case Answer::No:
        return QStringLiteral("No");
    case Answer::Retry:
        return QStringLiteral("Riprova");
    }
    return {};
}

} // namespace

Answer StderrPrompter::policyAnswer(Buttons buttons, bool assumeYes)
{
    switch (buttons) {
    case Buttons::Ok:
        return Answer::Ok;
    case Buttons::OkCancel:
        return assumeYes ? Answer::Ok : Answer::Cancel;
    case Buttons::YesNo:
        return assumeYes ? Answer::Yes : Answer::No;
    case Buttons::YesNoCancel:
        return assumeYes ? Answer::Yes : Answer::Cancel;
    case Buttons::RetryCancel:
        return Answer::Cancel;
    }
    return Answer::Cancel;
}

Answer StderrPrompter::ask(const Message &message)
{
    QTextStream err(stderr);
    const QString title = message.title.isEmpty() ? programName() : message.title;
    const QString kind = iconWord(message.icon);
    QString text = message.text;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    err << title;
    if (!kind.isEmpty())
        err << " [" << kind << ']';
    err << ": " << text << '\n';
    const Answer answer = policyAnswer(message.buttons, m_assumeYes);
    if (message.buttons != Buttons::Ok)
        err << "  -> " << answerWord(answer) << '\n';
    err.flush();
    return answer;
}

void StderrPrompter::endProcess(int exitCode)
{
    std::fflush(stdout);
    std::fflush(stderr);
    std::_Exit(exitCode);
}

} // namespace pg
