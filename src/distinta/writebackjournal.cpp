#include "writebackjournal.h"

#include "localdb/batchstatement.h"
#include "localdb/databaseconnection.h"
#include "localdb/rowinserter.h"

#include <QDateTime>

namespace pg::distinta {

namespace {

// The columns of the marks before and after, in the order of DueItemMarks' fields.
const QString MarkColumns = QStringLiteral(
    "flg_stato_prima, flg_mark_prima, flg_pres_prima, dat_dist_prima, cod_abi_prima, "
    "cod_cab_prima, flg_stato_dopo, flg_mark_dopo, flg_pres_dopo, dat_dist_dopo, cod_abi_dopo, "
    "cod_cab_dopo");

const QString Pending = QStringLiteral("A");
const QString Conflict = QStringLiteral("X");

QString operationCode(WriteBackJournal::Operation operation)
{
    switch (operation) {
    case WriteBackJournal::Operation::Save:
        return QStringLiteral("S");
    case WriteBackJournal::Operation::Delete:
        return QStringLiteral("C");
    case WriteBackJournal::Operation::BankFile:
        return QStringLiteral("F");
    case WriteBackJournal::Operation::Repair:
        return QStringLiteral("R");
    }
    return QStringLiteral("S");
}

} // namespace

void WriteBackJournal::record(QSqlDatabase &db, Operation operation, const QString &codDistinta,
                              QList<WriteBackEntry> &entries)
{
    if (entries.isEmpty())
        return;
    localdb::BatchStatement last(db, QStringLiteral("SELECT MAX(num_operazione) FROM TB_GIORNALE"));
    const qint64 number = (last.next() ? last.value(0).toLongLong() : 0) + 1;

    localdb::RowInserter insert(db, QStringLiteral("TB_GIORNALE"),
                       (QStringLiteral("num_operazione, num_voce, flg_operazione, cod_distinta, "
                                       "des_momento, flg_voce, flg_flag_colpar, des_link_orvida, ") +
                        MarkColumns + QStringLiteral(", flg_esito"))
                           .split(QStringLiteral(", ")));
    const QString code = operationCode(operation);
    const QString when =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    qint32 position = 0;
    for (WriteBackEntry &e : entries) {
        e.operation = number;
        e.position = ++position;
        QVariantList values{e.operation,
                            e.position,
                            code,
                            codDistinta,
                            when,
                            e.kind == WriteBackEntry::Kind::Release ? QStringLiteral("L")
                                                                    : QStringLiteral("R"),
                            e.flag,
                            e.link};
        for (const DueItemMarks *marks : {&e.before, &e.after})
            for (QString DueItemMarks::*m : DueItemMarkFields)
                values.append(marks->*m);
        values.append(Pending);
        insert.add(values);
    }
    insert.finish();
}

QList<WriteBackEntry> WriteBackJournal::pending(QSqlDatabase &db)
{
    localdb::BatchStatement query(db, QStringLiteral("SELECT num_operazione, num_voce, flg_voce, "
                                            "flg_flag_colpar, des_link_orvida, ") +
                                 MarkColumns +
                                 QStringLiteral(" FROM TB_GIORNALE WHERE flg_esito = ? ORDER BY "
                                                "num_operazione, num_voce"));
    query.bind(0, Pending);
    QList<WriteBackEntry> entries;
    while (query.next()) {
        WriteBackEntry e;
        e.operation = query.value(0).toLongLong();
        e.position = query.value(1).toInt();
        e.kind = query.text(2) == u"L" ? WriteBackEntry::Kind::Release : WriteBackEntry::Kind::Row;
        e.flag = query.text(3);
        e.link = query.text(4);
        int column = 5;
        for (DueItemMarks *marks : {&e.before, &e.after}) {
            for (QString DueItemMarks::*m : DueItemMarkFields)
                marks->*m = query.text(column++);
            *marks = marks->normalized();
        }
        entries << e;
    }
    return entries;
}

void WriteBackJournal::markDone(QSqlDatabase &db, const QList<WriteBackEntry> &entries)
{
    if (entries.isEmpty())
        return;
    // Entries are carried out in their order, so those done come in runs of consecutive
    // positions: one statement removes a run.
    Transaction transaction(db);
    localdb::BatchStatement remove(db, QStringLiteral("DELETE FROM TB_GIORNALE WHERE num_operazione = ? "
                                             "AND num_voce BETWEEN ? AND ?"));
    for (qsizetype i = 0; i < entries.size();) {
        qsizetype j = i + 1;
        while (j < entries.size() && entries.at(j).operation == entries.at(i).operation &&
               entries.at(j).position == entries.at(j - 1).position + 1)
            ++j;
        remove.bind(0, entries.at(i).operation);
        remove.bind(1, entries.at(i).position);
        remove.bind(2, entries.at(j - 1).position);
        remove.exec();
        i = j;
    }
    transaction.commit();
}

void WriteBackJournal::markConflicts(QSqlDatabase &db, const QList<WriteBackEntry> &entries)
{
    if (entries.isEmpty())
        return;
    Transaction transaction(db);
    localdb::BatchStatement mark(db, QStringLiteral("UPDATE TB_GIORNALE SET flg_esito = ? WHERE "
                                           "num_operazione = ? AND num_voce = ?"));
    for (const WriteBackEntry &e : entries) {
        mark.bind(0, Conflict);
        mark.bind(1, e.operation);
        mark.bind(2, e.position);
        mark.exec();
    }
    transaction.commit();
}

} // namespace pg::distinta
