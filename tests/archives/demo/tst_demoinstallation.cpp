#include "scriptedprompter.h"

#include "archives/demo/demogenerator.h"
#include "archives/demo/demoinstallation.h"
#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erpsession.h"
#include "core/checkdigits.h"
#include "core/cp1252.h"
#include "core/vbdate.h"
#include "startup/companyenvironment.h"
#include "startup/inifile.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::archives;

namespace {

// Every record of a demo, as the generator hands them out.
QList<ErpRecord> generate(const DemoOptions &options)
{
    QList<ErpRecord> records;
    DemoGenerator generator(options);
    generator.generate([&](const ErpRecord &record) {
        records.append(record);
        return true;
    });
    return records;
}

QList<ErpRecord> ofArchive(const QList<ErpRecord> &records, int archive,
                           const QString &type = QString())
{
    QList<ErpRecord> out;
    for (const ErpRecord &r : records)
        if (r.archive() == archive && (type.isEmpty() || r.recordType() == type))
            out.append(r);
    return out;
}

QList<QByteArray> buffersOf(const QList<ErpRecord> &records)
{
    QList<QByteArray> out;
    for (const ErpRecord &r : records)
        out << QByteArray::number(r.archive()) + ':' + r.buffer();
    return out;
}

// Kind and code of the account a record belongs to ("F400001").
QString accountOf(const ErpRecord &r)
{
    return r.text(QStringLiteral("ind_clifor")) + r.text(QStringLiteral("cod_clifor"));
}

bool isDigits(const QString &text, int count)
{
    return QRegularExpression(QStringLiteral("^\\d{%1}$").arg(count)).match(text).hasMatch();
}

// A temporary directory with a short path: the installation's directories must fit the
// 39 characters of the suite's ini values.
QString shortTempTemplate()
{
    return QDir::tempPath() + QStringLiteral("/pgdXXXXXX");
}

} // namespace

class TestDemoInstallation : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void checkDigitsOfKnownCodes_data();
    void checkDigitsOfKnownCodes();
    void codiceFiscaleOfAPerson();
    void sameSeedSameRecords();
    void bankDataIsValidAndConsistent();
    void accountsAreRealistic();
    void dueItemsCoverWhatTheProgramLooksAt();
    void someAccountsAreIncomplete();
    void installationResolvesAndReads();
    void refusesWhatCannotWork_data();
    void refusesWhatCannotWork();

private:
    const QDate m_today{2025, 3, 14};
};

void TestDemoInstallation::init()
{
    dates::setToday(m_today);
}

void TestDemoInstallation::checkDigitsOfKnownCodes_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("valid");
    auto row = [](const char *name, const char *kind, const char *code, bool valid) {
        QTest::newRow(name) << QString::fromLatin1(kind) << QString::fromLatin1(code) << valid;
    };
    row("Italian IBAN", "iban", "IT60X0542811101000000123456", true);
    row("IBAN with blanks", "iban", "IT60 X054 2811 1010 0000 0123 456", true);
    row("British IBAN", "iban", "GB82WEST12345698765432", true);
    row("IBAN one digit changed", "iban", "IT60X0542811101000000123457", false);
    row("IBAN check digits swapped", "iban", "IT06X0542811101000000123456", false);
    row("partita IVA", "piva", "01234567897", true);
    row("partita IVA wrong check", "piva", "01234567890", false);
    row("partita IVA short", "piva", "1234567897", false);
    row("codice fiscale", "cf", "RSSMRA85T10A562S", true);
    row("codice fiscale wrong check", "cf", "RSSMRA85T10A562T", false);
}

