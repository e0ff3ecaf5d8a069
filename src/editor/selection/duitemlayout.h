#pragma once

#include "archives/store/recordlayout.h"

#include <QByteArrayView>
#include <QString>

namespace pg::editor {

// The fields of a due item (archive 38) that the selection reads, looked up once in the
// record layouts so that the walk over a million records compares bytes at known offsets.
struct DueItemLayout
{
    archives::FieldDef flagColpar, link, stato, flagInsoluto, flagAcconto, tipoPag, dataScad,
        indClifor, codClifor, codSede, numDoc, serieDoc, dataDoc, numProt, numRata, numEffetto,
        causale, banca, agenzia, conto, valuta, cambio, impDapagVal, impDapagEur, impPagVal,
        impPagEur, impAccontoVal, statoDist, markDist;
    int length = 0;

    static const DueItemLayout &instance();

    // The field's bytes of a record (empty when the record is too short).
    static QByteArrayView bytes(QByteArrayView record, const archives::FieldDef &field)
    {
        if (record.size() < field.offset + field.width)
            return {};
        return record.sliced(field.offset, field.width);
    }
    // The field as text, every NUL read as a blank, not trimmed.
    static QString text(QByteArrayView record, const archives::FieldDef &field);
    // An amount field ('.' before the decimals, right-aligned, blanks reading 0) in cents,
    // rounded to the cent.
    static qint64 cents(QByteArrayView field);
    // A number field (amounts, exchange rates); blanks read 0.
    static double number(QByteArrayView field);
};

} // namespace pg::editor
