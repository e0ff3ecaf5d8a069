#include "selectionvalues.h"

namespace pg::editor {

bool SelectionValues::isZeroCode(const QString &code)
{
    for (const QChar c : code)
        if (c != u'0' && c != u' ')
            return false;
    return true;
}

SelectionValues &selectionValues()
{
    static SelectionValues values;
    return values;
}

} // namespace pg::editor
