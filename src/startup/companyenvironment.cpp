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

// Why the parpe file was not found, for the administrator: the suite's ini file missing or
// without its section, a directory cut by the 40-character buffer, or the parpe file itself.
QString parpeMissingCause(const IniFile &orvida, const QString &iniPath, const QString &parpePath)
{
    const QString ini = QDir::toNativeSeparators(iniPath);
    if (!orvida.exists())
        return QStringLiteral("Il file %1 non esiste.").arg(ini);
    const QString section = QStringLiteral("AMBIENTE");
    if (!orvida.hasSection(section))
        return QStringLiteral("Nel file %1 manca la sezione [AMBIENTE].").arg(ini);
    for (const QString &key : {QStringLiteral("Dir orvida"), QStringLiteral("Codice Azienda")}) {
        QString value;
        if (!orvida.lookup(section, key, &value) || value.trimmed().isEmpty())
            return QStringLiteral("Nel file %1 manca il valore \"%2\" della sezione [AMBIENTE].")
                .arg(ini, key);
        if (value.size() > IniBuffer - 1)
            return QStringLiteral("Il valore \"%1\" del file %2 è lungo %3 caratteri: [orvida] ne "
                                  "legge solo %4 (\"%5\"). Usare un percorso più corto.")
                .arg(key, ini)
                .arg(value.size())
                .arg(IniBuffer - 1)
                .arg(value.left(IniBuffer - 1));
    }
    return QStringLiteral("Il file %1 non esiste.").arg(QDir::toNativeSeparators(parpePath));
}

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
    const QString iniPath = orvidaIniPath();
    const IniFile orvida = IniFile::load(iniPath);
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
               env.CompanyCode + QStringLiteral("\r\n") +
               parpeMissingCause(orvida, iniPath, parpePath));
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
