#pragma once

#include "distinta/distinta.h"
#include "lists/usersettings.h"

#include <QString>

namespace pg::bankfile {

// What the file dialog shows and gives back: the distinta's ordering data, the format and the
// name of the file to write. The ordering data are shown only; the file command writes them
// back into the distinta's header after the dialog, and the file takes them from there.
struct CreaFileFields
{
    QString codDistinta;  // txtCodDistinta: the code as stored
    QString dataDistinta; // txtdataDistinta: the creation date, "dd/mm/yyyy"
    QString codSia;       // txtCodSia
    QString rifMitt;      // txtRifMitt
    QString contoOrd;     // txtContoOrd
    QString fileName;     // txtFileName: the path of the file to write
    QString fileTag; // its tag: "/CBI_<number>.txt" (or ".xml"), joined to a folder that is picked
    BankFileFormat format = BankFileFormat::CbiFlat;

    // ".xml" for the XML message, ".txt" for the flat file.
    static QString extension(BankFileFormat f)
    {
        return f == BankFileFormat::SepaXml ? QStringLiteral(".xml") : QStringLiteral(".txt");
    }

    // Changes the format: the tag takes the extension of the new format, and so does the file
    // name when it still ends in the extension of the old one (a name typed otherwise is the
    // clerk's and stays as it is).
    void switchFormat(BankFileFormat to)
    {
        const QString from = extension(format);
        format = to;
        for (QString *name : {&fileTag, &fileName})
            if (name->endsWith(from, Qt::CaseInsensitive))
                *name = name->left(name->size() - from.size()) + extension(to);
    }
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

    // Asks the clerk for the company's CBI code (CUC), which the XML file needs and the
    // settings do not hold yet; empty when the clerk gives none. A dialog that cannot ask
    // gives none.
    virtual QString askCuc() { return {}; }
};

} // namespace pg::bankfile
