#include "duitemcausali.h"

#include "core/cp1252.h"
#include "startup/companyenvironment.h"
#include "startup/inifile.h"
#include "startup/paths.h"

namespace pg::editor {

namespace {

const QString Section = QStringLiteral("CAUSALI");

QByteArray normalised(QByteArrayView code)
{
    QByteArray key = code.toByteArray();
    key.replace('\0', ' ');
    return key.trimmed().toUpper();
}

} // namespace

DueItemCausali DueItemCausali::load(const QString &iniPath)
{
    DueItemCausali causali;
    const IniFile ini = IniFile::load(iniPath);
    for (const QString &key : ini.keys(Section)) {
        const QByteArray code = normalised(cp1252::encode(key));
        if (causali.m_taken.contains(code))
            continue; // the first entry of a reason wins, as the suite reads the file
        const QString value = ini.read(Section, key, QString(), 80).trimmed();
        causali.m_taken.insert(code, value.compare(QStringLiteral("NO"), Qt::CaseInsensitive) != 0);
    }
    return causali;
}

QString DueItemCausali::defaultPath()
{
    return paths::resolveCase(ProgramDir() + QStringLiteral("causali.ini"));
}

bool DueItemCausali::taken(QByteArrayView reason) const
{
    if (m_taken.isEmpty())
        return true;
    return m_taken.value(normalised(reason), true);
}

} // namespace pg::editor
