#pragma once

#include "distinta/distinta.h"
#include "editor/window/mainwindowload.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace pg::cli {

class CommandContext;

// The suite's company opened as the main window opens it (libraries, archives in their
// order, company records, release check, the clerk's settings, the distinta component), with
// one saved distinta read by its number: what the commands on a distinta work with.
class DistintaSession
{
public:
    DistintaSession();
    ~DistintaSession();

    // False, after telling why, when the company cannot be opened or the distinta does not
    // exist.
    bool open(qint64 number);
    // Only the company, for the commands that work on all distinte. False after telling why.
    bool openCompany();
    // The local database as start-up leaves it: created when missing (once the company's
    // archives are found where the parpe file says), converted when older. False after
    // telling why.
    static bool prepareLocalDatabase();

    distinta::DistinteStore &store() const { return *m_load->store(); }
    archives::ErpSession &erp() const { return *m_load->erp(); }
    const archives::CompanyData &company() const { return m_load->company(); }
    distinta::Distinta &distinta() { return m_distinta; }

    // The distinta number of the command's arguments: one whole number from 1 to 32767;
    // 0 (after the reason in *error) when it is not one.
    static qint64 number(const QStringList &positional, QString *error);

    // For the commands whose only argument is the distinta's number: the arguments parsed and
    // the distinta opened. The exit code to end with when that fails, after telling why;
    // nothing when the distinta is open.
    std::optional<int> openFromArguments(CommandContext &context);
    // The number the distinta was opened by.
    qint64 openedNumber() const { return m_number; }

private:
    std::unique_ptr<editor::PrinterCatalog> m_printers;
    std::unique_ptr<editor::MainWindowLoad> m_load;
    distinta::Distinta m_distinta;
    qint64 m_number = 0;
};

} // namespace pg::cli
