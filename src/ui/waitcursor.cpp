#include "waitcursor.h"

#include <QCursor>
#include <QGuiApplication>

namespace pg::ui {

WaitCursor::WaitCursor()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

WaitCursor::~WaitCursor()
{
    QGuiApplication::restoreOverrideCursor();
}

} // namespace pg::ui
