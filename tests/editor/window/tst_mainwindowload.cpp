#include "memoryrecordmanager.h"
#include "scriptedprompter.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/recordmanagerfactory.h"
#include "editor/window/mainwindowload.h"
#include "lists/usersettings.h"
#include "startup/companyenvironment.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::editor;
using Outcome = MainWindowLoad::Outcome;

namespace {

class FixedPrinters : public PrinterCatalog
{
public:
    QList<PrinterInfo> printers;
    std::optional<PrinterInfo> fallback;
    mutable int asked = 0;
    QList<PrinterInfo> installedPrinters() const override
    {
        ++asked;
        return printers;
    }
    std::optional<PrinterInfo> defaultPrinter() const override { return fallback; }
};

QByteArray releaseRecord(const QString &release)
{
    archives::ErpRecord rel(archives::TabelleAzienda, QStringLiteral("REL"));
    rel.setText(QStringLiteral("release"), release);
    return rel.buffer();
}

} // namespace

class TestMainWindowLoad : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void archiveOpenFailure_data();
    void archiveOpenFailure();
    void archiveRelease_data();
    void archiveRelease();
    void librariesThatDoNotStart();
    void unloadClosesEveryArchiveInOrder();
    void savedPrinterOrDefault();

private:
    // A record manager holding the given release, handed to the load step.
    MemoryRecordManager *manager(const QString &release = QStringLiteral("07.00.00"));
    MainWindowLoad::ManagerFactory factory();

    QTemporaryDir m_dir;
    FixedPrinters m_printers;
    std::unique_ptr<MemoryRecordManager> m_next;
};

void TestMainWindowLoad::init()
{
    QVERIFY(m_dir.isValid());
    CompanyEnvironment env;
    env.CompanyArchiveDir = m_dir.path() + u'/';
    env.ProgramDir = m_dir.path() + u'/';
    setCompanyEnvironment(env);
    UserSettings::useStoreFile(m_dir.filePath(QStringLiteral("settings.ini")));
    QFile::remove(m_dir.filePath(QStringLiteral("settings.ini")));
    m_printers = FixedPrinters();
    m_next.reset();
}

MemoryRecordManager *TestMainWindowLoad::manager(const QString &release)
{
    m_next = std::make_unique<MemoryRecordManager>();
    m_next->put(archives::TabelleAzienda, releaseRecord(release));
    return m_next.get();
}

MainWindowLoad::ManagerFactory TestMainWindowLoad::factory()
{
    return [this]() -> std::unique_ptr<archives::RecordManager> { return std::move(m_next); };
}

void TestMainWindowLoad::archiveOpenFailure_data()
{
    QTest::addColumn<int>("archive");
    QTest::addColumn<QString>("message");
    QTest::addColumn<bool>("unloads");
    QTest::addColumn<int>("opensTried");
    // The archive as the message names it, then the message whole.
    auto row = [](const char *name, int archive, const char *file, bool unloads, int opensTried) {
        QTest::newRow(name) << archive
                            << QStringLiteral("Impossibile aprire il file %1 di [orvida]. "
                                              "Impossibile continuare.")
                                   .arg(QLatin1String(file))
                            << unloads << opensTried;
    };
    row("tabelle comuni", 15, "delle tabelle comuni", true, 1);
    row("clienti fornitori", 3, "Clienti Fornitori", true, 4);
    row("scadenze", 38, "delle Scadenze", true, 6);
    row("gruppo scadenze", 37, "delle Scadenze", true, 7);
    row("pagamenti, two blanks", 55, "dei Pagamenti ", false, 8);
    row("listini, two blanks", 28, "dei Listini ", false, 9);
}

void TestMainWindowLoad::archiveOpenFailure()
{
    QFETCH(int, archive);
    QFETCH(QString, message);
    QFETCH(bool, unloads);
    QFETCH(int, opensTried);

    test::ScriptedPrompter prompter;
    MemoryRecordManager *rm = manager();
    rm->failOpen(archive, 1);
    MainWindowLoad load(factory(), m_printers);
    QCOMPARE(load.Load(7), unloads ? Outcome::Unload : Outcome::WindowStays);
    QCOMPARE(prompter.texts(), QStringList{message});
    QCOMPARE(prompter.shown().first().title, QStringLiteral("ERRORE"));
    QCOMPARE(prompter.shown().first().buttons, Buttons::Ok);
    QStringList opens = rm->calls.filter(QStringLiteral("open "));
    QCOMPARE(opens.size(), opensTried);
    QCOMPARE(opens.last(), QStringLiteral("open %1 %2").arg(archive).arg(archive == 38 ? 2 : 0));
    // Nothing after the failing archive: no distinta component.
    QVERIFY(!load.store());
}

void TestMainWindowLoad::archiveRelease_data()
{
    QTest::addColumn<QString>("release");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("same release") << QStringLiteral("07.00.00") << true;
    QTest::newRow("later patch") << QStringLiteral("07.00.12") << true;
    QTest::newRow("later minor") << QStringLiteral("07.01.00") << false;
    QTest::newRow("older") << QStringLiteral("06.09.00") << false;
}

