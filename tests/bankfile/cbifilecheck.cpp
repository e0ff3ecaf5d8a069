#include "cbifilecheck.h"

#include <QList>
#include <QStringList>

namespace pg::test {

namespace {

// A disposition's records: "16" and "17" may be left out, the others never.
bool isDisposition(const QStringList &types)
{
    QStringList rest = types;
    rest.removeOne(QStringLiteral("16"));
    rest.removeOne(QStringLiteral("17"));
    const QStringList required{QStringLiteral("10"), QStringLiteral("20"), QStringLiteral("30"),
                               QStringLiteral("40"), QStringLiteral("50"), QStringLiteral("70")};
    if (rest != required)
        return false;
    // "16" before "17", both right after "10".
    const QString joined = types.join(u' ');
    return joined.startsWith(QStringLiteral("10 16 17 20")) ||
           joined.startsWith(QStringLiteral("10 16 20")) ||
           joined.startsWith(QStringLiteral("10 17 20")) ||
           joined.startsWith(QStringLiteral("10 20"));
}

} // namespace

QString cbiFileProblems(const QByteArray &file)
{
    if (!file.endsWith("\r\n"))
        return QStringLiteral("the file does not end with CR LF");
    QList<QByteArray> lines = file.split('\n');
    lines.removeLast(); // after the last line end
    for (int i = 0; i < lines.size(); ++i) {
        QByteArray &line = lines[i];
        if (!line.endsWith('\r'))
            return QStringLiteral("line %1 ends with LF alone").arg(i + 1);
        line.chop(1);
        if (line.contains('\r'))
            return QStringLiteral("line %1 holds a CR").arg(i + 1);
        const QByteArray type = line.mid(1, 2);
        const int width = type == "70" ? 48 : 120;
        if (line.size() != width)
            return QStringLiteral("line %1 (%2) is %3 bytes long instead of %4")
                .arg(i + 1)
                .arg(QString::fromLatin1(type))
                .arg(line.size())
                .arg(width);
    }
    if (lines.size() < 2 || !lines.first().startsWith(" PC") || !lines.last().startsWith(" EF"))
        return QStringLiteral("the file is not PC ... EF");

    int num = 0;
    QStringList types;
    for (int i = 1; i < lines.size() - 1; ++i) {
        const QByteArray &line = lines.at(i);
        const QString type = QString::fromLatin1(line.mid(1, 2));
        if (type == u"10") {
            if (!types.isEmpty())
                return QStringLiteral("line %1: disposition %2 is incomplete").arg(i + 1).arg(num);
            ++num;
        }
        types << type;
        if (line.mid(3, 7) != QByteArray::number(num).rightJustified(7, '0'))
            return QStringLiteral("line %1: progressive number %2 instead of %3")
                .arg(i + 1)
                .arg(QString::fromLatin1(line.mid(3, 7)))
                .arg(num);
        if (type == u"70") {
            if (!isDisposition(types))
                return QStringLiteral("disposition %1 is %2").arg(num).arg(types.join(u' '));
            types.clear();
        }
    }
    if (!types.isEmpty())
        return QStringLiteral("the last disposition has no record 70");
    const QByteArray count = lines.last().mid(82, 7);
    if (count != QByteArray::number(lines.size()).rightJustified(7, '0'))
        return QStringLiteral("EF counts %1 lines, the file has %2")
            .arg(QString::fromLatin1(count))
            .arg(lines.size());
    return {};
}

} // namespace pg::test
