#include "printeroutput.h"

#include "printdocument.h"

#include "core/prompter.h"
#include "startup/errortrap.h"

#include <QFont>
#include <QPrinter>
#include <QTextDocument>

namespace pg::printing {

namespace {

// A direct print goes to a printer of the system, never to a file: without one (no printer
// installed, none by default) Qt would fall back to PDF output, which prints nothing.
bool printerMissing(const QPrinter &printer)
{
    if (printer.outputFormat() == QPrinter::NativeFormat && printer.isValid())
        return false;
    msgBox(QStringLiteral("Nessuna stampante disponibile: la stampa non è stata eseguita."),
           Buttons::Ok, Icon::Exclamation);
    return true;
}

} // namespace

PrinterOutput::PrinterOutput(std::optional<editor::PrinterInfo> printer)
    : m_printer(std::move(printer))
{}

void PrinterOutput::setUp(QPrinter &printer, const std::optional<editor::PrinterInfo> &info)
{
    if (info && !info->deviceName.isEmpty())
        printer.setPrinterName(info->deviceName);
}

bool PrinterOutput::deliver(const PrintDocument &document, const QString &title)
{
    QPrinter printer(QPrinter::HighResolution);
    setUp(printer, m_printer);
    if (printerMissing(printer))
        return false;
    printer.setDocName(title);
    printer.setPageLayout(document.pageLayout());
    const int pages = document.print(printer);
    if (pages > 0)
        return true;
    // Stopped by the clerk: the job was aborted, nothing went out.
    if (pages == PrintDocument::Cancelled)
        return false;
    msgBox(QStringLiteral("Impossibile stampare sulla stampante %1").arg(printer.printerName()),
           Buttons::Ok, Icon::Critical);
    return false;
}

bool PrinterOutput::MandaInStampa(const QString &text, const QString &title)
{
    bool printed = false;
    underTrap(QStringLiteral("frmMain!Sub MandaInStampa()"), [&] {
        QPrinter printer(QPrinter::HighResolution);
        setUp(printer, editor::currentPrinter());
        if (printerMissing(printer))
            return;
        printer.setDocName(title);
        QTextDocument doc;
        QFont font(QStringLiteral("Courier New"));
        font.setStyleHint(QFont::Monospace);
        font.setPointSize(9);
        doc.setDefaultFont(font);
        doc.setPlainText(text);
        doc.print(&printer);
        printed = true;
    });
    return printed;
}

} // namespace pg::printing
