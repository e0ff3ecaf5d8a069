#include "scriptedprompter.h"
#include "testinstallation.h"

#include "checks/frmchkbanca.h"
#include "checks/queryresultmodel.h"
#include "core/distintacode.h"
#include "distinta/distintestore.h"
#include "startup/errortrap.h"

#include <QAbstractItemModelTester>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

using namespace pg;
using namespace pg::distinta;
using pg::test::TestInstallation;

namespace {

Riga rowOf(const QString &link, const QString &account, const QString &bank, const QString &agency,
           const QString &accountNumber, double amount)
{
    Riga r;
    r.flg_flag_colpar = QStringLiteral("F");
    r.des_link_orvida = link;
    r.des_num_doc = QStringLiteral("7");
    r.des_serie_doc = QStringLiteral(" ");
    r.dat_data_doc = QStringLiteral("20231215");
    r.dat_data_scad = QStringLiteral("20240131");
    r.cod_tipo_pag = QStringLiteral("3");
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = account;
    r.cod_banca_cli = bank;
    r.cod_agenzia_cli = agency;
    r.des_num_cc = accountNumber;
    r.cod_valuta = QStringLiteral("EU");
    r.val_cambio = 1;
    r.val_imp_dapag_val = r.val_imp_dapag_eur = amount;
    r.val_imp_residuo_val = r.val_imp_residuo_eur = amount;
    r.val_imp_indist_val = r.val_imp_indist_eur = amount;
    return r;
}

} // namespace

class TestFrmChkBanca : public QObject
{
    Q_OBJECT

private slots:
    void listsAndPrintsTheIncompleteRows();
};

void TestFrmChkBanca::listsAndPrintsTheIncompleteRows()
{
    const QLocale previous;
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    ErrorTrap::instance().resetForTest();
    test::ScriptedPrompter prompter;
    TestInstallation inst;
    QVERIFY(inst.isValid());
    const QString blank5(5, u' ');
    const QList<Riga> rows{
        rowOf(QStringLiteral("0000000000001"), QStringLiteral("400001"), blank5, blank5,
              QString(20, u' '), 1234.5),
        rowOf(QStringLiteral("0000000000002"), QStringLiteral("400002"), QStringLiteral("03069"),
              QStringLiteral("09606"), QStringLiteral("12345"), 10),
        // Only the agency missing.
        rowOf(QStringLiteral("0000000000003"), QStringLiteral("400003"), QStringLiteral("03069"),
              blank5, QStringLiteral("55555"), 20),
    };
    QList<archives::ErpRecord> items;
    for (const Riga &r : rows)
        items << TestInstallation::dueItem(r.flg_flag_colpar, r.des_link_orvida, r.cod_tipo_pag,
                                           r.cod_clifor, r.val_imp_dapag_val);
    QVERIFY(inst.put(items));
    DistinteStore store(&inst.erp());
    store.setPStrConn(inst.connectionString());
    Distinta d;
    store.Nuovo(d);
    d.editHeader().cod_distinta = formatDistintaCode(9);
    d.editHeader().dat_data_creazione = QDate(2024, 1, 15);
    d.editHeader().cod_abi_banca = d.editHeader().cod_cab_banca = QStringLiteral("00001");
    for (Riga r : rows) {
        r.cod_distinta = d.header().cod_distinta;
        d.righe.append(r);
    }
    QVERIFY(store.Salva(d, false, false));

    checks::frmChkBanca dialog(store);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Controllo completezza dati bancari"));
    checks::QueryResultModel *model = dialog.model();
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model->rowCount(), 0);
    dialog.findChild<QPushButton *>(QStringLiteral("cmdEsegui"))->click();
    QCOMPARE(model->rowCount(), 2);
    QCOMPARE(model->columnCount(), 12);
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("cod_distinta"));
    QStringList accounts{model->index(0, 4).data().toString(),
                         model->index(1, 4).data().toString()};
    accounts.sort();
    QCOMPARE(accounts, (QStringList{QStringLiteral("400001"), QStringLiteral("400003")}));
    const int first = model->index(0, 4).data().toString() == u"400001" ? 0 : 1;
    QCOMPARE(model->index(first, 0).data().toString(), QStringLiteral("     9"));
    QCOMPARE(model->index(first, 1).data().toString(), QStringLiteral("15/01/2024"));
    QCOMPARE(model->index(first, 5).data().toString(), QStringLiteral("15/12/2023"));
    QCOMPARE(model->index(first, 7).data().toString(), QStringLiteral("1.234,50"));

    const std::unique_ptr<QTextDocument> document = dialog.document();
    const QString text = document->toPlainText();
    QVERIFY(text.startsWith(QStringLiteral("Elenco scadenze incomplete")));
    QVERIFY(text.contains(QStringLiteral("1.234,50")));
    QVERIFY(text.contains(QStringLiteral("400003")));

    QTemporaryDir dir;
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(dir.filePath(QStringLiteral("elenco.pdf")));
    dialog.print(&printer);
    QVERIFY(QFileInfo(dir.filePath(QStringLiteral("elenco.pdf"))).size() > 0);
    QVERIFY(prompter.shown().isEmpty());
    QLocale::setDefault(previous);
}

QTEST_MAIN(TestFrmChkBanca)
#include "tst_frmchkbanca.moc"
