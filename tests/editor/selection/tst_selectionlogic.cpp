#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "distinta/programvalues.h"
#include "editor/selection/selectiondialog.h"
#include "editor/selection/selectionlogic.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace pg;
using namespace pg::editor;
using archives::ErpRecord;
using Box = SelectionLogic::Box;

Q_DECLARE_METATYPE(SelectionLogic::Box)

namespace {

QList<ErpRecord> tables()
{
    ErpRecord ba1(archives::TabelleAzienda, QStringLiteral("BA1"));
    ba1.setText(QStringLiteral("codice"), QStringLiteral("0306901600"));
    ba1.setText(QStringLiteral("des_banca"), QStringLiteral("Intesa Sanpaolo - Milano"));
    ErpRecord bn(archives::TabelleComuni, QStringLiteral("BN "));
    bn.setText(QStringLiteral("codice"), QStringLiteral("0503411701"));
    bn.setText(QStringLiteral("des_banca"), QStringLiteral("Banco BPM"));
    bn.setText(QStringLiteral("des_agenzia"), QStringLiteral("Bergamo"));
    ErpRecord vl(archives::TabelleComuni, QStringLiteral("VL "));
    vl.setText(QStringLiteral("codice"), QStringLiteral("US"));
    vl.setText(QStringLiteral("des_valuta"), QStringLiteral("Dollaro USA"));
    ErpRecord account(archives::AnagraficheComuni);
    account.setText(QStringLiteral("cod_clifor"), QStringLiteral("400001"));
    account.setText(QStringLiteral("ragsoc"), QStringLiteral("Ferramenta Rossi Srl"));
    return {ba1, bn, vl, account};
}

} // namespace

class TestSelectionLogic : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void leavingABox_data();
    void leavingABox();
    void confirmChecksInOrder_data();
    void confirmChecksInOrder();
    void confirmedValuesAndDefaults();
    void lookupsFillTheBoxes();
    void dialogConfirmsAndCancels();

private:
    std::unique_ptr<test::TestInstallation> m_inst;
};

void TestSelectionLogic::initTestCase()
{
    m_inst = std::make_unique<test::TestInstallation>(false);
    QVERIFY(m_inst->isValid());
    QVERIFY(m_inst->put(tables()));
}

void TestSelectionLogic::cleanupTestCase()
{
    m_inst.reset();
}

void TestSelectionLogic::init()
{
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    distinta::programValues() = distinta::ProgramValues();
    selectionValues() = SelectionValues();
    SelectionLogic::lastConfirmedForm() = SelectionLogic::Form();
}

void TestSelectionLogic::cleanup()
{
    QLocale::setDefault(QLocale::c());
}

