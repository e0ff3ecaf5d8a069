#include "inifile.h"

#include "core/cp1252.h"

#include <QFile>
#include <QStringDecoder>

namespace pg {

namespace {

QString fold(const QString &name)
{
    return name.trimmed().toCaseFolded();
}

QString unquoted(const QString &value)
{
    if (value.size() >= 2) {
        const QChar first = value.front();
        if ((first == u'"' || first == u'\'') && value.back() == first)
            return value.mid(1, value.size() - 2);
    }
    return value;
}

QString cut(const QString &value, int bufferSize)
{
    const int keep = qMax(0, bufferSize - 1);
    return value.size() > keep ? value.left(keep) : value;
}

} // namespace

QString IniFile::decodeText(const QByteArray &bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(bytes.mid(3));
    if (bytes.startsWith("\xFF\xFE")) {
        QStringDecoder d(QStringDecoder::Utf16LE);
        return d(bytes.mid(2));
    }
    if (bytes.startsWith("\xFE\xFF")) {
        QStringDecoder d(QStringDecoder::Utf16BE);
        return d(bytes.mid(2));
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(bytes);
    if (!utf8.hasError())
        return text;
    return cp1252::decode(bytes);
}

IniFile IniFile::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return parse(file.readAll());
}

IniFile IniFile::parse(const QByteArray &bytes)
{
    IniFile ini;
    ini.m_exists = true;
    const QString text = decodeText(bytes);
    int current = -1;
    const auto lines = QStringView(text).split(u'\n');
    for (QStringView raw : lines) {
        const QString line = raw.trimmed().toString();
        if (line.isEmpty() || line.startsWith(u';'))
            continue;
        if (line.startsWith(u'[')) {
            const int close = int(line.indexOf(u']'));
            const QString name = fold(close < 0 ? line.mid(1) : line.mid(1, close - 1));
            auto it = ini.m_sectionIndex.constFind(name);
            if (it == ini.m_sectionIndex.constEnd()) {
                ini.m_sections.append(Section{});
                current = int(ini.m_sections.size()) - 1;
                ini.m_sectionIndex.insert(name, current);
            } else {
                // A repeated section adds nothing: the first one is the one read.
                current = -2;
            }
            continue;
        }
        if (current < 0)
            continue;
        const int eq = int(line.indexOf(u'='));
        const QString key = (eq < 0 ? line : line.left(eq)).trimmed();
        const QString value = eq < 0 ? QString() : unquoted(line.mid(eq + 1).trimmed());
        ini.m_sections[current].entries.append({key, value});
    }
    return ini;
}

bool IniFile::hasSection(const QString &section) const
{
    return m_sectionIndex.contains(fold(section));
}

bool IniFile::lookup(const QString &section, const QString &key, QString *value) const
{
    const auto it = m_sectionIndex.constFind(fold(section));
    if (it == m_sectionIndex.constEnd())
        return false;
    const QString wanted = fold(key);
    for (const auto &entry : m_sections.at(*it).entries) {
        if (fold(entry.first) == wanted) {
            if (value)
                *value = entry.second;
            return true;
        }
    }
    return false;
}

QString IniFile::read(const QString &section, const QString &key, const QString &defaultValue,
                      int bufferSize) const
{
    QString value;
    if (!lookup(section, key, &value)) {
        // The reader strips trailing blanks from a default, as the system's reader does.
        value = defaultValue;
        while (value.endsWith(u' '))
            value.chop(1);
    }
    return cut(value, bufferSize);
}

QStringList IniFile::keys(const QString &section) const
{
    QStringList out;
    const auto it = m_sectionIndex.constFind(fold(section));
    if (it != m_sectionIndex.constEnd())
        for (const auto &entry : m_sections.at(*it).entries)
            out << entry.first;
    return out;
}

QString GetPrivateProfileString(const QString &section, const QString &key,
                                const QString &defaultValue, int bufferSize,
                                const QString &iniPath)
{
    return IniFile::load(iniPath).read(section, key, defaultValue, bufferSize);
}

} // namespace pg
