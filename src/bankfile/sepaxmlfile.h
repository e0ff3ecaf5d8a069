#pragma once

#include "cbiarchivereader.h"
#include "xsdvalidator.h"

#include "archives/store/companydata.h"
#include "distinta/recordset.h"
#include "distinta/riga.h"
#include "distinta/testata.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringList>

namespace pg::bankfile {

// The SEPA credit transfers of one distinta as the CBI XML message "CBIPaymentRequest"
// (version 00.04.01), the Italian profile of the ISO 20022 payment initiation that the banks
// take today in place of the flat "Bonifici" file.
//
// The message holds one group header, one block of payment information for the presenting
// bank (the debtor) and one transaction per disposition: a row of the distinta or, when rows
// are grouped, a grouped row. Everything is gathered first, from the distinta and the
// suite's records (each record read once), and checked: a disposition that the bank would
// refuse (an IBAN that is missing or wrong, the bank of an Italian IBAN other than the row's,
// an amount that is not positive) is a problem, and all problems are known before any file is
// written. Texts are brought into the SEPA character set and cut to the lengths of the
// schema.
class SepaXmlFile
{
public:
    static constexpr QLatin1StringView Namespace{"urn:CBI:xsd:CBIPaymentRequest.00.04.01"};

    // One credit transfer.
    struct Disposition
    {
        QString supplier;   // the supplier's code in the suite
        QString name;       // the creditor's name, as in the file
        QString endToEndId; // "DIST<distinta>-RIGA<disposition>"
        qint64 cents = 0;
        QString iban;
        QString street;
        QString postCode;
        QString town;
        QString province;
        QString remittance;
    };

    SepaXmlFile(archives::ErpSession &erp, const archives::CompanyData &company);

    // Gathers and checks the dispositions of the rows, in their order. cuc is the company's
    // CBI code; created the moment the message is made (it names the message). Returns
    // false when there are problems: then nothing may be written.
    bool build(const distinta::Testata &header, const distinta::RecordSet<distinta::Riga> &rows,
               const QString &cuc, const QDateTime &created);

    // What stops the file, one line each, in the order found and without repeats.
    const QStringList &problems() const { return m_problems; }
    // All of them in one message for the clerk.
    static QString problemsMessage(const QStringList &problems);

    const QList<Disposition> &dispositions() const { return m_dispositions; }
    qint64 controlSumCents() const { return m_controlSum; }
    QString messageId() const { return m_messageId; }

    // The message, UTF-8 without byte order mark.
    QByteArray document() const;

    // A violation of the schema in words the clerk can act on: the disposition and its
    // supplier when the element belongs to one, the element and the reason.
    QString describe(const XsdValidator::Issue &issue) const;
    // The violations in one message.
    QString invalidMessage(const QList<XsdValidator::Issue> &issues) const;

    // An amount in cents as the message writes it: a point and two decimals ("1234.50").
    static QString amount(qint64 cents);
    // The document a row pays, for the remittance when the row has no description:
    // "Vs.Fatt. " + number ("/" + series) + " del " + date.
    static QString documentReference(const distinta::Riga &row);
    // True for a code of the CBI (CUC): eight capital letters or digits.
    static bool isValidCuc(const QString &cuc);

private:
    void problem(const QString &text);
    // "'code' (name)", as the messages name a supplier.
    static QString supplierLabel(const QString &code, const QString &name);
    void checkCreditorIban(const Disposition &disposition, const distinta::Riga &row);

    CbiArchiveReader m_reader;
    archives::CompanyData m_company;

    QStringList m_problems;
    QList<Disposition> m_dispositions;
    qint64 m_controlSum = 0;
    QString m_messageId;
    QString m_created;
    QString m_executionDate;
    QString m_cuc;
    QString m_debtorIban;
    QString m_debtorAbi;
};

} // namespace pg::bankfile
