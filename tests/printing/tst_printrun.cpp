#include "printfixture.h"
#include "scriptedprompter.h"

#include "core/vbdate.h"
#include "core/vbformat.h"
#include "printing/pdfoutput.h"
#include "printing/printdocument.h"
#include "printing/printrun.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::printing;
using pg::test::PrintFixture;

namespace {

// An output that keeps what it was given and answers as told.
class RecordingOutput : public PrintOutput
{
public:
    explicit RecordingOutput(bool goesOut) : m_goesOut(goesOut) {}
    bool deliver(const PrintDocument &document, const QString &title) override
    {
        ++calls;
        html = document.html();
        testPrint = document.isTestPrint();
        this->title = title;
        return m_goesOut;
    }
    int calls = 0;
    QString html;
    QString title;
    bool testPrint = false;

private:
    bool m_goesOut;
};

// The text of a PDF, one entry per page, ligatures written as their letters.
QStringList pdfPages(const QString &path)
{
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"),
                    {QStringLiteral("-layout"), path, QStringLiteral("-")});
    if (!pdftotext.waitForFinished(60000) || pdftotext.exitCode() != 0)
        return {};
    QString text = QString::fromUtf8(pdftotext.readAllStandardOutput())
                       .normalized(QString::NormalizationForm_KC);
    QStringList pages = text.split(u'\f');
    if (!pages.isEmpty() && pages.last().trimmed().isEmpty())
        pages.removeLast();
    return pages;
}

} // namespace

class TestPrintRun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void stateAfterThePrint_data();
    void stateAfterThePrint();
    void refusals();
    void pdfOfTheDistinta();
    void aboutFiftyRowsPerPage_data();
    void aboutFiftyRowsPerPage();

private:
    void setState(distinta::Distinta &d, const QString &state);
    QString savedState(const QString &code);

    std::unique_ptr<PrintFixture> m_fx;
};

void TestPrintRun::initTestCase()
{
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        QFAIL("pdftotext (poppler-utils) is needed: run script/bootstrap");
}

void TestPrintRun::init()
{
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    dates::setToday(QDate(2026, 11, 21));
    ErrorTrap::instance().resetForTest();
    m_fx = std::make_unique<PrintFixture>();
    QVERIFY(m_fx->isValid());
}

void TestPrintRun::cleanup()
{
    m_fx.reset();
    QLocale::setDefault(QLocale::c());
}

void TestPrintRun::setState(distinta::Distinta &d, const QString &state)
{
    QVERIFY(m_fx->store().AggiornaFlagStato(d, state));
    QCOMPARE(d.header().flg_stato, state);
}

QString TestPrintRun::savedState(const QString &code)
{
    distinta::Distinta d;
    m_fx->store().Leggi(d, code);
    return d.hasHeader() ? d.header().flg_stato : QStringLiteral("(missing)");
}

void TestPrintRun::stateAfterThePrint_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("definitive");
    QTest::addColumn<bool>("goesOut");
    QTest::addColumn<QString>("after");
    QTest::newRow("final print of an open distinta") << "P" << true << true << "D";
    QTest::newRow("final print of a presented distinta") << "F" << true << true << "D";
    QTest::newRow("final print printed again") << "D" << true << true << "D";
    QTest::newRow("test print") << "P" << false << true << "P";
    QTest::newRow("test print of a presented distinta") << "F" << false << true << "F";
    QTest::newRow("final print that did not go out") << "P" << true << false << "P";
}

