#pragma once

#include <QLocale>
#include <QString>

namespace pg::vb {

// The number and text patterns of the program, with the meaning they have always had for
// its users: '0' a digit that is always written, '#' a digit written only when significant,
// '.' the locale's decimal sign, ',' between integer digits the locale's grouping sign,
// '@' a character of a text right-aligned with blanks. Numbers are rounded half away from
// zero on their decimal value, as the patterns always did.
//
// Patterns in use: "#,0.00", "#,#.00", "0.00", "000", "00000", "@@@@@@", and for exchange
// rates "#,0.000000", "#,0.00000", "#,0.0000".
QString format(double value, QStringView pattern, const QLocale &locale = QLocale());

// A text through a pattern: '@' patterns right-align it in as many characters as there are
// '@' (a longer text is kept whole); a numeric pattern formats the text when it reads as a
// number under the locale and leaves it as it is otherwise.
QString format(const QString &text, QStringView pattern, const QLocale &locale = QLocale());

// Rounds to the given number of decimals, a half going to the even digit, on the decimal
// value of the number (2.675 is two thousand six hundred seventy-five thousandths).
double roundHalfEven(double value, int decimals);

// Rounds half away from zero on the decimal value.
double roundHalfAway(double value, int decimals);

// The 16-bit conversion: rounds half to even and raises error 6 "Overflow" outside
// -32768..32767. Where the program keeps a number in 16 bits, an overflow is an error, not a
// silent wrap.
qint16 cint(double value);

// A number as plain text: up to 15 significant digits, the locale's decimal sign, no
// grouping, no trailing zeros (1234.5 reads "1234,5" under an Italian locale).
QString cstr(double value, const QLocale &locale = QLocale());

// Reads a number typed by the user under the locale (grouping signs allowed); false when the
// text is not a number.
bool toNumber(const QString &text, double *value, const QLocale &locale = QLocale());

// The leading number of a text, as a count or a distinta number is read: blanks skipped,
// digits up to the first other character; 0 when there is none.
qint64 leadingNumber(QStringView text);

} // namespace pg::vb
