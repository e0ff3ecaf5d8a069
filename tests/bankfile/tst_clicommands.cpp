#include "bankdata.h"
#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "checks/completenesscheck.h"
#include "cli/cliapplication.h"
#include "core/distintacode.h"
#include "distinta/distintestore.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::distinta;
using namespace pg::test;

class TestCliCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cbiWritesTheFileOfTheDistinta_data();
    void cbiWritesTheFileOfTheDistinta();
    void cbiRefusals_data();
    void cbiRefusals();
    void checkExitsWithOneOnErrors();

private:
    int run(const QStringList &arguments);
    void save(int number, const std::function<void(Distinta &)> &change = {});

    QLocale m_locale;
    QByteArray m_iniDir;
    std::unique_ptr<ScriptedPrompter> m_prompter;
    std::unique_ptr<TestInstallation> m_inst;
    std::unique_ptr<QTemporaryDir> m_links;
    std::unique_ptr<DistinteStore> m_store;
    QString m_out;
};

void TestCliCommands::init()
{
    m_locale = QLocale();
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    ErrorTrap::instance().resetForTest();
    m_prompter = std::make_unique<ScriptedPrompter>();
    m_inst = std::make_unique<TestInstallation>();
    QVERIFY(m_inst->isValid());
    archives::ErpRecord release(archives::TabelleAzienda, QStringLiteral("REL"));
    release.setText(QStringLiteral("release"), QStringLiteral("07.00.00"));
    QVERIFY(m_inst->put(suiteRecords() + dueItemsOfTheDistinte() + QList{release}));

    // The suite's ini files naming the installation, as the command line reads them. The suite
    // reads at most 39 characters of a directory: the installation is named by short links.
    m_links = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pgXXXXXX"));
    const QString links = m_links->path() + u'/';
    QVERIFY(QFile::link(OrvidaDir(), links + u'o') &&
            QFile::link(CompanyArchiveDir(), links + u'a') &&
            QFile::link(CommonArchiveDir(), links + u'c'));
    QVERIFY((links + QStringLiteral("a/")).size() <= 39);
    const QString iniDir = m_inst->root() + QStringLiteral("ini");
    QVERIFY(QDir().mkpath(iniDir) && QDir().mkpath(OrvidaDir() + QStringLiteral("D_AZI")));
    QFile orvida(iniDir + QStringLiteral("/ORVIDA.INI"));
    QVERIFY(orvida.open(QIODevice::WriteOnly));
    orvida.write("[AMBIENTE]\r\nDir orvida=" + links.toUtf8() +
                 "o/\r\nCodice Azienda=" + CompanyCode().toUtf8() + "\r\nNodoId=2\r\n");
    orvida.close();
    QFile parpe(OrvidaDir() + QStringLiteral("D_AZI/") + CompanyCode() +
                QStringLiteral("parpe.ini"));
    QVERIFY(parpe.open(QIODevice::WriteOnly));
    parpe.write("[Ambiente]\r\nNodoIDUbicazioneArchivi=1\r\n[Dir Archivi Client]\r\nAzienda=" +
                links.toUtf8() + "a/\r\nComuni=" + links.toUtf8() + "c/\r\n");
    parpe.close();
    m_iniDir = qgetenv("ORVIDA_INI_DIR");
    qputenv("ORVIDA_INI_DIR", iniDir.toLocal8Bit());

    m_store = std::make_unique<DistinteStore>(&m_inst->erp());
    m_store->setPStrConn(m_inst->connectionString());
}

void TestCliCommands::cleanup()
{
    qputenv("ORVIDA_INI_DIR", m_iniDir);
    m_store.reset();
    m_inst.reset();
    m_links.reset();
    m_prompter.reset();
    QLocale::setDefault(m_locale);
}

int TestCliCommands::run(const QStringList &arguments)
{
    m_out.clear();
    QString err;
    QTextStream out(&m_out);
    QTextStream errStream(&err);
    cli::CliApplication app(out, errStream);
    const int code = app.run(arguments);
    out.flush();
    return code;
}

