#include "pdfoutput.h"

#include "printdocument.h"

#include "core/prompter.h"

#include <QDir>
#include <QPdfWriter>

namespace pg::printing {

PdfOutput::PdfOutput(const QString &path) : m_path(path) {}

bool PdfOutput::deliver(const PrintDocument &document, const QString &title)
{
    m_pages = 0;
    {
        QPdfWriter writer(m_path);
        writer.setTitle(title);
        writer.setCreator(Prompter::programName());
        writer.setResolution(600);
        writer.setPageLayout(document.pageLayout());
        m_pages = document.print(writer);
    }
    if (m_pages == 0) {
        msgBox(
            QStringLiteral("Impossibile scrivere il file %1").arg(QDir::toNativeSeparators(m_path)),
            Buttons::Ok, Icon::Critical);
        return false;
    }
    return true;
}

} // namespace pg::printing
