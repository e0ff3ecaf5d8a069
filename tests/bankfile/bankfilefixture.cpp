#include "bankfilefixture.h"

#include "startup/errortrap.h"

namespace pg::test {

bool BankFileFixture::setUpSuite(const QList<archives::ErpRecord> &records)
{
    m_locale = QLocale();
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    m_settings = currentSettings();
    currentSettings() = UserSettings();
    ErrorTrap::instance().resetForTest();
    m_inst = std::make_unique<TestInstallation>();
    if (!m_inst->isValid() || !m_inst->put(records))
        return false;
    m_faulty = std::make_unique<FaultyRecordManager>(m_inst->store());
    m_erp = std::make_unique<archives::ErpSession>(*m_faulty, TestInstallation::Handle);
    m_store = std::make_unique<distinta::DistinteStore>(m_erp.get());
    m_store->setPStrConn(m_inst->connectionString());
    m_prompter = std::make_unique<ScriptedPrompter>();
    return true;
}

void BankFileFixture::tearDownSuite()
{
    m_prompter.reset();
    m_store.reset();
    m_erp.reset();
    m_faulty.reset();
    m_inst.reset();
    currentSettings() = m_settings;
    QLocale::setDefault(m_locale);
}

} // namespace pg::test
