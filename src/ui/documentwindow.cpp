#include "documentwindow.h"

#include "core/cp1252.h"
#include "core/prompter.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QProcess>
#include <QScreen>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace pg::ui {

namespace {

void cannotShow(const QString &path, const QString &why)
{
    msgBox(QStringLiteral("Impossibile mostrare il file %1: %2")
               .arg(QDir::toNativeSeparators(path), why),
           Buttons::Ok, Icon::Exclamation);
}

} // namespace

DocumentWindow::DocumentWindow(const QString &title, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("DocumentWindow"));
    setWindowTitle(title);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
}

DocumentWindow::SystemOpener DocumentWindow::systemOpener(Kind kind)
{
    return [kind](const QString &path) {
#ifdef Q_OS_WIN
        if (kind == Kind::Text)
            return QProcess::startDetached(QStringLiteral("notepad"),
                                           {QDir::toNativeSeparators(path)});
#else
        Q_UNUSED(kind);
#endif
        return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    };
}

bool DocumentWindow::open(const QString &path, Kind kind, const QString &title, QWidget *parent,
                          const SystemOpener &opener)
{
    if (!QFileInfo(path).isFile()) {
        cannotShow(path, QStringLiteral("il file non esiste."));
        return false;
    }
    const SystemOpener external = opener ? opener : systemOpener(kind);
    if (external(path))
        return true;
    return show(path, kind, title, parent) != nullptr;
}

DocumentWindow *DocumentWindow::show(const QString &path, Kind kind, const QString &title,
                                     QWidget *parent)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        cannotShow(path, file.errorString());
        return nullptr;
    }
    auto *window = new DocumentWindow(title, parent);
    auto *layout = new QVBoxLayout(window);
    if (kind == Kind::Text) {
        auto *text = new QPlainTextEdit(window);
        text->setReadOnly(true);
        text->setLineWrapMode(QPlainTextEdit::NoWrap);
        text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        // The program's reports are Windows-1252 with CR LF line ends.
        text->setPlainText(cp1252::decode(file.readAll()).remove(u'\r'));
        window->m_view = text;
    } else {
        auto *page = new QTextBrowser(window);
        page->setOpenExternalLinks(true);
        page->setSource(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
        window->m_view = page;
    }
    layout->addWidget(window->m_view, 1);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, window);
    connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::close);
    layout->addWidget(buttons);

    // As large as a page wants, never larger than the screen.
    QSize size(kind == Kind::Text ? 760 : 900, 640);
    if (const QScreen *screen = parent ? parent->screen() : window->screen())
        size = size.boundedTo(screen->availableGeometry().size() * 0.9);
    window->resize(size);
    window->QDialog::show();
    window->raise();
    window->activateWindow();
    return window;
}

QString DocumentWindow::shownText() const
{
    if (auto *text = qobject_cast<QPlainTextEdit *>(m_view))
        return text->toPlainText();
    if (auto *page = qobject_cast<QTextBrowser *>(m_view))
        return page->toPlainText();
    return {};
}

} // namespace pg::ui
