// The desktop program's "File Bonifici" for one saved distinta, for the command-line run
// (cli_run.sh) to compare with the file pagamenti-cli writes for the same distinta: the flat
// credit-transfer file of a suppliers' distinta, the RiBa file of a customers' one. It works on
// the installation of ORVIDA_INI_DIR; E2E_DISTINTA names the distinta, E2E_BANKFILE the file to
// write. Without them there is nothing to do and the test is skipped.

#include "modaldriver.h"
#include "scriptedprompter.h"

#include "app/program.h"
#include "bankfile/bankfiledialog.h"
#include "bankfile/filecommandsupport.h"
#include "editor/window/distintaeditor.h"
#include "editor/window/mainwindow.h"
#include "lists/distintelistdialog.h"
#include "lists/distintelistmodel.h"
#include "lists/usersettings.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace pg;
using editor::DistintaEditor;
using test::ModalDriver;

class TestDesktopBankFile : public QObject
{
    Q_OBJECT

private slots:
    void writeTheBankFile();
};

void TestDesktopBankFile::writeTheBankFile()
{
    const QString number = qEnvironmentVariable("E2E_DISTINTA");
    const QString output = qEnvironmentVariable("E2E_BANKFILE");
    if (number.isEmpty() || output.isEmpty())
        QSKIP("run by cli_run.sh, which names the distinta and the file");

    QStandardPaths::setTestModeEnabled(true);
    QTemporaryDir settings;
    QVERIFY(settings.isValid());
    UserSettings::useStoreFile(settings.filePath(QStringLiteral("settings.ini")));
    test::ScriptedPrompter prompter;
    app::Program program;
    QVERIFY(program.start({QStringLiteral("Pagamenti")}));
    program.show();
    editor::MainWindow *window = program.mainWindow();
    QVERIFY(QTest::qWaitForWindowExposed(window));

    // "Apri distinta", the distinta chosen in the list.
    ModalDriver::whenShown<lists::DistinteListDialog>([&](lists::DistinteListDialog *list) {
        for (int r = 0; r < list->model()->rowCount(); ++r)
            if (list->model()->index(r, 0).data().toString().trimmed() == number)
                list->lvwLista()->selectRow(r);
        QTest::keyClick(list, Qt::Key_Return);
    });
    QTest::mouseClick(window->btnGestione(DistintaEditor::Apri), Qt::LeftButton);
    QCOMPARE(window->txtTestata(DistintaEditor::CodDistinta)->text(), number);

    // "File Bonifici": the flat file (or the RiBa file, whose dialog has no format), under the
    // name typed by the clerk.
    ModalDriver::whenShown<bankfile::BankFileDialog>([&](bankfile::BankFileDialog *dialog) {
        if (auto *format = dialog->findChild<QComboBox *>(QStringLiteral("cboFormato"))) {
            format->setCurrentIndex(int(BankFileFormat::CbiFlat));
            emit format->activated(int(BankFileFormat::CbiFlat));
        }
        auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("txtFileName"));
        QVERIFY(name);
        name->setText(output);
        dialog->findChild<QPushButton *>(QStringLiteral("cmdConferma"))->click();
    });
    QTest::mouseClick(window->command(QStringLiteral("cmdCreaFile")), Qt::LeftButton);
    QCOMPARE(prompter.lastText(), bankfile::completedMessage(output));
    QVERIFY(window->close());
    UserSettings::useStoreFile({});
}

QTEST_MAIN(TestDesktopBankFile)
#include "tst_desktopbankfile.moc"
