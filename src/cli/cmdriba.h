#pragma once

namespace pg::cli {

class CommandContext;

// pagamenti-cli riba N [--out FILE] [--raggruppa]: the CBI RiBa file of the ricevute bancarie
// of customers' distinta N, as the main window's "File Bonifici" writes it for a customers'
// distinta, with the dialog's confirmation taken as given: the SIA code of the distinta, each
// due item its own receivable unless --raggruppa joins those of one customer and one due date.
int runRiba(CommandContext &context);

} // namespace pg::cli
