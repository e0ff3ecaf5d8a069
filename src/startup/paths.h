#pragma once

#include <QString>

// Directories and files named by the suite's configuration. The suite writes directories
// with a closing backslash; here "ends in a backslash" means ends in a separator, and the
// program uses '/' internally on every platform (shown natively where the user sees it).
namespace pg::paths {

// A directory as read from an ini file ("C:\ERP", "/srv/orvida/"): backslashes become the
// separator the platform understands, and a separator is added when it does not end in one.
// An empty value becomes a single separator, as it always did.
QString directoryFromIni(const QString &value);

// Appends a separator when the path does not end in one.
QString withTrailingSeparator(const QString &path);

// The path of an existing file or directory, found without regard to the letter case of its
// last component (installations copied from Windows keep their mixed-case names); the path
// as given when nothing matches.
QString resolveCase(const QString &path);

bool fileExists(const QString &path);

} // namespace pg::paths
