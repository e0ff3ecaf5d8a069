#include "progresswindow.h"

#include <QProgressDialog>

namespace pg::ui {

QProgressDialog *progressWindow(QWidget *parent, const QString &title, const QString &label)
{
    auto *dialog = new QProgressDialog(parent);
    dialog->setWindowTitle(title);
    dialog->setLabelText(label);
    dialog->setCancelButtonText(QStringLiteral("&Annulla"));
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setAutoClose(false);
    dialog->setAutoReset(false);
    dialog->setMinimumDuration(400);
    return dialog;
}

} // namespace pg::ui
