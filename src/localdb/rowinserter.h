#pragma once

#include "batchstatement.h"

#include <QByteArrayList>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariantList>

#include <optional>

namespace pg::localdb {

// Adds many rows to one table inside the connection's transaction, and gives back the row
// identity ("rowid") of each, in order. SQLite runs one prepared statement a row through its
// own interface (a row costs microseconds there). A PostgreSQL server would cost a round trip
// a row, so there the rows are gathered and sent with one COPY, their identities taken first
// in one query; a distinta of ten thousand rows is then one exchange with the server. Values
// are stored as BatchStatement stores them. A failure raises the database's AppError.
class RowInserter
{
public:
    RowInserter(QSqlDatabase &db, const QString &table, const QStringList &columns);

    void add(const QVariantList &values);
    // Sends what is gathered; the identities of the rows added, in order.
    QList<qint64> finish();

private:
    QSqlDatabase &m_db;
    QString m_table;
    QStringList m_columns;
    std::optional<BatchStatement> m_insert;
    QList<qint64> m_ids;
    QByteArrayList m_lines; // a server's rows in COPY's text form, without their identity
};

} // namespace pg::localdb
