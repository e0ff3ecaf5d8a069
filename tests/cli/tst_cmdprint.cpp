#include "printfixture.h"

#include "archives/store/archivenumbers.h"
#include "core/vbdate.h"
#include "startup/companyenvironment.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using pg::test::PrintFixture;

// pagamenti-cli print, run as the program itself without a display, on a test installation
// named by the suite's ini files.
class TestCmdPrint : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void printsTheDistintaToPdf();
    void refusals_data();
    void refusals();
    void demoHasTheTemplates();

private:
    int run(const QStringList &arguments);
    QString pdfText(const QString &name);
    QString state();

    std::unique_ptr<PrintFixture> m_fx;
    std::unique_ptr<QTemporaryDir> m_links;
    QTemporaryDir m_out;
    QString m_iniDir;
    QString m_stdout;
    QString m_stderr;
};

void TestCmdPrint::init()
{
    dates::setToday(QDate(2026, 11, 21));
    m_fx = std::make_unique<PrintFixture>();
    QVERIFY(m_fx->isValid());
    archives::ErpRecord release(archives::TabelleAzienda, QStringLiteral("REL"));
    release.setText(QStringLiteral("release"), QStringLiteral("07.00.00"));
    QVERIFY(m_fx->installation().put({release}));
    QVERIFY(m_fx->saveDistinta(5).hasHeader());

    // The suite reads at most 39 characters of a directory: short links name the installation.
    m_links = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pgXXXXXX"));
    const QString links = m_links->path() + u'/';
    QVERIFY(QFile::link(OrvidaDir(), links + u'o') &&
            QFile::link(CompanyArchiveDir(), links + u'a') &&
            QFile::link(CommonArchiveDir(), links + u'c'));
    m_iniDir = m_fx->installation().root() + QStringLiteral("ini");
    QVERIFY(QDir().mkpath(m_iniDir) && QDir().mkpath(OrvidaDir() + QStringLiteral("D_AZI")));
    QFile orvida(m_iniDir + QStringLiteral("/ORVIDA.INI"));
    QVERIFY(orvida.open(QIODevice::WriteOnly));
    orvida.write("[AMBIENTE]\r\nDir orvida=" + links.toUtf8() +
                 "o/\r\nCodice Azienda=" + CompanyCode().toUtf8() + "\r\n");
    QFile parpe(OrvidaDir() + QStringLiteral("D_AZI/") + CompanyCode() +
                QStringLiteral("parpe.ini"));
    QVERIFY(parpe.open(QIODevice::WriteOnly));
    parpe.write("[Dir Archivi Client]\r\nAzienda=" + links.toUtf8() +
                "a/\r\nComuni=" + links.toUtf8() + "c/\r\n");
}

void TestCmdPrint::cleanup()
{
    m_fx.reset();
    m_links.reset();
}

int TestCmdPrint::run(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        env.remove(QString::fromLatin1(name));
    env.insert(QStringLiteral("ORVIDA_INI_DIR"), m_iniDir);
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(m_out.path());
    process.start(QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/pagamenti-cli"), arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return -1;
    m_stdout = QString::fromUtf8(process.readAllStandardOutput());
    m_stderr = QString::fromUtf8(process.readAllStandardError());
    return process.exitCode();
}

QString TestCmdPrint::pdfText(const QString &name)
{
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"),
                    {QStringLiteral("-layout"), m_out.filePath(name), QStringLiteral("-")});
    pdftotext.waitForFinished(60000);
    return QString::fromUtf8(pdftotext.readAllStandardOutput())
        .normalized(QString::NormalizationForm_KC);
}

QString TestCmdPrint::state()
{
    distinta::Distinta d;
    m_fx->store().Leggi(d, QStringLiteral("     1"));
    return d.hasHeader() ? d.header().flg_stato : QString();
}

