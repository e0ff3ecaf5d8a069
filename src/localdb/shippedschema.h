#pragma once

#include <QByteArray>

namespace pg {

// The schema description file installed beside the program ("QXARTRAC.DAT"), exactly as
// shipped: Windows-1252 bytes with CR LF line ends. The demo installation writes it into the
// program directory; the local database is created from it.
QByteArray shippedSchemaDescription();

} // namespace pg
