#include "singleinstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

namespace pg {

namespace {

QString defaultDirectory()
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (dir.isEmpty())
        dir = QDir::tempPath();
    QDir().mkpath(dir);
    return dir;
}

} // namespace

SingleInstance::SingleInstance(const QString &directory, QObject *parent)
    : QObject(parent), m_directory(directory.isEmpty() ? defaultDirectory() : directory)
{
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::answer);
}

SingleInstance::~SingleInstance()
{
    m_server.close();
    if (m_lock)
        m_lock->unlock();
}

QString SingleInstance::lockPath() const
{
    return QDir(m_directory).filePath(QStringLiteral("pagamenti.lock"));
}

QString SingleInstance::serverName() const
{
#ifdef Q_OS_WIN
    // Pipe names are global: the directory (per user) makes the name per user.
    const QByteArray hash =
        QCryptographicHash::hash(m_directory.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    return QStringLiteral("pagamenti-") + QString::fromLatin1(hash);
#else
    return QDir(m_directory).filePath(QStringLiteral("pagamenti.sock"));
#endif
}

bool SingleInstance::tryAcquire()
{
    if (m_acquired)
        return true;
    m_lock = std::make_unique<QLockFile>(lockPath());
    // A lock whose owner no longer runs is stale at once: a crash must not keep the program
    // from starting again.
    m_lock->setStaleLockTime(0);
    if (!m_lock->tryLock(0)) {
        m_lock.reset();
        return false;
    }
    QLocalServer::removeServer(serverName());
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.listen(serverName());
    m_acquired = true;
    return true;
}

void SingleInstance::setRaiseHandler(std::function<void()> raise)
{
    m_raise = std::move(raise);
    if (m_raise && m_pendingRaise) {
        m_pendingRaise = false;
        m_raise();
    }
}

void SingleInstance::answer()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
            if (!socket->canReadLine())
                return;
            const QByteArray request = socket->readLine();
            if (request != RaiseRequest) {
                socket->disconnectFromServer();
                return;
            }
            emit raiseRequested();
            if (m_raise) {
                m_raise();
                socket->write(RaisedAnswer);
            } else {
                m_pendingRaise = true;
                socket->write(StartingAnswer);
            }
            socket->flush();
            socket->disconnectFromServer();
        });
    }
}

bool SingleInstance::activatePrevious(int waitMs) const
{
    QElapsedTimer clock;
    clock.start();
    QLocalSocket socket;
    // The running copy takes the lock a moment before it listens: try again while it starts.
    for (;;) {
        socket.connectToServer(serverName());
        if (socket.waitForConnected(std::max<qint64>(1, waitMs - clock.elapsed())))
            break;
        if (clock.elapsed() >= waitMs)
            return false;
        QThread::msleep(50);
    }
    socket.write(RaiseRequest);
    if (!socket.waitForBytesWritten(waitMs))
        return false;
    QByteArray reply;
    while (!reply.endsWith('\n') && clock.elapsed() < waitMs) {
        if (!socket.waitForReadyRead(std::max<qint64>(1, waitMs - clock.elapsed())))
            break;
        reply += socket.readAll();
    }
    socket.disconnectFromServer();
    return reply == RaisedAnswer;
}

} // namespace pg
