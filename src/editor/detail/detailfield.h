#pragma once

#include <QList>
#include <QString>

namespace pg::editor {

// One line of a read-only detail window: the section it belongs to, its label and its value
// as the clerk reads it.
struct DetailField
{
    QString section;
    QString label;
    QString value;

    bool operator==(const DetailField &other) const = default;
};

using DetailFields = QList<DetailField>;

} // namespace pg::editor
