#pragma once

#include "distinta/distinta.h"

#include <QString>

namespace pg::bankfile {

// What the file dialog shows and gives back: the distinta's ordering data and the name of the
// file to write. The ordering data are shown only; the file command writes them back into the
// distinta's header after the dialog, and the file takes them from there.
struct CreaFileFields
{
    QString codDistinta;  // txtCodDistinta: the code as stored
    QString dataDistinta; // txtdataDistinta: the creation date, "dd/mm/yyyy"
    QString codSia;       // txtCodSia
    QString rifMitt;      // txtRifMitt
    QString contoOrd;     // txtContoOrd
    QString fileName;     // txtFileName: the path of the file to write
    QString fileTag;      // its tag: "/CBI_<number>.txt", joined to a folder that is picked
};

// The dialog that confirms the bank file before it is written: frmCreaFileR, with the list of
// the distinta's grouped rows and their descriptions, when the rows are grouped, and
// frmCreaFile otherwise. The desktop program shows the real dialogs; the command line takes
// the confirmation as given.
class CreaFileDialog
{
public:
    // The result marker a confirmed dialog gives.
    static QString confirmed() { return QStringLiteral("GO"); }

    virtual ~CreaFileDialog() = default;

    // Shows the dialog for the distinta and returns its result marker: "GO" when the clerk
    // confirmed (fields then hold what the dialog gives back), empty when the dialog was
    // cancelled. A grouped dialog may change the descriptions of the grouped rows of d and
    // save them.
    virtual QString exec(CreaFileFields &fields, distinta::Distinta &d, bool grouped) = 0;
};

} // namespace pg::bankfile
