#pragma once

#include <QTcpSocket>

namespace pg::test {

// A VNC viewer reduced to a keyboard. A program started on Qt's "vnc" platform serves its
// screen on a TCP port; this client connects there and types into the window that has the
// focus, as a clerk at the keyboard would. It never reads the screen.
class VncKeyboard
{
public:
    // Some X key symbols the tests type.
    static constexpr quint32 Return = 0xff0d;
    static constexpr quint32 Escape = 0xff1b;
    static constexpr quint32 Up = 0xff52;
    static constexpr quint32 Down = 0xff54;
    static constexpr quint32 PageUp = 0xff55;
    static constexpr quint32 PageDown = 0xff56;
    static constexpr quint32 ControlLeft = 0xffe3;

    // A TCP port of this machine that nobody listens on right now.
    static quint16 freePort();

    // Connects to the program's screen and completes the handshake; false when the program
    // does not answer as a VNC server.
    bool connectTo(quint16 port);
    // Presses and releases the key, with Control held down around it when asked.
    void type(quint32 keySymbol, bool control = false);

private:
    QByteArray readExactly(qint64 size);
    void sendKey(quint32 keySymbol, bool down);

    QTcpSocket m_socket;
};

} // namespace pg::test
