#include "errorinfo.h"

#include "companyenvironment.h"

#include "core/cp1252.h"

#include <QFile>
#include <QSysInfo>

namespace pg {

QString errorBlock(const ErrorInfo &info)
{
    const QString crlf = QStringLiteral("\r\n");
    QString block = QString(65, u'-') + crlf;
    block += QStringLiteral("Application Error ") + QString::number(info.number);
    if (info.line != 0)
        block += QStringLiteral(" at Line ") + QString::number(info.line);
    block += crlf;
    block += QStringLiteral("while running ") + info.program + QStringLiteral(".exe v") +
             info.version + QStringLiteral(" (Build ") + info.build + u')' + crlf;
    block += QStringLiteral("in ") + info.module + u'!' + info.procedure + crlf;
    block += QStringLiteral("on ") + info.when.toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")) +
             QStringLiteral(" (") + QSysInfo::machineHostName() + u')' + crlf;
    if (!info.source.isEmpty())
        block += QStringLiteral("Source = '") + info.source + u'\'' + crlf;
    block += QStringLiteral("Error = '") + info.description + u'\'' + crlf;
    return block;
}

void ProcessError(const ErrorInfo &info, const QString &logPath)
{
    QFile log(logPath);
    if (log.open(QIODevice::Append))
        log.write(cp1252::encode(errorBlock(info)));
}

ErrorInfo VB_ErrorTrap2000Event(const QString &module, const QString &procedure,
                                const AppError &error)
{
    ErrorInfo info;
    info.number = error.number();
    info.description = error.description();
    info.source = error.source();
    info.line = error.line();
    info.module = module;
    info.procedure = procedure;
    info.when = QDateTime::currentDateTime();
    info.program = QStringLiteral("Pagamenti");
    info.version = QStringLiteral(PAGAMENTI_VERSION);
    info.build = QStringLiteral(__DATE__);
    ProcessError(info, ProgramDir() + QStringLiteral("errori.log"));
    return info;
}

} // namespace pg
