#pragma once

#include <QString>
#include <QStringList>

namespace pg::checks {

// Writes a text report of the program directory as the clerk's tools expect it: one line
// each, Windows-1252, CR LF; the whole file or nothing. A failure raises the path's AppError.
void writeReportFile(const QString &path, const QStringList &lines);

} // namespace pg::checks
