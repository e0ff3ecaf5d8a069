#include "companyenvironment.h"

#include "inifile.h"
#include "paths.h"

#include "core/prompter.h"

#include <QDir>
#include <QStandardPaths>

namespace pg {

namespace {

// Every value of the suite's ini files is read through a 40-character buffer.
constexpr int IniBuffer = 40;

CompanyEnvironment &current()
{
    static CompanyEnvironment environment;
    return environment;
}

} // namespace

const CompanyEnvironment &companyEnvironment()
{
    return current();
}

void setCompanyEnvironment(const CompanyEnvironment &environment)
{
    current() = environment;
}

QString orvidaIniDirectory()
{
    const QString configured = qEnvironmentVariable("ORVIDA_INI_DIR");
    if (!configured.isEmpty())
        return configured;
#ifdef Q_OS_WIN
    const QString windows = qEnvironmentVariable("WINDIR", QStringLiteral("C:/Windows"));
    return QDir::fromNativeSeparators(windows);
#else
    QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (config.isEmpty())
        config = QDir::homePath() + QStringLiteral("/.config");
    return config + QStringLiteral("/orvida");
#endif
}

QString orvidaIniPath()
{
    return paths::resolveCase(paths::withTrailingSeparator(orvidaIniDirectory()) +
                              QStringLiteral("ORVIDA.INI"));
}

QString programDirOf(const QString &orvidaDir)
{
    return orvidaDir + QStringLiteral("exe/");
}

CompanyEnvironment ResolveCompanyEnvironment()
{
    CompanyEnvironment env;
    const IniFile orvida = IniFile::load(orvidaIniPath());
    const QString section = QStringLiteral("AMBIENTE");
    env.OrvidaDir = paths::directoryFromIni(
        orvida.read(section, QStringLiteral("Dir orvida"), QString(), IniBuffer));
    env.CompanyCode = orvida.read(section, QStringLiteral("Codice Azienda"), QString(), IniBuffer);
    const QString nodeId = orvida.read(section, QStringLiteral("NodoId"), QString(), IniBuffer);

    // Only the first three characters of the company code name the parpe file.
    const QString parpePath = paths::resolveCase(env.OrvidaDir + QStringLiteral("D_AZI/") +
                                                 env.CompanyCode.left(3) +
                                                 QStringLiteral("parpe.ini"));
    if (!paths::fileExists(parpePath)) {
        msgBox(QStringLiteral("Errore. Non è stato trovato il Parpe per l'azienda attiva ") +
               env.CompanyCode);
        endProcess(1);
    }

    const IniFile parpe = IniFile::load(parpePath);
    const QString archiveNode = parpe.read(QStringLiteral("Ambiente"),
                                           QStringLiteral("NodoIDUbicazioneArchivi"),
                                           QStringLiteral("1"), IniBuffer);
    // The exact, case-sensitive comparison is the suite's rule: a workstation is the archive
    // node only when its identifier is character for character the one of the parpe file.
    const bool isArchiveNode = nodeId == archiveNode && !archiveNode.trimmed().isEmpty();
    const QString dirs = isArchiveNode ? QStringLiteral("Dir Archivi Server")
                                       : QStringLiteral("Dir Archivi Client");
    env.CompanyArchiveDir = paths::directoryFromIni(
        parpe.read(dirs, QStringLiteral("Azienda"), QString(), IniBuffer));
    env.CommonArchiveDir = paths::directoryFromIni(
        parpe.read(dirs, QStringLiteral("Comuni"), QString(), IniBuffer));
    return env;
}

} // namespace pg
