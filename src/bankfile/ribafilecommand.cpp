#include "ribafilecommand.h"

#include "creafiledialog.h"
#include "fieldfill.h"
#include "filecommandsupport.h"
#include "ribafile.h"

#include "core/distintacode.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"
#include "startup/errortrap.h"

namespace pg::bankfile {

RibaFileCommand::RibaFileCommand(distinta::DistinteStore &store, archives::ErpSession &erp,
                                 const archives::CompanyData &company, RibaFileDialog &dialog)
    : m_store(store), m_erp(erp), m_company(company), m_dialog(dialog)
{}

bool RibaFileCommand::isCustomersDistinta(const distinta::Testata &header)
{
    return header.flg_tipo == u"C";
}

QString RibaFileCommand::proposedPath(const QString &codDistinta)
{
    return stmFilePath(QStringLiteral("RIBA_"), codDistinta, QStringLiteral(".txt"));
}

QString RibaFileCommand::fileTag(const QString &codDistinta)
{
    return stmFileTag(QStringLiteral("RIBA_"), codDistinta, QStringLiteral(".txt"));
}

RibaFileCommand::Outcome
RibaFileCommand::cmdCreaFile(distinta::Distinta &d, bool unsavedChanges,
                             const std::function<bool(distinta::Distinta &)> &saveChanges)
{
    Outcome outcome = Outcome::Failed;
    underTrap(QStringLiteral("frmMain!Sub cmdCreaFile_ClickED()"),
              [&] { outcome = run(d, unsavedChanges, saveChanges); });
    return outcome;
}

RibaFileCommand::Outcome
RibaFileCommand::run(distinta::Distinta &d, bool unsavedChanges,
                     const std::function<bool(distinta::Distinta &)> &saveChanges)
{
    m_problems.clear();
    if (!d.hasHeader() || distintaNumber(d.header().cod_distinta) == 0)
        return Outcome::NotRun;
    const qint64 number = distintaNumber(d.header().cod_distinta);
    if (!isCustomersDistinta(d.header())) {
        msgBox(QStringLiteral("La distinta %1 è una distinta fornitori: il file RiBa si crea per "
                              "le distinte clienti.")
                   .arg(number),
               Buttons::Ok, Icon::Exclamation);
        return Outcome::NotCustomers;
    }
    if (!isEuro(d.header().cod_valuta)) {
        msgBox(QStringLiteral("ATTENZIONE!\r\nNon è possibile generare un file RiBa per una "
                              "distinta con valuta diversa dall'EURO!"),
               Buttons::Ok, Icon::Exclamation);
        return Outcome::NotEuro;
    }
    m_problems = RibaFile::otherPaymentTypes(d.righe);
    if (!m_problems.isEmpty()) {
        msgBox(RibaFile::otherPaymentTypesMessage(m_problems), Buttons::Ok, Icon::Exclamation);
        return Outcome::OtherTypes;
    }
    if (unsavedChanges && (!saveChanges || !saveChanges(d)))
        return Outcome::NotSaved;

    const distinta::Testata &header = d.header();
    RibaFileFields fields;
    fields.codDistinta = header.cod_distinta;
    fields.dataDistinta = dates::toDmy(header.dat_data_creazione);
    fields.banca = trimBlanks(header.des_ban_azi) +
                   QStringLiteral(" (ABI %1 CAB %2)")
                       .arg(header.cod_codiceabi.trimmed(), header.cod_codicecab.trimmed());
    fields.codSia = header.cod_sia_banca;
    // The clerk who groups the payments of a supplier is offered the grouping here too.
    fields.raggruppa = currentSettings().raggruppa == 1;
    fields.fileTag = fileTag(header.cod_distinta);
    fields.fileName = proposedPath(header.cod_distinta);
    m_outputPath = fields.fileName;
    if (m_dialog.exec(fields) != CreaFileDialog::confirmed())
        return Outcome::Cancelled;
    m_outputPath = fields.fileName;
    if (d.header().cod_sia_banca != fields.codSia)
        d.editHeader().cod_sia_banca = fields.codSia;

    // The file is built from a copy of the rows: the saves below must not move them.
    const distinta::RecordSet<distinta::Riga> rows = d.righe;
    RibaFile riba(m_erp, m_company);
    if (!riba.build(d.header(), rows, d.header().cod_sia_banca, fields.raggruppa)) {
        m_problems = riba.problems();
        msgBox(RibaFile::problemsMessage(m_problems), Buttons::Ok, Icon::Exclamation);
        return Outcome::Refused;
    }
    // The due items are marked in the suite first, as the flat credit-transfer file marks its
    // plain rows; when they cannot be, no file is written.
    if (!writeMarkedDocument(m_outputPath, m_store, d.header(), &rows, riba.document()))
        return Outcome::Failed;
    markPresented(m_store, d, m_outputPath);
    return Outcome::Written;
}

} // namespace pg::bankfile
