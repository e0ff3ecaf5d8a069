#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace pg::archives {

// Writes records straight into the embedded archive stores of an installation: the tool of
// the demo installation and of the administrators' archive load, never of the payment work
// (which only reads and rewrites through the record manager). All or nothing: records are
// written in one transaction per store and kept only when commit() succeeds.
//
// The common archives (15 and 0) go into the store of the common directory, every other
// archive into the store of the company directory; the stores are created when missing.
class ArchiveWriter
{
public:
    ArchiveWriter(const QString &companyArchiveDir, const QString &commonArchiveDir);
    ~ArchiveWriter(); // rolls back whatever was not committed
    ArchiveWriter(const ArchiveWriter &) = delete;
    ArchiveWriter &operator=(const ArchiveWriter &) = delete;

    // Opens (creating when missing) both stores and begins a transaction in each.
    bool begin(QString *error);
    // Adds a record of the archive, replacing the records with the same key 1 or the same
    // unique key (the due items' flag and link) when there are any. False (with a reason) for
    // an unknown archive, a buffer that is not exactly the archive's record length, or a
    // record whose unique key an earlier record of this load already has.
    bool put(int archive, const QByteArray &record, QString *error);
    bool commit(QString *error);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace pg::archives
