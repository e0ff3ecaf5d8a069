#include "fakeprinters.h"
#include "scriptedprompter.h"

#include "core/vbdate.h"
#include "lists/usersettings.h"
#include "printing/printerlist.h"
#include "printing/stampaform.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::printing;
using pg::test::FakePrinters;

namespace {

const QStringList Templates{QStringLiteral("Distinta"), QStringLiteral("Lettera"),
                            QStringLiteral("Sollecito")};

UserSettings storedSettings()
{
    UserSettings settings;
    settings.load(*UserSettings::userStore());
    return settings;
}

} // namespace

class TestStampaForm : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void openingTheDialog_data();
    void openingTheDialog();
    void templateList();
    void printerListInTwoSteps();
    void printerList();
    void printing();

private:
    QTemporaryDir m_dir;
};

void TestStampaForm::init()
{
    dates::setToday(QDate(2026, 11, 21));
    UserSettings::useStoreFile(m_dir.filePath(QStringLiteral("settings.ini")));
    QFile::remove(m_dir.filePath(QStringLiteral("settings.ini")));
    currentSettings() = UserSettings();
    editor::currentPrinter() = FakePrinters::office().printers.at(0);
}

void TestStampaForm::cleanup()
{
    UserSettings::useStoreFile(QString());
    editor::currentPrinter().reset();
}

void TestStampaForm::openingTheDialog_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("raggruppa");
    QTest::addColumn<QString>("tipo");
    QTest::addColumn<bool>("tipoEnabled");
    QTest::newRow("open distinta") << "P" << false << "Prova" << true;
    QTest::newRow("presented distinta, grouping on") << "F" << true << "Prova" << true;
    QTest::newRow("printed in final form") << "D" << false << "Definitiva" << false;
}

void TestStampaForm::openingTheDialog()
{
    QFETCH(QString, state);
    QFETCH(bool, raggruppa);
    QFETCH(QString, tipo);
    QFETCH(bool, tipoEnabled);
    FakePrinters printers = FakePrinters::office();
    StampaForm form(printers);
    UserSettings settings;
    settings.raggruppa = raggruppa ? 1 : 0;
    settings.autoPrint = 1;
    form.Form_Load(state, false, Templates, settings);
    QCOMPARE(form.tipoText(), tipo);
    QCOMPARE(form.tipoEnabled(), tipoEnabled);
    QCOMPARE(form.grouped(), raggruppa);
    QVERIFY(form.autoPrint());
    QVERIFY(!form.totali());
    QVERIFY(!form.isWide());
    QCOMPARE(form.scegliTag(), QString());
    QCOMPARE(form.dataInvio(), QStringLiteral("21/11/2026"));
    QVERIFY(printers.busyWhenAsked.isEmpty()); // the list fills only when asked for

    // A distinta printed in final form can only be printed as final.
    form.setTipoIndex(0);
    QCOMPARE(form.tipoText(), tipo);
    QCOMPARE(form.options().definitive, !tipoEnabled);
    form.setTipoIndex(1);
    QVERIFY(form.options().definitive);

    form.setDataInvio(QStringLiteral("__/__/____"));
    QVERIFY(form.DataInvio_KeyPress(u'd'));
    QCOMPARE(form.dataInvio(), QStringLiteral("21/11/2026"));
    QVERIFY(!form.DataInvio_KeyPress(u'5'));
}

void TestStampaForm::templateList()
{
    FakePrinters printers;
    StampaForm form(printers);
    // Without "Seleziona Modello" only the default template, not changeable.
    form.Form_Load(QStringLiteral("P"), false, Templates, UserSettings());
    QCOMPARE(form.modelli(), QStringList{QStringLiteral("Distinta")});
    QVERIFY(!form.modelliEnabled());
    form.setModelloIndex(2);
    QCOMPARE(form.options().templateName, QStringLiteral("Distinta"));

    // With it every template, the default one proposed.
    form.FillComboModelli(Templates, true);
    QCOMPARE(form.modelli(), Templates);
    QCOMPARE(form.modelloIndex(), 0);
    form.setModelloIndex(1);
    QCOMPARE(form.options().templateName, QStringLiteral("Lettera"));
    form.FillComboModelli({QStringLiteral("Altro"), QStringLiteral("distinta")}, true);
    QCOMPARE(form.modelloIndex(), 1);
}

