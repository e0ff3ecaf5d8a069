#include "bankdata.h"
#include "bankfilefixture.h"
#include "cbifilecheck.h"
#include "faultyrecordmanager.h"
#include "scriptedprompter.h"
#include "spydialog.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/companydata.h"
#include "bankfile/bonificifile.h"
#include "bankfile/confirmedcreafiledialog.h"
#include "bankfile/creafilecommand.h"
#include "bankfile/filecommandsupport.h"
#include "core/distintacode.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace pg;
using namespace pg::distinta;
using pg::archives::ErpRecord;
using pg::bankfile::CreaFileCommand;
using pg::test::TestInstallation;
using namespace pg::test;

namespace {

const QString Completed = QStringLiteral("Elaborazione Completata");

} // namespace

class TestCreaFile : public QObject, protected BankFileFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void writesTheFileOfTheRules_data();
    void writesTheFileOfTheRules();
    void dialogShowsTheDistintaAndGivesBackNameAndReferences();
    void unsavedChangesAreSavedFirst();
    void refusedDistinteNeverOpenTheDialog_data();
    void refusedDistinteNeverOpenTheDialog();
    void cancellingLeavesNoFileAndNoChange();
    void failureKeepsThePreviousFile();
    void unpayableRowsAreRefused();
    void plainRowsMarkTheirDueItemsGroupedRowsDoNot_data();
    void plainRowsMarkTheirDueItemsGroupedRowsDoNot();
    void oddDataKeepEveryLineItsWidth();

private:
    Distinta create(const DistintaData &s, const QString &currency = QStringLiteral("  "))
    {
        return distintaOf(*m_store, s, currency);
    }
    Distinta read(int number);
    CreaFileCommand::Outcome run(Distinta &d, bankfile::CreaFileDialog &dialog,
                                 bool unsaved = false,
                                 const std::function<bool(Distinta &)> &save = {});
    QString pathOf(int number) const
    {
        return OrvidaDir() + QStringLiteral("D_STM/CBI_%1.txt").arg(number);
    }

};

void TestCreaFile::init()
{
    QVERIFY(setUpSuite(suiteRecords() + dueItemsOfTheDistinte()));
    // The flat file is what these tests check; the dialog proposes the XML message otherwise.
    currentSettings().formatoBonifici = BankFileFormat::CbiFlat;
}

void TestCreaFile::cleanup()
{
    tearDownSuite();
}

Distinta TestCreaFile::read(int number)
{
    Distinta d;
    m_store->Leggi(d, formatDistintaCode(number));
    return d;
}

CreaFileCommand::Outcome TestCreaFile::run(Distinta &d, bankfile::CreaFileDialog &dialog,
                                           bool unsaved,
                                           const std::function<bool(Distinta &)> &save)
{
    const archives::CompanyData company = archives::CompanyData::read(*m_erp);
    CreaFileCommand command(*m_store, *m_erp, company, dialog);
    return command.cmdCreaFile(d, unsaved, save);
}

