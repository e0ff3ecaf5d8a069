#include "recordmanagerfactory.h"

#include "embeddedarchivestore.h"
#include "libraryrecordmanager.h"

namespace pg::archives {

RecordManagerSettings RecordManagerSettings::fromEnvironment()
{
    RecordManagerSettings settings;
    settings.library = qEnvironmentVariable("PAGAMENTI_RECORD_MANAGER").trimmed();
    settings.vbInitLibrary = qEnvironmentVariable("PAGAMENTI_VBINIT_LIBRARY").trimmed();
    return settings;
}

std::unique_ptr<RecordManager> createRecordManager(const RecordManagerSettings &settings)
{
    if (settings.usesLibrary())
        return std::make_unique<LibraryRecordManager>(settings.library.trimmed(),
                                                      settings.vbInitLibrary.trimmed());
    return std::make_unique<EmbeddedArchiveStore>();
}

} // namespace pg::archives
