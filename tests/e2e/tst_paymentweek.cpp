// A clerk's week with the desktop program, end to end: the real program's windows on a demo
// installation made by the command line, every message answered by a script. The functions
// run in order, each going on from where the one before left the program and its files.

#include "demorun.h"
#include "modaldriver.h"
#include "outputfiles.h"
#include "scriptedprompter.h"

#include "app/program.h"
#include "archives/store/archivenumbers.h"
#include "bankfile/frmcreafile.h"
#include "bankfile/frmcreafiler.h"
#include "core/cp1252.h"
#include "core/vbdate.h"
#include "editor/rowlist/rowlistmodel.h"
#include "editor/rowlist/rowlistproxy.h"
#include "editor/rowlist/rowlistview.h"
#include "editor/selection/selectiondialog.h"
#include "editor/window/distintaeditor.h"
#include "editor/window/mainwindow.h"
#include "lists/distintelistdialog.h"
#include "lists/distintelistmodel.h"
#include "lists/optionsdialog.h"
#include "lists/usersettings.h"
#include "printing/printercatalog.h"
#include "printing/stampadialog.h"
#include "ui/maskeddateedit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>
#include <QToolButton>

using namespace pg;
using editor::DistintaEditor;
using editor::SelectionDialog;
using editor::SelectionLogic;
using test::DemoRun;
using test::ModalDriver;
using namespace pg::test;

namespace {

// The company bank that presents the distinte (the demo's first company bank).
const QString Abi = QStringLiteral("03069");
const QString Cab = QStringLiteral("13201");

// The fields the program writes into a due item when it puts it in a distinta.
const QStringList DistintaFields{QStringLiteral("stato_dist"), QStringLiteral("mark_dist"),
                                 QStringLiteral("mark_pres"),  QStringLiteral("data_dist"),
                                 QStringLiteral("abi_pres"),   QStringLiteral("cab_pres")};

QStringList distintaMarks(const archives::ErpRecord &dueItem)
{
    QStringList marks;
    for (const QString &field : DistintaFields)
        marks << dueItem.trimmed(field);
    return marks;
}

// The cell of a row of the distinta (by its key) as the list shows it, sorted or not.
QModelIndex cellOf(const editor::RowListView &list, const QString &key, int column)
{
    const editor::RowListModel *model = list.rowModel();
    return list.proxy()->mapFromSource(model->index(model->rowOfKey(key), column));
}

// Receives what the program opens with the system's default application.
class OpenedFiles : public QObject
{
    Q_OBJECT

public:
    QStringList paths;

public slots:
    void open(const QUrl &url) { paths << url.toLocalFile(); }
};

} // namespace

class TestPaymentWeek : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void newDistintaMarksItsDueItems();
    void completenessCheckAfterTheArchiveIsFixed();
    void testPrintToPdf();
    void bankFilesWithoutAndWithGrouping();
    void finalPrintListAndDelete();
    void verificaFindsOnlyWhatEarlierProgramsLeft();
    void restartFindsEverythingAsLeft();

private:
    void startProgram();
    editor::MainWindow *window() const { return m_program->mainWindow(); }
    DistintaEditor *editor() const { return window()->editor(); }
    void click(const QString &command)
    {
        QTest::mouseClick(window()->command(command), Qt::LeftButton);
    }
    void clickGestione(int index)
    {
        QTest::mouseClick(window()->btnGestione(index), Qt::LeftButton);
    }
    void newDistinta(const QString &dueFrom, const QString &dueTo);
    void save();
    void print(bool final, const QString &pdf);
    QString bankFile(bool grouped);
    QStringList rowKeys() const;
    QString pdfPath(const QString &name) const { return m_demo->root() + u'/' + name; }

    std::unique_ptr<DemoRun> m_demo;
    QTemporaryDir m_runtime;
    QLocale m_locale;
    OpenedFiles m_opened;
    std::unique_ptr<app::Program> m_program;
    std::unique_ptr<test::ScriptedPrompter> m_prompter;

    // What the week left, to be found again after the restart.
    struct Left
    {
        QString state;
        QStringList rows;
        QString total;
    };
    QMap<QString, Left> m_left;
    QString m_firstItem;
    QStringList m_firstItemMarks;
};

