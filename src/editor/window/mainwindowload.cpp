#include "mainwindowload.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/libraryrecordmanager.h"
#include "core/prompter.h"
#include "lists/usersettings.h"
#include "localdb/localdatabase.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

namespace pg::editor {

namespace {

qint32 &sessionHandle()
{
    static qint32 handle = 0;
    return handle;
}

const QString Errore = QStringLiteral("ERRORE");
// The run-time's "Error in loading DLL".
constexpr qint32 ErrorLoadingDll = 48;

} // namespace

qint32 SessionHandle()
{
    return sessionHandle();
}

const QList<MainWindowLoad::ArchiveOpen> &MainWindowLoad::openingOrder()
{
    using namespace archives;
    const QString scadenze = QStringLiteral(
        "Impossibile aprire il file delle Scadenze di [orvida]. Impossibile continuare.");
    static const QList<ArchiveOpen> order{
        {TabelleComuni, ReadOnly,
         QStringLiteral("Impossibile aprire il file delle tabelle comuni di [orvida]. Impossibile "
                        "continuare."),
         true},
        {AnagraficheComuni, ReadOnly,
         QStringLiteral("Impossibile aprire il file delle anagrafiche comuni di [orvida]. "
                        "Impossibile continuare."),
         true},
        {TabelleAzienda, ReadOnly,
         QStringLiteral("Impossibile aprire il file delle tabelle azienda di [orvida]. Impossibile "
                        "continuare."),
         true},
        {ClientiFornitori, ReadOnly,
         QStringLiteral("Impossibile aprire il file Clienti Fornitori di [orvida]. Impossibile "
                        "continuare."),
         true},
        {SediClientiFornitori, ReadOnly,
         QStringLiteral("Impossibile aprire il file Sedi Clienti Fornitori di [orvida]. "
                        "Impossibile continuare."),
         true},
        {Scadenze, ReadRewrite, scadenze, true},
        {GruppoScadenze, ReadOnly, scadenze, true},
        {Pagamenti, ReadOnly,
         QStringLiteral("Impossibile aprire il file dei Pagamenti  di [orvida]. Impossibile "
                        "continuare."),
         false},
        {Listini, ReadOnly,
         QStringLiteral("Impossibile aprire il file dei Listini  di [orvida]. Impossibile "
                        "continuare."),
         false},
    };
    return order;
}

QString MainWindowLoad::openFailureMessage(int archive, const QString &cause)
{
    QString message;
    for (const ArchiveOpen &open : openingOrder())
        if (open.archive == archive)
            message = open.message;
    if (!cause.isEmpty())
        message += QStringLiteral("\r\n") + cause;
    return message;
}

const QList<int> &MainWindowLoad::closingOrder()
{
    using namespace archives;
    static const QList<int> order{
        Scadenze,          TabelleComuni,  TabelleAzienda, ClientiFornitori, SediClientiFornitori,
        AnagraficheComuni, GruppoScadenze, Pagamenti,      Listini};
    return order;
}

MainWindowLoad::MainWindowLoad(ManagerFactory factory, const PrinterCatalog &printers)
    : m_factory(std::move(factory)), m_printers(&printers)
{}

MainWindowLoad::~MainWindowLoad()
{
    if (m_loaded && !m_unloaded)
        Unload();
    // A look-up of the saved printer not yet done would ask this load's catalog of printers,
    // which need not outlive it.
    if (savedPrinterPending())
        lookUpSavedPrinter({});
}

bool MainWindowLoad::InitErpLibraries(qint32 handle)
{
    try {
        if (!m_manager)
            m_manager = m_factory();
        if (!m_manager)
            return false;
        // The suite's library that could not be loaded is the library call itself failing:
        // its path and the loader's reason become the error's description.
        const auto *library = dynamic_cast<const archives::LibraryRecordManager *>(m_manager.get());
        if (library && !library->isLoaded())
            throw AppError(ErrorLoadingDll, library->errorString());
        return m_manager->VBInit(handle) != 0;
    } catch (const ProcessEnded &) {
        throw;
    } catch (...) {
        const AppError error = errorFromException(std::current_exception());
        msgBox(QStringLiteral("Errore in inizializzazione della VBINIT32.DLL.") + u'\r' +
                   QStringLiteral("Codice di errore ") + error.description(),
               Buttons::Ok);
        return false;
    }
}

void MainWindowLoad::ReleaseErpLibraries(qint32 handle)
{
    if (handle > 0 && m_manager)
        m_manager->VBEnd(handle);
}

bool MainWindowLoad::CheckArchiveRelease()
{
    archives::ErpRecord rel(archives::TabelleAzienda, QStringLiteral("REL"));
    // The release check alone takes the read's own status as its outcome.
    const qint16 status = m_manager->LetturaFirstRec32(SessionHandle(), archives::TabelleAzienda, 1,
                                                       rel.buffer(), QByteArrayLiteral("REL"));
    m_release = status >= 0 ? rel.text(QStringLiteral("release")) : QString();
    if (m_release.left(5) == expectedRelease().left(5))
        return true;
    msgBox(QStringLiteral("Versione degli archivi di [orvida] ") + m_release +
               QStringLiteral(" non compatibile con la versione degli archivi di ") +
               Prompter::programName() + u' ' + expectedRelease() + u'!',
           Buttons::Ok, Icon::Critical, QStringLiteral("Errore bloccante!"));
    return false;
}

MainWindowLoad::Outcome MainWindowLoad::Load(qint32 handle)
{
    m_loaded = true;
    m_unloaded = false;
    sessionHandle() = handle;
    if (!InitErpLibraries(handle)) {
        msgBox(QStringLiteral("Impossibile inizializzare le librerie di [orvida]. Impossibile "
                              "continuare."),
               Buttons::Ok, Icon::Critical, Errore);
        return Outcome::Unload;
    }
    m_erp = std::make_unique<archives::ErpSession>(*m_manager, handle);

    for (const ArchiveOpen &open : openingOrder()) {
        if (m_erp->open(open.archive, open.mode) != 0) {
            msgBox(open.message, Buttons::Ok, Icon::None, Errore);
            return open.unloads ? Outcome::Unload : Outcome::WindowStays;
        }
    }

    m_company = archives::CompanyData::read(*m_erp);

    if (!CheckArchiveRelease())
        endProcess(1);

    pGetSettings();
    const UserSettings &settings = currentSettings();
    lookUpSavedPrinter(
        [printers = m_printers,
         saved = PrinterInfo{settings.deviceName, settings.driverName, settings.port}] {
            return chooseSavedPrinter(*printers, saved);
        });

    m_store = std::make_unique<distinta::DistinteStore>(m_erp.get());
    // The company's database as its Pagame.ini says; start-up has already refused one that
    // cannot be used.
    const localdb::DatabaseLocation database =
        localdb::DatabaseLocation::ofCompany(CompanyArchiveDir(), nullptr)
            .value_or(localdb::DatabaseLocation::file(CompanyArchiveDir() + localdb::FileName));
    m_store->setPStrFilespec(database.isPostgres() ? QString() : database.filePath);
    m_store->setPStrConn(database.connectionString());
    m_store->setGroupDescriptionTemplate(settings.desAlt);
    // An operation interrupted by a crash or a failing archive is completed before anything
    // else, so that the suite's marks agree with the distinte from the start.
    underTrap(QStringLiteral("frmMain!Sub Form_Load()"),
              [&] { m_store->completePendingWriteBacks(); });
    return Outcome::Ready;
}

void MainWindowLoad::Unload()
{
    m_unloaded = true;
    m_store.reset();
    if (m_manager) {
        // Every archive is closed, also those whose open failed; the results do not matter.
        for (int archive : closingOrder())
            m_manager->ChiusuraFile(SessionHandle(), archive);
        ReleaseErpLibraries(SessionHandle());
    }
    m_erp.reset();
}

} // namespace pg::editor
