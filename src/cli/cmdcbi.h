#pragma once

#include "distintasession.h"

namespace pg::cli {

class CommandContext;

// pagamenti-cli cbi N [--out PATH]: the bank file of distinta N, as the main window's
// "File Bonifici" writes it, with the dialog's confirmation taken as given.
int runCbi(CommandContext &context);

} // namespace pg::cli
