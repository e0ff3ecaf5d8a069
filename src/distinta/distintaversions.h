#pragma once

#include "distinta.h"

#include <QSqlDatabase>
#include <QString>

#include <optional>

namespace pg::distinta {

// Several clerks, one company: what a save checks of the distinte saved meanwhile, inside its
// transaction and under the write-back lock, so that no save overwrites or merges another's.
// - A new distinta takes its number when it is saved: a number another clerk has taken since
//   "Nuova distinta" gives way to the next free one.
// - Every saved distinta has a version (table TB_VERSIONI), read with it and raised by each
//   save: a save of a distinta whose version has moved since it was read (saved in another
//   window, or deleted) is refused rather than written over the other's work.
class DistintaVersions
{
public:
    // The version of a saved distinta; 0 when it has none (saved by an earlier release).
    static qint64 read(QSqlDatabase &db, const QString &code);

    // Claims the distinta's number and gives it its first version: the number it has when
    // that is free, otherwise the next free one, written into the header and every row. The
    // message for the clerk when the number changed. A number past 32767 is an overflow
    // error, as for "Nuova distinta".
    static std::optional<QString> claimNumber(QSqlDatabase &db, Distinta &d);

    // Raises the version of a saved distinta; false when it moved since the distinta was
    // read (another save, or a delete, came first).
    static bool raise(QSqlDatabase &db, const Distinta &d);

    static void remove(QSqlDatabase &db, const QString &code);

    // Whether the distinta has never been saved (its header was never written).
    static bool isNew(const Distinta &d);

    // The message of a refused save of stale data.
    static QString staleMessage(const QString &code);
};

} // namespace pg::distinta
