// pagamenti-cli new on a demo installation, each run a real process as scripts run it.

#include "clirun.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = pg::test::CliRun;

} // namespace

class TestCmdNew : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void refusals_data();
    void refusals();
    void createsAndSavesADistinta();

private:
    Run cli(const QStringList &arguments);
    QVariantList row(const QString &sql);
    void makeDemo();

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_bank; // a company bank of the demo, "ABI/CAB"
};

Run TestCmdNew::cli(const QStringList &arguments)
{
    return pg::test::runCli(arguments, m_dir->path());
}

void TestCmdNew::makeDemo()
{
    // Short paths: the suite's ini files keep no more than 39 characters of a directory.
    m_dir = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pgnXXXXXX"));
    QVERIFY(m_dir->isValid());
    const Run demo = cli({QStringLiteral("demo"), m_dir->path(), QStringLiteral("--today"),
                          QStringLiteral("21/11/2026")});
    QCOMPARE(demo.exitCode, 0);
    // The company banks of the demo, as the suite's company tables hold them.
    const Run dump = cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("14")});
    QCOMPARE(dump.exitCode, 0);
    const QRegularExpressionMatch m =
        QRegularExpression(QStringLiteral("BA1 codice=(\\d{5})(\\d{5})")).match(dump.out);
    QVERIFY(m.hasMatch());
    m_bank = m.captured(1) + u'/' + m.captured(2);
}

QVariantList TestCmdNew::row(const QString &sql)
{
    return pg::test::localDatabaseRow(m_dir->path(), sql);
}

void TestCmdNew::initTestCase()
{
    makeDemo();
}

void TestCmdNew::refusals_data()
{
    QTest::addColumn<QStringList>("options"); // "BANK" stands for a company bank of the demo
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");

    auto options = [](const char *text) { return QString::fromLatin1(text).split(u' '); };
    QTest::newRow("no bank") << QStringList() << 1 << "Banca obbligatoria!";
    QTest::newRow("no agency") << options("--bank 03069") << 1 << "Agenzia obbligatoria!";
    QTest::newRow("unknown bank") << options("--bank 99999/99999") << 1 << "Banca non trovata!";
    QTest::newRow("amounts") << options("--bank BANK --min 1.000 --max 500") << 1
                             << "Importi non coerenti";
    // Options out of their range are refused by name, before anything is read.
    QTest::newRow("amount not a number") << options("--bank BANK --max tanto") << 2 << "--max";
    QTest::newRow("amount beyond any amount") << options("--bank BANK --min 1e308") << 2 << "--min";
    QTest::newRow("negative amount") << options("--bank BANK --max -1") << 2 << "--max";
    QTest::newRow("account code of seven digits")
        << options("--bank BANK --account-from 1234567") << 2 << "--account-from";
    QTest::newRow("account code with letters")
        << options("--bank BANK --account-to 40000A") << 2 << "--account-to";
    QTest::newRow("dates") << options("--bank BANK --due-from 01/12/2026 --due-to 30/11/2026") << 1
                           << "Date non coerenti";
    QTest::newRow("not a date") << options("--bank BANK --due-to 31/02/2026") << 1
                                << "Date non corrette!";
    QTest::newRow("accounts") << options("--bank BANK --account-from 400005 --account-to 400001")
                              << 1 << "Codice inferiore del precedente!";
    QTest::newRow("currency") << options("--bank BANK --currency ZZ") << 1 << "Valuta non trovata!";
    QTest::newRow("account bank") << options("--bank BANK --account-bank 99998/00001") << 1
                                  << "Banca non trovata!";
    QTest::newRow("nothing selected")
        << options("--bank BANK --min 99999999") << 1 << "Imposssibile salvare non esistono righe!";
    QTest::newRow("type") << options("--bank BANK --type 10") << 2 << "--type";
    QTest::newRow("unknown option") << options("--bank BANK --fornitori") << 2 << "--fornitori";
    QTest::newRow("argument") << options("--bank BANK 12") << 2 << "12";
}

void TestCmdNew::refusals()
{
    QFETCH(QStringList, options);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    options.replaceInStrings(QStringLiteral("BANK"), m_bank);
    const Run run = cli(QStringList{QStringLiteral("new")} + options);
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(run.out.isEmpty());
    // Nothing was saved.
    QCOMPARE(row(QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA")).value(0).toInt(), 0);
}

void TestCmdNew::createsAndSavesADistinta()
{
    const QStringList options{QStringLiteral("new"),
                              QStringLiteral("--bank"),
                              m_bank,
                              QStringLiteral("--type"),
                              QStringLiteral("1"),
                              QStringLiteral("--customers"),
                              QStringLiteral("--due-to"),
                              QStringLiteral("31/12/2026"),
                              QStringLiteral("--date"),
                              QStringLiteral("23/11/2026"),
                              QStringLiteral("--value-date"),
                              QStringLiteral("30/11/2026")};
    const Run first = cli(options);
    QCOMPARE(first.exitCode, 0);
    QCOMPARE(first.out, QStringLiteral("1\n"));

    const QVariantList header = row(QStringLiteral(
        "SELECT cod_distinta, flg_tipo, flg_stato, cod_abi_banca, cod_cab_banca, num_numero_disp, "
        "val_importo_totale, dat_data_creazione, dat_data_valuta FROM TB_TESTATA"));
    QCOMPARE(header.value(0).toString(), QStringLiteral("     1"));
    QCOMPARE(header.value(1).toString(), QStringLiteral("C"));
    QCOMPARE(header.value(2).toString(), QStringLiteral("P"));
    QCOMPARE(header.value(3).toString() + u'/' + header.value(4).toString(), m_bank);
    QCOMPARE(header.value(7).toString().left(10), QStringLiteral("2026-11-23"));
    QCOMPARE(header.value(8).toString().left(10), QStringLiteral("2026-11-30"));
    const QVariantList rows = row(QStringLiteral(
        "SELECT COUNT(*), SUM(val_imp_indist_val), MIN(cod_tipo_pag), MAX(cod_tipo_pag), "
        "MAX(dat_data_scad), MIN(cod_banca_pres || '/' || cod_agenzia_pres), "
        "MAX(cod_banca_pres || '/' || cod_agenzia_pres) FROM TB_RIGHE"));
    QVERIFY(rows.value(0).toInt() > 0);
    QCOMPARE(header.value(5).toInt(), rows.value(0).toInt());
    QCOMPARE(qRound64(header.value(6).toDouble() * 100), qRound64(rows.value(1).toDouble() * 100));
    QCOMPARE(rows.value(2).toString(), QStringLiteral("1"));
    QCOMPARE(rows.value(3).toString(), QStringLiteral("1"));
    QVERIFY(rows.value(4).toString() <= QStringLiteral("20261231"));
    QCOMPARE(rows.value(5).toString(), m_bank);
    QCOMPARE(rows.value(6).toString(), m_bank);

    // The bills are now marked in the suite: the same selection finds nothing more to present.
    const Run second = cli(options);
    QCOMPARE(second.exitCode, 1);
    QVERIFY2(second.err.contains(QStringLiteral("Imposssibile salvare non esistono righe!")),
             qPrintable(second.err));
    QCOMPARE(row(QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA")).value(0).toInt(), 1);
}

QTEST_GUILESS_MAIN(TestCmdNew)
#include "tst_cmdnew.moc"
