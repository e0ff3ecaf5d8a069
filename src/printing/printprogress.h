#pragma once

#include "printdocument.h"

#include <QPointer>
#include <QProgressDialog>

class QWidget;

namespace pg::printing {

// A print with the clerk watching: a window (shown when painting takes more than a moment)
// that counts the pages and whose "Annulla" stops the print, so that nothing of it goes out
// (a printer's job is aborted). The window stays responsive: the events waiting are processed
// before every page.
class PrintProgress
{
public:
    explicit PrintProgress(QWidget *parent);
    ~PrintProgress();
    PrintProgress(const PrintProgress &) = delete;
    PrintProgress &operator=(const PrintProgress &) = delete;

    // The print's report before a page: updates the window; false once the clerk cancelled.
    bool report(int page, int pages);
    // The same as a progress of the print.
    PrintDocument::Progress progress();
    QProgressDialog *dialog() const { return m_dialog; }

private:
    QPointer<QProgressDialog> m_dialog;
};

} // namespace pg::printing
