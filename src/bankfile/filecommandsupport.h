#pragma once

#include "core/apperror.h"
#include "distinta/distinta.h"

#include <QIODevice>
#include <QString>
#include <QStringList>

#include <functional>

namespace pg::distinta {
class DistinteStore;
} // namespace pg::distinta

// What the commands that write a bank file share: where the file goes, how it is written
// whole or not at all, how the due items it pays are marked and how the distinta passes to
// "F", and how a list of problems is told to the clerk in one message.
namespace pg::bankfile {

// OrvidaDir() + "D_STM/" + prefix + the trimmed code + extension: "D_STM/CBI_12.txt".
QString stmFilePath(const QString &prefix, const QString &codDistinta, const QString &extension);
// "/" + prefix + the trimmed code + extension: the bare name joined to a folder that is
// picked in a dialog.
QString stmFileTag(const QString &prefix, const QString &codDistinta, const QString &extension);

// The error of a file that cannot be written.
AppError pathError(const QString &path, const QString &reason);

// Writes the file under a temporary name in its folder and gives it its name only once write
// returned true and everything reached the disk, so that a failure never leaves a
// half-written file for the bank and an older file of that name stays as it was. False when
// write declined (nothing is left behind); a file that cannot be written is raised as its
// pathError.
bool writeWholeFile(const QString &path, const std::function<bool(QIODevice &)> &write);

// Marks in the suite the due items of the rows a file pays (AggiornaScadenza of every row),
// as one journaled operation. False after telling why when it could not be done.
bool markDueItems(distinta::DistinteStore &store, const distinta::Testata &header,
                  const distinta::RecordSet<distinta::Riga> &rows);

// A document written whole as above, after the due items of rows (when there are any to
// mark) are marked; false when they could not be marked, and then nothing is written.
bool writeMarkedDocument(const QString &path, distinta::DistinteStore &store,
                         const distinta::Testata &header,
                         const distinta::RecordSet<distinta::Riga> *rows,
                         const QByteArray &document);

// The distinta presented to the bank: state "F", saved, and the clerk told where the file is.
void markPresented(distinta::DistinteStore &store, distinta::Distinta &d, const QString &path);
// "Elaborazione Completata", and on a second line the file written.
QString completedMessage(const QString &path);

// One message for a list of problems: the introduction, then one line each ("- ..."), at
// most MaxListedProblems of them and then how many more there are.
inline constexpr int MaxListedProblems = 30;
QString listedProblems(const QString &introduction, const QStringList &problems);

// True for the euro: a currency code that is blank (no currency chosen) or "EU", the suite's
// code of the euro.
bool isEuro(const QString &currency);

// Five digits: an ABI or a CAB.
bool isFiveDigits(const QString &text);

} // namespace pg::bankfile
