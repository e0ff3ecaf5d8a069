#pragma once

#include "erpsession.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace pg::archives {

// One entry of a lookup list: the cells shown and the text handed back when it is chosen.
struct LookupRow
{
    QStringList cells;
    QString choice;
};

// A lookup list as the F4 window shows it: a title, column headers and the rows.
struct LookupList
{
    QString title;
    QStringList headers;
    QList<LookupRow> rows;
};

// The lists behind the F4 key of the code boxes, read from the suite's archives through the
// record manager (first-read and next-reads on key 1, so that any implementation serves).
// The archives must be open in the session, as the program opens them at start-up. Each
// list takes a filter: a row is kept when every word of the filter occurs in one of its
// cells, without regard to letter case or accents ("forli" finds "Forlì").
class LookupService
{
public:
    // The suite's number of the banks-and-agencies list.
    static constexpr int BanksAndAgenciesList = 16;

    enum class AccountKind { All, Customers, Suppliers };

    explicit LookupService(ErpSession &session);

    // List 16, the banks and agencies ("BN " records of the common tables): ABI, CAB, bank
    // name, agency name. The choice is ABI + " " + CAB: characters 1-5 the ABI, 7-11 the CAB.
    LookupList banksAndAgencies(const QString &filter = {}) const;
    // Customers and suppliers (archive 0): code, kind, name, city, partita IVA; the choice
    // is the six-character code.
    LookupList accounts(const QString &filter = {}, AccountKind kind = AccountKind::All) const;
    // Currencies ("VL " records of the common tables): code and description; the choice is
    // the code.
    LookupList currencies(const QString &filter = {}) const;
    // The company's banks (BA1 records of the company tables): bank code, agency code,
    // description; the choice is bank code + " " + agency code, like list 16.
    LookupList companyBanks(const QString &filter = {}) const;

    // Whether a row passes a filter.
    static bool matches(const QStringList &cells, const QString &filter);

private:
    // Calls fn for every record of the archive on key 1 from the start key while its key
    // begins with it.
    template<typename Fn>
    void walk(int archive, const QString &recordType, const QByteArray &startKey, Fn fn) const;

    ErpSession *m_session;
};

} // namespace pg::archives
