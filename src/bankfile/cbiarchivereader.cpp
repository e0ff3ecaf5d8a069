#include "cbiarchivereader.h"

#include "archives/store/archivenumbers.h"
#include "core/cp1252.h"

namespace pg::bankfile {

using archives::ErpRecord;

namespace {

// A part of a key: blank-padded (or cut) to its width, as keys are set in the records.
QString keyPart(const QString &text, int width)
{
    return text.leftJustified(width, u' ', true);
}

const QString Bn = QStringLiteral("BN ");

} // namespace

CbiArchiveReader::CbiArchiveReader(archives::ErpSession &erp) : m_erp(erp) {}

CbiArchiveReader::BancaAgenzia CbiArchiveReader::bancaAgenzia(const QString &banca,
                                                              const QString &agenzia)
{
    const QString code = keyPart(banca, 5) + keyPart(agenzia, 5);
    const auto cached = m_bancheAgenzie.constFind(code);
    if (cached != m_bancheAgenzie.cend())
        return *cached;
    ErpRecord record(archives::TabelleComuni, Bn);
    record.setText(QStringLiteral("codice"), code);
    BancaAgenzia result;
    result.found = m_erp.readEq(record, 1);
    if (result.found) {
        result.abi = record.text(QStringLiteral("abi"));
        result.cab = record.text(QStringLiteral("cab"));
        result.desBanca = record.text(QStringLiteral("des_banca"));
        result.desAgenzia = record.text(QStringLiteral("des_agenzia"));
    }
    m_bancheAgenzie.insert(code, result);
    return result;
}

QString CbiArchiveReader::DecodificaBanca(const QString &banca)
{
    const QString code = keyPart(banca, 5);
    const auto cached = m_banche.constFind(code);
    if (cached != m_banche.cend())
        return *cached;
    ErpRecord record(archives::TabelleComuni, Bn);
    QString name;
    // Positioned on the first record of the bank's key range; found only when that record
    // is still a "BN " record of the same bank.
    if (m_erp.readFirst(record, 1, cp1252::encode(Bn + code)) &&
        record.text(QStringLiteral("tipo_rec")) == Bn &&
        record.text(QStringLiteral("codice")).left(5) == code)
        name = record.text(QStringLiteral("des_banca"));
    m_banche.insert(code, name);
    return name;
}

QString CbiArchiveReader::DecodificaAgenzia(const QString &banca, const QString &agenzia)
{
    return bancaAgenzia(banca, agenzia).desAgenzia;
}

std::optional<Iban> CbiArchiveReader::ibanAzienda(const QString &banca, const QString &agenzia)
{
    const QString code = keyPart(banca, 5) + keyPart(agenzia, 5);
    const auto cached = m_ibanAzienda.constFind(code);
    if (cached != m_ibanAzienda.cend())
        return *cached;
    ErpRecord record(archives::TabelleAzienda, QStringLiteral("BA3"));
    record.setText(QStringLiteral("codice"), code);
    std::optional<Iban> result;
    if (m_erp.readEq(record, 1))
        result = Iban{record.text(QStringLiteral("iban_paese")),
                      record.text(QStringLiteral("iban_resto"))};
    m_ibanAzienda.insert(code, result);
    return result;
}

CbiArchiveReader::BancaCliFor CbiArchiveReader::bancaCliFor(const QString &kind,
                                                            const QString &code)
{
    const QString key = keyPart(kind, 1) + keyPart(code, 6);
    const auto cached = m_bancheCliFor.constFind(key);
    if (cached != m_bancheCliFor.cend())
        return *cached;
    ErpRecord record(archives::ClientiFornitori);
    record.setText(QStringLiteral("ind_clifor"), kind);
    record.setText(QStringLiteral("cod_clifor"), code);
    BancaCliFor result;
    result.found = m_erp.readEq(record, 1);
    if (result.found) {
        result.banca = record.text(QStringLiteral("banca"));
        result.agenzia = record.text(QStringLiteral("agenzia"));
        result.conto = record.text(QStringLiteral("conto"));
        result.iban = Iban{record.text(QStringLiteral("iban_paese")),
                           record.text(QStringLiteral("iban_resto"))};
    }
    m_bancheCliFor.insert(key, result);
    return result;
}

CbiArchiveReader::Anagrafica CbiArchiveReader::anagrafica(const QString &code)
{
    const QString key = keyPart(code, 6);
    const auto cached = m_anagrafiche.constFind(key);
    if (cached != m_anagrafiche.cend())
        return *cached;
    ErpRecord record(archives::AnagraficheComuni);
    record.setText(QStringLiteral("cod_clifor"), code);
    Anagrafica result;
    result.found = m_erp.readEq(record, 1);
    if (result.found) {
        result.beneficiario = Beneficiario{record.text(QStringLiteral("ragsoc")),
                                           record.text(QStringLiteral("cod_fiscale")),
                                           record.text(QStringLiteral("partita_iva"))};
        result.indirizzo = Indirizzo{
            record.text(QStringLiteral("indirizzo")), record.text(QStringLiteral("cap")),
            record.text(QStringLiteral("citta")), record.text(QStringLiteral("provincia"))};
    }
    m_anagrafiche.insert(key, result);
    return result;
}

std::optional<Indirizzo> CbiArchiveReader::sede(const QString &code, const QString &site)
{
    const QString key = keyPart(code, 6) + u'A' + keyPart(site, 6);
    const auto cached = m_sedi.constFind(key);
    if (cached != m_sedi.cend())
        return *cached;
    ErpRecord record(archives::SediClientiFornitori);
    record.setText(QStringLiteral("cod_clifor"), code);
    record.setText(QStringLiteral("tipo_sede"), QStringLiteral("A"));
    record.setText(QStringLiteral("cod_sede"), site);
    std::optional<Indirizzo> result;
    if (m_erp.readEq(record, 1))
        result = Indirizzo{record.text(QStringLiteral("indirizzo")),
                           record.text(QStringLiteral("cap")), record.text(QStringLiteral("citta")),
                           record.text(QStringLiteral("provincia"))};
    m_sedi.insert(key, result);
    return result;
}

} // namespace pg::bankfile
