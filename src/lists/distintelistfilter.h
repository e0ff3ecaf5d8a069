#pragma once

#include <QString>
#include <QVariantList>

namespace pg::lists {

// The parameters of the list of saved distinte as the clerk typed them: a range of distinta
// numbers and a range of creation dates, each end optional ("__/__/____" is an empty date).
struct DistinteListFilter
{
    QString fromNumber;
    QString toNumber;
    QString fromDate = QStringLiteral("__/__/____");
    QString toDate = QStringLiteral("__/__/____");

    // RiempiLista's query: the distinte with their number, creation date, presenting bank,
    // total and state, ordered by number; the condition is made of fixed pieces, one for
    // each parameter that is filled, with the values bound in order. Numbers are compared
    // as codes (right-aligned in six, as they are stored); dates as the stored ISO text.
    struct Query
    {
        QString sql;
        QVariantList binds;
    };
    Query query() const;

    // The checks made when a parameter box is left; false after its message.
    // A date box that is not empty and not a valid date: "Data non corretta!".
    static bool validateDate(const QString &text);
    // Both dates filled and the first later than the second: "Date non corrette!".
    bool validateDateRange() const;
    // Both numbers filled and the second lower than the first.
    bool validateNumberRange() const;

    static bool isEmptyDate(const QString &text);
};

} // namespace pg::lists
