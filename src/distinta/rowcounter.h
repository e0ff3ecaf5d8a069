#pragma once

#include <QHash>
#include <QString>

#include <optional>

namespace pg::distinta {

class DistinteStore;

// How many rows of all the distinte hold each due item of one distinta, as the write-back
// asks for items partly in a distinta. One query answers for the whole distinta, made the
// first time a count is needed; the counts are those of the rows saved at that moment.
class RowCounter
{
public:
    RowCounter(DistinteStore &store, QString code)
        : m_store(store)
        , m_code(std::move(code))
    {
    }

    int operator()(const QString &key);

private:
    DistinteStore &m_store;
    QString m_code;
    std::optional<QHash<QString, int>> m_counts;
};

} // namespace pg::distinta
