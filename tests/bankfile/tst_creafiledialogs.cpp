#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "bankfile/desktopcreafiledialog.h"
#include "bankfile/frmcreafile.h"
#include "bankfile/frmcreafileriba.h"
#include "bankfile/frmcreafiler.h"
#include "bankfile/scadenzemodel.h"
#include "core/distintacode.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"
#include "startup/errortrap.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace pg;
using namespace pg::distinta;
using pg::bankfile::CreaFileFields;
using pg::bankfile::frmCreaFile;
using pg::bankfile::frmCreaFileR;
using pg::bankfile::ScadenzeModel;
using pg::test::TestInstallation;

namespace {

CreaFileFields fieldsOf12()
{
    CreaFileFields f;
    f.codDistinta = QStringLiteral("    12");
    f.dataDistinta = QStringLiteral("15/01/2024");
    f.codSia = QStringLiteral("A1B2C");
    f.rifMitt = QStringLiteral("PAGAMENTI");
    f.contoOrd = QStringLiteral("000000123456");
    f.fileName = QStringLiteral("/opt/orvida/D_STM/CBI_12.txt");
    f.fileTag = QStringLiteral("/CBI_12.txt");
    return f;
}

QString textOf(const QWidget &dialog, const char *name)
{
    const auto *edit = dialog.findChild<QLineEdit *>(QLatin1StringView(name));
    return edit ? edit->text() : QStringLiteral("<missing>");
}

void click(const QWidget &dialog, const char *name)
{
    auto *button = dialog.findChild<QAbstractButton *>(QLatin1StringView(name));
    QVERIFY(button);
    button->click();
}

Riga rowOf(const QString &link, const QString &account, const QString &doc, double amount)
{
    Riga r;
    r.flg_flag_colpar = QStringLiteral("F");
    r.des_link_orvida = link;
    r.des_num_doc = doc;
    r.des_serie_doc = QStringLiteral(" ");
    r.dat_data_doc = QStringLiteral("20231215");
    r.des_num_rata = QStringLiteral("1");
    r.dat_data_scad = QStringLiteral("20240131");
    r.cod_tipo_pag = QStringLiteral("6");
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = account;
    r.cod_banca_cli = QStringLiteral("03069");
    r.cod_agenzia_cli = QStringLiteral("09606");
    r.des_num_cc = QStringLiteral("12345");
    r.cod_valuta = QStringLiteral("EU");
    r.val_cambio = 1;
    r.val_imp_dapag_val = r.val_imp_dapag_eur = amount;
    r.val_imp_residuo_val = r.val_imp_residuo_eur = amount;
    r.val_imp_indist_val = r.val_imp_indist_eur = amount;
    r.des_scadenza = QStringLiteral("Fattura ") + doc;
    return r;
}

} // namespace

class TestCreaFileDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void plainDialogShowsTheDataAndGivesBackTheName_data();
    void plainDialogShowsTheDataAndGivesBackTheName();
    void folderPickedIsJoinedToTheName_data();
    void folderPickedIsJoinedToTheName();
    void groupedDialogListsThePayments();
    void editedDescriptionsAreSavedOnlyOnConfirmation_data();
    void editedDescriptionsAreSavedOnlyOnConfirmation();
    void desktopDialogShowsTheFormOfTheRows_data();
    void desktopDialogShowsTheFormOfTheRows();
    void ribaDialogGivesBackSiaGroupingAndName_data();
    void ribaDialogGivesBackSiaGroupingAndName();

private:
    void createGroupedDistinta();
    QString savedDescription(const QString &link);

    QLocale m_locale;
    UserSettings m_settings;
    std::unique_ptr<test::ScriptedPrompter> m_prompter;
    std::unique_ptr<TestInstallation> m_inst;
    std::unique_ptr<DistinteStore> m_store;
    Distinta m_d;
};

