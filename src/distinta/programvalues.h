#pragma once

#include <QString>

namespace pg::distinta {

// Program-wide values that the selection of due items sets each time it is confirmed and
// that a new distinta takes.
struct ProgramValues
{
    QString tipoDistinta = QStringLiteral("F");   // "F" suppliers, "C" customers
    QString codValuta = QStringLiteral("  ");     // two blanks: no currency chosen, euro
    QString desValuta = QStringLiteral("EURO");
};

ProgramValues &programValues();

} // namespace pg::distinta
