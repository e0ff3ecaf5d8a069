#include "faultyrecordmanager.h"
#include "rowlistfixture.h"
#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "distinta/distintestore.h"
#include "distinta/programvalues.h"
#include "editor/rowlist/rowlistmodel.h"
#include "editor/rowlist/rowlistproxy.h"
#include "editor/rowlist/rowlistview.h"
#include "editor/window/distintaeditor.h"
#include "lists/usersettings.h"
#include "startup/errortrap.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace pg;
using namespace pg::editor;
using archives::ErpRecord;
using distinta::Riga;
using pg::test::TestInstallation;
using namespace pg::test::rowlist;

namespace {

const QString TwoLines = QStringLiteral(
    "La scadenza è già stata inserita in un'altra distinta, per cui non è possibile modificare "
    "ulteriormente l'importo residuo.\r\nPoichè la contabilizzazione deve essere fatta "
    "manualmente, verificare che l'importo residuo proposto sia corretto ed eventualmente "
    "effettuare la registrazione di pagamento in Prima Nota.");

} // namespace

class TestRowList : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void formats_data();
    void formats();
    void modelPassesTheTester();
    void columnsFollowTheSettings();
    void columnLayoutRoundTrip();
    void accountsAreReadOncePerAccount();
    void sorting();
    void residualAmountLimits();
    void clickRules_data();
    void clickRules();
    void editingInTheView();
    void removingSelectedRowsAndTotals();
    void zoomCommandsFollowTheList();

private:
    std::unique_ptr<TestInstallation> m_inst;
};

void TestRowList::initTestCase()
{
    // One installation for the whole test: the accounts, and a due item in each distinta state
    // (link 100 + state; no due item has link 199).
    m_inst = std::make_unique<TestInstallation>(false);
    QVERIFY(m_inst->isValid());
    QList<ErpRecord> records = accounts();
    for (const QString &state :
         {QStringLiteral("0"), QStringLiteral("3"), QStringLiteral("4"), QStringLiteral("5")})
        records << dueItemInState(100 + state.toInt(), state);
    QVERIFY(m_inst->put(records));
}

void TestRowList::cleanupTestCase()
{
    m_inst.reset();
}

void TestRowList::init()
{
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    ErrorTrap::instance().resetForTest();
    distinta::programValues() = distinta::ProgramValues();
}

void TestRowList::cleanup()
{
    QLocale::setDefault(QLocale::c());
}

void TestRowList::formats_data()
{
    QTest::addColumn<QString>("assignments");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("shown");
    auto row = [](const char *name, const char *assignments, const char *field, const char *shown) {
        QTest::newRow(name) << QString::fromLatin1(assignments) << QString::fromLatin1(field)
                            << QString::fromLatin1(shown);
    };
    // Fewer decimals for a rate as it grows.
    row("rate below 9999", "val_cambio=1936.27", "val_cambio", "1.936,270000");
    row("rate 9999", "val_cambio=9999", "val_cambio", "9.999,00000");
    row("rate 99999", "val_cambio=99999", "val_cambio", "99.999,0000");
    row("rate 999999", "val_cambio=999999", "val_cambio", "999.999,00");
    row("number and series", "des_num_doc=123;des_serie_doc=A", "des_num_doc", "   123/A");
    row("blank series", "des_num_doc= 42 ;des_serie_doc= ", "des_num_doc", "    42");
    row("long number", "des_num_doc=1234567", "des_num_doc", "234567");
    row("due date", "dat_data_scad=20261130", "dat_data_scad", "30/11/2026");
    row("no document date", "dat_data_doc=        ", "dat_data_doc", "");
    row("amount", "val_imp_residuo_val=1234567.891", "val_imp_residuo_val", "1.234.567,89");
    row("amount of nothing", "val_imp_pag_val=0", "val_imp_pag_val", "0,00");
    row("amount missing", "val_imp_indist_eur=null", "val_imp_indist_eur", "");
    row("payment type", "cod_tipo_pag=1", "cod_tipo_pag", "Ricevuta bancaria");
    row("unknown payment type", "cod_tipo_pag=X", "cod_tipo_pag", "");
    row("account name", "", "ragsoc", "Ferramenta Rossi Srl");
    row("account VAT number", "", "Piva", "01234567890");
    row("private customer", "cod_clifor=100002", "Piva", "BNCMRA70A01F205X");
    row("unknown account", "cod_clifor=999999", "ragsoc", "");
    row("stored text", "des_num_rata=02", "des_num_rata", "02");
}

