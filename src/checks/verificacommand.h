#pragma once

class QWidget;

namespace pg::archives {
class ErpSession;
}
namespace pg::distinta {
class DistinteStore;
}

namespace pg::checks {

// "Verifica scadenze" of the main window: the reconciliation of the suite's due items with
// the saved distinte, with its progress shown while the archive is walked. When it finds
// disagreements their report ("verifica.txt") is opened for the clerk, who is asked whether
// to set the items as the distinte say; otherwise the clerk is told all agrees.
void cmdVerifica(distinta::DistinteStore &store, archives::ErpSession &erp, QWidget *parent);

} // namespace pg::checks
