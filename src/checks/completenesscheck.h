#pragma once

#include "distinta/distinta.h"

#include <QLocale>
#include <QString>

#include <functional>

namespace pg::archives {
class ErpSession;
}
namespace pg::distinta {
class DistinteStore;
}

namespace pg::checks {

// The completeness check of a distinta (chkDatiBAnca): refreshes every row's bank data from
// the account master of the suite, saves the distinta, and checks each row for what payment
// by bank needs and for its due item in the suite. The findings go, line by line, into the
// report "controllo.txt" of the program directory (Windows-1252, CR LF), rewritten on every
// run. Messages go through the prompting seam; a failure is reported by the error trap as
// "frmMain!Sub chkDatiBAnca()".
class CompletenessCheck
{
public:
    // The errors of a row, with the numbers the report's legend gives them.
    enum Errore {
        MancaBanca = 1,       // bank or agency missing
        MancaConto = 2,       // account number missing (bank transfers)
        ScadenzaMancante = 3, // the due item is not in the suite
        ScadenzaPagata = 4,   // the due item is already paid
        // the amount in the distinta is zero, or of the sign opposite to the due item's: a
        // transfer the bank must never receive
        ImportoNonPagabile = 5,
    };

    struct Result
    {
        bool reportWritten = false; // the report holds the distinta's findings
        bool errorsFound = false;   // ... and they are errors: the report should be opened
        QString reportPath;
    };

    CompletenessCheck(distinta::DistinteStore &store, archives::ErpSession &erp);

    // Runs the check on the distinta shown. unsavedChanges says whether it has changes not yet
    // saved; saveChanges is then called to recompute the totals, save and read the distinta
    // again, and says whether it saved. When errors are found the caller opens the report
    // (the desktop program in the system's text editor, the command line prints its path);
    // otherwise the clerk has been told that there are none.
    Result chkDatiBAnca(distinta::Distinta &d, bool unsavedChanges,
                        const std::function<bool(distinta::Distinta &)> &saveChanges);

    // ProgramDir() + "controllo.txt".
    static QString reportPath();

    // One line of the report: account, document, dates, amount (formatted "#,#.00" under the
    // locale) and the error's number.
    static QString errorLine(const distinta::Riga &row, int errore,
                             const QLocale &locale = QLocale());

private:
    Result run(distinta::Distinta &d, bool unsavedChanges,
               const std::function<bool(distinta::Distinta &)> &saveChanges);
    void refreshBankData(distinta::Distinta &d);

    distinta::DistinteStore &m_store;
    archives::ErpSession &m_erp;
};

} // namespace pg::checks
