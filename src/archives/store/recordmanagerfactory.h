#pragma once

#include "recordmanager.h"

#include <QString>

#include <memory>

namespace pg::archives {

// Which record manager the program uses. The library binding when a library is named,
// the embedded archive store of the company environment otherwise.
struct RecordManagerSettings
{
    QString library;       // PAGAMENTI_RECORD_MANAGER: path or name of the record manager
    QString vbInitLibrary; // PAGAMENTI_VBINIT_LIBRARY: where VBInit and VBEnd are, when apart

    bool usesLibrary() const { return !library.trimmed().isEmpty(); }

    static RecordManagerSettings fromEnvironment();
};

// The record manager of the settings (by default those of the environment). The embedded
// store takes its directories from the company environment, which must be resolved first.
// A library that cannot be loaded still gives a manager: its VBInit returns 0 and
// LibraryRecordManager::errorString() says why.
std::unique_ptr<RecordManager> createRecordManager(
    const RecordManagerSettings &settings = RecordManagerSettings::fromEnvironment());

} // namespace pg::archives
