#include "screenshottour.h"

#include "editor/rowlist/rowlistview.h"
#include "editor/window/distintaeditor.h"
#include "editor/window/mainwindow.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include <functional>
#include <memory>

namespace pg::app {

namespace {

// Saves a picture of the widget into the tour's directory.
void save(QWidget *widget, const QString &dir, const QString &name)
{
    widget->grab().save(QDir(dir).filePath(name + QStringLiteral(".png")));
}

// Once a modal window of the class is on top (and has painted), runs act on it. The command
// that opens the window is started after this and waits in the window's own loop.
void whenModal(const char *className, std::function<void(QDialog *)> act)
{
    auto *timer = new QTimer(qApp);
    auto tries = std::make_shared<int>(0);
    QObject::connect(timer, &QTimer::timeout, qApp, [=] {
        auto *modal = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        const bool found = modal && modal->isVisible() && modal->inherits(className);
        if (!found && ++*tries < 500)
            return;
        timer->stop();
        timer->deleteLater();
        if (found)
            act(modal);
    });
    timer->start(200);
}

// Takes the picture of the dialog that the command opens, and closes it unused. The picture
// waits for the dialog to lay itself out and paint.
void grabDialog(const char *className, const QString &dir, const QString &name,
                const std::function<void()> &command)
{
    whenModal(className, [dir, name](QDialog *dialog) {
        QTimer::singleShot(500, dialog, [dialog, dir, name] {
            save(dialog, dir, name);
            dialog->reject();
        });
    });
    command();
}

} // namespace

void startScreenshotTour(editor::MainWindow &window)
{
    const QString dir = qEnvironmentVariable("PAGAMENTI_SCREENSHOTS");
    if (dir.isEmpty())
        return;
    QTimer::singleShot(500, &window, [&window, dir] {
        // The whole screen, as a clerk's 1024x768 one shows the window maximised.
        window.resize(window.screen()->availableGeometry().size());
        window.btnGestione_Click(editor::DistintaEditor::Successiva);
        QApplication::processEvents();
        save(&window, dir, QStringLiteral("main"));
        grabDialog("pg::editor::SelectionDialog", dir, QStringLiteral("selezione"),
                   [&window] { window.btnGestione_Click(editor::DistintaEditor::Nuova); });
        grabDialog("pg::lists::OptionsDialog", dir, QStringLiteral("opzioni"),
                   [&window] { window.cmdOptions_Click(); });
        grabDialog("pg::bankfile::frmCreaFile", dir, QStringLiteral("bonifici"),
                   [&window] { window.cmdCreaFile_Click(); });
        // The supplier of the first row, its bank data whole.
        editor::RowListView *list = window.lvwScadenze();
        list->setCurrentIndex(list->model()->index(0, 1));
        grabDialog("pg::editor::DetailDialog", dir, QStringLiteral("fornitore"),
                   [&window] { window.cmdZoomCli_Click(); });
        // The print dialog, then "Stampa" into the preview, closed without printing.
        whenModal("pg::printing::StampaDialog", [dir](QDialog *dialog) {
            save(dialog, dir, QStringLiteral("stampa"));
            grabDialog("QPrintPreviewDialog", dir, QStringLiteral("anteprima"), [dialog] {
                dialog->findChild<QPushButton *>(QStringLiteral("cmdStampa"))->click();
            });
            dialog->reject();
        });
        window.cmdStSolle_Click();
        window.close();
    });
}

} // namespace pg::app
