#include "previewoutput.h"

#include "printdocument.h"
#include "printeroutput.h"

#include <QAction>
#include <QGuiApplication>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QScreen>
#include <QTimer>

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
    // Most of the screen, whether or not a window manager maximises it, with the page as wide
    // as the window: readable at once.
    const QScreen *screen = m_parent ? m_parent->screen() : QGuiApplication::primaryScreen();
    if (screen) {
        const QRect available = screen->availableGeometry();
        preview.resize(available.size() * 0.9);
        preview.move(available.center() - preview.rect().center());
    }
    preview.setWindowState(preview.windowState() | Qt::WindowMaximized);
    // The preview's own "fit width", so that its toolbar shows the choice; once the dialog
    // runs, as it sets its zoom when shown.
    if (auto *fitWidth = preview.findChild<QAction *>(QStringLiteral("fitWidthAction")))
        QTimer::singleShot(0, fitWidth, [fitWidth] { fitWidth->trigger(); });
    else if (auto *pages = preview.findChild<QPrintPreviewWidget *>())
        QTimer::singleShot(0, pages, [pages] { pages->fitToWidth(); });
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&document](QPrinter *target) { document.print(*target); });
    // The preview accepts only once the clerk has printed from it.
    return preview.exec() == QDialog::Accepted;
}

} // namespace pg::printing
