#include "bankdata.h"
#include "bankfilefixture.h"

#include "archives/store/archivenumbers.h"
#include "bankfile/filecommandsupport.h"
#include "bankfile/ribafilecommand.h"
#include "bankfile/ribarecords.h"
#include "core/distintacode.h"
#include "startup/companyenvironment.h"

#include <QDir>
#include <QTest>

using namespace pg;
using namespace pg::distinta;
using namespace pg::test;
using pg::archives::ErpRecord;
using pg::bankfile::RibaFileCommand;

namespace {

// The RiBa dialog as the tests answer it: it keeps what it was shown and gives back the SIA
// code and the grouping it was told.
class RibaSpy : public bankfile::RibaFileDialog
{
public:
    QString answer = QStringLiteral("GO");
    std::optional<QString> sia;
    bool raggruppa = true;
    int calls = 0;
    bankfile::RibaFileFields shown;

    QString exec(bankfile::RibaFileFields &fields) override
    {
        ++calls;
        shown = fields;
        if (sia)
            fields.codSia = *sia;
        fields.raggruppa = raggruppa;
        return answer;
    }
};

ErpRecord customer(const QString &code, const QString &name, const QString &address,
                   const QString &cap, const QString &city, const QString &province,
                   const QString &taxCode, const QString &vat)
{
    ErpRecord r = master(code, name, address, cap, city, province, taxCode, vat);
    r.setText(QStringLiteral("ind_clifor"), QStringLiteral("C"));
    return r;
}

// A row of a customer's ricevuta bancaria.
Riga rbRow(const char *link, const char *account, const char *doc, const char *date,
           const char *due, double amount, const char *bank = "03069", const char *agency = "09606")
{
    Riga r =
        rigaOf(RowData{QLatin1StringView(link), QLatin1StringView(account), QLatin1StringView(doc),
                       QLatin1StringView(date), QLatin1StringView(bank), QLatin1StringView(agency),
                       QString(), amount, QString(), QStringLiteral(" "), QString()});
    r.cod_tipo_pag = QStringLiteral("1");
    r.flg_ind_clifor = QStringLiteral("C");
    r.dat_data_scad = QLatin1StringView(due);
    return r;
}

// The customers' distinta 7: one customer with two invoices due on one day and one due later,
// the other with two invoices due on different days, one of them an instalment and with a
// bill number, amounts whose cents a careless rounding loses (0.29, 1.005).
QList<Riga> rowsOf7()
{
    Riga d =
        rbRow("0000000000704", "100002", "77", "20240105", "20240229", 350.5, "02008", "01600");
    d.des_serie_doc = QStringLiteral("A");
    d.des_num_rata = QStringLiteral("2");
    d.des_num_effetto = QStringLiteral("4711");
    d.cod_sedeamm = QStringLiteral("000001");
    Riga e =
        rbRow("0000000000705", "100002", "78", "20240108", "20240331", 49.99, "02008", "01600");
    e.des_serie_doc = QStringLiteral("A");
    e.cod_sedeamm = QStringLiteral("000001");
    return {rbRow("0000000000701", "100001", "501", "20240110", "20240229", 0.29),
            rbRow("0000000000702", "100001", "502", "20240112", "20240229", 1.005),
            rbRow("0000000000703", "100001", "503", "20240115", "20240331", 1200.10), d, e};
}

} // namespace

class TestRibaFile : public QObject, protected BankFileFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void writesTheReferenceFile();
    void refusedFilesTellWhyAndTouchNothing_data();
    void refusedFilesTellWhyAndTouchNothing();
    void invoicesFillTwoLinesAndCountTheRest_data();
    void invoicesFillTwoLinesAndCountTheRest();

private:
    // Distinta 7 saved with the rows given, and read again.
    Distinta saved7(const QList<Riga> &rows, const QString &type = QStringLiteral("C"));
    QString markOf(const Riga &row);
};

void TestRibaFile::init()
{
    ErpRecord az3(archives::TabelleAzienda, QStringLiteral("AZ3"));
    az3.setText(QStringLiteral("partita_iva"), QStringLiteral("IT01234567897"));
    QList<ErpRecord> records = suiteRecords();
    records.removeIf([](const ErpRecord &r) { return r.recordType() == u"AZ3"; });
    records << az3
            << site(QStringLiteral("100002"), QStringLiteral("PIAZZA DEL CAMPO 1"),
                    QStringLiteral("53100"), QStringLiteral("SIENA"), QStringLiteral("SI"))
            << customer(QStringLiteral("100001"),
                        QStringLiteral("Società Agricola Perù & Cantù S.r.l."),
                        QStringLiteral("Via Nazionale 12"), QStringLiteral("00184"),
                        QStringLiteral("Roma"), QStringLiteral("RM"), QString(),
                        QStringLiteral("IT02222222222"))
            << customer(QStringLiteral("100002"), QStringLiteral("Bianchi Nicolò"),
                        QStringLiteral("Via Garibaldi 3"), QStringLiteral("10121"),
                        QStringLiteral("Torino"), QStringLiteral("TO"),
                        QStringLiteral("RSSMRA85T10A562S"), QString())
            << customer(QStringLiteral("100003"), QStringLiteral("Ditta Senza Dati"), QString(),
                        QString(), QString(), QString(), QString(),
                        QStringLiteral("IT01234567890"));
    for (const char *link : {"01", "02", "03", "04", "05", "06", "07", "08", "09"})
        records << TestInstallation::dueItem(QStringLiteral("F"),
                                             QStringLiteral("00000000007") + QLatin1String(link),
                                             QStringLiteral("1"), QStringLiteral("100001"), 1);
    QVERIFY(setUpSuite(records));
}

