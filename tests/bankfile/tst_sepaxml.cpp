#include "bankdata.h"
#include "bankfilefixture.h"
#include "faultyrecordmanager.h"
#include "scriptedprompter.h"
#include "spydialog.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/companydata.h"
#include "bankfile/confirmedcreafiledialog.h"
#include "bankfile/creafilecommand.h"
#include "bankfile/filecommandsupport.h"
#include "bankfile/ibancheck.h"
#include "bankfile/sepatext.h"
#include "bankfile/sepaxmlfile.h"
#include "bankfile/xsdvalidator.h"
#include "core/checkdigits.h"
#include "core/distintacode.h"
#include "core/money.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::distinta;
using pg::archives::ErpRecord;
using pg::bankfile::CreaFileCommand;
using pg::bankfile::IbanCheck;
using pg::bankfile::SepaXmlFile;
using pg::bankfile::XsdValidator;
using namespace pg::test;

namespace {

const QString Completed = QStringLiteral("Elaborazione Completata");
const QDateTime Created(QDate(2024, 1, 15), QTime(10, 30, 0));

QStringList strings(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *t : texts)
        list << QString::fromUtf8(t);
    return list;
}

} // namespace

class TestSepaXml : public QObject, protected BankFileFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void textsInTheSepaSet_data();
    void textsInTheSepaSet();
    void ibanChecks_data();
    void ibanChecks();
    void messageOfTheDistinta_data();
    void messageOfTheDistinta();
    void problemsStopTheFile_data();
    void problemsStopTheFile();
    void oddDataStillValidate();
    void schemaViolationsNameTheElement();
    void dueItemsAreMarkedAsForTheFlatFile_data();
    void dueItemsAreMarkedAsForTheFlatFile();
    void cucIsAskedOnceAndRemembered_data();
    void cucIsAskedOnceAndRemembered();
    void formatChosenInTheDialogIsRemembered();

private:
    Distinta saved(int number);
    Distinta read(int number);
    SepaXmlFile built(int number, bool grouped);
    CreaFileCommand::Outcome run(Distinta &d, bankfile::CreaFileDialog &dialog);
    QString xmlPath(int number) const
    {
        return OrvidaDir() + QStringLiteral("D_STM/CBI_%1.xml").arg(number);
    }

    QTemporaryDir m_settingsDir;
};

void TestSepaXml::init()
{
    QVERIFY(
        setUpSuite(suiteRecords() + dueItemsOfTheDistinte() +
                   QList{bankOf(QStringLiteral("200001"), ibanOf(QStringLiteral("123456789012"))),
                         bankOf(QStringLiteral("200002"), ibanOf(QStringLiteral("12345"))),
                         bankOf(QStringLiteral("200006"), ibanOf(QStringLiteral("12345")))}));
    // The XML message, as a new user is proposed.
    currentSettings().formatoBonifici = BankFileFormat::SepaXml;
    currentSettings().cuc = QStringLiteral("0BF3K7Q2");
    // A store of the settings for each test and each of its data rows.
    UserSettings::useStoreFile(
        m_settingsDir.filePath(QStringLiteral("%1 %2.ini")
                                   .arg(QString::fromLatin1(QTest::currentTestFunction()),
                                        QString::fromLatin1(QTest::currentDataTag()))));
}

void TestSepaXml::cleanup()
{
    UserSettings::useStoreFile(QString());
    tearDownSuite();
}

Distinta TestSepaXml::saved(int number)
{
    Distinta d = distintaOf(*m_store, distintaData(number));
    if (!m_store->Salva(d, false, false))
        return Distinta();
    m_store->Leggi(d, formatDistintaCode(number));
    m_faulty->reset();
    return d;
}

Distinta TestSepaXml::read(int number)
{
    Distinta d;
    m_store->Leggi(d, formatDistintaCode(number));
    return d;
}

