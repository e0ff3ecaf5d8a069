#pragma once

#include "creafiledialog.h"

class QWidget;

namespace pg::archives {
class ErpSession;
}
namespace pg::distinta {
class DistinteStore;
}

namespace pg::bankfile {

// The file dialog of the desktop program: frmCreaFileR for grouped rows, frmCreaFile
// otherwise, shown modally over the main window; the company's CBI code is asked in a small
// text box.
class DesktopCreaFileDialog : public CreaFileDialog
{
public:
    DesktopCreaFileDialog(distinta::DistinteStore &store, archives::ErpSession *erp,
                          QWidget *parent);

    QString exec(CreaFileFields &fields, distinta::Distinta &d, bool grouped) override;
    QString askCuc() override;

private:
    distinta::DistinteStore &m_store;
    archives::ErpSession *m_erp;
    QWidget *m_parent;
};

} // namespace pg::bankfile
