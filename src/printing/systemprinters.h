#pragma once

#include "printercatalog.h"

namespace pg::editor {

// The printers of this machine as the print system lists them: the printer's name as device,
// its make and model as driver, its location as port.
class SystemPrinters : public PrinterCatalog
{
public:
    QList<PrinterInfo> installedPrinters() const override;
    std::optional<PrinterInfo> defaultPrinter() const override;
};

} // namespace pg::editor
