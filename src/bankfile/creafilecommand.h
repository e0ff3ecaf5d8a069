#pragma once

#include "creafiledialog.h"

#include "archives/store/companydata.h"
#include "archives/store/erpsession.h"
#include "distinta/distinta.h"

#include <QString>

#include <functional>
#include <optional>

namespace pg::distinta {
class DistinteStore;
} // namespace pg::distinta

namespace pg::bankfile {

// The bank-file command of the main window (cmdCreaFile): checks the distinta shown, saves
// its pending changes, has the clerk confirm the file in the dialog, writes the bank file and
// marks the distinta as presented to the bank (state "F").
//
// The file is the CBI XML message of SEPA credit transfers or the CBI "Bonifici" flat file,
// as the clerk chooses in the dialog; the choice is remembered for the next file. The XML
// file needs the company's CBI code (CUC): from the settings, else from the suite's company
// data, else asked once of the clerk and remembered. Before an XML file is written every
// disposition is checked (IBANs, amounts, totals) and the message is validated against the
// CBI schema: a file with problems is never written, and the clerk is told all of them in one
// message.
//
// Everything the clerk must know goes through the prompting seam; a failure is reported by
// the error trap as "frmMain!Sub cmdCreaFile_ClickED()". The file is written under a temporary
// name in its folder and takes its name only once it is complete, so a failure never leaves a
// half-written file for the bank, and an older file of the same name stays as it was.
class CreaFileCommand
{
public:
    enum class Outcome {
        NotRun,    // no distinta, or its number is 0
        NotEuro,   // the distinta is not in euro
        Anomalies, // rows lack bank data
        NotSaved,  // the pending changes could not be saved
        Cancelled, // the dialog was cancelled
        NoCuc,     // the XML file lacks the company's CBI code
        Refused,   // the file would hold data the bank refuses
        Invalid,   // the XML message does not pass the CBI schema
        Written,   // the file is written and the distinta presented
        Failed,    // an error stopped the command (reported by the error trap)
    };

    CreaFileCommand(distinta::DistinteStore &store, archives::ErpSession &erp,
                    const archives::CompanyData &company, CreaFileDialog &dialog);

    // Runs the command on the distinta shown. unsavedChanges says whether the distinta has
    // changes not yet saved (the main window's save button is enabled); saveChanges is then
    // called to recompute the totals, save without asking and read the distinta again, and
    // says whether it saved. The user settings "Raggruppa" and "ModDescr" in use decide
    // between plain and grouped rows and whether descriptions go into the file.
    Outcome cmdCreaFile(distinta::Distinta &d, bool unsavedChanges,
                        const std::function<bool(distinta::Distinta &)> &saveChanges);

    // The file the last run wrote, or was to write.
    const QString &outputPath() const { return m_outputPath; }

    // The format proposed in the dialog instead of the one last chosen (the command line
    // names it); a format proposed so is not remembered.
    void setProposedFormat(BankFileFormat format) { m_proposedFormat = format; }
    // A CBI code to use instead of the one of the settings and of the suite.
    void setCuc(const QString &cuc) { m_cuc = cuc; }

    // True when the distinta's currency is the euro: its code blank (no currency chosen) or
    // "EU", the suite's code of the euro.
    static bool ControllaValutaDistinta(const distinta::Testata &header);

    // OrvidaDir() + "D_STM/CBI_" + the trimmed code + ".xml" or ".txt".
    static QString proposedPath(const QString &codDistinta, BankFileFormat format);
    // "/CBI_" + the trimmed code + ".xml" or ".txt", joined to a folder picked in the dialog.
    static QString fileTag(const QString &codDistinta, BankFileFormat format);

    // The rows whose amount in the distinta is zero or of the sign opposite to their due
    // item's, one line each for the clerk; empty when every row can be paid.
    static QStringList righeNonPagabili(const distinta::RecordSet<distinta::Riga> &rows);

    static QString messaggioCucMancante();
    static QString messaggioCucErrato(const QString &cuc);

private:
    Outcome run(distinta::Distinta &d, bool unsavedChanges,
                const std::function<bool(distinta::Distinta &)> &saveChanges);
    // False when the due items could not be marked (the clerk was told why).
    bool writeFile(distinta::Distinta &d, bool grouped, bool modDescr);
    QString cucForXml();
    Outcome writeXml(distinta::Distinta &d, bool grouped, const QString &cuc);

    distinta::DistinteStore &m_store;
    archives::ErpSession &m_erp;
    archives::CompanyData m_company;
    CreaFileDialog &m_dialog;
    QString m_outputPath;
    std::optional<BankFileFormat> m_proposedFormat;
    QString m_cuc;
};

} // namespace pg::bankfile