void TestRowList::formats()
{
    QFETCH(QString, assignments);
    QFETCH(QString, field);
    QFETCH(QString, shown);
    distinta::Distinta d = distintaOf({row(1, assignments)});
    RowListModel model;
    model.setSession(&m_inst->erp());
    model.LV_InizializzaLista(configuredColumns(allColumns()));
    model.setDistinta(&d);
    const int column = model.columnOfField(field);
    QVERIFY(column > 0);
    QCOMPARE(model.index(0, column).data().toString(), shown);
    const Qt::Alignment alignment =
        model.index(0, column).data(Qt::TextAlignmentRole).value<Qt::Alignment>();
    QCOMPARE(alignment.testFlag(Qt::AlignRight),
             model.column(column).alignment == ListColumn::Alignment::Right);
}

void TestRowList::modelPassesTheTester()
{
    test::ScriptedPrompter prompter;
    distinta::Distinta d = distintaOf({row(1), row(2, QStringLiteral("flg_ind_dist=P")), row(3)});
    RowListModel model;
    RowListProxy proxy;
    proxy.setSourceModel(&model);
    QAbstractItemModelTester modelTester(&model,
                                         QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester proxyTester(&proxy,
                                         QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setSession(&m_inst->erp());
    model.LV_InizializzaLista(configuredColumns(UserSettings()));
    model.setDistinta(&d);
    QCOMPARE(model.rowCount(), 3);
    // A partial payment stands out, with a tooltip; the others do not.
    QVERIFY(model.index(1, 3).data(Qt::BackgroundRole).isValid());
    QCOMPARE(model.index(1, 3).data(Qt::ToolTipRole).toString(), RowListModel::PartialToolTip);
    QVERIFY(!model.index(0, 3).data(Qt::BackgroundRole).isValid());

    proxy.sort(model.columnOfField(QStringLiteral("des_num_doc")), Qt::DescendingOrder);
    d.righe.append(row(4));
    model.LV_RefreshLista();
    QCOMPARE(proxy.keyAt(0), QStringLiteral("P") + link(4));
    QVERIFY(model.setData(model.index(2, model.columnOfField(QStringLiteral("des_scadenza"))),
                          QStringLiteral("Saldo")));
    QVERIFY(!model.setData(model.index(2, model.columnOfField(QStringLiteral("cod_clifor"))),
                           QStringLiteral("999999")));
}

void TestRowList::columnsFollowTheSettings()
{
    distinta::Distinta d = distintaOf({row(1)});
    RowListView view;
    view.setSession(&m_inst->erp());
    view.setDistinta(&d);
    UserSettings settings;
    settings.fontName = QStringLiteral("DejaVu Sans Mono");
    settings.fontSize = 11;
    settings.columns.insert(QStringLiteral("Codice"), false);
    settings.columns.insert(QStringLiteral("P.Iva"), true);
    view.LV_InizializzaLista(settings);

    QStringList expected;
    for (const ListColumn &c : LV_ConfigLista())
        if (c.header == u"P.Iva" || (c.visible && c.header != u"Codice"))
            expected << c.header;
    QStringList headers;
    const RowListModel &model = *view.rowModel();
    for (int c = 1; c < model.columnCount(); ++c)
        headers << model.headerData(c, Qt::Horizontal).toString();
    QCOMPARE(headers, expected);
    QVERIFY(view.isColumnHidden(0));
    QCOMPARE(view.font().pointSize(), 11);
    QCOMPARE(view.font().family(), QStringLiteral("DejaVu Sans Mono"));
    // Fitted to their contents, never narrower than the table's own width.
    const int name = model.columnOfField(QStringLiteral("ragsoc"));
    QVERIFY(view.columnWidth(name) >=
            view.fontMetrics().horizontalAdvance(QStringLiteral("Ferramenta Rossi Srl")));
    QVERIFY(view.columnWidth(model.columnOfField(QStringLiteral("dat_data_doc"))) >=
            twipsToPixels(1250));
}

void TestRowList::columnLayoutRoundTrip()
{
    distinta::Distinta d = distintaOf({row(1), row(2)});
    UserSettings settings;
    RowListView view;
    view.setSession(&m_inst->erp());
    view.LV_InizializzaLista(settings);
    view.setDistinta(&d);
    // The clerk drags "Ragione Sociale" to the front and widens "Codice".
    QHeaderView *header = view.horizontalHeader();
    const RowListModel &model = *view.rowModel();
    const int name = model.columnOfField(QStringLiteral("ragsoc"));
    const int code = model.columnOfField(QStringLiteral("cod_clifor"));
    header->moveSection(header->visualIndex(name), 1);
    view.setColumnWidth(code, 300);
    settings.columnLayout = view.columnLayout();
    QVERIFY(settings.columnLayout.startsWith(QStringLiteral("ragsoc=")));
    QVERIFY(settings.columnLayout.contains(QStringLiteral("cod_clifor=300")));

    // The next start's list comes back so, refilled as often as it may be.
    RowListView again;
    again.setSession(&m_inst->erp());
    again.LV_InizializzaLista(settings);
    again.setDistinta(&d);
    again.LV_RefreshLista();
    QCOMPARE(again.columnLayout(), settings.columnLayout);
    // A column the list no longer shows is passed over; the others keep the saved order.
    settings.columns.insert(QStringLiteral("Ragione Sociale"), false);
    again.LV_InizializzaLista(settings);
    QVERIFY(again.columnLayout().startsWith(QStringLiteral("des_num_doc=")));
}

void TestRowList::accountsAreReadOncePerAccount()
{
    test::FaultyRecordManager counting(m_inst->store());
    archives::ErpSession erp(counting, TestInstallation::Handle);
    QList<Riga> rows;
    const QString codes[] = {QStringLiteral("400001"), QStringLiteral("100002"),
                             QStringLiteral("400003")};
    for (int n = 1; n <= 300; ++n)
        rows << row(n, QStringLiteral("cod_clifor=") + codes[n % 3]);
    distinta::Distinta d = distintaOf(rows);
    RowListModel model;
    model.setSession(&erp);
    model.LV_InizializzaLista(configuredColumns(allColumns()));
    model.setDistinta(&d);
    model.LV_RefreshLista();
    QStringList names;
    for (int r = 0; r < model.rowCount(); ++r)
        for (int c = 0; c < model.columnCount(); ++c)
            names << model.index(r, c).data().toString();
    QCOMPARE(counting.equalReads(), 3);
    QCOMPARE(model.index(1, model.columnOfField(QStringLiteral("ragsoc"))).data().toString(),
             QStringLiteral("Verdi Spa"));
}

void TestRowList::sorting()
{
    distinta::Distinta d = distintaOf(
        {row(1, QStringLiteral("dat_data_scad=20270105;des_num_doc=10")),
         row(2, QStringLiteral("dat_data_scad=20261130;des_num_doc=9")),
         row(3, QStringLiteral("dat_data_scad=20261201;des_num_doc=120;des_serie_doc=A")),
         row(4, QStringLiteral("dat_data_scad=20261102;des_num_doc=120")),
         row(5, QStringLiteral("dat_data_scad=20251231;des_num_doc=AB12"))});
    RowListView view;
    view.setSession(&m_inst->erp());
    view.LV_InizializzaLista(UserSettings());
    view.setDistinta(&d);
    auto order = [&] {
        QString out;
        for (int r = 0; r < view.proxy()->rowCount(); ++r)
            out += view.proxy()->keyAt(r).right(1);
        return out;
    };
    QCOMPARE(order(), QStringLiteral("12345")); // the distinta's own order until a column is chosen

    const int due = view.rowModel()->columnOfField(QStringLiteral("dat_data_scad"));
    view.horizontalHeader()->setSortIndicator(due, Qt::AscendingOrder);
    QCOMPARE(order(), QStringLiteral("54231"));
    view.horizontalHeader()->setSortIndicator(due, Qt::DescendingOrder);
    QCOMPARE(order(), QStringLiteral("13245"));

    view.LV_ShowHeaderIcon(view.rowModel()->columnOfField(QStringLiteral("des_num_doc")),
                           Qt::AscendingOrder);
    QCOMPARE(order(), QStringLiteral("21435"));
    // The texts shown keep their display form.
    QCOMPARE(view.model()->index(2, due).data().toString(), QStringLiteral("02/11/2026"));

    // The selected lines' keys, and the current one, follow the order shown.
    QVERIFY(view.selectedRowKeys().isEmpty());
    view.lvwSelectRow(true);
    QStringList shown;
    for (const int n : {2, 1, 4, 3, 5})
        shown << QStringLiteral("P") + link(n);
    QCOMPARE(view.selectedRowKeys(), shown);
    view.lvwSelectRow(false);
    QVERIFY(view.selectedRowKeys().isEmpty());
    view.setCurrentIndex(view.model()->index(2, 1));
    QCOMPARE(view.currentRowKey(), shown.at(2));
    QCOMPARE(view.listRowCount(), 5);
    view.setDistinta(nullptr);
    QCOMPARE(view.listRowCount(), 0);
    QVERIFY(view.currentRowKey().isEmpty());
}

void TestRowList::residualAmountLimits()
{
    test::ScriptedPrompter prompter;
    distinta::Distinta d = distintaOf({row(1, QStringLiteral("val_imp_pag_val=29.5")),
                                       row(2, QStringLiteral("val_cambio=2;val_imp_dapag_val=100")),
                                       row(3, QStringLiteral("flg_ind_dist=P")),
                                       row(4, QStringLiteral("val_imp_dapag_val=-40"))});
    d.righe.acceptChanges({1, 2, 3, 4});
    RowListModel model;
    model.setSession(&m_inst->erp());
    model.LV_InizializzaLista(configuredColumns(allColumns()));
    model.setDistinta(&d);
    QSignalSpy edited(&model, &RowListModel::rowEdited);
    const int residuo = model.columnOfField(QStringLiteral("val_imp_residuo_val"));

    // One cent above the amount to pay less the amount paid: refused, the difference quoted.
    QVERIFY(!model.setData(model.index(0, residuo), QStringLiteral("70,51")));
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral(
                                   "L'importo residuo non può superare la differenza tra importo "
                                   "da pagare e quello già pagato (70,5).")});
    QCOMPARE(d.righe.at(0).val_imp_residuo_val, 100.0);
    QVERIFY(!d.righe.hasChanges());
    QCOMPARE(edited.count(), 0);
    QCOMPARE(model.index(0, residuo).data().toString(), QStringLiteral("100,00"));

    // The difference itself is accepted and marks a partial payment.
    QVERIFY(model.setData(model.index(0, residuo), QStringLiteral("70,50")));
    const Riga &first = d.righe.at(0);
    QCOMPARE(first.val_imp_residuo_val, 70.5);
    QCOMPARE(first.val_imp_residuo_eur, 70.5);
    QCOMPARE(first.val_imp_indist_val, std::optional<double>(70.5));
    QCOMPARE(first.val_imp_indist_eur, std::optional<double>(70.5));
    QCOMPARE(first.flg_ind_dist, QStringLiteral("P"));
    QCOMPARE(edited.count(), 1);
    QVERIFY(d.righe.hasChanges());
    QCOMPARE(
        model.index(0, model.columnOfField(QStringLiteral("val_imp_indist_val"))).data().toString(),
        QStringLiteral("70,50"));

    // Euro amounts through the rate, a half going to the even cent.
    QVERIFY(model.setData(model.index(1, residuo), QStringLiteral("0,05")));
    QCOMPARE(d.righe.at(1).val_imp_residuo_eur, 0.02);
    QVERIFY(model.setData(model.index(1, residuo), QStringLiteral("0,07")));
    QCOMPARE(d.righe.at(1).val_imp_indist_eur, std::optional<double>(0.04));
    // The full amount to pay leaves the mark as it was: none, or "P".
    QVERIFY(model.setData(model.index(1, residuo), QStringLiteral("100")));
    QCOMPARE(d.righe.at(1).flg_ind_dist, QStringLiteral("P"));
    Riga &fresh = d.righe.edit(1);
    fresh.flg_ind_dist.clear();
    QVERIFY(model.setData(model.index(1, residuo), QStringLiteral("100")));
    QCOMPARE(d.righe.at(1).flg_ind_dist, QString());
    QVERIFY(model.setData(model.index(2, residuo), QStringLiteral("100,00")));
    QCOMPARE(d.righe.at(2).flg_ind_dist, QStringLiteral("P"));
    // Text that is not an amount, nothing to pay, or a transfer the wrong way: refused with a
    // message, nothing changed.
    const Riga before = d.righe.at(2);
    for (const char *typed : {"dieci", "1,000.5", "0", "-5"})
        QVERIFY2(!model.setData(model.index(2, residuo), QString::fromLatin1(typed)), typed);
    QCOMPARE(d.righe.at(2), before);
    QCOMPARE(prompter.texts().size(), 5);
    QVERIFY(prompter.texts().at(2).startsWith(QStringLiteral("Importo non valido")));
    QCOMPARE(prompter.texts().at(4), RowListRules::residuoNonPagabile(100));
    // A credit note keeps its negative amount.
    QVERIFY(!model.setData(model.index(3, residuo), QStringLiteral("40")));
    QCOMPARE(prompter.texts().size(), 6);
    QVERIFY(model.setData(model.index(3, residuo), QStringLiteral("-40")));
}