void TestMainWindowLoad::archiveRelease()
{
    QFETCH(QString, release);
    QFETCH(bool, accepted);
    test::ScriptedPrompter prompter;
    manager(release);
    MainWindowLoad load(factory(), m_printers);
    if (accepted) {
        QCOMPARE(load.Load(7), Outcome::Ready);
        QVERIFY(prompter.shown().isEmpty());
        QVERIFY(load.store());
        QCOMPARE(load.store()->pStrFilespec(), m_dir.path() + QStringLiteral("/Pagame.db"));
        return;
    }
    QVERIFY_THROWS_EXCEPTION(ProcessEnded, load.Load(7));
    QCOMPARE(prompter.shown().size(), 1);
    const Message &m = prompter.shown().first();
    QCOMPARE(m.title, QStringLiteral("Errore bloccante!"));
    QCOMPARE(m.icon, Icon::Critical);
    QCOMPARE(m.text,
             QStringLiteral("Versione degli archivi di [orvida] ") + release +
                 QStringLiteral(" non compatibile con la versione degli archivi di Pagamenti "
                                "07.00.00!"));
}

void TestMainWindowLoad::librariesThatDoNotStart()
{
    const QString cannot = QStringLiteral(
        "Impossibile inizializzare le librerie di [orvida]. Impossibile continuare.");
    {
        test::ScriptedPrompter prompter;
        manager()->setVBInitResult(0);
        MainWindowLoad load(factory(), m_printers);
        QCOMPARE(load.Load(7), Outcome::Unload);
        QCOMPARE(prompter.texts(), QStringList{cannot});
        QCOMPARE(prompter.shown().first().title, QStringLiteral("ERRORE"));
    }
    {
        // The suite's library that does not load, through the program's own factory: its own
        // message first, with the library's path and the loader's reason.
        const QString missing = QStringLiteral("/nessuna/cartella/tqzdbm32");
        qputenv("PAGAMENTI_RECORD_MANAGER", missing.toLocal8Bit());
        test::ScriptedPrompter prompter;
        MainWindowLoad load([] { return archives::createRecordManager(); }, m_printers);
        QCOMPARE(load.Load(7), Outcome::Unload);
        qunsetenv("PAGAMENTI_RECORD_MANAGER");
        QCOMPARE(prompter.texts().size(), 2);
        const QString first = prompter.texts().first();
        QVERIFY2(first.startsWith(QStringLiteral("Errore in inizializzazione della VBINIT32.DLL."
                                                 "\rCodice di errore Impossibile caricare la "
                                                 "libreria del gestore archivi ") +
                                  missing + QStringLiteral(": ")),
                 qPrintable(first));
        QVERIFY(first.size() > first.indexOf(missing) + missing.size() + 2); // the reason
        QCOMPARE(prompter.texts().last(), cannot);
        load.Unload();
    }
}

void TestMainWindowLoad::unloadClosesEveryArchiveInOrder()
{
    const QStringList closing{
        QStringLiteral("close 38"), QStringLiteral("close 15"), QStringLiteral("close 14"),
        QStringLiteral("close 3"),  QStringLiteral("close 42"), QStringLiteral("close 0"),
        QStringLiteral("close 37"), QStringLiteral("close 55"), QStringLiteral("close 28")};
    {
        test::ScriptedPrompter prompter;
        MemoryRecordManager *rm = manager();
        rm->failOpen(3, 6); // every archive is closed, also after a failed open
        MainWindowLoad load(factory(), m_printers);
        QCOMPARE(load.Load(41), Outcome::Unload);
        const int before = rm->calls.size();
        load.Unload();
        QCOMPARE(rm->calls.mid(before), closing + QStringList{QStringLiteral("VBEnd 41")});
    }
    {
        // A handle that is not positive never reaches VBEnd.
        test::ScriptedPrompter prompter;
        MemoryRecordManager *rm = manager();
        MainWindowLoad load(factory(), m_printers);
        QCOMPARE(load.Load(0), Outcome::Ready);
        QCOMPARE(SessionHandle(), 0);
        const int before = rm->calls.size();
        load.Unload();
        QCOMPARE(rm->calls.mid(before), closing);
    }
}

void TestMainWindowLoad::savedPrinterOrDefault()
{
    test::ScriptedPrompter prompter;
    const PrinterInfo office{QStringLiteral("Ufficio"), QStringLiteral("HP LaserJet"),
                             QStringLiteral("Piano terra")};
    const PrinterInfo label{QStringLiteral("Etichette"), QStringLiteral("Zebra"),
                            QStringLiteral("Magazzino")};
    m_printers.printers = {label, office};
    m_printers.fallback = label;
    {
        QSettings store(m_dir.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
        store.setValue(QStringLiteral("Printer/DeviceName"), office.deviceName);
        store.setValue(QStringLiteral("Printer/DriverName"), office.driverName);
        store.setValue(QStringLiteral("Printer/Port"), office.port);
    }
    manager();
    MainWindowLoad load(factory(), m_printers);
    QCOMPARE(load.Load(7), Outcome::Ready);
    // The start-up does not wait for the system's printers: they are asked when first needed,
    // once.
    QCOMPARE(m_printers.asked, 0);
    QVERIFY(savedPrinterPending());
    QCOMPARE(currentPrinter(), std::optional<PrinterInfo>(office));
    QCOMPARE(currentPrinter()->description(), QStringLiteral("Ufficio su Piano terra"));
    QCOMPARE(m_printers.asked, 1);

    // A remembered printer that differs in its port is not the same printer.
    QCOMPARE(chooseSavedPrinter(m_printers, PrinterInfo{office.deviceName, office.driverName,
                                                        QStringLiteral("Altro")}),
             std::optional<PrinterInfo>(label));
}

QTEST_GUILESS_MAIN(TestMainWindowLoad)
#include "tst_mainwindowload.moc"
