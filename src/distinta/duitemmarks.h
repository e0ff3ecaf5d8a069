#pragma once

#include "riga.h"
#include "testata.h"

#include <QString>

#include <array>
#include <functional>

namespace pg::archives {
class ErpRecord;
}

namespace pg::distinta {

// The fields of a suite's due item that the distinte write: its distinta state ("0" free,
// "3" partly in a distinta, "5" wholly, "4" in more than one), the distinta mark ("0"/"B"),
// the presentation mark (" "/"B"), the distinta's creation date (yyyymmdd) and its presenting
// bank and agency. Each is kept as the record holds it, blank-padded to its width, so that
// two sets of marks are equal exactly when the records show the same.
struct DueItemMarks
{
    QString stato;
    QString markDist;
    QString markPres;
    QString dataDist;
    QString abiPres;
    QString cabPres;

    static DueItemMarks of(const archives::ErpRecord &dueItem);
    void writeTo(archives::ErpRecord &dueItem) const;
    // Every field blank-padded or cut to its width in the record.
    DueItemMarks normalized() const;

    // In a distinta as far as the suite is concerned: marked "B".
    bool isMarked() const { return markDist == u"B"; }

    // Freed from one distinta: states "3", "0" and "5" become "0" with the marks, the date
    // and the bank cleared; "4" (still in another distinta) becomes "3" and keeps the rest;
    // any other state is left alone.
    DueItemMarks released() const;

    // Marked for a row of a saved distinta. For the payment types that take a distinta state
    // ("3" to "8") the state moves: "0" to "5" when the row pays the whole amount, to "3"
    // otherwise; "3" to "4" when rowsWithKey() counts the item in more than one row of the
    // distinte. Every type gets the marks "B", the distinta's creation date and bank.
    DueItemMarks markedFor(const Riga &row, const Testata &header,
                           const std::function<int()> &rowsWithKey) const;

    bool operator==(const DueItemMarks &other) const = default;
};

// The six fields in the order the due item's record holds them.
inline constexpr std::array<QString DueItemMarks::*, 6> DueItemMarkFields{
    &DueItemMarks::stato,    &DueItemMarks::markDist, &DueItemMarks::markPres,
    &DueItemMarks::dataDist, &DueItemMarks::abiPres,  &DueItemMarks::cabPres};

// Whether a payment type ("0" to "9", blanks aside) takes a distinta state in the suite:
// the types paid in parts, "3" to "8". Bills and the rest only carry the marks.
bool takesDistintaState(const QString &paymentType);

// Whether a row pays the whole amount of its due item: its amount in distinta and the amount
// to pay print as the same number.
bool paysWholeAmount(const Riga &row);

} // namespace pg::distinta
