#pragma once

#include "duitemloader.h"

#include <QPointer>
#include <QProgressDialog>

class QWidget;

namespace pg::editor {

// The walk over the due items with the clerk watching: a progress window (shown when the walk
// takes more than a moment) that counts the due items read and the rows added, and whose
// "Annulla" stops the walk keeping the rows added so far. The window stays responsive: the
// events waiting are processed at every report of the walk.
class DueItemProgress
{
public:
    explicit DueItemProgress(QWidget *parent);
    ~DueItemProgress();
    DueItemProgress(const DueItemProgress &) = delete;
    DueItemProgress &operator=(const DueItemProgress &) = delete;

    // The walk's report: updates the window; false once the clerk cancelled.
    bool report(qint64 read, int added);
    QProgressDialog *dialog() const { return m_dialog; }

    // The main window's walk after a confirmed selection: the program-wide selection values,
    // the clerk's description template and "causali.ini", with the progress window.
    static DueItemLoader::Result addSelectedDueItems(archives::ErpSession &erp,
                                                     distinta::Distinta &d, QWidget *parent);

private:
    QPointer<QProgressDialog> m_dialog;
};

} // namespace pg::editor
