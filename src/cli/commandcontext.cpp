#include "commandcontext.h"

#include "core/prompter.h"

namespace pg::cli {

CommandContext::CommandContext(const Command &command, const QStringList &arguments,
                               QTextStream &out, QTextStream &err)
    : m_command(&command), m_arguments(arguments), m_out(out), m_err(err)
{}

int CommandContext::usageError(const QString &reason)
{
    m_out.flush();
    m_err << reason << '\n' << usageText(*m_command);
    m_err.flush();
    return ExitUsage;
}

int CommandContext::fail(const QString &message)
{
    m_out.flush();
    msgBox(message, Buttons::Ok, Icon::Critical);
    return ExitFailure;
}

} // namespace pg::cli
