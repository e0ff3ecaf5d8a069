#pragma once

#include "faultyrecordmanager.h"
#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/erprecord.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"

#include <QLocale>

#include <memory>

namespace pg::test {

// What the tests of the bank files run on: the Italian locale, the clerk's settings at their
// defaults, a throwaway installation of the suite with the records given, a record manager
// over it that fails on demand, the distinta component and the scripted prompter. A test
// class sets it up in init() and tears it down in cleanup(); the locale and the settings come
// back as they were.
class BankFileFixture
{
protected:
    // False when the installation cannot be made or refuses the records.
    bool setUpSuite(const QList<archives::ErpRecord> &records);
    void tearDownSuite();

    QLocale m_locale;
    UserSettings m_settings;
    std::unique_ptr<ScriptedPrompter> m_prompter;
    std::unique_ptr<TestInstallation> m_inst;
    std::unique_ptr<FaultyRecordManager> m_faulty;
    std::unique_ptr<archives::ErpSession> m_erp;
    std::unique_ptr<distinta::DistinteStore> m_store;
};

} // namespace pg::test