SepaXmlFile TestSepaXml::built(int number, bool grouped)
{
    const Distinta d = saved(number);
    SepaXmlFile file(*m_erp, archives::CompanyData::read(*m_erp));
    file.build(d.header(), grouped ? d.righeRagg : d.righe, QStringLiteral("0BF3K7Q2"), Created);
    return file;
}

CreaFileCommand::Outcome TestSepaXml::run(Distinta &d, bankfile::CreaFileDialog &dialog)
{
    CreaFileCommand command(*m_store, *m_erp, archives::CompanyData::read(*m_erp), dialog);
    return command.cmdCreaFile(d, false, {});
}

void TestSepaXml::textsInTheSepaSet_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("maxLength");
    QTest::addColumn<QString>("expected");
    QTest::newRow("accents") << "Società Caffè Città di Forlì S.r.l." << 70
                             << "Societa Caffe Citta di Forli S.r.l.";
    QTest::newRow("letters spelled out")
        << "Straße Ærø Łódź Œuvre" << 70 << "Strasse AEro Lodz OEuvre";
    QTest::newRow("signs") << "Rossi & Figli \"Sede\" [Nord]; 50% €_1" << 70
                           << "Rossi + Figli 'Sede' (Nord), 50 EUR-1";
    QTest::newRow("ordinals and ligatures")
        << "Via Roma N° 5, 1ª ﬁla" << 70 << "Via Roma N. 5, 1a fila";
    QTest::newRow("control characters and blanks") << "  A\tB\r\n\u0001C  " << 70 << "A B C";
    QTest::newRow("outside the plane") << "Saldo \U0001F600 fine" << 70 << "Saldo fine";
    QTest::newRow("cut, no blank left at the cut") << "ABC DEF" << 4 << "ABC";
    QTest::newRow("spelled out beyond the length") << "ßßß" << 5 << "sssss";
}

void TestSepaXml::textsInTheSepaSet()
{
    QFETCH(QString, text);
    QFETCH(int, maxLength);
    QFETCH(QString, expected);
    const QString field = bankfile::SepaText::field(text, maxLength);
    QCOMPARE(field, expected);
    for (QChar c : bankfile::SepaText::latin(text))
        QVERIFY2(bankfile::SepaText::isLatin(c), qPrintable(QString(c)));
}

void TestSepaXml::ibanChecks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<IbanCheck::Result>("result");
    QTest::addColumn<QString>("abiCab");
    using R = IbanCheck::Result;
    QTest::newRow("italian") << "IT60X0542811101000000123456" << R::Valid << "0542811101";
    QTest::newRow("groups, small letters")
        << "it60 x054 2811 1010 0000 0123 456" << R::Valid << "0542811101";
    QTest::newRow("german") << "DE89370400440532013000" << R::Valid << "";
    QTest::newRow("digits swapped") << "IT60X0542811101000000124356" << R::WrongCheckDigits << "";
    QTest::newRow("one short") << "IT60X054281110100000012345" << R::WrongLength << "";
    QTest::newRow("no such country") << "XX60X0542811101000000123456" << R::UnknownCountry << "";
    QTest::newRow("letter for digit") << "IT6OX0542811101000000123456" << R::Malformed << "";
    QTest::newRow("blank") << "   " << R::Missing << "";
}

void TestSepaXml::ibanChecks()
{
    QFETCH(QString, text);
    QFETCH(IbanCheck::Result, result);
    QFETCH(QString, abiCab);
    const QString iban = IbanCheck::compact(text);
    QCOMPARE(IbanCheck::check(iban), result);
    QCOMPARE(IbanCheck::italianAbi(iban) + IbanCheck::italianCab(iban), abiCab);
}

