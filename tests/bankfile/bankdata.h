#pragma once

#include "archives/store/erprecord.h"
#include "distinta/distinta.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace pg::distinta {
class DistinteStore;
}

// The suite and the distinte of the bank-file tests: the company with a presenting bank whose
// IBAN is usable and one whose IBAN is not, banks and agencies, suppliers with their bank
// data and sites, and the distinte 1, 2, 3, 4 and 12 whose files are written by hand in
// golden/.
namespace pg::test {

// One row of a distinta as the tests describe it.
struct RowData
{
    QString link;
    QString account;
    QString doc;
    QString date;
    QString bank;
    QString agency;
    QString accountNumber;
    double amount;
    QString description;
    QString series;
    QString site;
};

struct DistintaData
{
    int number;
    bool secondBank; // the presenting bank without a usable IBAN
    QString references;
    int dispositions;
    double total;
    QList<RowData> rows;
};

// The records of the suite, and the due items of every distinta's rows.
QList<archives::ErpRecord> suiteRecords();
QList<archives::ErpRecord> dueItemsOfTheDistinte();
// Supplier 200001 of the suite as a master record with other fields (for odd data).
archives::ErpRecord master(const QString &code, const QString &name, const QString &address,
                           const QString &cap, const QString &city, const QString &province,
                           const QString &taxCode, const QString &vat);

// The administrative site "000001" of an account.
archives::ErpRecord site(const QString &code, const QString &address, const QString &cap,
                         const QString &city, const QString &province);

DistintaData distintaData(int number);
distinta::Riga rigaOf(const RowData &s);
// The distinta of the data in memory (not saved): created 15/01/2024, value 20/01/2024.
distinta::Distinta distintaOf(distinta::DistinteStore &store, const DistintaData &s,
                              const QString &currency = QStringLiteral("  "));

// Valid IBANs of the suppliers of the bank-file data, on the bank and agency of their rows,
// and the bank record of a supplier with such an IBAN.
QString ibanOf(const QString &account);
archives::ErpRecord bankOf(const QString &supplier, const QString &iban);
// The texts of the XML elements whose path ends in suffix, in document order.
QStringList texts(const QByteArray &xml, const QString &suffix);

QByteArray readAll(const QString &path);
// A hand-written file of golden/.
QByteArray goldenFile(const QString &name);

} // namespace pg::test
