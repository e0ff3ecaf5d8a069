#pragma once

#include "recordset.h"
#include "riga.h"
#include "testata.h"

namespace pg::distinta {

// A distinta in memory: its header (one row once created or read), its rows, and its
// grouped rows (one per beneficiary and bank, rebuilt at every save).
struct Distinta
{
    RecordSet<Testata> testata;
    RecordSet<Riga> righe;
    RecordSet<Riga> righeRagg;

    bool hasHeader() const { return !testata.isEmpty(); }
    const Testata &header() const { return testata.first(); }
    Testata &editHeader() { return testata.editFirst(); }
    bool hasChanges() const
    {
        return testata.hasChanges() || righe.hasChanges() || righeRagg.hasChanges();
    }
};

} // namespace pg::distinta
