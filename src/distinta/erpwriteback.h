#pragma once

#include "riga.h"
#include "testata.h"

#include "archives/erpsession.h"

#include <QStringList>

#include <functional>

namespace pg::distinta {

// Keeps the suite's due items in step with the distinte: every due item placed in a saved
// distinta is marked in the due-items archive (state, marks, date and presenting bank), and
// released again when its row is removed or its distinta deleted. Each record is read by
// key 2 (flag and link) and rewritten whole at once; the archive has no transaction.
class ErpWriteBack
{
public:
    enum class Outcome { Done, ReadFailed, RewriteFailed };

    explicit ErpWriteBack(archives::ErpSession &erp)
        : m_erp(erp)
    {
    }

    // Frees one due item: states "3", "0", "5" become "0" with the marks, date and bank
    // cleared; "4" (in another distinta too) becomes "3"; any other state is left alone, but
    // the record is rewritten in every case.
    Outcome release(const QString &flag, const QString &link);

    // The items the clerk removed since the distinta was created or read, at save time:
    // an item that cannot be read, that is already free (distinta mark "0"), or that is in
    // state "3" while a freshly generated distinta is saved, is skipped; failures are not
    // reported.
    void releaseRemoved(const QStringList &keys, bool newDistinta);

    // Marks the due item of a saved row (AggiornaScadenza). For payment types "3" to "8" the
    // state moves: "0" to "5" when the amount in distinta equals the amount to pay, to "3"
    // otherwise; "3" to "4" when rowsWithKey(key) counts the item in more than one row of the
    // distinte. For every type: marks "B", the distinta's creation date and presenting bank.
    Outcome update(const Riga &row, const Testata &header,
                   const std::function<int(const QString &key)> &rowsWithKey);

private:
    archives::ErpSession &m_erp;
};

} // namespace pg::distinta
