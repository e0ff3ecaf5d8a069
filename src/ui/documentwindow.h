#pragma once

#include <QDialog>

#include <functional>

namespace pg::ui {

// A window of the program that shows a document the clerk asked for where the system has no
// application to open it with (a machine without a text editor or browser registered): the
// completeness report, decoded from Windows-1252 and shown in a fixed-width font, or the
// clerk's manual as a page. It stays open beside the main window until the clerk closes it.
class DocumentWindow : public QDialog
{
    Q_OBJECT

public:
    enum class Kind { Text, Html };

    // What opens a file with the system's application; false when nothing could be started.
    using SystemOpener = std::function<bool(const QString &path)>;

    // The file with the system's application (opener, by default the system's opener of the
    // kind); where that cannot be done, in a window of the program. False, after a message
    // that says why, when not even that can show it.
    static bool open(const QString &path, Kind kind, const QString &title, QWidget *parent,
                     const SystemOpener &opener = {});
    // Notepad for a text on Windows, the system's default application elsewhere.
    static SystemOpener systemOpener(Kind kind);

    // The window of the program with the file; nullptr, after its message, when the file
    // cannot be read.
    static DocumentWindow *show(const QString &path, Kind kind, const QString &title,
                                QWidget *parent);

    // What the window shows, as plain text.
    QString shownText() const;

private:
    DocumentWindow(const QString &title, QWidget *parent);

    QWidget *m_view = nullptr;
};

} // namespace pg::ui
