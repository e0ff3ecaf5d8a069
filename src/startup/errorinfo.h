#pragma once

#include "core/apperror.h"

#include <QDateTime>
#include <QString>

namespace pg {

// What the fuller error trap records of one error (shr_clsErrInfo).
struct ErrorInfo
{
    qint32 number = 0;
    QString description;
    QString source;
    int line = 0;
    QString module;    // "shr_modSingleInstance"
    QString procedure; // "ActivatePrevInstance"
    QDateTime when;
    QString program;   // "Pagamenti"
    QString version;
    QString build;
};

// The fuller trap used by a few procedures (the single-instance helper among them): it fills
// an ErrorInfo and writes it (ProcessError) as one block of ProgramDir + "errori.log",
// separated from the previous one by a line of 65 '-'. Nothing is shown to the user.
ErrorInfo VB_ErrorTrap2000Event(const QString &module, const QString &procedure,
                                const AppError &error);
void ProcessError(const ErrorInfo &info, const QString &logPath);
QString errorBlock(const ErrorInfo &info);

} // namespace pg