void TestSepaXml::messageOfTheDistinta_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("grouped");
    QTest::addColumn<QString>("controlSum");
    QTest::addColumn<QStringList>("amounts");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("remittances");
    QTest::newRow("plain rows") << 3 << false << "350.50" << strings({"100.00", "200.50", "50.00"})
                                << strings({"ROSSI MARIO SRL", "ROSSI MARIO SRL", "VERDI SNC"})
                                << strings({"Fatt. 101 del 15/12/2023", "Fatt. 102 del 20/12/2023",
                                            "Fattura 55"});
    QTest::newRow("grouped rows") << 3 << true << "350.50" << strings({"300.50", "50.00"})
                                  << strings({"ROSSI MARIO SRL", "VERDI SNC"})
                                  << strings({"Vs.Fatt.101-102", "Fattura 55"});
    // A description without a letter of the set: the document paid.
    QTest::newRow("names and texts outside the set")
        << 12 << false << "0.50" << strings({"0.50"})
        << strings({"Societa Caffe Citta di Forli S.r.l."}) << strings({"Saldo Lodz 100"});
}

void TestSepaXml::messageOfTheDistinta()
{
    QFETCH(int, number);
    QFETCH(bool, grouped);
    QFETCH(QString, controlSum);
    QFETCH(QStringList, amounts);
    QFETCH(QStringList, names);
    QFETCH(QStringList, remittances);
    const SepaXmlFile file = built(number, grouped);
    QCOMPARE(file.problems(), QStringList());
    const QByteArray xml = file.document();
    const XsdValidator validator(XsdValidator::paymentRequestSchema());
    QVERIFY2(validator.isUsable(), qPrintable(validator.schemaError()));
    const QList<XsdValidator::Issue> issues = validator.validate(xml);
    QVERIFY2(issues.isEmpty(), qPrintable(issues.value(0).path + u' ' + issues.value(0).message));

    const auto one = [&](const char *path) { return texts(xml, QLatin1StringView(path)); };
    QCOMPARE(one("GrpHdr/MsgId"), QStringList{QStringLiteral("DIST%1-20240115103000").arg(number)});
    QCOMPARE(one("GrpHdr/NbOfTxs"), QStringList{QString::number(amounts.size())});
    QCOMPARE(one("GrpHdr/CtrlSum"), QStringList{controlSum});
    QCOMPARE(one("InitgPty/Id/OrgId/Othr/Id") + one("InitgPty/Id/OrgId/Othr/Issr"),
             strings({"0BF3K7Q2", "CBI"}));
    QCOMPARE(one("PmtInf/ReqdExctnDt/Dt"), strings({"2024-01-20"}));
    QCOMPARE(one("DbtrAcct/Id/IBAN"), strings({"IT60X0542811101000000123456"}));
    QCOMPARE(one("DbtrAgt/FinInstnId/ClrSysMmbId/MmbId"), strings({"05428"}));
    QCOMPARE(one("CdtTrfTxInf/Amt/InstdAmt"), amounts);
    QCOMPARE(one("CdtTrfTxInf/Cdtr/Nm"), names);
    QCOMPARE(one("CdtTrfTxInf/RmtInf/Ustrd"), remittances);
    QCOMPARE(one("CdtTrfTxInf/PmtId/EndToEndId").last(),
             QStringLiteral("DIST%1-RIGA%2").arg(number).arg(amounts.size()));
    QCOMPARE(one("CdtTrfTxInf/CdtrAcct/Id/IBAN").first(),
             ibanOf(number == 12 ? QStringLiteral("12345") : QStringLiteral("123456789012")));
    QCOMPARE(file.controlSumCents(), qRound64(distintaData(number).total * 100));
}

