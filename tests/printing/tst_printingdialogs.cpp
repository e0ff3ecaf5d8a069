#include "fakeprinters.h"
#include "scriptedprompter.h"

#include "core/vbdate.h"
#include "editor/window/mainwindowhooks.h"
#include "editor/window/mainwindowload.h"
#include "lists/usersettings.h"
#include "printing/mergefield.h"
#include "printing/mergefieldsdialog.h"
#include "printing/mergefieldsmodel.h"
#include "printing/printersdialog.h"
#include "printing/printinghooks.h"
#include "printing/stampadialog.h"
#include "ui/maskeddateedit.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace pg;
using namespace pg::printing;
using pg::test::FakePrinters;

namespace {

QString labelFor(QWidget *dialog, QWidget *field)
{
    for (QLabel *label : dialog->findChildren<QLabel *>())
        if (label->buddy() == field)
            return label->text();
    return {};
}

} // namespace

class TestPrintingDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void printDialog();
    void printDialogPrints();
    void printerDialog();
    void templateFields();

private:
    QTemporaryDir m_dir;
};

void TestPrintingDialogs::init()
{
    dates::setToday(QDate(2026, 11, 21));
    UserSettings::useStoreFile(m_dir.filePath(QStringLiteral("settings.ini")));
    currentSettings() = UserSettings();
    editor::currentPrinter() = FakePrinters::office().printers.at(1);
}

void TestPrintingDialogs::cleanup()
{
    UserSettings::useStoreFile(QString());
    editor::currentPrinter().reset();
}

void TestPrintingDialogs::printDialog()
{
    FakePrinters printers = FakePrinters::office();
    StampaDialog dialog(printers);
    dialog.load(QStringLiteral("P"), false, {QStringLiteral("Distinta"), QStringLiteral("Lettera")},
                UserSettings());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QList<std::pair<QString, const char *>> texts{
        {dialog.windowTitle(), "STAMPA DISTINTA"},
        {labelFor(&dialog, dialog.cmbTipo()), "Tipo Stampa:"},
        {dialog.cmbTipo()->currentText(), "Prova"},
        {dialog.cmbTipo()->itemText(1), "Definitiva"},
        {labelFor(&dialog, dialog.DataInvio()), "Data Presentazione:"},
        {dialog.DataInvio()->maskedText(), "21/11/2026"},
        {labelFor(&dialog, dialog.cmbModelli()), "Scelta Modello:"},
        {dialog.cmbModelli()->currentText(), "Distinta"},
        {dialog.chkAutoPrint()->text(), "Invia direttamente alla stampante"},
        {dialog.chkTotali()->text(), "Stampa Riga Totali"},
        {dialog.optGruppo(0)->text(), "Scad. in Dettaglio"},
        {dialog.optGruppo(1)->text(), "Scad. Raggruppate"},
        {dialog.cmdScegli()->text(), "Stampante=>>"},
        {dialog.cmdStampa()->text(), "&Stampa"},
        {dialog.cmdAnnulla()->text(), "&Annulla"},
        {dialog.lstPrinters()->font().family(), "Courier New"},
    };
    for (const auto &[actual, expected] : texts)
        QCOMPARE(actual, QString::fromUtf8(expected));
    QVERIFY(dialog.cmbTipo()->isEnabled());
    QVERIFY(!dialog.cmbModelli()->isEnabled());
    QVERIFY(dialog.optGruppo(0)->isChecked());

    // The printer list opens beside the choices, busy while it fills, and closes again.
    QVERIFY(!dialog.fragestione()->isVisible());
    const int narrow = dialog.width();
    QTest::mouseClick(dialog.cmdScegli(), Qt::LeftButton);
    QVERIFY(dialog.fragestione()->isVisible());
    QCOMPARE(dialog.cmdScegli()->property("tag").toString(), QStringLiteral("SET"));
    QCOMPARE(printers.busyWhenAsked, QList<bool>{true});
    QVERIFY(QApplication::overrideCursor() == nullptr);
    QTRY_VERIFY(dialog.width() > narrow);
    QCOMPARE(dialog.lstPrinters()->model()->rowCount(), 3);
    QCOMPARE(dialog.lstPrinters()->currentIndex().row(), 1);
    dialog.lstPrinters()->setCurrentIndex(dialog.lstPrinters()->model()->index(0, 0));
    QTest::mouseClick(dialog.cmdScegli(), Qt::LeftButton);
    QVERIFY(!dialog.fragestione()->isVisible());
    QCOMPARE(dialog.cmdScegli()->property("tag").toString(), QString());
    QTRY_COMPARE(dialog.width(), narrow);
    QCOMPARE(editor::currentPrinter()->deviceName, QStringLiteral("Ufficio"));

    // A distinta printed in final form.
    StampaDialog definitive(printers);
    definitive.load(QStringLiteral("D"), true,
                    {QStringLiteral("Distinta"), QStringLiteral("Lettera")}, UserSettings());
    QCOMPARE(definitive.cmbTipo()->currentText(), QStringLiteral("Definitiva"));
    QVERIFY(!definitive.cmbTipo()->isEnabled());
    QVERIFY(definitive.cmbModelli()->isEnabled());
    QCOMPARE(definitive.cmbModelli()->count(), 2);
}

