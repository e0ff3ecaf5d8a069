#include "duitemupdates.h"

#include "distintestore.h"
#include "rowcounter.h"
#include "writebackapplier.h"
#include "writebackplan.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archiveerrortext.h"
#include "archives/store/archivenumbers.h"
#include "core/apperror.h"
#include "core/money.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "localdb/batchstatement.h"

#include <cmath>

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

// Whether the other saved distinte already pay the row's due item: any of them for a type
// that is always paid whole, or together with this row more than the item's amount.
bool isPaidElsewhere(QSqlDatabase &db, const QString &code, const Riga &row)
{
    localdb::BatchStatement query(db, QStringLiteral("SELECT COUNT(*), SUM(COALESCE(val_imp_indist_val, "
                                            "val_imp_residuo_val)) FROM TB_RIGHE WHERE "
                                            "flg_flag_colpar = ? AND des_link_orvida = ? AND "
                                            "cod_distinta <> ?"));
    query.bind(0, row.flg_flag_colpar);
    query.bind(1, row.des_link_orvida);
    query.bind(2, code);
    if (!query.next() || query.value(0).toInt() == 0)
        return false;
    if (!takesDistintaState(row.cod_tipo_pag))
        return true;
    const double here = row.val_imp_indist_val.value_or(row.val_imp_residuo_val);
    // Credit notes are negative: what counts is how much of the item is taken.
    const double taken = money::fromCents(money::toCents(query.real(1)) + money::toCents(here));
    return money::exceeds(std::abs(taken), std::abs(row.val_imp_dapag_val));
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

QList<WriteBackEntry> DueItemUpdates::planSave(QSqlDatabase &db, const Distinta &d,
                                               QList<Riga> *paidElsewhere) const
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
            // A row added since the distinta was read, whose item the suite shows in a
            // distinta: another clerk may have saved it first.
            if (d.righe.entries().at(i).status == RecordSet<Riga>::Status::Added &&
                plan.before(row.key())->markDist == u"B" &&
                isPaidElsewhere(db, header.cod_distinta, row))
                paidElsewhere->append(row);
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

QString DueItemUpdates::leftOutMessage(const QList<Riga> &rows)
{
    QString text = QStringLiteral("Queste scadenze sono state messe in un'altra distinta, salvata "
                                  "da un altro utente dopo la selezione: sono state tolte da "
                                  "questa distinta perché non vengano pagate due volte.");
    constexpr int MaxLines = 20;
    for (qsizetype i = 0; i < rows.size() && i < MaxLines; ++i)
        text += CrLf + rowItem(rows.at(i));
    if (rows.size() > MaxLines)
        text += CrLf + QStringLiteral("... e altre %1.").arg(rows.size() - MaxLines);
    return text;
}

int DueItemUpdates::pendingCount(QSqlDatabase &db)
{
    return int(WriteBackJournal::pending(db).size());
}

} // namespace pg::distinta
