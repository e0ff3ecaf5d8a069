#pragma once

#include "core/apperror.h"
#include "core/prompter.h"

#include <QString>

#include <optional>

namespace pg {

// The common error trap. Every procedure that can fail names itself ("frmMain!Sub Salva()")
// and hands its error here: the error is appended to ProgramDir + "ERRORI.txt", counted,
// and shown with the choice to go on (recommended), stop the program, or silence further
// messages. An unexpected error never ends the program on its own: the user decides.
class ErrorTrap
{
public:
    static ErrorTrap &instance();

    // ErrTrap: returns when the user chooses to go on (or has silenced the messages).
    void trap(const QString &procedureIdentifier, const AppError &error);

    // "Error 5 description in location (Line = 12)".
    static QString errorText(const QString &procedureIdentifier, const AppError &error);

    std::optional<Answer> LastAnswer() const { return m_lastAnswer; }
    qint16 ErrorCount() const { return m_errorCount; }
    QString logPath() const;

    // Tests start each case from a fresh process state.
    void resetForTest();

    static constexpr int MaxErrors = 1000;

private:
    std::optional<Answer> m_lastAnswer;
    qint16 m_errorCount = 0;
};

void ErrTrap(const QString &procedureIdentifier, const AppError &error);

// The error of any exception, as the trap and the message boxes read it.
AppError errorFromException(std::exception_ptr exception);

// Runs body under the trap of the given location: an error is trapped and the call returns
// false; the end of the process is never caught.
template<typename Body>
bool underTrap(const QString &location, Body &&body)
{
    try {
        body();
        return true;
    } catch (const ProcessEnded &) {
        throw;
    } catch (...) {
        ErrTrap(location, errorFromException(std::current_exception()));
        return false;
    }
}

} // namespace pg