void TestCreaFile::writesTheFileOfTheRules_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("raggruppa");
    QTest::addColumn<int>("modDescr");
    QTest::addColumn<QString>("golden");
    QTest::addColumn<QStringList>("messages");
    const QLocale it(QLocale::Italian, QLocale::Italy);
    const QLocale en(QLocale::English, QLocale::UnitedStates);
    const QString ibanMissing = QStringLiteral(
        "Il Record 17 dei Bonifici non viene generato perchè i dati IBAN sono inesistenti o non "
        "validi, verificare i dati nell'anagrafica del fornitore '%1'.");
    const QString bankDiffers = QStringLiteral(
        "Il Record 17 dei Bonifici non viene generato perchè la banca/agenzia utilizzata è diversa "
        "da quella codificata in anagrafica del fornitore '%1'.");
    const QString companyIbanMissing = QStringLiteral(
        "Il Record 16 dei Bonifici non viene generato perchè i dati IBAN sono inesistenti o non "
        "validi, verificare i dati in Banche Azienda relativamente alla banca di presentazione.");

    QTest::newRow("one row, both IBANs")
        << it << 1 << 0 << 0 << "cbi_one_row.txt" << QStringList{Completed};
    QTest::newRow("one row, amounts with a decimal point")
        << en << 1 << 0 << 0 << "cbi_one_row_en.txt" << QStringList{Completed};
    QTest::newRow("no usable IBAN, supplier's site")
        << it << 2 << 0 << 0 << "cbi_no_iban.txt"
        << QStringList{companyIbanMissing, ibanMissing.arg(QStringLiteral("200005")), Completed};
    QTest::newRow("several rows") << it << 3 << 0 << 0 << "cbi_several.txt"
                                  << QStringList{Completed};
    QTest::newRow("several rows grouped, with descriptions")
        << it << 3 << 1 << 1 << "cbi_several_grouped.txt" << QStringList{Completed};
    QTest::newRow("bank data differ, unknown bank, supplier missing")
        << it << 4 << 0 << 0 << "cbi_bank_differs.txt"
        << QStringList{QStringLiteral("Si è verificato un errore in ricerca clienti"),
                       bankDiffers.arg(QStringLiteral("200003")),
                       ibanMissing.arg(QStringLiteral("200004")), Completed};
    QTest::newRow("names, series, short account, code page")
        << it << 12 << 0 << 1 << "cbi_names.txt" << QStringList{Completed};
}

void TestCreaFile::writesTheFileOfTheRules()
{
    QFETCH(QLocale, locale);
    QFETCH(int, number);
    QFETCH(int, raggruppa);
    QFETCH(int, modDescr);
    QFETCH(QString, golden);
    QFETCH(QStringList, messages);
    QLocale::setDefault(locale);
    currentSettings().raggruppa = quint8(raggruppa);
    currentSettings().modDescr = quint8(modDescr);

    Distinta saved = create(distintaData(number));
    QVERIFY(m_store->Salva(saved, false, false));
    m_prompter->clear();
    // A file of the same name from an earlier run is replaced whole.
    QFile old(pathOf(number));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(5000, 'x'));
    old.close();

    Distinta d = read(number);
    bankfile::ConfirmedCreaFileDialog dialog;
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Written);
    messages.replaceInStrings(Completed, bankfile::completedMessage(pathOf(number)));
    QCOMPARE(m_prompter->texts(), messages);

    const QByteArray written = readAll(pathOf(number));
    QCOMPARE(test::cbiFileProblems(written), QString());
    const QByteArray expected = goldenFile(golden);
    QVERIFY(!expected.isEmpty());
    const QList<QByteArray> writtenLines = written.split('\n');
    const QList<QByteArray> expectedLines = expected.split('\n');
    for (int i = 0; i < std::min(writtenLines.size(), expectedLines.size()); ++i)
        QCOMPARE(writtenLines.at(i), expectedLines.at(i));
    QCOMPARE(written, expected);

    QCOMPARE(d.header().flg_stato, QStringLiteral("F"));
    QCOMPARE(read(number).header().flg_stato, QStringLiteral("F"));
    // Nothing else was left in the folder.
    QCOMPARE(QDir(OrvidaDir() + QStringLiteral("D_STM")).entryList(QDir::Files),
             QStringList{QStringLiteral("CBI_%1.txt").arg(number)});
}

