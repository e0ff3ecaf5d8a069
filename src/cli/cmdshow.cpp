// pagamenti-cli show N
#include "commandcontext.h"
#include "commands.h"
#include "distintasession.h"

#include "core/paymenttype.h"
#include "core/vbdate.h"
#include "core/vbformat.h"

namespace pg::cli {

namespace {

QString stateName(const QString &state)
{
    return state == u"P" ? QStringLiteral("Prova") : QStringLiteral("Definitiva");
}

} // namespace

int runShow(CommandContext &context)
{
    DistintaSession session;
    if (const std::optional<int> failed = session.openFromArguments(context))
        return *failed;
    const qint64 number = session.openedNumber();

    const distinta::Distinta &d = session.distinta();
    const distinta::Testata &h = d.header();
    QTextStream &out = context.out();
    out << QStringLiteral("Distinta N. %1 (%2) del %3, valuta %4\n")
               .arg(number)
               .arg(h.flg_tipo == u"C" ? QStringLiteral("Clienti") : QStringLiteral("Fornitori"),
                    dates::toDmy(h.dat_data_creazione), dates::toDmy(h.dat_data_valuta));
    out << QStringLiteral("Stato: %1 (%2)\n").arg(h.flg_stato, stateName(h.flg_stato));
    out << QStringLiteral("Banca di presentazione: %1 %2 - %3 (ABI %4 CAB %5)\n")
               .arg(h.cod_abi_banca, h.cod_cab_banca, h.des_ban_azi.trimmed(), h.cod_codiceabi,
                    h.cod_codicecab);
    out << QStringLiteral("Codice SIA: %1   Conto Ordinante: %2   Riferimenti Mittente: %3\n")
               .arg(h.cod_sia_banca, h.des_conto_ordinante.trimmed(), h.des_riferimenti.trimmed());
    out << QStringLiteral("Valuta: %1 %2\n").arg(h.cod_valuta, h.des_valuta.trimmed());
    out << QStringLiteral("N. Disp.: %1   TOT. DISTINTA: %2\n\n")
               .arg(h.num_numero_disp)
               .arg(vb::format(h.val_importo_totale, u"#,0.00"));

    out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8\n")
               .arg(QStringLiteral("Codice"), QStringLiteral("N. Doc.  "),
                    QStringLiteral("Data Doc. "), QStringLiteral("Data Scad."),
                    QStringLiteral("Pag.").leftJustified(17), QStringLiteral("Banca/Agenzia"),
                    QStringLiteral("In distinta (VAL)"), QStringLiteral("Descrizione Scadenza"));
    for (int i = 0; i < d.righe.size(); ++i) {
        const distinta::Riga &r = d.righe.at(i);
        QString document = r.des_num_doc.trimmed();
        if (!r.des_serie_doc.trimmed().isEmpty())
            document += u'/' + r.des_serie_doc.trimmed();
        const double inDistinta = r.val_imp_indist_val.value_or(r.val_imp_residuo_val);
        out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8%9\n")
                   .arg(r.cod_clifor.leftJustified(6), document.rightJustified(9),
                        dates::ymdToDmy(r.dat_data_doc), dates::ymdToDmy(r.dat_data_scad),
                        PaymentTypeName(r.cod_tipo_pag.trimmed()).leftJustified(17),
                        (r.cod_banca_cli + u'/' + r.cod_agenzia_cli).leftJustified(13),
                        vb::format(inDistinta, u"#,0.00").rightJustified(17),
                        r.des_scadenza.trimmed(),
                        r.flg_ind_dist == u"P" ? QStringLiteral(" (parziale)") : QString());
    }
    return ExitSuccess;
}

} // namespace pg::cli
