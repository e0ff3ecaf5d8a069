#include "outputfiles.h"

#include "core/cp1252.h"

#include <QFile>
#include <QProcess>

#include <algorithm>

namespace pg::test {

QStringList pdfText(const QString &path)
{
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"),
                    {QStringLiteral("-layout"), path, QStringLiteral("-")});
    if (!pdftotext.waitForFinished(60000) || pdftotext.exitCode() != 0)
        return {};
    return QString::fromUtf8(pdftotext.readAllStandardOutput()).split(u'\n');
}

// The lines of a bank file, each checked for its width and its CR LF end.
QStringList bankFileLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    QStringList lines;
    for (const QByteArray &line : bytes.split('\n')) {
        if (line.isEmpty())
            continue;
        // Every record is 120 characters wide but the "70", which is 48.
        const int width = line.mid(1, 2) == "70" ? 48 : 120;
        if (line.size() != width + 1 || !line.endsWith('\r'))
            return {QStringLiteral("malformed line: ") + QString::fromLatin1(line)};
        lines << cp1252::decode(line.chopped(1));
    }
    return lines;
}

// The report's title line, then its error lines as account, blank and error code.
QStringList reportErrors(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QStringList lines = cp1252::decode(file.readAll()).split(QStringLiteral("\r\n"));
    QStringList errors{lines.value(2)};
    for (int i = 6; i < lines.size() && !lines.at(i).startsWith(u'-'); ++i)
        errors << lines.at(i).left(6) + u' ' + lines.at(i).right(1);
    return errors;
}

int countRecords(const QStringList &lines, const QString &type)
{
    return int(std::count_if(lines.begin(), lines.end(),
                             [&](const QString &l) { return l.mid(1, 2) == type; }));
}

} // namespace pg::test