void TestDemoInstallation::checkDigitsOfKnownCodes()
{
    QFETCH(QString, kind);
    QFETCH(QString, code);
    QFETCH(bool, valid);
    if (kind == u"iban")
        QCOMPARE(checkdigits::isValidIban(code), valid);
    else if (kind == u"piva")
        QCOMPARE(checkdigits::isValidPartitaIva(code), valid);
    else
        QCOMPARE(checkdigits::isValidCodiceFiscale(code), valid);
    // The generators give back the check digits of the valid ones.
    if (valid && kind == u"iban" && code.startsWith(u"IT60X")) {
        QCOMPARE(checkdigits::italianIban(QStringLiteral("05428"), QStringLiteral("11101"),
                                        QStringLiteral("123456")),
                 code);
    }
    if (valid && kind == u"piva")
        QCOMPARE(checkdigits::partitaIvaCheckDigit(code.left(10)), code.at(10).digitValue());
}

void TestDemoInstallation::codiceFiscaleOfAPerson()
{
    QCOMPARE(checkdigits::codiceFiscale(QStringLiteral("Rossi"), QStringLiteral("Mario"),
                                      QDate(1985, 12, 10), false, QStringLiteral("A562")),
             QStringLiteral("RSSMRA85T10A562S"));
    // A woman's day of birth counts from 41; a name with four consonants skips the second;
    // accents and apostrophes do not count as letters.
    const QString cf =
        checkdigits::codiceFiscale(QStringLiteral("D'Alò"), QStringLiteral("Francesca"),
                                 QDate(1990, 2, 3), true, QStringLiteral("H501"));
    QCOMPARE(cf.left(15), QStringLiteral("DLAFNC90B43H501"));
    QVERIFY(checkdigits::isValidCodiceFiscale(cf));
}

void TestDemoInstallation::sameSeedSameRecords()
{
    DemoOptions options;
    options.dueItems = 250;
    options.seed = 7;
    const QList<ErpRecord> first = generate(options);
    QCOMPARE(buffersOf(generate(options)), buffersOf(first));
    options.seed = 8;
    QVERIFY(buffersOf(ofArchive(generate(options), Scadenze)) !=
            buffersOf(ofArchive(first, Scadenze)));
}

