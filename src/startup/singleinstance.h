#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

#include <functional>

#include <memory>

namespace pg {

// One running copy of the program per user. The first start takes a lock file and listens on
// a local socket; a later start finds the lock taken, asks the running copy through the socket
// to bring its window to the front, and ends. A lock left behind by a copy that died is taken
// over. Both live in the user's runtime directory (the named pipe namespace on Windows).
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    // The request a later start sends, and the answers of the running copy: raised when it
    // brought its window to the front, starting while it has no window yet.
    static constexpr char RaiseRequest[] = "raise\n";
    static constexpr char RaisedAnswer[] = "raised\n";
    static constexpr char StartingAnswer[] = "starting\n";

    // directory: where the lock file and the socket live; empty means the user's runtime
    // directory.
    explicit SingleInstance(const QString &directory = {}, QObject *parent = nullptr);
    ~SingleInstance() override;

    // True when this process is now the running copy (it then answers later starts).
    bool tryAcquire();
    bool isAcquired() const { return m_acquired; }

    // Asks the running copy to raise its window; true when it answered that it did.
    bool activatePrevious(int waitMs = 5000) const;

    // The running copy's window, or nothing while it has none. A request that arrives
    // before there is a window is remembered and carried out when the window comes.
    void setRaiseHandler(std::function<void()> raise);

    QString lockPath() const;
    QString serverName() const;

signals:
    void raiseRequested();

private:
    void answer();

    QString m_directory;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer m_server;
    std::function<void()> m_raise;
    bool m_acquired = false;
    bool m_pendingRaise = false;
};

} // namespace pg