void TestPaymentWeek::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        QFAIL("pdftotext (poppler-utils) is needed: run script/bootstrap");
    m_locale = QLocale();
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    dates::setToday(DemoRun::today());
    QVERIFY(m_runtime.isValid());
    QFile::setPermissions(m_runtime.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", m_runtime.path().toLocal8Bit());
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &m_opened, "open");

    m_demo = std::make_unique<DemoRun>();
    QVERIFY(m_demo->isValid());
    UserSettings::useStoreFile(m_demo->root() + QStringLiteral("/settings.ini"));
    m_prompter = std::make_unique<test::ScriptedPrompter>();
    startProgram();
}

void TestPaymentWeek::cleanupTestCase()
{
    if (m_program && window())
        window()->close();
    m_program.reset();
    m_prompter.reset();
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    UserSettings::useStoreFile({});
    QLocale::setDefault(m_locale);
}

void TestPaymentWeek::startProgram()
{
    m_program = std::make_unique<app::Program>();
    QVERIFY(m_program->start({QStringLiteral("Pagamenti")}));
    m_program->show();
    QVERIFY(QTest::qWaitForWindowExposed(window()));
    // The printer in use is shown once the window has been drawn.
    QTRY_VERIFY(!window()->lblPrinter()->text().isEmpty());
    QVERIFY(!editor::savedPrinterPending());
}

QStringList TestPaymentWeek::rowKeys() const
{
    QStringList keys;
    const auto &rows = editor()->distinta().righe;
    for (int i = 0; i < rows.size(); ++i)
        keys << rows.at(i).key();
    return keys;
}

// "Nuova distinta": the selection of the bank transfers due in a period, presented by the
// company bank, on the fixed creation and value dates.
void TestPaymentWeek::newDistinta(const QString &dueFrom, const QString &dueTo)
{
    ModalDriver::whenShown<SelectionDialog>([&](SelectionDialog *dialog) {
        // The codes typed, as the clerk types them.
        const QList<std::pair<SelectionLogic::Box, QString>> codes{{SelectionLogic::Banca, Abi},
                                                                   {SelectionLogic::Agenzia, Cab}};
        for (const auto &[box, code] : codes) {
            QLineEdit *edit = dialog->box(box);
            edit->setFocus();
            edit->selectAll();
            QTest::keyClicks(edit, code);
        }
        dialog->box(SelectionLogic::DataScadDa)->setText(dueFrom);
        dialog->box(SelectionLogic::DataScadA)->setText(dueTo);
        dialog->box(SelectionLogic::DataCreazione)->setText(QStringLiteral("23/11/2026"));
        dialog->box(SelectionLogic::DataValuta)->setText(QStringLiteral("25/11/2026"));
        dialog->cmbTipo()->setCurrentIndex(6); // "Bonifico"
        QCOMPARE(dialog->cmbTipo()->currentText(), QStringLiteral("Bonifico"));
        dialog->cmdGenera()->click();
        QVERIFY(!dialog->isVisible());
    });
    clickGestione(DistintaEditor::Nuova);
    QVERIFY(!QTest::currentTestFailed());
    QVERIFY(editor()->hasDistinta());
    QVERIFY(!editor()->distinta().righe.isEmpty());
    QCOMPARE(window()->txtTestata(DistintaEditor::AbiBanca)->text(), Abi);
    QCOMPARE(window()->mskData()->maskedText(), QStringLiteral("23/11/2026"));
    QCOMPARE(window()->lvwScadenze()->listRowCount(), editor()->distinta().righe.size());
}

