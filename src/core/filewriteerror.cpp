#include "filewriteerror.h"

#include <QDir>
#include <QFileDevice>
#include <QFileInfo>
#include <QStorageInfo>

namespace pg {

QString fileWriteProblem(const QIODevice &device, qint64 bytesWanted)
{
    const auto *file = qobject_cast<const QFileDevice *>(&device);
    if (file) {
        if (file->error() == QFileDevice::ResourceError)
            return QStringLiteral("disco pieno");
        // Less room left than the write needed (and than a file system's few blocks): the
        // disk is full, whatever the system reported.
        QStorageInfo storage(QFileInfo(file->fileName()).absolutePath());
        if (storage.isValid() && storage.isReady() &&
            storage.bytesAvailable() < qMax<qint64>(bytesWanted, 64 * 1024))
            return QStringLiteral("disco pieno");
    }
    return device.errorString();
}

QString pathFileAccessText(const QString &path, const QString &why)
{
    return QStringLiteral("Path/File access error: ") + QDir::toNativeSeparators(path) +
           QStringLiteral(" (") + why + u')';
}

} // namespace pg
