// pagamenti-cli riba on a demo installation, each run a real process as scripts run it: the
// customers' distinta of the demo's ricevute bancarie, its RiBa file read back as the bank
// reads it.

#include "clirun.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = pg::test::CliRun;

// What is wrong with a RiBa file, read as the bank reads it: "IB" first and "EF" last, every
// line 120 bytes and CR LF, each receivable the records 14, 20, 30, 40, 50, 51, 70 with its
// progressive number, the fixed fields in place, and the trailer's count of receivables,
// total of the amounts of the "14" records and count of lines agreeing with the file.
QString ribaProblems(const QByteArray &file, int *receivables, qint64 *total)
{
    if (!file.endsWith("\r\n"))
        return QStringLiteral("no CR LF at the end");
    const QList<QByteArray> lines = file.chopped(1).split('\n');
    for (const QByteArray &line : lines)
        if (line.size() != 121 || !line.endsWith('\r'))
            return QStringLiteral("a line is not 120 bytes and CR LF: ") +
                   QString::fromLatin1(line);
    const QByteArray ib = lines.first();
    const QByteArray ef = lines.last();
    if (!ib.startsWith(" IB") || !ef.startsWith(" EF") || ef.mid(3, 36) != ib.mid(3, 36) ||
        ib.at(113) != 'E' || ef.at(113) != 'E')
        return QStringLiteral("header and trailer do not agree");
    const QList<QByteArray> types{"14", "20", "30", "40", "50", "51", "70"};
    *receivables = 0;
    *total = 0;
    for (int i = 1; i + 1 < lines.size(); ++i) {
        const QByteArray &line = lines.at(i);
        const int k = (i - 1) / 7;
        if (line.mid(1, 2) != types.at((i - 1) % 7) ||
            line.mid(3, 7) != QByteArray::number(k + 1).rightJustified(7, '0'))
            return QStringLiteral("line %1 out of place").arg(i + 1);
        if (line.startsWith(" 14")) {
            if (line.mid(28, 5) != "30000" || line.at(46) != '-' || line.at(119) != 'E' ||
                line.mid(47, 5) != ib.mid(8, 5) || line.mid(91, 5) != ib.mid(3, 5))
                return QStringLiteral("record 14 of receivable %1").arg(k + 1);
            *total += line.mid(33, 13).toLongLong();
            ++*receivables;
        }
    }
    if ((lines.size() - 2) % 7 != 0 || ef.mid(45, 7).toInt() != *receivables ||
        ef.mid(52, 15).toLongLong() != *total || ef.mid(67, 15) != QByteArray(15, '0') ||
        ef.mid(82, 7).toInt() != lines.size())
        return QStringLiteral("the trailer does not agree with the file: ") +
               QString::fromLatin1(ef);
    return {};
}

} // namespace

class TestCmdRiba : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void wrongUsesWriteNothing_data();
    void wrongUsesWriteNothing();
    void demoCustomersGiveAFileTheBankTakes();

private:
    Run cli(const QStringList &arguments) { return pg::test::runCli(arguments, m_dir->path()); }
    QVariantList row(const QString &sql) { return pg::test::localDatabaseRow(m_dir->path(), sql); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestCmdRiba::initTestCase()
{
    // Short paths: the suite's ini files keep no more than 39 characters of a directory.
    m_dir = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pgrXXXXXX"));
    QVERIFY(m_dir->isValid());
    QCOMPARE(cli({QStringLiteral("demo"), m_dir->path(), QStringLiteral("--today"),
                  QStringLiteral("21/11/2026")})
                 .exitCode,
             0);
    const QRegularExpressionMatch bank =
        QRegularExpression(QStringLiteral("BA1 codice=(\\d{5})(\\d{5})"))
            .match(
                cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("14")}).out);
    QVERIFY(bank.hasMatch());
    const QString presenting = bank.captured(1) + u'/' + bank.captured(2);
    // 1: the ricevute bancarie of the demo's customers of RiBa; 2: bank transfers to suppliers.
    QCOMPARE(cli({QStringLiteral("new"), QStringLiteral("--bank"), presenting,
                  QStringLiteral("--customers"), QStringLiteral("--type"), QStringLiteral("1"),
                  QStringLiteral("--account-from"), QStringLiteral("100101"),
                  QStringLiteral("--account-to"), QStringLiteral("100106"),
                  QStringLiteral("--date"), QStringLiteral("21/11/2026")})
                 .out,
             QStringLiteral("1\n"));
    QCOMPARE(
        cli({QStringLiteral("new"), QStringLiteral("--bank"), presenting, QStringLiteral("--type"),
             QStringLiteral("6"), QStringLiteral("--due-to"), QStringLiteral("31/12/2027")})
            .out,
        QStringLiteral("2\n"));
}

void TestCmdRiba::wrongUsesWriteNothing_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    QTest::newRow("no number") << QStringList{QStringLiteral("riba")} << 2
                               << "Indicare il numero della distinta.";
    QTest::newRow("no file after --out") << QStringList{QStringLiteral("riba"), QStringLiteral("1"),
                                                        QStringLiteral("--out"), QString()}
                                         << 2 << "Indicare il file per --out.";
    QTest::newRow("a suppliers' distinta")
        << QStringList{QStringLiteral("riba"), QStringLiteral("2")} << 1
        << "La distinta 2 è una distinta fornitori";
    QTest::newRow("the credit-transfer file of a customers' distinta")
        << QStringList{QStringLiteral("cbi"), QStringLiteral("1")} << 1
        << "La distinta 1 è una distinta clienti";
}

void TestCmdRiba::wrongUsesWriteNothing()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    const Run run = cli(arguments);
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(run.out.isEmpty());
    QVERIFY(QDir(m_dir->path() + QStringLiteral("/orvida/D_STM")).isEmpty());
}

void TestCmdRiba::demoCustomersGiveAFileTheBankTakes()
{
    const QString out = m_dir->filePath(QStringLiteral("riba.txt"));
    const Run run = cli({QStringLiteral("riba"), QStringLiteral("1"), QStringLiteral("--out"), out,
                         QStringLiteral("--raggruppa")});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out.trimmed(), QDir::toNativeSeparators(out));
    QVERIFY2(run.err.contains(QStringLiteral("Elaborazione Completata")), qPrintable(run.err));

    QFile file(out);
    QVERIFY(file.open(QIODevice::ReadOnly));
    int receivables = 0;
    qint64 total = 0;
    QCOMPARE(ribaProblems(file.readAll(), &receivables, &total), QString());
    // The distinta's due items, fewer receivables where a customer has two due on one day,
    // and its total to the cent.
    const QVariantList header =
        row(QStringLiteral("SELECT num_numero_disp, val_importo_totale, flg_stato FROM TB_TESTATA "
                           "WHERE cod_distinta = '     1'"));
    QVERIFY(receivables > 0 && receivables < header.value(0).toInt());
    QCOMPARE(total, qRound64(header.value(1).toDouble() * 100));
    QCOMPARE(header.value(2).toString(), QStringLiteral("F"));
    // The due items keep their marks in the suite.
    const QString items =
        cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")}).out;
    QCOMPARE(items.count(QRegularExpression(QStringLiteral("cod_clifor=1001\\d\\d .*mark_dist=B"))),
             header.value(0).toInt());
}

QTEST_GUILESS_MAIN(TestCmdRiba)
#include "tst_cmdriba.moc"