void TestCliCommands::save(int number, const std::function<void(Distinta &)> &change)
{
    Distinta d = distintaOf(*m_store, distintaData(number));
    if (change)
        change(d);
    QVERIFY(m_store->Salva(d, false, false));
}

void TestCliCommands::cbiWritesTheFileOfTheDistinta_data()
{
    QTest::addColumn<bool>("givenPath");
    QTest::newRow("the proposed file") << false;
    QTest::newRow("a file given with --out") << true;
}

void TestCliCommands::cbiWritesTheFileOfTheDistinta()
{
    QFETCH(bool, givenPath);
    save(1);
    QTemporaryDir elsewhere;
    // The proposed file is in the installation as the suite's ini file names it.
    const QString path = givenPath ? elsewhere.filePath(QStringLiteral("bonifici.txt"))
                                   : m_links->filePath(QStringLiteral("o/D_STM/CBI_1.txt"));
    QStringList arguments{QStringLiteral("cbi"), QStringLiteral("1")};
    if (givenPath)
        arguments << QStringLiteral("--out") << path;
    QCOMPARE(run(arguments), 0);
    QCOMPARE(m_out, QDir::toNativeSeparators(path) + u'\n');
    QCOMPARE(readAll(path), goldenFile(QStringLiteral("cbi_one_row.txt")));
    Distinta d;
    m_store->Leggi(d, formatDistintaCode(1));
    QCOMPARE(d.header().flg_stato, QStringLiteral("F"));
}

void TestCliCommands::cbiRefusals_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("no number") << QStringList{QStringLiteral("cbi")} << 2;
    QTest::newRow("not a number") << QStringList{QStringLiteral("cbi"), QStringLiteral("uno")} << 2;
    QTest::newRow("--out without its file")
        << QStringList{QStringLiteral("cbi"), QStringLiteral("1"), QStringLiteral("--out")} << 2;
    QTest::newRow("a distinta that does not exist")
        << QStringList{QStringLiteral("cbi"), QStringLiteral("99")} << 1;
    QTest::newRow("a distinta with anomalies")
        << QStringList{QStringLiteral("cbi"), QStringLiteral("1")} << 1;
}

void TestCliCommands::cbiRefusals()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    save(1, [&](Distinta &d) {
        if (qstrcmp(QTest::currentDataTag(), "a distinta with anomalies") == 0)
            d.righe.edit(0).des_num_cc = QString(20, u' ');
    });
    QCOMPARE(run(arguments), exitCode);
    QVERIFY(m_out.isEmpty());
    QVERIFY(QDir(OrvidaDir() + QStringLiteral("D_STM")).isEmpty());
}

void TestCliCommands::checkExitsWithOneOnErrors()
{
    save(1);
    const QString report = m_links->filePath(QStringLiteral("o/exe/controllo.txt"));
    QCOMPARE(run({QStringLiteral("check"), QStringLiteral("1")}), 0);
    QCOMPARE(m_out, QDir::toNativeSeparators(report) + u'\n');
    QVERIFY(QFile::exists(report));

    // The due item of the row has been paid meanwhile.
    archives::ErpRecord paid = TestInstallation::dueItem(
        QStringLiteral("F"), distintaData(1).rows.first().link, QStringLiteral("6"),
        distintaData(1).rows.first().account, distintaData(1).rows.first().amount);
    paid.setNumber(QStringLiteral("imp_pag_val"), 1234.5, 2);
    QVERIFY(m_inst->put({paid}));
    QCOMPARE(run({QStringLiteral("check"), QStringLiteral("1")}), 1);
    QCOMPARE(m_out, QDir::toNativeSeparators(report) + u'\n');
    QVERIFY(readAll(report).contains("     4\r\n"));
}

QTEST_GUILESS_MAIN(TestCliCommands)
#include "tst_clicommands.moc"
