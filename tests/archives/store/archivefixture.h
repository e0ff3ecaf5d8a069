#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTemporaryDir>

#include <utility>

struct sqlite3;

namespace pg::test {

// A throwaway installation for the archive tests: a company and a common archive directory
// under a temporary directory, with the suite's ini files that name them.
// The paths stay short: the suite's ini values keep no more than 39 characters.
class ArchiveFixture
{
public:
    ArchiveFixture();

    bool isValid() const { return m_dir.isValid(); }
    QString root() const { return m_dir.path() + u'/'; }
    QString companyDir() const { return root() + QStringLiteral("az/"); }
    QString commonDir() const { return root() + QStringLiteral("co/"); }
    QString companyStore() const;
    QString commonStore() const;

    // Writes "ORVIDA.INI" (in root()/ini, which ORVIDA_INI_DIR then names) and the parpe file
    // of company "DEM" pointing at the two directories.
    void writeIniFiles() const;

    // Writes the records through the archive writer; the reason when it refused.
    QString load(const QList<std::pair<int, QByteArray>> &records) const;
    // Writes a record straight into the company store's table, beside any with the same keys,
    // as stores written before the load refused a second record of a unique key may hold it.
    bool insertAsIs(int archive, const QByteArray &record) const;
    // Copies the store files of another installation (built once, used by many tests).
    bool copyStoresFrom(const ArchiveFixture &other) const;

private:
    QTemporaryDir m_dir;
};

// A due item (archive 38) whose description is its name in the tests.
QByteArray dueItem(const QString &name, const QString &flag, const QString &link,
                   const QString &dueDate, const QString &account);
// The bank agency 03069 01600 of the common tables (archive 15).
QByteArray bankAgency();
// The name (description) of a due item.
QString nameOf(const QByteArray &dueItem);

// A connection of its own to a store, as another program would hold one.
class StoreConnection
{
public:
    // With create, a new empty SQLite file when there is none.
    explicit StoreConnection(const QString &storePath, bool create = false);
    ~StoreConnection();
    StoreConnection(const StoreConnection &) = delete;
    StoreConnection &operator=(const StoreConnection &) = delete;

    bool exec(const QByteArray &sql);
    // The first record of the archive with that key, as stored; empty when there is none.
    QByteArray record(int archive, int key, const QByteArray &keyBytes);
    // The number of rows of a table, -1 when there is no such table.
    int rowCount(const QByteArray &table);

private:
    sqlite3 *m_db = nullptr;
};

// Runs statements on a store with a connection of its own; false when one failed.
bool execOnStore(const QString &storePath, const QByteArray &sql);
// The number of rows of a store's table, -1 when the store or the table is missing.
int rowCount(const QString &storePath, const QByteArray &table);

} // namespace pg::test
