#pragma once

#include <QHash>
#include <QSqlDatabase>
#include <QString>

#include <optional>

namespace pg::distinta {

// How many rows of all the distinte hold each due item of one distinta, as the write-back
// asks for items partly in a distinta. One query answers for the whole distinta, made the
// first time a count is needed, on the given connection: inside a save's transaction it
// counts the rows just written.
class RowCounter
{
public:
    RowCounter(QSqlDatabase &db, QString code)
        : m_db(db)
        , m_code(std::move(code))
    {
    }

    int operator()(const QString &key);

private:
    QSqlDatabase &m_db;
    QString m_code;
    std::optional<QHash<QString, int>> m_counts;
};

} // namespace pg::distinta