void TestCreaFileDialogs::init()
{
    m_locale = QLocale();
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    m_settings = currentSettings();
    currentSettings() = UserSettings();
    ErrorTrap::instance().resetForTest();
    m_prompter = std::make_unique<test::ScriptedPrompter>();
}

void TestCreaFileDialogs::cleanup()
{
    m_d = Distinta();
    m_store.reset();
    m_inst.reset();
    m_prompter.reset();
    currentSettings() = m_settings;
    QLocale::setDefault(m_locale);
}

void TestCreaFileDialogs::createGroupedDistinta()
{
    m_inst = std::make_unique<TestInstallation>();
    QVERIFY(m_inst->isValid());
    archives::ErpRecord euro(archives::TabelleComuni, QStringLiteral("VL "));
    euro.setText(QStringLiteral("codice"), QStringLiteral("EU"));
    euro.setText(QStringLiteral("decimali"), QStringLiteral("2"));
    archives::ErpRecord dollar(archives::TabelleComuni, QStringLiteral("VL "));
    dollar.setText(QStringLiteral("codice"), QStringLiteral("US"));
    dollar.setText(QStringLiteral("decimali"), QStringLiteral("4"));
    archives::ErpRecord rossi(archives::AnagraficheComuni);
    rossi.setText(QStringLiteral("cod_clifor"), QStringLiteral("200001"));
    rossi.setText(QStringLiteral("ragsoc"), QStringLiteral("ROSSI MARIO SRL"));
    rossi.setText(QStringLiteral("partita_iva"), QStringLiteral("IT09876543210"));
    QList<archives::ErpRecord> records{euro, dollar, rossi};
    const QList<Riga> rows{rowOf(QStringLiteral("0000000000001"), QStringLiteral("200001"),
                                 QStringLiteral("101"), 100),
                           rowOf(QStringLiteral("0000000000002"), QStringLiteral("200001"),
                                 QStringLiteral("102"), 200.5),
                           rowOf(QStringLiteral("0000000000003"), QStringLiteral("200006"),
                                 QStringLiteral("55"), 1234.5)};
    for (const Riga &r : rows)
        records << TestInstallation::dueItem(r.flg_flag_colpar, r.des_link_orvida, r.cod_tipo_pag,
                                             r.cod_clifor, r.val_imp_dapag_val);
    QVERIFY(m_inst->put(records));
    m_store = std::make_unique<DistinteStore>(&m_inst->erp());
    m_store->setPStrConn(m_inst->connectionString());
    m_store->Nuovo(m_d);
    Testata &h = m_d.editHeader();
    h.cod_distinta = formatDistintaCode(5);
    h.cod_abi_banca = h.cod_cab_banca = QStringLiteral("00001");
    for (Riga r : rows) {
        r.cod_distinta = h.cod_distinta;
        if (r.cod_clifor == u"200006")
            r.cod_valuta = QStringLiteral("US");
        m_d.righe.append(r);
    }
    QVERIFY(m_store->Salva(m_d, false, false));
    m_store->Leggi(m_d, formatDistintaCode(5));
    QCOMPARE(m_d.righeRagg.size(), 2);
}

QString TestCreaFileDialogs::savedDescription(const QString &link)
{
    Distinta saved;
    m_store->Leggi(saved, formatDistintaCode(5));
    const int i = saved.righeRagg.indexOfKey(Riga::keyOf(QStringLiteral("F"), link));
    return i < 0 ? QStringLiteral("<missing>") : saved.righeRagg.at(i).des_scadenza;
}

void TestCreaFileDialogs::plainDialogShowsTheDataAndGivesBackTheName_data()
{
    QTest::addColumn<bool>("confirm");
    QTest::newRow("confirmed") << true;
    QTest::newRow("cancelled") << false;
}

