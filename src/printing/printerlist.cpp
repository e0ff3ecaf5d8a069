#include "printerlist.h"

#include "lists/usersettings.h"

namespace pg::printing {

PrinterList::PrinterList(const editor::PrinterCatalog &catalog) : m_catalog(&catalog) {}

void PrinterList::fill()
{
    m_printers = m_catalog->installedPrinters();
}

QString PrinterList::line(const editor::PrinterInfo &printer)
{
    return printer.deviceName + u',' + printer.driverName + u',' + printer.port;
}

QStringList PrinterList::lines() const
{
    QStringList result;
    for (const editor::PrinterInfo &printer : m_printers)
        result << line(printer);
    return result;
}

int PrinterList::currentIndex() const
{
    const std::optional<editor::PrinterInfo> &current = editor::currentPrinter();
    if (!current)
        return -1;
    return int(m_printers.indexOf(*current));
}

bool PrinterList::makeCurrent(int index)
{
    if (index < 0 || index >= m_printers.size())
        return false;
    const editor::PrinterInfo &chosen = m_printers.at(index);
    editor::currentPrinter() = chosen;
    UserSettings &settings = currentSettings();
    settings.deviceName = chosen.deviceName;
    settings.driverName = chosen.driverName;
    settings.port = chosen.port;
    pSaveSettings();
    return true;
}

QString PrinterList::printerLabel()
{
    const std::optional<editor::PrinterInfo> &current = editor::currentPrinter();
    return current ? current->description() : QString();
}

} // namespace pg::printing
