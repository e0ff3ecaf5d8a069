#pragma once

#include "cbirecords.h"

#include "archives/store/companydata.h"

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>

namespace pg::bankfile {

// The presentation of a file of ricevute bancarie: who presents it, to which bank and account,
// on which day and under which name.
struct RibaPresentazione
{
    QString sia; // the company's SIA code
    QString abi; // the presenting bank (banca assuntrice) and its branch
    QString cab;
    QString conto;    // the company's account credited with the collections
    QDate data;       // the day the file is made and presented: the distinta's date
    QString supporto; // the name of the file for the bank: "RIBA_" + the distinta's number
};

// One ricevuta bancaria: the due items of one customer collected at one bank on one due
// date, with what the bank prints on the notice it sends to the customer.
struct Ricevuta
{
    int num = 0;      // progressive number in the file, from 1
    QString scadenza; // due date, yyyymmdd
    qint64 cents = 0; // the amount, the sum of the due items' amounts in cents
    QString abi;      // the customer's bank (banca domiciliataria) and branch
    QString cab;
    QString cliente;       // the customer's code in the suite
    QString nome;          // the customer's name
    QString codiceFiscale; // codice fiscale or partita IVA, as the bank checks it
    Indirizzo indirizzo;
    QString banca;          // names of the customer's bank and agency
    QStringList documenti;  // the invoices collected: "101/A del 15/12/2023"
    QString numeroRicevuta; // the receipt's number, digits only
};

// The records of the CBI "RiBa" file of ricevute bancarie (presentation of receivables to the
// bank for collection), one line each as the bytes the file holds: Windows-1252, no line end,
// exactly 120 bytes. docs/riba.md lists every field with its source.
class RibaRecords
{
public:
    static constexpr int Width = 120;
    static constexpr int Lines = 40; // width of a line of the debt's references in "50"

    // The header "IB".
    static QByteArray recordIB(const RibaPresentazione &p);
    // "14": due date, amount, presenting bank and account, customer's bank, the company's
    // SIA code and the customer's code.
    static QByteArray record14(const Ricevuta &r, const RibaPresentazione &p);
    // "20": the creditor (the company): name, address, town, tax code.
    static QByteArray record20(int num, const archives::CompanyData &company);
    // "30": the debtor's name in two parts of 30 and its tax code.
    static QByteArray record30(const Ricevuta &r);
    // "40": the debtor's address and the names of its bank and agency.
    static QByteArray record40(const Ricevuta &r);
    // "50": the invoices collected, in two lines of 40, and the creditor's tax code.
    static QByteArray record50(const Ricevuta &r, const QString &creditorTaxCode);
    // "51": the receipt's number and the creditor's name in short.
    static QByteArray record51(const Ricevuta &r, const QString &creditorName);
    // "70": the closing record of a receivable (the bank's own agreements apply).
    static QByteArray record70(int num);
    // The trailer "EF": the fields of "IB", the number of receivables, their total (as
    // negative amounts: the customers are debited) and the number of lines of the file.
    static QByteArray recordEF(QByteArrayView ib, int dispositions, qint64 totalCents,
                               int lineCount);

    // A tax code as the bank checks it: without blanks, in capitals, and a partita IVA
    // without the country code "IT" in front of its eleven digits.
    static QString normalizedTaxCode(const QString &text);
    // True for a valid partita IVA (11 digits) or codice fiscale (16 characters).
    static bool isValidTaxCode(const QString &normalized);

    // The invoices in lines of the given width: "Fatt. " and the references joined by ", ",
    // broken between references; those that do not fit are counted at the end of the last
    // line ("e altre 3").
    static QStringList referenceLines(const QStringList &documenti, int width, int lines);
};

} // namespace pg::bankfile
