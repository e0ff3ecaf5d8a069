#pragma once

#include <QString>

namespace pg::bankfile {

// What the dialog of the RiBa file shows and gives back: the distinta and its presenting bank
// (shown only), the company's SIA code, whether the due items of one customer and one due
// date make one receivable, and the name of the file to write. The SIA code goes back into
// the distinta's header, from which the file takes it.
struct RibaFileFields
{
    QString codDistinta;  // the code as stored
    QString dataDistinta; // the distinta's date, "dd/mm/yyyy": the presentation date
    QString banca;        // the presenting bank: its description, ABI and CAB
    QString codSia;
    bool raggruppa = false;
    QString fileName; // the path of the file to write
    QString fileTag;  // "/RIBA_<number>.txt", joined to a folder that is picked
};

// The dialog that confirms the RiBa file before it is written. The desktop program shows the
// real dialog; the command line takes the confirmation as given.
class RibaFileDialog
{
public:
    virtual ~RibaFileDialog() = default;

    // Shows the dialog and returns its result marker: "GO" when the clerk confirmed (fields
    // then hold what the dialog gives back), empty when it was cancelled.
    virtual QString exec(RibaFileFields &fields) = 0;
};

} // namespace pg::bankfile
