// Runs of pagamenti-cli new, delete and cbi on a demo of thirty thousand due items, killed at
// points spread over the whole run (before and after every local commit and every rewrite of a
// due item, chosen by a seed) and at seeded moments; after each one the next start must
// complete what was left, and the reconciliation must find the suite's marks and the saved
// distinte in agreement.

#include "clirun.h"
#include "testdatabase.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = pg::test::CliRun;

constexpr quint32 Seed = 20261124;
const QString CrashAt = QStringLiteral("PAGAMENTI_TEST_CRASH_AT");

} // namespace

class TestCrashSafety : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void killedRunsEndInAgreement();
    void killedAtSeededMoments();
    void cleanupTestCase();

private:
    Run cli(const QStringList &arguments, long long crashAt = 0);
    // A new distinta of the suppliers' items due in the window starting on that day.
    QStringList newDistinta(const QDate &from, int days, const QString &type = {});
    QStringList lastDistinta();
    // The next start completes what was left; then nothing may disagree.
    void expectAgreement(const QString &after);
    // The due items of a distinta freed in the suite behind the program's back.
    void freeItemsOf(const QString &number);

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<pg::test::TestDatabase> m_database;
    QString m_bank;
    QRandomGenerator m_random{Seed};
    QDate m_window{2026, 8, 20};
    int m_killed = 0;
    int m_completed = 0;
};

Run TestCrashSafety::cli(const QStringList &arguments, long long crashAt)
{
    QProcessEnvironment env = pg::test::cliEnvironment(m_dir->path());
    if (crashAt > 0)
        env.insert(CrashAt, QString::number(crashAt));
    const Run run = pg::test::runCli(arguments, env);
    if (crashAt > 0)
        ++(run.exitCode == -1 ? m_killed : m_completed);
    return run;
}

QStringList TestCrashSafety::newDistinta(const QDate &from, int days, const QString &type)
{
    QStringList args{QStringLiteral("new"),
                     QStringLiteral("--bank"),
                     m_bank,
                     QStringLiteral("--due-from"),
                     from.toString(QStringLiteral("dd/MM/yyyy")),
                     QStringLiteral("--due-to"),
                     from.addDays(days - 1).toString(QStringLiteral("dd/MM/yyyy"))};
    if (!type.isEmpty())
        args << QStringLiteral("--type") << type;
    return args;
}

QStringList TestCrashSafety::lastDistinta()
{
    const QVariantList last = pg::test::localDatabaseRow(
        m_dir->path(), QStringLiteral("SELECT TRIM(MAX(cod_distinta)) FROM TB_TESTATA"));
    return {last.value(0).toString()};
}

void TestCrashSafety::expectAgreement(const QString &after)
{
    const Run check = cli({QStringLiteral("verifica")});
    QVERIFY2(check.exitCode == 0, qPrintable(after + u'\n' + check.out + check.err));
    const QVariantList left = pg::test::localDatabaseRow(
        m_dir->path(), QStringLiteral("SELECT COUNT(*) FROM TB_GIORNALE"));
    QVERIFY2(left.value(0).toInt() == 0, qPrintable(after));
}

