#pragma once

#include "cbiarchivereader.h"
#include "ribarecords.h"

#include "archives/store/companydata.h"
#include "distinta/recordset.h"
#include "distinta/riga.h"
#include "distinta/testata.h"

#include <QByteArray>
#include <QStringList>

namespace pg::bankfile {

// The CBI "RiBa" file of a customers' distinta: its ricevute bancarie presented to the bank
// for collection. One header "IB", for every receivable the records "14", "20", "30", "40",
// "50", "51" and "70", one trailer "EF"; every line 120 bytes, Windows-1252, CR LF; amounts
// in cents (docs/riba.md has every field).
//
// A receivable is one row of the distinta or, when grouping is asked for, the rows of one
// customer with one bank and one due date, their amounts summed and their invoices named
// together. Everything is gathered first, from the distinta and the suite's records (each
// record read once), and checked against what the bank refuses: a customer without bank
// (ABI/CAB), tax code or address, a due date before the presentation, an amount that is not
// positive (a credit note), a currency other than the euro. All problems are known before
// any file is written.
class RibaFile
{
public:
    RibaFile(archives::ErpSession &erp, const archives::CompanyData &company);

    // Gathers and checks the receivables of the rows, in their order. sia is the company's
    // SIA code; the presentation date is the distinta's date. False when there are problems:
    // then nothing may be written.
    bool build(const distinta::Testata &header, const distinta::RecordSet<distinta::Riga> &rows,
               const QString &sia, bool grouped);

    // What stops the file, one line each, in the order found and without repeats.
    const QStringList &problems() const { return m_problems; }
    // All of them in one message for the clerk.
    static QString problemsMessage(const QStringList &problems);

    const QList<Ricevuta> &ricevute() const { return m_ricevute; }
    qint64 totalCents() const { return m_totalCents; }

    // The whole file, every line ended by CR LF.
    QByteArray document() const;

    // The rows that are not ricevute bancarie (payment type "1"), one line each naming the
    // customer, the document and the payment type; and the message that refuses them.
    static QStringList otherPaymentTypes(const distinta::RecordSet<distinta::Riga> &rows);
    static QString otherPaymentTypesMessage(const QStringList &rows);

    // The document a row collects: number, "/" and series when it has one, " del " and its
    // date, and the instalment after the first ("101/A del 15/12/2023 rata 2").
    static QString documentOf(const distinta::Riga &row);

private:
    void problem(const QString &text);
    void checkHeader(const QString &sia);
    // The customer's receivable started from its first row, its data checked.
    Ricevuta start(const distinta::Riga &row, int num);
    // The row's amount added to its receivable, its due date and amount checked.
    void add(Ricevuta &r, const distinta::Riga &row);

    CbiArchiveReader m_reader;
    archives::CompanyData m_company;

    QDate m_presentation;
    RibaPresentazione m_presentazione;
    QStringList m_problems;
    QList<Ricevuta> m_ricevute;
    qint64 m_totalCents = 0;
};

} // namespace pg::bankfile
