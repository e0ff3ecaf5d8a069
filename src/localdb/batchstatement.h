#pragma once

#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <optional>

struct sqlite3;
struct sqlite3_stmt;

namespace pg::localdb {

// A statement prepared once and run for every row of a batch, its values bound by position, or
// a query whose rows are read one after the other.
// On the SQLite engine it runs through the engine's own interface on the connection's handle,
// inside the connection's transaction: binding a value through Qt SQL costs more than writing
// the row, and a distinta of ten thousand rows is written in one go. On any other engine it
// runs through Qt SQL. Values are stored exactly as Qt SQL stores them (texts as text, dates
// as "yyyy-MM-dd", numbers as numbers), so that either way reads back the same. A failure
// raises the database's AppError.
class BatchStatement
{
public:
    BatchStatement(QSqlDatabase &db, const QString &sql);
    ~BatchStatement();
    BatchStatement(const BatchStatement &) = delete;
    BatchStatement &operator=(const BatchStatement &) = delete;

    void bind(int index, const QVariant &value);
    void exec();
    qint64 lastInsertId() const;

    // Steps the query to its next row, running it on the first call; false after the last.
    bool next();
    // A value of the current row as Qt SQL gives it: texts, whole numbers, decimals, or null.
    QVariant value(int column) const;
    // The same value taken straight into its type, as value() would convert it: a text (null
    // for NULL) or a number (0 for NULL). A distinta's rows are read so, value by value. A text
    // equal to the one the previous row held in the same column is that text again, shared:
    // the rows of a distinta repeat most of their codes, and ten thousand rows then hold one
    // copy of each instead of ten thousand.
    bool isNull(int column) const;
    QString text(int column) const;
    double real(int column) const;

private:
    [[noreturn]] void fail() const;

    sqlite3 *m_handle = nullptr;
    sqlite3_stmt *m_statement = nullptr;
    std::optional<QSqlQuery> m_query;
    bool m_started = false;
    mutable QList<QString> m_lastText; // by column
};

} // namespace pg::localdb
