#include "batchstatement.h"

#include "startup/dberror.h"

#include <QDate>
#include <QSqlDriver>
#include <QSqlError>

#include <sqlite3.h>

namespace pg::localdb {

namespace {

sqlite3 *nativeHandle(QSqlDatabase &db)
{
    const QVariant handle = db.driver()->handle();
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0)
        return *static_cast<sqlite3 *const *>(handle.constData());
    return nullptr;
}

// A value stored as NULL, as Qt SQL stores it: an empty variant, and also a null text or an
// invalid date (which a variant no longer counts as null).
bool storesNull(const QVariant &value)
{
    if (value.isNull())
        return true;
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString().isNull();
    case QMetaType::QDate:
        return !value.toDate().isValid();
    default:
        return false;
    }
}

// True when the UTF-8 text is plain ASCII and the same as the text.
bool sameAscii(const char *utf8, int size, const QString &text)
{
    if (size != text.size())
        return false;
    const QChar *chars = text.constData();
    for (int i = 0; i < size; ++i)
        if (static_cast<unsigned char>(utf8[i]) >= 0x80 || char16_t(utf8[i]) != chars[i].unicode())
            return false;
    return true;
}

} // namespace

BatchStatement::BatchStatement(QSqlDatabase &db, const QString &sql) : m_handle(nativeHandle(db))
{
    if (m_handle) {
        if (sqlite3_prepare16_v2(m_handle, sql.utf16(), int(sql.size() * sizeof(char16_t)),
                                 &m_statement, nullptr) != SQLITE_OK)
            fail();
        return;
    }
    m_query.emplace(db);
    m_query->setForwardOnly(true);
    if (!m_query->prepare(sql))
        throw databaseError(m_query->lastError());
}

BatchStatement::~BatchStatement()
{
    if (m_statement)
        sqlite3_finalize(m_statement);
}

void BatchStatement::fail() const
{
    const int code = sqlite3_extended_errcode(m_handle);
    throw databaseError(QSqlError(QStringLiteral("Errore del database"),
                                  QString::fromUtf8(sqlite3_errmsg(m_handle)),
                                  QSqlError::StatementError, QString::number(code)));
}

void BatchStatement::bind(int index, const QVariant &value)
{
    if (!m_statement) {
        // A null text or date is bound as a null of its type, which Qt SQL stores as NULL.
        m_query->bindValue(index, storesNull(value) ? QVariant(value.metaType()) : value);
        return;
    }
    const int position = index + 1;
    int rc = SQLITE_OK;
    if (storesNull(value)) {
        rc = sqlite3_bind_null(m_statement, position);
    } else {
        switch (value.typeId()) {
        case QMetaType::Double:
            rc = sqlite3_bind_double(m_statement, position, value.toDouble());
            break;
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::UInt:
        case QMetaType::ULongLong:
            rc = sqlite3_bind_int64(m_statement, position, value.toLongLong());
            break;
        case QMetaType::QDate: {
            const QString text = value.toDate().toString(Qt::ISODate);
            rc = sqlite3_bind_text16(m_statement, position, text.utf16(),
                                     int(text.size() * sizeof(char16_t)), SQLITE_TRANSIENT);
            break;
        }
        default: {
            const QString text = value.toString();
            rc = sqlite3_bind_text16(m_statement, position, text.utf16(),
                                     int(text.size() * sizeof(char16_t)), SQLITE_TRANSIENT);
            break;
        }
        }
    }
    if (rc != SQLITE_OK)
        fail();
}

void BatchStatement::exec()
{
    if (!m_statement) {
        if (!m_query->exec())
            throw databaseError(m_query->lastError());
        return;
    }
    const int rc = sqlite3_step(m_statement);
    sqlite3_reset(m_statement);
    if (rc != SQLITE_DONE && rc != SQLITE_ROW)
        fail();
}

bool BatchStatement::next()
{
    if (!m_statement) {
        if (!m_started && !m_query->exec())
            throw databaseError(m_query->lastError());
        m_started = true;
        return m_query->next();
    }
    m_started = true;
    const int rc = sqlite3_step(m_statement);
    if (rc == SQLITE_ROW)
        return true;
    if (rc != SQLITE_DONE)
        fail();
    return false;
}

QVariant BatchStatement::value(int column) const
{
    if (!m_statement)
        return m_query->value(column);
    switch (sqlite3_column_type(m_statement, column)) {
    case SQLITE_INTEGER:
        return QVariant(qint64(sqlite3_column_int64(m_statement, column)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(m_statement, column));
    case SQLITE_NULL:
        return QVariant(QMetaType::fromType<QString>());
    default: {
        // The engine keeps texts in UTF-8: taking them so avoids its own conversion.
        const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
        return QVariant(QString::fromUtf8(text, sqlite3_column_bytes(m_statement, column)));
    }
    }
}

bool BatchStatement::isNull(int column) const
{
    if (!m_statement)
        return m_query->value(column).isNull();
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

QString BatchStatement::text(int column) const
{
    if (!m_statement) {
        const QVariant v = m_query->value(column);
        return v.isNull() ? QString() : v.toString();
    }
    switch (sqlite3_column_type(m_statement, column)) {
    case SQLITE_NULL:
        return QString();
    case SQLITE_INTEGER:
    case SQLITE_FLOAT:
        return value(column).toString();
    default:
        break;
    }
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
    const int size = sqlite3_column_bytes(m_statement, column);
    if (column >= m_lastText.size())
        m_lastText.resize(column + 1);
    QString &last = m_lastText[column];
    if (!last.isNull() && sameAscii(text, size, last))
        return last;
    last = QString::fromUtf8(text, size);
    return last;
}

double BatchStatement::real(int column) const
{
    if (!m_statement)
        return m_query->value(column).toDouble();
    switch (sqlite3_column_type(m_statement, column)) {
    case SQLITE_NULL:
        return 0;
    case SQLITE_INTEGER:
        return double(sqlite3_column_int64(m_statement, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(m_statement, column);
    default:
        return value(column).toDouble();
    }
}

qint64 BatchStatement::lastInsertId() const
{
    if (!m_statement)
        return m_query->lastInsertId().toLongLong();
    return sqlite3_last_insert_rowid(m_handle);
}

} // namespace pg::localdb
