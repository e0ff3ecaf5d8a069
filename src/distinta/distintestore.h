#pragma once

#include "distinta.h"
#include "writebackentry.h"

#include "archives/store/erpsession.h"
#include "localdb/databaselocation.h"

#include <QStringList>
#include <QVariantList>

#include <functional>
#include <optional>

namespace pg {
class DatabaseConnection;
}

namespace pg::distinta {

// What a general query returns: column names and rows of values.
struct QueryResult
{
    QStringList columns;
    QList<QVariantList> rows;
};

// The header fields a validation message sends the clerk back to.
enum class HeaderField { BancaPresentazione, AgenziaPresentazione };

// The one component through which a distinta is created, read, navigated, validated, saved
// and deleted in the local database, keeping the suite's due items in step. Every operation
// opens its own connection to the local database and closes it before returning; the
// distinta itself stays in memory between operations, with its pending changes.
class DistinteStore
{
public:
    // The application errors of the write-back, as the distinte always numbered them.
    static constexpr qint32 ErrSalvaRicerca = qint32(0x80040201u);
    static constexpr qint32 ErrSalvaAggiornamento = qint32(0x80040202u);
    static constexpr qint32 ErrCancellaAggiornamento = qint32(0x80040203u);
    static constexpr qint32 ErrCancellaRicerca = qint32(0x80040204u);

    explicit DistinteStore(archives::ErpSession *erp = nullptr);
    ~DistinteStore();

    // The connection string of the local database ("Data Source=<file>;", or a server's, see
    // DatabaseLocation) and its file.
    QString pStrConn() const { return m_conn; }
    void setPStrConn(const QString &connectionString) { m_conn = connectionString; }
    QString pStrFilespec() const { return m_filespec; }
    void setPStrFilespec(const QString &path) { m_filespec = path; }
    static QString connectionStringFor(const QString &path);

    void setErpSession(archives::ErpSession *erp) { m_erp = erp; }
    // The "DesAlt" template of grouped descriptions (30 characters).
    void setGroupDescriptionTemplate(const QString &text);
    // Called when a validation message sends the clerk back to a header field.
    void setFocusRequestHandler(std::function<void(HeaderField)> handler) { m_focus = std::move(handler); }

    // A new empty distinta: the next number, today's dates, state "P", the type and currency
    // of the last selection. Nothing is written (the number is not reserved). A number past
    // 32767 is an overflow error.
    void Nuovo(Distinta &d);
    // The distinta with that code (used exactly as given), rows in the order of account,
    // document date, series, number and instalment.
    void Leggi(Distinta &d, const QString &code);
    // Direction 0: the code if it exists. 1: the next code, or the last one. 2: the previous
    // code, or the first one; an empty code first becomes "zzzzzzzzzz" (so: the last
    // distinta), also in the caller's variable. Nothing when the table is empty.
    std::optional<QString> Esiste(QString &code, int direction);
    bool ValidaDati(const Distinta &d);
    // Saves the distinta: asks first when told to, validates, regroups unless told not to,
    // writes the three tables in one transaction, and then marks the suite's due items (the
    // changes journaled in that same transaction, see DueItemUpdates). False when the clerk
    // declined, the validation failed or the save failed.
    bool Salva(Distinta &d, bool askFirst, bool noRegroup);
    // Writes only the grouped rows (their edited descriptions).
    bool SalvaDesc(Distinta &d);
    // Deletes the distinta and frees its due items in the suite: the releases are journaled
    // and committed with the deletion, then carried out. False when nothing was deleted.
    bool Cancella(Distinta &d);
    // Moves a saved distinta to a new state ("D" after a final print, "F" once presented to
    // the bank): sets it, saves without asking and without regrouping, and reads it again.
    // Nothing happens when the distinta is already in that state. When the save fails the
    // distinta is read again as it is saved (its state with it); false then.
    bool AggiornaFlagStato(Distinta &d, const QString &state);
    // Remembers a due item removed from the distinta, to be freed by its next save.
    static void AddRigheDaCanc(Distinta &d, const QString &key);
    // AggiornaScadenza for rows of a saved distinta (the bank file marks the due items it
    // pays), through the journal. False after telling why when it could not be done; an
    // archive failure is raised as the save's errors, with source as their source.
    bool AggiornaScadenze(const Testata &header, const QList<Riga> &rows, const QString &source);
    // Carries out journaled changes to the due items: the repairs of the reconciliation.
    // The number of entries not carried out (their item changed meanwhile, or the archive
    // failed); -1 (after telling why) when nothing was done.
    int applyRepairs(QList<WriteBackEntry> entries);
    // Completes what an interrupted operation left undone (at every start, and before every
    // operation that writes to the due items). False, after telling the clerk, while some of
    // it cannot be done.
    bool completePendingWriteBacks();
    // Changes journaled and not yet carried out.
    int pendingWriteBacks();
    // False when a row lacks the bank data its payment type needs.
    bool ControllaDatiBanca(const RecordSet<Riga> &rows) const;
    void RaggruppaRighe(Distinta &d);
    // A read-only query of fixed text with bound values.
    QueryResult GetRsGen(const QString &sql, const QVariantList &binds = {});

private:
    // The local database the connection string names (the file of pStrFilespec when it names
    // none).
    localdb::DatabaseLocation location() const;
    std::unique_ptr<DatabaseConnection> open() const;

    archives::ErpSession *m_erp;
    QString m_conn;
    QString m_filespec;
    QString m_groupTemplate;
    std::function<void(HeaderField)> m_focus;
};

} // namespace pg::distinta
