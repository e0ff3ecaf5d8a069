#include "cliapplication.h"

#include "commandcontext.h"
#include "commandtable.h"

#include "archives/store/busywait.h"
#include "core/apperror.h"
#include "core/applocale.h"
#include "core/stderrprompter.h"
#include "startup/companyenvironment.h"

#include <QDir>
#include <QScopeGuard>

namespace pg::cli {

CliApplication::CliApplication(QTextStream &out, QTextStream &err) : m_out(out), m_err(err) {}

bool CliApplication::resolveEnvironment()
{
    CompanyEnvironment environment = ResolveCompanyEnvironment();
    environment.ProgramDir = programDirOf(environment.OrvidaDir);
    setCompanyEnvironment(environment);
    if (environment.CompanyCode == u"...") {
        msgBox(QStringLiteral("Nessuna azienda corrente.\r\n\r\nEntrare in [orvida] e "
                              "selezionare una azienda Valida"),
               Buttons::Ok, Icon::Critical, QStringLiteral("ERRORE"));
        return false;
    }
    return true;
}

int CliApplication::run(const QStringList &arguments)
{
    bool assumeYes = false;
    bool help = false;
    QString commandName;
    QStringList commandArguments;
    bool optionsEnded = false;
    for (const QString &arg : arguments) {
        if (!optionsEnded && arg == u"--yes") {
            assumeYes = true;
        } else if (!optionsEnded && (arg == u"--help" || arg == u"-h")) {
            help = true;
        } else if (commandName.isEmpty() && !arg.startsWith(u'-')) {
            commandName = arg;
        } else if (commandName.isEmpty()) {
            m_err << QStringLiteral("Opzione sconosciuta: %1\n").arg(arg) << usageText();
            return ExitUsage;
        } else {
            optionsEnded = optionsEnded || arg == u"--";
            commandArguments << arg;
        }
    }

    if (commandName.isEmpty()) {
        if (help) {
            m_out << usageText();
            return ExitSuccess;
        }
        m_err << usageText();
        return ExitUsage;
    }
    const Command *command = findCommand(commandName);
    if (!command) {
        m_err << QStringLiteral("Comando sconosciuto: %1\n\n").arg(commandName) << usageText();
        return ExitUsage;
    }
    if (help) {
        m_out << usageText(*command);
        return ExitSuccess;
    }

    followSystemLocaleOrItalian();
    StderrPrompter prompter;
    prompter.setAssumeYes(assumeYes);
    PrompterScope scope(prompter);
    // An archive held for a moment by another program of the suite: the wait is told once.
    archives::BusyWait::setObserver([this](const archives::BusyWait::Notice &notice) {
        if (notice.first) {
            m_err << QStringLiteral("L'archivio %1 è in uso da un altro programma di [orvida]: "
                                    "attesa fino a %2 secondi...\n")
                         .arg(QDir::toNativeSeparators(notice.path))
                         .arg(notice.limitMs / 1000);
            m_err.flush();
        }
        return true;
    });
    const auto noObserver = qScopeGuard([] { archives::BusyWait::setObserver({}); });
    CommandContext context(*command, commandArguments, m_out, m_err);
    try {
        if (command->needsEnvironment && !resolveEnvironment())
            return ExitFailure;
        const int code = command->run(context);
        m_out.flush();
        return code;
    } catch (const AppError &error) {
        return context.fail(error.description());
    }
}

} // namespace pg::cli
