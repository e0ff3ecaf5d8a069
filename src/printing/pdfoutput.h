#pragma once

#include "printoutput.h"

namespace pg::printing {

// The document written as a PDF file (the command line's print).
class PdfOutput : public PrintOutput
{
public:
    explicit PdfOutput(const QString &path);
    bool deliver(const PrintDocument &document, const QString &title) override;
    int pagesWritten() const { return m_pages; }

    // Why a PDF file cannot be written at that path (its folder missing, a folder in its
    // place); empty when it can be tried.
    static QString pathProblem(const QString &path);

private:
    QString m_path;
    int m_pages = 0;
};

} // namespace pg::printing