void TestRowList::clickRules_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("suiteState"); // "" when the suite has no such due item
    QTest::addColumn<bool>("newDistinta");
    QTest::addColumn<QString>("distintaState");
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("editable");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("status");

    const QString residuo = QStringLiteral("val_imp_residuo_val");
    const QString descr = QStringLiteral("des_scadenza");
    const QString partial =
        QStringLiteral("Il tipo di pagamento della scadenza non permette importi parziali.");
    const QString amountHint = RowListRules::ResiduoHint;
    const QString descrHint = RowListRules::DescrizioneHint;
    auto row = [](const char *name, const char *type, const char *suiteState, bool newDistinta,
                  const char *distintaState, const QString &field, bool editable,
                  const QString &message, const QString &status) {
        QTest::newRow(name) << QString::fromLatin1(type) << QString::fromLatin1(suiteState)
                            << newDistinta << QString::fromLatin1(distintaState) << field
                            << editable << message << status;
    };

    row("free credit transfer", "6", "0", false, "P", residuo, true, {}, amountHint);
    row("item unknown to the suite", "6", "", false, "P", residuo, true, {}, amountHint);
    row("ricevuta bancaria amount", "1", "0", false, "P", residuo, false, partial, {});
    row("ricevuta bancaria description", "1", "0", false, "P", descr, true, {}, descrHint);
    row("tratta amount", "0", "0", false, "P", residuo, false, partial, {});
    row("avviso amount", "2", "0", false, "P", residuo, false, partial, {});
    row("RID amount", "9", "0", false, "P", residuo, false, partial, {});
    row("paid wholly", "6", "5", false, "P", residuo, false,
        QStringLiteral("Scadenza pagata totalmente. Se si desidera pagarla parzialmente è "
                       "necessario cancellarla e reinserirla."),
        amountHint);
    row("paid wholly, description", "6", "5", false, "P", descr, true, {}, descrHint);
    row("in more distinte", "6", "4", false, "P", residuo, false, TwoLines, amountHint);
    row("partly elsewhere, new distinta", "6", "3", true, "P", residuo, false, TwoLines,
        amountHint);
    row("partly, saved distinta", "6", "3", false, "P", residuo, true, {}, amountHint);
    row("printed in final form", "6", "0", false, "D", descr, false,
        QStringLiteral("Distinta già stampata in definitivo. Impossibile modificare."), {});
    row("presented to the bank", "6", "0", false, "F", residuo, true, {}, amountHint);
    row("other column", "6", "0", false, "P", QStringLiteral("cod_clifor"), false, {}, {});
}

