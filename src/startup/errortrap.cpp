#include "errortrap.h"

#include "companyenvironment.h"

#include "core/cp1252.h"
#include "core/vbdate.h"

#include <QFile>

#include <new>

namespace pg {

namespace {

const QString CrLf = QStringLiteral("\r\n");

void appendToLog(const QString &path, const QString &line)
{
    QFile log(path);
    // A log that cannot be written must not turn one error into two: the message still
    // reaches the user.
    if (log.open(QIODevice::Append))
        log.write(cp1252::encode(line + CrLf));
}

} // namespace

ErrorTrap &ErrorTrap::instance()
{
    static ErrorTrap trap;
    return trap;
}

QString ErrorTrap::logPath() const
{
    return ProgramDir() + QStringLiteral("ERRORI.txt");
}

QString ErrorTrap::errorText(const QString &procedureIdentifier, const AppError &error)
{
    QString text = QStringLiteral("Error ") + QString::number(error.number()) + u' ' +
                   error.description() + QStringLiteral(" in ") + procedureIdentifier;
    if (error.line() != 0)
        text += QStringLiteral(" (Line = ") + QString::number(error.line()) + u')';
    return text;
}

void ErrorTrap::trap(const QString &procedureIdentifier, const AppError &error)
{
    const QString text = errorText(procedureIdentifier, error);
    appendToLog(logPath(), dates::toDmy(dates::today()) + u' ' + text);

    ++m_errorCount;
    if (m_errorCount > MaxErrors) {
        msgBox(QStringLiteral("Superato il numero max di errori, il programma verrà terminato"),
               Buttons::Ok, Icon::Critical);
        endProcess(1);
    }
    if (m_lastAnswer == Answer::Cancel)
        return;

    const QString message = text + CrLf + CrLf + CrLf +
                            QStringLiteral("Selezionare 'SI' per continuare (Consigliato)") +
                            CrLf + CrLf +
                            QStringLiteral("'Annulla' per non ripetere questo messaggio in seguito .") +
                            CrLf + CrLf + QStringLiteral("'No' per interrompere l'esecuzione");
    m_lastAnswer = msgBox(message, Buttons::YesNoCancel, Icon::Critical);
    if (m_lastAnswer == Answer::No)
        endProcess(1);
}

void ErrorTrap::resetForTest()
{
    m_lastAnswer.reset();
    m_errorCount = 0;
}

void ErrTrap(const QString &procedureIdentifier, const AppError &error)
{
    ErrorTrap::instance().trap(procedureIdentifier, error);
}

AppError errorFromException(std::exception_ptr exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (const AppError &e) {
        return e;
    } catch (const std::bad_alloc &) {
        return AppError(7, QStringLiteral("Out of memory"), {}, std::source_location());
    } catch (const std::exception &e) {
        return AppError(51, QStringLiteral("Internal error: ") + QString::fromLocal8Bit(e.what()),
                        {}, std::source_location());
    } catch (...) {
        return AppError(51, QStringLiteral("Internal error"), {}, std::source_location());
    }
}

} // namespace pg
