#pragma once

#include "detailfield.h"

#include <QDialog>

class QGroupBox;
class QLineEdit;

namespace pg::archives {
class ErpRecord;
class ErpSession;
} // namespace pg::archives

namespace pg::editor {

// A read-only detail window: its caption, a frame with the window's data, and within it one
// box per section with the lines of that section. The due item (cmdZoom) and the customer or
// supplier (cmdZoomCli) of a row are shown in it.
class DetailDialog : public QDialog
{
    Q_OBJECT

public:
    DetailDialog(const QString &caption, const QString &frame, const DetailFields &fields,
                 QWidget *parent = nullptr);

    QGroupBox *frame() const { return m_frame; }
    // The box that shows a line, by section and label; nullptr when there is none.
    QLineEdit *valueBox(const QString &section, const QString &label) const;

    // The detail of a due item, as read from the suite.
    static void showDueItem(const archives::ErpRecord &dueItem, archives::ErpSession *erp,
                            QWidget *parent);
    // The detail of a customer or supplier ("Zoom Fornitore"/"Dati Fornitore" or "Zoom
    // Cliente"/"Dati Cliente").
    static void showAccount(archives::ErpSession &erp, const QString &code, const QString &caption,
                            const QString &frame, QWidget *parent);

private:
    QGroupBox *m_frame;
};

} // namespace pg::editor
