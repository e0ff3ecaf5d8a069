#pragma once

#include "archives/store/erpsession.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QTextStream>

namespace pg::archives {

// Whole archives to and from the text form of ArchiveText: the administrators' dump and load.
class ArchiveTextFile
{
public:
    // How many problems a refused file reports at most.
    static constexpr int MaxProblems = 20;
    // The longest line read, in bytes: far more than the widest record written with every
    // character escaped; a longer line is refused without being read into memory.
    static constexpr int MaxLineBytes = 64 * 1024;

    // Writes every record of the archive, in the order of the key, one line each. Opens the
    // archive for reading through the session and closes it after. False with the reason.
    static bool dump(ErpSession &session, int archive, int key, QTextStream &out, QString *error);

    // Checks every line of a UTF-8 file. The problems found, each naming its line and, when
    // there is one, its field ("riga 12, campo ragsoc: ..."), at most MaxProblems of them and
    // a last line telling how many more; empty when the file can be loaded. *records counts
    // the records of each archive.
    static QStringList validate(const QString &path, QMap<int, qint64> *records = nullptr);

    // Validates the file and, only when every line is right, writes all its records into the
    // stores of the two archive directories in one go: either every record is kept or none.
    // A record replaces the one with the same key 1, in the stores and earlier in the file.
    static bool load(const QString &path, const QString &companyArchiveDir,
                     const QString &commonArchiveDir, QStringList *problems,
                     QMap<int, qint64> *records = nullptr);
};

} // namespace pg::archives
