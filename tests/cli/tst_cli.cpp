// pagamenti-cli as administrators run it: exit codes, usage, the demo installation and the
// archive dump and load, each a real process.

#include "clirun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = pg::test::CliRun;

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private slots:
    void usageAndExitCodes_data();
    void usageAndExitCodes();
    void demoDumpLoadDump();
    void loadRefusesABadFileWhole();
    void commandsNeedAnInstallation();
    void demoRefusesALongDirectory();
    void installaPutsTheProgramsFilesWhereTheyAreRead();

private:
    // Runs pagamenti-cli; iniDir, when given, is the ORVIDA_INI_DIR of the run.
    Run cli(const QStringList &arguments, const QString &iniDir = {});
    // A new short-named directory for an installation (its path goes into ini files).
    QString newDir();

    QList<std::shared_ptr<QTemporaryDir>> m_dirs;
};

Run TestCli::cli(const QStringList &arguments, const QString &iniDir)
{
    return pg::test::runCli(arguments, iniDir);
}

QString TestCli::newDir()
{
    auto dir = std::make_shared<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pgcXXXXXX"));
    m_dirs << dir;
    return dir->path();
}

void TestCli::usageAndExitCodes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("stdoutHas");
    QTest::addColumn<QString>("stderrHas");
    QTest::newRow("help") << QStringList{QStringLiteral("--help")} << 0
                          << "Uso: pagamenti-cli [--yes] COMANDO"
                          << "";
    QTest::newRow("help of a command")
        << QStringList{QStringLiteral("archive"), QStringLiteral("--help")} << 0
        << "archive dump NUMERO"
        << "";
    QTest::newRow("no command") << QStringList() << 2 << ""
                                << "Comandi:";
    QTest::newRow("unknown command") << QStringList{QStringLiteral("paga")} << 2 << ""
                                     << "Comando sconosciuto: paga";
    QTest::newRow("unknown global option") << QStringList{QStringLiteral("--presto")} << 2 << ""
                                           << "Opzione sconosciuta: --presto";
    QTest::newRow("demo without directory") << QStringList{QStringLiteral("demo")} << 2 << ""
                                            << "Indicare una e una sola cartella";
    QTest::newRow("demo with a wrong number")
        << QStringList{QStringLiteral("demo"), QStringLiteral("/tmp/x"),
                       QStringLiteral("--due-items"), QStringLiteral("molte")}
        << 2 << ""
        << "Valore non valido per --due-items";
    QTest::newRow("demo with an unknown option")
        << QStringList{QStringLiteral("demo"), QStringLiteral("/tmp/x"), QStringLiteral("--veloce")}
        << 2 << ""
        << "Opzione sconosciuta: --veloce";
    QTest::newRow("option without its value")
        << QStringList{QStringLiteral("demo"), QStringLiteral("/tmp/x"), QStringLiteral("--seed")}
        << 2 << ""
        << "Manca il valore dell'opzione --seed";
}

void TestCli::usageAndExitCodes()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, stdoutHas);
    QFETCH(QString, stderrHas);
    const Run run = cli(arguments);
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2(run.out.contains(stdoutHas), qPrintable(run.out));
    QVERIFY2(run.err.contains(stderrHas), qPrintable(run.err));
    QCOMPARE(run.out.isEmpty(), stdoutHas.isEmpty());
}

void TestCli::demoDumpLoadDump()
{
    const QStringList demoArgs{QStringLiteral("--seed"),      QStringLiteral("5"),
                               QStringLiteral("--due-items"), QStringLiteral("180"),
                               QStringLiteral("--today"),     QStringLiteral("14/03/2025")};
    const QString first = newDir();
    Run run = cli(QStringList{QStringLiteral("demo"), first} + demoArgs);
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(QStringLiteral("ORVIDA_INI_DIR=") + QDir::toNativeSeparators(first)),
             qPrintable(run.out));

    const Run dueItems =
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")}, first);
    QCOMPARE(dueItems.exitCode, 0);
    QCOMPARE(dueItems.out.count(u'\n'), 180);
    const Run banks =
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("15")}, first);
    QCOMPARE(banks.exitCode, 0);
    QVERIFY(banks.out.contains(u"des_valuta=EURO"));

    // The same seed and day give the same archives.
    const QString second = newDir();
    QCOMPARE(cli(QStringList{QStringLiteral("demo"), second} + demoArgs).exitCode, 0);
    QCOMPARE(
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")}, second).out,
        dueItems.out);

    // Loaded into an empty installation, the dump comes back the same.
    const QString empty = newDir();
    QCOMPARE(cli({QStringLiteral("demo"), empty, QStringLiteral("--empty")}).exitCode, 0);
    QCOMPARE(
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")}, empty).out,
        QString());
    const QString file = empty + QStringLiteral("/scadenze.txt");
    QFile text(file);
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write(dueItems.out.toUtf8() + banks.out.toUtf8());
    text.close();
    run = cli({QStringLiteral("archive"), QStringLiteral("load"), file}, empty);
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(u"archivio 38: 180"), qPrintable(run.out));
    QCOMPARE(
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")}, empty).out,
        dueItems.out);
    QCOMPARE(
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("15")}, empty).out,
        banks.out);
    QCOMPARE(cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38"),
                  QStringLiteral("--key"), QStringLiteral("2")},
                 empty)
                 .out,
             cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38"),
                  QStringLiteral("--key=2")},
                 first)
                 .out);
}

