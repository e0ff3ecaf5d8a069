#pragma once

#include "printing/printercatalog.h"

#include <QCursor>
#include <QGuiApplication>

namespace pg::test {

// The printers of a test machine: as many as the test puts in, none by default. Notes
// whether the busy pointer was showing each time the list was asked for.
class FakePrinters : public editor::PrinterCatalog
{
public:
    QList<editor::PrinterInfo> printers;
    mutable QList<bool> busyWhenAsked;

    QList<editor::PrinterInfo> installedPrinters() const override
    {
        const bool gui = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
        busyWhenAsked << (gui && QGuiApplication::overrideCursor() &&
                          QGuiApplication::overrideCursor()->shape() == Qt::WaitCursor);
        return printers;
    }
    std::optional<editor::PrinterInfo> defaultPrinter() const override
    {
        if (printers.isEmpty())
            return std::nullopt;
        return printers.first();
    }

    static FakePrinters office()
    {
        FakePrinters fake;
        fake.printers = {
            {QStringLiteral("Ufficio"), QStringLiteral("HP LaserJet 4250"),
             QStringLiteral("Amministrazione, piano 1")},
            {QStringLiteral("Tesoreria"), QStringLiteral("Brother HL-L5100DN"),
             QStringLiteral("ipp://10.0.0.7/ipp/print")},
            {QStringLiteral("PDF"), QStringLiteral("Generic CUPS-PDF Printer"), QString()},
        };
        return fake;
    }
};

} // namespace pg::test
