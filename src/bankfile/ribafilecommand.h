#pragma once

#include "ribafiledialog.h"

#include "archives/store/companydata.h"
#include "archives/store/erpsession.h"
#include "distinta/distinta.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace pg::distinta {
class DistinteStore;
} // namespace pg::distinta

namespace pg::bankfile {

// The bank-file command of the main window on a customers' distinta: the CBI "RiBa" file of
// its ricevute bancarie, presented to the bank for collection. It checks the distinta shown
// (in euro, every row a ricevuta bancaria), saves its pending changes, has the clerk confirm
// the file, the SIA code and the grouping in the dialog, checks every receivable (all the
// problems told in one message), writes the file, marks the due items as the credit-transfer
// file does and moves the distinta to state "F".
//
// A failure is reported by the error trap as "frmMain!Sub cmdCreaFile_ClickED()", the
// command's own; the file is written whole or not at all (an older file of the same name
// stays as it was).
class RibaFileCommand
{
public:
    enum class Outcome {
        NotRun,       // no distinta, or its number is 0
        NotCustomers, // a suppliers' distinta: its file is the credit-transfer one
        NotEuro,      // the distinta is not in euro
        OtherTypes,   // rows that are not ricevute bancarie
        NotSaved,     // the pending changes could not be saved
        Cancelled,    // the dialog was cancelled
        Refused,      // the receivables hold data the bank refuses
        Written,      // the file is written and the distinta presented
        Failed,       // an error stopped the command (reported by the error trap)
    };

    RibaFileCommand(distinta::DistinteStore &store, archives::ErpSession &erp,
                    const archives::CompanyData &company, RibaFileDialog &dialog);

    // Runs the command on the distinta shown. unsavedChanges says whether it has changes not
    // yet saved; saveChanges is then called to recompute the totals, save without asking and
    // read the distinta again, and says whether it saved.
    Outcome cmdCreaFile(distinta::Distinta &d, bool unsavedChanges,
                        const std::function<bool(distinta::Distinta &)> &saveChanges);

    // The file the last run wrote, or was to write.
    const QString &outputPath() const { return m_outputPath; }
    // What refused the last run's file (its rows of other payment types, or its problems).
    const QStringList &problems() const { return m_problems; }

    // A customers' distinta (flg_tipo "C") gets the RiBa file; every other the
    // credit-transfer file.
    static bool isCustomersDistinta(const distinta::Testata &header);

    // OrvidaDir() + "D_STM/RIBA_" + the trimmed code + ".txt", and its bare name.
    static QString proposedPath(const QString &codDistinta);
    static QString fileTag(const QString &codDistinta);

private:
    Outcome run(distinta::Distinta &d, bool unsavedChanges,
                const std::function<bool(distinta::Distinta &)> &saveChanges);

    distinta::DistinteStore &m_store;
    archives::ErpSession &m_erp;
    archives::CompanyData m_company;
    RibaFileDialog &m_dialog;
    QString m_outputPath;
    QStringList m_problems;
};

} // namespace pg::bankfile
