#include "desktopcreafiledialog.h"

#include "frmcreafile.h"
#include "frmcreafiler.h"

#include <QInputDialog>

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

QString DesktopCreaFileDialog::askCuc()
{
    bool ok = false;
    const QString code = QInputDialog::getText(
        m_parent, QStringLiteral("Codice CUC"),
        QStringLiteral("Il file XML dei bonifici richiede il codice CUC dell'azienda\n"
                       "(8 lettere o cifre, assegnato dalla banca):"),
        QLineEdit::Normal, QString(), &ok);
    return ok ? code : QString();
}

} // namespace pg::bankfile
