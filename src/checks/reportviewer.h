#pragma once

#include <QString>

class QWidget;

namespace pg::checks {

// Opens a report of the checks for the clerk: in Notepad on Windows, in the system's default
// application for text files elsewhere, and in a window of the program where the system has
// none. False, after a message, when it could not be shown at all.
bool openReport(const QString &path, QWidget *parent);

} // namespace pg::checks
