#include "memoryrecordmanager.h"
#include "recordingview.h"
#include "scriptedprompter.h"
#include "testdatabase.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/distintacode.h"
#include "core/vbdate.h"
#include "distinta/distintestore.h"
#include "distinta/tablesql.h"
#include "editor/rowlist/rowlistrules.h"
#include "editor/selection/duitemloader.h"
#include "editor/window/distintaeditor.h"
#include "localdb/databaseconnection.h"
#include "localdb/localdatabase.h"
#include "localdb/shippedschema.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QDir>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::editor;
using distinta::Testata;
using E = DistintaEditor;
using pg::test::RecordingView;

class TestDistintaEditor : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void navigationAndMasks();
    void printedDistintaRefusesChanges();
    void presentedDistintaAsksBeforeRowChanges();
    void unsavedChangesQuestion();
    void dateBoxes_data();
    void dateBoxes();
    void closing();
    void newDistintaFromSelection();
    void companyBankBlock();
    void removedItemStaysWithItsDistinta();
    void savedDistintaIsNoLongerNew();
    void failedFinalSaveKeepsWhatIsSaved();

private:
    void addHeader(int number, const QString &state);
    // Saves a distinta header and opens it from the list.
    void openDistinta(int number, const QString &state);
    const localdb::DatabaseLocation &database() const { return m_database->location(); }
    // The company's bank 03069 01600, with its three records.
    void putCompanyBank();
    // A free bonifico of the account in the suite.
    void putDueItem(int n, const QString &account, double amount = 100);
    // "Nuova distinta" confirmed on the due items of one account.
    void newDistintaOf(const QString &account);
    archives::ErpRecord dueItem(int n);

    QTemporaryDir m_dir;
    std::unique_ptr<test::TestDatabase> m_database;
    std::unique_ptr<MemoryRecordManager> m_rm;
    std::unique_ptr<archives::ErpSession> m_erp;
    std::unique_ptr<distinta::DistinteStore> m_store;
    RecordingView m_view;
    std::unique_ptr<DistintaEditor> m_editor;
};

void TestDistintaEditor::init()
{
    QVERIFY(m_dir.isValid());
    QDir(m_dir.path()).removeRecursively();
    QDir().mkpath(m_dir.path() + QStringLiteral("/exe"));
    CompanyEnvironment env;
    env.CompanyArchiveDir = m_dir.path() + u'/';
    env.ProgramDir = m_dir.path() + QStringLiteral("/exe/");
    setCompanyEnvironment(env);
    QFile schema(env.ProgramDir + QStringLiteral("QXARTRAC.DAT"));
    QVERIFY(schema.open(QIODevice::WriteOnly));
    schema.write(shippedSchemaDescription());
    schema.close();
    m_database = std::make_unique<test::TestDatabase>(env.CompanyArchiveDir);
    QVERIFY(m_database->isValid());
    {
        test::ScriptedPrompter quiet;
        QVERIFY(localdb::CreateDatabase(database()));
    }
    ErrorTrap::instance().resetForTest();
    dates::setToday(QDate(2024, 3, 15));
    m_rm = std::make_unique<MemoryRecordManager>();
    m_erp = std::make_unique<archives::ErpSession>(*m_rm, 7);
    m_store = std::make_unique<distinta::DistinteStore>(m_erp.get());
    m_store->setPStrConn(database().connectionString());
    m_view = RecordingView();
    m_editor = std::make_unique<DistintaEditor>(*m_store, m_erp.get(), m_view);
    m_editor->SetBtnGestione(QStringLiteral("YYNNYY"));
}

void TestDistintaEditor::cleanup()
{
    m_editor.reset();
    m_store.reset();
    m_database.reset();
    dates::setToday(QDate());
}

void TestDistintaEditor::addHeader(int number, const QString &state)
{
    DatabaseConnection conn(database());
    QVERIFY(conn.isOpen());
    distinta::RecordSet<Testata> headers;
    Testata h;
    h.cod_distinta = formatDistintaCode(number);
    h.flg_tipo = QStringLiteral("F");
    h.flg_stato = state;
    h.dat_data_creazione = QDate(2024, 3, number);
    h.dat_data_valuta = QDate(2024, 3, number);
    h.cod_abi_banca = QStringLiteral("03069");
    h.cod_cab_banca = QStringLiteral("01600");
    headers.append(h);
    distinta::sql::writeChanges(conn.database(), Testata::table(), headers);
}

