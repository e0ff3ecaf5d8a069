#pragma once

namespace pg {
struct UserSettings;
}

namespace pg::printing {

// Where the desktop program sends a print: the external program of the "Editor" setting
// when it is not 99; otherwise straight to the printer with "Invia direttamente alla
// stampante", and to the preview window without it.
enum class OutputKind { Preview, Printer, ExternalProgram };

OutputKind outputKind(const UserSettings &settings, bool autoPrint);

} // namespace pg::printing
