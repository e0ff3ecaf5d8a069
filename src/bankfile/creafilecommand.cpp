#include "creafilecommand.h"

#include "bonificifile.h"
#include "filecommandsupport.h"
#include "sepaxmlfile.h"
#include "xsdvalidator.h"

#include "core/distintacode.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "core/vbformat.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"
#include "startup/errortrap.h"

#include <QDateTime>

namespace pg::bankfile {

CreaFileCommand::CreaFileCommand(distinta::DistinteStore &store, archives::ErpSession &erp,
                                 const archives::CompanyData &company, CreaFileDialog &dialog)
    : m_store(store), m_erp(erp), m_company(company), m_dialog(dialog)
{}

bool CreaFileCommand::ControllaValutaDistinta(const distinta::Testata &header)
{
    return isEuro(header.cod_valuta);
}

QString CreaFileCommand::proposedPath(const QString &codDistinta, BankFileFormat format)
{
    return stmFilePath(QStringLiteral("CBI_"), codDistinta, CreaFileFields::extension(format));
}

QString CreaFileCommand::fileTag(const QString &codDistinta, BankFileFormat format)
{
    return stmFileTag(QStringLiteral("CBI_"), codDistinta, CreaFileFields::extension(format));
}

QString CreaFileCommand::messaggioCucMancante()
{
    return QStringLiteral("Manca il codice CUC dell'azienda, necessario per il file XML dei "
                          "bonifici: indicarlo nelle Opzioni.");
}

QString CreaFileCommand::messaggioCucErrato(const QString &cuc)
{
    return QStringLiteral("Il codice CUC dell'azienda '") + cuc +
           QStringLiteral("' non è valido: deve essere di 8 lettere o cifre.");
}

QStringList CreaFileCommand::righeNonPagabili(const distinta::RecordSet<distinta::Riga> &rows)
{
    QStringList problems;
    for (int k = 0; k < rows.size(); ++k) {
        const distinta::Riga &row = rows.at(k);
        if (row.hasPayableAmount())
            continue;
        QString documento = row.des_num_doc.trimmed();
        if (row.des_serie_doc != u" ")
            documento += u'/' + row.des_serie_doc.trimmed();
        problems << QStringLiteral("Fornitore %1, documento %2 del %3, rata %4: importo %5")
                        .arg(row.cod_clifor.trimmed(), documento, dates::ymdToDmy(row.dat_data_doc),
                             row.des_num_rata.trimmed(),
                             vb::format(row.val_imp_indist_val.value_or(row.val_imp_residuo_val),
                                        u"#,0.00"));
    }
    return problems;
}

CreaFileCommand::Outcome
CreaFileCommand::cmdCreaFile(distinta::Distinta &d, bool unsavedChanges,
                             const std::function<bool(distinta::Distinta &)> &saveChanges)
{
    Outcome outcome = Outcome::Failed;
    underTrap(QStringLiteral("frmMain!Sub cmdCreaFile_ClickED()"),
              [&] { outcome = run(d, unsavedChanges, saveChanges); });
    return outcome;
}

CreaFileCommand::Outcome
CreaFileCommand::run(distinta::Distinta &d, bool unsavedChanges,
                     const std::function<bool(distinta::Distinta &)> &saveChanges)
{
    if (!d.hasHeader() || distintaNumber(d.header().cod_distinta) == 0)
        return Outcome::NotRun;

    if (!ControllaValutaDistinta(d.header())) {
        msgBox(QStringLiteral("ATTENZIONE!") + QStringLiteral("\r\n") +
                   QStringLiteral("Non è possibile generare un file bonifico per una distinta ") +
                   QStringLiteral("con valuta diversa dall'EURO!"),
               Buttons::Ok, Icon::Exclamation);
        return Outcome::NotEuro;
    }
    if (!m_store.ControllaDatiBanca(d.righe)) {
        msgBox(QStringLiteral("Si sono riscontrate anomalie nei dati della distinta. ") +
                   QStringLiteral("\r\n") +
                   QStringLiteral("Eseguire 'Controllo completezza distinta' "),
               Buttons::Ok, Icon::Critical);
        return Outcome::Anomalies;
    }
    if (unsavedChanges && (!saveChanges || !saveChanges(d)))
        return Outcome::NotSaved;

    const UserSettings &settings = currentSettings();
    const bool grouped = settings.raggruppa == 1;
    const bool modDescr = settings.modDescr == 1;
    const BankFileFormat proposed = m_proposedFormat.value_or(settings.formatoBonifici);

    const distinta::Testata &header = d.header();
    CreaFileFields fields;
    fields.codDistinta = header.cod_distinta;
    fields.dataDistinta = dates::toDmy(header.dat_data_creazione);
    if (!header.cod_sia_banca.isNull())
        fields.codSia = header.cod_sia_banca;
    fields.contoOrd = header.des_conto_ordinante;
    fields.rifMitt = header.des_riferimenti;
    fields.format = proposed;
    fields.fileTag = fileTag(header.cod_distinta, proposed);
    fields.fileName = proposedPath(header.cod_distinta, proposed);
    m_outputPath = fields.fileName;

    if (m_dialog.exec(fields, d, grouped) != CreaFileDialog::confirmed())
        return Outcome::Cancelled;
    m_outputPath = fields.fileName;
    if (fields.format != proposed) {
        currentSettings().formatoBonifici = fields.format;
        pSaveBonifici();
    }

    // The ordering data come back from the dialog into the header, which the file reads.
    if (d.header().cod_sia_banca != fields.codSia)
        d.editHeader().cod_sia_banca = fields.codSia;
    if (d.header().des_conto_ordinante != fields.contoOrd)
        d.editHeader().des_conto_ordinante = fields.contoOrd;
    if (d.header().des_riferimenti != fields.rifMitt)
        d.editHeader().des_riferimenti = fields.rifMitt;

    if (fields.format == BankFileFormat::SepaXml) {
        const QString cuc = cucForXml();
        if (cuc.isEmpty())
            return Outcome::NoCuc;
        const Outcome written = writeXml(d, grouped, cuc);
        if (written != Outcome::Written)
            return written;
    } else {
        // The flat file writes any amount it is given: a row paying nothing, or a transfer the
        // wrong way, is refused here as the XML message refuses it.
        const QStringList unpayable = righeNonPagabili(d.righe);
        if (!unpayable.isEmpty()) {
            msgBox(listedProblems(QStringLiteral("Il file dei bonifici non è stato creato: "
                                                 "l'importo in distinta di queste righe è nullo "
                                                 "o di segno opposto a quello della scadenza. "
                                                 "Correggere l'importo residuo e ripetere:"),
                                  unpayable),
                   Buttons::Ok, Icon::Exclamation);
            return Outcome::Refused;
        }
        if (!writeFile(d, grouped, modDescr))
            return Outcome::Failed;
    }

    markPresented(m_store, d, m_outputPath);
    return Outcome::Written;
}

bool CreaFileCommand::writeFile(distinta::Distinta &d, bool grouped, bool modDescr)
{
    // A copy of the rows the dispositions come from: the saves below must not move them.
    const distinta::RecordSet<distinta::Riga> rows = grouped ? d.righeRagg : d.righe;

    return writeWholeFile(m_outputPath, [&](QIODevice &file) {
        BonificiFile bonifici(m_erp, m_company, modDescr);
        bonifici.build(d.header(), rows);
        // Plain rows mark their due items in the suite (AggiornaScadenza) before the file is
        // written, as one journaled operation.
        if (!grouped && !markDueItems(m_store, d.header(), rows))
            return false;
        bonifici.write(file);
        return true;
    });
}

QString CreaFileCommand::cucForXml()
{
    QString cuc = m_cuc.trimmed().toUpper();
    if (cuc.isEmpty())
        cuc = currentSettings().cuc.trimmed().toUpper();
    if (cuc.isEmpty())
        cuc = m_company.cuc.trimmed().toUpper();
    if (cuc.isEmpty()) {
        cuc = m_dialog.askCuc().trimmed().toUpper();
        if (cuc.isEmpty()) {
            msgBox(messaggioCucMancante(), Buttons::Ok, Icon::Exclamation);
            return {};
        }
        if (SepaXmlFile::isValidCuc(cuc)) {
            currentSettings().cuc = cuc;
            pSaveBonifici();
        }
    }
    if (!SepaXmlFile::isValidCuc(cuc)) {
        msgBox(messaggioCucErrato(cuc), Buttons::Ok, Icon::Exclamation);
        return {};
    }
    return cuc;
}

CreaFileCommand::Outcome CreaFileCommand::writeXml(distinta::Distinta &d, bool grouped,
                                                   const QString &cuc)
{
    const distinta::RecordSet<distinta::Riga> rows = grouped ? d.righeRagg : d.righe;

    // Everything is checked before the suite or the disk is touched.
    SepaXmlFile sepa(m_erp, m_company);
    if (!sepa.build(d.header(), rows, cuc, QDateTime::currentDateTime())) {
        msgBox(SepaXmlFile::problemsMessage(sepa.problems()), Buttons::Ok, Icon::Exclamation);
        return Outcome::Refused;
    }
    const QByteArray document = sepa.document();
    const XsdValidator validator(XsdValidator::paymentRequestSchema());
    const QList<XsdValidator::Issue> issues = validator.validate(document);
    if (!issues.isEmpty()) {
        msgBox(sepa.invalidMessage(issues), Buttons::Ok, Icon::Critical);
        return Outcome::Invalid;
    }

    // Plain rows mark their due items as the flat file does.
    return writeMarkedDocument(m_outputPath, m_store, d.header(), grouped ? nullptr : &rows,
                               document)
               ? Outcome::Written
               : Outcome::Failed;
}

} // namespace pg::bankfile
