#include "archivewaitnotice.h"

#include <QCoreApplication>
#include <QDir>
#include <QProgressDialog>

namespace pg::ui {

namespace {

// A wait is over when no notice came for this long (notices come four times a second).
constexpr int QuietMs = 400;

} // namespace

ArchiveWaitNotice::ArchiveWaitNotice(QWidget *parent) : m_parent(parent)
{
    m_closer.setInterval(QuietMs);
    QObject::connect(&m_closer, &QTimer::timeout, [this] { closeWhenOver(); });
    archives::BusyWait::setObserver(
        [this](const archives::BusyWait::Notice &n) { return notice(n); });
}

ArchiveWaitNotice::~ArchiveWaitNotice()
{
    archives::BusyWait::setObserver({});
    delete m_dialog.data();
}

bool ArchiveWaitNotice::notice(const archives::BusyWait::Notice &notice)
{
    if (notice.first || !m_dialog) {
        delete m_dialog.data();
        m_dialog = new QProgressDialog(m_parent);
        m_dialog->setWindowTitle(QStringLiteral("Archivio in uso"));
        m_dialog->setCancelButtonText(QStringLiteral("&Annulla"));
        // Nothing else of the program may run while one of its calls waits.
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setAutoClose(false);
        m_dialog->setAutoReset(false);
        m_dialog->setMinimumDuration(0);
        m_dialog->setRange(0, notice.limitMs);
    }
    m_dialog->setLabelText(
        QStringLiteral("L'archivio %1 è in uso da un altro programma di [orvida].\n"
                       "Attesa in corso: %2 secondi di %3 al massimo.")
            .arg(QDir::toNativeSeparators(notice.path))
            .arg(notice.waitedMs / 1000)
            .arg(notice.limitMs / 1000));
    m_dialog->setValue(notice.waitedMs);
    m_dialog->show();
    m_sinceNotice.start();
    m_closer.start();
    QCoreApplication::processEvents();
    return m_dialog && !m_dialog->wasCanceled();
}

void ArchiveWaitNotice::closeWhenOver()
{
    if (m_sinceNotice.isValid() && m_sinceNotice.elapsed() < QuietMs)
        return;
    m_closer.stop();
    delete m_dialog.data();
}

} // namespace pg::ui