void TestCmdPrint::printsTheDistintaToPdf()
{
    QCOMPARE(run({QStringLiteral("print"), QStringLiteral("1"), QStringLiteral("--pdf"),
                  QStringLiteral("prova.pdf"), QStringLiteral("--totals"), QStringLiteral("--date"),
                  QStringLiteral("27/11/2026")}),
             0);
    QCOMPARE(m_stdout,
             QDir::toNativeSeparators(m_out.filePath(QStringLiteral("prova.pdf"))) + u'\n');
    QString text = pdfText(QStringLiteral("prova.pdf"));
    QVERIFY(text.contains(QStringLiteral("STAMPA DI PROVA")));
    QVERIFY(text.contains(QStringLiteral("Data presentazione 27/11/2026")));
    QVERIFY(text.contains(QStringLiteral("Scadenze in dettaglio")));
    QVERIFY(text.contains(QStringLiteral("5 disposizioni")));
    QCOMPARE(state(), QStringLiteral("P"));

    QCOMPARE(run({QStringLiteral("print"), QStringLiteral("1"), QStringLiteral("--pdf"),
                  QStringLiteral("definitiva.pdf"), QStringLiteral("--final"),
                  QStringLiteral("--grouped")}),
             0);
    text = pdfText(QStringLiteral("definitiva.pdf"));
    QVERIFY(!text.contains(QStringLiteral("PROVA")));
    QVERIFY(!text.contains(QStringLiteral("TOTALE DISTINTA")));
    QVERIFY(text.contains(QStringLiteral("Numero disposizioni: 3")));
    QCOMPARE(state(), QStringLiteral("D"));

    // Once final, printed only as final.
    QCOMPARE(run({QStringLiteral("print"), QStringLiteral("1"), QStringLiteral("--pdf"),
                  QStringLiteral("lettera.pdf"), QStringLiteral("--template"),
                  QStringLiteral("Lettera")}),
             0);
    text = pdfText(QStringLiteral("lettera.pdf"));
    QVERIFY(text.contains(QStringLiteral("Oggetto: distinta di pagamento N. 1 del 21/11/2026")));
    QVERIFY(!text.contains(QStringLiteral("PROVA")));
}

void TestCmdPrint::refusals_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("reason");
    const QString pdf = QStringLiteral("--pdf");
    const QString file = QStringLiteral("x.pdf");
    QTest::newRow("no file") << QStringList{QStringLiteral("1")} << 2
                             << QStringLiteral("Indicare il file PDF con --pdf.");
    QTest::newRow("not a date") << QStringList{QStringLiteral("1"), pdf, file,
                                               QStringLiteral("--date"),
                                               QStringLiteral("31/02/2026")}
                                << 2
                                << QStringLiteral("Data di presentazione non valida: 31/02/2026");
    QTest::newRow("no such distinta") << QStringList{QStringLiteral("9"), pdf, file} << 1
                                      << QStringLiteral("La distinta 9 non esiste.");
    QTest::newRow("no such template")
        << QStringList{QStringLiteral("1"),
                       pdf,
                       file,
                       QStringLiteral("--final"),
                       QStringLiteral("--template"),
                       QStringLiteral("Sollecito")}
        << 1 << QStringLiteral("Modello \"Sollecito\" non trovato in ");
    // Told before the distinta is read, not after the print.
    QTest::newRow("folder missing")
        << QStringList{QStringLiteral("1"), pdf, QStringLiteral("manca/x.pdf")} << 1
        << QStringLiteral("/manca non esiste.");
}

void TestCmdPrint::refusals()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, reason);
    QCOMPARE(run(QStringList{QStringLiteral("print")} + arguments), exitCode);
    QVERIFY2(m_stderr.contains(reason), qPrintable(m_stderr));
    QVERIFY(!QFile::exists(m_out.filePath(QStringLiteral("x.pdf"))));
    QCOMPARE(state(), QStringLiteral("P"));
}

void TestCmdPrint::demoHasTheTemplates()
{
    QTemporaryDir shortDir(QDir::tempPath() + QStringLiteral("/pgXXXXXX"));
    const QString root = shortDir.path() + QStringLiteral("/d");
    QCOMPARE(run({QStringLiteral("demo"), root, QStringLiteral("--empty")}), 0);
    for (const QString &name : {QStringLiteral("Distinta"), QStringLiteral("Lettera")}) {
        QFile copied(root + QStringLiteral("/orvida/D_IMG/") + name + QStringLiteral(".html"));
        QFile shipped(QStringLiteral(PAGAMENTI_SOURCE_DIR "/data/templates/") + name +
                      QStringLiteral(".html"));
        QVERIFY2(copied.open(QIODevice::ReadOnly) && shipped.open(QIODevice::ReadOnly),
                 qPrintable(copied.fileName()));
        QCOMPARE(copied.readAll(), shipped.readAll());
    }
}

QTEST_GUILESS_MAIN(TestCmdPrint)
#include "tst_cmdprint.moc"
