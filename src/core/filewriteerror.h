#pragma once

#include <QString>

class QIODevice;

namespace pg {

// Why writing a file failed, in words for the clerk: "disco pieno" when the disk that holds
// it has no room left (a full disk often comes back from the system as an unknown error once
// the file's buffer is flushed), the device's own words otherwise. bytesWanted: what the
// failed write was to add.
QString fileWriteProblem(const QIODevice &device, qint64 bytesWanted = 0);

// "Path/File access error: <file> (<why>)", the text of the program's error 75.
QString pathFileAccessText(const QString &path, const QString &why);

} // namespace pg
