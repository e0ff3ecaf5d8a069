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
// otherwise, shown modally over the main window.
class DesktopCreaFileDialog : public CreaFileDialog
{
public:
    DesktopCreaFileDialog(distinta::DistinteStore &store, archives::ErpSession *erp,
                          QWidget *parent);

    QString exec(CreaFileFields &fields, distinta::Distinta &d, bool grouped) override;

private:
    distinta::DistinteStore &m_store;
    archives::ErpSession *m_erp;
    QWidget *m_parent;
};

} // namespace pg::bankfile
