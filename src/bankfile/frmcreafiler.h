#pragma once

#include "frmcreafile.h"

class QTableView;

namespace pg::archives {
class ErpSession;
}
namespace pg::distinta {
class DistinteStore;
}

namespace pg::bankfile {

class ScadenzeModel;

// "Creazione File Bonifici" for grouped rows: the plain dialog with the list of the
// distinta's payments (its grouped rows), whose descriptions the clerk may edit before they
// go into the file. Confirming takes the edited descriptions into the distinta and saves them
// (SalvaDesc) when any was changed; cancelling leaves the distinta as it was.
class frmCreaFileR : public frmCreaFile
{
    Q_OBJECT

public:
    frmCreaFileR(distinta::DistinteStore &store, distinta::Distinta &d, archives::ErpSession *erp,
                 QWidget *parent = nullptr);

    ScadenzeModel *model() const { return m_model; }
    QTableView *list() const { return m_lvwScadenze; }

protected:
    void confirmed() override;

private:
    distinta::DistinteStore &m_store;
    distinta::Distinta &m_d;
    ScadenzeModel *m_model;
    QTableView *m_lvwScadenze;
};

} // namespace pg::bankfile