void TestCli::loadRefusesABadFileWhole()
{
    const QString dir = newDir();
    QCOMPARE(cli({QStringLiteral("demo"), dir, QStringLiteral("--empty")}).exitCode, 0);
    const QString file = dir + QStringLiteral("/errato.txt");
    QFile text(file);
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("38 * flag_colpar=P link=2025000000101 data_scad=20250331\n"
               "38 * flag_colpar=P link=2025000000201 data_scad=2025-03-31\n");
    text.close();
    const Run run = cli({QStringLiteral("archive"), QStringLiteral("load"), file}, dir);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(u"nessun record è stato scritto"), qPrintable(run.err));
    QVERIFY2(run.err.contains(u"riga 2, campo data_scad: valore di 10 caratteri"),
             qPrintable(run.err));
    QCOMPARE(
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")}, dir).out,
        QString());
}

void TestCli::commandsNeedAnInstallation()
{
    // No ORVIDA.INI where the variable points: the parpe file of the empty company is missing.
    const Run run =
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")}, newDir());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(u"Non è stato trovato il Parpe per l'azienda attiva"),
             qPrintable(run.err));
    QVERIFY(run.out.isEmpty());
}

void TestCli::demoRefusesALongDirectory()
{
    const QString base = newDir();
    const QString deep = base + QStringLiteral("/una/cartella/molto/profonda");
    const Run run = cli({QStringLiteral("demo"), deep});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(u"Percorso troppo lungo"), qPrintable(run.err));
    QVERIFY(!QFileInfo::exists(base + QStringLiteral("/una")));
}

void TestCli::installaPutsTheProgramsFilesWhereTheyAreRead()
{
    // An installation of the suite without the program's files: the first start cannot create
    // the local database.
    const QString dir = newDir();
    QCOMPARE(cli({QStringLiteral("demo"), dir, QStringLiteral("--due-items"), QStringLiteral("1")})
                 .exitCode,
             0);
    const QString exe = dir + QStringLiteral("/orvida/exe/");
    QVERIFY(QFile::remove(exe + QStringLiteral("QXARTRAC.DAT")));
    QVERIFY(QFile::remove(exe + QStringLiteral("causali.ini")));
    Run run = cli({QStringLiteral("list")}, dir);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(u"Errore d'installazione"), qPrintable(run.err));

    // The suite's directory from ORVIDA.INI; the company's own reasons and an outdated schema.
    QFile causali(exe + QStringLiteral("causali.ini"));
    QVERIFY(causali.open(QIODevice::WriteOnly));
    causali.write("[CAUSALI]\r\nFA=SI\r\n");
    causali.close();
    QFile schema(exe + QStringLiteral("QXARTRAC.DAT"));
    QVERIFY(schema.open(QIODevice::WriteOnly));
    schema.write("Database\tPagame\t06.07.00\r\n");
    schema.close();
    run = cli({QStringLiteral("installa")}, dir);
    QCOMPARE(run.exitCode, 0);
    QFile shipped(QStringLiteral(PAGAMENTI_SOURCE_DIR "/data/QXARTRAC.DAT"));
    QVERIFY(shipped.open(QIODevice::ReadOnly) && schema.open(QIODevice::ReadOnly));
    QCOMPARE(schema.readAll(), shipped.readAll());
    QVERIFY(causali.open(QIODevice::ReadOnly));
    QCOMPARE(causali.readAll(), QByteArray("[CAUSALI]\r\nFA=SI\r\n"));
    QVERIFY(QFileInfo::exists(dir + QStringLiteral("/orvida/D_IMG/Distinta.html")));
    QCOMPARE(cli({QStringLiteral("list")}, dir).exitCode, 0);

    // A folder that is not there is refused.
    run = cli({QStringLiteral("installa"), dir + QStringLiteral("/manca")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(u"non esiste"), qPrintable(run.err));
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
