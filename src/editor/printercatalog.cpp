#include "printercatalog.h"

namespace pg::editor {

std::optional<PrinterInfo> chooseSavedPrinter(const PrinterCatalog &catalog,
                                              const PrinterInfo &saved)
{
    for (const PrinterInfo &printer : catalog.installedPrinters())
        if (printer == saved)
            return printer;
    return catalog.defaultPrinter();
}

std::optional<PrinterInfo> &currentPrinter()
{
    static std::optional<PrinterInfo> printer;
    return printer;
}

} // namespace pg::editor
