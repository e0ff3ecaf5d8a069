#pragma once

#include "localdb/schema.h"

namespace pg::localdb {

// A schema description file cut short (at the end of a table, say) still reads as a valid
// file: only what the program itself needs tells that something is missing. Throws
// SchemaError naming the first table, field, query or relation of the program's own schema
// description that the file lacks; objects beyond the program's are the installation's own
// and pass.
void requireProgramSchema(const DatabaseSchema &file, const DatabaseSchema &program);

} // namespace pg::localdb