void TestPrintRun::stateAfterThePrint()
{
    QFETCH(QString, before);
    QFETCH(bool, definitive);
    QFETCH(bool, goesOut);
    QFETCH(QString, after);
    test::ScriptedPrompter prompter;
    distinta::Distinta d = m_fx->saveDistinta(4);
    QVERIFY(d.hasHeader());
    if (before != u"P")
        setState(d, before);

    PrintRun run(m_fx->store(), &m_fx->erp(), m_fx->company());
    RecordingOutput output(goesOut);
    PrintOptions options;
    options.definitive = definitive;
    QCOMPARE(run.LanciaStampa(d, options, output), goesOut);
    QCOMPARE(output.calls, 1);
    QCOMPARE(output.testPrint, !definitive);
    QCOMPARE(output.title, QStringLiteral("Distinta_1"));
    QCOMPARE(output.html.contains(QStringLiteral("STAMPA DI PROVA")), !definitive);
    QCOMPARE(d.header().flg_stato, after);
    QCOMPARE(savedState(d.header().cod_distinta), after);
    QVERIFY2(prompter.shown().isEmpty(), qPrintable(prompter.texts().join(u'\n')));
}

void TestPrintRun::refusals()
{
    test::ScriptedPrompter prompter;
    distinta::Distinta d = m_fx->saveDistinta(3);
    PrintRun run(m_fx->store(), &m_fx->erp(), m_fx->company());
    RecordingOutput output(true);
    PrintOptions final;
    final.definitive = true;

    // Unsaved changes: nothing is printed.
    d.righe.edit(0).des_scadenza = QStringLiteral("cambiata");
    QVERIFY(!run.LanciaStampa(d, final, output));
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Distinta non ancora salvata")});
    QCOMPARE(output.calls, 0);
    m_fx->store().Leggi(d, d.header().cod_distinta);

    // A template of the company with a slip is reported whole, naming the file, and the
    // distinta stays as it was.
    prompter.clear();
    const QString file = OrvidaDir() + QStringLiteral("D_IMG/Distinta.html");
    QFile bad(file);
    QVERIFY(bad.open(QIODevice::WriteOnly));
    bad.write("<p>{{ragione_sociale_azienda}}</p>\n<p>{{ragsoc}}</p>\n{{#righe}}<p>{{importo}}");
    bad.close();
    QVERIFY(!run.LanciaStampa(d, final, output));
    QCOMPARE(prompter.texts(),
             QStringList{QStringLiteral("Il modello \"Distinta\" (%1) contiene errori e non può "
                                        "essere stampato:\r\n"
                                        "riga 2: campo sconosciuto {{ragsoc}}\r\n"
                                        "riga 3: il blocco {{#righe}} non è chiuso da {{/righe}}")
                             .arg(QDir::toNativeSeparators(file))});
    QCOMPARE(output.calls, 0);
    QCOMPARE(savedState(d.header().cod_distinta), QStringLiteral("P"));

    prompter.clear();
    final.templateName = QStringLiteral("Sollecito");
    QVERIFY(!run.LanciaStampa(d, final, output));
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Modello \"Sollecito\" non trovato in %1")
                                               .arg(OrvidaDir() + QStringLiteral("D_IMG/"))});
    QCOMPARE(output.calls, 0);
    QCOMPARE(d.header().flg_stato, QStringLiteral("P"));
}

