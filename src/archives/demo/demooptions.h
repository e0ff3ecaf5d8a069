#pragma once

#include <QDate>
#include <QString>

namespace pg::archives {

// What a demo installation holds: the company, how many due items, the seed that makes it
// repeatable, and the day its due dates gather around.
struct DemoOptions
{
    QString companyCode = QStringLiteral("DEMO");
    qint64 dueItems = 300;
    quint32 seed = 1;
    QDate today; // null: the program's today
};

} // namespace pg::archives
