#pragma once

#include "printoptions.h"
#include "templatemerge.h"

#include <QLocale>

namespace pg::archives {
struct CompanyData;
}
namespace pg::distinta {
struct Distinta;
}

namespace pg::printing {

class PrintArchiveReader;

// The values a saved distinta is printed with: the company's data, the header with its
// presenting bank, the presentation date chosen, one set of row fields per due item (or per
// grouped payment, when the clerk prints them grouped) with the beneficiary's name, address
// and bank read from the suite's archives, and the totals. Amounts are written "#,0.00" and
// dates "dd/mm/yyyy" under the locale given.
//
// groupTemplate is the description template of grouped payments ("DesAlt"); it is used only
// when grouped rows are asked for and the distinta has none yet (grouped rows are rebuilt on
// every save, so this concerns distinte saved before they existed).
MergeData distintaMergeData(const distinta::Distinta &distinta,
                            const archives::CompanyData &company, PrintArchiveReader &archives,
                            const PrintOptions &options, const QString &groupTemplate,
                            const QLocale &locale = QLocale());

} // namespace pg::printing
