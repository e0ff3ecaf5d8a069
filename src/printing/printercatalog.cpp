#include "printercatalog.h"

#include <utility>

namespace pg::editor {

std::optional<PrinterInfo> chooseSavedPrinter(const PrinterCatalog &catalog,
                                              const PrinterInfo &saved)
{
    for (const PrinterInfo &printer : catalog.installedPrinters())
        if (printer == saved)
            return printer;
    return catalog.defaultPrinter();
}

namespace {

std::function<std::optional<PrinterInfo>()> &pendingLookUp()
{
    static std::function<std::optional<PrinterInfo>()> lookUp;
    return lookUp;
}

} // namespace

std::optional<PrinterInfo> &currentPrinter()
{
    static std::optional<PrinterInfo> printer;
    if (std::function<std::optional<PrinterInfo>()> lookUp = std::exchange(pendingLookUp(), {}))
        printer = lookUp();
    return printer;
}

void lookUpSavedPrinter(std::function<std::optional<PrinterInfo>()> lookUp)
{
    pendingLookUp() = std::move(lookUp);
}

bool savedPrinterPending()
{
    return bool(pendingLookUp());
}

} // namespace pg::editor
