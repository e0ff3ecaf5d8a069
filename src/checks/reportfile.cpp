#include "reportfile.h"

#include "core/apperror.h"
#include "core/cp1252.h"

#include <QDir>
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
                       QStringLiteral("Path/File access error: ") + QDir::toNativeSeparators(path) +
                           QStringLiteral(" (") + file.errorString() + u')');
}

} // namespace pg::checks
