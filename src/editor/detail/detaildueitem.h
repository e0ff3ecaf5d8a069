#pragma once

#include "detailfield.h"

namespace pg::archives {
class ErpRecord;
class ErpSession;
} // namespace pg::archives

namespace pg::editor {

// What the detail window of a due item shows: every field of the suite's record, in record
// order, each with its label and its value as the clerk reads it (dates dd/mm/yyyy, amounts
// "#,0.00", codes with their meaning, the bank and the currency with their names from the
// common tables).
class DueItemDetail
{
public:
    static DetailFields fields(const archives::ErpRecord &item, archives::ErpSession *erp);

    static QString title() { return QStringLiteral("Zoom Scadenza"); }
    static QString frame() { return QStringLiteral("Dati Scadenza"); }
};

} // namespace pg::editor
