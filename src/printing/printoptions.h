#pragma once

#include <QDate>
#include <QString>

namespace pg::printing {

// What the clerk chose in the print dialog (or on the command line) for one print run.
struct PrintOptions
{
    bool definitive = false; // "Definitiva": the distinta becomes "D" once printed
    QDate presentationDate;  // "Data Presentazione"; invalid: printed blank
    QString templateName;    // the template; empty: the default one
    bool totals = false;     // "Stampa Riga Totali"
    bool grouped = false;    // "Scad. Raggruppate" instead of "Scad. in Dettaglio"
    bool autoPrint = false;  // "Invia direttamente alla stampante"
};

} // namespace pg::printing