void TestDemoInstallation::bankDataIsValidAndConsistent()
{
    DemoOptions options;
    options.seed = 3;
    const QList<ErpRecord> records = generate(options);

    QSet<QString> agencies; // ABI + CAB of the bank table
    for (const ErpRecord &bn : ofArchive(records, TabelleComuni, QStringLiteral("BN "))) {
        const QString abi = bn.text(QStringLiteral("abi"));
        const QString cab = bn.text(QStringLiteral("cab"));
        QVERIFY2(isDigits(abi, 5) && isDigits(cab, 5), qPrintable(abi + cab));
        QCOMPARE(bn.text(QStringLiteral("codice")), abi + cab);
        QVERIFY(!bn.trimmed(QStringLiteral("des_banca")).isEmpty());
        QVERIFY(!bn.trimmed(QStringLiteral("des_agenzia")).isEmpty());
        QVERIFY2(!agencies.contains(abi + cab), qPrintable(abi + cab));
        agencies.insert(abi + cab);
    }
    QVERIFY(agencies.size() >= 20);

    // Every IBAN passes mod 97, is Italian and names the bank and agency it sits beside.
    int ibans = 0;
    auto checkIban = [&](const QString &iban, const QString &abi, const QString &cab,
                         const QString &account) {
        QVERIFY2(checkdigits::isValidIban(iban), qPrintable(iban));
        QCOMPARE(iban.size(), 27);
        QCOMPARE(iban.mid(5, 5), abi);
        QCOMPARE(iban.mid(10, 5), cab);
        QCOMPARE(iban.mid(15), account.trimmed().rightJustified(12, u'0'));
        QCOMPARE(iban.at(4), checkdigits::italianCin(abi, cab, account.trimmed()));
        ++ibans;
    };
    const QList<ErpRecord> companyBanks = ofArchive(records, TabelleAzienda, QStringLiteral("BA3"));
    QVERIFY(companyBanks.size() >= 2 && companyBanks.size() <= 3);
    for (const ErpRecord &ba1 : ofArchive(records, TabelleAzienda, QStringLiteral("BA1"))) {
        const QString code = ba1.text(QStringLiteral("codice"));
        QCOMPARE(ba1.text(QStringLiteral("abi")) + ba1.text(QStringLiteral("cab")), code);
        QVERIFY(agencies.contains(code));
        QVERIFY(!ba1.trimmed(QStringLiteral("conto_ordinante")).isEmpty());
        bool withIban = false, withSia = false;
        for (const ErpRecord &ba3 : companyBanks) {
            if (ba3.text(QStringLiteral("codice")) != code)
                continue;
            withIban = true;
            checkIban(ba3.text(QStringLiteral("iban_paese")) +
                          ba3.trimmed(QStringLiteral("iban_resto")),
                      code.left(5), code.mid(5), ba1.text(QStringLiteral("conto_ordinante")));
        }
        for (const ErpRecord &ba2 : ofArchive(records, TabelleAzienda, QStringLiteral("BA2")))
            withSia = withSia || (ba2.text(QStringLiteral("codice")) == code &&
                                  ba2.trimmed(QStringLiteral("sia")).size() == 5);
        QVERIFY(withIban && withSia);
    }
    for (const ErpRecord &r : ofArchive(records, ClientiFornitori)) {
        const QString iban = r.text(QStringLiteral("iban_paese")).trimmed() +
                             r.trimmed(QStringLiteral("iban_resto"));
        if (!iban.isEmpty())
            checkIban(iban, r.text(QStringLiteral("banca")), r.text(QStringLiteral("agenzia")),
                      r.text(QStringLiteral("conto")));
    }
    QVERIFY(ibans > 20);

    // Currencies: the euro as the program expects it, and others with rates.
    const QList<ErpRecord> currencies = ofArchive(records, TabelleComuni, QStringLiteral("VL "));
    const ErpRecord &euro = currencies.first();
    QCOMPARE(euro.trimmed(QStringLiteral("codice")), QStringLiteral("EU"));
    QCOMPARE(euro.trimmed(QStringLiteral("des_valuta")), QStringLiteral("EURO"));
    QCOMPARE(euro.text(QStringLiteral("decimali")), QStringLiteral("2"));
    for (const ErpRecord &c : currencies)
        QVERIFY(c.number(QStringLiteral("cambio")) > 0);
}

void TestDemoInstallation::accountsAreRealistic()
{
    const QList<ErpRecord> records = generate(DemoOptions());
    const QList<ErpRecord> accounts = ofArchive(records, AnagraficheComuni);
    QSet<QString> codes;
    int suppliers = 0, customers = 0, accented = 0, persons = 0;
    for (const ErpRecord &a : accounts) {
        const QString code = a.text(QStringLiteral("cod_clifor"));
        QVERIFY2(!codes.contains(code), qPrintable(code)); // customers and suppliers share keys
        codes.insert(code);
        QVERIFY2(isDigits(code, 6), qPrintable(code));
        const QString kind = a.text(QStringLiteral("ind_clifor"));
        QVERIFY(kind == u"C" || kind == u"F");
        (kind == u"F" ? suppliers : customers)++;
        const QString name = a.trimmed(QStringLiteral("ragsoc"));
        QVERIFY(!name.isEmpty() && !a.trimmed(QStringLiteral("indirizzo")).isEmpty());
        QVERIFY(a.trimmed(QStringLiteral("cap")).size() == 5);
        QVERIFY(a.trimmed(QStringLiteral("provincia")).size() == 2);
        // Written and read back through the archives' code page without loss.
        QCOMPARE(cp1252::decode(cp1252::encode(name)), name);
        const QString all =
            name + a.text(QStringLiteral("indirizzo")) + a.text(QStringLiteral("citta"));
        if (all.contains(QRegularExpression(QStringLiteral("[àèéìòùÀÈÉÌÒÙ]"))))
            ++accented;
        const QString piva = a.trimmed(QStringLiteral("partita_iva"));
        const QString cf = a.trimmed(QStringLiteral("cod_fiscale"));
        if (!piva.isEmpty())
            QVERIFY2(checkdigits::isValidPartitaIva(piva), qPrintable(piva));
        if (cf.size() == 16) {
            QVERIFY2(checkdigits::isValidCodiceFiscale(cf), qPrintable(cf));
            ++persons;
        } else {
            QCOMPARE(cf, piva); // a company's codice fiscale is its partita IVA
        }
        QVERIFY(!cf.isEmpty());
    }
    QVERIFY(suppliers >= 20 && customers >= 10);
    QVERIFY(accented >= 10);
    QVERIFY(persons >= 4);

    // Sites belong to existing accounts; that every archive has records, the text-form test
    // checks when it dumps each one.
    for (const ErpRecord &s : ofArchive(records, SediClientiFornitori)) {
        QVERIFY(codes.contains(s.text(QStringLiteral("cod_clifor"))));
        QCOMPARE(s.text(QStringLiteral("tipo_sede")), QStringLiteral("A"));
    }
}

