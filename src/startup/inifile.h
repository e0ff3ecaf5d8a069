#pragma once

#include <QHash>
#include <QList>
#include <QString>

namespace pg {

// An ini file read the way the suite's own programs read theirs (the Windows private
// profile): section and key names without regard to letter case, the first section and the
// first key of a name win, values trimmed and freed of one pair of enclosing quotes, lines
// starting with ';' ignored, and the caller's buffer limit: a buffer of n characters keeps at
// most n - 1 of them. The file is read as UTF-8 (with or without a byte-order mark), UTF-16
// with a byte-order mark, or else Windows-1252.
class IniFile
{
public:
    IniFile() = default;
    static IniFile load(const QString &path);
    // The ini text of a file's bytes (the file exists).
    static IniFile parse(const QByteArray &bytes);

    bool exists() const { return m_exists; }
    bool hasSection(const QString &section) const;
    // The value of the key, or nullptr-like absence: returns false when the key is missing.
    bool lookup(const QString &section, const QString &key, QString *value) const;
    // GetPrivateProfileString: the value, or the default when the key is missing, cut to
    // bufferSize - 1 characters.
    QString read(const QString &section, const QString &key, const QString &defaultValue,
                 int bufferSize) const;
    // Keys of a section in file order.
    QStringList keys(const QString &section) const;

    static QString decodeText(const QByteArray &bytes);

private:
    struct Section
    {
        QList<QPair<QString, QString>> entries; // key (as written) and value
    };
    bool m_exists = false;
    QHash<QString, int> m_sectionIndex; // folded name -> index in m_sections
    QList<Section> m_sections;
};

// One call reads the file afresh, as the operating system's reader does.
QString GetPrivateProfileString(const QString &section, const QString &key,
                                const QString &defaultValue, int bufferSize,
                                const QString &iniPath);

} // namespace pg
