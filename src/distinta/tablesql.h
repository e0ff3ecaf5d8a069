#pragma once

#include "recordset.h"

#include "localdb/batchstatement.h"
#include "localdb/rowinserter.h"
#include "startup/dberror.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>

#include <optional>

namespace pg::distinta::sql {

// SQL of a record type, written from its constant column table: the only text ever put into
// SQL; every value is bound.

// The value of a column as it is stored: a text never longer than its column (the database
// refuses longer ones, as the suite's database always did).
template<typename Record>
QVariant storedValue(const ColumnDef<Record> &column, const Record &record)
{
    QVariant v = column.value(record);
    if (column.kind == ColumnKind::Text && column.width > 0 && !v.isNull()) {
        const QString text = v.toString();
        if (text.size() > column.width)
            v = text.left(column.width);
    }
    return v;
}
template<typename Record>
QString columnList()
{
    QStringList names;
    for (const auto &c : Record::columns())
        names << QString(c.name);
    return names.join(QStringLiteral(", "));
}

// A column of the current row into its member of the record. Texts and amounts, all a row
// holds, are taken straight from the statement; other kinds through their variant.
template<typename Record>
void readColumn(const ColumnDef<Record> &column, Record &record,
                const localdb::BatchStatement &query, int index)
{
    std::visit(
        [&](auto m) {
            auto &v = record.*m;
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, QString>)
                v = query.text(index);
            else if constexpr (std::is_same_v<T, double>)
                v = query.real(index);
            else if constexpr (std::is_same_v<T, std::optional<double>>)
                v = query.isNull(index) ? std::nullopt : std::optional<double>(query.real(index));
            else
                column.setValue(record, query.value(index));
        },
        column.member);
}

// "SELECT rowid, <columns> FROM <table> <tail>" with the tail's values bound in order.
template<typename Record>
QList<typename RecordSet<Record>::Entry> readRows(QSqlDatabase &db, QLatin1StringView table,
                                                  const QString &tail, const QVariantList &binds)
{
    localdb::BatchStatement query(db, QStringLiteral("SELECT rowid, ") + columnList<Record>() +
                                          QStringLiteral(" FROM ") + QString(table) + u' ' + tail);
    for (int i = 0; i < binds.size(); ++i)
        query.bind(i, binds.at(i));
    const auto &columns = Record::columns();
    QList<typename RecordSet<Record>::Entry> rows;
    while (query.next()) {
        typename RecordSet<Record>::Entry e;
        e.rowid = query.value(0).toLongLong();
        for (int i = 0; i < columns.size(); ++i)
            readColumn(columns.at(i), e.data, query, i + 1);
        rows.append(std::move(e));
    }
    return rows;
}

// Writes the pending changes of a record set into its table: removed rows deleted, changed
// rows updated whole, added rows inserted (their new row identities returned in order).
// Statements are prepared once and run for every row.
template<typename Record>
QList<qint64> writeChanges(QSqlDatabase &db, QLatin1StringView table, const RecordSet<Record> &set)
{
    using Status = typename RecordSet<Record>::Status;
    const auto &columns = Record::columns();
    const QString tableName(table);
    QList<qint64> added;

    // Removed rows go a few hundred at a time: one statement for many rows costs a server one
    // exchange instead of one a row.
    const QList<qint64> removed = set.removedRowids();
    constexpr qsizetype Chunk = 500;
    for (qsizetype from = 0; from < removed.size(); from += Chunk) {
        const qsizetype count = std::min(Chunk, removed.size() - from);
        QStringList marks;
        for (qsizetype i = 0; i < count; ++i)
            marks << QStringLiteral("?");
        localdb::BatchStatement del(db, QStringLiteral("DELETE FROM ") + tableName +
                                            QStringLiteral(" WHERE rowid IN (") +
                                            marks.join(QStringLiteral(", ")) + u')');
        for (qsizetype i = 0; i < count; ++i)
            del.bind(int(i), removed.at(from + i));
        del.exec();
    }

    std::optional<localdb::BatchStatement> update;
    std::optional<localdb::RowInserter> insert;
    for (const auto &e : set.entries()) {
        if (e.status == Status::Changed) {
            if (!update) {
                QStringList assignments;
                for (const auto &c : columns)
                    assignments << QString(c.name) + QStringLiteral(" = ?");
                update.emplace(db, QStringLiteral("UPDATE ") + tableName + QStringLiteral(" SET ") +
                                       assignments.join(QStringLiteral(", ")) +
                                       QStringLiteral(" WHERE rowid = ?"));
            }
            int i = 0;
            for (const auto &c : columns)
                update->bind(i++, storedValue(c, e.data));
            update->bind(i, e.rowid);
            update->exec();
        } else if (e.status == Status::Added) {
            if (!insert)
                insert.emplace(db, tableName, columnList<Record>().split(QStringLiteral(", ")));
            QVariantList values;
            values.reserve(columns.size());
            for (const auto &c : columns)
                values.append(storedValue(c, e.data));
            insert->add(values);
        }
    }
    if (insert)
        added = insert->finish();
    return added;
}

} // namespace pg::distinta::sql