void TestRowList::clickRules()
{
    QFETCH(QString, type);
    QFETCH(QString, suiteState);
    QFETCH(bool, newDistinta);
    QFETCH(QString, distintaState);
    QFETCH(QString, field);
    QFETCH(bool, editable);
    QFETCH(QString, message);
    QFETCH(QString, status);

    test::ScriptedPrompter prompter;
    const int n = suiteState.isEmpty() ? 199 : 100 + suiteState.toInt();
    distinta::Distinta d =
        distintaOf({row(n, QStringLiteral("cod_tipo_pag=") + type)}, distintaState);
    d.nuova = newDistinta;
    RowListRules rules(&m_inst->erp());
    rules.setDistinta(&d);
    QString hint;
    QCOMPARE(rules.ItemClick(d.righe.at(0).key(), field, &hint), editable);
    QCOMPARE(prompter.texts(), message.isEmpty() ? QStringList() : QStringList{message});
    QCOMPARE(hint, status);
    if (field == u"des_scadenza" && editable) {
        QVERIFY(rules.changeComplete(d.righe.at(0).key(), field, QStringLiteral("Acconto marzo")));
        QCOMPARE(d.righe.at(0).des_scadenza, QStringLiteral("Acconto marzo"));
    }
}

void TestRowList::editingInTheView()
{
    test::ScriptedPrompter prompter;
    distinta::Distinta d = distintaOf({row(1, QStringLiteral("cod_tipo_pag=1")), row(2)});
    RowListView view;
    view.setSession(&m_inst->erp());
    view.LV_InizializzaLista(UserSettings());
    view.setDistinta(&d);
    view.resize(900, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QSignalSpy hints(&view, &RowListView::statusHint);
    QSignalSpy edited(&view, &RowListView::rowEdited);
    const int residuo = view.rowModel()->columnOfField(QStringLiteral("val_imp_residuo_val"));

    QTest::ignoreMessage(QtWarningMsg, "edit: editing failed");
    view.edit(view.model()->index(0, residuo));
    QVERIFY(!view.findChild<QLineEdit *>());
    QCOMPARE(prompter.texts(),
             QStringList{QStringLiteral(
                 "Il tipo di pagamento della scadenza non permette importi parziali.")});

    const QModelIndex cell = view.model()->index(1, residuo);
    view.setCurrentIndex(cell);
    QTest::keyClick(&view, Qt::Key_F2);
    QCOMPARE(hints.count(), 1);
    QCOMPARE(hints.first().first().toString(), RowListRules::ResiduoHint);
    auto *editor = view.findChild<QLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), QStringLiteral("100,00"));
    // The amount box takes a number with two decimals and nothing else.
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("8x7,255"));
    QCOMPARE(editor->text(), QStringLiteral("87,25"));
    QTest::keyClick(editor, Qt::Key_Return);
    // The editor commits on its next turn of the event loop, the model takes it on the one after.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(d.righe.at(1).val_imp_residuo_val, 87.25);
    QCOMPARE(cell.data().toString(), QStringLiteral("87,25"));
    QCOMPARE(edited.count(), 1);
    QCOMPARE(prompter.texts().size(), 1);
}

