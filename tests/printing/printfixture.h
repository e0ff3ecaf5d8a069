#pragma once

#include "faultyrecordmanager.h"
#include "testinstallation.h"

#include "archives/store/companydata.h"
#include "distinta/distinta.h"
#include "distinta/distintestore.h"

#include <memory>

namespace pg::test {

// A throwaway installation for the print: three suppliers (one with bank data and IBAN, one
// with bank data but no IBAN and a name that needs escaping, one the suite's archives do not
// know), their banks, the company's bank, and saved distinte of as many rows as a test asks,
// spread over the three suppliers in turn. Reads of the suite's records are counted.
class PrintFixture
{
public:
    PrintFixture();

    bool isValid() const { return m_valid; }
    TestInstallation &installation() { return *m_inst; }
    FaultyRecordManager &counting() { return *m_counting; }
    archives::ErpSession &erp() { return *m_erp; }
    distinta::DistinteStore &store() { return *m_store; }
    const archives::CompanyData &company() const { return m_company; }

    // A saved distinta of that many rows (row i, from 1, pays amountOf(i)); empty when the
    // save failed.
    distinta::Distinta saveDistinta(int rows);
    static double amountOf(int row) { return 1000.0 * row + 0.5 * (row % 3); }
    // The supplier of row i: 200001, 200002, 200003 in turn.
    static QString accountOf(int row);

private:
    std::unique_ptr<TestInstallation> m_inst;
    std::unique_ptr<FaultyRecordManager> m_counting;
    std::unique_ptr<archives::ErpSession> m_erp;
    std::unique_ptr<distinta::DistinteStore> m_store;
    archives::CompanyData m_company;
    int m_nextLink = 1;
    bool m_valid = false;
};

} // namespace pg::test
