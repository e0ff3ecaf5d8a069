#include "printfixture.h"
#include "scriptedprompter.h"

#include "core/vbdate.h"
#include "core/vbformat.h"
#include "printing/pdfoutput.h"
#include "printing/printdocument.h"
#include "printing/printrun.h"
#include "printing/rowsband.h"
#include "printing/templatestore.h"
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

// Merge values of a distinta of that many rows, with long texts that wrap when asked.
MergeData rowsData(int rows, bool longTexts)
{
    MergeData data;
    data.fields.insert(QStringLiteral("numero_distinta"), QStringLiteral("7"));
    data.conditions.insert(QStringLiteral("totali"), true);
    data.conditions.insert(QStringLiteral("prova"), false);
    for (int i = 1; i <= rows; ++i) {
        QHash<QString, QString> row;
        row.insert(QStringLiteral("progressivo"), QString::number(i));
        row.insert(QStringLiteral("ragione_sociale_beneficiario"),
                   longTexts ? QStringLiteral("Cooperativa Agricola Produttori Ortofrutticoli "
                                              "della Valle del Savio n. %1")
                                   .arg(i)
                             : QStringLiteral("Fornitore %1 & Figli S.r.l.").arg(i));
        row.insert(QStringLiteral("documento"), QStringLiteral("%1/B").arg(1000 + i));
        row.insert(QStringLiteral("importo"), QStringLiteral("%1,50").arg(i * 7));
        row.insert(QStringLiteral("descrizione"),
                   longTexts ? QStringLiteral("Saldo delle fatture di acconto e di conguaglio del "
                                              "secondo semestre, rata %1 di dodici")
                                   .arg(i % 12 + 1)
                             : QStringLiteral("Vs.Fatt. %1").arg(i));
        data.rows << row;
    }
    return data;
}

// The words of each page of a printed document, drawn straight or by the engine.
QList<QStringList> printedWords(const MergeData &data, bool straight, const QString &path,
                                const PrintDocument::Progress &progress = {})
{
    const TemplateMerge merge(*TemplateStore().text(TemplateStore::defaultName()));
    // A final print: the letters of the test mark across the page would be read among the
    // lines wherever they fall.
    PrintDocument document(merge.merge(data), QStringLiteral("Distinta N. 7"), false);
    if (straight)
        document.setRows(*RowsBand::contentOf(merge, data));
    document.setProgress(progress);
    PdfOutput pdf(path);
    QList<QStringList> pages;
    if (!pdf.deliver(document, QStringLiteral("Distinta_7")))
        return pages;
    for (const QString &page : pdfPages(path))
        pages << page.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
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
    void pdfOfTheDistinta_data();
    void pdfOfTheDistinta();
    void rowsDrawnStraightReadAsTheEngine_data();
    void rowsDrawnStraightReadAsTheEngine();
    void wrappedRowsStayWhole();
    void stoppedPrintLeavesNothing();

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

void TestPrintRun::pdfOfTheDistinta_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("definitive");
    QTest::addColumn<bool>("totals");
    QTest::newRow("one page, test print") << 7 << false << false;
    QTest::newRow("three pages, final with totals") << 130 << true << true;
}