void TestCreaFile::dialogShowsTheDistintaAndGivesBackNameAndReferences()
{
    currentSettings().raggruppa = 1;
    Distinta d = create(distintaData(3));
    QVERIFY(m_store->Salva(d, false, false));
    d = read(3);
    QTemporaryDir elsewhere;
    SpyDialog dialog;
    // A typed name is used as it stands: no folder or extension is added.
    dialog.fileName = elsewhere.path() + QStringLiteral("/distinta tre");
    dialog.rifMitt = QStringLiteral("NUOVI RIF");
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Written);

    QCOMPARE(dialog.calls, 1);
    QVERIFY(dialog.grouped);
    QCOMPARE(dialog.shown.codDistinta, QStringLiteral("     3"));
    QCOMPARE(dialog.shown.dataDistinta, QStringLiteral("15/01/2024"));
    QCOMPARE(dialog.shown.codSia, QStringLiteral("A1B2C"));
    QCOMPARE(dialog.shown.contoOrd, QStringLiteral("000000123456"));
    QCOMPARE(dialog.shown.rifMitt, QStringLiteral("PAGAMENTI"));
    QCOMPARE(dialog.shown.fileName, OrvidaDir() + QStringLiteral("D_STM/CBI_3.txt"));
    QCOMPARE(dialog.shown.fileTag, QStringLiteral("/CBI_3.txt"));

    QVERIFY(!QFile::exists(pathOf(3)));
    const QByteArray written = readAll(elsewhere.path() + QStringLiteral("/distinta tre"));
    QCOMPARE(test::cbiFileProblems(written), QString());
    // The references came back into the header, and the file took them from there.
    QCOMPARE(written.mid(19, 20), QByteArray("3_NUOVI RIF         "));
    QCOMPARE(read(3).header().des_riferimenti, QStringLiteral("NUOVI RIF"));
}

void TestCreaFile::unsavedChangesAreSavedFirst()
{
    Distinta d = create(distintaData(1));
    QStringList log;
    SpyDialog dialog;
    dialog.log = &log;
    const auto save = [&](Distinta &distinta) {
        log << QStringLiteral("save");
        const QString code = distinta.header().cod_distinta;
        if (!m_store->Salva(distinta, false, false))
            return false;
        m_store->Leggi(distinta, code);
        return true;
    };
    QCOMPARE(run(d, dialog, true, save), CreaFileCommand::Outcome::Written);
    QCOMPARE(log, (QStringList{QStringLiteral("save"), QStringLiteral("dialog")}));
    QCOMPARE(readAll(pathOf(1)), goldenFile(QStringLiteral("cbi_one_row.txt")));
    QCOMPARE(m_prompter->texts(), QStringList{bankfile::completedMessage(pathOf(1))});
}

void TestCreaFile::refusedDistinteNeverOpenTheDialog_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("icon");
    QTest::addColumn<int>("outcome");
    QTest::newRow("no distinta") << "none" << QString() << 0
                                 << int(CreaFileCommand::Outcome::NotRun);
    QTest::newRow("number zero") << "zero" << QString() << 0
                                 << int(CreaFileCommand::Outcome::NotRun);
    QTest::newRow("currency other than the euro")
        << "dollars"
        << QStringLiteral(
               "ATTENZIONE!\r\nNon è possibile generare un file bonifico per una distinta "
               "con valuta diversa dall'EURO!")
        << int(Icon::Exclamation) << int(CreaFileCommand::Outcome::NotEuro);
    QTest::newRow("bank transfer without account number")
        << "anomaly"
        << QStringLiteral("Si sono riscontrate anomalie nei dati della distinta. \r\nEseguire "
                          "'Controllo completezza distinta' ")
        << int(Icon::Critical) << int(CreaFileCommand::Outcome::Anomalies);
    QTest::newRow("the save of the changes fails")
        << "unsaved" << QString() << 0 << int(CreaFileCommand::Outcome::NotSaved);
}

void TestCreaFile::refusedDistinteNeverOpenTheDialog()
{
    QFETCH(QString, kind);
    QFETCH(QString, message);
    QFETCH(int, icon);
    QFETCH(int, outcome);
    Distinta d =
        create(distintaData(1), kind == u"dollars" ? QStringLiteral("US") : QStringLiteral("EU"));
    if (kind == u"none")
        d = Distinta();
    if (kind == u"zero")
        d.editHeader().cod_distinta = QStringLiteral("     0");
    if (kind == u"anomaly")
        d.righe.edit(0).des_num_cc = QString(20, u' ');
    bool saveCalled = false;
    SpyDialog dialog;
    const auto failingSave = [&](Distinta &) {
        saveCalled = true;
        return false;
    };
    QCOMPARE(int(run(d, dialog, kind == u"unsaved", failingSave)), outcome);
    QCOMPARE(dialog.calls, 0);
    QCOMPARE(saveCalled, kind == u"unsaved");
    if (message.isEmpty()) {
        QVERIFY(m_prompter->shown().isEmpty());
    } else {
        QCOMPARE(m_prompter->shown().size(), 1);
        QCOMPARE(m_prompter->shown().first().text, message);
        QCOMPARE(int(m_prompter->shown().first().icon), icon);
    }
    QVERIFY(QDir(OrvidaDir() + QStringLiteral("D_STM")).isEmpty());
    QCOMPARE(m_faulty->rewrites(), 0);
}