void TestRibaFile::cleanup()
{
    tearDownSuite();
}

Distinta TestRibaFile::saved7(const QList<Riga> &rows, const QString &type)
{
    Distinta d = distintaOf(*m_store, DistintaData{7, false, QString(), 0, 0, {}});
    d.editHeader().flg_tipo = type;
    for (Riga r : rows) {
        r.cod_distinta = d.header().cod_distinta;
        d.righe.append(r);
    }
    if (!m_store->Salva(d, false, false))
        return {};
    m_store->Leggi(d, formatDistintaCode(7));
    m_prompter->clear();
    m_faulty->reset();
    return d;
}

QString TestRibaFile::markOf(const Riga &row)
{
    ErpRecord item(archives::Scadenze);
    item.setText(QStringLiteral("flag_colpar"), row.flg_flag_colpar);
    item.setText(QStringLiteral("link"), row.des_link_orvida);
    return m_erp->readEq(item, 2)
               ? item.text(QStringLiteral("mark_dist")) + item.text(QStringLiteral("data_dist"))
               : QStringLiteral("<missing>");
}

void TestRibaFile::writesTheReferenceFile()
{
    // Grouped: the two invoices of 100001 due on 29/02 make one receivable; 100002's are due
    // on different days and stay two. Then the file again, ungrouped: a receivable a row, the
    // same total.
    Distinta d = saved7(rowsOf7());
    QVERIFY(d.hasHeader());
    for (const bool grouped : {true, false}) {
        m_prompter->clear();
        // The suite's marks lost meanwhile: the file puts them back as the save gave them.
        for (int i = 0; i < d.righe.size(); ++i)
            QVERIFY(m_inst->setMarks(d.righe.at(i).flg_flag_colpar, d.righe.at(i).des_link_orvida,
                                     QStringLiteral("0"), QStringLiteral("0")));
        const QString path = OrvidaDir() + QStringLiteral("D_STM/RIBA_7.txt");
        QFile::remove(path);
        RibaSpy dialog;
        dialog.raggruppa = grouped;
        RibaFileCommand command(*m_store, *m_erp, archives::CompanyData::read(*m_erp), dialog);
        QCOMPARE(command.cmdCreaFile(d, false, {}), RibaFileCommand::Outcome::Written);
        QCOMPARE(m_prompter->texts(), QStringList{bankfile::completedMessage(path)});
        QCOMPARE(dialog.shown.fileName, path);
        QCOMPARE(dialog.shown.fileTag, QStringLiteral("/RIBA_7.txt"));
        QCOMPARE(dialog.shown.codSia, QStringLiteral("A1B2C"));
        QCOMPARE(dialog.shown.dataDistinta, QStringLiteral("15/01/2024"));

        const QByteArray written = readAll(path);
        if (grouped) {
            QCOMPARE(written, goldenFile(QStringLiteral("riba_reference.txt")));
        } else {
            const QList<QByteArray> lines = written.split('\n');
            QCOMPARE(lines.size(), 5 * 7 + 2 + 1);
            QCOMPARE(lines.at(lines.size() - 2).mid(45, 37),
                     QByteArray("0000005000000000160189000000000000000"));
        }
        m_store->Leggi(d, formatDistintaCode(7));
        QCOMPARE(d.header().flg_stato, QStringLiteral("F"));
        for (int i = 0; i < d.righe.size(); ++i)
            QCOMPARE(markOf(d.righe.at(i)), QStringLiteral("B20240115"));
    }
}

