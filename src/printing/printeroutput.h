#pragma once

#include "printoutput.h"

#include "printercatalog.h"

#include <optional>

class QPrinter;

namespace pg::printing {

// The document sent straight to a printer ("Invia direttamente alla stampante"): the
// printer in use, or the system's default one when none was chosen.
class PrinterOutput : public PrintOutput
{
public:
    explicit PrinterOutput(std::optional<editor::PrinterInfo> printer);
    bool deliver(const PrintDocument &document, const QString &title) override;

    // A printer set up for the printer in use (or the default one) and the document's pages.
    static void setUp(QPrinter &printer, const std::optional<editor::PrinterInfo> &info);

    // MandaInStampa: plain text (a report, a list) on the printer in use, in a fixed-width
    // font so that its columns stay aligned. False after its message when nothing printed.
    static bool MandaInStampa(const QString &text, const QString &title);

private:
    std::optional<editor::PrinterInfo> m_printer;
};

} // namespace pg::printing
