#include "rowinserter.h"

#include "localdb/databaseconnection.h"
#include "startup/dberror.h"

#include <QDate>
#include <QLocale>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

#include <libpq-fe.h>

namespace pg::localdb {

namespace {

PGconn *serverHandle(QSqlDatabase &db)
{
    const QVariant handle = db.driver()->handle();
    if (handle.isValid() && (qstrcmp(handle.typeName(), "PGconn*") == 0 ||
                               qstrcmp(handle.typeName(), "pg_conn*") == 0))
        return *static_cast<PGconn *const *>(handle.constData());
    return nullptr;
}

[[noreturn]] void serverFailure(PGconn *connection, PGresult *result)
{
    const QString state =
        result ? QString::fromLatin1(PQresultErrorField(result, PG_DIAG_SQLSTATE)) : QString();
    const QString text = QString::fromUtf8(PQerrorMessage(connection)).trimmed();
    if (result)
        PQclear(result);
    // Whatever the server still has to say of the failed command is read and dropped, so that
    // the connection can roll the transaction back.
    while (PGresult *rest = PQgetResult(connection))
        PQclear(rest);
    throw databaseError(
        QSqlError(QStringLiteral("Errore del database"), text, QSqlError::StatementError, state));
}

// A value in COPY's text form: \N for null, the special characters escaped.
void appendCopyValue(QByteArray &line, const QVariant &value)
{
    if (value.isNull() || (value.typeId() == QMetaType::QString && value.toString().isNull()) ||
        (value.typeId() == QMetaType::QDate && !value.toDate().isValid())) {
        line += "\\N";
        return;
    }
    switch (value.typeId()) {
    case QMetaType::Double:
        line += QByteArray::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
        return;
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        line += QByteArray::number(value.toLongLong());
        return;
    case QMetaType::Bool:
        line += value.toBool() ? "t" : "f";
        return;
    case QMetaType::QDate:
        line += value.toDate().toString(Qt::ISODate).toLatin1();
        return;
    default:
        break;
    }
    const QByteArray text = value.toString().toUtf8();
    for (char c : text) {
        switch (c) {
        case '\\':
            line += "\\\\";
            break;
        case '\t':
            line += "\\t";
            break;
        case '\n':
            line += "\\n";
            break;
        case '\r':
            line += "\\r";
            break;
        default:
            line += c;
        }
    }
}

} // namespace

RowInserter::RowInserter(QSqlDatabase &db, const QString &table, const QStringList &columns)
    : m_db(db), m_table(table), m_columns(columns)
{
    if (isPostgres(db))
        return;
    QStringList marks;
    for (qsizetype i = 0; i < columns.size(); ++i)
        marks << QStringLiteral("?");
    m_insert.emplace(db, QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") +
                             columns.join(QStringLiteral(", ")) + QStringLiteral(") VALUES (") +
                             marks.join(QStringLiteral(", ")) + u')');
}

void RowInserter::add(const QVariantList &values)
{
    if (m_insert) {
        for (int i = 0; i < values.size(); ++i)
            m_insert->bind(i, values.at(i));
        m_insert->exec();
        m_ids.append(m_insert->lastInsertId());
        return;
    }
    QByteArray line;
    for (const QVariant &value : values) {
        line += '\t';
        appendCopyValue(line, value);
    }
    line += '\n';
    m_lines.append(line);
}

QList<qint64> RowInserter::finish()
{
    if (m_insert || m_lines.isEmpty())
        return std::exchange(m_ids, {});
    // The identities first, in one query: the server numbers them, the rows carry them.
    QSqlQuery ids(m_db);
    ids.setForwardOnly(true);
    if (!ids.prepare(QStringLiteral("SELECT nextval(pg_get_serial_sequence(?, 'rowid')) FROM "
                                    "generate_series(1, ?)")))
        throw databaseError(ids.lastError());
    ids.addBindValue(m_table.toLower());
    ids.addBindValue(int(m_lines.size()));
    if (!ids.exec())
        throw databaseError(ids.lastError());
    QList<qint64> out;
    out.reserve(m_lines.size());
    while (ids.next())
        out.append(ids.value(0).toLongLong());
    ids.finish();

    PGconn *connection = serverHandle(m_db);
    if (!connection)
        throw AppError(AppError::DatabaseBase,
                       QStringLiteral("Connessione al server non disponibile"),
                       QStringLiteral("Database"));
    const QByteArray copy = (QStringLiteral("COPY ") + m_table + QStringLiteral(" (rowid, ") +
                             m_columns.join(QStringLiteral(", ")) + QStringLiteral(") FROM STDIN"))
                                .toUtf8();
    PGresult *start = PQexec(connection, copy.constData());
    if (PQresultStatus(start) != PGRES_COPY_IN)
        serverFailure(connection, start);
    PQclear(start);
    QByteArray block;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        block += QByteArray::number(out.at(i)) + m_lines.at(i);
        if (block.size() > (1 << 16) || i + 1 == m_lines.size()) {
            if (PQputCopyData(connection, block.constData(), int(block.size())) != 1)
                serverFailure(connection, nullptr);
            block.clear();
        }
    }
    if (PQputCopyEnd(connection, nullptr) != 1)
        serverFailure(connection, nullptr);
    PGresult *end = PQgetResult(connection);
    if (PQresultStatus(end) != PGRES_COMMAND_OK)
        serverFailure(connection, end);
    PQclear(end);
    while (PGresult *rest = PQgetResult(connection))
        PQclear(rest);
    m_lines.clear();
    return out;
}

} // namespace pg::localdb
