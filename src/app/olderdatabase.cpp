#include "olderdatabase.h"

#include "core/prompter.h"
#include "localdb/databaseconnection.h"
#include "startup/paths.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlQuery>

namespace pg::app {

namespace {

// Whether the company's database holds a distinta; a database that cannot say counts as
// holding none, so that the clerk is told rather than not.
bool holdsDistinte(const localdb::DatabaseLocation &database)
{
    DatabaseConnection connection(database);
    if (!connection.isOpen())
        return false;
    QSqlQuery query(connection.database());
    return query.exec(QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA")) && query.next() &&
           query.value(0).toLongLong() > 0;
}

} // namespace

QStringList OlderDatabase::find(const CompanyEnvironment &environment)
{
    QStringList found;
    for (const QString &path :
         {environment.CompanyArchiveDir + QStringLiteral("Pagame.mdb"),
          environment.ProgramDir + environment.CompanyCode + QStringLiteral("Pagam.mdb")}) {
        const QString existing = paths::resolveCase(path);
        if (QFileInfo(existing).isFile())
            found << QDir::toNativeSeparators(existing);
    }
    return found;
}

QString OlderDatabase::message(const QStringList &files)
{
    const QString crLf = QStringLiteral("\r\n");
    return QStringLiteral("È presente il database di una versione precedente di Pagamenti:") +
           crLf + files.join(crLf) + crLf + crLf +
           QStringLiteral("Le distinte che contiene non sono mostrate da questa versione, che "
                          "non apre e non modifica quel file. Le scadenze che quelle distinte "
                          "segnano ancora negli archivi di [orvida] sono elencate da \"Verifica\" "
                          "(o da pagamenti-cli verifica), che può anche liberarle.");
}

void OlderDatabase::notice(const CompanyEnvironment &environment,
                           const localdb::DatabaseLocation &database)
{
    const QStringList files = find(environment);
    if (files.isEmpty() || holdsDistinte(database))
        return;
    msgBox(message(files), Buttons::Ok, Icon::Exclamation);
}

} // namespace pg::app
