#include "databasefilecheck.h"

#include <QAtomicInteger>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace pg::localdb {

namespace {

// Every database of the engine begins with these 16 bytes.
constexpr char EngineHeader[] = "SQLite format 3";

// The table every local database has had since its first version.
const QString MarkerTable = QStringLiteral("_tblSys_EnvVar");

// What the engine finds wrong with the database, on a connection of its own that runs only
// reads; empty when nothing.
QString engineProblem(const QString &path, const QString &file)
{
    static QAtomicInteger<quint64> counter;
    const QString name = QStringLiteral("pagamenti-controllo-%1").arg(++counter);
    QString damage;
    bool ours = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000"));
        QSqlQuery q(db);
        if (!db.open()) {
            damage = db.lastError().text();
        } else if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = "
                                          "'table' AND name = '%1'")
                               .arg(MarkerTable)) ||
                   !q.next()) {
            damage = q.lastError().text();
        } else if (q.value(0).toInt() == 0) {
            ours = false;
        } else if (!q.exec(QStringLiteral("PRAGMA quick_check(5)"))) {
            damage = q.lastError().text();
        } else {
            QStringList found;
            while (q.next())
                found << q.value(0).toString();
            if (found != QStringList{QStringLiteral("ok")})
                damage = found.join(QStringLiteral("; "));
        }
        q = QSqlQuery();
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    if (!ours)
        return QStringLiteral("Il file %1 non è un database di Pagamenti (manca la tabella %2) "
                              "e non viene modificato.")
            .arg(file, MarkerTable);
    if (!damage.isEmpty())
        return QStringLiteral("Il database %1 è danneggiato e non può essere usato: ripristinarlo "
                              "da una copia di sicurezza. (%2)")
            .arg(file, damage);
    return {};
}

} // namespace

QString localDatabaseFileProblem(const QString &path)
{
    const QString file = QDir::toNativeSeparators(path);
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QStringLiteral("Impossibile leggere il database %1: %2").arg(file, f.errorString());
    const QByteArray header = f.read(sizeof EngineHeader);
    f.close();
    if (header.isEmpty())
        return QStringLiteral("Il file %1 è vuoto: non è un database di Pagamenti e non viene "
                              "modificato. Ripristinarlo da una copia di sicurezza, o eliminarlo "
                              "perché il programma ne crei uno nuovo.")
            .arg(file);
    if (header != QByteArrayView(EngineHeader, sizeof EngineHeader))
        return QStringLiteral("Il file %1 non è un database di Pagamenti e non viene modificato.")
            .arg(file);
    return engineProblem(path, file);
}

} // namespace pg::localdb