void TestCreaFile::cancellingLeavesNoFileAndNoChange()
{
    Distinta d = create(distintaData(3));
    QVERIFY(m_store->Salva(d, false, false));
    d = read(3);
    m_faulty->reset();
    m_prompter->clear();
    SpyDialog dialog;
    dialog.answer = QString();
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Cancelled);
    QCOMPARE(dialog.calls, 1);
    QVERIFY(QDir(OrvidaDir() + QStringLiteral("D_STM")).isEmpty());
    QVERIFY(m_prompter->shown().isEmpty());
    QCOMPARE(m_faulty->rewrites(), 0);
    QVERIFY(!d.hasChanges());
    QCOMPARE(read(3).header().flg_stato, QStringLiteral("P"));
}

void TestCreaFile::failureKeepsThePreviousFile()
{
    // A row without its amount in distinta cannot be paid: the command stops under the error
    // trap, and the file of an earlier run is still there as it was.
    DistintaData s = distintaData(3);
    Distinta d = create(s);
    d.righe.edit(2).val_imp_indist_val.reset();
    QVERIFY(m_store->Salva(d, false, false));
    d = read(3);
    QFile old(pathOf(3));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("earlier file\r\n");
    old.close();
    m_prompter->clear();
    m_prompter->script({Answer::Yes});

    bankfile::ConfirmedCreaFileDialog dialog;
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Failed);
    QCOMPARE(m_prompter->shown().size(), 1);
    QVERIFY(m_prompter->lastText().contains(QStringLiteral("frmMain!Sub cmdCreaFile_ClickED()")));
    QCOMPARE(readAll(pathOf(3)), QByteArray("earlier file\r\n"));
    QCOMPARE(QDir(OrvidaDir() + QStringLiteral("D_STM")).entryList(QDir::Files),
             QStringList{QStringLiteral("CBI_3.txt")});
    QCOMPARE(read(3).header().flg_stato, QStringLiteral("P"));
}

void TestCreaFile::unpayableRowsAreRefused()
{
    // An invoice paid with a negative amount and one paid with nothing: neither reaches the
    // bank, and the clerk is told which rows they are.
    Distinta d = create(distintaData(3));
    for (auto [row, amount] : {std::pair{0, -5.0}, std::pair{2, 0.0}}) {
        Riga &r = d.righe.edit(row);
        r.val_imp_residuo_val = r.val_imp_residuo_eur = amount;
        r.val_imp_indist_val = r.val_imp_indist_eur = amount;
    }
    QVERIFY(m_store->Salva(d, false, false));
    d = read(3);
    m_faulty->reset();
    m_prompter->clear();

    bankfile::ConfirmedCreaFileDialog dialog;
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Refused);
    QCOMPARE(m_prompter->shown().size(), 1);
    const QStringList lines = m_prompter->lastText().split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines.at(1).endsWith(QStringLiteral(": importo -5,00")), qPrintable(lines.at(1)));
    QVERIFY2(lines.at(2).endsWith(QStringLiteral(": importo 0,00")), qPrintable(lines.at(2)));
    QVERIFY(!QFileInfo::exists(pathOf(3)));
    QCOMPARE(m_faulty->rewrites(), 0);
    QCOMPARE(read(3).header().flg_stato, QStringLiteral("P"));
}

void TestCreaFile::plainRowsMarkTheirDueItemsGroupedRowsDoNot_data()
{
    QTest::addColumn<int>("raggruppa");
    QTest::newRow("plain rows") << 0;
    QTest::newRow("grouped rows") << 1;
}

