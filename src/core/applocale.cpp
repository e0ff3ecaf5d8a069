#include "applocale.h"

#include <QLocale>

namespace pg {

void followSystemLocaleOrItalian()
{
    if (QLocale::system().language() == QLocale::C)
        QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
}

} // namespace pg
