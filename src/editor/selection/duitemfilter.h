#pragma once

#include "duitemlayout.h"
#include "selectionvalues.h"

#include <QByteArray>

namespace pg::editor {

// Whether one due item of the suite passes the criteria of a selection. Built once per walk:
// the criteria become bytes and cents, and each record is judged on its own bytes.
//
// An item passes when all of these hold, checked in this order:
// 0. Its kind, once the distinta it is for is known (requireKind): a customers' distinta
//    ("C") takes only customers' items, a suppliers' distinta only suppliers' ("F"). Money
//    is never sent to a customer, nor asked of a supplier.
// 1. Its place in the distinte. An item in no distinta (distinta mark "0" and distinta state
//    "0"; blanks, which the suite leaves on items never placed, count as "0") goes on. An item
//    already in a distinta (mark "B", or a state other than "0") goes on only when its payment
//    type lies between "3" and "8" (the types paid in parts, the only ones that take a
//    distinta state) and it is not there for its whole amount ("5") nor in more than one
//    distinta ("4"): an item partly placed ("3") is offered again for the rest, while a bill
//    (types "0", "1", "2", "9"), which keeps state "0" and only carries the mark, is never
//    presented twice.
// 2. Its own status flags: an item paid in full (stato "2") has nothing left to pay; an item
//    that came back unpaid (flag_insoluto "2") is followed up outside the distinte; an item
//    with a down payment (flag_acconto "1") is offered only while its amount to pay exceeds
//    the down payment (imp_acconto_val), both taken without sign.
// 3. The payment type, unless every type was chosen ("X").
// 4. The due date, between the two ends of the range, both included.
// 5. The account code, between the two ends of the range, both included.
// 6. The amount to pay (imp_dapag_val), without its sign, between the minimum and the
//    maximum, both included, compared in cents.
// 7. The bank of the customer or supplier on the item (banca), when one was chosen, and then
//    its agency (agenzia), when one was chosen too.
class DueItemFilter
{
public:
    explicit DueItemFilter(const SelectionValues &values);

    // The distinta's type (flg_tipo): "C" customers, anything else suppliers.
    void requireKind(const QString &tipoDistinta);

    bool passes(QByteArrayView record) const;

private:
    const DueItemLayout *m_layout;
    char m_kind = 0; // 'C' or 'F'; 0: not known yet, every kind
    char m_tipo = 0; // 0: every type
    QByteArray m_dataDa, m_dataA;
    QByteArray m_codDa, m_codA;
    bool m_filterCodes = true;
    qint64 m_minCents = 0;
    qint64 m_maxCents = 0;
    QByteArray m_banca, m_agenzia; // empty: no filter
};

} // namespace pg::editor
