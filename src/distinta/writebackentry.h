#pragma once

#include "duitemmarks.h"
#include "riga.h"

#include <QString>

namespace pg::distinta {

// One change of one due item of the suite, as the write-back journal keeps it: the item's
// key, the marks it showed when the change was decided and the marks it must show after.
// Carrying an entry out is safe to repeat: an item that already shows the marks after is
// done, one that still shows the marks before is rewritten, and one that shows neither was
// changed by someone else in between and is never overwritten.
struct WriteBackEntry
{
    // A release of an item removed from a distinta (its failures are not the save's), or the
    // marking of a row of a distinta (or the release of a row of a deleted one).
    enum class Kind { Release, Row };

    Kind kind = Kind::Row;
    QString flag;
    QString link;
    DueItemMarks before;
    DueItemMarks after;
    // Where the journal keeps it: the operation and the entry's place in it.
    qint64 operation = 0;
    qint32 position = 0;

    QString key() const { return Riga::keyOf(flag, link); }
};

} // namespace pg::distinta
