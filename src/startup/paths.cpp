#include "paths.h"

#include <QDir>
#include <QFileInfo>

namespace pg::paths {

QString directoryFromIni(const QString &value)
{
    QString path = value;
#ifndef Q_OS_WIN
    path.replace(u'\\', u'/');
#endif
    return withTrailingSeparator(path);
}

QString withTrailingSeparator(const QString &path)
{
    if (path.endsWith(u'/') || path.endsWith(u'\\'))
        return path;
    return path + u'/';
}

QString resolveCase(const QString &path)
{
    if (path.isEmpty() || QFileInfo::exists(path))
        return path;
    // Walk down from the deepest part that exists, matching each further component without
    // regard to case.
    const QString clean = QDir::cleanPath(path);
    QStringList parts = clean.split(u'/');
    QString resolved = parts.first(); // "" for an absolute path, a drive or a name otherwise
    for (int i = 1; i < parts.size(); ++i) {
        const QString candidate = resolved + u'/' + parts.at(i);
        if (QFileInfo::exists(candidate)) {
            resolved = candidate;
            continue;
        }
        const QDir dir(resolved.isEmpty() ? QStringLiteral("/") : resolved);
        const QString wanted = parts.at(i).toCaseFolded();
        QString match;
        const QStringList entries =
            dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
        for (const QString &entry : entries) {
            if (entry.toCaseFolded() == wanted) {
                match = entry;
                break;
            }
        }
        if (match.isEmpty())
            return path;
        resolved += u'/' + match;
    }
    return resolved;
}

bool fileExists(const QString &path)
{
    return QFileInfo(resolveCase(path)).isFile();
}

} // namespace pg::paths
