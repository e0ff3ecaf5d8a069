#pragma once

#include <QString>

namespace pg::printing {

class PrintDocument;

// Where a print run sends its merged document: the printer, the preview window, a PDF file
// or the external program of the "Editor" setting.
class PrintOutput
{
public:
    virtual ~PrintOutput() = default;

    // True when the document went out (printed, written, handed to the program); false when
    // it did not (the preview was closed without printing, or the output failed after
    // telling the clerk why). title names the document (the print job, the file).
    virtual bool deliver(const PrintDocument &document, const QString &title) = 0;
};

} // namespace pg::printing