void TestDistintaEditor::openDistinta(int number, const QString &state)
{
    addHeader(number, state);
    m_view.chosen = formatDistintaCode(number);
    QVERIFY(m_editor->btnGestione_ClickED(E::Apri));
}

namespace {

QString link(int n)
{
    return QStringLiteral("2024%1").arg(n, 9, 10, QLatin1Char('0'));
}

} // namespace

void TestDistintaEditor::putCompanyBank()
{
    auto put = [&](const char *type, const QList<std::pair<const char *, const char *>> &fields) {
        archives::ErpRecord r(archives::TabelleAzienda, QString::fromLatin1(type));
        r.setText(QStringLiteral("codice"), QStringLiteral("0306901600"));
        for (const auto &[field, value] : fields)
            r.setText(QString::fromLatin1(field), QString::fromUtf8(value));
        m_rm->put(archives::TabelleAzienda, r.buffer());
    };
    put("BA1", {{"abi", "03069"},
                {"cab", "01600"},
                {"conto_ordinante", "000012345678"},
                {"des_banca", "Banca Intesa Forlì"}});
    put("BA2", {{"sia", "A1B2C"}});
    put("BA3", {{"riferimenti", "Fornitori marzo"}});
}

void TestDistintaEditor::putDueItem(int n, const QString &account, double amount)
{
    m_rm->put(archives::Scadenze,
              test::TestInstallation::dueItem(QStringLiteral("F"), link(n), QStringLiteral("6"),
                                              account, amount)
                  .buffer());
}

void TestDistintaEditor::newDistintaOf(const QString &account)
{
    m_view.selection = SelectionResult{QStringLiteral("03069"), QStringLiteral("01600"),
                                       QStringLiteral("10/03/2024"), QStringLiteral("10/03/2024")};
    m_view.adder = [this, account](distinta::Distinta &d) {
        SelectionValues values;
        values.codAnagraInizio = values.codAnagraFine = account;
        DueItemLoader(*m_erp, values, QStringLiteral("Vs.Fatt. NNNNNN"), DueItemCausali())
            .cmdGenera_Click(d);
    };
    QVERIFY(m_editor->btnGestione_ClickED(E::Nuova));
}

archives::ErpRecord TestDistintaEditor::dueItem(int n)
{
    archives::ErpRecord r(archives::Scadenze);
    r.setText(QStringLiteral("flag_colpar"), QStringLiteral("F"));
    r.setText(QStringLiteral("link"), link(n));
    m_erp->readEq(r, 2);
    return r;
}

void TestDistintaEditor::navigationAndMasks()
{
    test::ScriptedPrompter prompter;
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYNNYY"));

    // An empty database: only new and open stay.
    QVERIFY(m_editor->btnGestione_ClickED(E::Successiva));
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Database vuoto")});
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYNNNN"));
    QVERIFY(!m_view.aggiungi);

    addHeader(1, QStringLiteral("P"));
    addHeader(2, QStringLiteral("D"));
    addHeader(3, QStringLiteral("F"));
    prompter.clear();

    struct Step
    {
        int button;
        const char *code, *mask, *stato;
    };
    const Step steps[] = {
        {E::Successiva, "1", "YYNYYY", "Prova"},
        {E::Successiva, "2", "YYNNYY", "Definitiva"},
        // Presented to the bank: delete stays off although the mask allows it.
        {E::Successiva, "3", "YYNNYY", "Definitiva"},
        {E::Successiva, "3", "YYNNYY", "Definitiva"},
        {E::Precedente, "2", "YYNNYY", "Definitiva"},
        {E::Precedente, "1", "YYNYYY", "Prova"},
        {E::Precedente, "1", "YYNYYY", "Prova"},
    };
    for (const Step &s : steps) {
        QVERIFY(m_editor->btnGestione_ClickED(s.button));
        QCOMPARE(m_editor->headerText(E::CodDistinta), QLatin1String(s.code));
        QCOMPARE(m_view.maskShown(), QLatin1String(s.mask));
        QCOMPARE(m_editor->txtdesStato(), QLatin1String(s.stato));
        QVERIFY(m_view.aggiungi);
    }
    QVERIFY(prompter.shown().isEmpty());

    // Opening from the list.
    m_view.chosen = formatDistintaCode(3);
    QVERIFY(m_editor->btnGestione_ClickED(E::Apri));
    QCOMPARE(m_editor->state(), QStringLiteral("F"));
    QVERIFY(!m_editor->buttonEnabled(E::Elimina));
    QCOMPARE(m_editor->txtdesTipo(), QStringLiteral("Fornitori"));
}