void TestCreaFileDialogs::plainDialogShowsTheDataAndGivesBackTheName()
{
    QFETCH(bool, confirm);
    frmCreaFile dialog;
    dialog.setFields(fieldsOf12());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Creazione File Bonifici"));
    QCOMPARE(textOf(dialog, "txtCodDistinta"), QStringLiteral("    12"));
    QCOMPARE(textOf(dialog, "txtdataDistinta"), QStringLiteral("15/01/2024"));
    QCOMPARE(textOf(dialog, "txtCodSia"), QStringLiteral("A1B2C"));
    QCOMPARE(textOf(dialog, "txtRifMitt"), QStringLiteral("PAGAMENTI"));
    QCOMPARE(textOf(dialog, "txtContoOrd"), QStringLiteral("000000123456"));
    QCOMPARE(textOf(dialog, "txtFileName"), QStringLiteral("/opt/orvida/D_STM/CBI_12.txt"));
    for (const char *shownOnly :
         {"txtCodDistinta", "txtdataDistinta", "txtCodSia", "txtRifMitt", "txtContoOrd"})
        QVERIFY(dialog.findChild<QLineEdit *>(QLatin1StringView(shownOnly))->isReadOnly());

    // A typed name is kept as it stands.
    dialog.findChild<QLineEdit *>(QStringLiteral("txtFileName"))
        ->setText(QStringLiteral("C:\\banca\\bonifici"));
    click(dialog, confirm ? "cmdConferma" : "cmdAnnulla");
    QCOMPARE(dialog.result(), confirm ? int(QDialog::Accepted) : int(QDialog::Rejected));
    QCOMPARE(dialog.resultMarker(), confirm ? QStringLiteral("GO") : QString());
    if (confirm) {
        QCOMPARE(dialog.fields().fileName, QStringLiteral("C:\\banca\\bonifici"));
        QCOMPARE(dialog.fields().rifMitt, QStringLiteral("PAGAMENTI"));
    }
}

void TestCreaFileDialogs::folderPickedIsJoinedToTheName_data()
{
    QTest::addColumn<QString>("picked");
    QTest::addColumn<QString>("expected");
    QTest::newRow("a folder") << "/srv/Banca"
                              << "/srv/Banca/CBI_12.txt";
    QTest::newRow("blanks around the folder") << " /srv/Banca "
                                              << "/srv/Banca/CBI_12.txt";
    QTest::newRow("a root: the separator twice") << "/"
                                                 << "//CBI_12.txt";
    QTest::newRow("a drive root") << "C:/"
                                  << "C://CBI_12.txt";
    QTest::newRow("picker cancelled") << ""
                                      << "/opt/orvida/D_STM/CBI_12.txt";
}

void TestCreaFileDialogs::folderPickedIsJoinedToTheName()
{
    QFETCH(QString, picked);
    QFETCH(QString, expected);
    frmCreaFile dialog;
    dialog.setFields(fieldsOf12());
    QString title;
    QString start;
    dialog.setFolderPicker([&](QWidget *parent, const QString &t, const QString &s) {
        title = t;
        start = s;
        return parent == &dialog ? picked : QStringLiteral("/wrong/parent");
    });
    click(dialog, "cmdBrowse");
    QCOMPARE(title, QStringLiteral("SELEZIONA CARTELLA"));
    // The picker opens on the proposed folder, or the nearest one above it that exists.
    QString nearest = QStringLiteral("/opt/orvida/D_STM");
    while (!QFileInfo(nearest).isDir())
        nearest = QFileInfo(nearest).path();
    QCOMPARE(start, nearest);
    QCOMPARE(textOf(dialog, "txtFileName"), expected);
    click(dialog, "cmdConferma");
    QCOMPARE(dialog.fields().fileName, expected);
}

