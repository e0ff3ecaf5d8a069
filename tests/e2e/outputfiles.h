#pragma once

#include <QString>
#include <QStringList>

// The files the programs write, read back for the end-to-end checks.
namespace pg::test {

// The text of a PDF, line by line (pdftotext -layout); empty when it cannot be read.
QStringList pdfText(const QString &path);
// The lines of a bank file, each checked for its width and its CR LF end.
QStringList bankFileLines(const QString &path);
// The completeness report's title line, then its error lines as account, blank and error
// code.
QStringList reportErrors(const QString &path);
// How many records of a type ("10", "16", ...) the lines of a bank file hold.
int countRecords(const QStringList &lines, const QString &type);

} // namespace pg::test
