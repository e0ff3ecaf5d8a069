#include "printprogress.h"

#include "ui/progresswindow.h"

#include <QCoreApplication>
#include <QProgressDialog>

namespace pg::printing {

PrintProgress::PrintProgress(QWidget *parent)
    : m_dialog(ui::progressWindow(parent, QStringLiteral("STAMPA DISTINTA"),
                                  QStringLiteral("Stampa in corso...")))
{}

PrintProgress::~PrintProgress()
{
    delete m_dialog.data();
}

bool PrintProgress::report(int page, int pages)
{
    if (!m_dialog)
        return true;
    m_dialog->setRange(0, pages);
    m_dialog->setLabelText(QStringLiteral("Stampa in corso: pagina %1 di %2").arg(page).arg(pages));
    m_dialog->setValue(page - 1);
    QCoreApplication::processEvents();
    return !m_dialog->wasCanceled();
}

PrintDocument::Progress PrintProgress::progress()
{
    return [this](int page, int pages) { return report(page, pages); };
}

} // namespace pg::printing
