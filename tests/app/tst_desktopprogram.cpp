#include "scriptedprompter.h"
#include "vnckeyboard.h"

#include "app/program.h"
#include "core/distintacode.h"
#include "distinta/tablesql.h"
#include "distinta/testata.h"
#include "lists/distintelistdialog.h"
#include "lists/distintelistmodel.h"
#include "lists/usersettings.h"
#include "localdb/databaseconnection.h"
#include "printing/stampadialog.h"
#include "startup/singleinstance.h"
#include "ui/codelineedit.h"
#include "ui/maskeddateedit.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace pg;

class TestDesktopProgram : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();
    void quitsOnceShownWhenAsked();
    void runningProgram();
    void realProgramOpensNextPreviousAndCloses();
    void openNextPreviousAndClose();
    void manualAndAbout();
    void fitsTheScreenAndShowsWholeValues();
    void italianButtons();

public slots:
    // Stands for the desktop's browser: the files the program asks it to open.
    void openUrl(const QUrl &url) { m_opened << url; }

private:
    QProcess *startProgram(const QString &argument, const QProcessEnvironment &environment = {});
    // Three saved distinte, 1 to 3, in the database the first start created (once).
    void addDistinte();
    QString companyDir() const { return m_dir.path() + QStringLiteral("/orvida/D_DEMO/"); }

    QTemporaryDir m_dir{QDir::tempPath() + QStringLiteral("/pgXXXXXX")};
    QTemporaryDir m_runtime;
    QProcessEnvironment m_env;
    bool m_distinteAdded = false;
    QList<QUrl> m_opened;
};

void TestDesktopProgram::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    QVERIFY(m_runtime.isValid());
    QFile::setPermissions(m_runtime.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QProcess demo;
    demo.start(QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/pagamenti-cli"),
               {QStringLiteral("demo"), m_dir.path()});
    QVERIFY(demo.waitForFinished(60000));
    QCOMPARE(demo.exitCode(), 0);

    m_env = QProcessEnvironment::systemEnvironment();
    m_env.insert(QStringLiteral("ORVIDA_INI_DIR"), m_dir.path());
    m_env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    m_env.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime.path());
    // The program tells what it shows on standard error, one plain line each.
    m_env.insert(QStringLiteral("QT_LOGGING_RULES"),
                 QStringLiteral("pagamenti.finestre.info=true"));
    m_env.insert(QStringLiteral("QT_MESSAGE_PATTERN"), QStringLiteral("%{message}"));
    qputenv("ORVIDA_INI_DIR", m_dir.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", m_runtime.path().toLocal8Bit());
    UserSettings::useStoreFile(m_dir.filePath(QStringLiteral("settings.ini")));
}

void TestDesktopProgram::cleanup()
{
    // A program a failed test left running would stand in for the next test's start.
    for (QProcess *process : findChildren<QProcess *>()) {
        process->kill();
        process->waitForFinished(30000);
        delete process;
    }
}

void TestDesktopProgram::cleanupTestCase()
{
    UserSettings::useStoreFile({});
}

