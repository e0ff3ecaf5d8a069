#pragma once

namespace pg::cli {

class CommandContext;

// pagamenti-cli print N --pdf FILE [--final] [--grouped] [--totals] [--date GG/MM/AAAA]
// [--template NOME]: distinta N printed to a PDF file as the print dialog prints it. A test
// print unless --final; a final print moves the distinta to "D". A distinta already printed
// in final form is printed as final, as the dialog offers only that.
int runPrint(CommandContext &context);

} // namespace pg::cli