void TestRowList::removingSelectedRowsAndTotals()
{
    test::ScriptedPrompter prompter;
    TestInstallation withDatabase;
    QVERIFY(withDatabase.isValid());
    distinta::DistinteStore store(&withDatabase.erp());
    store.setPStrConn(withDatabase.connectionString());
    RowListView list;
    ListOnlyView view(list);
    DistintaEditor editor(store, &withDatabase.erp(), view);
    distinta::Distinta &d = editor.distinta();
    d = distintaOf({row(1, QStringLiteral("val_imp_indist_val=10.10")),
                    row(2, QStringLiteral("val_imp_indist_val=20.20")),
                    row(3, QStringLiteral("val_imp_indist_val=30.30")),
                    row(4, QStringLiteral("val_imp_indist_val=null"))});
    list.setSession(&withDatabase.erp());
    list.LV_InizializzaLista(UserSettings());
    list.setDistinta(&d);
    editor.CalcolaTotali();
    QCOMPARE(d.header().val_importo_totale, 60.6);
    QCOMPARE(d.header().num_numero_disp, 4);

    // Nothing selected: nothing removed.
    editor.cmdElRiga_Click();
    QCOMPARE(d.righe.size(), 4);
    QVERIFY(d.righeDaCanc.isEmpty());

    list.sortByColumn(list.rowModel()->columnOfField(QStringLiteral("des_num_doc")),
                      Qt::DescendingOrder);
    list.selectionModel()->select(list.model()->index(0, 1),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
    list.selectionModel()->select(list.model()->index(2, 1),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
    editor.cmdElRiga_Click();
    QCOMPARE(d.righe.size(), 2);
    QCOMPARE(d.righeDaCanc,
             (QStringList{QStringLiteral("P") + link(4), QStringLiteral("P") + link(2)}));
    QCOMPARE(list.listRowCount(), 2);
    QCOMPARE(d.header().val_importo_totale, 40.4);
    QCOMPARE(d.header().num_numero_disp, 2);
    QVERIFY(prompter.shown().isEmpty());
}

void TestRowList::zoomCommandsFollowTheList()
{
    test::ScriptedPrompter prompter;
    distinta::DistinteStore store(&m_inst->erp());
    RowListView list;
    ListOnlyView view(list);
    DistintaEditor editor(store, &m_inst->erp(), view);
    distinta::Distinta &d = editor.distinta();
    d = distintaOf({row(100), row(199)});
    d.editHeader().flg_tipo = QStringLiteral("F");
    list.setSession(&m_inst->erp());
    UserSettings withoutCode;
    withoutCode.columns.insert(QStringLiteral("Codice"), false);
    list.LV_InizializzaLista(withoutCode);
    list.setDistinta(&d);
    list.setCurrentIndex(list.model()->index(0, 1));

    // The account's zoom needs the "Codice" column in the list.
    editor.cmdZoomCli_Click();
    QCOMPARE(prompter.texts(),
             QStringList{QStringLiteral("Per questa funzione è necessario abilitare la "
                                        "visualizzazione  \r\ndella Colonna Codice Fornitore "
                                        "dalle Opzioni!")});
    QVERIFY(view.shown.isEmpty());
    list.LV_InizializzaLista(UserSettings());
    list.setCurrentIndex(list.model()->index(0, 1));
    editor.cmdZoomCli_Click();
    QCOMPARE(view.shown, QStringList{QStringLiteral("400001|Zoom Fornitore|Dati Fornitore")});

    // The due item's zoom reads the current line's due item from the suite.
    editor.cmdZoom_Click();
    QCOMPARE(view.shown.last(), link(100));
    list.setCurrentIndex(list.model()->index(1, 1));
    editor.cmdZoom_Click();
    QCOMPARE(prompter.lastText(), QStringLiteral("Scadenza non trovata. E' probabile che sia una "
                                                 "scadenza generata da 'UNIFICA SCADENZE'."));
    QCOMPARE(view.shown.size(), 2);
}

QTEST_MAIN(TestRowList)
#include "tst_rowlist.moc"