void TestDemoInstallation::dueItemsCoverWhatTheProgramLooksAt()
{
    DemoOptions options;
    options.dueItems = 400;
    const QList<ErpRecord> records = generate(options);
    QSet<QString> accounts, currencies, keys, sites;
    for (const ErpRecord &a : ofArchive(records, AnagraficheComuni))
        accounts.insert(accountOf(a));
    for (const ErpRecord &c : ofArchive(records, TabelleComuni, QStringLiteral("VL ")))
        currencies.insert(c.text(QStringLiteral("codice")).left(2));
    for (const ErpRecord &s : ofArchive(records, SediClientiFornitori))
        sites.insert(s.text(QStringLiteral("cod_clifor")) + s.text(QStringLiteral("cod_sede")));
    const QStringList reasons = DemoGenerator::reasonCodes();
    QVERIFY(reasons.size() >= 4);

    QSet<QString> types, usedCurrencies, kinds, states, distStates;
    int inDistinta = 0, partlyPaid = 0, withSite = 0, negative = 0;
    QDate earliest = m_today, latest = m_today;
    const QList<ErpRecord> items = ofArchive(records, Scadenze);
    for (const ErpRecord &d : items) {
        const QString key = d.text(QStringLiteral("flag_colpar")) + d.text(QStringLiteral("link"));
        QVERIFY2(!keys.contains(key), qPrintable(key));
        keys.insert(key);
        QVERIFY(accounts.contains(accountOf(d)));
        types.insert(d.text(QStringLiteral("tipo_pag")));
        kinds.insert(d.text(QStringLiteral("ind_clifor")));
        QVERIFY(currencies.contains(d.text(QStringLiteral("valuta"))));
        usedCurrencies.insert(d.text(QStringLiteral("valuta")));
        QVERIFY2(reasons.contains(d.text(QStringLiteral("causale"))),
                 qPrintable(d.text(QStringLiteral("causale"))));
        const QDate due = dates::fromYmd(d.text(QStringLiteral("data_scad")));
        const QDate doc = dates::fromYmd(d.text(QStringLiteral("data_doc")));
        QVERIFY(due.isValid() && doc.isValid() && doc < due);
        earliest = qMin(earliest, due);
        latest = qMax(latest, due);
        if (!d.trimmed(QStringLiteral("cod_sede")).isEmpty()) {
            QVERIFY(sites.contains(d.text(QStringLiteral("cod_clifor")) +
                                   d.text(QStringLiteral("cod_sede"))));
            ++withSite;
        }

        // Amounts: euro value from the rate, payments within the amount due.
        const double value = d.number(QStringLiteral("imp_dapag_val"));
        const double rate = d.number(QStringLiteral("cambio"));
        QVERIFY(rate > 0 && value != 0);
        QVERIFY(qAbs(d.number(QStringLiteral("imp_dapag_eur")) - value / rate) <= 0.006);
        const double paid = d.number(QStringLiteral("imp_pag_val"));
        QVERIFY(qAbs(paid) <= qAbs(value));
        const QString state = d.text(QStringLiteral("stato"));
        states.insert(state);
        QCOMPARE(state == u"2", value != 0 && paid == value);
        if (state == u"1") {
            QVERIFY(paid > 0 && paid < value);
            ++partlyPaid;
        }
        if (value < 0)
            ++negative;

        // The distinta marks as the write-back leaves them.
        const QString dist = d.text(QStringLiteral("stato_dist"));
        distStates.insert(dist);
        const QString type = d.text(QStringLiteral("tipo_pag"));
        if (d.text(QStringLiteral("mark_dist")) == u"B") {
            ++inDistinta;
            QCOMPARE(d.text(QStringLiteral("mark_pres")), QStringLiteral("B"));
            QVERIFY(dates::fromYmd(d.text(QStringLiteral("data_dist"))).isValid());
            QCOMPARE(d.text(QStringLiteral("abi_pres")).trimmed().size(), 5);
            if (type < u"3" || type > u"8")
                QCOMPARE(dist, QStringLiteral("0"));
            else
                QVERIFY(dist == u"3" || dist == u"4" || dist == u"5");
        } else {
            QCOMPARE(d.text(QStringLiteral("mark_dist")), QStringLiteral("0"));
            QCOMPARE(dist, QStringLiteral("0"));
            QVERIFY(d.trimmed(QStringLiteral("data_dist")).isEmpty());
        }
    }
    for (char16_t c = u'0'; c <= u'9'; ++c)
        QVERIFY2(types.contains(QString(QChar(c))), "a payment type is missing");
    QCOMPARE(kinds, (QSet<QString>{QStringLiteral("C"), QStringLiteral("F")}));
    QVERIFY(usedCurrencies.size() >= 3);
    QVERIFY(states.contains(QStringLiteral("0")) && states.contains(QStringLiteral("2")));
    QVERIFY(distStates.contains(QStringLiteral("3")) && distStates.contains(QStringLiteral("5")));
    QVERIFY(inDistinta >= 10 && partlyPaid >= 5 && withSite >= 5 && negative >= 1);
    // Due dates gather around today, on both sides.
    QVERIFY(earliest < m_today.addDays(-30) && earliest >= m_today.addDays(-150));
    QVERIFY(latest > m_today.addDays(30) && latest <= m_today.addDays(121));
}

