#pragma once

#include "printercatalog.h"

#include <QList>
#include <QStringList>

namespace pg::printing {

// The installed printers as the printer lists show them, one line each, and the choice of
// the printer in use. A machine without printers gives an empty list, and choosing from it
// changes nothing.
class PrinterList
{
public:
    explicit PrinterList(const editor::PrinterCatalog &catalog);

    // Reads the installed printers again (the lists fill on opening).
    void fill();
    const QList<editor::PrinterInfo> &printers() const { return m_printers; }
    // "DeviceName,DriverName,Port", one per printer.
    QStringList lines() const;
    static QString line(const editor::PrinterInfo &printer);

    // The line of the printer in use; -1 when it is not among them (or there is none).
    int currentIndex() const;

    // Makes the printer of that line the printer in use and remembers its device name,
    // driver name and port in the clerk's settings. False, changing nothing, for an index
    // that is not a line.
    bool makeCurrent(int index);

    // The printer in use as the main window shows it: device name " su " port; empty when
    // there is none.
    static QString printerLabel();

private:
    const editor::PrinterCatalog *m_catalog;
    QList<editor::PrinterInfo> m_printers;
};

} // namespace pg::printing
