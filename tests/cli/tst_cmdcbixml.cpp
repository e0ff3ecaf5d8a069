// pagamenti-cli cbi --format xml on a demo installation, each run a real process as scripts run
// it; the file is checked by xmllint against the shipped schemas, as an administrator would.

#include "clirun.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

namespace {

using Run = pg::test::CliRun;

const QString Schema =
    QStringLiteral(PAGAMENTI_SOURCE_DIR "/data/schemas/cbi/CBIPaymentRequest.00.04.01.xsd");

// An amount of the message ("1234.50") in cents.
qint64 cents(const QString &amount)
{
    const QStringList parts = amount.split(u'.');
    return parts.size() == 2 && parts.at(1).size() == 2
               ? parts.at(0).toLongLong() * 100 + parts.at(1).toLongLong()
               : -1;
}

} // namespace

class TestCmdCbiXml : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void xmlOfTheDemoPassesTheSchema();

private:
    Run cli(const QStringList &arguments);
    QVariantList row(const QString &sql);

    std::unique_ptr<QTemporaryDir> m_dir;
};

Run TestCmdCbiXml::cli(const QStringList &arguments)
{
    return pg::test::runCli(arguments, m_dir->path());
}

QVariantList TestCmdCbiXml::row(const QString &sql)
{
    return pg::test::localDatabaseRow(m_dir->path(), sql);
}

void TestCmdCbiXml::initTestCase()
{
    QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("xmllint")).isEmpty(),
             "xmllint (libxml2-utils) is installed by script/bootstrap");
    // Short paths: the suite's ini files keep no more than 39 characters of a directory.
    m_dir = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pgxXXXXXX"));
    QVERIFY(m_dir->isValid());
    QCOMPARE(
        cli({QStringLiteral("demo"), m_dir->path(), QStringLiteral("--today"),
             QStringLiteral("21/11/2026"), QStringLiteral("--due-items"), QStringLiteral("1120")})
            .exitCode,
        0);
    // The bank transfers to the last suppliers of the demo, whose bank data are complete: about
    // fifty of them, through the first company bank.
    const Run dump = cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("14")});
    const QRegularExpressionMatch bank =
        QRegularExpression(QStringLiteral("BA1 codice=(\\d{5})(\\d{5})")).match(dump.out);
    QVERIFY(bank.hasMatch());
    const Run created = cli(
        {QStringLiteral("new"), QStringLiteral("--bank"),
         bank.captured(1) + u'/' + bank.captured(2), QStringLiteral("--type"), QStringLiteral("6"),
         QStringLiteral("--due-to"), QStringLiteral("31/12/2027"), QStringLiteral("--account-from"),
         QStringLiteral("400022"), QStringLiteral("--account-to"), QStringLiteral("400026")});
    QCOMPARE(created.exitCode, 0);
    QCOMPARE(created.out, QStringLiteral("1\n"));
    QVERIFY(row(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE")).value(0).toInt() >= 45);
}

void TestCmdCbiXml::xmlOfTheDemoPassesTheSchema()
{
    // A format the command does not know writes nothing.
    const Run unknown = cli({QStringLiteral("cbi"), QStringLiteral("1"), QStringLiteral("--format"),
                             QStringLiteral("pdf")});
    QVERIFY(unknown.exitCode > 0);
    QVERIFY2(unknown.err.contains(QStringLiteral("--format: indicare xml o flat.")),
             qPrintable(unknown.err));
    QCOMPARE(row(QStringLiteral("SELECT flg_stato FROM TB_TESTATA")).value(0).toString(),
             QStringLiteral("P"));

    const Run written = cli({QStringLiteral("cbi"), QStringLiteral("1"), QStringLiteral("--format"),
                             QStringLiteral("xml")});
    QCOMPARE(written.exitCode, 0);
    QVERIFY2(written.err.contains(QStringLiteral("Elaborazione Completata")),
             qPrintable(written.err));
    const QString path = written.out.trimmed();
    QVERIFY2(
        path.endsWith(QStringLiteral("D_STM") + QDir::separator() + QStringLiteral("CBI_1.xml")),
        qPrintable(path));

    QProcess xmllint;
    xmllint.start(QStringLiteral("xmllint"),
                  {QStringLiteral("--noout"), QStringLiteral("--schema"), Schema, path});
    QVERIFY(xmllint.waitForFinished(60000));
    QVERIFY2(xmllint.exitCode() == 0, xmllint.readAllStandardError().constData());

    // The message's count and control sum are the distinta's, to the cent, and so is the sum of
    // its amounts.
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QString count;
    qint64 controlSum = -1;
    qint64 sum = 0;
    int transactions = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"NbOfTxs")
            count = xml.readElementText();
        else if (xml.name() == u"CtrlSum")
            controlSum = cents(xml.readElementText());
        else if (xml.name() == u"InstdAmt") {
            sum += cents(xml.readElementText());
            ++transactions;
        }
    }
    QVERIFY(!xml.hasError());
    const QVariantList header = row(
        QStringLiteral("SELECT num_numero_disp, val_importo_totale, flg_stato FROM TB_TESTATA"));
    QCOMPARE(count, QString::number(transactions));
    QCOMPARE(transactions, header.value(0).toInt());
    QCOMPARE(controlSum, qRound64(header.value(1).toDouble() * 100));
    QCOMPARE(sum, controlSum);
    QCOMPARE(header.value(2).toString(), QStringLiteral("F"));
}

QTEST_GUILESS_MAIN(TestCmdCbiXml)
#include "tst_cmdcbixml.moc"