void TestPrintRun::pdfOfTheDistinta()
{
    QFETCH(int, rows);
    QFETCH(bool, definitive);
    QFETCH(bool, totals);
    test::ScriptedPrompter prompter;
    distinta::Distinta d = m_fx->saveDistinta(rows);
    QCOMPARE(d.righe.size(), rows);
    QTemporaryDir out;
    const QString path = out.filePath(QStringLiteral("distinta.pdf"));
    PrintRun run(m_fx->store(), &m_fx->erp(), m_fx->company());
    PdfOutput pdf(path);
    PrintOptions options;
    options.definitive = definitive;
    options.totals = totals;
    options.presentationDate = QDate(2026, 11, 27);
    QVERIFY(run.LanciaStampa(d, options, pdf));
    QVERIFY2(prompter.shown().isEmpty(), qPrintable(prompter.texts().join(u'\n')));
    QCOMPARE(savedState(d.header().cod_distinta),
             definitive ? QStringLiteral("D") : QStringLiteral("P"));

    const QStringList pages = pdfPages(path);
    QCOMPARE(pages.size(), pdf.pagesWritten());
    QVERIFY(pages.first().contains(QStringLiteral("DISTINTA DI PAGAMENTO N. 1")));
    QVERIFY(pages.first().contains(QStringLiteral("Data presentazione 27/11/2026")));
    // Every row once, in the distinta's order: number ... amount, description. Every page
    // numbered and, for a test print, marked; every full page about fifty rows.
    const QRegularExpression rowLine(
        QStringLiteral(
            "^\\s*(\\d+)\\s+\\S.*\\s(\\d{1,3}(?:\\.\\d{3})*,\\d\\d)\\s+(Vs\\.Fatt\\. \\d+)\\s*$"),
        QRegularExpression::MultilineOption);
    int next = 0;
    double total = 0;
    for (int p = 0; p < pages.size(); ++p) {
        int onPage = 0;
        for (auto it = rowLine.globalMatch(pages.at(p)); it.hasNext(); ++onPage) {
            const QRegularExpressionMatch match = it.next();
            QVERIFY(next < rows);
            const distinta::Riga &row = d.righe.at(next++);
            QCOMPARE(match.captured(1).toInt(), next);
            QCOMPARE(match.captured(2), vb::format(*row.val_imp_indist_val, u"#,0.00"));
            QCOMPARE(match.captured(3), row.des_scadenza.trimmed());
            total += *row.val_imp_indist_val;
        }
        QVERIFY(pages.at(p).contains(QStringLiteral("Distinta N. 1 del 21/11/2026")));
        QVERIFY(
            pages.at(p).contains(QStringLiteral("Pagina %1 di %2").arg(p + 1).arg(pages.size())));
        QCOMPARE(pages.at(p).contains(QStringLiteral("STAMPA DI PROVA")), !definitive);
        if (p + 1 < pages.size())
            QVERIFY2(onPage >= 35 && onPage <= 55, qPrintable(QString::number(onPage)));
    }
    QCOMPARE(next, rows);
    if (rows <= 35)
        QCOMPARE(pages.size(), 1);
    const QRegularExpression totalsLine(
        QStringLiteral("TOTALE DISTINTA\\s.*%1 disposizioni\\s+%2")
            .arg(rows)
            .arg(QRegularExpression::escape(vb::format(total, u"#,0.00"))));
    QCOMPARE(totalsLine.match(pages.last()).hasMatch(), totals);
}

void TestPrintRun::rowsDrawnStraightReadAsTheEngine_data()
{
    QTest::addColumn<int>("rows");
    QTest::newRow("one page") << 20;
    QTest::newRow("pages with the heading again") << 160;
}

void TestPrintRun::rowsDrawnStraightReadAsTheEngine()
{
    QFETCH(int, rows);
    test::ScriptedPrompter prompter;
    QTemporaryDir out;
    const MergeData data = rowsData(rows, false);
    // The same words on the same pages: the rows cut where the engine cuts them, the
    // heading and the footers on every page, the totals and the signature after the rows.
    const QList<QStringList> straight =
        printedWords(data, true, out.filePath(QStringLiteral("straight.pdf")));
    QVERIFY(straight.size() > (rows > 50 ? 2 : 0));
    QCOMPARE(straight, printedWords(data, false, out.filePath(QStringLiteral("engine.pdf"))));
    QVERIFY(prompter.shown().isEmpty());
}

void TestPrintRun::wrappedRowsStayWhole()
{
    test::ScriptedPrompter prompter;
    QTemporaryDir out;
    const int rows = 90;
    const QList<QStringList> pages =
        printedWords(rowsData(rows, true), true, out.filePath(QStringLiteral("wrapped.pdf")));
    QVERIFY(pages.size() > 2);
    // Names and descriptions too long for their columns wrap onto more lines; a row is
    // never cut between two pages (the end of its name on the page of its document).
    for (int i = 1; i <= rows; ++i) {
        QList<int> found;
        for (int p = 0; p < pages.size(); ++p) {
            const QString document = QStringLiteral("%1/B").arg(1000 + i);
            const qsizetype at = pages.at(p).indexOf(document);
            if (at >= 0)
                found << p;
            if (at >= 0 &&
                pages.at(p).mid(at).join(u' ').contains(QStringLiteral("Savio n. %1 ").arg(i)))
                found << p;
        }
        QCOMPARE(found, (QList<int>{found.value(0), found.value(0)}));
    }
    QVERIFY(prompter.shown().isEmpty());
}

void TestPrintRun::stoppedPrintLeavesNothing()
{
    test::ScriptedPrompter prompter;
    QTemporaryDir out;
    const QString path = out.filePath(QStringLiteral("fermata.pdf"));
    QList<int> told;
    int pages = 0;
    const QList<QStringList> printed =
        printedWords(rowsData(160, false), true, path, [&](int page, int of) {
            told << page;
            pages = of;
            return page < 2;
        });
    QVERIFY(printed.isEmpty());
    QCOMPARE(told, (QList<int>{1, 2}));
    QVERIFY(pages > 2);
    QVERIFY(!QFile::exists(path));
    QVERIFY(prompter.shown().isEmpty());
}

QTEST_MAIN(TestPrintRun)
#include "tst_printrun.moc"
