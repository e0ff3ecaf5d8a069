#include "completenesscheck.h"

#include "reportfile.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/apperror.h"
#include "core/distintacode.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "core/vbformat.h"
#include "distinta/distintestore.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QHash>

#include <optional>

namespace pg::checks {

namespace {

const QString Rule = QString(80, u'-');

// The bank data of an account in the suite: bank (5), agency (5), account number (20).
struct BankData
{
    QString banca;
    QString agenzia;
    QString conto;
};

bool isBlank(const QString &text)
{
    return text.trimmed().isEmpty();
}

} // namespace

CompletenessCheck::CompletenessCheck(distinta::DistinteStore &store, archives::ErpSession &erp)
    : m_store(store), m_erp(erp)
{}

QString CompletenessCheck::reportPath()
{
    return ProgramDir() + QStringLiteral("controllo.txt");
}

QString CompletenessCheck::errorLine(const distinta::Riga &row, int errore, const QLocale &locale)
{
    // Only the suite's single blank means no series, written as two blanks; any other text,
    // an empty one included, follows a "/".
    const QString serie =
        row.des_serie_doc == u" " ? QStringLiteral("  ") : u'/' + row.des_serie_doc;
    return row.cod_clifor + QStringLiteral("    ") + row.des_num_doc + serie +
           QStringLiteral("  ") + dates::ymdToDmy(row.dat_data_doc) + row.des_num_rata +
           QStringLiteral("  ") + dates::ymdToDmy(row.dat_data_scad) + QStringLiteral("  ") +
           vb::format(vb::format(row.val_imp_dapag_val, u"#,#.00", locale), u"@@@@@@@@@@@@") +
           QStringLiteral("  ") + QString::number(errore).rightJustified(6, u' ');
}

CompletenessCheck::Result
CompletenessCheck::chkDatiBAnca(distinta::Distinta &d, bool unsavedChanges,
                                const std::function<bool(distinta::Distinta &)> &saveChanges)
{
    Result result;
    underTrap(QStringLiteral("frmMain!Sub chkDatiBAnca()"),
              [&] { result = run(d, unsavedChanges, saveChanges); });
    return result;
}

void CompletenessCheck::refreshBankData(distinta::Distinta &d)
{
    // Many rows share an account: each account's record is read once.
    QHash<QString, std::optional<BankData>> accounts;
    for (int i = 0; i < d.righe.size(); ++i) {
        const distinta::Riga &row = d.righe.at(i);
        const QString key = row.flg_ind_clifor.leftJustified(1, u' ', true) +
                            row.cod_clifor.leftJustified(6, u' ', true);
        auto it = accounts.find(key);
        if (it == accounts.end()) {
            archives::ErpRecord record(archives::ClientiFornitori);
            record.setText(QStringLiteral("ind_clifor"), row.flg_ind_clifor);
            record.setText(QStringLiteral("cod_clifor"), row.cod_clifor);
            std::optional<BankData> found;
            if (m_erp.readEq(record, 1))
                found = BankData{record.text(QStringLiteral("banca")),
                                 record.text(QStringLiteral("agenzia")),
                                 record.text(QStringLiteral("conto"))};
            it = accounts.insert(key, found);
        }
        if (!*it)
            continue;
        const BankData &bank = **it;
        if (row.cod_banca_cli != bank.banca || row.cod_agenzia_cli != bank.agenzia ||
            row.des_num_cc != bank.conto) {
            distinta::Riga &changed = d.righe.edit(i);
            changed.cod_banca_cli = bank.banca;
            changed.cod_agenzia_cli = bank.agenzia;
            changed.des_num_cc = bank.conto;
        }
    }
}

CompletenessCheck::Result
CompletenessCheck::run(distinta::Distinta &d, bool unsavedChanges,
                       const std::function<bool(distinta::Distinta &)> &saveChanges)
{
    Result result;
    if (!d.hasHeader() || distintaNumber(d.header().cod_distinta) == 0)
        return result;
    if (unsavedChanges && (!saveChanges || !saveChanges(d)))
        return result;

    refreshBankData(d);
    if (!m_store.Salva(d, false, false))
        return result;

    const distinta::Testata &header = d.header();
    QStringList lines{
        QStringLiteral("[ELENCO ERRORI]"),
        Rule,
        QStringLiteral("Distinta N.") + header.cod_distinta + QStringLiteral(" del ") +
            dates::toDmy(header.dat_data_creazione),
        Rule,
        QStringLiteral("Fornitore  n. doc.   data doc.  rata  scadenza      importo   errore"),
        Rule,
    };
    result.reportPath = reportPath();
    if (d.righe.isEmpty()) {
        writeReportFile(result.reportPath, lines);
        msgBox(QStringLiteral("Non ci sono scadenze da controllare"));
        return result;
    }

    for (int i = 0; i < d.righe.size(); ++i) {
        const distinta::Riga &row = d.righe.at(i);
        const QString type = row.cod_tipo_pag.trimmed();
        const bool noBank = isBlank(row.cod_banca_cli) || isBlank(row.cod_agenzia_cli);
        if (type == u"6" && isBlank(row.des_num_cc)) {
            lines << errorLine(row, MancaConto);
            result.errorsFound = true;
        }
        if ((type == u"6" || type == u"0" || type == u"1" || type == u"2" || type == u"9") &&
            noBank) {
            lines << errorLine(row, MancaBanca);
            result.errorsFound = true;
        }
        // The due item by its flag and the last 13 characters of its link.
        archives::ErpRecord dueItem(archives::Scadenze);
        dueItem.setText(QStringLiteral("flag_colpar"), row.flg_flag_colpar);
        dueItem.setText(QStringLiteral("link"), row.des_link_orvida.trimmed().right(13));
        if (!m_erp.readEq(dueItem, 2)) {
            lines << errorLine(row, ScadenzaMancante);
            result.errorsFound = true;
        } else if (dueItem.number(QStringLiteral("imp_pag_val")) != 0) {
            lines << errorLine(row, ScadenzaPagata);
            result.errorsFound = true;
        }
        if (!row.hasPayableAmount()) {
            lines << errorLine(row, ImportoNonPagabile);
            result.errorsFound = true;
        }
    }
    lines << Rule << QStringLiteral("Legenda errori:")
          << QStringLiteral("1: manca banca/agenzia su anagrafica cli/for")
          << QStringLiteral("2: manca n. c/c su anagrafica cli/for")
          << QStringLiteral("3: scadenza inesistente in [orvida]")
          << QStringLiteral("4: la scadenza risulta già pagata")
          << QStringLiteral("5: importo in distinta nullo o di segno opposto alla scadenza");
    writeReportFile(result.reportPath, lines);
    result.reportWritten = true;

    if (!result.errorsFound)
        msgBox(QStringLiteral("Non sono stati trovati errori nella distinta corrente."));
    return result;
}

} // namespace pg::checks
