#pragma once

namespace pg {

// The locale of the program's numbers and dates. Where the system names none (the "C" or
// "POSIX" locale of a freshly installed machine or a service account), amounts, the report
// and the bank file follow the Italian locale, as on the clerk's own machine; a locale the
// system names is followed as it is. Called once at the start of each program.
void followSystemLocaleOrItalian();

} // namespace pg
