#include "desktopcreafiledialog.h"

#include "frmcreafile.h"
#include "frmcreafiler.h"

#include <memory>

namespace pg::bankfile {

DesktopCreaFileDialog::DesktopCreaFileDialog(distinta::DistinteStore &store,
                                             archives::ErpSession *erp, QWidget *parent)
    : m_store(store), m_erp(erp), m_parent(parent)
{}

QString DesktopCreaFileDialog::exec(CreaFileFields &fields, distinta::Distinta &d, bool grouped)
{
    std::unique_ptr<frmCreaFile> dialog;
    if (grouped)
        dialog = std::make_unique<frmCreaFileR>(m_store, d, m_erp, m_parent);
    else
        dialog = std::make_unique<frmCreaFile>(m_parent);
    dialog->setFields(fields);
    dialog->exec();
    if (dialog->resultMarker() == confirmed())
        fields = dialog->fields();
    return dialog->resultMarker();
}

} // namespace pg::bankfile
