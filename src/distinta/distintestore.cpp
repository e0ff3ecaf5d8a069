#include "distintestore.h"

#include "distintaversions.h"
#include "duitemupdates.h"
#include "programvalues.h"
#include "raggruppamento.h"
#include "tablesql.h"
#include "writebackjournal.h"
#include "writebacklock.h"

#include "core/distintacode.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "core/vbformat.h"
#include "localdb/databaseconnection.h"
#include "localdb/openerror.h"
#include "localdb/sqldialect.h"
#include "startup/dberror.h"
#include "startup/errortrap.h"

#include <QFileInfo>
#include <QSqlQuery>
#include <QSqlRecord>

namespace pg::distinta {

namespace {

const QLatin1StringView TbTestata("TB_TESTATA");
const QLatin1StringView TbRighe("TB_RIGHE");
const QLatin1StringView TbRigheRagg("TB_RIGHE_RAGG");

const QString RowsOfDistinta = QStringLiteral(
    "WHERE cod_distinta = ? ORDER BY cod_clifor, dat_data_doc, des_serie_doc, des_num_doc, "
    "des_num_rata, rowid");

} // namespace

DistinteStore::DistinteStore(archives::ErpSession *erp)
    : m_erp(erp), m_groupTemplate(defaultGroupDescriptionTemplate())
{}

DistinteStore::~DistinteStore() = default;

QString DistinteStore::connectionStringFor(const QString &path)
{
    return QStringLiteral("Data Source=") + path + u';';
}

void DistinteStore::setGroupDescriptionTemplate(const QString &text)
{
    m_groupTemplate = text.leftJustified(30, u' ', true);
}

localdb::DatabaseLocation DistinteStore::location() const
{
    localdb::DatabaseLocation location = localdb::DatabaseLocation::fromConnectionString(m_conn);
    if (!location.isPostgres() && location.filePath.isEmpty())
        location.filePath = m_filespec;
    return location;
}

std::unique_ptr<DatabaseConnection> DistinteStore::open() const
{
    auto conn = std::make_unique<DatabaseConnection>(location());
    if (conn->isOpen())
        return conn;
    if (conn->isPostgres())
        throw localdb::databaseOpenError(*conn);
    throw AppError(AppError::DatabaseBase + conn->errorCode(),
                   QStringLiteral("Impossibile aprire il database %1: %2")
                       .arg(conn->filePath(), conn->errorText()));
}

void DistinteStore::Nuovo(Distinta &d)
{
    auto conn = open();
    QSqlQuery q = localdb::runQuery(
        conn->database(), QStringLiteral("SELECT MAX(cod_distinta) AS MaxValue FROM TB_TESTATA"));
    double maxValue = 0;
    if (q.next() && !q.value(0).isNull()) {
        bool ok = false;
        maxValue = q.value(0).toString().trimmed().toDouble(&ok);
        if (!ok)
            throw AppError(AppError::TypeMismatch, QStringLiteral("Type mismatch"));
    }
    // The number is kept in 16 bits: past 32767 the distinte are full, and that is an error.
    const qint16 number = vb::cint(maxValue + 1);

    d = Distinta();
    const ProgramValues &values = programValues();
    Testata header;
    header.cod_distinta = formatDistintaCode(number);
    header.dat_data_creazione = dates::today();
    header.dat_data_valuta = dates::today();
    header.flg_tipo = values.tipoDistinta;
    header.flg_stato = QStringLiteral("P");
    header.cod_valuta = values.codValuta;
    header.des_valuta = values.desValuta;
    d.testata.append(header);
}

void DistinteStore::Leggi(Distinta &d, const QString &code)
{
    auto conn = open();
    QSqlDatabase &db = conn->database();
    Distinta read;
    read.testata.load(
        sql::readRows<Testata>(db, TbTestata, QStringLiteral("WHERE cod_distinta = ?"), {code}));
    read.righe.load(sql::readRows<Riga>(db, TbRighe, RowsOfDistinta, {code}));
    read.righeRagg.load(sql::readRows<Riga>(db, TbRigheRagg, RowsOfDistinta, {code}));
    read.versione = DistintaVersions::read(db, code);
    d = std::move(read);
}

std::optional<QString> DistinteStore::Esiste(QString &code, int direction)
{
    QString sql;
    QString fallback;
    switch (direction) {
    case 0:
        sql = QStringLiteral("SELECT cod_distinta FROM TB_TESTATA WHERE cod_distinta = ?");
        break;
    case 1:
        // The next code in the index's order, as the database yields it.
        sql = QStringLiteral("SELECT cod_distinta FROM TB_TESTATA WHERE cod_distinta > ? "
                             "ORDER BY cod_distinta LIMIT 1");
        fallback = QStringLiteral(
            "SELECT cod_distinta FROM TB_TESTATA ORDER BY cod_distinta DESC LIMIT 1");
        break;
    case 2:
        if (code.trimmed().isEmpty())
            code = QStringLiteral("zzzzzzzzzz");
        sql = QStringLiteral("SELECT cod_distinta FROM TB_TESTATA WHERE cod_distinta < ? "
                             "ORDER BY cod_distinta DESC LIMIT 1");
        fallback =
            QStringLiteral("SELECT cod_distinta FROM TB_TESTATA ORDER BY cod_distinta LIMIT 1");
        break;
    default:
        return std::nullopt;
    }
    auto conn = open();
    QSqlQuery q = localdb::runQuery(conn->database(), sql, {code});
    if (q.next())
        return q.value(0).toString();
    if (fallback.isEmpty())
        return std::nullopt;
    QSqlQuery f = localdb::runQuery(conn->database(), fallback);
    if (f.next())
        return f.value(0).toString();
    return std::nullopt;
}

bool DistinteStore::ValidaDati(const Distinta &d)
{
    const Testata header = d.hasHeader() ? d.header() : Testata();
    auto refuse = [](const QString &text) {
        msgBox(text, Buttons::Ok, Icon::Exclamation);
        return false;
    };
    if (!header.dat_data_valuta.isValid())
        return refuse(QStringLiteral("Inserire la data valuta!"));
    if (!header.dat_data_creazione.isValid())
        return refuse(QStringLiteral("Inserire la data di creazione distinta!"));
    if (header.cod_abi_banca.trimmed().isEmpty()) {
        refuse(QStringLiteral("Inserire la banca di presentazione!"));
        if (m_focus)
            m_focus(HeaderField::BancaPresentazione);
        return false;
    }
    if (header.cod_cab_banca.trimmed().isEmpty()) {
        refuse(QStringLiteral("Inserire la agenzia di presentazione!"));
        if (m_focus)
            m_focus(HeaderField::AgenziaPresentazione);
        return false;
    }
    if (d.righe.isEmpty())
        return refuse(QStringLiteral("Imposssibile salvare non esistono righe!"));
    return true;
}

bool DistinteStore::Salva(Distinta &d, bool askFirst, bool noRegroup)
{
    if (askFirst && msgBox(QStringLiteral("Salva le modifiche alla Distinta?"), Buttons::YesNo,
                           Icon::Question) == Answer::No)
        return false;
    if (!ValidaDati(d))
        return false;

    WriteBackLock lock(location());
    if (!lock.acquire())
        return false;
    const DueItemUpdates updates(m_erp);
    // What the clerk is told once the save is done: a number taken by another clerk, rows
    // another clerk's distinta pays already.
    QStringList notes;
    const auto tellNotes = [&] {
        for (const QString &note : std::as_const(notes))
            msgBox(note, Buttons::Ok, Icon::Exclamation);
    };
    std::unique_ptr<DatabaseConnection> conn;
    std::unique_ptr<Transaction> transaction;
    try {
        conn = open();
        QSqlDatabase &db = conn->database();
        // What an interrupted operation left undone comes first: new changes are worked out
        // from marks that agree with the distinte.
        if (!updates.completePending(db))
            return false;
        conn->setDurableCommits(true);
        QList<WriteBackEntry> entries;
        const bool isNew = DistintaVersions::isNew(d);
        for (;;) {
            transaction = std::make_unique<Transaction>(db);
            if (isNew) {
                if (const std::optional<QString> note = DistintaVersions::claimNumber(db, d))
                    if (!notes.contains(*note))
                        notes << *note;
            } else if (!DistintaVersions::raise(db, d)) {
                transaction->rollback();
                msgBox(DistintaVersions::staleMessage(d.header().cod_distinta), Buttons::Ok,
                       Icon::Exclamation);
                return false;
            }
            if (!noRegroup && !underTrap(QStringLiteral("clsDistinte!RaggruppaRighe"),
                                         [&] { raggruppaRighe(d, m_groupTemplate); }))
                return false; // the transaction rolls back: nothing was written
            const QList<qint64> header = sql::writeChanges(db, TbTestata, d.testata);
            const QList<qint64> rows = sql::writeChanges(db, TbRighe, d.righe);
            const QList<qint64> groups = sql::writeChanges(db, TbRigheRagg, d.righeRagg);
            QList<Riga> paidElsewhere;
            entries = updates.planSave(db, d, &paidElsewhere);
            if (!paidElsewhere.isEmpty()) {
                // Saved by another clerk first: those rows go, and the save starts again
                // without them.
                transaction->rollback();
                for (const Riga &row : std::as_const(paidElsewhere))
                    d.righe.removeAt(d.righe.indexOfKey(row.key()));
                notes << DueItemUpdates::leftOutMessage(paidElsewhere);
                if (d.righe.isEmpty()) {
                    tellNotes();
                    msgBox(QStringLiteral("Imposssibile salvare non esistono righe!"), Buttons::Ok,
                           Icon::Exclamation);
                    return false;
                }
                noRegroup = false;
                continue;
            }
            WriteBackJournal::record(db, WriteBackJournal::Operation::Save, d.header().cod_distinta,
                                     entries);
            transaction->commit();
            d.testata.acceptChanges(header);
            d.righe.acceptChanges(rows);
            d.righeRagg.acceptChanges(groups);
            break;
        }
        // Saved, the distinta is no longer new, and its removed items are the journal's now.
        d.righeDaCanc.clear();
        d.nuova = false;
        d.versione = isNew || d.versione == 0 ? 1 : d.versione + 1;
        transaction.reset();
        conn->setDurableCommits(false);

        // The local distinta and its journal are committed before any due item is touched.
        updates.carryOut(db, entries, true, QStringLiteral("Salva"));
        tellNotes();
        return true;
    } catch (const ProcessEnded &) {
        throw;
    } catch (...) {
        const AppError error = errorFromException(std::current_exception());
        if (error.number() > 0)
            ErrTrap(QStringLiteral("frmMain!Sub Salva()"), error);
        else
            msgBox(error.description());
        if (transaction)
            transaction->rollback();
        tellNotes();
        return false;
    }
}

bool DistinteStore::SalvaDesc(Distinta &d)
{
    try {
        auto conn = open();
        Transaction transaction(conn->database());
        if (!DistintaVersions::raise(conn->database(), d)) {
            transaction.rollback();
            msgBox(DistintaVersions::staleMessage(d.header().cod_distinta), Buttons::Ok,
                   Icon::Exclamation);
            return false;
        }
        const QList<qint64> groups = sql::writeChanges(conn->database(), TbRigheRagg, d.righeRagg);
        transaction.commit();
        d.righeRagg.acceptChanges(groups);
        d.versione = d.versione == 0 ? 1 : d.versione + 1;
        return true;
    } catch (const ProcessEnded &) {
        throw;
    } catch (...) {
        ErrTrap(QStringLiteral("frmMain!Sub Salva()"),
                errorFromException(std::current_exception()));
        return false;
    }
}

bool DistinteStore::Cancella(Distinta &d)
{
    WriteBackLock lock(location());
    if (!lock.acquire())
        return false;
    const DueItemUpdates updates(m_erp);
    std::unique_ptr<DatabaseConnection> conn;
    std::unique_ptr<Transaction> transaction;
    try {
        conn = open();
        QSqlDatabase &db = conn->database();
        if (!updates.completePending(db))
            return false;
        conn->setDurableCommits(true);
        transaction = std::make_unique<Transaction>(db);
        const QString code = d.hasHeader() ? d.header().cod_distinta : QString();

        // The due items are freed from the rows as saved; the releases are committed with the
        // deletion and carried out after it, so that no item is ever free while a distinta
        // still holds it.
        QList<Riga> saved;
        for (const auto &entry : sql::readRows<Riga>(db, TbRighe, RowsOfDistinta, {code}))
            saved << entry.data;
        QList<WriteBackEntry> entries = updates.planDelete(saved);
        WriteBackJournal::record(db, WriteBackJournal::Operation::Delete, code, entries);

        // The removals are prepared on copies: the distinta in memory changes only once the
        // deletion is committed.
        RecordSet<Riga> rows = d.righe;
        RecordSet<Riga> groups = d.righeRagg;
        rows.removeAll();
        groups.removeAll();
        localdb::runQuery(db, QStringLiteral("DELETE FROM TB_TESTATA WHERE cod_distinta = ?"),
                          {code});
        DistintaVersions::remove(db, code);
        sql::writeChanges(db, TbRighe, rows);
        sql::writeChanges(db, TbRigheRagg, groups);
        transaction->commit();
        rows.acceptChanges({});
        groups.acceptChanges({});
        d.righe = std::move(rows);
        d.righeRagg = std::move(groups);
        d.righeDaCanc.clear();
        transaction.reset();
        conn->setDurableCommits(false);

        const int left =
            int(updates.carryOut(db, entries, false, QStringLiteral("Cancella")).pending.size());
        if (left > 0)
            msgBox(QStringLiteral("Errore in aggiornamento archivi [orvida]") +
                       QStringLiteral("\r\n") +
                       QStringLiteral("La distinta è stata eliminata, ma %1 sue scadenze non sono "
                                      "ancora state liberate: lo saranno alla prossima operazione "
                                      "sulle distinte o al prossimo avvio del programma.")
                           .arg(left),
                   Buttons::Ok, Icon::Exclamation);
        return true;
    } catch (const ProcessEnded &) {
        throw;
    } catch (...) {
        const std::exception_ptr first = std::current_exception();
        try {
            const AppError error = errorFromException(first);
            // A failure of the suite's archives is not shown: the deletion simply does not
            // happen, and no due item was touched.
            if (error.number() > 0)
                ErrTrap(QStringLiteral("frmMain!Sub cancella()"), error);
            if (transaction)
                transaction->rollback();
        } catch (const ProcessEnded &) {
            throw;
        } catch (...) {
            ErrTrap(QStringLiteral("frmMain!Sub Salva()"),
                    errorFromException(std::current_exception()));
        }
        return false;
    }
}

bool DistinteStore::AggiornaFlagStato(Distinta &d, const QString &state)
{
    if (!d.hasHeader() || d.header().flg_stato == state)
        return true;
    const QString code = d.header().cod_distinta;
    const QString previous = d.header().flg_stato;
    d.editHeader().flg_stato = state;
    if (!Salva(d, false, true)) {
        // Back to what is saved: the old state when nothing was committed, the new one when
        // only the suite's archives failed after the commit.
        try {
            Leggi(d, code);
        } catch (...) {
            d.editHeader().flg_stato = previous;
        }
        return false;
    }
    Leggi(d, code);
    return true;
}

void DistinteStore::AddRigheDaCanc(Distinta &d, const QString &key)
{
    d.righeDaCanc.append(key);
}

bool DistinteStore::AggiornaScadenze(const Testata &header, const QList<Riga> &rows,
                                     const QString &source)
{
    WriteBackLock lock(location());
    if (!lock.acquire())
        return false;
    const DueItemUpdates updates(m_erp);
    auto conn = open();
    QSqlDatabase &db = conn->database();
    if (!updates.completePending(db))
        return false;
    QList<WriteBackEntry> entries = updates.planMarks(db, header, rows);
    if (entries.isEmpty())
        return true;
    conn->setDurableCommits(true);
    Transaction transaction(db);
    WriteBackJournal::record(db, WriteBackJournal::Operation::BankFile, header.cod_distinta,
                             entries);
    transaction.commit();
    conn->setDurableCommits(false);
    updates.carryOut(db, entries, true, source);
    return true;
}

int DistinteStore::applyRepairs(QList<WriteBackEntry> entries)
{
    WriteBackLock lock(location());
    if (!lock.acquire())
        return -1;
    const DueItemUpdates updates(m_erp);
    auto conn = open();
    QSqlDatabase &db = conn->database();
    if (!updates.completePending(db))
        return -1;
    if (entries.isEmpty())
        return 0;
    conn->setDurableCommits(true);
    Transaction transaction(db);
    WriteBackJournal::record(db, WriteBackJournal::Operation::Repair, QString(), entries);
    transaction.commit();
    conn->setDurableCommits(false);
    const WriteBackApplier::Result result =
        updates.carryOut(db, entries, false, QStringLiteral("Verifica"));
    return int(result.pending.size() + result.conflicts.size());
}

bool DistinteStore::completePendingWriteBacks()
{
    // A database not yet created has nothing pending.
    if (!location().isPostgres() && !QFileInfo::exists(location().filePath))
        return true;
    WriteBackLock lock(location());
    if (!lock.acquire())
        return false;
    auto conn = open();
    return DueItemUpdates(m_erp).completePending(conn->database());
}

int DistinteStore::pendingWriteBacks()
{
    auto conn = open();
    return DueItemUpdates::pendingCount(conn->database());
}

bool DistinteStore::ControllaDatiBanca(const RecordSet<Riga> &rows) const
{
    for (int i = 0; i < rows.size(); ++i) {
        const Riga &row = rows.at(i);
        const QString type = row.cod_tipo_pag.trimmed();
        const bool noBank =
            row.cod_banca_cli.trimmed().isEmpty() || row.cod_agenzia_cli.trimmed().isEmpty();
        if (type == u"6" && (row.des_num_cc.trimmed().isEmpty() || noBank))
            return false;
        if ((type == u"0" || type == u"1" || type == u"2") && noBank)
            return false;
    }
    return true;
}

void DistinteStore::RaggruppaRighe(Distinta &d)
{
    underTrap(QStringLiteral("clsDistinte!RaggruppaRighe"),
              [&] { raggruppaRighe(d, m_groupTemplate); });
}

QueryResult DistinteStore::GetRsGen(const QString &sql, const QVariantList &binds)
{
    auto conn = open();
    QSqlQuery q = localdb::runQuery(conn->database(), sql, binds);
    QueryResult result;
    const QSqlRecord record = q.record();
    for (int i = 0; i < record.count(); ++i)
        result.columns << record.fieldName(i);
    while (q.next()) {
        QVariantList row;
        row.reserve(record.count());
        for (int i = 0; i < record.count(); ++i)
            row << q.value(i);
        result.rows << row;
    }
    return result;
}

} // namespace pg::distinta
