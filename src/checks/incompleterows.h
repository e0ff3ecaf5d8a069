#pragma once

#include "distinta/distintestore.h"

namespace pg::checks {

// The rows of every distinta whose bank data are blank (agency, bank or account number made
// of blanks only), with their distinta's creation date: the list of the older view of the
// completeness check.
distinta::QueryResult incompleteBankRows(distinta::DistinteStore &store);

} // namespace pg::checks
