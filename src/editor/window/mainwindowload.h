#pragma once

#include "printing/printercatalog.h"

#include "archives/store/companydata.h"
#include "archives/store/erpsession.h"
#include "archives/store/recordmanager.h"
#include "distinta/distintestore.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace pg::editor {

// The main window's session handle, passed first to every call of the suite's libraries:
// set by the load step before the libraries are initialised; 0 before.
qint32 SessionHandle();

// The main window's load and unload steps: the suite's libraries, the archives in their fixed
// order, the company records, the archive release check, the clerk's settings and printer,
// and the one distinta component. No widgets: the window calls these and acts on the outcome.
class MainWindowLoad
{
public:
    // What the window does after the load step.
    enum class Outcome {
        Ready,       // everything is set up
        Unload,      // the window unloads itself, which ends the program
        WindowStays, // the window stays on screen without the rest of its set-up
    };

    struct ArchiveOpen
    {
        int archive;
        int mode;
        QString message; // shown when the open fails
        bool unloads;    // whether the window then unloads
    };

    // The record manager is made by the factory when the libraries are initialised; a
    // factory that throws is a library that cannot be loaded.
    using ManagerFactory = std::function<std::unique_ptr<archives::RecordManager>()>;

    MainWindowLoad(ManagerFactory factory, const PrinterCatalog &printers);
    ~MainWindowLoad();
    MainWindowLoad(const MainWindowLoad &) = delete;
    MainWindowLoad &operator=(const MainWindowLoad &) = delete;

    // The load step with the window's handle (any positive number that names the window).
    // Ends the process when the archives are of another release. Last, it completes the
    // changes to the due items that an interrupted operation left undone.
    Outcome Load(qint32 handle);
    // The unload step: releases the distinta component, closes every archive in the closing
    // order and releases the libraries.
    void Unload();

    // InitErpLibraries: VBInit with the handle; true when it returns non-zero.
    bool InitErpLibraries(qint32 handle);
    // ReleaseErpLibraries: VBEnd, only for a handle greater than 0.
    void ReleaseErpLibraries(qint32 handle);
    // The archive release check; false after its message.
    bool CheckArchiveRelease();

    static const QList<ArchiveOpen> &openingOrder();
    // The message of an archive of the opening order that cannot be opened, with the cause
    // on the next line when it is known.
    static QString openFailureMessage(int archive, const QString &cause = {});
    static const QList<int> &closingOrder();
    static QString expectedRelease() { return QStringLiteral("07.00.00"); }

    archives::RecordManager *manager() const { return m_manager.get(); }
    archives::ErpSession *erp() const { return m_erp.get(); }
    // DistinteStore: the one distinta component, from the load step to the unload step.
    distinta::DistinteStore *store() const { return m_store.get(); }
    const archives::CompanyData &company() const { return m_company; }
    // The release read by the check ("" when it could not be read).
    const QString &release() const { return m_release; }
    bool isLoaded() const { return m_loaded; }

private:
    ManagerFactory m_factory;
    const PrinterCatalog *m_printers;
    std::unique_ptr<archives::RecordManager> m_manager;
    std::unique_ptr<archives::ErpSession> m_erp;
    std::unique_ptr<distinta::DistinteStore> m_store;
    archives::CompanyData m_company;
    QString m_release;
    bool m_loaded = false;
    bool m_unloaded = false;
};

} // namespace pg::editor
