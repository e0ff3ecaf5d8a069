#include "desktopcreafiledialog.h"

#include "frmcreafile.h"
#include "frmcreafiler.h"
#include "frmcreafileriba.h"

#include <QInputDialog>

#include <memory>

namespace pg::bankfile {

namespace {

// Shows the dialog modally with the fields, and takes back what it gives when confirmed.
template<typename Dialog, typename Fields>
QString shown(Dialog &dialog, Fields &fields)
{
    dialog.setFields(fields);
    dialog.exec();
    if (dialog.resultMarker() == CreaFileDialog::confirmed())
        fields = dialog.fields();
    return dialog.resultMarker();
}

} // namespace

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
    return shown(*dialog, fields);
}

QString DesktopCreaFileDialog::exec(RibaFileFields &fields)
{
    frmCreaFileRiba dialog(m_parent);
    return shown(dialog, fields);
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
