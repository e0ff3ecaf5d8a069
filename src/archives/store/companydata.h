#pragma once

#include "erpsession.h"

#include <QString>

namespace pg::archives {

// The company's own registry data, read at start-up from the company tables (records "AZ1"
// and "AZ3", each by an equal read on key 1) and kept for the main window, the bank file and
// the print. A record that cannot be read leaves its fields blank; no message is shown.
struct CompanyData
{
    QString ragsoc;      // name (40)
    QString indirizzo;   // address (25)
    QString citta;       // city (25)
    QString provincia;   // province (2)
    QString cap;         // postal code (5)
    QString codFiscale;  // first tax identifier (16)
    QString partitaIva;  // second tax identifier (16)
    QString cuc;         // the company's CBI code, when the suite has it
    bool az1Found = false;
    bool az3Found = false;

    // The tax identifier the bank wants: the first when it is not blank, else the second.
    QString taxIdentifier() const
    {
        return codFiscale.trimmed().isEmpty() ? partitaIva : codFiscale;
    }

    static CompanyData read(ErpSession &erp);
};

} // namespace pg::archives
