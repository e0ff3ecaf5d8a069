#pragma once

#include "printerlist.h"

#include <QDialog>

class QListView;
class QPushButton;
class QStringListModel;

namespace pg::printing {

// shr_frmPrinters ("Scelta Stampante"): one line per installed printer, the printer in use
// selected; confirming makes the selected printer the one in use and remembers it,
// "&Annulla" closes without change.
class PrintersDialog : public QDialog
{
    Q_OBJECT

public:
    explicit PrintersDialog(const editor::PrinterCatalog &printers, QWidget *parent = nullptr);

    // Command1: the selected printer becomes the printer in use; the dialog closes.
    void Command1_Click();
    // Whether the printer in use was changed by the dialog.
    bool printerChanged() const { return m_changed; }

    QListView *mTxtList1() const { return m_list; }
    QPushButton *Command1() const { return m_ok; }
    QPushButton *Command2() const { return m_cancel; }

private:
    void Form_Load();

    PrinterList m_printers;
    QListView *m_list;
    QStringListModel *m_lines;
    QPushButton *m_ok;
    QPushButton *m_cancel;
    bool m_changed = false;
};

} // namespace pg::printing
