#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace pg::editor {

// An installed printer as the program names and remembers it: device name, driver name and
// port (for the desktop: the printer's name, its make and model, its location or address).
struct PrinterInfo
{
    QString deviceName;
    QString driverName;
    QString port;

    // How the printer in use is shown to the clerk: "<device> su <port>".
    QString description() const { return deviceName + QStringLiteral(" su ") + port; }
    bool operator==(const PrinterInfo &) const = default;
};

// The printers installed on this machine.
class PrinterCatalog
{
public:
    virtual ~PrinterCatalog() = default;
    virtual QList<PrinterInfo> installedPrinters() const = 0;
    virtual std::optional<PrinterInfo> defaultPrinter() const = 0;
};

// The printer in use: the first installed printer whose device name, driver name and port all
// equal the remembered ones; otherwise the system's default printer, when there is one.
std::optional<PrinterInfo> chooseSavedPrinter(const PrinterCatalog &catalog,
                                              const PrinterInfo &saved);

// The printer in use for the whole program. A pending look-up of the saved printer is done
// first.
std::optional<PrinterInfo> &currentPrinter();

// Makes the saved printer current when the printer is first needed, instead of now. Asking
// the system's print service for its printers loads its libraries and, where network printers
// answer slowly, can take seconds: the main window shows without waiting for it and asks right
// after (or whatever needs the printer asks first).
void lookUpSavedPrinter(std::function<std::optional<PrinterInfo>()> lookUp);
bool savedPrinterPending();

} // namespace pg::editor
