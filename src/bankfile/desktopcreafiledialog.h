#pragma once

#include "creafiledialog.h"
#include "ribafiledialog.h"

class QWidget;

namespace pg::archives {
class ErpSession;
}
namespace pg::distinta {
class DistinteStore;
}

namespace pg::bankfile {

// The file dialogs of the desktop program, shown modally over the main window: for the
// credit-transfer file frmCreaFileR for grouped rows, frmCreaFile otherwise, and the
// company's CBI code asked in a small text box; for the RiBa file frmCreaFileRiba.
class DesktopCreaFileDialog : public CreaFileDialog, public RibaFileDialog
{
public:
    DesktopCreaFileDialog(distinta::DistinteStore &store, archives::ErpSession *erp,
                          QWidget *parent);

    QString exec(CreaFileFields &fields, distinta::Distinta &d, bool grouped) override;
    QString askCuc() override;
    QString exec(RibaFileFields &fields) override;

private:
    distinta::DistinteStore &m_store;
    archives::ErpSession *m_erp;
    QWidget *m_parent;
};

} // namespace pg::bankfile
