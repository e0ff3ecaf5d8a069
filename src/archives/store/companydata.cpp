#include "companydata.h"

#include "archivenumbers.h"

namespace pg::archives {

CompanyData CompanyData::read(ErpSession &erp)
{
    CompanyData company;
    // The key is the record type and ten blanks.
    ErpRecord az1(TabelleAzienda, QStringLiteral("AZ1"));
    az1.setText(QStringLiteral("codice"), QString(10, u' '));
    company.az1Found = erp.readEq(az1, 1);
    if (company.az1Found) {
        company.ragsoc = az1.text(QStringLiteral("ragsoc"));
        company.indirizzo = az1.text(QStringLiteral("indirizzo"));
        company.citta = az1.text(QStringLiteral("citta"));
        company.provincia = az1.text(QStringLiteral("provincia"));
        company.cap = az1.text(QStringLiteral("cap"));
    }
    ErpRecord az3(TabelleAzienda, QStringLiteral("AZ3"));
    az3.setText(QStringLiteral("codice"), QString(10, u' '));
    company.az3Found = erp.readEq(az3, 1);
    if (company.az3Found) {
        company.codFiscale = az3.text(QStringLiteral("cod_fiscale"));
        company.partitaIva = az3.text(QStringLiteral("partita_iva"));
        company.cuc = az3.text(QStringLiteral("cuc"));
    }
    return company;
}

} // namespace pg::archives
