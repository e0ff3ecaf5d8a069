#pragma once

#include <QString>

namespace pg::checks {

// Opens the completeness report for the clerk: in Notepad on Windows, in the system's default
// application for text files elsewhere. False when nothing could be started.
bool openReport(const QString &path);

} // namespace pg::checks
