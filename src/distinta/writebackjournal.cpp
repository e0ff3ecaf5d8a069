#include "writebackjournal.h"

#include "batchstatement.h"

#include "localdb/databaseconnection.h"

#include <QDateTime>

namespace pg::distinta {

namespace {

// The columns of the marks before and after, in the order of DueItemMarks' fields.
const QString MarkColumns = QStringLiteral(
    "flg_stato_prima, flg_mark_prima, flg_pres_prima, dat_dist_prima, cod_abi_prima, "
    "cod_cab_prima, flg_stato_dopo, flg_mark_dopo, flg_pres_dopo, dat_dist_dopo, cod_abi_dopo, "
    "cod_cab_dopo");

constexpr QString DueItemMarks::*MarkMembers[] = {&DueItemMarks::stato,    &DueItemMarks::markDist,
                                                  &DueItemMarks::markPres, &DueItemMarks::dataDist,
                                                  &DueItemMarks::abiPres,  &DueItemMarks::cabPres};

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

// Runs one statement for every entry, binding its operation and position, after any other
// values bound first by the caller.
void forEachEntry(QSqlDatabase &db, const QString &sql, const QList<WriteBackEntry> &entries,
                  const QVariantList &leading = {})
{
    if (entries.isEmpty())
        return;
    Transaction transaction(db);
    BatchStatement statement(db, sql);
    for (const WriteBackEntry &e : entries) {
        int i = 0;
        for (const QVariant &value : leading)
            statement.bind(i++, value);
        statement.bind(i++, e.operation);
        statement.bind(i, e.position);
        statement.exec();
    }
    transaction.commit();
}

} // namespace

void WriteBackJournal::record(QSqlDatabase &db, Operation operation, const QString &codDistinta,
                              QList<WriteBackEntry> &entries)
{
    if (entries.isEmpty())
        return;
    BatchStatement last(db, QStringLiteral("SELECT MAX(num_operazione) FROM TB_GIORNALE"));
    const qint64 number = (last.next() ? last.value(0).toLongLong() : 0) + 1;

    BatchStatement insert(
        db, QStringLiteral("INSERT INTO TB_GIORNALE (num_operazione, num_voce, flg_operazione, "
                           "cod_distinta, des_momento, flg_voce, flg_flag_colpar, "
                           "des_link_orvida, ") +
                MarkColumns +
                QStringLiteral(", flg_esito) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                               "?, ?, ?, ?, ?, ?)"));
    const QString code = operationCode(operation);
    const QString when =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    qint32 position = 0;
    for (WriteBackEntry &e : entries) {
        e.operation = number;
        e.position = ++position;
        int i = 0;
        insert.bind(i++, e.operation);
        insert.bind(i++, e.position);
        insert.bind(i++, code);
        insert.bind(i++, codDistinta);
        insert.bind(i++, when);
        insert.bind(i++, e.kind == WriteBackEntry::Kind::Release ? QStringLiteral("L")
                                                                 : QStringLiteral("R"));
        insert.bind(i++, e.flag);
        insert.bind(i++, e.link);
        for (const DueItemMarks *marks : {&e.before, &e.after})
            for (QString DueItemMarks::*m : MarkMembers)
                insert.bind(i++, marks->*m);
        insert.bind(i, Pending);
        insert.exec();
    }
}

QList<WriteBackEntry> WriteBackJournal::pending(QSqlDatabase &db)
{
    BatchStatement query(db, QStringLiteral("SELECT num_operazione, num_voce, flg_voce, "
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
            for (QString DueItemMarks::*m : MarkMembers)
                marks->*m = query.text(column++);
            *marks = marks->normalized();
        }
        entries << e;
    }
    return entries;
}

void WriteBackJournal::markDone(QSqlDatabase &db, const QList<WriteBackEntry> &entries)
{
    forEachEntry(
        db, QStringLiteral("DELETE FROM TB_GIORNALE WHERE num_operazione = ? AND num_voce = ?"),
        entries);
}

void WriteBackJournal::markConflicts(QSqlDatabase &db, const QList<WriteBackEntry> &entries)
{
    forEachEntry(db,
                 QStringLiteral("UPDATE TB_GIORNALE SET flg_esito = ? WHERE num_operazione = ? AND "
                                "num_voce = ?"),
                 entries, {Conflict});
}

} // namespace pg::distinta