void TestDemoInstallation::someAccountsAreIncomplete()
{
    const QList<ErpRecord> records = generate(DemoOptions());
    QMap<QString, ErpRecord> bankData; // "F" + code -> archive 3
    for (const ErpRecord &r : ofArchive(records, ClientiFornitori))
        bankData.insert(accountOf(r), r);
    QSet<QString> agencies;
    for (const ErpRecord &bn : ofArchive(records, TabelleComuni, QStringLiteral("BN ")))
        agencies.insert(bn.text(QStringLiteral("codice")));

    int noBankData = 0, noIban = 0, noAccount = 0, noBank = 0, unknownAgency = 0;
    for (const ErpRecord &a : ofArchive(records, AnagraficheComuni)) {
        const QString key = accountOf(a);
        if (!bankData.contains(key)) {
            ++noBankData;
            continue;
        }
        const ErpRecord &b = *bankData.constFind(key);
        noIban += b.trimmed(QStringLiteral("iban_resto")).isEmpty();
        noAccount += b.trimmed(QStringLiteral("conto")).isEmpty();
        noBank += b.trimmed(QStringLiteral("banca")).isEmpty();
        const QString agency = b.text(QStringLiteral("banca")) + b.text(QStringLiteral("agenzia"));
        unknownAgency += !agency.trimmed().isEmpty() && !agencies.contains(agency);
    }
    QVERIFY(noBankData >= 2);
    QVERIFY(noIban >= 3);
    QVERIFY(noAccount >= 1 && noBank >= 1 && unknownAgency >= 1);

    // A supplier whose due items carry other bank data than its master record.
    QSet<QString> differing;
    for (const ErpRecord &d : ofArchive(records, Scadenze)) {
        const QString key = accountOf(d);
        if (!bankData.contains(key) || d.trimmed(QStringLiteral("banca")).isEmpty())
            continue;
        const ErpRecord &b = *bankData.constFind(key);
        if (d.text(QStringLiteral("banca")) != b.text(QStringLiteral("banca")) ||
            d.text(QStringLiteral("agenzia")) != b.text(QStringLiteral("agenzia")) ||
            d.text(QStringLiteral("conto")) != b.text(QStringLiteral("conto")))
            differing.insert(key);
    }
    QCOMPARE(differing.size(), 1);
    QVERIFY(differing.values().first().startsWith(u'F'));
}

