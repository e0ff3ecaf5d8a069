#pragma once

#include <QIcon>
#include <QString>

namespace pg::ui {

// The program's bundled icons (data/icons), each with its normal look and its disabled look.
QIcon icon(const QString &name);

// The image list of the six management buttons: images 1 to 6 are the enabled looks of
// buttons 0 to 5, images 7 to 12 their disabled looks.
QIcon toolbarImage(int number);

} // namespace pg::ui
