#include "distintaversions.h"

#include "core/distintacode.h"
#include "core/vbformat.h"
#include "localdb/sqldialect.h"
#include "startup/dberror.h"

#include <QSqlQuery>

namespace pg::distinta {

namespace {

bool exists(QSqlDatabase &db, const QString &code)
{
    return localdb::runQuery(db, QStringLiteral("SELECT 1 FROM TB_TESTATA WHERE cod_distinta = ?"),
                             {code})
        .next();
}

} // namespace

qint64 DistintaVersions::read(QSqlDatabase &db, const QString &code)
{
    QSqlQuery q = localdb::runQuery(
        db, QStringLiteral("SELECT num_versione FROM TB_VERSIONI WHERE cod_distinta = ?"), {code});
    return q.next() ? q.value(0).toLongLong() : 0;
}

bool DistintaVersions::isNew(const Distinta &d)
{
    return d.hasHeader() && d.testata.entries().first().status == RecordSet<Testata>::Status::Added;
}

std::optional<QString> DistintaVersions::claimNumber(QSqlDatabase &db, Distinta &d)
{
    const QString wanted = d.header().cod_distinta;
    std::optional<QString> note;
    if (exists(db, wanted)) {
        QSqlQuery q =
            localdb::runQuery(db, QStringLiteral("SELECT MAX(cod_distinta) FROM TB_TESTATA"), {});
        const double max = q.next() ? q.value(0).toString().trimmed().toDouble() : 0;
        // Kept in 16 bits, as every distinta number: past 32767 the distinte are full.
        const QString code = formatDistintaCode(vb::cint(max + 1));
        d.editHeader().cod_distinta = code;
        for (int i = 0; i < d.righe.size(); ++i)
            d.righe.edit(i).cod_distinta = code;
        for (int i = 0; i < d.righeRagg.size(); ++i)
            d.righeRagg.edit(i).cod_distinta = code;
        note = QStringLiteral("Il numero %1 è stato preso da un'altra distinta mentre questa "
                              "veniva preparata: questa distinta è stata salvata con il numero "
                              "%2.")
                   .arg(wanted.trimmed(), code.trimmed());
    }
    localdb::runQuery(db, QStringLiteral("DELETE FROM TB_VERSIONI WHERE cod_distinta = ?"),
                      {d.header().cod_distinta});
    localdb::runQuery(
        db, QStringLiteral("INSERT INTO TB_VERSIONI (cod_distinta, num_versione) VALUES (?, 1)"),
        {d.header().cod_distinta});
    return note;
}

bool DistintaVersions::raise(QSqlDatabase &db, const Distinta &d)
{
    const QString code = d.header().cod_distinta;
    QSqlQuery update =
        localdb::runQuery(db,
                          QStringLiteral("UPDATE TB_VERSIONI SET num_versione = num_versione + "
                                         "1 WHERE cod_distinta = ? AND num_versione = ?"),
                          {code, d.versione});
    if (update.numRowsAffected() == 1)
        return true;
    // A distinta saved by an earlier release has no version yet: its first save gives it one,
    // provided it is still there and nobody gave it one meanwhile.
    if (d.versione != 0 || !exists(db, code) || read(db, code) != 0)
        return false;
    localdb::runQuery(
        db, QStringLiteral("INSERT INTO TB_VERSIONI (cod_distinta, num_versione) VALUES (?, 1)"),
        {code});
    return true;
}

void DistintaVersions::remove(QSqlDatabase &db, const QString &code)
{
    localdb::runQuery(db, QStringLiteral("DELETE FROM TB_VERSIONI WHERE cod_distinta = ?"), {code});
}

QString DistintaVersions::staleMessage(const QString &code)
{
    return QStringLiteral("La distinta %1 è stata modificata o eliminata da un altro utente (o in "
                          "un'altra finestra) dopo che è stata letta: le modifiche non sono state "
                          "salvate, per non scrivere sopra quelle dell'altro. Rileggere la "
                          "distinta e ripetere le modifiche.")
        .arg(code.trimmed());
}

} // namespace pg::distinta