// The save button, and the question it asks.
void TestPaymentWeek::save()
{
    m_prompter->script({Answer::Yes});
    clickGestione(DistintaEditor::Salva);
    QCOMPARE(m_prompter->lastText(), DistintaEditor::SavePrompt);
    QCOMPARE(m_prompter->remainingAnswers(), 0);
    QVERIFY(!editor()->hasUnsavedChanges());
    QVERIFY(editor()->existsInDatabase());
}

// "Stampa": test or final print, printed from the preview into a PDF file.
void TestPaymentWeek::print(bool final, const QString &pdf)
{
    ModalDriver::whenShown<printing::StampaDialog>([=](printing::StampaDialog *dialog) {
        dialog->cmbTipo()->setCurrentText(final ? QStringLiteral("Definitiva")
                                                : QStringLiteral("Prova"));
        dialog->chkTotali()->setChecked(true);
        QVERIFY(!dialog->chkAutoPrint()->isChecked());
        ModalDriver::whenShown<QPrintPreviewDialog>([=](QPrintPreviewDialog *preview) {
            QPrinter *printer = preview->printer();
            printer->setOutputFormat(QPrinter::PdfFormat);
            printer->setOutputFileName(pdf);
            auto *widget = preview->findChild<QPrintPreviewWidget *>();
            QVERIFY(widget);
            widget->print();
            preview->accept();
        });
        dialog->cmdStampa()->click();
        // The document went out: the dialog closed.
        QVERIFY(!dialog->isVisible());
    });
    click(QStringLiteral("cmdStSolle"));
}

// "File Bonifici": the flat CBI file in the proposed place; returns its path.
QString TestPaymentWeek::bankFile(bool grouped)
{
    QString path;
    ModalDriver::whenShown<bankfile::frmCreaFile>([&](bankfile::frmCreaFile *dialog) {
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Creazione File Bonifici"));
        QCOMPARE(qobject_cast<bankfile::frmCreaFileR *>(dialog) != nullptr, grouped);
        if (auto *format = dialog->findChild<QComboBox *>(QStringLiteral("cboFormato"))) {
            format->setCurrentIndex(int(BankFileFormat::CbiFlat));
            emit format->activated(int(BankFileFormat::CbiFlat));
        }
        path = dialog->findChild<QLineEdit *>(QStringLiteral("txtFileName"))->text();
        dialog->findChild<QPushButton *>(QStringLiteral("cmdConferma"))->click();
    });
    click(QStringLiteral("cmdCreaFile"));
    return path;
}

