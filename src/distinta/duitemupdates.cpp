#include "duitemupdates.h"

#include "distintestore.h"
#include "rowcounter.h"
#include "writebackapplier.h"
#include "writebackplan.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archiveerrortext.h"
#include "archives/store/archivenumbers.h"
#include "core/apperror.h"
#include "core/prompter.h"
#include "core/vbdate.h"

namespace pg::distinta {

namespace {

const QString CrLf = QStringLiteral("\r\n");
const QString SearchError = QStringLiteral("Errore in ricerca archivi [orvida]");
const QString UpdateError = QStringLiteral("Errore in aggiornamento archivi [orvida]");

// The due item of a row as the clerk knows it.
QString rowItem(const Riga &row)
{
    QString document = row.des_num_doc.trimmed();
    if (!row.des_serie_doc.trimmed().isEmpty())
        document += u'/' + row.des_serie_doc.trimmed();
    return QStringLiteral("documento %1 del %2, rata %3, conto %4")
        .arg(document, dates::ymdToDmy(row.dat_data_doc), row.des_num_rata.trimmed(),
             row.cod_clifor.trimmed());
}

void tellConflicts(const QList<WriteBackEntry> &conflicts)
{
    if (conflicts.isEmpty())
        return;
    msgBox(QStringLiteral("Queste scadenze di [orvida] sono state cambiate da un altro programma "
                          "mentre venivano aggiornate e sono state lasciate come sono: "
                          "controllarle con \"Verifica scadenze\".") +
               WriteBackApplier::conflictLines(conflicts),
           Buttons::Ok, Icon::Exclamation);
}

} // namespace

QString DueItemUpdates::withCause(const QString &message) const
{
    const qint32 code = m_erp ? m_erp->lastError() : 0;
    if (code == archives::Ok || code == archives::NotFound)
        return message;
    return message + CrLf +
           QStringLiteral("Causa: %1, %2.")
               .arg(archives::archiveErrorText(code),
                    archives::archiveDescription(m_erp->manager(), archives::Scadenze));
}

archives::ErpSession &DueItemUpdates::erp() const
{
    if (!m_erp)
        throw AppError(DistinteStore::ErrSalvaRicerca, SearchError, QStringLiteral("Salva"));
    return *m_erp;
}

QList<WriteBackEntry> DueItemUpdates::planSave(QSqlDatabase &db, const Distinta &d) const
{
    WriteBackPlan plan(erp());
    // An item removed that cannot be read now would stay marked with no distinta behind it:
    // the save waits for the archive instead.
    for (const QString &key : d.righeDaCanc)
        if (plan.releaseRemoved(key, d.nuova) == ErpWriteBack::Read::Failed)
            throw AppError(DistinteStore::ErrSalvaRicerca, withCause(SearchError),
                           QStringLiteral("Salva"));
    const Testata &header = d.header();
    RowCounter counter(db, header.cod_distinta);
    for (int i = 0; i < d.righe.size(); ++i) {
        const Riga &row = d.righe.at(i);
        switch (plan.markRow(row, header, std::ref(counter))) {
        case ErpWriteBack::Read::Found:
            break;
        case ErpWriteBack::Read::NotFound:
            throw AppError(DistinteStore::ErrSalvaRicerca,
                           SearchError + CrLf +
                               QStringLiteral("La scadenza non è più nell'archivio: ") +
                               rowItem(row) + u'.',
                           QStringLiteral("Salva"));
        case ErpWriteBack::Read::Failed:
            throw AppError(DistinteStore::ErrSalvaRicerca, withCause(SearchError),
                           QStringLiteral("Salva"));
        }
    }
    return plan.entries();
}

QList<WriteBackEntry> DueItemUpdates::planDelete(const QList<Riga> &savedRows) const
{
    if (!m_erp)
        throw AppError(DistinteStore::ErrCancellaRicerca, SearchError, QStringLiteral("Cancella"));
    WriteBackPlan plan(*m_erp);
    for (const Riga &row : savedRows)
        if (plan.releaseRow(row) == ErpWriteBack::Read::Failed)
            throw AppError(DistinteStore::ErrCancellaRicerca, SearchError,
                           QStringLiteral("Cancella"));
    return plan.entries();
}

QList<WriteBackEntry> DueItemUpdates::planMarks(QSqlDatabase &db, const Testata &header,
                                                const QList<Riga> &rows) const
{
    WriteBackPlan plan(erp());
    RowCounter counter(db, header.cod_distinta);
    for (const Riga &row : rows)
        if (plan.markRow(row, header, std::ref(counter)) != ErpWriteBack::Read::Found)
            throw AppError(
                DistinteStore::ErrSalvaRicerca,
                withCause(SearchError + CrLf + QStringLiteral("Scadenza: ") + rowItem(row) + u'.'),
                QStringLiteral("cmdCreaFile"));
    return plan.entries();
}

WriteBackApplier::Result DueItemUpdates::carryOut(QSqlDatabase &db,
                                                  const QList<WriteBackEntry> &entries,
                                                  bool stopAtRowFailure,
                                                  const QString &source) const
{
    if (entries.isEmpty())
        return {};
    WriteBackApplier applier(erp(), db);
    const WriteBackApplier::Result result = applier.apply(entries, stopAtRowFailure);
    tellConflicts(result.conflicts);
    if (stopAtRowFailure && result.failure != ErpWriteBack::Applied::Done) {
        const bool read = result.failure == ErpWriteBack::Applied::ReadFailed;
        throw AppError(read ? DistinteStore::ErrSalvaRicerca : DistinteStore::ErrSalvaAggiornamento,
                       withCause((read ? SearchError : UpdateError) + CrLf +
                                 QStringLiteral("La distinta è registrata: le scadenze non ancora "
                                                "aggiornate lo saranno alla prossima operazione "
                                                "sulle distinte o al prossimo avvio del "
                                                "programma.")),
                       source);
    }
    return result;
}

bool DueItemUpdates::completePending(QSqlDatabase &db) const
{
    const QList<WriteBackEntry> pending = WriteBackJournal::pending(db);
    if (pending.isEmpty())
        return true;
    WriteBackApplier applier(erp(), db);
    const WriteBackApplier::Result result = applier.apply(pending, false);
    if (result.done > 0)
        msgBox(QStringLiteral("Un'operazione sulle distinte era stata interrotta: sono stati "
                              "completati %1 aggiornamenti delle scadenze di [orvida] rimasti in "
                              "sospeso.")
                   .arg(result.done),
               Buttons::Ok, Icon::Information);
    tellConflicts(result.conflicts);
    if (result.pending.isEmpty())
        return true;
    msgBox(withCause(UpdateError + CrLf +
                     QStringLiteral("Non è stato possibile completare %1 aggiornamenti delle "
                                    "scadenze rimasti in sospeso da un'operazione interrotta. "
                                    "Finché non saranno completati nessuna distinta può essere "
                                    "salvata o eliminata: riprovare più tardi.")
                         .arg(result.pending.size())),
           Buttons::Ok, Icon::Critical);
    return false;
}

int DueItemUpdates::pendingCount(QSqlDatabase &db)
{
    return int(WriteBackJournal::pending(db).size());
}

} // namespace pg::distinta
