#include "rowlistrules.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/money.h"
#include "core/paymenttype.h"
#include "core/prompter.h"
#include "core/typedamount.h"
#include "core/vbformat.h"
#include "startup/errortrap.h"

namespace pg::editor {

using distinta::Riga;

const QString RowListRules::ResiduoField = QStringLiteral("val_imp_residuo_val");
const QString RowListRules::DescrizioneField = QStringLiteral("des_scadenza");
const QString RowListRules::ResiduoHint = QStringLiteral(
    "L'importo residuo proposto è la differenza tra l'importo da pagare e quello pagato.");
const QString RowListRules::DescrizioneHint = QStringLiteral(
    "Indicare la descrizione da riportare nella stampa della distinta o nel file bonifico.");

QString RowListRules::residuoNonPagabile(double dapag)
{
    return money::toCents(dapag) < 0
               ? QStringLiteral("L'importo residuo di una nota di credito deve essere negativo, "
                                "come l'importo della scadenza (") +
                     vb::format(dapag, u"#,0.00") + QStringLiteral("), e diverso da zero.")
               : QStringLiteral("L'importo residuo deve essere maggiore di zero, come l'importo "
                                "della scadenza (") +
                     vb::format(dapag, u"#,0.00") +
                     QStringLiteral("): per non pagare la scadenza, cancellare la riga.");
}

bool RowListRules::isEditableField(const QString &field)
{
    return field == ResiduoField || field == DescrizioneField;
}

bool RowListRules::allowsPartialAmount(const QString &tipoPag)
{
    const QString name = PaymentTypeName(tipoPag.trimmed());
    return name != u"RID" && name != u"Avviso" && name != u"Ricevuta bancaria" && name != u"Tratta";
}

bool RowListRules::ItemClick(const QString &key, const QString &field, QString *status)
{
    bool editable = false;
    underTrap(QStringLiteral("frmMain!Sub lvwScadenze_ItemClick()"),
              [&] { editable = itemClick(key, field, status); });
    return editable;
}

bool RowListRules::itemClick(const QString &key, const QString &field, QString *status)
{
    if (!m_d || !m_d->hasHeader())
        return false;
    if (m_d->header().flg_stato == u"D") {
        msgBox(QStringLiteral("Distinta già stampata in definitivo. Impossibile modificare."),
               Buttons::Ok, Icon::Exclamation);
        return false;
    }
    if (!isEditableField(field))
        return false;
    const int row = m_d->righe.indexOfKey(key);
    if (row < 0)
        return false;
    const Riga &r = m_d->righe.at(row);
    if (field != DescrizioneField && !allowsPartialAmount(r.cod_tipo_pag)) {
        msgBox(QStringLiteral("Il tipo di pagamento della scadenza non permette importi parziali."),
               Buttons::Ok, Icon::Exclamation);
        return false;
    }
    if (field == DescrizioneField) {
        if (status)
            *status = DescrizioneHint;
        return true;
    }

    if (status)
        *status = ResiduoHint;
    // What the suite says of the due item now: a due item it cannot find is edited freely.
    QChar state;
    if (m_erp) {
        archives::ErpRecord item(archives::Scadenze);
        item.setText(QStringLiteral("flag_colpar"), r.flg_flag_colpar);
        item.setText(QStringLiteral("link"), r.des_link_orvida);
        if (m_erp->readEq(item, 2))
            state = item.text(QStringLiteral("stato_dist")).at(0);
    }
    if (state == u'5') {
        msgBox(QStringLiteral("Scadenza pagata totalmente. Se si desidera pagarla parzialmente è "
                              "necessario cancellarla e reinserirla."),
               Buttons::Ok, Icon::Exclamation);
        return false;
    }
    if (state == u'4' || (state == u'3' && m_d->nuova)) {
        msgBox(QStringLiteral("La scadenza è già stata inserita in un'altra distinta, per cui non "
                              "è possibile modificare ulteriormente l'importo residuo.") +
                   QStringLiteral("\r\n") +
                   QStringLiteral("Poichè la contabilizzazione deve essere fatta manualmente, "
                                  "verificare che l'importo residuo proposto sia corretto ed "
                                  "eventualmente ") +
                   QStringLiteral("effettuare la registrazione di pagamento in Prima Nota."),
               Buttons::Ok, Icon::Exclamation);
        return false;
    }
    return true;
}

bool RowListRules::changeComplete(const QString &key, const QString &field, const QString &text)
{
    bool stored = false;
    underTrap(QStringLiteral("frmMain!Sub lvwScadenze_changeComplete()"), [&] {
        if (!m_d)
            return;
        const int row = m_d->righe.indexOfKey(key);
        if (row < 0)
            return;
        if (field == DescrizioneField) {
            m_d->righe.edit(row).des_scadenza = text;
            stored = true;
        } else if (field == ResiduoField) {
            stored = storeResiduo(row, text);
        }
    });
    return stored;
}

bool RowListRules::storeResiduo(int row, const QString &text)
{
    // Read as the clerk types it, whatever the system's locale; never a guess.
    const vb::TypedAmount typed = vb::TypedAmount::read(text);
    if (!typed.isValid()) {
        msgBox(vb::TypedAmount::invalidMessage(text), Buttons::Ok, Icon::Exclamation);
        return false;
    }
    const double v = typed.value;
    const Riga &r = m_d->righe.at(row);
    const double limit =
        money::fromCents(money::toCents(r.val_imp_dapag_val) - money::toCents(r.val_imp_pag_val));
    if (money::exceeds(v, limit)) {
        msgBox(QStringLiteral("L'importo residuo non può superare la differenza tra importo da "
                              "pagare e quello già pagato (") +
                   vb::cstr(limit) + QStringLiteral(")."),
               Buttons::Ok, Icon::Exclamation);
        return false;
    }
    // Nothing, or a transfer the wrong way, would go to the bank: an invoice is paid with a
    // positive amount, a credit note keeps its negative one.
    if (!Riga::isPayableAmount(v, r.val_imp_dapag_val)) {
        msgBox(residuoNonPagabile(r.val_imp_dapag_val), Buttons::Ok, Icon::Exclamation);
        return false;
    }
    Riga &edit = m_d->righe.edit(row);
    const double cambio = edit.val_cambio != 0 ? edit.val_cambio : 1.0;
    const double euro = vb::roundHalfEven(v / cambio, 2);
    edit.val_imp_indist_val = v;
    edit.val_imp_indist_eur = euro;
    edit.val_imp_residuo_val = v;
    edit.val_imp_residuo_eur = euro;
    if (!money::sameAmount(edit.val_imp_residuo_val, edit.val_imp_dapag_val))
        edit.flg_ind_dist = QStringLiteral("P");
    return true;
}

} // namespace pg::editor