void TestStampaForm::printerListInTwoSteps()
{
    FakePrinters printers = FakePrinters::office();
    StampaForm form(printers);
    form.Form_Load(QStringLiteral("P"), false, Templates, UserSettings());

    // Twice without choosing a line: the printer in use stays.
    form.cmdScegli_Click();
    QCOMPARE(form.scegliTag(), QStringLiteral("SET"));
    QVERIFY(form.isWide());
    QCOMPARE(form.printers().lines().size(), 3);
    QCOMPARE(form.selectedPrinter(), 0);
    form.cmdScegli_Click();
    QVERIFY(!form.isWide());
    QCOMPARE(form.scegliTag(), QString());
    QVERIFY(editor::currentPrinter() == printers.printers.at(0));

    // Choosing another line makes it the printer in use and remembers it.
    form.cmdScegli_Click();
    form.setSelectedPrinter(1);
    form.cmdScegli_Click();
    QVERIFY(editor::currentPrinter() == printers.printers.at(1));
    QCOMPARE(PrinterList::printerLabel(), QStringLiteral("Tesoreria su ipp://10.0.0.7/ipp/print"));
    const UserSettings stored = storedSettings();
    QCOMPARE(stored.deviceName, QStringLiteral("Tesoreria"));
    QCOMPARE(stored.driverName, QStringLiteral("Brother HL-L5100DN"));
    QCOMPARE(stored.port, QStringLiteral("ipp://10.0.0.7/ipp/print"));

    // A printer in use that is no longer installed: no line is selected, and nothing changes.
    editor::currentPrinter() = editor::PrinterInfo{QStringLiteral("Vecchia"), QStringLiteral("x"),
                                                   QStringLiteral("LPT1:")};
    form.cmdScegli_Click();
    QCOMPARE(form.selectedPrinter(), -1);
    form.cmdScegli_Click();
    QCOMPARE(editor::currentPrinter()->deviceName, QStringLiteral("Vecchia"));
}

void TestStampaForm::printerList()
{
    FakePrinters printers = FakePrinters::office();
    PrinterList list(printers);
    list.fill();
    QCOMPARE(list.lines(),
             (QStringList{QStringLiteral("Ufficio,HP LaserJet 4250,Amministrazione, piano 1"),
                          QStringLiteral("Tesoreria,Brother HL-L5100DN,ipp://10.0.0.7/ipp/print"),
                          QStringLiteral("PDF,Generic CUPS-PDF Printer,")}));
    QCOMPARE(list.currentIndex(), 0);
    QCOMPARE(PrinterList::printerLabel(), QStringLiteral("Ufficio su Amministrazione, piano 1"));

    // A machine without printers: an empty list, and choosing from it changes nothing.
    FakePrinters none;
    PrinterList empty(none);
    empty.fill();
    QVERIFY(empty.lines().isEmpty());
    QCOMPARE(empty.currentIndex(), -1);
    QVERIFY(!empty.makeCurrent(0) && !empty.makeCurrent(-1));
    QVERIFY(editor::currentPrinter() == printers.printers.at(0));
    QCOMPARE(storedSettings().deviceName, QStringLiteral("NOPRINTER"));

    editor::currentPrinter().reset();
    QCOMPARE(list.currentIndex(), -1);
    QCOMPARE(PrinterList::printerLabel(), QString());
}

void TestStampaForm::printing()
{
    test::ScriptedPrompter prompter;
    FakePrinters printers = FakePrinters::office();
    StampaForm form(printers);
    form.Form_Load(QStringLiteral("P"), true, Templates, UserSettings());
    QList<PrintOptions> launched;
    bool goesOut = true;
    const auto launch = [&](const PrintOptions &options) {
        launched << options;
        return goesOut;
    };

    // A presentation date that is not a day: its message, no print.
    form.setDataInvio(QStringLiteral("31/02/2026"));
    QVERIFY(!form.cmdStampa_Click(launch));
    QCOMPARE(prompter.texts(), QStringList{StampaForm::InvalidDate});
    QVERIFY(launched.isEmpty());

    // A two-digit year is completed; the list open gives its selected printer first.
    form.setDataInvio(QStringLiteral("05/12/26__"));
    form.setTipoIndex(1);
    form.setTotali(true);
    form.setGrouped(true);
    form.setModelloIndex(1);
    form.cmdScegli_Click();
    form.setSelectedPrinter(2);
    QVERIFY(form.cmdStampa_Click(launch));
    QCOMPARE(launched.size(), 1);
    const PrintOptions &options = launched.first();
    QVERIFY(options.definitive);
    QCOMPARE(options.presentationDate, QDate(2026, 12, 5));
    QCOMPARE(options.templateName, QStringLiteral("Lettera"));
    QVERIFY(options.totals);
    QVERIFY(options.grouped);
    QCOMPARE(editor::currentPrinter()->deviceName, QStringLiteral("PDF"));
    QVERIFY(!form.isWide());
    QCOMPARE(form.scegliTag(), QString());

    // An empty date prints blank; a print that does not go out says so.
    goesOut = false;
    form.setDataInvio(QStringLiteral("__/__/____"));
    form.setTipoIndex(0);
    QVERIFY(!form.cmdStampa_Click(launch));
    QCOMPARE(launched.size(), 2);
    QVERIFY(!launched.last().presentationDate.isValid());
    QVERIFY(!launched.last().definitive);
    QCOMPARE(prompter.shown().size(), 1);
}

QTEST_GUILESS_MAIN(TestStampaForm)
#include "tst_stampaform.moc"
