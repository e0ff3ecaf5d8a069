#include "printfixture.h"
#include "scriptedprompter.h"

#include "archives/archivenumbers.h"
#include "cli/cliapplication.h"
#include "core/vbdate.h"
#include "core/vbformat.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using pg::test::PrintFixture;

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
    // Runs the pagamenti-cli program itself, without a display.
    int runProgram(const QStringList &arguments);
    QString pdfText(const QString &path);
    QString state();

    QByteArray m_iniDir;
    std::unique_ptr<test::ScriptedPrompter> m_prompter;
    std::unique_ptr<PrintFixture> m_fx;
    std::unique_ptr<QTemporaryDir> m_links;
    QTemporaryDir m_out;
    QString m_stdout;
    QString m_stderr;
};

void TestCmdPrint::init()
{
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    dates::setToday(QDate(2026, 11, 21));
    ErrorTrap::instance().resetForTest();
    m_prompter = std::make_unique<test::ScriptedPrompter>();
    m_fx = std::make_unique<PrintFixture>();
    QVERIFY(m_fx->isValid());
    archives::ErpRecord release(archives::TabelleAzienda, QStringLiteral("REL"));
    release.setText(QStringLiteral("release"), QStringLiteral("07.00.00"));
    archives::ErpRecord az1(archives::TabelleAzienda, QStringLiteral("AZ1"));
    az1.setText(QStringLiteral("ragsoc"), QStringLiteral("ORVIDA DEMO S.P.A."));
    az1.setText(QStringLiteral("citta"), QStringLiteral("MILANO"));
    QVERIFY(m_fx->installation().put({release, az1}));
    QVERIFY(m_fx->saveDistinta(5).hasHeader());

    // The suite's ini files naming the installation through short links (the suite reads at
    // most 39 characters of a directory).
    m_links = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pgXXXXXX"));
    const QString links = m_links->path() + u'/';
    QVERIFY(QFile::link(OrvidaDir(), links + u'o') &&
            QFile::link(CompanyArchiveDir(), links + u'a') &&
            QFile::link(CommonArchiveDir(), links + u'c'));
    const QString iniDir = m_fx->installation().root() + QStringLiteral("ini");
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
}

void TestCmdPrint::cleanup()
{
    qputenv("ORVIDA_INI_DIR", m_iniDir);
    m_fx.reset();
    m_links.reset();
    m_prompter.reset();
    QLocale::setDefault(QLocale::c());
}

int TestCmdPrint::run(const QStringList &arguments)
{
    m_stdout.clear();
    m_stderr.clear();
    QTextStream out(&m_stdout);
    QTextStream err(&m_stderr);
    const int code = cli::CliApplication(out, err).run(arguments);
    out.flush();
    err.flush();
    return code;
}