void TestSepaXml::problemsStopTheFile_data()
{
    QTest::addColumn<QString>("iban"); // of supplier 200001, on the rows' Intesa bank
    QTest::addColumn<QString>("problem");
    const QString rossi = QStringLiteral("Fornitore '200001' (ROSSI MARIO SRL): ");
    const QString valid = ibanOf(QStringLiteral("123456789012"));
    QString wrongDigits = valid;
    wrongDigits[2] = QChar(u'0' + (wrongDigits.at(2).digitValue() + 1) % 10);
    QTest::newRow("check digits") << wrongDigits
                                  << rossi + QStringLiteral("IBAN %1 con cifre di controllo "
                                                            "errate.")
                                                 .arg(wrongDigits);
    QTest::newRow("length")
        << valid.left(26)
        << rossi + QStringLiteral("IBAN %1 di 26 caratteri invece di 27.").arg(valid.left(26));
    QTest::newRow("missing") << QString() << rossi + QStringLiteral("IBAN mancante.");
    const QString otherBank = checkdigits::italianIban(
        QStringLiteral("02008"), QStringLiteral("01600"), QStringLiteral("123456789012"));
    QTest::newRow("another bank than the row's")
        << otherBank
        << rossi + QStringLiteral("l'IBAN %1 è della banca ABI 02008 CAB 01600, diversa da "
                                  "quella della scadenza (ABI 03069 CAB 09606).")
                       .arg(otherBank);
}

void TestSepaXml::problemsStopTheFile()
{
    QFETCH(QString, iban);
    QFETCH(QString, problem);
    QVERIFY(m_inst->put({bankOf(QStringLiteral("200001"), iban)}));
    // An earlier file of the distinta stays as it was.
    QVERIFY(QDir().mkpath(OrvidaDir() + QStringLiteral("D_STM")));
    QFile earlier(xmlPath(3));
    QVERIFY(earlier.open(QIODevice::WriteOnly));
    earlier.write("earlier");
    earlier.close();
    // The third row pays nothing, and the header's total is not the rows' any more.
    Distinta d = saved(3);
    d.righe.edit(2).val_imp_indist_val = 0.0;
    d.editHeader().val_importo_totale = 350.49;

    bankfile::ConfirmedCreaFileDialog dialog;
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Refused);
    // One message tells every problem, in the rows' order; two rows of 200001 say it once.
    const QStringList problems{
        problem,
        QStringLiteral("Disposizione 3, fornitore '200006' (VERDI SNC): importo 0,00 non "
                       "pagabile."),
        QStringLiteral("Il totale della distinta (350,49) è diverso dalla somma delle "
                       "disposizioni (300,50).")};
    QCOMPARE(m_prompter->shown().size(), 1);
    QCOMPARE(m_prompter->shown().first().text, SepaXmlFile::problemsMessage(problems));
    QVERIFY(m_prompter->shown().first().text.endsWith(QStringLiteral("\r\n- ") + problems.last()));
    // Nothing was written, marked or presented.
    QCOMPARE(readAll(xmlPath(3)), QByteArray("earlier"));
    QCOMPARE(m_faulty->rewrites(), 0);
    QCOMPARE(read(3).header().flg_stato, QStringLiteral("P"));
}

void TestSepaXml::oddDataStillValidate()
{
    // Line ends, NULs and undefined bytes in the suite's names and addresses, texts outside
    // the set and longer than any field in the rows, thousands of dispositions: the message
    // still passes the schema, and its control sum is the rows' to the cent.
    ErpRecord odd = master(QStringLiteral("200001"), QStringLiteral("ROSSI\r\nMARIO & C. <SRL>"),
                           QStringLiteral("VIA\tGARIBALDI"), QStringLiteral("1\n121"),
                           QStringLiteral("TORINO"), QStringLiteral("T\r"), QString(), QString());
    odd.buffer()[50] = '\0';
    odd.buffer()[51] = char(0x81);
    QVERIFY(m_inst->put({odd}));
    Testata header = distintaOf(*m_store, distintaData(1)).header();
    RecordSet<Riga> rows;
    qint64 cents = 0;
    for (int i = 0; i < 3000; ++i) {
        Riga r = rigaOf(distintaData(1).rows.first());
        r.des_num_doc = QStringLiteral("\U0001F600") + QString::number(i);
        r.des_scadenza = i % 2 ? QString(200, QChar(0x2248)) : QString(200, u'&');
        r.val_imp_indist_val = 0.01 * (i + 1) + 0.1;
        cents += money::toCents(*r.val_imp_indist_val);
        rows.append(r);
    }
    header.val_importo_totale = money::fromCents(cents);

    SepaXmlFile file(*m_erp, archives::CompanyData::read(*m_erp));
    QVERIFY2(file.build(header, rows, QStringLiteral("0BF3K7Q2"), Created),
             qPrintable(file.problems().join(u'\n')));
    const QByteArray xml = file.document();
    const QList<XsdValidator::Issue> issues =
        XsdValidator(XsdValidator::paymentRequestSchema()).validate(xml);
    QVERIFY2(issues.isEmpty(), qPrintable(issues.value(0).path + u' ' + issues.value(0).message));
    QCOMPARE(texts(xml, QStringLiteral("GrpHdr/CtrlSum")), QStringList{SepaXmlFile::amount(cents)});
    QCOMPARE(texts(xml, QStringLiteral("Cdtr/Nm")).first(),
             QStringLiteral("ROSSI MARIO + C. (SRL)"));
    const QStringList remittances = texts(xml, QStringLiteral("RmtInf/Ustrd"));
    QCOMPARE(remittances.size(), 3000);
    QCOMPARE(remittances.at(0), QString(140, u'+'));
    QCOMPARE(remittances.at(1), QStringLiteral("Vs.Fatt. 1 del 15/12/2023"));
}

