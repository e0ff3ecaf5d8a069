#pragma once

#include <QLocale>
#include <QString>

// The fillers of the bank file's fixed-width fields. Each returns a text of exactly the
// width asked for and never fails on overlong input: what does not fit is cut, on the right
// for text and on the left for numbers.
namespace pg::bankfile {

// Left-aligned text: the blanks around it removed, blanks appended, cut to its first n
// characters.
QString RiempiCampoA(const QString &text, int n);

// Right-aligned number: the text without its surrounding blanks, zeros put in front, its last
// n characters kept (leading digits that do not fit are lost).
QString RiempiCampoN(const QString &text, int n);

// An amount: formatted "0.00" under the locale, every "," removed, zeros in front, the last
// n characters kept. Where the decimal sign is the comma this is the amount in cents
// (1234.5 -> "...123450"); under a locale with a decimal point the point stays in the field
// ("...1234.50"), as the bank file has always been written.
QString RiempiCampoEuro(double amount, int n, const QLocale &locale = QLocale());

// The progressive numbers and counts: the text without its surrounding blanks, n fill
// characters in front (n blanks when the fill is empty), its last n characters kept.
QString RiempiSinistra(const QString &text, int n, const QString &fill);

// The text without the blanks at its two ends (tabs and other white space stay).
QString trimBlanks(const QString &text);

} // namespace pg::bankfile
