#pragma once

#include "recordset.h"
#include "riga.h"
#include "testata.h"

#include <QStringList>

namespace pg::distinta {

// A distinta in memory: its header (one row once created or read), its rows, and its
// grouped rows (one per beneficiary and bank, rebuilt at every save); with what its next save
// must know of the due items: the items removed since it was created or read, and whether it
// was generated from a selection and never saved. Both belong to this distinta alone: a
// distinta read, created or dropped takes them with it.
struct Distinta
{
    RecordSet<Testata> testata;
    RecordSet<Riga> righe;
    RecordSet<Riga> righeRagg;
    // Keys of the due items removed since the distinta was created or read (AddRigheDaCanc):
    // the next save frees them in the suite.
    QStringList righeDaCanc;
    // Generated from a confirmed selection and not yet saved: an item in state "3" is then in
    // another distinta, never in this one.
    bool nuova = false;
    // The version read with the distinta (see DistintaVersions); the next save raises it.
    qint64 versione = 0;

    bool hasHeader() const { return !testata.isEmpty(); }
    const Testata &header() const { return testata.first(); }
    Testata &editHeader() { return testata.editFirst(); }
    bool hasChanges() const
    {
        return testata.hasChanges() || righe.hasChanges() || righeRagg.hasChanges();
    }
};

} // namespace pg::distinta
