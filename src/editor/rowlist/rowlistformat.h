#pragma once

#include <QLocale>
#include <QString>
#include <QVariant>

#include <optional>

namespace pg::editor {

// How the row list shows the values of a distinta's rows, and the forms it sorts them by.
struct RowListFormat
{
    // The document number trimmed and right-aligned in six characters, then "/" and the
    // series when there is one: "   120/A".
    static QString numDoc(const QString &number, const QString &series);
    // A stored yyyymmdd date as dd/mm/yyyy; blanks stay empty.
    static QString date(const QString &ymd);
    // An exchange rate with as many decimals as keep about ten digits: six below 9999, five
    // below 99999, four below 999999, two from there on.
    static QString cambio(double rate, const QLocale &locale = QLocale());
    // An amount, "#,0.00"; nothing for an amount that is missing.
    static QString amount(std::optional<double> value, const QLocale &locale = QLocale());

    // The sort form of a document number: its number as a number, then the series, so that
    // 9 comes before 10 and "120/A" after "120"; numbers that do not start with a digit sort
    // after all the others, as texts.
    static QString numDocSortKey(const QString &number, const QString &series);
};

} // namespace pg::editor