void TestDistintaEditor::printedDistintaRefusesChanges()
{
    openDistinta(2, QStringLiteral("D"));

    test::ScriptedPrompter prompter;
    QVERIFY(!m_editor->headerKeyPress());
    QVERIFY(!m_editor->dateKeyPress());
    m_editor->cmdAggiungi_Click();
    m_editor->cmdElRiga_Click();
    QCOMPARE(prompter.texts(), QStringList(4, E::Refused));
    QCOMPARE(m_view.selectionShown, 0);
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYNNYY"));
    // Its dates are not checked either.
    m_view.dates[0] = QStringLiteral("__/__/____");
    QCOMPARE(m_editor->validateDate(DateBox::Creazione, m_view.dates[0]), E::Leave::Accept);
    QVERIFY(m_editor->Form_QueryUnload());
    QCOMPARE(prompter.shown().size(), 4);
}

void TestDistintaEditor::presentedDistintaAsksBeforeRowChanges()
{
    openDistinta(3, QStringLiteral("F"));

    test::ScriptedPrompter prompter;
    prompter.script({Answer::No, Answer::Yes});
    m_editor->cmdAggiungi_Click();
    QCOMPARE(m_view.selectionShown, 0);
    const int loads = m_view.rowLoads;
    m_editor->cmdElRiga_Click();
    QCOMPARE(m_view.rowLoads, loads + 1);
    QCOMPARE(
        prompter.texts(),
        (QStringList{QStringLiteral("Distinta già presentata in banca. Confermi la variazione."),
                     QStringLiteral("Distinta già presentata in banca. Confermi la variazione?")}));
    QCOMPARE(prompter.shown().first().buttons, Buttons::YesNo);
    // Header changes are allowed and mark the distinta changed.
    QVERIFY(m_editor->headerKeyPress());
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYYNYY"));
}

void TestDistintaEditor::unsavedChangesQuestion()
{
    addHeader(2, QStringLiteral("P"));
    openDistinta(1, QStringLiteral("P"));

    test::ScriptedPrompter prompter;
    QVERIFY(m_editor->headerKeyPress());
    m_editor->setHeaderText(E::Riferimenti, QStringLiteral("Pagamenti di marzo"));
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYYYYY"));

    // "Salva" answered No: nothing happens.
    prompter.script({Answer::No});
    QVERIFY(m_editor->btnGestione_ClickED(E::Salva));
    QCOMPARE(prompter.texts(), QStringList{E::SavePrompt});
    QCOMPARE(m_editor->headerText(E::Riferimenti), QStringLiteral("Pagamenti di marzo"));
    QCOMPARE(m_editor->mask(), QStringLiteral("YYYYYY"));

    // Moving on answered No drops the changes.
    prompter.script({Answer::No});
    QVERIFY(m_editor->btnGestione_ClickED(E::Successiva));
    QCOMPARE(m_editor->headerText(E::CodDistinta), QStringLiteral("2"));
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYNYYY"));
    QVERIFY(m_editor->btnGestione_ClickED(E::Precedente));
    QCOMPARE(m_editor->headerText(E::Riferimenti), QString());

    // A save that its checks refuse keeps the changes and says the command did not go through.
    QVERIFY(m_editor->headerKeyPress());
    prompter.clear();
    prompter.script({Answer::Yes});
    QVERIFY(!m_editor->btnGestione_ClickED(E::Successiva));
    QCOMPARE(
        prompter.texts(),
        (QStringList{E::SavePrompt, QStringLiteral("Imposssibile salvare non esistono righe!")}));
    QCOMPARE(m_editor->headerText(E::CodDistinta), QStringLiteral("1"));
    QVERIFY(m_editor->hasUnsavedChanges());
}

