#pragma once

#include "archives/store/erprecord.h"
#include "demooptions.h"

#include <QList>
#include <QRandomGenerator>
#include <QStringList>

#include <functional>

namespace pg::archives {

// The records of a demo installation, made up under a seed: the same options always give
// the same records, byte for byte.
//
// Customers and suppliers share archive 0 and its six-digit codes: customers are numbered
// from 100001, suppliers from 400001. A few of them are deliberately incomplete so that the
// completeness check and the bank file have something to report:
// - suppliers with no bank data at all, with bank data but no IBAN, with no account number,
//   with no bank and agency, with an agency that the bank table does not know, and one whose
//   due items carry other bank data than its master record;
// - a customer with no bank data.
// Six customers from 100101 on pay by ricevuta bancaria and are complete: their invoices,
// due at the end of the coming months, make a customers' distinta whose RiBa file the bank
// takes (a demo of 100 due items or more holds them among its due items).
class DemoGenerator
{
public:
    // Receives every record; returning false stops the generation.
    using Sink = std::function<bool(const ErpRecord &record)>;

    explicit DemoGenerator(const DemoOptions &options);

    // Every record, archive by archive: 15 (agencies "BN ", currencies "VL "), 0, 14 (AZ1,
    // AZ3, REL, BA1/BA2/BA3), 3, 42, 55, 28, 38 and last 37. False when the sink stopped it.
    bool generate(const Sink &sink);

    // The shipped "causali.ini" and its two-character reason codes, as due items use them.
    static QByteArray causaliIni();
    static QStringList reasonCodes();

    // The release written into the company tables.
    static QString archiveRelease() { return QStringLiteral("07.00.00"); }

private:
    // A customer or supplier as the generator made it up.
    struct AccountData
    {
        QString code;
        QChar kind; // 'C' customer, 'F' supplier
        QString name, address, cap, city, province, codiceFiscale, partitaIva;
        QString phone, email, paymentTerm;
        QChar usualType; // payment type of its payment term
        bool hasBankRecord = true;
        QString bank, agency, account, iban, bic;  // its master's bank data (archive 3)
        QString itemBank, itemAgency, itemAccount; // what its due items carry
        bool hasSite = false;
        QString siteAddress, siteCap, siteCity, siteProvince;
        bool ribaShowcase = false; // one of the customers of ricevute bancarie
    };

    void makeAccounts();
    void makeRibaCustomers();
    // How many due items the customers of ricevute bancarie take of the demo's.
    int ribaDueItems() const;
    bool emitCommonTables(const Sink &sink);
    bool emitAccounts(const Sink &sink);
    bool emitCompanyTables(const Sink &sink);
    bool emitBankData(const Sink &sink);
    bool emitSites(const Sink &sink);
    bool emitPaymentTerms(const Sink &sink);
    bool emitPriceLists(const Sink &sink);
    bool emitDueItems(const Sink &sink);
    bool emitRibaDueItems(const Sink &sink);

    int bounded(int n) { return int(m_rng.bounded(quint32(n))); }
    QString digits(int count);

    DemoOptions m_options;
    QDate m_today;
    QRandomGenerator m_rng;
    QList<AccountData> m_accounts;
    QList<QPair<QString, QString>> m_groups; // (link, description) of split documents
};

} // namespace pg::archives
