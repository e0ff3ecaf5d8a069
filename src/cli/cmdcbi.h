#pragma once

#include "distintasession.h"

namespace pg::cli {

class CommandContext;

// pagamenti-cli cbi N [--format xml|flat] [--cuc CODICE] [--out PATH]: the bank file of
// suppliers' distinta N, as the main window's "File Bonifici" writes it, with the dialog's confirmation
// taken as given: the flat file unless the XML message is asked for, whose CBI code of the
// company may be given with --cuc (it is not remembered).
int runCbi(CommandContext &context);

} // namespace pg::cli
