#include "detailaccount.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"

namespace pg::editor {

namespace {

const QString Anagrafica = QStringLiteral("Anagrafica");
const QString Banca = QStringLiteral("Banca d'appoggio");
const QString Sede = QStringLiteral("Sede amministrativa");

} // namespace

AccountDetail AccountDetail::read(archives::ErpSession &erp, const QString &code)
{
    using archives::ErpRecord;
    AccountDetail d;
    d.m_code = code.trimmed();
    auto add = [&](const QString &section, const QString &label, const QString &value) {
        d.m_fields.append({section, label, value});
    };

    ErpRecord account(archives::AnagraficheComuni);
    account.setText(QStringLiteral("cod_clifor"), d.m_code);
    d.m_found = !d.m_code.isEmpty() && erp.readEq(account, 1);
    if (!d.m_found)
        account.clear();
    auto field = [&](const char *name) { return account.trimmed(QString::fromLatin1(name)); };
    d.m_kind = field("ind_clifor");
    d.m_ragsoc = field("ragsoc");
    add(Anagrafica, QStringLiteral("Codice"), d.m_code);
    add(Anagrafica, QStringLiteral("Ragione sociale"), d.m_ragsoc);
    add(Anagrafica, QStringLiteral("Indirizzo"), field("indirizzo"));
    add(Anagrafica, QStringLiteral("CAP"), field("cap"));
    add(Anagrafica, QStringLiteral("Città"), field("citta"));
    add(Anagrafica, QStringLiteral("Provincia"), field("provincia"));
    add(Anagrafica, QStringLiteral("Nazione"), field("nazione"));
    add(Anagrafica, QStringLiteral("Codice fiscale"), field("cod_fiscale"));
    add(Anagrafica, QStringLiteral("Partita IVA"), field("partita_iva"));
    add(Anagrafica, QStringLiteral("Telefono"), field("telefono"));
    add(Anagrafica, QStringLiteral("E-mail"), field("email"));

    // The bank data are kept by kind and code: "F" + code for a supplier, "C" + code for a
    // customer.
    ErpRecord bank(archives::ClientiFornitori);
    bank.setText(QStringLiteral("ind_clifor"), d.m_kind);
    bank.setText(QStringLiteral("cod_clifor"), d.m_code);
    if (!d.m_found || !erp.readEq(bank, 1))
        bank.clear();
    const QString bankCode = bank.text(QStringLiteral("banca"));
    const QString agencyCode = bank.text(QStringLiteral("agenzia"));
    QString bankName, agencyName, abi, cab;
    if (!(bankCode + agencyCode).trimmed().isEmpty()) {
        ErpRecord bn(archives::TabelleComuni, QStringLiteral("BN "));
        bn.setText(QStringLiteral("codice"), bankCode + agencyCode);
        if (erp.readEq(bn, 1)) {
            bankName = bn.trimmed(QStringLiteral("des_banca"));
            agencyName = bn.trimmed(QStringLiteral("des_agenzia"));
            abi = bn.trimmed(QStringLiteral("abi"));
            cab = bn.trimmed(QStringLiteral("cab"));
        }
    }
    add(Banca, QStringLiteral("Banca"), bankCode.trimmed());
    add(Banca, QStringLiteral("Descrizione banca"), bankName);
    add(Banca, QStringLiteral("Agenzia"), agencyCode.trimmed());
    add(Banca, QStringLiteral("Descrizione agenzia"), agencyName);
    add(Banca, QStringLiteral("ABI"), abi);
    add(Banca, QStringLiteral("CAB"), cab);
    add(Banca, QStringLiteral("Conto corrente"), bank.trimmed(QStringLiteral("conto")));
    add(Banca, QStringLiteral("IBAN"),
        (bank.trimmed(QStringLiteral("iban_paese")) + bank.trimmed(QStringLiteral("iban_resto"))));
    add(Banca, QStringLiteral("BIC"), bank.trimmed(QStringLiteral("bic")));

    // The first administrative site of the account ("A" sites, in code order).
    ErpRecord site(archives::SediClientiFornitori);
    QByteArray start = d.m_code.leftJustified(6, u' ', true).toLatin1() + 'A';
    const bool siteFound =
        d.m_found && erp.readFirst(site, 1, start) && site.buffer().startsWith(start);
    if (!siteFound)
        site.clear();
    add(Sede, QStringLiteral("Indirizzo"), site.trimmed(QStringLiteral("indirizzo")));
    add(Sede, QStringLiteral("CAP"), site.trimmed(QStringLiteral("cap")));
    add(Sede, QStringLiteral("Città"), site.trimmed(QStringLiteral("citta")));
    add(Sede, QStringLiteral("Provincia"), site.trimmed(QStringLiteral("provincia")));
    return d;
}

} // namespace pg::editor
