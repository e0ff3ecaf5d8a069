// Choosing and loading the record manager: the settings, libraries that cannot serve, and the
// program's library when the company environment cannot be found.

#include "archivefixture.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/libraryrecordmanager.h"
#include "archives/store/recordmanagerfactory.h"

#include "startup/companyenvironment.h"

#include <QLibraryInfo>
#include <QTest>

using namespace pg;
using namespace pg::archives;
using pg::test::ArchiveFixture;

namespace {

const QString ownLibrary = QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/tqzdbm32");

// A library that loads but exports none of the record manager's functions.
QString foreignLibrary()
{
#if defined(Q_OS_WIN)
    return QLibraryInfo::path(QLibraryInfo::BinariesPath) + QStringLiteral("/Qt6Core.dll");
#elif defined(Q_OS_MACOS)
    return QLibraryInfo::path(QLibraryInfo::LibrariesPath) +
           QStringLiteral("/QtCore.framework/QtCore");
#else
    return QLibraryInfo::path(QLibraryInfo::LibrariesPath) + QStringLiteral("/libQt6Core.so.6");
#endif
}

} // namespace

class TestRecordManagerBinding : public QObject
{
    Q_OBJECT

private slots:
    void unusableLibraries_data();
    void unusableLibraries();
    void libraryWithoutCompanyEnvironment();
    void factoryFollowsTheSettings();
};

void TestRecordManagerBinding::unusableLibraries_data()
{
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("vbInitLibrary");
    QTest::addColumn<QString>("reason");

    QTest::newRow("record manager missing")
        << QStringLiteral("/nessuna/cartella/tqzdbm32") << QString()
        << QStringLiteral("Impossibile caricare la libreria del gestore archivi");
    QTest::newRow("record manager without its functions")
        << foreignLibrary() << QString() << QStringLiteral("non contiene la funzione AperturaFile");
    QTest::newRow("initialisation library missing")
        << ownLibrary << QStringLiteral("/nessuna/cartella/vbinit32")
        << QStringLiteral("Impossibile caricare la libreria di inizializzazione");
    QTest::newRow("initialisation library without VBInit")
        << ownLibrary << foreignLibrary() << QStringLiteral("non contiene la funzione VBInit");
}

void TestRecordManagerBinding::unusableLibraries()
{
    QFETCH(QString, library);
    QFETCH(QString, vbInitLibrary);
    QFETCH(QString, reason);

    LibraryRecordManager binding(library, vbInitLibrary);
    QVERIFY(!binding.isLoaded());
    QVERIFY2(binding.errorString().contains(reason), qPrintable(binding.errorString()));

    // Start-up learns it from VBInit; nothing else reaches the library.
    QCOMPARE(binding.VBInit(1), 0);
    QCOMPARE(binding.TqGetErcode(), qint32(NotInitialised));
    QVERIFY(binding.AperturaFile(1, Scadenze, ReadRewrite) < 0);
    QCOMPARE(binding.TqGetErcode(), qint32(NotInitialised));
    QByteArray record(320, ' ');
    QVERIFY(binding.LetturaEqRec32(1, Scadenze, 2, record) < 0);
    QCOMPARE(binding.TqGetErcode(), qint32(NotInitialised));
    QCOMPARE(record, QByteArray(320, ' '));
    binding.VBEnd(1);
}

void TestRecordManagerBinding::libraryWithoutCompanyEnvironment()
{
    ArchiveFixture fx;
    QVERIFY(fx.isValid());
    qputenv("ORVIDA_INI_DIR", (fx.root() + QStringLiteral("ini")).toLocal8Bit());

    // No "ORVIDA.INI": the library cannot find the archives, and says so without ending
    // the program that loaded it.
    LibraryRecordManager binding(ownLibrary);
    QVERIFY2(binding.isLoaded(), qPrintable(binding.errorString()));
    QCOMPARE(binding.VBInit(1), 0);
    QCOMPARE(binding.TqGetErcode(), qint32(NotInitialised));
    QVERIFY(binding.AperturaFile(1, Scadenze, ReadRewrite) < 0);
    QCOMPARE(binding.TqGetErcode(), qint32(NotInitialised));

    // Once the suite's ini files are there, the next first session finds the directories;
    // archives whose store file does not exist fail to open.
    fx.writeIniFiles();
    QVERIFY(binding.VBInit(1) != 0);
    QVERIFY(binding.AperturaFile(1, Scadenze, ReadRewrite) < 0);
    QCOMPARE(binding.TqGetErcode(), qint32(NotFound));
    binding.VBEnd(1);
}

void TestRecordManagerBinding::factoryFollowsTheSettings()
{
    ArchiveFixture fx;
    QVERIFY(fx.isValid());
    fx.writeIniFiles();
    QCOMPARE(fx.load({}), QString()); // the stores, with every archive empty
    CompanyEnvironment env;
    env.CompanyArchiveDir = fx.companyDir();
    env.CommonArchiveDir = fx.commonDir();
    setCompanyEnvironment(env);

    qunsetenv("PAGAMENTI_RECORD_MANAGER");
    qunsetenv("PAGAMENTI_VBINIT_LIBRARY");
    std::unique_ptr<RecordManager> manager = createRecordManager();
    auto *store = dynamic_cast<EmbeddedArchiveStore *>(manager.get());
    QVERIFY(store);
    QCOMPARE(store->companyArchiveDir(), fx.companyDir());
    QCOMPARE(store->commonArchiveDir(), fx.commonDir());

    qputenv("PAGAMENTI_RECORD_MANAGER", "   ");
    QVERIFY(dynamic_cast<EmbeddedArchiveStore *>(createRecordManager().get()));

    // The program's library named twice: as the record manager and as the place of VBInit.
    qputenv("PAGAMENTI_RECORD_MANAGER", ownLibrary.toLocal8Bit());
    qputenv("PAGAMENTI_VBINIT_LIBRARY", ownLibrary.toLocal8Bit());
    const RecordManagerSettings settings = RecordManagerSettings::fromEnvironment();
    QVERIFY(settings.usesLibrary());
    QCOMPARE(settings.vbInitLibrary, ownLibrary);
    manager = createRecordManager(settings);
    auto *binding = dynamic_cast<LibraryRecordManager *>(manager.get());
    QVERIFY(binding);
    QVERIFY2(binding->isLoaded(), qPrintable(binding->errorString()));
    QVERIFY(manager->VBInit(7) != 0);
    manager->AperturaFile(7, Scadenze, ReadRewrite);
    QCOMPARE(manager->TqGetErcode(), qint32(Ok));
    manager->VBEnd(7);
    qunsetenv("PAGAMENTI_RECORD_MANAGER");
    qunsetenv("PAGAMENTI_VBINIT_LIBRARY");
}

QTEST_GUILESS_MAIN(TestRecordManagerBinding)
#include "tst_recordmanagerbinding.moc"
