// Several clerks saving distinte on one company at the same time: C processes each press
// "Nuova distinta" and save D distinte of R rows (their own due items, so that every row is
// saved), all starting together. Measured beside one process saving its D distinte alone:
//   clerks  - distinte saved a second by C processes at once, against one process alone;
// and checked, since a wrong answer here is paid twice:
//   numbers taken twice (must be 0), distinte missing or with rows not their own (must be 0),
//   due items whose marks disagree with the saved distinte by the reconciliation (must be 0).
// The local database is SQLite, or the tests' PostgreSQL server when PAGAMENTI_TEST_ENGINE
// says so (script/bench runs both).
//
//   bench_clerks [--clerks C] [--distinte D] [--rows R]

#include "benchcommon.h"
#include "benchrows.h"
#include "scriptedprompter.h"
#include "testdatabase.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erpsession.h"
#include "checks/markreconciliation.h"
#include "core/vbdate.h"
#include "distinta/distintestore.h"
#include "localdb/databaseconnection.h"
#include "startup/companyenvironment.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSqlQuery>

using namespace pg;
using namespace pg::distinta;

namespace {

QString linkOf(int clerk, int n)
{
    return QStringLiteral("K%1%2").arg(clerk).arg(n, 11, 10, QLatin1Char('0'));
}

// One clerk: its distinte saved one after the other on the installation the arguments name.
int clerk(const QStringList &args)
{
    CompanyEnvironment env;
    env.CompanyArchiveDir = args.at(args.indexOf(QStringLiteral("--company")) + 1);
    env.CommonArchiveDir = args.at(args.indexOf(QStringLiteral("--common")) + 1);
    setCompanyEnvironment(env);
    const int me = bench::intOption(args, u"--clerk", 0);
    const int distinte = bench::intOption(args, u"--distinte", 50);
    const int rows = bench::intOption(args, u"--rows", 200);
    archives::EmbeddedArchiveStore store(env.CompanyArchiveDir, env.CommonArchiveDir);
    store.VBInit(test::TestInstallation::Handle);
    for (int archive : {15, 0, 14, 3, 42, 38, 37, 55, 28})
        store.AperturaFile(test::TestInstallation::Handle, archive,
                           archive == archives::Scadenze ? 2 : 0);
    archives::ErpSession erp(store, test::TestInstallation::Handle);
    DistinteStore distinteStore(&erp);
    distinteStore.setPStrConn(args.at(args.indexOf(QStringLiteral("--conn")) + 1));
    test::ScriptedPrompter quiet; // the numbers taken by the others are told, and not asked
    int failed = 0;
    for (int k = 0; k < distinte; ++k) {
        Distinta d;
        distinteStore.Nuovo(d);
        d.editHeader().cod_abi_banca = QStringLiteral("02008");
        d.editHeader().cod_cab_banca = QStringLiteral("01600");
        for (int n = k * rows; n < (k + 1) * rows; ++n) {
            Riga r = bench::rowFor(linkOf(me, n), n, 100);
            r.cod_distinta = d.header().cod_distinta;
            d.righe.append(r);
        }
        if (!distinteStore.Salva(d, false, false))
            ++failed;
    }
    return failed == 0 ? 0 : 1;
}

// Clerks first .. first + count - 1 started together; the time until the last one ends.
double runClerks(const QStringList &base, int first, int count)
{
    return bench::timedMs([&] {
        QList<QProcess *> processes;
        for (int c = first; c < first + count; ++c) {
            auto *p = new QProcess;
            p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
            p->start(QCoreApplication::applicationFilePath(),
                     base + QStringList{QStringLiteral("--clerk"), QString::number(c)});
            processes << p;
        }
        for (QProcess *p : std::as_const(processes)) {
            p->waitForFinished(-1);
            if (p->exitCode() != 0)
                std::fprintf(stderr, "a clerk could not save all its distinte\n");
            delete p;
        }
    });
}

qint64 number(DatabaseConnection &conn, const QString &sql)
{
    QSqlQuery q(sql, conn.database());
    return q.next() ? q.value(0).toLongLong() : -1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.contains(QStringLiteral("--clerk")))
        return clerk(args);
    const int clerks = bench::intOption(args, u"--clerks", 4);
    const int distinte = bench::intOption(args, u"--distinte", 50);
    const int rows = bench::intOption(args, u"--rows", 200);

    dates::setToday(QDate(2026, 11, 21));
    test::TestInstallation inst;
    if (!inst.isValid())
        return 1;
    // Each clerk's own due items, and those of the one saving alone.
    QList<archives::ErpRecord> items;
    for (int c = 0; c <= clerks; ++c)
        for (int n = 0; n < distinte * rows; ++n)
            items << test::TestInstallation::dueItem(QStringLiteral("F"), linkOf(c, n),
                                                     QStringLiteral("6"),
                                                     QString::number(200000 + n % 500), 100);
    if (!inst.put(items))
        return 1;
    const QStringList base{QStringLiteral("--company"),  CompanyArchiveDir(),
                           QStringLiteral("--common"),   CommonArchiveDir(),
                           QStringLiteral("--conn"),     inst.connectionString(),
                           QStringLiteral("--distinte"), QString::number(distinte),
                           QStringLiteral("--rows"),     QString::number(rows)};

    // One alone (clerk 0's items), then all the others together.
    const double alone = runClerks(base, 0, 1);
    const double all = runClerks(base, 1, clerks);

    DatabaseConnection conn(inst.database());
    const qint64 saved = number(conn, QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA"));
    const qint64 numbers =
        number(conn, QStringLiteral("SELECT COUNT(DISTINCT cod_distinta) FROM TB_TESTATA"));
    // A distinta holds the rows of one clerk's one distinta: R rows, of one clerk.
    const qint64 wrong = number(
        conn, QStringLiteral("SELECT COUNT(*) FROM (SELECT cod_distinta FROM TB_RIGHE GROUP BY "
                             "cod_distinta HAVING COUNT(*) <> %1 OR COUNT(DISTINCT "
                             "substr(des_link_orvida, 1, 2)) <> 1) AS w")
                  .arg(rows));
    const qint64 twice = number(
        conn, QStringLiteral("SELECT COUNT(*) FROM (SELECT des_link_orvida FROM TB_RIGHE GROUP BY "
                             "des_link_orvida HAVING COUNT(*) > 1) AS t"));
    DistinteStore store(&inst.erp());
    store.setPStrConn(inst.connectionString());
    checks::MarkReconciliation reconciliation(store, inst.erp());
    reconciliation.run();

    const char *engine = test::onServer() ? "PostgreSQL" : "SQLite";
    const double rateAlone = distinte / (alone / 1000.0);
    const double rateAll = clerks * distinte / (all / 1000.0);
    std::printf("%-28s %9d %11.1f /s %11.1f /s %7.2f   (%s, %d impiegati)\n", "distinte al secondo",
                clerks * distinte, rateAll, rateAlone, rateAll / rateAlone, engine, clerks);
    std::printf("  distinte salvate %lld di %d, numeri doppi %lld, distinte con righe altrui "
                "%lld, scadenze in due distinte %lld, differenze della verifica %lld\n",
                static_cast<long long>(saved), (clerks + 1) * distinte,
                static_cast<long long>(saved - numbers), static_cast<long long>(wrong),
                static_cast<long long>(twice),
                static_cast<long long>(reconciliation.disagreements().size()));
    return saved == (clerks + 1) * distinte && saved == numbers && wrong == 0 && twice == 0 &&
                   reconciliation.disagreements().isEmpty()
               ? 0
               : 1;
}
