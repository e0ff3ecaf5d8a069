#include "printarchivereader.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"

namespace pg::printing {

using archives::ErpRecord;

namespace {

// A part of a key: blank-padded (or cut) to its width, as keys are set in the records.
QString keyPart(const QString &text, int width)
{
    return text.leftJustified(width, u' ', true);
}

QString field(const ErpRecord &record, const char *name)
{
    return record.trimmed(QString::fromLatin1(name));
}

// An IBAN as it is read and written: its two stored parts joined, without blanks; empty
// when either part is blank, as the bank file treats it.
QString ibanOf(const ErpRecord &record)
{
    const QString paese = field(record, "iban_paese");
    const QString resto = field(record, "iban_resto");
    if (paese.isEmpty() || resto.isEmpty())
        return {};
    QString iban = paese + resto;
    return iban.remove(u' ');
}

} // namespace

PrintArchiveReader::PrintArchiveReader(archives::ErpSession *erp) : m_erp(erp) {}

PrintArchiveReader::Anagrafica PrintArchiveReader::anagrafica(const QString &code)
{
    const QString key = keyPart(code, 6);
    const auto cached = m_anagrafiche.constFind(key);
    if (cached != m_anagrafiche.cend())
        return *cached;
    Anagrafica result;
    ErpRecord record(archives::AnagraficheComuni);
    record.setText(QStringLiteral("cod_clifor"), key);
    if (m_erp && m_erp->readEq(record, 1)) {
        result.found = true;
        result.ragsoc = field(record, "ragsoc");
        result.indirizzo = field(record, "indirizzo");
        result.cap = field(record, "cap");
        result.citta = field(record, "citta");
        result.provincia = field(record, "provincia");
        result.partitaIva = field(record, "partita_iva");
        result.codFiscale = field(record, "cod_fiscale");
    }
    m_anagrafiche.insert(key, result);
    return result;
}

PrintArchiveReader::BancaCliFor PrintArchiveReader::bancaCliFor(const QString &kind,
                                                                const QString &code)
{
    const QString key = keyPart(kind, 1) + keyPart(code, 6);
    const auto cached = m_bancheCliFor.constFind(key);
    if (cached != m_bancheCliFor.cend())
        return *cached;
    BancaCliFor result;
    ErpRecord record(archives::ClientiFornitori);
    record.setText(QStringLiteral("ind_clifor"), kind);
    record.setText(QStringLiteral("cod_clifor"), code);
    if (m_erp && m_erp->readEq(record, 1)) {
        result.found = true;
        result.banca = field(record, "banca");
        result.agenzia = field(record, "agenzia");
        result.conto = field(record, "conto");
        result.iban = ibanOf(record);
        result.bic = field(record, "bic");
    }
    m_bancheCliFor.insert(key, result);
    return result;
}

PrintArchiveReader::Sportello PrintArchiveReader::sportello(const QString &banca,
                                                            const QString &agenzia)
{
    const QString code = keyPart(banca, 5) + keyPart(agenzia, 5);
    const auto cached = m_sportelli.constFind(code);
    if (cached != m_sportelli.cend())
        return *cached;
    Sportello result;
    ErpRecord record(archives::TabelleComuni, QStringLiteral("BN "));
    record.setText(QStringLiteral("codice"), code);
    if (!code.trimmed().isEmpty() && m_erp && m_erp->readEq(record, 1)) {
        result.found = true;
        result.abi = field(record, "abi");
        result.cab = field(record, "cab");
        result.desBanca = field(record, "des_banca");
        result.desAgenzia = field(record, "des_agenzia");
    }
    m_sportelli.insert(code, result);
    return result;
}

QString PrintArchiveReader::ibanAzienda(const QString &banca, const QString &agenzia)
{
    const QString code = keyPart(banca, 5) + keyPart(agenzia, 5);
    const auto cached = m_ibanAzienda.constFind(code);
    if (cached != m_ibanAzienda.cend())
        return *cached;
    QString iban;
    ErpRecord record(archives::TabelleAzienda, QStringLiteral("BA3"));
    record.setText(QStringLiteral("codice"), code);
    if (!code.trimmed().isEmpty() && m_erp && m_erp->readEq(record, 1))
        iban = ibanOf(record);
    m_ibanAzienda.insert(code, iban);
    return iban;
}

} // namespace pg::printing
