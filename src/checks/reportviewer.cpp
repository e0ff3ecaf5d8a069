#include "reportviewer.h"

#include "ui/documentwindow.h"

#include <QFileInfo>

namespace pg::checks {

bool openReport(const QString &path, QWidget *parent)
{
    return ui::DocumentWindow::open(path, ui::DocumentWindow::Kind::Text,
                                    QFileInfo(path).fileName(), parent);
}

} // namespace pg::checks