void TestSelectionLogic::leavingABox_data()
{
    QTest::addColumn<QString>("typed"); // box number=text; ..., in order
    QTest::addColumn<Box>("left");
    QTest::addColumn<QString>("message");
    QTest::addColumn<Box>("focus");     // where a message sends the focus
    QTest::addColumn<QString>("after"); // box number=text expected afterwards
    QTest::addColumn<QString>("description");
    auto row = [](const char *name, const char *typed, Box left, const char *message, Box focus,
                  const char *after, const char *description) {
        QTest::newRow(name) << QString::fromUtf8(typed) << left << QString::fromUtf8(message)
                            << focus << QString::fromUtf8(after) << QString::fromUtf8(description);
    };
    using L = SelectionLogic;
    row("company bank found", "0=3069;1=1600", L::Agenzia, "", L::Agenzia, "0=03069",
        "Intesa Sanpaolo - Milano");
    row("company bank unknown", "0=3069;1=1601", L::Agenzia, "Banca non trovata!", L::Agenzia,
        "1=01601", "");
    row("company bank without agency yet", "0=99", L::Banca, "", L::Banca, "0=00099", "");
    row("account bank and agency found", "11=5034;12=11701", L::AgenziaCli, "", L::AgenziaCli,
        "12=11701", "Banco BPM - Bergamo");
    row("account bank unknown", "11=1005;12=11701", L::AgenziaCli, "Banca non trovata!",
        L::BancaCli, "11=01005", "");
    row("account agency unknown", "11=5034;12=99999", L::AgenziaCli, "Agenzia non trovata!",
        L::AgenziaCli, "12=99999", "");
    row("account bank zero", "11=0;12=777", L::BancaCli, "", L::BancaCli, "11=00000", "");
    row("account range in order", "9=400001;10=400002", L::CodAnagraFine, "", L::CodAnagraFine,
        "10=400002", "");
    row("account range reversed", "9=400001;10=12", L::CodAnagraFine,
        "Codice inferiore del precedente!", L::CodAnagraFine, "10=000012", "");
    row("currency found", "6=US", L::CodValuta, "", L::CodValuta, "6=US", "Dollaro USA");
    row("currency unknown", "6=ZZ", L::CodValuta, "Valuta non trovata!", L::CodValuta, "6=ZZ", "");
    row("no currency", "6=", L::CodValuta, "", L::CodValuta, "6=", "EURO");
    row("date not a day", "2=31/02/2026", L::DataScadDa, "Date non corrette!", L::DataScadDa,
        "2=31/02/2026", "");
    row("date with a two-digit year", "3=01/02/09__", L::DataScadA, "", L::DataScadA,
        "3=01/02/2009", "");
    row("empty date", "4=__/__/____", L::DataCreazione, "", L::DataCreazione, "4=__/__/____", "");
}

void TestSelectionLogic::leavingABox()
{
    QFETCH(QString, typed);
    QFETCH(Box, left);
    QFETCH(QString, message);
    QFETCH(Box, focus);
    QFETCH(QString, after);
    QFETCH(QString, description);

    test::ScriptedPrompter prompter;
    SelectionLogic logic(&m_inst->erp());
    QList<Box> focused;
    logic.setFocusHandler([&](Box b, bool) { focused << b; });
    for (const QString &t : typed.split(u';'))
        logic.setText(Box(t.section(u'=', 0, 0).toInt()), t.section(u'=', 1));

    QCOMPARE(logic.validate(left), message.isEmpty());
    QCOMPARE(prompter.texts(), message.isEmpty() ? QStringList() : QStringList{message});
    if (!message.isEmpty()) {
        QCOMPARE(prompter.shown().first().icon, Icon::Exclamation);
        QCOMPARE(focused, QList<Box>{focus});
    }
    QCOMPARE(logic.text(Box(after.section(u'=', 0, 0).toInt())), after.section(u'=', 1));
    if (left == SelectionLogic::Banca || left == SelectionLogic::Agenzia)
        QCOMPARE(logic.description(SelectionLogic::DesBanca), description);
    else if (left == SelectionLogic::BancaCli || left == SelectionLogic::AgenziaCli)
        QCOMPARE(logic.description(SelectionLogic::DesBancaCli), description);
    else if (left == SelectionLogic::CodValuta)
        QCOMPARE(logic.description(SelectionLogic::DesValuta), description);
}

