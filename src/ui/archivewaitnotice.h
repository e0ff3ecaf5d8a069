#pragma once

#include "archives/store/busywait.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

class QProgressDialog;
class QWidget;

namespace pg::ui {

// The wait for an archive that another program of the suite holds, shown to the clerk while
// it lasts: a window that counts the seconds against the longest wait, whose "Annulla" ends
// the wait at once (the operation then fails as with an archive in use). It closes by itself
// once the wait is over. Observes every archive store of the program while it lives.
class ArchiveWaitNotice
{
public:
    explicit ArchiveWaitNotice(QWidget *parent = nullptr);
    ~ArchiveWaitNotice();
    ArchiveWaitNotice(const ArchiveWaitNotice &) = delete;
    ArchiveWaitNotice &operator=(const ArchiveWaitNotice &) = delete;

    // A notice of the wait in progress: the window shown or moved on; false once the clerk
    // cancelled.
    bool notice(const archives::BusyWait::Notice &notice);
    QProgressDialog *dialog() const { return m_dialog; }

private:
    void closeWhenOver();

    QPointer<QWidget> m_parent;
    QPointer<QProgressDialog> m_dialog;
    QTimer m_closer;
    QElapsedTimer m_sinceNotice;
};

} // namespace pg::ui
