#pragma once

#include <QDate>
#include <QString>

// Dates as the program shows, types, keeps and compares them:
// - shown and typed as "dd/mm/yyyy" (an empty masked box reads "__/__/____");
// - kept in the suite's fields as eight digits, year, month and day ("yyyymmdd");
// - written in the bank file as "ddmmyy";
// - compared in queries as the month-first literal "#mm/dd/yyyy#", whatever the locale.
namespace pg::dates {

inline constexpr char16_t EmptyMaskedDate[] = u"__/__/____";

// Today, or the day fixed by setToday() (tests and scripted runs fix it).
QDate today();
void setToday(const QDate &date);

// "dd/mm/yyyy" (day and month of one or two digits, four-digit year) to a date; an invalid
// date when the text is not a real calendar day in that form.
QDate parseDmy(const QString &text);
bool isValidDmy(const QString &text);
QString toDmy(const QDate &date);

// A masked box whose last two places are still "__" holds a two-digit year: the first six
// characters are kept, then "20", then the two typed digits ("01/02/09__" -> "01/02/2009").
// Without two digits there (an empty box, "__/__/____") the text stays as it is.
QString completeTwoDigitYear(const QString &masked);

QString toYmd(const QDate &date);
QDate fromYmd(const QString &ymd);
QString toDdmmyy(const QDate &date);

// Positional rearrangements of stored texts, valid whatever the texts hold.
QString ymdToDdmmyy(const QString &ymd); // characters 7-8, 5-6, 3-4
QString ymdToDmy(const QString &ymd);    // characters 7-8 "/" 5-6 "/" 1-4
QString dmyToYmd(const QString &dmy);    // characters 7-10, 4-5, 1-2

// The month-first literal of the database ("#01/31/2024#") and back.
QString jetLiteral(const QDate &date);
QDate parseJetLiteral(const QString &literal);

} // namespace pg::dates
