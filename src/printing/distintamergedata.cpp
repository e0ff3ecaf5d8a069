#include "distintamergedata.h"

#include "printarchivereader.h"

#include "archives/store/companydata.h"
#include "core/money.h"
#include "core/paymenttype.h"
#include "core/vbdate.h"
#include "core/vbformat.h"
#include "distinta/distinta.h"
#include "distinta/raggruppamento.h"

namespace pg::printing {

using distinta::Riga;

namespace {

const QString Amount = QStringLiteral("#,0.00");

QString dmy(const QDate &date)
{
    return date.isValid() ? dates::toDmy(date) : QString();
}

// A date kept as yyyymmdd in a row: "dd/mm/yyyy", blank when the row has none.
QString dmyOfYmd(const QString &ymd)
{
    if (ymd.trimmed().isEmpty())
        return {};
    const QDate date = dates::fromYmd(ymd.trimmed());
    return date.isValid() ? dates::toDmy(date) : dates::ymdToDmy(ymd);
}

QString join(const QStringList &parts, const QString &separator)
{
    QStringList filled;
    for (const QString &part : parts)
        if (!part.trimmed().isEmpty())
            filled << part.trimmed();
    return filled.join(separator);
}

// The amount a row pays with the distinta: what is in the distinta, or the residual for a
// row written before that column existed.
double inDistintaVal(const Riga &row)
{
    return row.val_imp_indist_val.value_or(row.val_imp_residuo_val);
}

double inDistintaEur(const Riga &row)
{
    return row.val_imp_indist_eur.value_or(row.val_imp_residuo_eur);
}

QHash<QString, QString> rowFields(const Riga &row, int progressive, PrintArchiveReader &archives,
                                  const QLocale &locale)
{
    const auto person = archives.anagrafica(row.cod_clifor);
    const auto bank = archives.bancaCliFor(row.flg_ind_clifor, row.cod_clifor);
    const auto branch = archives.sportello(row.cod_banca_cli, row.cod_agenzia_cli);
    const QString abi = branch.found ? branch.abi : row.cod_banca_cli.trimmed();
    const QString cab = branch.found ? branch.cab : row.cod_agenzia_cli.trimmed();
    const QString conto = row.des_num_cc.trimmed();
    QString coordinates = bank.iban;
    if (coordinates.isEmpty())
        coordinates = join({abi.isEmpty() ? QString() : QStringLiteral("ABI ") + abi,
                            cab.isEmpty() ? QString() : QStringLiteral("CAB ") + cab,
                            conto.isEmpty() ? QString() : QStringLiteral("C/C ") + conto},
                           QStringLiteral(" "));

    QHash<QString, QString> f;
    f.insert(QStringLiteral("progressivo"), QString::number(progressive));
    f.insert(QStringLiteral("codice_beneficiario"), row.cod_clifor.trimmed());
    f.insert(QStringLiteral("ragione_sociale_beneficiario"), person.ragsoc);
    f.insert(QStringLiteral("indirizzo_beneficiario"), person.indirizzo);
    f.insert(QStringLiteral("cap_beneficiario"), person.cap);
    f.insert(QStringLiteral("citta_beneficiario"), person.citta);
    f.insert(QStringLiteral("provincia_beneficiario"), person.provincia);
    f.insert(QStringLiteral("partita_iva_beneficiario"), person.partitaIva);
    f.insert(QStringLiteral("codice_fiscale_beneficiario"), person.codFiscale);
    f.insert(QStringLiteral("numero_documento"), row.des_num_doc.trimmed());
    f.insert(QStringLiteral("serie_documento"), row.des_serie_doc.trimmed());
    f.insert(QStringLiteral("documento"),
             join({row.des_num_doc, row.des_serie_doc}, QStringLiteral("/")));
    f.insert(QStringLiteral("data_documento"), dmyOfYmd(row.dat_data_doc));
    f.insert(QStringLiteral("numero_protocollo"), row.des_num_prot.trimmed());
    f.insert(QStringLiteral("numero_rata"), row.des_num_rata.trimmed());
    f.insert(QStringLiteral("data_scadenza"), dmyOfYmd(row.dat_data_scad));
    f.insert(QStringLiteral("numero_effetto"), row.des_num_effetto.trimmed());
    f.insert(QStringLiteral("tipo_pagamento"), PaymentTypeName(row.cod_tipo_pag.trimmed()));
    f.insert(QStringLiteral("abi_beneficiario"), abi);
    f.insert(QStringLiteral("cab_beneficiario"), cab);
    f.insert(QStringLiteral("conto_beneficiario"), conto);
    f.insert(QStringLiteral("iban_beneficiario"), bank.iban);
    f.insert(QStringLiteral("bic_beneficiario"), bank.bic);
    f.insert(QStringLiteral("banca_beneficiario"), branch.desBanca);
    f.insert(QStringLiteral("agenzia_beneficiario"), branch.desAgenzia);
    f.insert(QStringLiteral("coordinate_bancarie"), coordinates);
    f.insert(QStringLiteral("importo"), vb::format(inDistintaVal(row), Amount, locale));
    f.insert(QStringLiteral("importo_eur"), vb::format(inDistintaEur(row), Amount, locale));
    f.insert(QStringLiteral("valuta_riga"), row.cod_valuta.trimmed());
    f.insert(QStringLiteral("cambio"), vb::format(row.val_cambio, u"#,0.000000", locale));
    f.insert(QStringLiteral("descrizione"), row.des_scadenza.trimmed());
    return f;
}

} // namespace

MergeData distintaMergeData(const distinta::Distinta &d, const archives::CompanyData &company,
                            PrintArchiveReader &archives, const PrintOptions &options,
                            const QString &groupTemplate, const QLocale &locale)
{
    MergeData data;
    auto &f = data.fields;
    f.insert(QStringLiteral("ragione_sociale_azienda"), company.ragsoc.trimmed());
    f.insert(QStringLiteral("indirizzo_azienda"), company.indirizzo.trimmed());
    f.insert(QStringLiteral("cap_azienda"), company.cap.trimmed());
    f.insert(QStringLiteral("citta_azienda"), company.citta.trimmed());
    f.insert(QStringLiteral("provincia_azienda"), company.provincia.trimmed());
    f.insert(QStringLiteral("codice_fiscale_azienda"), company.codFiscale.trimmed());
    f.insert(QStringLiteral("partita_iva_azienda"), company.partitaIva.trimmed());

    const distinta::Testata h = d.hasHeader() ? d.header() : distinta::Testata();
    f.insert(QStringLiteral("numero_distinta"), h.cod_distinta.trimmed());
    f.insert(QStringLiteral("tipo_distinta"),
             h.flg_tipo == u"C" ? QStringLiteral("Clienti") : QStringLiteral("Fornitori"));
    f.insert(QStringLiteral("stato_distinta"),
             h.flg_stato == u"P" ? QStringLiteral("Prova") : QStringLiteral("Definitiva"));
    f.insert(QStringLiteral("data_creazione"), dmy(h.dat_data_creazione));
    f.insert(QStringLiteral("data_valuta"), dmy(h.dat_data_valuta));
    f.insert(QStringLiteral("data_presentazione"), dmy(options.presentationDate));
    f.insert(QStringLiteral("data_stampa"), dmy(dates::today()));
    f.insert(QStringLiteral("banca_presentazione"), h.des_ban_azi.trimmed());
    f.insert(QStringLiteral("abi_presentazione"), h.cod_codiceabi.trimmed());
    f.insert(QStringLiteral("cab_presentazione"), h.cod_codicecab.trimmed());
    f.insert(QStringLiteral("conto_ordinante"), h.des_conto_ordinante.trimmed());
    f.insert(QStringLiteral("iban_ordinante"),
             archives.ibanAzienda(h.cod_abi_banca, h.cod_cab_banca));
    f.insert(QStringLiteral("codice_sia"), h.cod_sia_banca.trimmed());
    f.insert(QStringLiteral("riferimenti"), h.des_riferimenti.trimmed());
    f.insert(QStringLiteral("valuta"), h.cod_valuta.trimmed());
    f.insert(QStringLiteral("descrizione_valuta"), h.des_valuta.trimmed());
    f.insert(QStringLiteral("tipo_stampa"), options.definitive ? QStringLiteral("STAMPA DEFINITIVA")
                                                               : QStringLiteral("STAMPA DI PROVA"));
    f.insert(QStringLiteral("modalita_righe"), options.grouped
                                                   ? QStringLiteral("Scadenze raggruppate")
                                                   : QStringLiteral("Scadenze in dettaglio"));

    // The rows printed: the due items, or the grouped payments.
    distinta::RecordSet<Riga> regrouped;
    const distinta::RecordSet<Riga> *rows = &d.righe;
    if (options.grouped) {
        rows = &d.righeRagg;
        if (d.righeRagg.isEmpty() && !d.righe.isEmpty()) {
            distinta::Distinta copy = d;
            distinta::raggruppaRighe(copy, groupTemplate);
            regrouped = copy.righeRagg;
            rows = &regrouped;
        }
    }
    qint64 cents = 0;
    qint64 centsEur = 0;
    for (int i = 0; i < rows->size(); ++i) {
        const Riga &row = rows->at(i);
        data.rows << rowFields(row, i + 1, archives, locale);
        cents += money::toCents(inDistintaVal(row));
        centsEur += money::toCents(inDistintaEur(row));
    }
    f.insert(QStringLiteral("numero_disposizioni"), QString::number(rows->size()));
    f.insert(QStringLiteral("numero_scadenze"), QString::number(d.righe.size()));
    f.insert(QStringLiteral("totale_importo"), vb::format(money::fromCents(cents), Amount, locale));
    f.insert(QStringLiteral("totale_importo_eur"),
             vb::format(money::fromCents(centsEur), Amount, locale));

    data.conditions.insert(QStringLiteral("totali"), options.totals);
    data.conditions.insert(QStringLiteral("prova"), !options.definitive);
    data.conditions.insert(QStringLiteral("raggruppate"), options.grouped);
    return data;
}

} // namespace pg::printing