void TestPrintingDialogs::printDialogPrints()
{
    test::ScriptedPrompter prompter;
    FakePrinters printers = FakePrinters::office();
    StampaDialog dialog(printers);
    UserSettings settings;
    settings.raggruppa = 1;
    dialog.load(QStringLiteral("P"), true, {QStringLiteral("Distinta"), QStringLiteral("Lettera")},
                settings);
    QList<PrintOptions> launched;
    bool goesOut = false;
    dialog.setLauncher([&](const PrintOptions &options) {
        launched << options;
        return goesOut;
    });
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(dialog.optGruppo(1)->isChecked());

    dialog.cmbTipo()->setCurrentIndex(1);
    dialog.cmbModelli()->setCurrentIndex(1);
    dialog.chkTotali()->setChecked(true);
    dialog.DataInvio()->setMaskedText(QStringLiteral("02/12/2026"));
    QTest::mouseClick(dialog.cmdStampa(), Qt::LeftButton);
    QCOMPARE(launched.size(), 1);
    QVERIFY(launched.first().definitive);
    QVERIFY(launched.first().totals);
    QVERIFY(launched.first().grouped);
    QCOMPARE(launched.first().templateName, QStringLiteral("Lettera"));
    QCOMPARE(launched.first().presentationDate, QDate(2026, 12, 2));
    // Nothing went out: the dialog stays for another try.
    QVERIFY(dialog.isVisible());

    goesOut = true;
    QTest::mouseClick(dialog.cmdStampa(), Qt::LeftButton);
    QCOMPARE(launched.size(), 2);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(prompter.shown().isEmpty());
}

void TestPrintingDialogs::printerDialog()
{
    FakePrinters printers = FakePrinters::office();
    {
        PrintersDialog dialog(printers);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Scelta Stampante"));
        QCOMPARE(dialog.Command2()->text(), QStringLiteral("&Annulla"));
        QCOMPARE(dialog.mTxtList1()->font().family(), QStringLiteral("Courier New"));
        QCOMPARE(printers.busyWhenAsked, QList<bool>{true});
        QCOMPARE(dialog.mTxtList1()->model()->index(1, 0).data().toString(),
                 QStringLiteral("Tesoreria,Brother HL-L5100DN,ipp://10.0.0.7/ipp/print"));
        QCOMPARE(dialog.mTxtList1()->currentIndex().row(), 1);
        dialog.mTxtList1()->setCurrentIndex(dialog.mTxtList1()->model()->index(2, 0));
        QTest::mouseClick(dialog.Command2(), Qt::LeftButton);
        QVERIFY(!dialog.printerChanged());
        QCOMPARE(editor::currentPrinter()->deviceName, QStringLiteral("Tesoreria"));
    }

    // Through the main window's hook: confirming the third line changes the printer.
    editor::MainWindowHooks hooks;
    editor::MainWindowLoad load([]() -> std::unique_ptr<archives::RecordManager> { return {}; },
                                printers);
    installPrintingHooks(hooks, load, printers);
    QVERIFY(hooks.choosePrinter && hooks.printDistinta && hooks.templateFields);
    QTimer::singleShot(0, this, [] {
        auto *dialog = qobject_cast<PrintersDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->mTxtList1()->setCurrentIndex(dialog->mTxtList1()->model()->index(2, 0));
        QTest::mouseClick(dialog->Command1(), Qt::LeftButton);
    });
    QVERIFY(hooks.choosePrinter(nullptr));
    QCOMPARE(editor::currentPrinter()->deviceName, QStringLiteral("PDF"));
    UserSettings stored;
    stored.load(*UserSettings::userStore());
    QCOMPARE(stored.deviceName, QStringLiteral("PDF"));
    QCOMPARE(stored.driverName, QStringLiteral("Generic CUPS-PDF Printer"));

    // A machine without printers: an empty list, and confirming changes nothing.
    FakePrinters none;
    PrintersDialog empty(none);
    QCOMPARE(empty.mTxtList1()->model()->rowCount(), 0);
    QTest::mouseClick(empty.Command1(), Qt::LeftButton);
    QVERIFY(!empty.printerChanged());
    QCOMPARE(editor::currentPrinter()->deviceName, QStringLiteral("PDF"));
}

void TestPrintingDialogs::templateFields()
{
    MergeFieldsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.rowCount(), int(MergeField::all().size()));
    QCOMPARE(model.columnCount(), 3);
    const int importo = int(std::find_if(MergeField::all().cbegin(), MergeField::all().cend(),
                                         [](const MergeField &f) { return f.name == u"importo"; }) -
                            MergeField::all().cbegin());
    QCOMPARE(model.index(importo, 0).data().toString(), QStringLiteral("{{importo}}"));
    QCOMPARE(model.index(importo, 1).data().toString(), QStringLiteral("Riga"));
    QCOMPARE(model.index(model.rowCount() - 4, 0).data().toString(),
             QStringLiteral("{{#righe}} ... {{/righe}}"));
    for (int row = 0; row < model.rowCount(); ++row)
        QVERIFY(!model.index(row, 2).data().toString().isEmpty());

    MergeFieldsDialog dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Elenco variabili modelli"));
    QCOMPARE(dialog.lista()->model()->rowCount(), model.rowCount());
}

QTEST_MAIN(TestPrintingDialogs)
#include "tst_printingdialogs.moc"