void TestSepaXml::schemaViolationsNameTheElement()
{
    const SepaXmlFile file = built(3, false);
    QByteArray xml = file.document();
    // The third creditor's name grown beyond the 70 characters of the schema.
    QVERIFY(xml.contains("<Nm>VERDI SNC</Nm>"));
    xml.replace("<Nm>VERDI SNC</Nm>", "<Nm>" + QByteArray(80, 'V') + "</Nm>");
    const XsdValidator validator(XsdValidator::paymentRequestSchema());
    const QList<XsdValidator::Issue> issues = validator.validate(xml);
    QVERIFY(!issues.isEmpty());
    for (const XsdValidator::Issue &issue : issues)
        QCOMPARE(issue.path, QStringLiteral("/CBIPaymentRequest/PmtInf/CdtTrfTxInf[3]/Cdtr/Nm"));
    const int line = int(xml.left(xml.indexOf("<Nm>VVV")).count('\n')) + 1;
    QCOMPARE(issues.first().line, line);
    // The clerk reads, in Italian, where the fault is and what it is.
    QCOMPARE(issues.first().message,
             QStringLiteral("Elemento Nm: il testo è di 80 caratteri, più dei 70 ammessi."));
    QCOMPARE(file.describe(issues.first()),
             QStringLiteral("Elemento CdtTrfTxInf/Cdtr/Nm (riga %1), disposizione 3, fornitore "
                            "'200006' (VERDI SNC): ")
                     .arg(line) +
                 issues.first().message);

    // A date that is none, a value of the wrong form, and an element missing from its place.
    QByteArray other = file.document();
    QVERIFY(other.contains("<Dt>2024-01-20</Dt>"));
    other.replace("<Dt>2024-01-20</Dt>", "<Dt>2024-13-40</Dt>");
    QVERIFY(other.contains("<EndToEndId>DIST3-RIGA2</EndToEndId>"));
    other.replace("<EndToEndId>DIST3-RIGA2</EndToEndId>", "");
    QVERIFY(other.contains("<IBAN>IT60X0542811101000000123456</IBAN>"));
    other.replace("<IBAN>IT60X0542811101000000123456</IBAN>", "<IBAN>IT60-X054</IBAN>");
    const QList<XsdValidator::Issue> more = validator.validate(other);
    QCOMPARE(more.size(), 3);
    QCOMPARE(more.at(0).path, QStringLiteral("/CBIPaymentRequest/PmtInf/ReqdExctnDt/Dt"));
    QCOMPARE(more.at(0).message,
             QStringLiteral("Elemento Dt: il valore '2024-13-40' non è valido per il tipo "
                            "ISODate."));
    QCOMPARE(more.at(1).path, QStringLiteral("/CBIPaymentRequest/PmtInf/DbtrAcct/Id/IBAN"));
    QVERIFY2(more.at(1).message.startsWith(
                 QStringLiteral("Elemento IBAN: il valore 'IT60-X054' non ha la forma richiesta")),
             qPrintable(more.at(1).message));
    QCOMPARE(more.at(2).path, QStringLiteral("/CBIPaymentRequest/PmtInf/CdtTrfTxInf[2]/PmtId"));
    QCOMPARE(more.at(2).message,
             QStringLiteral("Elemento PmtId: mancano elementi; è atteso: EndToEndId."));
    QVERIFY(file.invalidMessage(more).endsWith(
        QStringLiteral("\r\n- Elemento CdtTrfTxInf/PmtId (riga %1), disposizione 2, fornitore "
                       "'200001' (ROSSI MARIO SRL): Elemento PmtId: mancano elementi; è atteso: "
                       "EndToEndId.")
            .arg(more.at(2).line)));

    // A schema that cannot be read validates nothing.
    const XsdValidator broken("<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\"><oops/>");
    QVERIFY(!broken.isUsable());
    QVERIFY(!broken.schemaError().isEmpty());
    QCOMPARE(broken.validate(file.document()).size(), 1);
    // Nor is a document that is not XML valid.
    QVERIFY(!validator.validate("<CBIPaymentRequest>").isEmpty());
}

