#pragma once

#include "cbirecords.h"

#include "archives/store/erpsession.h"

#include <QHash>
#include <QString>

#include <optional>

namespace pg::bankfile {

// The suite's records that the bank file reads, each by its exact key, and each read at most
// once per file: a distinta of thousands of rows pays far fewer suppliers and banks, and the
// records do not change while the file is built. Every read starts from a blank record with
// only its key set, so a record that is not found leaves blank fields, never the fields of
// the record read before it.
class CbiArchiveReader
{
public:
    explicit CbiArchiveReader(archives::ErpSession &erp);

    // A bank and agency record ("BN " + bank (5) + agency (5) in the common tables).
    struct BancaAgenzia
    {
        bool found = false;
        QString abi;
        QString cab;
        QString desBanca;
        QString desAgenzia;
    };
    BancaAgenzia bancaAgenzia(const QString &banca, const QString &agenzia);

    // The name of a bank from its code alone: the bank name of the first "BN " record of
    // that bank in key order (all its agencies carry the same bank name). Empty when the
    // suite has no agency of that bank.
    QString DecodificaBanca(const QString &banca);
    // The name of the agency of that bank; empty when the record is not found.
    QString DecodificaAgenzia(const QString &banca, const QString &agenzia);

    // The IBAN of a company bank ("BA3" + bank (5) + agency (5) in the company tables);
    // nothing when the record is not found.
    std::optional<Iban> ibanAzienda(const QString &banca, const QString &agenzia);

    // The bank data of a customer or supplier of the company (kind "F" or "C" and code (6)).
    struct BancaCliFor
    {
        bool found = false;
        QString banca;
        QString agenzia;
        QString conto;
        Iban iban;
    };
    BancaCliFor bancaCliFor(const QString &kind, const QString &code);

    // The master record of a customer or supplier (code (6) in the common master data).
    struct Anagrafica
    {
        bool found = false;
        Beneficiario beneficiario;
        Indirizzo indirizzo;
    };
    Anagrafica anagrafica(const QString &code);

    // An administrative site of a customer or supplier (code (6), "A", site code (6));
    // nothing when it is not found.
    std::optional<Indirizzo> sede(const QString &code, const QString &site);

private:
    archives::ErpSession &m_erp;
    QHash<QString, BancaAgenzia> m_bancheAgenzie;
    QHash<QString, QString> m_banche;
    QHash<QString, std::optional<Iban>> m_ibanAzienda;
    QHash<QString, BancaCliFor> m_bancheCliFor;
    QHash<QString, Anagrafica> m_anagrafiche;
    QHash<QString, std::optional<Indirizzo>> m_sedi;
};

} // namespace pg::bankfile
