#pragma once

#include "selectionresult.h"

#include <QString>

namespace pg::editor {

// The criteria of the selection of due items, as the selection dialog leaves them each time
// it is confirmed and as the walk over the due items reads them. Codes, dates and types are
// fixed-width texts compared as texts: account codes six characters, dates eight digits
// (year, month, day), bank and agency codes five characters. Each value has the default it
// takes when its box is left empty, which lets everything through.
struct SelectionValues
{
    static constexpr double MaxImporto = 9999999999999.0;
    // The one type that lets every payment type through.
    static inline const QString TuttiIPagamenti = QStringLiteral("X");
    // The date boxes of the distinta left empty.
    static inline const QString EmptyDate = QStringLiteral("__/__/____");

    QString codAnagraInizio = QStringLiteral("000000");
    QString codAnagraFine = QStringLiteral("999999");
    QString dataScadInizio = QStringLiteral("00000000");
    QString dataScadFine = QStringLiteral("99999999");
    QString tipoPagamento = TuttiIPagamenti;    // "0".."9", or "X"
    QString tipoDistinta = QStringLiteral("F"); // "F" suppliers, "C" customers
    double impMinimo = 0;
    double impMassimo = MaxImporto;
    QString codValuta = QStringLiteral("  ");
    QString desValuta = QStringLiteral("EURO");
    // The company bank and agency that present the distinta: required.
    QString bancaPres;
    QString agenziaPres;
    // The bank and agency of the customers or suppliers: "00000" lets every bank through.
    QString bancaCli = QStringLiteral("00000");
    QString agenziaCli = QStringLiteral("00000");
    // The distinta's creation and value dates as typed ("dd/mm/yyyy", or EmptyDate).
    QString dataCreazione = EmptyDate;
    QString dataValuta = EmptyDate;

    // What a new distinta takes from the selection: the presentation bank and agency, and
    // the creation and value dates as typed.
    SelectionResult selectionResult() const
    {
        return SelectionResult{bancaPres, agenziaPres, dataCreazione, dataValuta};
    }

    // A bank or agency code of "00000" (or blank) selects nothing: no filter on it.
    static bool isZeroCode(const QString &code);

    bool operator==(const SelectionValues &other) const = default;
};

// The values of the last confirmation, for the whole program.
SelectionValues &selectionValues();

} // namespace pg::editor
