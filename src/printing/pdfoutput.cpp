#include "pdfoutput.h"

#include "printdocument.h"

#include "core/prompter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPdfWriter>

namespace pg::printing {

PdfOutput::PdfOutput(const QString &path) : m_path(path) {}

QString PdfOutput::pathProblem(const QString &path)
{
    const QFileInfo file(path);
    if (!file.absoluteDir().exists())
        return QStringLiteral("Impossibile scrivere il file %1: la cartella %2 non esiste.")
            .arg(QDir::toNativeSeparators(file.absoluteFilePath()),
                 QDir::toNativeSeparators(file.absolutePath()));
    if (file.isDir())
        return QStringLiteral("Impossibile scrivere il file %1: è una cartella.")
            .arg(QDir::toNativeSeparators(file.absoluteFilePath()));
    return {};
}

bool PdfOutput::deliver(const PrintDocument &document, const QString &title)
{
    m_pages = 0;
    if (const QString problem = pathProblem(m_path); !problem.isEmpty()) {
        msgBox(problem, Buttons::Ok, Icon::Critical);
        return false;
    }
    {
        QPdfWriter writer(m_path);
        writer.setTitle(title);
        writer.setCreator(Prompter::programName());
        writer.setResolution(600);
        writer.setPageLayout(document.pageLayout());
        m_pages = document.print(writer);
    }
    if (m_pages == PrintDocument::Cancelled) {
        // A stopped print leaves no half of a document behind.
        QFile::remove(m_path);
        m_pages = 0;
        return false;
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
