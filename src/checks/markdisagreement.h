#pragma once

#include "distinta/duitemmarks.h"

#include <QString>
#include <QStringList>

namespace pg::checks {

// One due item on which the suite's marks and the saved distinte disagree.
struct MarkDisagreement
{
    enum class Kind {
        MarkedWithoutDistinta, // marked as in a distinta, but in no saved distinta
        FreeInDistinta,        // in a saved distinta, but free in the suite
        WrongState,            // its state does not match the number of distinte holding it
        WrongPresentation,     // its distinta date or bank are not those of its distinta
        MissingItem,           // in a saved distinta, but no longer in the suite
    };

    Kind kind = Kind::MarkedWithoutDistinta;
    QString flag;
    QString link;
    // How the clerk knows the item: account, document ("123/A"), document and due dates
    // (yyyymmdd), from the suite or, for an item it no longer has, from the row.
    QString account;
    QString document;
    QString documentDate;
    QString dueDate;
    QStringList distinte; // numbers of the saved distinte holding it, in order
    distinta::DueItemMarks found;
    distinta::DueItemMarks expected; // what the distinte call for

    bool repairable() const { return kind != Kind::MissingItem; }
    // One line of the report, in Italian.
    QString text() const;
};

} // namespace pg::checks
