#pragma once

#include <QByteArray>
#include <QString>

namespace pg::test {

// Reads a bank file back as the bank would: every line ended by CR LF with no other line end
// inside, "PC" first and "EF" last, each disposition "10" ... "70" with its progressive
// number, every line 120 bytes except the 48 of "70", and the line count of "EF" equal to the
// lines of the file. Returns what is wrong, or an empty text.
QString cbiFileProblems(const QByteArray &file);

} // namespace pg::test
