#pragma once

#include <QString>

namespace pg {

// The generic setting reader. With an ini file it reads section and key through an
// 80-character buffer. Without one it reads the machine-wide store: the registry under
// HKEY_LOCAL_MACHINE on Windows; elsewhere the system-scope settings file
// /etc/xdg/orvida/registry.ini (key paths with '\' are groups). A key path that does not
// exist gives the empty string, a missing value the default.
QString ReadSetting(const QString &sectionOrKeyPath, const QString &key,
                    const QString &defaultValue, const QString &iniFile);

// Where the machine-wide store is read from on this platform (tests point it elsewhere).
void setMachineSettingsFile(const QString &path);

} // namespace pg