void TestSelectionLogic::confirmChecksInOrder_data()
{
    QTest::addColumn<QString>("minimum");
    QTest::addColumn<QString>("maximum");
    QTest::addColumn<QString>("dueFrom");
    QTest::addColumn<QString>("dueTo");
    QTest::addColumn<QString>("bank");
    QTest::addColumn<QString>("agency");
    QTest::addColumn<QString>("message");
    QTest::addColumn<Box>("focus");
    // The texts of the boxes in the order of the columns, then the message and the focus.
    auto row = [](const char *name, const std::array<const char *, 6> &boxes, const char *message,
                  Box focus) {
        QTestData &data = QTest::newRow(name);
        for (const char *text : boxes)
            data << QString::fromLatin1(text);
        data << QString::fromLatin1(message) << focus;
    };
    using L = SelectionLogic;
    row("everything wrong: amounts first", {"1.000", "500", "01/12/2026", "30/11/2026", "", ""},
        "Importi non coerenti", L::ImpMinimo);
    row("amount not a number", {"", "abc", "", "", "03069", "01600"},
        "Importo non valido: \"abc\".\r\nScrivere l'importo con la virgola per i decimali e, "
        "se si vuole, il punto per le migliaia (per esempio 1.234,56).",
        L::ImpMassimo);
    row("grouped maximum with decimals", {"1.000,60", "1.000,50", "", "", "03069", "01600"},
        "Importi non coerenti", L::ImpMinimo);
    // Beyond any amount (it would overflow the cents the filter compares), or below zero.
    row("minimum beyond any amount", {"1e308", "-1", "", "", "03069", "01600"},
        "Importo non valido: \"1e308\".\r\nScrivere l'importo con la virgola per i decimali e, "
        "se si vuole, il punto per le migliaia (per esempio 1.234,56).",
        L::ImpMinimo);
    row("dates wrong, no bank", {"500", "1.000", "01/12/2026", "30/11/2026", "", ""},
        "Date non coerenti", L::DataScadDa);
    row("no bank", {"", "", "30/11/2026", "30/11/2026", "", "01600"}, "Banca obbligatoria!",
        L::Banca);
    row("no agency", {"", "", "", "", "03069", ""}, "Agenzia obbligatoria!", L::Agenzia);
    row("equal amounts and dates", {"1.000", "1000", "30/11/2026", "30/11/2026", "03069", "01600"},
        "", L::Banca);
}

void TestSelectionLogic::confirmChecksInOrder()
{
    QFETCH(QString, minimum);
    QFETCH(QString, maximum);
    QFETCH(QString, dueFrom);
    QFETCH(QString, dueTo);
    QFETCH(QString, bank);
    QFETCH(QString, agency);
    QFETCH(QString, message);
    QFETCH(Box, focus);

    test::ScriptedPrompter prompter;
    SelectionLogic logic(&m_inst->erp());
    QList<Box> focused;
    logic.setFocusHandler([&](Box b, bool) { focused << b; });
    logic.setText(SelectionLogic::ImpMinimo, minimum);
    logic.setText(SelectionLogic::ImpMassimo, maximum);
    logic.setText(SelectionLogic::DataScadDa, dueFrom);
    logic.setText(SelectionLogic::DataScadA, dueTo);
    logic.setText(SelectionLogic::Banca, bank);
    logic.setText(SelectionLogic::Agenzia, agency);

    QCOMPARE(logic.cmdGenera(), message.isEmpty());
    QCOMPARE(logic.mark(), message.isEmpty() ? SelectionLogic::Mark : QString());
    QCOMPARE(prompter.texts(), message.isEmpty() ? QStringList() : QStringList{message});
    QCOMPARE(focused, message.isEmpty() ? QList<Box>() : QList<Box>{focus});
    // The amounts are taken without their dots, and the boxes show them so.
    QVERIFY(!logic.text(SelectionLogic::ImpMinimo).contains(u'.'));
    QVERIFY(!logic.text(SelectionLogic::ImpMassimo).contains(u'.'));
}