void TestDistintaEditor::dateBoxes_data()
{
    QTest::addColumn<int>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("leave");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QDate>("creazione");
    QTest::addColumn<QDate>("valuta");
    QTest::addColumn<QString>("message");
    auto row = [](const char *name, DateBox box, const char *typed, E::Leave leave,
                  const char *shown, QDate creazione, QDate valuta, const char *message) {
        QTest::newRow(name) << int(box) << QString::fromLatin1(typed) << int(leave)
                            << QString::fromLatin1(shown) << creazione << valuta
                            << QString::fromLatin1(message);
    };
    const QDate before(2024, 3, 1);
    const QDate typed(2009, 2, 1);
    row("two-digit year completed, value date follows", DateBox::Creazione, "01/02/09__",
        E::Leave::Accept, "01/02/2009", typed, typed, "");
    row("value date alone", DateBox::Valuta, "20/03/2024", E::Leave::Accept, "20/03/2024", before,
        QDate(2024, 3, 20), "");
    row("empty creation date", DateBox::Creazione, "__/__/____", E::Leave::KeepFocus, "__/__/____",
        before, before, "Inserire la data di creazione della distinta!");
    row("empty value date", DateBox::Valuta, "__/__/____", E::Leave::KeepFocus, "__/__/____",
        before, before, "Inserire la data valuta!");
    row("not a day", DateBox::Creazione, "30/02/2024", E::Leave::KeepFocusSelected, "30/02/2024",
        before, before, "");
}

void TestDistintaEditor::dateBoxes()
{
    QFETCH(int, box);
    QFETCH(QString, typed);
    QFETCH(int, leave);
    QFETCH(QString, shown);
    QFETCH(QDate, creazione);
    QFETCH(QDate, valuta);
    QFETCH(QString, message);

    openDistinta(1, QStringLiteral("P"));
    test::ScriptedPrompter prompter;
    m_view.dates[box] = typed;
    QCOMPARE(int(m_editor->validateDate(DateBox(box), typed)), leave);
    QCOMPARE(m_view.dates[box], shown);
    QCOMPARE(m_editor->distinta().header().dat_data_creazione, creazione);
    QCOMPARE(m_editor->distinta().header().dat_data_valuta, valuta);
    QCOMPARE(prompter.texts(), message.isEmpty() ? QStringList() : QStringList{message});
    if (!message.isEmpty())
        QCOMPARE(prompter.shown().first().icon, Icon::Exclamation);
    if (box == 0 && leave == int(E::Leave::Accept))
        QCOMPARE(m_view.dates[1], QStringLiteral("01/02/2009"));
}

void TestDistintaEditor::closing()
{
    test::ScriptedPrompter prompter;
    // No distinta: no question.
    QVERIFY(m_editor->Form_QueryUnload());
    QVERIFY(prompter.shown().isEmpty());

    openDistinta(1, QStringLiteral("P"));
    m_view.dates[0] = QStringLiteral("01/03/2024");
    m_view.dates[1] = QStringLiteral("__/__/____");
    QVERIFY(!m_editor->Form_QueryUnload());
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Inserire la data valuta!")});
    QCOMPARE(m_view.focusedBox, 1);

    m_view.dates[1] = QStringLiteral("01/03/2024");
    QVERIFY(m_editor->headerKeyPress());
    // Escape on the question (or closing its window) withdraws the closing: the changes stay.
    prompter.clear();
    prompter.script({Answer::Cancel});
    QVERIFY(!m_editor->Form_QueryUnload());
    QVERIFY(prompter.shown().first().escapeCancels);
    QVERIFY(m_editor->hasUnsavedChanges());
    prompter.clear();
    prompter.script({Answer::No});
    QVERIFY(m_editor->Form_QueryUnload());
    QCOMPARE(prompter.texts(), QStringList{E::SavePrompt});
}

