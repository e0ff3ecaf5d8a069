#pragma once

namespace pg::cli {

class CommandContext;

// pagamenti-cli new: a new distinta from a selection of due items given as options, saved as
// the desktop program saves it; its number on standard output.
int runNew(CommandContext &context);

} // namespace pg::cli
