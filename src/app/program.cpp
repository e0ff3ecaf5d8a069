#include "program.h"

#include "filecommandhooks.h"
#include "quitwhenshown.h"
#include "screenshottour.h"
#include "windowtrace.h"

#include "archives/store/recordmanagerfactory.h"
#include "core/applocale.h"
#include "core/prompter.h"
#include "editor/detail/detaildialog.h"
#include "editor/selection/duitemprogress.h"
#include "editor/selection/selectiondialog.h"
#include "printing/printinghooks.h"
#include "ui/archivewaitnotice.h"
#include "ui/messageboxprompter.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QSocketNotifier>
#include <QTranslator>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace pg::app {

Program::Program() : m_steps(StartupSequence::programSteps())
{
    m_steps.isOnlyInstance = [this] { return m_instance.tryAcquire(); };
    m_steps.ActivatePrevInstance = [this] { m_instance.activatePrevious(); };
}

Program::~Program()
{
    // The unload step, then the print dialog, before the other windows.
    if (m_window)
        m_window->Form_Unload();
    m_printDialog.reset();
}

void Program::installTranslations(QCoreApplication &application)
{
    auto *translator = new QTranslator(&application);
    if (translator->load(QLocale(QLocale::Italian, QLocale::Italy), QStringLiteral("qtbase"),
                         QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

void Program::loadPrintDialog()
{
    m_printDialog = std::make_unique<printing::StampaDialog>(m_printers);
}

void Program::connectOtherParts(editor::MainWindow &window)
{
    // The selection of due items, the row list's work, the print, the bank file and the
    // completeness check set their entries of MainWindow::hooks() here.
    editor::MainWindowHooks &hooks = window.hooks();

    // The selection of due items, the walk that adds them, and the detail views of a row.
    hooks.selectDueItems = [this](QWidget *parent) -> std::optional<editor::SelectionResult> {
        const std::optional<editor::SelectionValues> values =
            editor::SelectionDialog::choose(m_load->erp(), parent);
        return values ? std::optional(values->selectionResult()) : std::nullopt;
    };
    hooks.addSelectedDueItems = [this, &window](distinta::Distinta &d) {
        if (m_load->erp())
            editor::DueItemProgress::addSelectedDueItems(*m_load->erp(), d, &window);
    };
    hooks.dueItemDetail = [this](const archives::ErpRecord &dueItem, QWidget *parent) {
        editor::DetailDialog::showDueItem(dueItem, m_load->erp(), parent);
    };
    hooks.accountDetail = [this](const QString &code, const QString &caption,
                                 const QString &frame, QWidget *parent) {
        if (m_load->erp())
            editor::DetailDialog::showAccount(*m_load->erp(), code, caption, frame, parent);
    };

    // The print dialog, the choice of printer and the list of the templates' fields.
    // Over the main window from now on.
    if (m_printDialog)
        m_printDialog->setParent(&window, m_printDialog->windowFlags());
    printing::installPrintingHooks(
        hooks, *m_load, m_printers, [&window] { window.showPrinter(); }, m_printDialog.get());

    // The bank file and the completeness check.
    installFileCommandHooks(window, *m_load);
}

bool Program::start(const QStringList &arguments)
{
    followSystemLocaleOrItalian();
    StartupSequence(m_steps).run(arguments);
    loadPrintDialog();
    m_load = std::make_unique<editor::MainWindowLoad>(
        [] { return archives::createRecordManager(); }, m_printers);
    m_window = std::make_unique<editor::MainWindow>(*m_load);
    connectOtherParts(*m_window);
    if (m_window->Form_Load() == editor::MainWindowLoad::Outcome::Unload) {
        m_window->Form_Unload();
        return false;
    }
    return true;
}

void Program::show()
{
    m_window->show();
    editor::MainWindow *window = m_window.get();
    m_instance.setRaiseHandler([window] { window->raiseFromOtherStart(); });
}

namespace {

#ifdef Q_OS_UNIX
int g_terminationPipe[2] = {-1, -1};

void onTermination(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(g_terminationPipe[1], &byte, 1);
}

// A request to end the program from the system (logout, shutdown, kill) closes the main window
// as the clerk would: the usual closing checks and the unload step run.
void closeOnTermination(QWidget *window)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_terminationPipe) != 0)
        return;
    auto *notifier = new QSocketNotifier(g_terminationPipe[0], QSocketNotifier::Read, window);
    QObject::connect(notifier, &QSocketNotifier::activated, window, [window] {
        char byte = 0;
        [[maybe_unused]] const auto read = ::read(g_terminationPipe[0], &byte, 1);
        window->close();
    });
    struct sigaction action = {};
    action.sa_handler = onTermination;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGHUP, &action, nullptr);
}
#else
void closeOnTermination(QWidget *) {}
#endif

} // namespace

int Main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    // Anything but the suite's own command line ends at once, without a word.
    if (!StartupSequence::isAcceptedCommandLine(arguments))
        return 0;

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Pagamenti"));
    QApplication::setApplicationVersion(QStringLiteral(PAGAMENTI_VERSION));
    QApplication::setQuitOnLastWindowClosed(true);
    Program::installTranslations(application);

    ui::MessageBoxPrompter prompter;
    PrompterScope scope(prompter);
    // An archive held for a moment by another program of the suite: the wait is shown.
    ui::ArchiveWaitNotice archiveWait;

    Program program;
    if (!program.start(arguments))
        return 1;
    WindowTrace::attach(*program.mainWindow());
    QuitWhenShown::armFromEnvironment(*program.mainWindow());
    program.show();
    closeOnTermination(program.mainWindow());
    startScreenshotTour(*program.mainWindow());
    return QApplication::exec();
}

} // namespace pg::app
