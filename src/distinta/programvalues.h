#pragma once

#include <QString>

namespace pg::distinta {

// Program-wide values that the selection of due items sets each time it is confirmed and
// that a new distinta takes, plus the flag the main window raises while a distinta that has
// just been generated from a selection is being edited.
struct ProgramValues
{
    QString tipoDistinta = QStringLiteral("F");   // "F" suppliers, "C" customers
    QString codValuta = QStringLiteral("  ");     // two blanks: no currency chosen, euro
    QString desValuta = QStringLiteral("EURO");
    bool nuovaDistinta = false;
};

ProgramValues &programValues();

} // namespace pg::distinta
