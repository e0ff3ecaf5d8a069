#pragma once

#include <QString>

class QProgressDialog;
class QWidget;

namespace pg::ui {

// The window of a long piece of work that the clerk may stop ("Annulla"): modal to its
// window, shown only when the work takes more than a moment, left open until its owner closes
// it. The walk over the due items and the print use it.
QProgressDialog *progressWindow(QWidget *parent, const QString &title, const QString &label);

} // namespace pg::ui
