#include "reportfile.h"

#include "core/apperror.h"
#include "core/cp1252.h"
#include "core/filewriteerror.h"

#include <QSaveFile>

namespace pg::checks {

void writeReportFile(const QString &path, const QStringList &lines)
{
    QByteArray bytes;
    for (const QString &line : lines)
        bytes += cp1252::encode(line) + "\r\n";
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw AppError(AppError::PathFileAccess,
                       pathFileAccessText(path, fileWriteProblem(file, bytes.size())));
}

} // namespace pg::checks