void TestDemoInstallation::installationResolvesAndReads()
{
    QTemporaryDir dir(shortTempTemplate());
    QVERIFY(dir.isValid());
    DemoOptions options;
    options.companyCode = QStringLiteral("ACME1");
    options.dueItems = 120;
    DemoInstallation demo(dir.path(), options);
    QString error;
    const QByteArray schema("QXARTRAC\r\nschema di prova\r\n");
    QVERIFY2(demo.write(schema, false, &error), qPrintable(error));
    QVERIFY(demo.recordCount() > 120);

    // Every directory value of the ini files fits the suite's 40-character buffer.
    const IniFile orvida = IniFile::load(dir.path() + QStringLiteral("/ORVIDA.INI"));
    const IniFile parpe = IniFile::load(demo.orvidaDir() + QStringLiteral("D_AZI/ACMparpe.ini"));
    QVERIFY(orvida.exists() && parpe.exists());
    QStringList values;
    for (const QString &key : orvida.keys(QStringLiteral("AMBIENTE")))
        values << orvida.read(QStringLiteral("AMBIENTE"), key, {}, 1000);
    for (const QString &section : {QStringLiteral("Ambiente"), QStringLiteral("Dir Archivi Server"),
                                   QStringLiteral("Dir Archivi Client")})
        for (const QString &key : parpe.keys(section))
            values << parpe.read(section, key, {}, 1000);
    QCOMPARE(values.size(), 3 + 1 + 2 + 2);
    for (const QString &value : values)
        QVERIFY2(value.size() <= 39, qPrintable(value));

    qputenv("ORVIDA_INI_DIR", QFile::encodeName(dir.path()));
    test::ScriptedPrompter prompter;
    const CompanyEnvironment env = ResolveCompanyEnvironment();
    QVERIFY(prompter.shown().isEmpty());
    QCOMPARE(env.OrvidaDir, demo.orvidaDir());
    QCOMPARE(env.CompanyCode, QStringLiteral("ACME1"));
    QCOMPARE(env.CompanyArchiveDir, demo.companyArchiveDir());
    QCOMPARE(env.CommonArchiveDir, demo.commonArchiveDir());
    QVERIFY(env.CompanyArchiveDir != env.CommonArchiveDir);

    const QString program = programDirOf(env.OrvidaDir);
    QFile schemaFile(program + QStringLiteral("QXARTRAC.DAT"));
    QVERIFY(schemaFile.open(QIODevice::ReadOnly));
    QCOMPARE(schemaFile.readAll(), schema);
    const IniFile causali = IniFile::load(program + QStringLiteral("causali.ini"));
    QCOMPARE(causali.keys(QStringLiteral("CAUSALI")), DemoGenerator::reasonCodes());
    for (const QString &code : causali.keys(QStringLiteral("CAUSALI"))) {
        QCOMPARE(code.size(), 2);
        const QString value = causali.read(QStringLiteral("CAUSALI"), code, {}, 40);
        QVERIFY(value == u"SI" || value == u"NO");
    }
    QVERIFY(QFileInfo(env.OrvidaDir + QStringLiteral("D_STM")).isDir());
    QVERIFY(QFileInfo(env.OrvidaDir + QStringLiteral("D_IMG")).isDir());

    // The archives open as the program opens them, and hold the company and its release.
    EmbeddedArchiveStore store(env.CompanyArchiveDir, env.CommonArchiveDir);
    ErpSession session(store, 1);
    for (const auto &[archive, mode] : QList<QPair<int, int>>{
             {15, 0}, {0, 0}, {14, 0}, {3, 0}, {42, 0}, {38, 2}, {37, 0}, {55, 0}, {28, 0}})
        QVERIFY2(session.open(archive, mode) == Ok, qPrintable(QString::number(archive)));
    ErpRecord release(TabelleAzienda, QStringLiteral("REL"));
    QVERIFY(session.readFirst(release, 1, QByteArrayLiteral("REL")));
    QCOMPARE(release.text(QStringLiteral("release")), QStringLiteral("07.00.00"));
    ErpRecord az1(TabelleAzienda, QStringLiteral("AZ1"));
    QVERIFY(session.readEq(az1, 1));
    QVERIFY(az1.trimmed(QStringLiteral("ragsoc")).contains(u'è'));
    ErpRecord az3(TabelleAzienda, QStringLiteral("AZ3"));
    QVERIFY(session.readEq(az3, 1));
    QVERIFY(checkdigits::isValidPartitaIva(az3.trimmed(QStringLiteral("partita_iva"))));
    ErpRecord item(Scadenze);
    int items = 0;
    for (bool ok = session.readFirst(item, 1, QByteArray()); ok; ok = session.readNext(item))
        ++items;
    QCOMPARE(items, 120);
}

