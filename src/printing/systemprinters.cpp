#include "systemprinters.h"

#include <QPrinterInfo>

namespace pg::editor {

namespace {

PrinterInfo describe(const QPrinterInfo &printer)
{
    return PrinterInfo{printer.printerName(), printer.makeAndModel(), printer.location()};
}

} // namespace

QList<PrinterInfo> SystemPrinters::installedPrinters() const
{
    QList<PrinterInfo> printers;
    for (const QPrinterInfo &printer : QPrinterInfo::availablePrinters())
        printers << describe(printer);
    return printers;
}

std::optional<PrinterInfo> SystemPrinters::defaultPrinter() const
{
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    if (printer.isNull())
        return std::nullopt;
    return describe(printer);
}

} // namespace pg::editor
