#include "archivetextfile.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archiveerrortext.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/archivewriter.h"
#include "archivetext.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>

#include <functional>

namespace pg::archives {

namespace {

// Reads a text file line by line and hands each record to the callback with its line
// number; problems are collected, the callback is called only for good lines.
class LineReader
{
public:
    using RecordFn = std::function<bool(int lineNumber, const ErpRecord &record)>;

    static bool read(const QString &path, QStringList *problems, const RecordFn &onRecord)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            problems->append(QStringLiteral("Impossibile leggere il file %1: %2")
                                 .arg(QDir::toNativeSeparators(path), file.errorString()));
            return false;
        }
        int lineNumber = 0;
        int found = 0;
        std::optional<ErpRecord> record;
        while (!file.atEnd()) {
            QByteArray bytes = file.readLine(ArchiveTextFile::MaxLineBytes);
            ++lineNumber;
            // A line cut by the limit, not by its end: the rest is skipped unread, so that
            // memory stays bounded whatever the file holds.
            if (!bytes.endsWith('\n') && !file.atEnd()) {
                while (!file.atEnd() &&
                       !file.readLine(ArchiveTextFile::MaxLineBytes).endsWith('\n')) {
                }
                if (++found <= ArchiveTextFile::MaxProblems)
                    problems->append(
                        describe(lineNumber, {{},
                                              QStringLiteral("riga troppo lunga: più di %1 "
                                                             "caratteri")
                                                  .arg(ArchiveTextFile::MaxLineBytes)}));
                continue;
            }
            if (lineNumber == 1 && bytes.startsWith("\xEF\xBB\xBF"))
                bytes.remove(0, 3);
            while (bytes.endsWith('\n') || bytes.endsWith('\r'))
                bytes.chop(1);
            QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
            const QString line = utf8(bytes);
            ArchiveText::Problem problem;
            ArchiveText::Line kind = ArchiveText::Line::Invalid;
            if (utf8.hasError())
                problem.message = QStringLiteral("testo non in UTF-8");
            else
                kind = ArchiveText::parse(line, &record, &problem);
            if (kind == ArchiveText::Line::Ignored)
                continue;
            if (kind == ArchiveText::Line::Invalid) {
                if (++found <= ArchiveTextFile::MaxProblems)
                    problems->append(describe(lineNumber, problem));
                continue;
            }
            if (!onRecord(lineNumber, *record))
                return false;
        }
        if (found > ArchiveTextFile::MaxProblems)
            problems->append(QStringLiteral("... e altre %1 righe errate")
                                 .arg(found - ArchiveTextFile::MaxProblems));
        return found == 0;
    }

    static QString describe(int lineNumber, const ArchiveText::Problem &problem)
    {
        if (problem.field.isEmpty())
            return QStringLiteral("riga %1: %2").arg(lineNumber).arg(problem.message);
        return QStringLiteral("riga %1, campo %2: %3")
            .arg(lineNumber)
            .arg(problem.field, problem.message);
    }
};

} // namespace

bool ArchiveTextFile::dump(ErpSession &session, int archive, int key, QTextStream &out,
                           QString *error)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    if (!layout) {
        *error = QStringLiteral("Archivio %1 sconosciuto.").arg(archive);
        return false;
    }
    if (!layout->hasKey(key)) {
        QStringList keys;
        for (int k : layout->keyNumbers())
            keys << QString::number(k);
        *error = QStringLiteral("L'archivio %1 non ha la chiave %2 (chiavi: %3).")
                     .arg(archive)
                     .arg(key)
                     .arg(keys.join(QStringLiteral(", ")));
        return false;
    }
    const QString described = archiveDescription(session.manager(), archive);
    if (const qint32 code = session.open(archive, ReadOnly); code != Ok) {
        *error =
            QStringLiteral("Impossibile aprire l'%1: %2.").arg(described, archiveErrorText(code));
        return false;
    }
    ErpRecord record(archive);
    qint64 written = 0;
    bool ok = session.readFirst(record, key, QByteArray());
    while (ok) {
        record.setRecordType(ArchiveText::recordTypeOf(archive, record.buffer()));
        out << ArchiveText::format(record) << '\n';
        ++written;
        ok = session.readNext(record);
    }
    const qint32 last = session.lastError();
    session.close(archive);
    out.flush();
    // The end of the archive ends the dump; any other failure cuts it short, and the lines
    // written are only part of the archive.
    if (last != EndOfArchive && last != NotFound) {
        *error = QStringLiteral("Lettura dell'%1 interrotta dopo %2 record: %3. Le righe scritte "
                                "sono solo una parte dell'archivio.")
                     .arg(described)
                     .arg(written)
                     .arg(archiveErrorText(last));
        return false;
    }
    return true;
}

QStringList ArchiveTextFile::validate(const QString &path, QMap<int, qint64> *records)
{
    QStringList problems;
    QMap<int, qint64> counts;
    LineReader::read(path, &problems, [&](int, const ErpRecord &record) {
        ++counts[record.archive()];
        return true;
    });
    if (records)
        *records = counts;
    return problems;
}

bool ArchiveTextFile::load(const QString &path, const QString &companyArchiveDir,
                           const QString &commonArchiveDir, QStringList *problems,
                           QMap<int, qint64> *records)
{
    // The whole file is checked before the stores are touched.
    *problems = validate(path, records);
    if (!problems->isEmpty())
        return false;

    ArchiveWriter writer(companyArchiveDir, commonArchiveDir);
    QString error;
    if (!writer.begin(&error)) {
        problems->append(error);
        return false;
    }
    const bool complete = LineReader::read(path, problems, [&](int line, const ErpRecord &record) {
        if (writer.put(record.archive(), record.buffer(), &error))
            return true;
        problems->append(QStringLiteral("riga %1: %2").arg(line).arg(error));
        return false;
    });
    if (!complete) {
        if (problems->isEmpty())
            problems->append(QStringLiteral("Il file %1 è cambiato durante il caricamento.")
                                 .arg(QDir::toNativeSeparators(path)));
        return false; // the writer rolls back
    }
    if (!writer.commit(&error)) {
        problems->append(error);
        return false;
    }
    return true;
}

} // namespace pg::archives
