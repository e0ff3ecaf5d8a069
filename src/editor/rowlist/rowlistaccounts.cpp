#include "rowlistaccounts.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"

namespace pg::editor {

void RowListAccounts::setSession(archives::ErpSession *erp)
{
    if (erp != m_erp)
        m_accounts.clear();
    m_erp = erp;
}

void RowListAccounts::prefetch(const distinta::RecordSet<distinta::Riga> &rows)
{
    if (!m_erp)
        return;
    archives::ErpRecord record(archives::AnagraficheComuni);
    for (int i = 0; i < rows.size(); ++i) {
        const QString code = rows.at(i).cod_clifor.trimmed();
        if (code.isEmpty() || m_accounts.contains(code))
            continue;
        Account account;
        record.clear();
        record.setText(QStringLiteral("cod_clifor"), code);
        if (m_erp->readEq(record, 1)) {
            account.ragsoc = record.trimmed(QStringLiteral("ragsoc"));
            account.piva = record.trimmed(QStringLiteral("partita_iva"));
            if (account.piva.isEmpty())
                account.piva = record.trimmed(QStringLiteral("cod_fiscale"));
        }
        m_accounts.insert(code, account);
    }
}

const RowListAccounts::Account &RowListAccounts::account(const QString &code) const
{
    static const Account none;
    const auto it = m_accounts.constFind(code.trimmed());
    return it == m_accounts.cend() ? none : it.value();
}

} // namespace pg::editor