void TestCreaFile::plainRowsMarkTheirDueItemsGroupedRowsDoNot()
{
    // The due items of the saved distinta freed in the suite meanwhile: a file of plain rows
    // marks them again before it is written, and stops there when the suite refuses the
    // rewrites (the marks are completed later); grouped rows mark nothing while the file is
    // written.
    QFETCH(int, raggruppa);
    currentSettings().raggruppa = quint8(raggruppa);
    Distinta d = create(distintaData(3));
    QVERIFY(m_store->Salva(d, false, false));
    d = read(3);
    for (int i = 0; i < d.righe.size(); ++i)
        QVERIFY(m_inst->setMarks(d.righe.at(i).flg_flag_colpar, d.righe.at(i).des_link_orvida,
                                 QStringLiteral("0"), QStringLiteral("0")));
    m_faulty->reset();
    m_faulty->failRewritesFrom(1);
    m_prompter->clear();
    m_prompter->script({Answer::Yes});
    bankfile::ConfirmedCreaFileDialog dialog;
    const CreaFileCommand::Outcome outcome = run(d, dialog);
    const QString refused = QStringLiteral("Errore in aggiornamento archivi [orvida]");
    if (raggruppa == 0) {
        QCOMPARE(outcome, CreaFileCommand::Outcome::Failed);
        QCOMPARE(m_faulty->rewrites(), 1);
        QVERIFY(m_prompter->lastText().contains(refused));
        QVERIFY(!QFile::exists(pathOf(3)));
        QCOMPARE(read(3).header().flg_stato, QStringLiteral("P"));
        m_faulty->reset();
        QVERIFY(m_store->completePendingWriteBacks());
        QCOMPARE(m_faulty->rewrites(), d.righe.size());
    } else {
        QCOMPARE(outcome, CreaFileCommand::Outcome::Written);
        QVERIFY(QFile::exists(pathOf(3)));
        // Only the save of the state "F" marks them; the suite refuses, the state is saved.
        QCOMPARE(m_faulty->rewrites(), 1);
        QVERIFY(m_prompter->texts().at(m_prompter->texts().size() - 2).startsWith(refused));
        QCOMPARE(m_prompter->lastText(), bankfile::completedMessage(pathOf(3)));
        QCOMPARE(read(3).header().flg_stato, QStringLiteral("F"));
    }
}

void TestCreaFile::oddDataKeepEveryLineItsWidth()
{
    // Line ends, NULs and bytes the code page leaves undefined in the suite's records, and in
    // the distinta text outside the code page and longer than any field: the file is still
    // made of whole lines of their width.
    ErpRecord odd = master(QStringLiteral("200001"), QStringLiteral("ROSSI\r\nMARIO"),
                           QStringLiteral("VIA\tGARIBALDI"), QStringLiteral("1\n121"),
                           QStringLiteral("TORINO"), QStringLiteral("T\r"), QString(), QString());
    odd.buffer()[20] = '\0';
    odd.buffer()[21] = char(0x81);
    QVERIFY(m_inst->put({odd}));

    Testata header = create(distintaData(1)).header();
    header.des_riferimenti = QStringLiteral("\U0001F600\r\n");
    RecordSet<Riga> rows;
    for (int i = 0; i < 250; ++i) {
        Riga r = rigaOf(distintaData(1).rows.first());
        r.des_num_doc =
            QStringLiteral("\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600");
        r.des_serie_doc = QStringLiteral("\n");
        r.dat_data_doc = QStringLiteral("2023\r\n15");
        r.des_scadenza = QString(60, QChar(0x2248));
        r.cod_banca_cli = i % 2 ? QStringLiteral("02008") : QStringLiteral("03069");
        r.val_imp_indist_val = 1e13 + i;
        rows.append(r);
    }
    const archives::CompanyData company = archives::CompanyData::read(*m_erp);
    bankfile::BonificiFile file(*m_erp, company, true);
    file.build(header, rows);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QCOMPARE(file.write(buffer), 8 * 250 + 2 - 250 / 2);
    QCOMPARE(test::cbiFileProblems(buffer.data()), QString());
}

QTEST_GUILESS_MAIN(TestCreaFile)
#include "tst_creafile.moc"
