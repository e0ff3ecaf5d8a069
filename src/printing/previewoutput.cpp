#include "previewoutput.h"

#include "printdocument.h"
#include "printeroutput.h"

#include <QPrintPreviewDialog>
#include <QPrinter>

namespace pg::printing {

PreviewOutput::PreviewOutput(std::optional<editor::PrinterInfo> printer, QWidget *parent)
    : m_printer(std::move(printer)), m_parent(parent)
{}

bool PreviewOutput::deliver(const PrintDocument &document, const QString &title)
{
    QPrinter printer(QPrinter::HighResolution);
    PrinterOutput::setUp(printer, m_printer);
    printer.setDocName(title);
    printer.setPageLayout(document.pageLayout());
    QPrintPreviewDialog preview(&printer, m_parent);
    preview.setWindowTitle(QStringLiteral("Anteprima di stampa - %1").arg(title));
    preview.setWindowState(preview.windowState() | Qt::WindowMaximized);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&document](QPrinter *target) { document.print(*target); });
    // The preview accepts only once the clerk has printed from it.
    return preview.exec() == QDialog::Accepted;
}

} // namespace pg::printing