void TestSepaXml::dueItemsAreMarkedAsForTheFlatFile_data()
{
    QTest::addColumn<int>("raggruppa");
    QTest::newRow("plain rows") << 0;
    QTest::newRow("grouped rows") << 1;
}

void TestSepaXml::dueItemsAreMarkedAsForTheFlatFile()
{
    // The due items of the saved distinta freed in the suite meanwhile: a file of plain rows
    // marks them again before it is written, and stops there when the suite refuses the
    // rewrites (the marks are completed later); grouped rows mark nothing while the file is
    // written.
    QFETCH(int, raggruppa);
    currentSettings().raggruppa = quint8(raggruppa);
    Distinta d = saved(3);
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
        QVERIFY(!QFile::exists(xmlPath(3)));
        QCOMPARE(read(3).header().flg_stato, QStringLiteral("P"));
        m_faulty->reset();
        QVERIFY(m_store->completePendingWriteBacks());
        QCOMPARE(m_faulty->rewrites(), d.righe.size());
    } else {
        QCOMPARE(outcome, CreaFileCommand::Outcome::Written);
        QVERIFY(QFile::exists(xmlPath(3)));
        // Only the save of the state "F" marks them; the suite refuses, the state is saved.
        QCOMPARE(m_faulty->rewrites(), 1);
        QVERIFY(m_prompter->texts().at(m_prompter->texts().size() - 2).startsWith(refused));
        QCOMPARE(m_prompter->lastText(), bankfile::completedMessage(xmlPath(3)));
        QCOMPARE(read(3).header().flg_stato, QStringLiteral("F"));
    }
}

void TestSepaXml::cucIsAskedOnceAndRemembered_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("remembered");
    QTest::newRow("given") << " abc12345 " << int(CreaFileCommand::Outcome::Written) << Completed
                           << "ABC12345";
    QTest::newRow("not given") << "" << int(CreaFileCommand::Outcome::NoCuc)
                               << CreaFileCommand::messaggioCucMancante() << "";
    QTest::newRow("not a CBI code")
        << "ABC-1234" << int(CreaFileCommand::Outcome::NoCuc)
        << CreaFileCommand::messaggioCucErrato(QStringLiteral("ABC-1234")) << "";
}

