#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QLatin1StringView>
#include <QStringView>
#include <QVarLengthArray>

namespace pg::bankfile {

// One line of the CBI file built field by field straight into the bytes the file holds
// (Windows-1252), so that a disposition's nine lines cost no text conversions on the way.
// Every text from data is taken as the file can hold it: one code-page byte per character
// (a character the code page lacks becomes one substitute byte) and control characters, line
// ends among them, as blanks. Each field is then exactly its width.
class CbiLine
{
public:
    // A record begins with a blank and its two-character type.
    explicit CbiLine(QLatin1StringView type);

    // Letters and numbers: the blanks around the text removed, left-aligned, blank-filled,
    // cut on the right.
    CbiLine &alpha(QStringView text, int n);
    // A number in text: the blanks around it removed, zeros in front, its last n characters.
    CbiLine &numeric(QStringView text, int n);
    // A whole number, zeros in front, its last n digits (a progressive number, a count).
    CbiLine &number(qint64 value, int n);
    // A field copied as it is (a date, part of another record): blank-filled or cut on the
    // right, its blanks kept.
    CbiLine &fixed(QStringView text, int n);
    // Bytes of the file copied as they are (fields of another record), cut or blank-filled.
    CbiLine &copied(QByteArrayView bytes, int n);
    // The support fields of a header record ("PC", "IB") copied into its trailer "EF": its
    // positions 4-39, sender (5), receiver (5), creation date (6) and support name (20).
    CbiLine &support(QByteArrayView header);
    CbiLine &blanks(int n);
    // Constant characters of the record layout.
    CbiLine &literal(QLatin1StringView text);

    // The finished line. Every field has its width, so a line of any other length is a fault
    // of the program and must never reach the bank: it stops the file. The line is empty
    // afterwards.
    QByteArray finish(int width);

private:
    qsizetype appendPlain(QStringView text);
    void trimFrom(qsizetype start);
    void alignLeft(qsizetype start, int n);
    void alignRight(qsizetype start, int n, char fill);
    void grow(qsizetype size, char fill);

    // On the stack: a line is built without allocating, however long the data it is cut from.
    QVarLengthArray<char, 256> m_bytes;
};

} // namespace pg::bankfile
