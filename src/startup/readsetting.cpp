#include "readsetting.h"

#include "inifile.h"

#include <QSettings>

namespace pg {

namespace {

QString &machineFile()
{
    static QString path;
    return path;
}

} // namespace

void setMachineSettingsFile(const QString &path)
{
    machineFile() = path;
}

QString ReadSetting(const QString &sectionOrKeyPath, const QString &key,
                    const QString &defaultValue, const QString &iniFile)
{
    if (!iniFile.isEmpty())
        return GetPrivateProfileString(sectionOrKeyPath, key, defaultValue, 80, iniFile);

    QString group = sectionOrKeyPath;
    group.replace(u'\\', u'/');
#ifdef Q_OS_WIN
    if (machineFile().isEmpty()) {
        QSettings hklm(QStringLiteral("HKEY_LOCAL_MACHINE\\") + sectionOrKeyPath,
                       QSettings::NativeFormat);
        if (hklm.childKeys().isEmpty() && hklm.childGroups().isEmpty())
            return QString();
        return hklm.value(key, defaultValue).toString();
    }
#endif
    const QString file = machineFile().isEmpty() ? QStringLiteral("/etc/xdg/orvida/registry.ini")
                                                 : machineFile();
    QSettings store(file, QSettings::IniFormat);
    store.beginGroup(group);
    if (store.childKeys().isEmpty() && store.childGroups().isEmpty())
        return QString();
    return store.value(key, defaultValue).toString();
}

} // namespace pg