void TestDemoInstallation::refusesWhatCannotWork_data()
{
    QTest::addColumn<QString>("subdir"); // under the temporary directory
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("occupied");
    QTest::addColumn<QString>("expected");
    QTest::newRow("path too long") << QStringLiteral("una/cartella/decisamente/lunga") << "DEMO"
                                   << false << QStringLiteral("supera i 39 caratteri");
    QTest::newRow("directory not empty")
        << QString() << "DEMO" << true << QStringLiteral("non è vuota");
    QTest::newRow("code with a blank")
        << QString() << "DE MO" << false << QStringLiteral("Codice azienda non valido");
    QTest::newRow("code naming a directory")
        << QString() << "stm" << false << QStringLiteral("Codice azienda non valido");
}

void TestDemoInstallation::refusesWhatCannotWork()
{
    QFETCH(QString, subdir);
    QFETCH(QString, code);
    QFETCH(bool, occupied);
    QFETCH(QString, expected);
    QTemporaryDir dir(shortTempTemplate());
    QVERIFY(dir.isValid());
    if (occupied) {
        QFile other(dir.filePath(QStringLiteral("altro.txt")));
        QVERIFY(other.open(QIODevice::WriteOnly));
    }
    DemoOptions options;
    options.companyCode = code;
    options.dueItems = 10;
    DemoInstallation demo(subdir.isEmpty() ? dir.path() : dir.filePath(subdir), options);
    QString error;
    QVERIFY(!demo.write(QByteArray("schema"), false, &error));
    QVERIFY2(error.contains(expected), qPrintable(error));
    // Nothing was written.
    const QStringList left = QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    QCOMPARE(left, occupied ? QStringList{QStringLiteral("altro.txt")} : QStringList());
}

QTEST_GUILESS_MAIN(TestDemoInstallation)
#include "tst_demoinstallation.moc"