void TestCreaFileDialogs::groupedDialogListsThePayments()
{
    // "N. Prot." hidden and "C/F" shown by the clerk's settings.
    currentSettings().columns.insert(QStringLiteral("N. Prot."), false);
    currentSettings().columns.insert(QStringLiteral("C/F"), true);
    createGroupedDistinta();
    frmCreaFileR dialog(*m_store, m_d, &m_inst->erp());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Creazione File Bonifici"));
    ScadenzeModel *model = dialog.model();
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(dialog.list()->model(), model);
    QCOMPARE(model->rowCount(), 2);
    QCOMPARE(model->columnOf(QStringLiteral("des_num_prot")), -1);
    QVERIFY(model->columnOf(QStringLiteral("flg_ind_clifor")) >= 0);
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("N. Doc."));

    const auto cell = [&](int row, const char *key) {
        return model->index(row, model->columnOf(QLatin1StringView(key))).data().toString();
    };
    QCOMPARE(cell(0, "des_num_doc"), QStringLiteral("101"));
    QCOMPARE(cell(0, "dat_data_doc"), QStringLiteral("15/12/2023"));
    QCOMPARE(cell(0, "cod_tipo_pag"), QStringLiteral("Bonifico"));
    QCOMPARE(cell(0, "ragsoc"), QStringLiteral("ROSSI MARIO SRL"));
    // The grouped payment sums its rows; amounts take their currency's decimals.
    QCOMPARE(cell(0, "val_imp_indist_val"), QStringLiteral("300,50"));
    QCOMPARE(cell(1, "val_imp_indist_val"), QStringLiteral("1.234,5000"));
    QCOMPARE(cell(1, "ragsoc"), QString());
    QCOMPARE(cell(0, "des_scadenza"), QStringLiteral("Vs.Fatt.101-102"));

    const int description = model->columnOf(QStringLiteral("des_scadenza"));
    for (int c = 0; c < model->columnCount(); ++c)
        QCOMPARE(bool(model->flags(model->index(0, c)) & Qt::ItemIsEditable), c == description);
    QVERIFY(!model->setData(model->index(0, 0), QStringLiteral("999")));
}

void TestCreaFileDialogs::editedDescriptionsAreSavedOnlyOnConfirmation_data()
{
    QTest::addColumn<bool>("edit");
    QTest::addColumn<bool>("confirm");
    QTest::newRow("edited and confirmed") << true << true;
    QTest::newRow("edited and cancelled") << true << false;
    QTest::newRow("confirmed without edits") << false << true;
}

void TestCreaFileDialogs::editedDescriptionsAreSavedOnlyOnConfirmation()
{
    QFETCH(bool, edit);
    QFETCH(bool, confirm);
    createGroupedDistinta();
    const RecordSet<Riga> before = m_d.righeRagg;
    frmCreaFileR dialog(*m_store, m_d, &m_inst->erp());
    dialog.setFields(fieldsOf12());
    ScadenzeModel *model = dialog.model();
    const QModelIndex cell = model->index(1, model->columnOf(QStringLiteral("des_scadenza")));
    QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
    if (edit) {
        QVERIFY(model->setData(cell, QStringLiteral("Saldo fattura 55")));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(cell.data().toString(), QStringLiteral("Saldo fattura 55"));
    } else {
        // The same text again is no change.
        QVERIFY(model->setData(cell, cell.data()));
        QCOMPARE(changed.size(), 0);
    }
    click(dialog, confirm ? "cmdConferma" : "cmdAnnulla");

    QVERIFY(!m_d.hasChanges());
    const bool saved = edit && confirm;
    QCOMPARE(m_d.righeRagg.at(1).des_scadenza,
             saved ? QStringLiteral("Saldo fattura 55") : before.at(1).des_scadenza);
    QCOMPARE(savedDescription(QStringLiteral("0000000000003")),
             saved ? QStringLiteral("Saldo fattura 55") : QStringLiteral("Fattura 55"));
    QVERIFY(m_prompter->shown().isEmpty());
}

void TestCreaFileDialogs::desktopDialogShowsTheFormOfTheRows_data()
{
    QTest::addColumn<bool>("grouped");
    QTest::newRow("plain rows") << false;
    QTest::newRow("grouped rows") << true;
}

