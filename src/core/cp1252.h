#pragma once

#include <QByteArray>
#include <QString>

// Windows-1252, the single-byte code page of the suite's records, of the bank file and of
// the program's text reports. Every character is one byte: a character that the code page
// lacks is written as its unaccented letter when it has one (z for ź) and as '?' otherwise,
// never as more than one byte, so that fixed-width lines keep their width.
namespace pg::cp1252 {

// One byte per character of the text (a character outside the basic plane counts once).
QByteArray encode(QStringView text);

// encode() into a buffer of at least text.size() bytes; returns the number of bytes written.
qsizetype encodeInto(QStringView text, char *out);

// The text each byte stands for; the five bytes the code page leaves undefined read as the
// control characters of the same number.
QString decode(QByteArrayView bytes);

// The text with every character replaced by the one that encode() writes, so that its
// length in characters is its length in bytes.
QString toCodePage(QStringView text);

bool isRepresentable(char32_t ucs);

} // namespace pg::cp1252