QProcess *TestDesktopProgram::startProgram(const QString &argument,
                                           const QProcessEnvironment &environment)
{
    auto *process = new QProcess(this);
    process->setProcessEnvironment(environment.isEmpty() ? m_env : environment);
    process->start(QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/pagamenti"), {argument});
    return process;
}

void TestDesktopProgram::quitsOnceShownWhenAsked()
{
    // The start-up benchmark's run: the window is shown, then the program ends by itself the
    // usual way. The first start on the installation also creates the local database.
    QProcessEnvironment env = m_env;
    env.insert(QStringLiteral("PAGAMENTI_QUIT_WHEN_SHOWN"), QStringLiteral("1"));
    QProcess *run = startProgram(QStringLiteral("Pagamenti"), env);
    QVERIFY(run->waitForFinished(120000));
    QCOMPARE(run->exitStatus(), QProcess::NormalExit);
    QCOMPARE(run->exitCode(), 0);
    const QList<QByteArray> shown = run->readAllStandardError().split('\n');
    QCOMPARE(shown.count("finestra frmMain"), 1);
    QVERIFY(QFile::exists(companyDir() + QStringLiteral("Pagame.db")));
}

void TestDesktopProgram::addDistinte()
{
    if (m_distinteAdded)
        return;
    m_distinteAdded = true;
    DatabaseConnection conn(companyDir() + QStringLiteral("Pagame.db"));
    QVERIFY(conn.isOpen());
    distinta::RecordSet<distinta::Testata> headers;
    for (int n = 1; n <= 3; ++n) {
        distinta::Testata h;
        h.cod_distinta = formatDistintaCode(n);
        h.flg_tipo = QStringLiteral("F");
        h.flg_stato = QStringLiteral("P");
        h.dat_data_creazione = QDate(2024, 4, n);
        h.dat_data_valuta = QDate(2024, 4, n);
        h.des_ban_azi = QStringLiteral("Banca %1").arg(n);
        headers.append(h);
    }
    distinta::sql::writeChanges(conn.database(), distinta::Testata::table(), headers);
}

void TestDesktopProgram::runningProgram()
{
    // Any other command line ends at once, silently and successfully.
    QProcess *lower = startProgram(QStringLiteral("pagamenti"));
    QVERIFY(lower->waitForFinished(30000));
    QCOMPARE(lower->exitStatus(), QProcess::NormalExit);
    QCOMPARE(lower->exitCode(), 0);
    QVERIFY(lower->readAllStandardOutput().isEmpty());
    QVERIFY(lower->readAllStandardError().isEmpty());

    QProcess *first = startProgram(QStringLiteral("Pagamenti"));
    QVERIFY(first->waitForStarted(30000));
    // The running program answers that it raised its window once the window is on screen.
    SingleInstance probe(m_runtime.path());
    QTRY_VERIFY_WITH_TIMEOUT(probe.activatePrevious(2000), 60000);
    QVERIFY(QFile::exists(companyDir() + QStringLiteral("Pagame.db")));

    // A second start asks the first to come to the front and ends.
    QProcess *second = startProgram(QStringLiteral("Pagamenti"));
    QVERIFY(second->waitForFinished(30000));
    QCOMPARE(second->exitStatus(), QProcess::NormalExit);
    QCOMPARE(second->exitCode(), 0);
    QVERIFY(!second->readAllStandardError().contains("finestra"));
    QCOMPARE(first->state(), QProcess::Running);

    // Asked by the system to end, it closes like the clerk closing the window.
    first->terminate();
    QVERIFY(first->waitForFinished(30000));
    QCOMPARE(first->exitStatus(), QProcess::NormalExit);
    QCOMPARE(first->exitCode(), 0);
}

void TestDesktopProgram::realProgramOpensNextPreviousAndCloses()
{
    addDistinte();
    // The program on Qt's vnc platform, typed into as a clerk at the keyboard would; what it
    // shows comes back on its standard error.
    const quint16 port = test::VncKeyboard::freePort();
    QVERIFY(port != 0);
    QProcessEnvironment env = m_env;
    env.insert(QStringLiteral("QT_QPA_PLATFORM"),
               QStringLiteral("vnc:size=1024x768:port=%1").arg(port));
    QProcess *program = startProgram(QStringLiteral("Pagamenti"), env);
    program->setReadChannel(QProcess::StandardError);
    QByteArray shown;
    qsizetype seen = 0;
    // Waits until the program shows the line, after those already seen.
    const auto shows = [&](const char *line) {
        const QByteArray wanted = QByteArray(line) + '\n';
        for (;;) {
            const qsizetype at = shown.indexOf(wanted, seen);
            if (at >= 0) {
                seen = at + wanted.size();
                return true;
            }
            if (!program->waitForReadyRead(60000))
                return false;
            shown += program->readAllStandardError();
        }
    };
    QVERIFY2(shows("finestra frmMain"), shown.constData());
    test::VncKeyboard keyboard;
    QVERIFY(keyboard.connectTo(port));

    // Open: the list of distinte, the second line chosen with Enter.
    keyboard.type('o', true);
    QVERIFY2(shows("finestra frmLista"), shown.constData());
    keyboard.type(test::VncKeyboard::Down);
    keyboard.type(test::VncKeyboard::Return);
    QVERIFY2(shows("distinta 2"), shown.constData());

    // Next and previous.
    keyboard.type(test::VncKeyboard::PageDown, true);
    QVERIFY2(shows("distinta 3"), shown.constData());
    keyboard.type(test::VncKeyboard::PageUp, true);
    QVERIFY2(shows("distinta 2"), shown.constData());

    // Closed by the system like the clerk closing the window: nothing to ask, a clean end.
    program->terminate();
    QVERIFY(program->waitForFinished(30000));
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
    shown += program->readAllStandardError();
    QVERIFY2(!shown.mid(seen).contains("finestra"), shown.constData());
}

void TestDesktopProgram::openNextPreviousAndClose()
{
    addDistinte();
    test::ScriptedPrompter prompter;
    app::Program program;
    QVERIFY(program.start({QStringLiteral("Pagamenti")}));
    program.show();
    editor::MainWindow *window = program.mainWindow();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    QCOMPARE(window->windowTitle(), QStringLiteral("Pagamenti"));
    QVERIFY(window->btnGestione(1)->isEnabled());
    QVERIFY(!window->btnGestione(2)->isEnabled());

    // "Apri distinta": the list shows the three; the second line is chosen with Enter.
    QTimer::singleShot(0, window, [] {
        auto *list = qobject_cast<lists::DistinteListDialog *>(QApplication::activeModalWidget());
        QVERIFY(list);
        QCOMPARE(list->model()->rowCount(), 3);
        list->lvwLista()->selectRow(1);
        QTest::keyClick(list, Qt::Key_Return);
    });
    QTest::mouseClick(window->btnGestione(1), Qt::LeftButton);
    QCOMPARE(window->txtTestata(0)->text(), QStringLiteral("2"));
    QCOMPARE(window->txtTestata(3)->text(), QStringLiteral("Banca 2"));
    QCOMPARE(window->mskData()->maskedText(), QStringLiteral("02/04/2024"));

    QTest::mouseClick(window->btnGestione(4), Qt::LeftButton);
    QCOMPARE(window->txtTestata(0)->text(), QStringLiteral("3"));
    QTest::mouseClick(window->btnGestione(5), Qt::LeftButton);
    QTest::mouseClick(window->btnGestione(5), Qt::LeftButton);
    QCOMPARE(window->txtTestata(0)->text(), QStringLiteral("1"));
    QCOMPARE(window->txtdesStato()->text(), QStringLiteral("Prova"));
    QVERIFY(window->btnGestione(3)->isEnabled());

    QVERIFY(window->close());
    QVERIFY(prompter.shown().isEmpty());
}

void TestDesktopProgram::manualAndAbout()
{
    test::ScriptedPrompter prompter;
    app::Program program;
    QVERIFY(program.start({QStringLiteral("Pagamenti")}));
    program.show();
    editor::MainWindow *window = program.mainWindow();

    // The manual is looked for beside the program; the tests' directory has none.
    m_opened.clear();
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openUrl");
    QTest::mouseClick(window->command(QStringLiteral("cmbHelp")), Qt::LeftButton);
    const QString manual = QDir::toNativeSeparators(QCoreApplication::applicationDirPath() +
                                                    QStringLiteral("/manual/index.html"));
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Manuale non trovato: ") + manual});
    QVERIFY(m_opened.isEmpty());
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    // The build puts the manual beside the program itself.
    QVERIFY(QFile::exists(QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/manual/index.html")));

    QString about;
    QTimer::singleShot(0, window, [&about] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        about = box->windowTitle() + u'|' + box->text();
        box->accept();
    });
    QTest::mouseClick(window->command(QStringLiteral("cmdInfo")), Qt::LeftButton);
    QVERIFY(about.startsWith(QStringLiteral("Informazioni su Pagamenti|")));
    QVERIFY(about.contains(QStringLiteral("Versione " PAGAMENTI_VERSION)));
    QVERIFY(about.contains(QStringLiteral("licenza")));
    QVERIFY(window->close());
}

void TestDesktopProgram::fitsTheScreenAndShowsWholeValues()
{
    test::ScriptedPrompter prompter;
    app::Program program;
    QVERIFY(program.start({QStringLiteral("Pagamenti")}));
    editor::MainWindow *window = program.mainWindow();
    // The print dialog is loaded with the window, hidden until a print shows it.
    auto *print = window->findChild<printing::StampaDialog *>();
    QVERIFY(print);
    QVERIFY(!print->isVisible());
    program.show();
    QVERIFY(QTest::qWaitForWindowExposed(window));

    // A 1024x768 screen holds the window with its title bar; even at its smallest, every
    // header box shows the widest value it can hold (no locale set: the Italian one).
    const QSize least = window->minimumSizeHint();
    QVERIFY2(least.width() <= 1024 && least.height() <= 720,
             qPrintable(QStringLiteral("%1x%2").arg(least.width()).arg(least.height())));
    window->resize(least);
    QTRY_COMPARE(window->size(), least);
    using E = editor::DistintaEditor;
    const std::pair<int, const char *> widest[]{
        {E::ImportoTotale, "-999.999.999,99"}, {E::AbiBanca, "00000"}, {E::CabBanca, "00000"},
        {E::CodiceAbi, "00000"},               {E::CodiceCab, "00000"}, {E::NumeroDisp, "00000"}};
    for (const auto &[index, text] : widest) {
        QLineEdit *box = window->txtTestata(index);
        QVERIFY2(box->width() >= ui::widthToShow(box, QString::fromLatin1(text)), text);
    }
    QVERIFY(window->close());
}

void TestDesktopProgram::italianButtons()
{
    // The standard buttons of every box and dialog, in the clerk's language.
    app::Program::installTranslations(*QCoreApplication::instance());
    QMessageBox box(QMessageBox::Question, QStringLiteral("Pagamenti"), QStringLiteral("?"),
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    QStringList texts;
    for (QMessageBox::StandardButton b : {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel})
        texts << box.button(b)->text().remove(u'&');
    QCOMPARE(texts,
             (QStringList{QStringLiteral("Sì"), QStringLiteral("No"), QStringLiteral("Annulla")}));
}

QTEST_MAIN(TestDesktopProgram)
#include "tst_desktopprogram.moc"