void TestCreaFileDialogs::desktopDialogShowsTheFormOfTheRows()
{
    QFETCH(bool, grouped);
    createGroupedDistinta();
    QWidget window;
    bankfile::DesktopCreaFileDialog dialog(*m_store, &m_inst->erp(), &window);
    QString shown;
    QTimer::singleShot(0, this, [&] {
        QWidget *modal = QApplication::activeModalWidget();
        QVERIFY(modal);
        shown = modal->objectName();
        modal->findChild<QLineEdit *>(QStringLiteral("txtFileName"))
            ->setText(QStringLiteral("/tmp/altro.txt"));
        modal->findChild<QPushButton *>(QStringLiteral("cmdConferma"))->click();
    });
    CreaFileFields fields = fieldsOf12();
    QCOMPARE(dialog.exec(fields, m_d, grouped), QStringLiteral("GO"));
    QCOMPARE(shown, grouped ? QStringLiteral("frmCreaFileR") : QStringLiteral("frmCreaFile"));
    QCOMPARE(fields.fileName, QStringLiteral("/tmp/altro.txt"));
    QCOMPARE(fields.codSia, QStringLiteral("A1B2C"));
}

void TestCreaFileDialogs::ribaDialogGivesBackSiaGroupingAndName_data()
{
    QTest::addColumn<bool>("confirm");
    QTest::newRow("confirmed") << true;
    QTest::newRow("cancelled") << false;
}

void TestCreaFileDialogs::ribaDialogGivesBackSiaGroupingAndName()
{
    QFETCH(bool, confirm);
    QWidget window;
    m_inst = std::make_unique<TestInstallation>();
    m_store = std::make_unique<DistinteStore>(&m_inst->erp());
    bankfile::DesktopCreaFileDialog dialog(*m_store, &m_inst->erp(), &window);
    QTimer::singleShot(0, this, [&] {
        auto *modal = qobject_cast<bankfile::frmCreaFileRiba *>(QApplication::activeModalWidget());
        QVERIFY(modal);
        QCOMPARE(modal->windowTitle(), QStringLiteral("Creazione File RiBa"));
        QCOMPARE(textOf(*modal, "txtCodDistinta"), QStringLiteral("    12"));
        QCOMPARE(textOf(*modal, "txtBanca"), QStringLiteral("BANCA (ABI 05428 CAB 11101)"));
        for (const char *shownOnly : {"txtCodDistinta", "txtdataDistinta", "txtBanca"})
            QVERIFY(modal->findChild<QLineEdit *>(QLatin1StringView(shownOnly))->isReadOnly());
        auto *sia = modal->findChild<QLineEdit *>(QStringLiteral("txtCodSia"));
        QVERIFY(!sia->isReadOnly());
        sia->setText(QStringLiteral(" z9y8x"));
        modal->findChild<QCheckBox *>(QStringLiteral("chkRaggruppa"))->click();
        modal->setFolderPicker(
            [](QWidget *, const QString &, const QString &) { return QStringLiteral("/srv"); });
        click(*modal, "cmdBrowse");
        click(*modal, confirm ? "cmdConferma" : "cmdAnnulla");
    });
    bankfile::RibaFileFields fields{QStringLiteral("    12"), QStringLiteral("15/01/2024"),
                                    QStringLiteral("BANCA (ABI 05428 CAB 11101)"),
                                    QStringLiteral("A1B2C"), false,
                                    QStringLiteral("/opt/orvida/D_STM/RIBA_12.txt"),
                                    QStringLiteral("/RIBA_12.txt")};
    QCOMPARE(dialog.exec(fields), confirm ? QStringLiteral("GO") : QString());
    QCOMPARE(fields.codSia, confirm ? QStringLiteral("Z9Y8X") : QStringLiteral("A1B2C"));
    QCOMPARE(fields.raggruppa, confirm);
    QCOMPARE(fields.fileName, confirm ? QStringLiteral("/srv/RIBA_12.txt")
                                      : QStringLiteral("/opt/orvida/D_STM/RIBA_12.txt"));
}

QTEST_MAIN(TestCreaFileDialogs)
#include "tst_creafiledialogs.moc"