int TestCmdPrint::runProgram(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(m_out.path());
    process.start(QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/pagamenti-cli"), arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return -1;
    m_stdout = QString::fromUtf8(process.readAllStandardOutput());
    m_stderr = QString::fromUtf8(process.readAllStandardError());
    return process.exitCode();
}

QString TestCmdPrint::pdfText(const QString &path)
{
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"),
                    {QStringLiteral("-layout"), path, QStringLiteral("-")});
    if (!pdftotext.waitForFinished(60000))
        return {};
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
    const QString proof = m_out.filePath(QStringLiteral("prova.pdf"));
    QCOMPARE(
        run({QStringLiteral("print"), QStringLiteral("1"), QStringLiteral("--pdf"), proof,
             QStringLiteral("--totals"), QStringLiteral("--date"), QStringLiteral("27/11/2026")}),
        0);
    QCOMPARE(m_stdout, QDir::toNativeSeparators(proof) + u'\n');
    QString text = pdfText(proof);
    QVERIFY(text.contains(QStringLiteral("STAMPA DI PROVA")));
    QVERIFY(text.contains(QStringLiteral("Data presentazione 27/11/2026")));
    QVERIFY(text.contains(QStringLiteral("ORVIDA DEMO S.P.A.")));
    double total = 0;
    for (int i = 1; i <= 5; ++i) {
        QVERIFY(text.contains(vb::format(PrintFixture::amountOf(i), u"#,0.00")));
        total += PrintFixture::amountOf(i);
    }
    QVERIFY(text.contains(QStringLiteral("5 disposizioni")));
    QVERIFY(text.contains(vb::format(total, u"#,0.00")));
    QCOMPARE(state(), QStringLiteral("P"));

    // The program itself prints without a display.
    QCOMPARE(runProgram({QStringLiteral("print"), QStringLiteral("1"), QStringLiteral("--pdf"),
                         QStringLiteral("programma.pdf")}),
             0);
    const QString byProgram = m_out.filePath(QStringLiteral("programma.pdf"));
    QCOMPARE(m_stdout, QDir::toNativeSeparators(byProgram) + u'\n');
    QVERIFY(pdfText(byProgram).contains(QStringLiteral("DISTINTA DI PAGAMENTO N. 1")));
    QCOMPARE(state(), QStringLiteral("P"));

    // A final print, grouped: the distinta is printed in final form.
    const QString final = m_out.filePath(QStringLiteral("definitiva.pdf"));
    QCOMPARE(
        run({QStringLiteral("print"), QStringLiteral("1"), QStringLiteral("--pdf"), final,
             QStringLiteral("--final"), QStringLiteral("--grouped"), QStringLiteral("--totals")}),
        0);
    text = pdfText(final);
    QVERIFY(!text.contains(QStringLiteral("PROVA")));
    QVERIFY(text.contains(QStringLiteral("Scadenze raggruppate")));
    QVERIFY(text.contains(QStringLiteral("3 disposizioni")));
    QCOMPARE(state(), QStringLiteral("D"));

    // Once final, always final; and another template.
    const QString letter = m_out.filePath(QStringLiteral("lettera.pdf"));
    QCOMPARE(run({QStringLiteral("print"), QStringLiteral("1"), QStringLiteral("--pdf"), letter,
                  QStringLiteral("--template"), QStringLiteral("Lettera")}),
             0);
    text = pdfText(letter);
    QVERIFY(text.contains(QStringLiteral("Oggetto: distinta di pagamento N. 1 del 21/11/2026")));
    QVERIFY(!text.contains(QStringLiteral("PROVA")));
    QCOMPARE(state(), QStringLiteral("D"));
    QVERIFY2(m_prompter->shown().isEmpty(), qPrintable(m_prompter->texts().join(u'\n')));
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
    QTest::newRow("no number") << QStringList{pdf, file} << 2
                               << QStringLiteral("Indicare il numero della distinta.");
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
}

void TestCmdPrint::refusals()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, reason);
    QCOMPARE(runProgram(QStringList{QStringLiteral("print")} + arguments), exitCode);
    QVERIFY2(m_stderr.contains(reason), qPrintable(m_stderr));
    QVERIFY(m_stdout.isEmpty());
    QVERIFY(!QFile::exists(m_out.filePath(QStringLiteral("x.pdf"))));
    QCOMPARE(state(), QStringLiteral("P"));
}

void TestCmdPrint::demoHasTheTemplates()
{
    // The ini values of the demo must stay short: a short directory of its own.
    QTemporaryDir shortDir(QDir::tempPath() + QStringLiteral("/pgXXXXXX"));
    const QString root = shortDir.path() + QStringLiteral("/d");
    QCOMPARE(run({QStringLiteral("demo"), root, QStringLiteral("--empty")}), 0);
    for (const QString &name : {QStringLiteral("Distinta"), QStringLiteral("Lettera")}) {
        QFile copied(root + QStringLiteral("/orvida/D_IMG/") + name + QStringLiteral(".html"));
        QVERIFY2(copied.open(QIODevice::ReadOnly), qPrintable(copied.fileName()));
        QFile shipped(QStringLiteral(PAGAMENTI_SOURCE_DIR "/data/templates/") + name +
                      QStringLiteral(".html"));
        QVERIFY(shipped.open(QIODevice::ReadOnly));
        QCOMPARE(copied.readAll(), shipped.readAll());
    }
}

QTEST_MAIN(TestCmdPrint)
#include "tst_cmdprint.moc"