void TestDistintaEditor::newDistintaFromSelection()
{
    addHeader(4, QStringLiteral("P"));
    putCompanyBank();
    test::ScriptedPrompter prompter;
    // Closed without confirming: nothing changes.
    QVERIFY(m_editor->btnGestione_ClickED(E::Nuova));
    QVERIFY(!m_editor->hasDistinta());
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYNNYY"));

    m_view.selection = SelectionResult{QStringLiteral("03069"), QStringLiteral("01600"),
                                       QStringLiteral("10/03/2024"), QStringLiteral("__/__/____")};
    QVERIFY(m_editor->btnGestione_ClickED(E::Nuova));
    const Testata &h = m_editor->distinta().header();
    QCOMPARE(h.cod_distinta, formatDistintaCode(5));
    QCOMPARE(h.cod_abi_banca, QStringLiteral("03069"));
    QCOMPARE(h.cod_cab_banca, QStringLiteral("01600"));
    QCOMPARE(h.dat_data_creazione, QDate(2024, 3, 10));
    QCOMPARE(h.dat_data_valuta, QDate(2024, 3, 15)); // not typed: today's stays
    QCOMPARE(h.cod_sia_banca, QStringLiteral("A1B2C"));
    QVERIFY(m_editor->distinta().nuova);
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYYNYY"));
    QVERIFY(m_view.aggiungi);
    QVERIFY(!m_editor->existsInDatabase());
    QVERIFY(prompter.shown().isEmpty());

    // Printing needs a saved distinta.
    QVERIFY(!m_editor->cmdStSolle_Click());
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Distinta non ancora salvata")});
}

void TestDistintaEditor::companyBankBlock()
{
    putCompanyBank();
    openDistinta(1, QStringLiteral("P"));
    test::ScriptedPrompter prompter;

    // A typed CAB is written with leading zeros and brings the bank's data.
    m_editor->setHeaderText(E::CabBanca, QStringLiteral("1600"));
    m_editor->validateBankField(E::CabBanca);
    QVERIFY(prompter.shown().isEmpty());
    const QList<std::pair<int, QString>> block{{E::AbiBanca, QStringLiteral("03069")},
                                               {E::CabBanca, QStringLiteral("01600")},
                                               {E::DesBanAzi, QStringLiteral("Banca Intesa Forlì")},
                                               {E::CodSia, QStringLiteral("A1B2C")},
                                               {E::Riferimenti, QStringLiteral("Fornitori marzo")},
                                               {E::ContoOrdinante, QStringLiteral("000012345678")},
                                               {E::CodiceAbi, QStringLiteral("03069")},
                                               {E::CodiceCab, QStringLiteral("01600")}};
    for (const auto &[field, text] : block)
        QCOMPARE(m_editor->headerText(field), text);

    // An unknown agency: nothing of the previous bank stays, and the save asks for the bank.
    m_editor->setHeaderText(E::CabBanca, QStringLiteral("99999"));
    m_editor->validateBankField(E::CabBanca);
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Banca non trovata")});
    for (const auto &[field, text] : block)
        QCOMPARE(m_editor->headerText(field), QString());
    prompter.clear();
    QVERIFY(!m_store->ValidaDati(m_editor->distinta()));
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Inserire la banca di presentazione!")});

    // A bank typed before its agency stays; the agency is asked for, without a message now.
    m_editor->setHeaderText(E::CabBanca, QStringLiteral("01600"));
    m_editor->validateBankField(E::CabBanca);
    m_editor->setHeaderText(E::AbiBanca, QStringLiteral("5034"));
    prompter.clear();
    m_editor->validateBankField(E::AbiBanca);
    QVERIFY(prompter.shown().isEmpty());
    QCOMPARE(m_editor->headerText(E::AbiBanca), QStringLiteral("05034"));
    QCOMPARE(m_editor->headerText(E::CabBanca), QString());
    QCOMPARE(m_editor->headerText(E::DesBanAzi), QString());
    QVERIFY(!m_store->ValidaDati(m_editor->distinta()));
    QCOMPARE(prompter.texts(),
             QStringList{QStringLiteral("Inserire la agenzia di presentazione!")});
}

