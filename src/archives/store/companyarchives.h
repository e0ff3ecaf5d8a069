#pragma once

#include "recordmanagerfactory.h"

#include <QString>

namespace pg::archives {

// Whether the company's archive directory holds the suite's archives: looked at before the
// program creates anything there (its local database), so that a parpe file naming the wrong
// directory leaves nothing behind. Empty when the directory holds the due items' archive,
// otherwise the reason in Italian. With a record-manager library only the directory itself
// can be looked at: the library keeps its files to itself.
QString companyArchivesProblem(
    const QString &companyArchiveDir,
    const RecordManagerSettings &settings = RecordManagerSettings::fromEnvironment());

} // namespace pg::archives
