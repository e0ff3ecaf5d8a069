#include "reportviewer.h"

#include <QDesktopServices>
#include <QDir>
#include <QProcess>
#include <QUrl>

namespace pg::checks {

bool openReport(const QString &path)
{
#ifdef Q_OS_WIN
    return QProcess::startDetached(QStringLiteral("notepad"), {QDir::toNativeSeparators(path)});
#else
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
#endif
}

} // namespace pg::checks
