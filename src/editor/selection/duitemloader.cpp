#include "duitemloader.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archiveerrortext.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/money.h"
#include "core/prompter.h"
#include "startup/errortrap.h"

namespace pg::editor {

using distinta::Riga;

namespace {

int desScadenzaWidth()
{
    static const int width = [] {
        for (const auto &column : Riga::columns())
            if (column.name == QLatin1StringView("des_scadenza"))
                return column.width;
        return 60;
    }();
    return width;
}

} // namespace

DueItemLoader::DueItemLoader(archives::ErpSession &erp, const SelectionValues &values,
                             const QString &desPag, DueItemCausali causali)
    : m_erp(&erp)
    , m_values(values)
    , m_filter(values)
    , m_desPag(desPag)
    , m_causali(std::move(causali))
{}

DueItemLoader::Result DueItemLoader::cmdGenera_Click(distinta::Distinta &d)
{
    Result result;
    underTrap(QStringLiteral("frmMain!Sub cmdGenera_Click()"), [&] {
        // The items are of the distinta's kind, whatever the selection last chose.
        m_filter.requireKind(d.hasHeader() ? d.header().flg_tipo : m_values.tipoDistinta);
        const DueItemLayout &layout = DueItemLayout::instance();
        const int rowsBefore = d.righe.size();
        archives::ErpRecord record(archives::Scadenze);
        bool ok = m_erp->readFirst(record, 1, QByteArray());
        while (ok) {
            ++result.read;
            const QByteArrayView bytes(record.buffer());
            if (m_filter.passes(bytes) &&
                m_causali.taken(DueItemLayout::bytes(bytes, layout.causale))) {
                bool added = false;
                if (!underTrap(QStringLiteral("frmMain!Sub AggiungiRighe()"),
                               [&] { added = AggiungiRighe(d, bytes); })) {
                    result.failed = true;
                    return;
                }
                added ? ++result.added : ++result.alreadyIn;
            }
            if (m_progress && result.read % ProgressInterval == 0 &&
                !m_progress(result.read, result.added)) {
                result.cancelled = true;
                return;
            }
            ok = m_erp->readNext(record);
        }
        // The walk ends at the end of the archive (or on an empty one); any other code is a
        // read that failed, and what lies beyond it was never seen.
        const qint32 code = m_erp->lastError();
        if (code == archives::EndOfArchive || code == archives::NotFound)
            return;
        result.readError = code;
        if (!keepRowsAfterReadError(result)) {
            for (int i = d.righe.size() - 1; i >= rowsBefore; --i)
                d.righe.removeAt(i);
            result.added = 0;
        }
    });
    return result;
}

QString DueItemLoader::readErrorMessage(const Result &result) const
{
    return QStringLiteral(
               "La lettura delle scadenze si è interrotta per un errore nel leggere l'%1: "
               "%2.")
               .arg(archives::archiveDescription(m_erp->manager(), archives::Scadenze),
                    archives::archiveErrorText(result.readError)) +
           QStringLiteral("\r\nScadenze lette: %1; righe trovate fino all'errore: %2. Le "
                          "scadenze che seguono non sono state lette.")
               .arg(result.read)
               .arg(result.added);
}

bool DueItemLoader::keepRowsAfterReadError(const Result &result) const
{
    const QString message = readErrorMessage(result);
    if (m_onReadError == OnReadError::Refuse || result.added == 0) {
        msgBox(message + QStringLiteral("\r\nNessuna riga è stata aggiunta alla distinta."),
               Buttons::Ok, Icon::Critical);
        return false;
    }
    return msgBox(message + QStringLiteral("\r\n\r\nAggiungere comunque alla distinta le %1 righe "
                                           "trovate?")
                                .arg(result.added),
                  Buttons::YesNo, Icon::Exclamation) == Answer::Yes;
}

bool DueItemLoader::AggiungiRighe(distinta::Distinta &d, QByteArrayView record)
{
    const DueItemLayout &l = DueItemLayout::instance();
    auto text = [&](const archives::FieldDef &field) { return DueItemLayout::text(record, field); };
    auto cents = [&](const archives::FieldDef &field) {
        return DueItemLayout::cents(DueItemLayout::bytes(record, field));
    };

    const QString flag = text(l.flagColpar);
    const QString link = text(l.link);
    if (d.righe.indexOfKey(Riga::keyOf(flag, link)) >= 0)
        return false;

    Riga r;
    r.cod_distinta = d.hasHeader() ? d.header().cod_distinta : QString();
    r.flg_flag_colpar = flag;
    r.des_link_orvida = link;
    r.des_num_doc = text(l.numDoc);
    r.des_serie_doc = text(l.serieDoc);
    r.dat_data_doc = text(l.dataDoc);
    r.des_num_prot = text(l.numProt);
    r.des_num_rata = text(l.numRata);
    r.dat_data_scad = text(l.dataScad);
    r.des_num_effetto = text(l.numEffetto);
    r.cod_tipo_pag = text(l.tipoPag);
    r.flg_ind_clifor = text(l.indClifor);
    r.cod_clifor = text(l.codClifor);
    r.cod_sedeamm = text(l.codSede);
    r.cod_banca_cli = text(l.banca);
    r.cod_agenzia_cli = text(l.agenzia);
    r.des_num_cc = text(l.conto);
    r.cod_valuta = text(l.valuta);

    const qint64 dapagVal = cents(l.impDapagVal);
    const qint64 dapagEur = cents(l.impDapagEur);
    const qint64 pagVal = cents(l.impPagVal);
    const qint64 pagEur = cents(l.impPagEur);
    r.val_imp_dapag_val = money::fromCents(dapagVal);
    r.val_imp_dapag_eur = money::fromCents(dapagEur);
    r.val_imp_pag_val = money::fromCents(pagVal);
    r.val_imp_pag_eur = money::fromCents(pagEur);
    r.cod_banca_pres = m_values.bancaPres;
    r.cod_agenzia_pres = m_values.agenziaPres;
    // The distinta proposes to pay what is left: the amount to pay less the amount paid.
    r.val_imp_residuo_val = money::fromCents(dapagVal - pagVal);
    r.val_imp_residuo_eur = money::fromCents(dapagEur - pagEur);
    // A due item without an exchange rate is in euro: its rate is 1, so that the euro amounts
    // of a residual typed later are never a division by zero.
    const double cambio = DueItemLayout::number(DueItemLayout::bytes(record, l.cambio));
    r.val_cambio = cambio > 0 ? cambio : 1.0;
    // The "P" of a partial payment is set only when the clerk changes the residual by hand.
    r.flg_ind_dist = QString();
    r.des_scadenza = descrizione(m_desPag, r.des_num_doc, r.des_serie_doc, r.dat_data_doc)
                         .left(desScadenzaWidth());
    r.val_imp_indist_val = r.val_imp_residuo_val;
    r.val_imp_indist_eur = r.val_imp_residuo_eur;
    d.righe.append(r);
    return true;
}

QString DueItemLoader::descrizione(const QString &desPag, const QString &numDoc,
                                   const QString &serie, const QString &dataDoc)
{
    const QString number = numDoc.trimmed();
    const QString series = serie.trimmed();
    const QString reference = series.isEmpty() ? number : number + u'/' + series;
    QString text = desPag;
    text.replace(QStringLiteral("NNNNNN/N"), reference);
    text.replace(QStringLiteral("NNNNNN"), reference);
    const QString date =
        dataDoc.trimmed().isEmpty()
            ? QString()
            : dataDoc.mid(6, 2) + u'/' + dataDoc.mid(4, 2) + u'/' + dataDoc.mid(2, 2);
    text.replace(QStringLiteral("DD/DD/DD"), date);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

} // namespace pg::editor
