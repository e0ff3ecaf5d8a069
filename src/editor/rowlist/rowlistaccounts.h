#pragma once

#include "distinta/recordset.h"
#include "distinta/riga.h"

#include <QHash>
#include <QString>

namespace pg::archives {
class ErpSession;
}

namespace pg::editor {

// The name and VAT number of the customers and suppliers of the rows, read from the suite's
// master records (archive 0) once per account and kept while the list lives: a list of ten
// thousand rows of a few dozen accounts costs a few dozen reads.
class RowListAccounts
{
public:
    struct Account
    {
        QString ragsoc;
        // The partita IVA; the codice fiscale when the account has no VAT number (a private
        // customer).
        QString piva;
    };

    explicit RowListAccounts(archives::ErpSession *erp = nullptr) : m_erp(erp) {}

    void setSession(archives::ErpSession *erp);
    // Reads the accounts of the rows that were not read yet.
    void prefetch(const distinta::RecordSet<distinta::Riga> &rows);
    // The account of a code (as the row keeps it); empty when unknown.
    const Account &account(const QString &code) const;
    // Forgets every account, so that the next prefetch reads them again.
    void clear() { m_accounts.clear(); }

private:
    archives::ErpSession *m_erp;
    QHash<QString, Account> m_accounts; // by trimmed code; unknown accounts kept empty
};

} // namespace pg::editor
