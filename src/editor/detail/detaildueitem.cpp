#include "detaildueitem.h"

#include "editor/rowlist/rowlistformat.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/paymenttype.h"

#include <QHash>

namespace pg::editor {

namespace {

struct FieldInfo
{
    const char16_t *label;
    const char16_t *section;
};

const QHash<QString, FieldInfo> &fieldInfo()
{
    static const QHash<QString, FieldInfo> info{
        {QStringLiteral("flag_colpar"), {u"Flag collegamento", u"Scadenza"}},
        {QStringLiteral("link"), {u"Collegamento", u"Scadenza"}},
        {QStringLiteral("stato"), {u"Stato", u"Scadenza"}},
        {QStringLiteral("flag_insoluto"), {u"Insoluto", u"Scadenza"}},
        {QStringLiteral("flag_acconto"), {u"Acconto", u"Scadenza"}},
        {QStringLiteral("tipo_pag"), {u"Tipo pagamento", u"Scadenza"}},
        {QStringLiteral("data_scad"), {u"Data scadenza", u"Scadenza"}},
        {QStringLiteral("ind_clifor"), {u"Cliente/Fornitore", u"Documento"}},
        {QStringLiteral("cod_clifor"), {u"Codice", u"Documento"}},
        {QStringLiteral("cod_sede"), {u"Sede", u"Documento"}},
        {QStringLiteral("num_doc"), {u"N. documento", u"Documento"}},
        {QStringLiteral("serie_doc"), {u"Serie", u"Documento"}},
        {QStringLiteral("data_doc"), {u"Data documento", u"Documento"}},
        {QStringLiteral("num_prot"), {u"N. protocollo", u"Documento"}},
        {QStringLiteral("num_rata"), {u"N. rata", u"Documento"}},
        {QStringLiteral("num_effetto"), {u"N. effetto", u"Documento"}},
        {QStringLiteral("causale"), {u"Causale", u"Documento"}},
        {QStringLiteral("banca"), {u"Banca", u"Appoggio"}},
        {QStringLiteral("agenzia"), {u"Agenzia", u"Appoggio"}},
        {QStringLiteral("conto"), {u"Conto corrente", u"Appoggio"}},
        {QStringLiteral("valuta"), {u"Valuta", u"Importi"}},
        {QStringLiteral("cambio"), {u"Cambio", u"Importi"}},
        {QStringLiteral("imp_dapag_val"), {u"Da pagare (VAL)", u"Importi"}},
        {QStringLiteral("imp_dapag_eur"), {u"Da pagare (EUR)", u"Importi"}},
        {QStringLiteral("imp_pag_val"), {u"Pagato (VAL)", u"Importi"}},
        {QStringLiteral("imp_pag_eur"), {u"Pagato (EUR)", u"Importi"}},
        {QStringLiteral("imp_acconto_val"), {u"Acconto (VAL)", u"Importi"}},
        {QStringLiteral("stato_dist"), {u"Stato distinta", u"Distinta"}},
        {QStringLiteral("mark_dist"), {u"Segno distinta", u"Distinta"}},
        {QStringLiteral("mark_pres"), {u"Segno presentazione", u"Distinta"}},
        {QStringLiteral("data_dist"), {u"Data distinta", u"Distinta"}},
        {QStringLiteral("abi_pres"), {u"Banca presentazione", u"Distinta"}},
        {QStringLiteral("cab_pres"), {u"Agenzia presentazione", u"Distinta"}},
        {QStringLiteral("descrizione"), {u"Descrizione", u"Scadenza"}},
    };
    return info;
}

// A code followed by what it means, when it means something.
QString withMeaning(const QString &code, const QString &meaning)
{
    return meaning.isEmpty() ? code : code + QStringLiteral(" - ") + meaning;
}

QString meaningOf(const QString &field, const QString &code)
{
    if (field == u"tipo_pag")
        return PaymentTypeName(code);
    if (field == u"stato")
        return code == u"0"   ? QStringLiteral("aperta")
               : code == u"1" ? QStringLiteral("pagata in parte")
               : code == u"2" ? QStringLiteral("pagata")
                              : QString();
    if (field == u"flag_insoluto")
        return code == u"2" ? QStringLiteral("insoluta") : QString();
    if (field == u"flag_acconto")
        return code == u"1" ? QStringLiteral("con acconto") : QString();
    if (field == u"ind_clifor")
        return code == u"F"   ? QStringLiteral("Fornitore")
               : code == u"C" ? QStringLiteral("Cliente")
                              : QString();
    if (field == u"stato_dist")
        return code == u"0"   ? QStringLiteral("libera")
               : code == u"3" ? QStringLiteral("in distinta in parte")
               : code == u"5" ? QStringLiteral("in distinta per l'intero importo")
               : code == u"4" ? QStringLiteral("in più distinte")
                              : QString();
    if (field == u"mark_dist" || field == u"mark_pres")
        return code == u"B" ? QStringLiteral("in distinta") : QString();
    return {};
}

} // namespace

DetailFields DueItemDetail::fields(const archives::ErpRecord &item, archives::ErpSession *erp)
{
    // The names of the bank and agency of the item and of its currency, from the common
    // tables: the bank by a positioning read, taken only when it lands on that very agency.
    QString bankName;
    QString currencyName;
    if (erp) {
        const QString bank = item.text(QStringLiteral("banca"));
        const QString agency = item.text(QStringLiteral("agenzia"));
        if (!(bank + agency).trimmed().isEmpty()) {
            archives::ErpRecord bn(archives::TabelleComuni, QStringLiteral("BN "));
            bn.setText(QStringLiteral("codice"), bank + agency);
            if (erp->readGen(bn, 1) && bn.text(QStringLiteral("tipo_rec")) == u"BN " &&
                bn.text(QStringLiteral("codice")).startsWith(bank + agency))
                bankName = bn.trimmed(QStringLiteral("des_banca")) + QStringLiteral(" - ") +
                           bn.trimmed(QStringLiteral("des_agenzia"));
        }
        const QString currency = item.trimmed(QStringLiteral("valuta"));
        if (!currency.isEmpty()) {
            archives::ErpRecord vl(archives::TabelleComuni, QStringLiteral("VL "));
            vl.setText(QStringLiteral("codice"), currency);
            if (erp->readEq(vl, 1))
                currencyName = vl.trimmed(QStringLiteral("des_valuta"));
        }
    }

    DetailFields out;
    for (const archives::FieldDef &f : item.layout().fields(QStringLiteral("*"))) {
        const auto info = fieldInfo().constFind(f.name);
        DetailField line;
        line.section = info == fieldInfo().cend() ? QStringLiteral("Scadenza")
                                                  : QString::fromUtf16(info->section);
        line.label = info == fieldInfo().cend() ? f.name : QString::fromUtf16(info->label);
        const QString stored = item.text(f.name);
        const QString value = stored.trimmed();
        if (f.name.startsWith(u"data_")) {
            line.value = RowListFormat::date(stored);
        } else if (f.name.startsWith(u"imp_")) {
            line.value = value.isEmpty() ? QString() : RowListFormat::amount(item.number(f.name));
        } else if (f.name == u"cambio") {
            line.value = value.isEmpty() ? QString() : RowListFormat::cambio(item.number(f.name));
        } else if (f.name == u"agenzia") {
            line.value = withMeaning(value, bankName);
        } else if (f.name == u"valuta") {
            line.value = withMeaning(value, currencyName);
        } else {
            line.value = value.isEmpty() ? value : withMeaning(value, meaningOf(f.name, value));
        }
        out.append(line);
    }
    return out;
}

} // namespace pg::editor