void TestPrintRun::pdfOfTheDistinta()
{
    test::ScriptedPrompter prompter;
    distinta::Distinta d = m_fx->saveDistinta(7);
    const QString code = d.header().cod_distinta;
    QTemporaryDir out;
    PrintRun run(m_fx->store(), &m_fx->erp(), m_fx->company());

    PrintOptions options;
    options.presentationDate = QDate(2026, 11, 27);
    PdfOutput proof(out.filePath(QStringLiteral("prova.pdf")));
    QVERIFY(run.LanciaStampa(d, options, proof));
    QString text = pdfPages(out.filePath(QStringLiteral("prova.pdf"))).join(u'\n');
    QVERIFY(text.contains(QStringLiteral("STAMPA DI PROVA")));
    QVERIFY(!text.contains(QStringLiteral("TOTALE DISTINTA")));
    QCOMPARE(savedState(code), QStringLiteral("P"));

    options.definitive = true;
    options.totals = true;
    PdfOutput final(out.filePath(QStringLiteral("definitiva.pdf")));
    QVERIFY(run.LanciaStampa(d, options, final));
    QCOMPARE(final.pagesWritten(), 1);
    const QStringList pages = pdfPages(out.filePath(QStringLiteral("definitiva.pdf")));
    QCOMPARE(pages.size(), 1);
    text = pages.first();
    QVERIFY(!text.contains(QStringLiteral("PROVA")));
    QVERIFY(text.contains(QStringLiteral("DISTINTA DI PAGAMENTO N. 1")));
    QVERIFY(text.contains(QStringLiteral("Data presentazione 27/11/2026")));
    QVERIFY(text.contains(QStringLiteral("ORVIDA DEMO S.P.A.")));
    QVERIFY(text.contains(QStringLiteral("BIANCHI & FIGLI <S.P.A.>")));
    // One line per row, in the distinta's order: number, beneficiary ... amount, description.
    double total = 0;
    for (int i = 0; i < d.righe.size(); ++i) {
        const distinta::Riga &row = d.righe.at(i);
        const QString amount = vb::format(*row.val_imp_indist_val, u"#,0.00");
        const QRegularExpression line(
            QStringLiteral("^\\s*%1\\s.*\\s%2\\s+%3\\s*$")
                .arg(QString::number(i + 1), QRegularExpression::escape(amount),
                     QRegularExpression::escape(row.des_scadenza.trimmed())),
            QRegularExpression::MultilineOption);
        QVERIFY2(line.match(text).hasMatch(), qPrintable(QString::number(i + 1) + u' ' + amount));
        total += *row.val_imp_indist_val;
    }
    const QRegularExpression totals(
        QStringLiteral("TOTALE DISTINTA\\s.*7 disposizioni\\s+%1")
            .arg(QRegularExpression::escape(vb::format(total, u"#,0.00"))));
    QVERIFY2(totals.match(text).hasMatch(), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral("Distinta N. 1 del 21/11/2026")));
    QVERIFY(text.contains(QStringLiteral("Pagina 1 di 1")));
    QCOMPARE(savedState(code), QStringLiteral("D"));
    QVERIFY2(prompter.shown().isEmpty(), qPrintable(prompter.texts().join(u'\n')));
}

void TestPrintRun::aboutFiftyRowsPerPage_data()
{
    QTest::addColumn<int>("rows");
    QTest::newRow("one page") << 30;
    QTest::newRow("three pages") << 130;
}

void TestPrintRun::aboutFiftyRowsPerPage()
{
    QFETCH(int, rows);
    test::ScriptedPrompter prompter;
    distinta::Distinta d = m_fx->saveDistinta(rows);
    QCOMPARE(d.righe.size(), rows);
    QTemporaryDir out;
    const QString path = out.filePath(QStringLiteral("distinta.pdf"));
    PrintRun run(m_fx->store(), &m_fx->erp(), m_fx->company());
    PdfOutput pdf(path);
    PrintOptions options;
    options.totals = true;
    QVERIFY(run.LanciaStampa(d, options, pdf));

    const QStringList pages = pdfPages(path);
    QCOMPARE(pages.size(), pdf.pagesWritten());
    // Every row once, in order; every page numbered; every full page about fifty rows.
    const QRegularExpression rowLine(
        QStringLiteral("^\\s*(\\d+)\\s+\\S.*\\s\\d{1,3}(\\.\\d{3})*,\\d\\d\\s"),
        QRegularExpression::MultilineOption);
    int expected = 1;
    for (int p = 0; p < pages.size(); ++p) {
        int onPage = 0;
        for (auto it = rowLine.globalMatch(pages.at(p)); it.hasNext();) {
            QCOMPARE(it.next().captured(1).toInt(), expected++);
            ++onPage;
        }
        QVERIFY(
            pages.at(p).contains(QStringLiteral("Pagina %1 di %2").arg(p + 1).arg(pages.size())));
        if (p + 1 < pages.size())
            QVERIFY2(onPage >= 35 && onPage <= 55, qPrintable(QString::number(onPage)));
    }
    QCOMPARE(expected - 1, rows);
    if (rows <= 35)
        QCOMPARE(pages.size(), 1);
}

QTEST_MAIN(TestPrintRun)
#include "tst_printrun.moc"
