#pragma once

namespace pg::cli {

class CommandContext;

// pagamenti-cli check N: the completeness check of distinta N, as the main window runs it.
// Prints the path of the report; the exit status is 1 when the report holds errors.
int runCheck(CommandContext &context);

} // namespace pg::cli
