#pragma once

#include "archives/store/erprecord.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace pg::archives {

// One record as one line of text, the form in which administrators dump the archives and
// load records exported from another system (docs/archives.md describes it for them):
//
//   38 * flag_colpar=P link=2025000012301 ragsoc="Caffè \"Da Nicolò\"" ...
//
// the archive number, the record type ("*" for archives without types; in the table
// archives the three-character type, a '_' standing for a blank: BN_, VL_, AZ1 ...), then
// field=value pairs by the layout's field names. A value is written bare when it holds no
// blank, no control character, no '"' and no '='; otherwise between double quotes, where \"
// is a quote, \\ a backslash and \xHH the character of code HH (for control characters).
// Trailing blanks of a value are not written, and a field that is all blanks is left out;
// leading blanks are kept (amounts are right-aligned in their fields). Blank lines and lines
// starting with '#' are ignored. The line holds text (UTF-8 in files); the record holds
// Windows-1252, so every character of a value must exist in that code page.
class ArchiveText
{
public:
    // What is wrong with a line: the field concerned (empty when the line as a whole) and
    // the reason.
    struct Problem
    {
        QString field;
        QString message;
    };

    enum class Line { Record, Ignored, Invalid };

    // The line of a record, without line end.
    static QString format(const ErpRecord &record);
    // A value as a line writes it.
    static QString formatValue(const QString &value);

    // The record type of a record read from an archive: "*" for archives without types,
    // else its type field (a known type or not).
    static QString recordTypeOf(int archive, const QByteArray &buffer);
    // The type as the second column writes it, blanks as '_'.
    static QString typeColumn(const QString &recordType);

    // Reads one line: a record (in *record), a blank or comment line, or an invalid line
    // (with the problem in *problem).
    static Line parse(QStringView line, std::optional<ErpRecord> *record, Problem *problem);
};

} // namespace pg::archives
