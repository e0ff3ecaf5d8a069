#include "vnckeyboard.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QThread>
#include <QtEndian>

namespace pg::test {

namespace {

constexpr int WaitMs = 30000;

} // namespace

quint16 VncKeyboard::freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

QByteArray VncKeyboard::readExactly(qint64 size)
{
    QByteArray data;
    while (data.size() < size) {
        if (m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(WaitMs))
            return {};
        data += m_socket.read(size - data.size());
    }
    return data;
}

bool VncKeyboard::connectTo(quint16 port)
{
    // The program opens its screen's port only once its window is on it: until then the
    // connection is refused, and tried again.
    for (int attempt = 0; m_socket.state() != QAbstractSocket::ConnectedState; ++attempt) {
        if (attempt == 300)
            return false;
        if (attempt > 0)
            QThread::msleep(100);
        m_socket.abort();
        m_socket.connectToHost(QHostAddress::LocalHost, port);
        m_socket.waitForConnected(WaitMs);
    }
    // The server speaks the protocol's version 3.3: its version, ours, then the security it
    // chose (1: none), our shared flag, and its description of the screen.
    if (!readExactly(12).startsWith("RFB 003."))
        return false;
    m_socket.write("RFB 003.003\n");
    const QByteArray security = readExactly(4);
    if (security.size() != 4 || qFromBigEndian<quint32>(security.constData()) != 1)
        return false;
    m_socket.write("\x01", 1);
    const QByteArray init = readExactly(24);
    if (init.size() != 24)
        return false;
    const quint32 nameLength = qFromBigEndian<quint32>(init.constData() + 20);
    return readExactly(nameLength).size() == qint64(nameLength);
}

void VncKeyboard::sendKey(quint32 keySymbol, bool down)
{
    char event[8] = {4, char(down ? 1 : 0), 0, 0};
    qToBigEndian(keySymbol, event + 4);
    m_socket.write(event, sizeof event);
}

void VncKeyboard::type(quint32 keySymbol, bool control)
{
    if (control)
        sendKey(ControlLeft, true);
    sendKey(keySymbol, true);
    sendKey(keySymbol, false);
    if (control)
        sendKey(ControlLeft, false);
    m_socket.flush();
    m_socket.waitForBytesWritten(WaitMs);
}

} // namespace pg::test