void TestDistintaEditor::removedItemStaysWithItsDistinta()
{
    putCompanyBank();
    putDueItem(1, QStringLiteral("200001"));
    putDueItem(2, QStringLiteral("200001"));
    putDueItem(3, QStringLiteral("200002"));
    test::ScriptedPrompter prompter;
    newDistintaOf(QStringLiteral("200001"));
    prompter.script({Answer::Yes});
    QVERIFY(m_editor->btnGestione_ClickED(E::Salva));
    QCOMPARE(dueItem(1).text(QStringLiteral("stato_dist")), QStringLiteral("5"));

    // A row removed from the saved distinta, the change dropped for a new distinta, which is
    // saved: the distinta that still pays the item keeps it marked.
    m_view.selectedKeys = {QStringLiteral("F") + link(1)};
    m_editor->cmdElRiga_Click();
    prompter.script({Answer::No});
    newDistintaOf(QStringLiteral("200002"));
    prompter.script({Answer::Yes});
    QVERIFY(m_editor->btnGestione_ClickED(E::Salva));
    for (int n : {1, 2, 3}) {
        QCOMPARE(dueItem(n).text(QStringLiteral("stato_dist")), QStringLiteral("5"));
        QCOMPARE(dueItem(n).text(QStringLiteral("mark_dist")), QStringLiteral("B"));
    }
    QCOMPARE(prompter.texts(), QStringList(3, E::SavePrompt));
}

void TestDistintaEditor::savedDistintaIsNoLongerNew()
{
    putCompanyBank();
    putDueItem(1, QStringLiteral("200001"));
    putDueItem(2, QStringLiteral("200001"));
    test::ScriptedPrompter prompter;
    newDistintaOf(QStringLiteral("200001"));
    const QString partial = QStringLiteral("F") + link(1);
    RowListRules rules(m_erp.get());
    rules.setDistinta(&m_editor->distinta());
    QVERIFY(rules.ItemClick(partial, RowListRules::ResiduoField));
    QVERIFY(rules.changeComplete(partial, RowListRules::ResiduoField, QStringLiteral("60")));
    prompter.script({Answer::Yes});
    QVERIFY(m_editor->btnGestione_ClickED(E::Salva));
    QCOMPARE(dueItem(1).text(QStringLiteral("stato_dist")), QStringLiteral("3"));
    QVERIFY(!m_editor->distinta().nuova);

    // Saved, the distinta's own partial row is not "in another distinta".
    QVERIFY(rules.ItemClick(partial, RowListRules::ResiduoField));
    QCOMPARE(prompter.texts(), QStringList{E::SavePrompt});

    // Removed and saved, the partial row's due item is free again.
    m_view.selectedKeys = {partial};
    m_editor->cmdElRiga_Click();
    prompter.script({Answer::Yes});
    QVERIFY(m_editor->btnGestione_ClickED(E::Salva));
    QCOMPARE(dueItem(1).text(QStringLiteral("stato_dist")), QStringLiteral("0"));
    QCOMPARE(dueItem(1).text(QStringLiteral("mark_dist")), QStringLiteral("0"));
    QCOMPARE(dueItem(2).text(QStringLiteral("stato_dist")), QStringLiteral("5"));
}

void TestDistintaEditor::failedFinalSaveKeepsWhatIsSaved()
{
    putCompanyBank();
    putDueItem(1, QStringLiteral("200001"));
    test::ScriptedPrompter prompter;
    newDistintaOf(QStringLiteral("200001"));
    prompter.script({Answer::Yes});
    QVERIFY(m_editor->btnGestione_ClickED(E::Salva));
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYNYYY"));

    // Another program holds the database: the final print's save fails.
    test::DatabaseHold hold(database());
    QVERIFY(hold.isHeld());
    prompter.clear();
    m_editor->AggiornaFlagStato();
    QVERIFY(prompter.lastText().contains(QStringLiteral(" in frmMain!Sub Salva()")));
    QCOMPARE(m_editor->state(), QStringLiteral("P"));
    QCOMPARE(m_editor->txtdesStato(), QStringLiteral("Prova"));
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYNYYY"));
    hold.release();

    m_editor->AggiornaFlagStato();
    QCOMPARE(m_editor->state(), QStringLiteral("D"));
    QCOMPARE(m_view.maskShown(), QStringLiteral("YYNNYY"));
}

QTEST_GUILESS_MAIN(TestDistintaEditor)
#include "tst_distintaeditor.moc"
