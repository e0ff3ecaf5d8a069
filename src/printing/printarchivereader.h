#pragma once

#include <QHash>
#include <QString>

namespace pg::archives {
class ErpSession;
}

namespace pg::printing {

// The suite's records the print reads about the people it pays and their banks, each read at
// most once per print: a distinta pays many due items of few accounts and few banks, and the
// records do not change while it is printed. Every read starts from a blank record with only
// its key set, so a record that is not found gives blank fields. Without a session (a print
// made without the suite's archives) nothing is found.
class PrintArchiveReader
{
public:
    explicit PrintArchiveReader(archives::ErpSession *erp);

    // The master record of an account (common master data, by its code).
    struct Anagrafica
    {
        bool found = false;
        QString ragsoc;
        QString indirizzo;
        QString cap;
        QString citta;
        QString provincia;
        QString partitaIva;
        QString codFiscale;
    };
    Anagrafica anagrafica(const QString &code);

    // The bank data of a customer or supplier of the company (by "F" or "C" and its code).
    struct BancaCliFor
    {
        bool found = false;
        QString banca;
        QString agenzia;
        QString conto;
        QString iban; // country and check digits followed by the rest, without blanks
        QString bic;
    };
    BancaCliFor bancaCliFor(const QString &kind, const QString &code);

    // A bank and agency of the common tables ("BN " + bank (5) + agency (5)).
    struct Sportello
    {
        bool found = false;
        QString abi;
        QString cab;
        QString desBanca;
        QString desAgenzia;
    };
    Sportello sportello(const QString &banca, const QString &agenzia);

    // The IBAN of a company bank ("BA3" + bank (5) + agency (5)); empty when not found.
    QString ibanAzienda(const QString &banca, const QString &agenzia);

private:
    archives::ErpSession *m_erp;
    QHash<QString, Anagrafica> m_anagrafiche;
    QHash<QString, BancaCliFor> m_bancheCliFor;
    QHash<QString, Sportello> m_sportelli;
    QHash<QString, QString> m_ibanAzienda;
};

} // namespace pg::printing