void TestPaymentWeek::newDistintaMarksItsDueItems()
{
    newDistinta(QStringLiteral("01/11/2026"), QStringLiteral("30/11/2026"));
    const auto &rows = editor()->distinta().righe;
    for (int i = 0; i < rows.size(); ++i) {
        const distinta::Riga &r = rows.at(i);
        QCOMPARE(r.cod_tipo_pag.trimmed(), QStringLiteral("6"));
        QVERIFY2(r.dat_data_scad >= u"20261101" && r.dat_data_scad <= u"20261130",
                 qPrintable(r.dat_data_scad));
        QCOMPARE(distintaMarks(m_demo->dueItem(r.key())).mid(0, 2),
                 (QStringList{QStringLiteral("0"), QStringLiteral("0")}));
    }

    // The largest payment is lowered by 1.000,00 in its cell: a partial payment.
    editor::RowListView *list = window()->lvwScadenze();
    int largest = 0;
    for (int i = 1; i < rows.size(); ++i)
        if (rows.at(i).val_imp_residuo_val > rows.at(largest).val_imp_residuo_val)
            largest = i;
    const QString lowered = rows.at(largest).key();
    const double before = rows.at(largest).val_imp_residuo_val;
    const double totalBefore = editor()->distinta().header().val_importo_totale;
    const int residuo = list->rowModel()->columnOfField(QStringLiteral("val_imp_residuo_val"));
    list->setCurrentIndex(cellOf(*list, lowered, residuo));
    QTest::keyClick(list, Qt::Key_F2);
    auto *cell = list->findChild<QLineEdit *>();
    QVERIFY(cell);
    cell->selectAll();
    QTest::keyClicks(cell,
                     QLocale().toString(before - 1000, 'f', 2).remove(QLocale().groupSeparator()));
    QTest::keyClick(cell, Qt::Key_Return);
    QTRY_COMPARE(rows.at(rows.indexOfKey(lowered)).val_imp_residuo_val, before - 1000);
    QCOMPARE(rows.at(rows.indexOfKey(lowered)).flg_ind_dist, QStringLiteral("P"));
    QCOMPARE(editor()->distinta().header().val_importo_totale, totalBefore - 1000);
    QVERIFY(editor()->hasUnsavedChanges());

    // The rows of due items already paid in part are taken out.
    QStringList removed;
    list->clearSelection();
    for (const QString &key : rowKeys())
        if (key != lowered && m_demo->dueItem(key).number(QStringLiteral("imp_pag_val")) != 0) {
            removed << key;
            list->selectionModel()->select(cellOf(*list, key, 0),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    QVERIFY2(!removed.isEmpty(), "the demo has a partly paid transfer due in November");
    const int count = rows.size();
    click(QStringLiteral("cmdCancRiga"));
    QCOMPARE(rows.size(), count - removed.size());
    QCOMPARE(list->listRowCount(), rows.size());
    for (const QString &key : removed)
        QVERIFY(!rowKeys().contains(key));

    save();
    QCOMPARE(window()->txtTestata(DistintaEditor::CodDistinta)->text(), QStringLiteral("1"));
    QCOMPARE(window()->txtdesStato()->text(), QStringLiteral("Prova"));

    // The suite's due items: in distinta ("5", or "3" when paid in part), marked, dated and
    // with the presenting bank; the one taken out is as free as before.
    for (const QString &key : rowKeys()) {
        const QStringList expected{key == lowered ? QStringLiteral("3") : QStringLiteral("5"),
                                   QStringLiteral("B"),
                                   QStringLiteral("B"),
                                   QStringLiteral("20261123"),
                                   Abi,
                                   Cab};
        QCOMPARE(distintaMarks(m_demo->dueItem(key)), expected);
    }
    for (const QString &key : removed)
        QCOMPARE(distintaMarks(m_demo->dueItem(key)).mid(0, 2),
                 (QStringList{QStringLiteral("0"), QStringLiteral("0")}));
    m_firstItem = rowKeys().first();
    m_firstItemMarks = distintaMarks(m_demo->dueItem(m_firstItem));
    QCOMPARE(m_prompter->unscripted(), 0);
}

void TestPaymentWeek::completenessCheckAfterTheArchiveIsFixed()
{
    m_prompter->clear();
    click(QStringLiteral("chkDatiBanca"));
    // Errors found: the report is opened for the clerk.
    QCOMPARE(m_opened.paths.size(), 1);
    const QString report = m_opened.paths.first();
    QCOMPARE(QFileInfo(report).canonicalFilePath(),
             QFileInfo(m_demo->programDir() + QStringLiteral("controllo.txt")).canonicalFilePath());
    const QStringList errors = reportErrors(report);
    QCOMPARE(errors.value(0), QStringLiteral("Distinta N.     1 del 23/11/2026"));
    // Only bank data are missing (the paid item was taken out): the accounts to complete.
    QStringList incomplete;
    for (const QString &line : errors.mid(1)) {
        QVERIFY2(line.endsWith(u'1') || line.endsWith(u'2'), qPrintable(line));
        if (!incomplete.contains(line.left(6)))
            incomplete << line.left(6);
    }
    QVERIFY2(!incomplete.isEmpty(), "the demo has a supplier without bank data");
    // A bank file is refused while rows lack bank data.
    click(QStringLiteral("cmdCreaFile"));
    QVERIFY(m_prompter->lastText().startsWith(QStringLiteral("Si sono riscontrate anomalie")));

    // The accounts' bank data entered in the suite, and the check run again.
    QList<archives::ErpRecord> fixes;
    for (const QString &account : incomplete) {
        archives::ErpRecord bank(archives::ClientiFornitori);
        bank.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
        bank.setText(QStringLiteral("cod_clifor"), account);
        bank.setText(QStringLiteral("banca"), QStringLiteral("05034"));
        bank.setText(QStringLiteral("agenzia"), QStringLiteral("51020"));
        bank.setText(QStringLiteral("conto"), QStringLiteral("000012345678"));
        bank.setText(QStringLiteral("iban_paese"), QStringLiteral("IT04"));
        bank.setText(QStringLiteral("iban_resto"), QStringLiteral("K0503451020000012345678"));
        fixes << bank;
    }
    QVERIFY(m_demo->put(fixes));
    m_prompter->clear();
    click(QStringLiteral("chkDatiBanca"));
    QCOMPARE(m_prompter->texts(),
             QStringList{QStringLiteral("Non sono stati trovati errori nella distinta corrente.")});
    QCOMPARE(m_opened.paths.size(), 1);
    QCOMPARE(reportErrors(report).size(), 1);
    // The rows took the bank data from the suite, and are saved with them.
    const auto &rows = editor()->distinta().righe;
    for (int i = 0; i < rows.size(); ++i)
        if (incomplete.contains(rows.at(i).cod_clifor)) {
            QCOMPARE(rows.at(i).cod_banca_cli, QStringLiteral("05034"));
            QCOMPARE(rows.at(i).des_num_cc.trimmed(), QStringLiteral("000012345678"));
        }
    QVERIFY(!editor()->hasUnsavedChanges());
}

void TestPaymentWeek::testPrintToPdf()
{
    const QString pdf = pdfPath(QStringLiteral("prova.pdf"));
    print(false, pdf);
    const QStringList text = pdfText(pdf);
    QVERIFY2(!text.isEmpty(), "the preview printed a readable PDF");
    QVERIFY(text.join(u'\n').contains(QStringLiteral("STAMPA DI PROVA")));
    // One line per row: every document number is there.
    const auto &rows = editor()->distinta().righe;
    for (int i = 0; i < rows.size(); ++i)
        QVERIFY2(text.join(u'\n').contains(rows.at(i).des_num_doc.trimmed()),
                 qPrintable(rows.at(i).des_num_doc));
    // A test print leaves the distinta open.
    QCOMPARE(editor()->state(), QStringLiteral("P"));
    QVERIFY(editor()->buttonEnabled(DistintaEditor::Elimina));
}

void TestPaymentWeek::bankFilesWithoutAndWithGrouping()
{
    // Without grouping: one disposition per row, every due item marked again by the file.
    m_prompter->clear();
    const QString first = bankFile(false);
    QCOMPARE(first, m_demo->orvidaDir() + QStringLiteral("D_STM/CBI_1.txt"));
    QVERIFY(m_prompter->lastText().startsWith(QStringLiteral("Elaborazione Completata\r\n")));
    QStringList lines = bankFileLines(first);
    const int rows = editor()->distinta().righe.size();
    QCOMPARE(lines.value(0).mid(1, 2), QStringLiteral("PC"));
    QCOMPARE(lines.last().mid(1, 2), QStringLiteral("EF"));
    QCOMPARE(countRecords(lines, QStringLiteral("10")), rows);
    QCOMPARE(countRecords(lines, QStringLiteral("70")), rows);
    QCOMPARE(editor()->state(), QStringLiteral("F"));
    QCOMPARE(window()->txtdesStato()->text(), QStringLiteral("Definitiva"));
    QVERIFY(!window()->btnGestione(DistintaEditor::Elimina)->isEnabled());
    QCOMPARE(distintaMarks(m_demo->dueItem(m_firstItem)), m_firstItemMarks);
    m_left.insert(QStringLiteral("1"),
                  {QStringLiteral("F"), rowKeys(),
                   window()->txtTestata(DistintaEditor::ImportoTotale)->text()});

    // "Opzioni": payments grouped per supplier and bank from now on.
    ModalDriver::whenShown<lists::OptionsDialog>([](lists::OptionsDialog *dialog) {
        QVERIFY(!dialog->chkRaggruppa()->isChecked());
        dialog->chkRaggruppa()->setChecked(true);
        dialog->confirm();
    });
    click(QStringLiteral("cmdOptions"));
    QCOMPARE(int(currentSettings().raggruppa), 1);

    // The December transfers: checked first (the rows take the suppliers' bank data), then
    // one disposition per supplier and bank.
    newDistinta(QStringLiteral("01/12/2026"), QStringLiteral("31/12/2026"));
    save();
    QCOMPARE(window()->txtTestata(DistintaEditor::CodDistinta)->text(), QStringLiteral("2"));
    click(QStringLiteral("chkDatiBanca"));
    const auto &d = editor()->distinta();
    QVERIFY(d.righeRagg.size() < d.righe.size());
    m_prompter->clear();
    const QString second = bankFile(true);
    QVERIFY(m_prompter->lastText().startsWith(QStringLiteral("Elaborazione Completata\r\n")));
    lines = bankFileLines(second);
    QCOMPARE(countRecords(lines, QStringLiteral("10")), d.righeRagg.size());
    QCOMPARE(countRecords(lines, QStringLiteral("EF")), 1);
    QCOMPARE(editor()->state(), QStringLiteral("F"));
    QCOMPARE(m_prompter->unscripted(), 0);
}

void TestPaymentWeek::finalPrintListAndDelete()
{
    // The final print locks the distinta.
    print(true, pdfPath(QStringLiteral("definitiva.pdf")));
    QVERIFY(!pdfText(pdfPath(QStringLiteral("definitiva.pdf")))
                 .join(u'\n')
                 .contains(QStringLiteral("STAMPA DI PROVA")));
    QCOMPARE(editor()->state(), QStringLiteral("D"));
    QCOMPARE(editor()->mask(), QStringLiteral("YYNNYY"));
    QVERIFY(!window()->btnGestione(DistintaEditor::Salva)->isEnabled());
    m_left.insert(QStringLiteral("2"),
                  {QStringLiteral("D"), rowKeys(),
                   window()->txtTestata(DistintaEditor::ImportoTotale)->text()});

    // "Apri distinta": the list holds both; the first is opened again.
    ModalDriver::whenShown<lists::DistinteListDialog>([](lists::DistinteListDialog *list) {
        QCOMPARE(list->model()->rowCount(), 2);
        for (int r = 0; r < list->model()->rowCount(); ++r)
            if (list->model()->index(r, 0).data().toString().trimmed() == u"1")
                list->lvwLista()->selectRow(r);
        QTest::keyClick(list, Qt::Key_Return);
    });
    clickGestione(DistintaEditor::Apri);
    QCOMPARE(window()->txtTestata(DistintaEditor::CodDistinta)->text(), QStringLiteral("1"));
    QCOMPARE(rowKeys(), m_left.value(QStringLiteral("1")).rows);
    QCOMPARE(window()->lvwScadenze()->listRowCount(),
             m_left.value(QStringLiteral("1")).rows.size());

    // A distinta of October's transfers, saved and then deleted: its due items are free again,
    // whatever state they were in before.
    newDistinta(QStringLiteral("01/10/2026"), QStringLiteral("31/10/2026"));
    const QStringList october = rowKeys();
    save();
    QCOMPARE(window()->txtTestata(DistintaEditor::CodDistinta)->text(), QStringLiteral("3"));
    for (const QString &key : october)
        QCOMPARE(distintaMarks(m_demo->dueItem(key)).value(1), QStringLiteral("B"));
    m_prompter->clear();
    m_prompter->script({Answer::Yes});
    clickGestione(DistintaEditor::Elimina);
    QCOMPARE(m_prompter->texts(), QStringList{QStringLiteral("Elimina Distinta?")});
    QVERIFY(!editor()->hasDistinta());
    const QStringList free{QStringLiteral("0"), QStringLiteral("0"), {}, {}, {}, {}};
    for (const QString &key : october)
        QCOMPARE(distintaMarks(m_demo->dueItem(key)), free);
}

void TestPaymentWeek::verificaFindsOnlyWhatEarlierProgramsLeft()
{
    // The demo, as an installation of earlier programs, marks items in distinte it does not
    // have; the week's own distinte all agree with the suite.
    m_prompter->clear();
    m_opened.paths.clear();
    m_prompter->script({Answer::Yes});
    click(QStringLiteral("cmdVerifica"));
    QCOMPARE(m_opened.paths.size(), 1);
    QCOMPARE(QFileInfo(m_opened.paths.first()).canonicalFilePath(),
             QFileInfo(m_demo->programDir() + QStringLiteral("verifica.txt")).canonicalFilePath());
    QFile report(m_opened.paths.first());
    QVERIFY(report.open(QIODevice::ReadOnly));
    const QStringList lines = cp1252::decode(report.readAll()).split(QStringLiteral("\r\n"));
    QVERIFY(lines.size() > 5);
    for (const QString &line : lines.mid(3))
        QVERIFY2(line.isEmpty() || line.endsWith(QStringLiteral("ma non è in nessuna distinta "
                                                                "salvata.")),
                 qPrintable(line));
    QCOMPARE(m_prompter->shown().size(), 2);
    QVERIFY(m_prompter->texts().first().endsWith(QStringLiteral("come dicono le distinte?")));
    QVERIFY(m_prompter->lastText().startsWith(
        QStringLiteral("Scadenze corrette come dicono le distinte: ")));

    // Repaired, the suite and the distinte agree.
    m_prompter->clear();
    click(QStringLiteral("cmdVerifica"));
    QCOMPARE(m_opened.paths.size(), 1);
    QVERIFY(m_prompter->lastText().startsWith(
        QStringLiteral("Le scadenze di [orvida] corrispondono alle distinte salvate")));
}

void TestPaymentWeek::restartFindsEverythingAsLeft()
{
    QVERIFY(window()->close());
    m_program.reset();
    currentSettings() = UserSettings();
    m_prompter->clear();

    startProgram();
    QCOMPARE(int(currentSettings().raggruppa), 1);
    for (const QString &code : {QStringLiteral("1"), QStringLiteral("2")}) {
        clickGestione(DistintaEditor::Successiva);
        QCOMPARE(window()->txtTestata(DistintaEditor::CodDistinta)->text(), code);
        const Left &left = m_left[code];
        QCOMPARE(editor()->state(), left.state);
        QCOMPARE(rowKeys(), left.rows);
        QCOMPARE(window()->txtTestata(DistintaEditor::ImportoTotale)->text(), left.total);
        QVERIFY(!window()->btnGestione(DistintaEditor::Elimina)->isEnabled());
    }
    // The second is the last: the deleted one is gone.
    clickGestione(DistintaEditor::Successiva);
    QCOMPARE(window()->txtTestata(DistintaEditor::CodDistinta)->text(), QStringLiteral("2"));
    QVERIFY(m_prompter->texts().isEmpty());
    QCOMPARE(distintaMarks(m_demo->dueItem(m_firstItem)), m_firstItemMarks);
    for (const QString &name : {QStringLiteral("CBI_1.txt"), QStringLiteral("CBI_2.txt")})
        QVERIFY(QFile::exists(m_demo->orvidaDir() + QStringLiteral("D_STM/") + name));
    QVERIFY(window()->close());
}

QTEST_MAIN(TestPaymentWeek)
#include "tst_paymentweek.moc"
