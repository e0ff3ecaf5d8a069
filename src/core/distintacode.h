#pragma once

#include <QString>

namespace pg {

// A distinta's code is its number right-aligned in six characters with leading blanks
// ("@@@@@@"), so that the text order of codes is their numeric order: 7 is "     7".
QString formatDistintaCode(qint64 number);

// The number of a code or of a typed number (blanks ignored); 0 when there is none.
qint64 distintaNumber(const QString &code);

} // namespace pg