void TestSelectionLogic::confirmedValuesAndDefaults()
{
    test::ScriptedPrompter prompter;
    {
        // Only the presentation bank: everything else lets every due item through.
        SelectionLogic logic(&m_inst->erp());
        logic.setText(SelectionLogic::Banca, QStringLiteral("3069"));
        logic.setText(SelectionLogic::Agenzia, QStringLiteral("1600"));
        QVERIFY(logic.cmdGenera());
        SelectionValues expected;
        expected.bancaPres = QStringLiteral("03069");
        expected.agenziaPres = QStringLiteral("01600");
        QCOMPARE(logic.values(), expected);
        QCOMPARE(selectionValues(), expected);
        QCOMPARE(distinta::programValues().codValuta, QStringLiteral("  "));
        QCOMPARE(distinta::programValues().desValuta, QStringLiteral("EURO"));
        QCOMPARE(distinta::programValues().tipoDistinta, QStringLiteral("F"));
    }
    {
        SelectionLogic logic(&m_inst->erp());
        logic.setText(SelectionLogic::Banca, QStringLiteral("03069"));
        logic.setText(SelectionLogic::Agenzia, QStringLiteral("01600"));
        logic.setText(SelectionLogic::DataScadDa, QStringLiteral("01/11/2026"));
        logic.setText(SelectionLogic::DataScadA, QStringLiteral("30/11/26__"));
        logic.setText(SelectionLogic::DataCreazione, QStringLiteral("02/12/2026"));
        logic.setText(SelectionLogic::CodAnagraInizio, QStringLiteral("100001"));
        logic.setText(SelectionLogic::CodAnagraFine, QStringLiteral("199999"));
        logic.setText(SelectionLogic::CodValuta, QStringLiteral("US"));
        QVERIFY(logic.validate(SelectionLogic::CodValuta));
        logic.setText(SelectionLogic::ImpMinimo, QStringLiteral("1.500,50"));
        logic.setText(SelectionLogic::BancaCli, QStringLiteral("5034"));
        logic.setTipoIndex(1);
        logic.setCliForIndex(1);
        QVERIFY(logic.cmdGenera());
        const SelectionValues &v = logic.values();
        QCOMPARE(v.dataScadInizio, QStringLiteral("20261101"));
        QCOMPARE(v.dataScadFine, QStringLiteral("20261130"));
        QCOMPARE(v.dataCreazione, QStringLiteral("02/12/2026"));
        QCOMPARE(v.dataValuta, QStringLiteral("__/__/____"));
        QCOMPARE(v.codAnagraInizio, QStringLiteral("100001"));
        QCOMPARE(v.codAnagraFine, QStringLiteral("199999"));
        QCOMPARE(v.impMinimo, 1500.5);
        QCOMPARE(v.tipoPagamento, QStringLiteral("1"));
        QCOMPARE(v.tipoDistinta, QStringLiteral("C"));
        QCOMPARE(v.bancaCli, QStringLiteral("05034"));
        QCOMPARE(v.agenziaCli, QStringLiteral("00000"));
        QCOMPARE(distinta::programValues().tipoDistinta, QStringLiteral("C"));
        QCOMPARE(distinta::programValues().codValuta, QStringLiteral("US"));
        QCOMPARE(distinta::programValues().desValuta, QStringLiteral("Dollaro USA"));
        // The next opening shows the same criteria, but not the distinta's dates.
        const SelectionLogic::Form &kept = SelectionLogic::lastConfirmedForm();
        QCOMPARE(kept.texts.at(SelectionLogic::CodAnagraInizio), QStringLiteral("100001"));
        QCOMPARE(kept.texts.at(SelectionLogic::DataCreazione), SelectionValues::EmptyDate);
        QCOMPARE(kept.cliForIndex, 1);
    }
    QVERIFY(prompter.shown().isEmpty());
}

