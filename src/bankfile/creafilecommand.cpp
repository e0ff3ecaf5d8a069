#include "creafilecommand.h"

#include "bonificifile.h"
#include "sepaxmlfile.h"
#include "xsdvalidator.h"

#include "core/apperror.h"
#include "core/distintacode.h"
#include "core/filewriteerror.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QDateTime>
#include <QDir>
#include <QSaveFile>

namespace pg::bankfile {

CreaFileCommand::CreaFileCommand(distinta::DistinteStore &store, archives::ErpSession &erp,
                                 const archives::CompanyData &company, CreaFileDialog &dialog)
    : m_store(store), m_erp(erp), m_company(company), m_dialog(dialog)
{}

bool CreaFileCommand::ControllaValutaDistinta(const distinta::Testata &header)
{
    const QString code = header.cod_valuta.trimmed();
    return code.isEmpty() || code.compare(QStringLiteral("EU"), Qt::CaseInsensitive) == 0;
}

QString CreaFileCommand::proposedPath(const QString &codDistinta, BankFileFormat format)
{
    return OrvidaDir() + QStringLiteral("D_STM/CBI_") + codDistinta.trimmed() +
           CreaFileFields::extension(format);
}

QString CreaFileCommand::fileTag(const QString &codDistinta, BankFileFormat format)
{
    return QStringLiteral("/CBI_") + codDistinta.trimmed() + CreaFileFields::extension(format);
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

namespace {

AppError pathError(const QString &path, const QString &reason)
{
    return AppError(AppError::PathFileAccess, pathFileAccessText(path, reason));
}

} // namespace

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
    } else if (!writeFile(d, grouped, modDescr)) {
        return Outcome::Failed;
    }

    m_store.AggiornaFlagStato(d, QStringLiteral("F"));
    msgBox(QStringLiteral("Elaborazione Completata"));
    return Outcome::Written;
}

bool CreaFileCommand::markDueItems(const distinta::Testata &header,
                                   const distinta::RecordSet<distinta::Riga> &rows)
{
    QList<distinta::Riga> list;
    list.reserve(rows.size());
    for (int k = 0; k < rows.size(); ++k)
        list << rows.at(k);
    return m_store.AggiornaScadenze(header, list, QStringLiteral("cmdCreaFile"));
}

bool CreaFileCommand::writeFile(distinta::Distinta &d, bool grouped, bool modDescr)
{
    // A copy of the rows the dispositions come from: the saves below must not move them.
    const distinta::RecordSet<distinta::Riga> rows = grouped ? d.righeRagg : d.righe;

    QSaveFile file(m_outputPath);
    if (!file.open(QIODevice::WriteOnly))
        throw pathError(m_outputPath, file.errorString());

    BonificiFile bonifici(m_erp, m_company, modDescr);
    bonifici.build(d.header(), rows);
    // Plain rows mark their due items in the suite (AggiornaScadenza) before the file is
    // written, as one journaled operation.
    if (!grouped && !markDueItems(d.header(), rows))
        return false;
    bonifici.write(file);
    if (!file.commit())
        throw pathError(m_outputPath, fileWriteProblem(file, file.size()));
    return true;
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

    QSaveFile file(m_outputPath);
    if (!file.open(QIODevice::WriteOnly))
        throw pathError(m_outputPath, file.errorString());
    // Plain rows mark their due items as the flat file does.
    if (!grouped && !markDueItems(d.header(), rows))
        return Outcome::Failed;
    if (file.write(document) != document.size() || !file.commit())
        throw pathError(m_outputPath, fileWriteProblem(file, document.size()));
    return Outcome::Written;
}

} // namespace pg::bankfile