void TestRibaFile::refusedFilesTellWhyAndTouchNothing_data()
{
    QTest::addColumn<QList<Riga>>("rows");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("sia");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("outcome");
    QTest::addColumn<int>("dialogCalls");
    QTest::addColumn<QString>("message");
    const QString go = QStringLiteral("GO");

    // Every problem of every receivable in one message: a credit note, a customer without tax
    // code, address and bank, a due date before the presentation, a customer the suite does
    // not know, a currency other than the euro, no SIA code.
    Riga creditNote = rbRow("0000000000706", "100001", "504", "20240120", "20240229", -0.29);
    Riga early = rbRow("0000000000707", "100003", "600", "20240105", "20240110", 10, "", "");
    Riga unknown = rbRow("0000000000708", "100004", "601", "20240108", "20240229", 20);
    unknown.cod_valuta = QStringLiteral("US");
    QTest::newRow("checks")
        << (rowsOf7() << creditNote << early << unknown) << "C"
        << "" << go << int(RibaFileCommand::Outcome::Refused) << 1
        << QStringLiteral(
               "Il file RiBa non è stato creato. Correggere i dati seguenti e ripetere:\r\n"
               "- Manca il codice SIA dell'azienda.\r\n"
               "- Cliente 100001 (Società Agricola Perù & Cantù S.r.l.), documento 504 del "
               "20/01/2024: importo -0,29 non positivo.\r\n"
               "- Cliente 100003 (Ditta Senza Dati): il codice fiscale o la partita IVA "
               "'01234567890' non è valido.\r\n"
               "- Cliente 100003 (Ditta Senza Dati): manca l'indirizzo (via, CAP e comune).\r\n"
               "- Cliente 100003 (Ditta Senza Dati): manca la banca d'appoggio (ABI e CAB).\r\n"
               "- Cliente 100003 (Ditta Senza Dati), documento 600 del 05/01/2024: scadenza "
               "10/01/2024 anteriore alla data di presentazione 15/01/2024.\r\n"
               "- Cliente 100004: anagrafica non trovata.\r\n"
               "- Cliente 100004, documento 601 del 08/01/2024: valuta 'US' diversa dall'euro.");

    Riga transfer = rbRow("0000000000709", "100002", "79", "20240109", "20240229", 5);
    transfer.cod_tipo_pag = QStringLiteral("6");
    QTest::newRow("a bank transfer among the ricevute")
        << (rowsOf7() << transfer) << "C"
        << "A1B2C" << go << int(RibaFileCommand::Outcome::OtherTypes) << 0
        << QStringLiteral("Il file RiBa raccoglie solo ricevute bancarie: togliere dalla distinta "
                          "le scadenze seguenti e ripetere:\r\n"
                          "- Cliente 100002, documento 79 del 09/01/2024: Bonifico");
    QTest::newRow("a suppliers' distinta")
        << rowsOf7() << "F"
        << "A1B2C" << go << int(RibaFileCommand::Outcome::NotCustomers) << 0
        << QStringLiteral("La distinta 7 è una distinta fornitori: il file RiBa si crea per le "
                          "distinte clienti.");
    QTest::newRow("cancelled") << rowsOf7() << "C"
                               << "A1B2C" << QString() << int(RibaFileCommand::Outcome::Cancelled)
                               << 1 << QString();
}

void TestRibaFile::refusedFilesTellWhyAndTouchNothing()
{
    QFETCH(QList<Riga>, rows);
    QFETCH(QString, type);
    QFETCH(QString, sia);
    QFETCH(QString, answer);
    QFETCH(int, outcome);
    QFETCH(int, dialogCalls);
    QFETCH(QString, message);
    Distinta d = saved7(rows, type);
    QVERIFY(d.hasHeader());
    RibaSpy dialog;
    dialog.sia = sia;
    dialog.answer = answer;
    RibaFileCommand command(*m_store, *m_erp, archives::CompanyData::read(*m_erp), dialog);
    QCOMPARE(int(command.cmdCreaFile(d, false, {})), outcome);
    QCOMPARE(dialog.calls, dialogCalls);
    QCOMPARE(m_prompter->texts(), message.isEmpty() ? QStringList() : QStringList{message});
    QVERIFY(QDir(OrvidaDir() + QStringLiteral("D_STM")).isEmpty());
    QCOMPARE(m_faulty->rewrites(), 0);
    m_store->Leggi(d, formatDistintaCode(7));
    QCOMPARE(d.header().flg_stato, QStringLiteral("P"));
}

void TestRibaFile::invoicesFillTwoLinesAndCountTheRest_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("one") << 1 << QStringList{QStringLiteral("Fatt. 1001 del 10/01/2024")};
    QTest::newRow("three fit in two lines, broken between invoices")
        << 3
        << QStringList{QStringLiteral("Fatt. 1001 del 10/01/2024,"),
                       QStringLiteral("1002 del 10/01/2024, 1003 del 10/01/2024")};
    QTest::newRow("five do not") << 5
                                 << QStringList{QStringLiteral("Fatt. 1001 del 10/01/2024,"),
                                                QStringLiteral("1002 del 10/01/2024 e altre 3")};
}

void TestRibaFile::invoicesFillTwoLinesAndCountTheRest()
{
    QFETCH(int, count);
    QFETCH(QStringList, lines);
    QStringList documents;
    for (int i = 1; i <= count; ++i)
        documents << QStringLiteral("%1 del 10/01/2024").arg(1000 + i);
    QCOMPARE(bankfile::RibaRecords::referenceLines(documents, 40, 2), lines);
}

QTEST_GUILESS_MAIN(TestRibaFile)
#include "tst_ribafile.moc"
