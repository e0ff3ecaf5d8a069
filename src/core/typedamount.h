#pragma once

#include <QString>

namespace pg::vb {

// An amount typed by the clerk, read the same way whatever the system's locale: a clerk types
// Italian. The comma is always the decimal sign; a point groups thousands where it stands
// before groups of exactly three digits ("1.000", "1.234,56") and is the decimal sign only
// where it cannot be a grouping ("12.5", "1234.50"). Anything else (two commas, a point after
// the comma, a grouping that is not of three digits, more decimals than the amount keeps, a
// letter) is not read at all: no sign and no digit is ever dropped without the clerk knowing.
struct TypedAmount
{
    enum class Outcome { Valid, Empty, Invalid };

    Outcome outcome = Outcome::Empty;
    double value = 0;
    // The amount as the box shows it once read: no grouping points, the comma before the
    // decimals ("1.000,50" -> "1000,50", "12.5" -> "12,5").
    QString plain;

    bool isValid() const { return outcome == Outcome::Valid; }

    // At most maxDecimals decimals and thirteen integer digits.
    static TypedAmount read(const QString &text, int maxDecimals = 2);
    // The message for a text that could not be read as an amount.
    static QString invalidMessage(const QString &text);
};

} // namespace pg::vb
