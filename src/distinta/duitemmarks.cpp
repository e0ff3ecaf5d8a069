#include "duitemmarks.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "core/vbdate.h"
#include "core/vbformat.h"

namespace pg::distinta {

namespace {

const QString State = QStringLiteral("stato_dist");
const QString DistintaMark = QStringLiteral("mark_dist");
const QString PresentationMark = QStringLiteral("mark_pres");
const QString DistintaDate = QStringLiteral("data_dist");
const QString Bank = QStringLiteral("abi_pres");
const QString Agency = QStringLiteral("cab_pres");

const QString *fieldNames()
{
    static const QString names[] = {State,        DistintaMark, PresentationMark,
                                    DistintaDate, Bank,         Agency};
    return names;
}

// The widths of the six fields in the due items' records.
const int *fieldWidths()
{
    static const auto widths = [] {
        std::array<int, 6> w{};
        const archives::ErpRecord layout(archives::Scadenze);
        for (int i = 0; i < 6; ++i)
            w[i] = layout.fieldDef(fieldNames()[i]).width;
        return w;
    }();
    return widths.data();
}

} // namespace

DueItemMarks DueItemMarks::of(const archives::ErpRecord &dueItem)
{
    DueItemMarks marks;
    for (int i = 0; i < 6; ++i)
        marks.*DueItemMarkFields[i] = dueItem.text(fieldNames()[i]);
    return marks;
}

void DueItemMarks::writeTo(archives::ErpRecord &dueItem) const
{
    for (int i = 0; i < 6; ++i)
        dueItem.setText(fieldNames()[i], this->*DueItemMarkFields[i]);
}

DueItemMarks DueItemMarks::normalized() const
{
    DueItemMarks marks;
    for (int i = 0; i < 6; ++i)
        marks.*DueItemMarkFields[i] =
            (this->*DueItemMarkFields[i]).leftJustified(fieldWidths()[i], u' ', true);
    return marks;
}

DueItemMarks DueItemMarks::released() const
{
    DueItemMarks marks = *this;
    if (stato == u"3" || stato == u"0" || stato == u"5") {
        marks.stato = QStringLiteral("0");
        marks.markDist = QStringLiteral("0");
        marks.markPres = QString();
        marks.dataDist = QString();
        marks.abiPres = QString();
        marks.cabPres = QString();
    } else if (stato == u"4") {
        marks.stato = QStringLiteral("3");
    }
    return marks.normalized();
}

DueItemMarks DueItemMarks::markedFor(const Riga &row, const Testata &header,
                                     const std::function<int()> &rowsWithKey) const
{
    DueItemMarks marks = *this;
    if (takesDistintaState(row.cod_tipo_pag)) {
        if (stato == u"0")
            marks.stato = paysWholeAmount(row) ? QStringLiteral("5") : QStringLiteral("3");
        else if (stato == u"3" && rowsWithKey() > 1)
            marks.stato = QStringLiteral("4");
    }
    marks.markDist = QStringLiteral("B");
    marks.markPres = QStringLiteral("B");
    marks.dataDist = dates::toYmd(header.dat_data_creazione);
    marks.abiPres = header.cod_abi_banca;
    marks.cabPres = header.cod_cab_banca;
    return marks.normalized();
}

bool takesDistintaState(const QString &paymentType)
{
    const QString type = paymentType.trimmed();
    return type >= u"3" && type <= u"8";
}

bool paysWholeAmount(const Riga &row)
{
    // The amounts are compared as the texts they print as.
    const QString inDistinta =
        row.val_imp_indist_val ? vb::cstr(*row.val_imp_indist_val) : QString();
    return inDistinta == vb::cstr(row.val_imp_dapag_val);
}

} // namespace pg::distinta
