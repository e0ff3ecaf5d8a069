#include "duitemprogress.h"

#include "lists/usersettings.h"
#include "ui/progresswindow.h"
#include "ui/waitcursor.h"

#include <QCoreApplication>
#include <QProgressDialog>

namespace pg::editor {

DueItemProgress::DueItemProgress(QWidget *parent)
    : m_dialog(ui::progressWindow(parent, QStringLiteral("SELEZIONE"),
                                  QStringLiteral("Lettura delle scadenze in corso...")))
{
    // The number of due items is not known in advance: the bar shows that work goes on.
    m_dialog->setRange(0, 0);
    m_dialog->setValue(0);
}

DueItemProgress::~DueItemProgress()
{
    delete m_dialog.data();
}

bool DueItemProgress::report(qint64 read, int added)
{
    if (!m_dialog)
        return true;
    m_dialog->setLabelText(QStringLiteral("Lettura delle scadenze in corso...\n"
                                          "Scadenze lette: %1    Aggiunte alla distinta: %2")
                               .arg(read)
                               .arg(added));
    // Keeps the busy bar moving; the value itself means nothing with an open range.
    m_dialog->setValue(int(read / DueItemLoader::ProgressInterval % 100));
    QCoreApplication::processEvents();
    return !m_dialog->wasCanceled();
}

DueItemLoader::Result DueItemProgress::addSelectedDueItems(archives::ErpSession &erp,
                                                           distinta::Distinta &d, QWidget *parent)
{
    ui::WaitCursor wait;
    DueItemLoader loader(erp, selectionValues(), currentSettings().desPag,
                         DueItemCausali::load(DueItemCausali::defaultPath()));
    DueItemProgress progress(parent);
    loader.setProgress(
        [&progress](qint64 read, int added) { return progress.report(read, added); });
    return loader.cmdGenera_Click(d);
}

} // namespace pg::editor