void TestSelectionLogic::lookupsFillTheBoxes()
{
    test::ScriptedPrompter prompter;
    SelectionLogic logic(&m_inst->erp());
    QList<bool> accountKinds;
    SelectionLogic::Lookups lookups;
    lookups.companyBanks = [] { return QStringLiteral("03069 01600"); };
    lookups.banksAndAgencies = [] { return QStringLiteral("05034 11701"); };
    lookups.accounts = [&](bool customers) {
        accountKinds << customers;
        return QStringLiteral("400001");
    };
    lookups.currencies = [] { return QString(); };
    logic.setLookups(lookups);

    logic.keyDownF4(SelectionLogic::Agenzia);
    QCOMPARE(logic.text(SelectionLogic::Banca), QStringLiteral("03069"));
    QCOMPARE(logic.text(SelectionLogic::Agenzia), QStringLiteral("01600"));
    QCOMPARE(logic.description(SelectionLogic::DesBanca),
             QStringLiteral("Intesa Sanpaolo - Milano"));
    logic.keyDownF4(SelectionLogic::BancaCli);
    QCOMPARE(logic.text(SelectionLogic::AgenziaCli), QStringLiteral("11701"));
    QCOMPARE(logic.description(SelectionLogic::DesBancaCli), QStringLiteral("Banco BPM - Bergamo"));
    logic.keyDownF4(SelectionLogic::CodAnagraInizio);
    logic.setCliForIndex(1);
    logic.keyDownF4(SelectionLogic::CodAnagraFine);
    QCOMPARE(accountKinds, (QList<bool>{false, true}));
    QCOMPARE(logic.description(SelectionLogic::DesRagsoc), QStringLiteral("Ferramenta Rossi Srl"));
    // Closing a list without a choice changes nothing.
    logic.setText(SelectionLogic::CodValuta, QStringLiteral("US"));
    logic.keyDownF4(SelectionLogic::CodValuta);
    QCOMPARE(logic.text(SelectionLogic::CodValuta), QStringLiteral("US"));
    QVERIFY(prompter.shown().isEmpty());
}

void TestSelectionLogic::dialogConfirmsAndCancels()
{
    test::ScriptedPrompter prompter;
    SelectionDialog dialog(&m_inst->erp());
    // The clerk's texts as they stand.
    QCOMPARE(dialog.windowTitle(), QStringLiteral("SELEZIONE"));
    QCOMPARE(dialog.cmdGenera()->text(), QStringLiteral("&Conferma"));
    QCOMPARE(dialog.cmdAnnulla()->text(), QStringLiteral("&Annulla"));
    QCOMPARE(dialog.cmbTipo()->count(), 11);
    QCOMPARE(dialog.cmbTipo()->currentText(), QStringLiteral("TUTTI I PAGAMENTI"));
    QCOMPARE(dialog.box(SelectionLogic::DataScadDa)->displayText(), QStringLiteral("__/__/____"));

    // Without a bank the dialog stays open.
    dialog.show();
    dialog.cmdGenera()->click();
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Banca obbligatoria!")});
    QVERIFY(dialog.isVisible());

    // F4 in the bank box fills bank, agency and the bank's name.
    SelectionLogic::Lookups lookups;
    lookups.companyBanks = [] { return QStringLiteral("03069 01600"); };
    dialog.logic().setLookups(lookups);
    dialog.box(SelectionLogic::Banca)->setFocus();
    QTest::keyClick(dialog.box(SelectionLogic::Banca), Qt::Key_F4);
    QCOMPARE(dialog.box(SelectionLogic::Agenzia)->text(), QStringLiteral("01600"));
    QCOMPARE(dialog.descriptionBox(SelectionLogic::DesBanca)->text(),
             QStringLiteral("Intesa Sanpaolo - Milano"));

    QTest::keyClicks(dialog.box(SelectionLogic::ImpMassimo), QStringLiteral("2.500"));
    dialog.cmbTipo()->setCurrentIndex(6);
    dialog.cmbCliFor()->setCurrentIndex(1);
    dialog.cmdGenera()->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.box(SelectionLogic::ImpMassimo)->text(), QStringLiteral("2500"));
    QCOMPARE(selectionValues().impMassimo, 2500.0);
    QCOMPARE(selectionValues().tipoPagamento, QStringLiteral("6"));
    QCOMPARE(selectionValues().tipoDistinta, QStringLiteral("C"));

    // Reopened, the dialog shows the last confirmed criteria; cancelled, it leaves no mark.
    SelectionDialog again(&m_inst->erp());
    QCOMPARE(again.box(SelectionLogic::Banca)->text(), QStringLiteral("03069"));
    QCOMPARE(again.cmbTipo()->currentIndex(), 6);
    again.show();
    again.cmdAnnulla()->click();
    QCOMPARE(again.result(), int(QDialog::Rejected));
    QVERIFY(!again.logic().confirmed());
}

QTEST_MAIN(TestSelectionLogic)
#include "tst_selectionlogic.moc"