void TestSepaXml::cucIsAskedOnceAndRemembered()
{
    QFETCH(QString, answer);
    QFETCH(int, outcome);
    QFETCH(QString, message);
    QFETCH(QString, remembered);
    // Neither the settings nor the suite's company data hold the code.
    currentSettings().cuc.clear();
    Distinta d = saved(1);
    SpyDialog dialog;
    dialog.cuc = answer;
    QCOMPARE(int(run(d, dialog)), outcome);
    QCOMPARE(dialog.cucQuestions, 1);
    QCOMPARE(m_prompter->texts(),
             QStringList{message == Completed ? bankfile::completedMessage(xmlPath(1)) : message});
    QCOMPARE(currentSettings().cuc, remembered);
    QCOMPARE(UserSettings::userStore()->value(QStringLiteral("Bonifici/CUC")).toString(),
             remembered);
    QCOMPARE(QFile::exists(xmlPath(1)), !remembered.isEmpty());
    if (remembered.isEmpty())
        return;
    QCOMPARE(texts(readAll(xmlPath(1)), QStringLiteral("InitgPty/Id/OrgId/Othr/Id")),
             QStringList{remembered});

    // The next file asks nothing; the code of the suite's company data serves as well.
    d = read(1);
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Written);
    currentSettings().cuc.clear();
    ErpRecord az3(archives::TabelleAzienda, QStringLiteral("AZ3"));
    az3.setText(QStringLiteral("codice"), QString());
    az3.setText(QStringLiteral("cuc"), QStringLiteral("9ZZ99999"));
    QVERIFY(m_inst->put({az3}));
    d = read(1);
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Written);
    QCOMPARE(dialog.cucQuestions, 1);
    QCOMPARE(texts(readAll(xmlPath(1)), QStringLiteral("InitgPty/Id/OrgId/Othr/Id")),
             strings({"9ZZ99999"}));
}

void TestSepaXml::formatChosenInTheDialogIsRemembered()
{
    // A clerk who never chose is proposed the XML message.
    currentSettings() = UserSettings();
    currentSettings().cuc = QStringLiteral("0BF3K7Q2");
    Distinta d = saved(1);
    SpyDialog dialog;
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Written);
    QCOMPARE(dialog.shown.format, BankFileFormat::SepaXml);
    QCOMPARE(dialog.shown.fileTag, QStringLiteral("/CBI_1.xml"));
    QVERIFY(readAll(xmlPath(1)).startsWith("<?xml"));
    // Confirming the format proposed writes no setting.
    QVERIFY(!UserSettings::userStore()->contains(QStringLiteral("Bonifici/Formato")));

    // The flat file chosen in the dialog is written, named as it always was, and proposed
    // from then on.
    d = read(1);
    dialog.switchTo = BankFileFormat::CbiFlat;
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Written);
    QVERIFY(readAll(OrvidaDir() + QStringLiteral("D_STM/CBI_1.txt")).startsWith(" PC"));
    QCOMPARE(currentSettings().formatoBonifici, BankFileFormat::CbiFlat);
    UserSettings stored;
    stored.load(*UserSettings::userStore());
    QCOMPARE(stored.formatoBonifici, BankFileFormat::CbiFlat);
    d = read(1);
    dialog.switchTo.reset();
    QCOMPARE(run(d, dialog), CreaFileCommand::Outcome::Written);
    QCOMPARE(dialog.shown.format, BankFileFormat::CbiFlat);
    QCOMPARE(dialog.shown.fileTag, QStringLiteral("/CBI_1.txt"));

    // A format proposed by the caller (the command line) is not remembered.
    QVERIFY(QFile::remove(xmlPath(1)));
    d = read(1);
    CreaFileCommand command(*m_store, *m_erp, archives::CompanyData::read(*m_erp), dialog);
    command.setProposedFormat(BankFileFormat::SepaXml);
    QCOMPARE(command.cmdCreaFile(d, false, {}), CreaFileCommand::Outcome::Written);
    QCOMPARE(dialog.shown.format, BankFileFormat::SepaXml);
    QVERIFY(QFile::exists(xmlPath(1)));
    stored.load(*UserSettings::userStore());
    QCOMPARE(stored.formatoBonifici, BankFileFormat::CbiFlat);
}

QTEST_GUILESS_MAIN(TestSepaXml)
#include "tst_sepaxml.moc"
