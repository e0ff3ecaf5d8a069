#include "outputchoice.h"

#include "lists/usersettings.h"

namespace pg::printing {

OutputKind outputKind(const UserSettings &settings, bool autoPrint)
{
    if (settings.editor != 99)
        return OutputKind::ExternalProgram;
    return autoPrint ? OutputKind::Printer : OutputKind::Preview;
}

} // namespace pg::printing