void TestCrashSafety::freeItemsOf(const QString &number)
{
    QSet<QString> links;
    for (const QVariantList &row : pg::test::localDatabaseRows(
             m_dir->path(), QStringLiteral("SELECT des_link_orvida FROM TB_RIGHE WHERE "
                                           "cod_distinta = '%1'")
                                .arg(number.rightJustified(6))))
        links << row.first().toString();
    QVERIFY(!links.isEmpty());
    const Run dump = cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")});
    QCOMPARE(dump.exitCode, 0);
    static const QRegularExpression link(QStringLiteral(" link=(\\S+) "));
    static const QRegularExpression marks(
        QStringLiteral("stato_dist=\\S+ mark_dist=\\S+( mark_pres=\\S+)?( data_dist=\\S+)?"
                       "( abi_pres=\\S+)?( cab_pres=\\S+)?"));
    QByteArray load;
    for (QString line : dump.out.split(u'\n', Qt::SkipEmptyParts)) {
        if (!links.contains(link.match(line).captured(1)))
            continue;
        line.replace(marks, QStringLiteral("stato_dist=0 mark_dist=0"));
        load += line.toUtf8() + '\n';
    }
    QFile file(m_dir->filePath(QStringLiteral("liberate.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(load);
    file.close();
    QCOMPARE(cli({QStringLiteral("archive"), QStringLiteral("load"), file.fileName()}).exitCode, 0);
}

void TestCrashSafety::initTestCase()
{
    // Short paths: the suite's ini files keep no more than 39 characters of a directory.
    m_dir = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pgkXXXXXX"));
    QVERIFY(m_dir->isValid());
    QCOMPARE(cli({QStringLiteral("demo"), m_dir->path(), QStringLiteral("--due-items"),
                  QStringLiteral("30000"), QStringLiteral("--today"), QStringLiteral("21/11/2026")})
                 .exitCode,
             0);
    // On the tests' server, the company's Pagame.ini names a database of its own.
    m_database = std::make_unique<pg::test::TestDatabase>(m_dir->path() +
                                                          QStringLiteral("/orvida/D_DEMO/"));
    QVERIFY(m_database->isValid());
    const Run dump = cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("14")});
    const QRegularExpressionMatch m =
        QRegularExpression(QStringLiteral("BA1 codice=(\\d{5})(\\d{5})")).match(dump.out);
    QVERIFY(m.hasMatch());
    m_bank = m.captured(1) + u'/' + m.captured(2);

    // The demo, like an installation of earlier programs, has items marked in distinte it
    // does not have: the first reconciliation shows them, the repair sets them free.
    const Run first = cli({QStringLiteral("verifica")});
    QCOMPARE(first.exitCode, 1);
    QVERIFY(first.out.contains(QStringLiteral("ma non è in nessuna distinta salvata.")));
    QCOMPARE(cli({QStringLiteral("verifica"), QStringLiteral("--ripara")}).exitCode, 0);
    expectAgreement(QStringLiteral("repair of the demo"));
}

void TestCrashSafety::killedRunsEndInAgreement()
{
    // A run of n rows passes about 2n + 10 points: the first ones are the commits before any
    // rewrite, the last ones the ticks after them. Four days of due items make about 250.
    auto killPoints = [&](int rows) {
        QList<long long> points{1, 2, 3, 4, 5, 6};
        const int span = 2 * rows + 12;
        for (int i = 0; i < 4; ++i)
            points << 7 + m_random.bounded(span);
        points << span - 1 << span;
        return points;
    };

    // New distinte, each of the next four days of due items.
    const int rowsOfNew = 250;
    for (long long at : killPoints(rowsOfNew)) {
        const QString what = QStringLiteral("new killed at %1").arg(at);
        cli(newDistinta(m_window, 4), at);
        m_window = m_window.addDays(4);
        expectAgreement(what);
        if (QTest::currentTestFailed())
            return;
    }

    // Deletes of the distinte just made (those a kill let through).
    for (long long at : killPoints(rowsOfNew)) {
        const QStringList last = lastDistinta();
        if (last.first().isEmpty())
            break;
        cli(QStringList{QStringLiteral("--yes"), QStringLiteral("delete")} + last, at);
        expectAgreement(QStringLiteral("delete of %1 killed at %2").arg(last.first()).arg(at));
        if (QTest::currentTestFailed())
            return;
    }

    // Bank files of cash distinte whose items the suite freed meanwhile: the file marks them
    // again; killed, it is written again, and then all agrees.
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(cli(newDistinta(m_window, 20, QStringLiteral("3"))).exitCode, 0);
        m_window = m_window.addDays(20);
        const QStringList number = lastDistinta();
        freeItemsOf(number.first());
        const long long at = i < 2 ? i + 1 : 3 + m_random.bounded(2 * rowsOfNew);
        const QStringList cbi =
            QStringList{QStringLiteral("cbi")} + number +
            QStringList{QStringLiteral("--out"), m_dir->filePath(QStringLiteral("cbi.txt"))};
        cli(cbi, at);
        QCOMPARE(cli(cbi).exitCode, 0);
        expectAgreement(QStringLiteral("cbi of %1 killed at %2").arg(number.first()).arg(at));
        if (QTest::currentTestFailed())
            return;
    }
}

void TestCrashSafety::killedAtSeededMoments()
{
    // Killed from outside at seeded moments, wherever the run happens to be.
    for (int i = 0; i < 6; ++i) {
        QProcess process;
        process.setProcessEnvironment(pg::test::cliEnvironment(m_dir->path()));
        const QStringList args =
            i % 2 == 0
                ? newDistinta(m_window, 4)
                : QStringList{QStringLiteral("--yes"), QStringLiteral("delete")} + lastDistinta();
        if (i % 2 == 0)
            m_window = m_window.addDays(4);
        process.start(QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/pagamenti-cli"), args);
        QVERIFY(process.waitForStarted());
        const int ms = 30 + int(m_random.bounded(150));
        if (!process.waitForFinished(ms)) {
            process.kill();
            QVERIFY(process.waitForFinished());
            ++m_killed;
        } else {
            ++m_completed;
        }
        expectAgreement(QStringLiteral("%1 killed after %2 ms").arg(args.first()).arg(ms));
        if (QTest::currentTestFailed())
            return;
    }
}

void TestCrashSafety::cleanupTestCase()
{
    m_database.reset();
    qInfo("runs killed: %d, runs that ended before their kill point: %d", m_killed, m_completed);
}

QTEST_GUILESS_MAIN(TestCrashSafety)
#include "tst_crashsafety.moc"
