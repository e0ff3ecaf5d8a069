// The F4 lookup lists over a demo installation, read through each record manager: the
// embedded store and the library binding loading the program's own record-manager library.

#include "archives/demo/demogenerator.h"
#include "archives/demo/demoinstallation.h"
#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/libraryrecordmanager.h"
#include "archives/store/lookupservice.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace pg;
using namespace pg::archives;

namespace {

enum Implementation { Embedded, Library };
constexpr qint32 Session = 77;

} // namespace

class TestLookupService : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void initTestCase();
    void init();
    void cleanup();
    void banksAndAgencies();
    void accounts_data();
    void accounts();
    void currenciesAndCompanyBanks();
    void filterRule_data();
    void filterRule();

private:
    // What the demo wrote, to compare the lists with.
    QList<ErpRecord> m_records;
    QTemporaryDir m_dir{QDir::tempPath() + QStringLiteral("/pglXXXXXX")};
    std::unique_ptr<DemoInstallation> m_demo;
    std::unique_ptr<RecordManager> m_manager;
    std::unique_ptr<ErpSession> m_session;
};

void TestLookupService::initTestCase_data()
{
    QTest::addColumn<int>("implementation");
    QTest::newRow("embedded store") << int(Embedded);
    QTest::newRow("library binding") << int(Library);
}

void TestLookupService::initTestCase()
{
    QVERIFY(m_dir.isValid());
    DemoOptions options;
    options.dueItems = 20;
    m_demo = std::make_unique<DemoInstallation>(m_dir.path(), options);
    QString error;
    QVERIFY2(m_demo->write(QByteArray("schema"), false, &error), qPrintable(error));
    DemoGenerator(options).generate([&](const ErpRecord &record) {
        m_records.append(record);
        return true;
    });
    // The library finds the installation as the program does.
    qputenv("ORVIDA_INI_DIR", QFile::encodeName(m_dir.path()));
}

void TestLookupService::init()
{
    QFETCH_GLOBAL(int, implementation);
    if (implementation == Embedded) {
        m_manager = std::make_unique<EmbeddedArchiveStore>(m_demo->companyArchiveDir(),
                                                           m_demo->commonArchiveDir());
    } else {
        auto binding = std::make_unique<LibraryRecordManager>(
            QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/tqzdbm32"));
        QVERIFY2(binding->isLoaded(), qPrintable(binding->errorString()));
        m_manager = std::move(binding);
    }
    QVERIFY(m_manager->VBInit(Session) != 0);
    m_session = std::make_unique<ErpSession>(*m_manager, Session);
    for (int archive : {TabelleComuni, AnagraficheComuni, TabelleAzienda})
        QCOMPARE(m_session->open(archive, ReadOnly), qint32(Ok));
}

void TestLookupService::cleanup()
{
    if (m_manager)
        m_manager->VBEnd(Session);
    m_session.reset();
    m_manager.reset();
}

void TestLookupService::banksAndAgencies()
{
    LookupService lookup(*m_session);
    const LookupList all = lookup.banksAndAgencies();
    QCOMPARE(all.headers, (QStringList{QStringLiteral("ABI"), QStringLiteral("CAB"),
                                       QStringLiteral("Banca"), QStringLiteral("Agenzia")}));
    int agencies = 0;
    for (const ErpRecord &r : std::as_const(m_records))
        agencies += r.archive() == TabelleComuni && r.recordType() == u"BN ";
    QCOMPARE(all.rows.size(), agencies);
    for (const LookupRow &row : all.rows) {
        // The chosen entry carries the ABI in characters 1-5 and the CAB in 7-11.
        QCOMPARE(row.choice.mid(0, 5), row.cells.at(0));
        QCOMPARE(row.choice.mid(6, 5), row.cells.at(1));
        QVERIFY(!row.cells.at(2).isEmpty() && !row.cells.at(3).isEmpty());
    }

    // Accents and letter case do not matter; every word must occur somewhere in the row.
    const LookupList forli = lookup.banksAndAgencies(QStringLiteral("FORLI"));
    QVERIFY(forli.rows.size() >= 3 && forli.rows.size() < all.rows.size());
    for (const LookupRow &row : forli.rows)
        QVERIFY(row.cells.at(3).startsWith(u"Forlì"));
    const LookupList intesaForli = lookup.banksAndAgencies(QStringLiteral("intesa forlì"));
    QCOMPARE(intesaForli.rows.size(), 1);
    QCOMPARE(intesaForli.rows.first().choice, QStringLiteral("03069 13201"));
    QCOMPARE(lookup.banksAndAgencies(QStringLiteral("03069")).rows.size(), 4);
    QVERIFY(lookup.banksAndAgencies(QStringLiteral("nessuna banca")).rows.isEmpty());
}

void TestLookupService::accounts_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("expectedCodes"); // empty: compare with the demo's records
    using Kind = LookupService::AccountKind;
    auto row = [](const char *name, Kind kind, const char *filter, const QStringList &codes) {
        QTest::newRow(name) << int(kind) << QString::fromUtf8(filter) << codes;
    };
    row("all", Kind::All, "", {});
    row("suppliers", Kind::Suppliers, "", {});
    row("customers", Kind::Customers, "", {});
    row("name with an accent, typed without", Kind::All, "caffe",
        {QStringLiteral("100007"), QStringLiteral("400003")});
    row("the same, suppliers only", Kind::Suppliers, "CAFFÈ", {QStringLiteral("400003")});
    row("by code", Kind::All, "400018", {QStringLiteral("400018")});
}

void TestLookupService::accounts()
{
    QFETCH(int, kind);
    QFETCH(QString, filter);
    QFETCH(QStringList, expectedCodes);
    const auto accountKind = LookupService::AccountKind(kind);
    if (expectedCodes.isEmpty()) {
        for (const ErpRecord &r : std::as_const(m_records)) {
            const QString k =
                r.archive() == AnagraficheComuni ? r.text(QStringLiteral("ind_clifor")) : QString();
            if (!k.isEmpty() &&
                (accountKind == LookupService::AccountKind::All ||
                 (accountKind == LookupService::AccountKind::Suppliers) == (k == u"F")))
                expectedCodes << r.text(QStringLiteral("cod_clifor"));
        }
        expectedCodes.sort(); // the list is in the order of the archive's key
    }
    LookupService lookup(*m_session);
    const LookupList list = lookup.accounts(filter, accountKind);
    QStringList codes;
    for (const LookupRow &row : list.rows) {
        QCOMPARE(row.choice, row.cells.at(0));
        codes << row.choice;
    }
    QCOMPARE(codes, expectedCodes);
    if (!list.rows.isEmpty() && accountKind == LookupService::AccountKind::Suppliers)
        QCOMPARE(list.rows.first().cells.at(1), QStringLiteral("Fornitore"));
}

void TestLookupService::currenciesAndCompanyBanks()
{
    LookupService lookup(*m_session);
    const LookupList currencies = lookup.currencies();
    QVERIFY(currencies.rows.size() >= 3);
    const LookupList euro = lookup.currencies(QStringLiteral("euro"));
    QCOMPARE(euro.rows.size(), 1);
    QCOMPARE(euro.rows.first().cells, (QStringList{QStringLiteral("EU"), QStringLiteral("EURO")}));
    QCOMPARE(euro.rows.first().choice, QStringLiteral("EU"));

    const LookupList banks = lookup.companyBanks();
    QCOMPARE(banks.rows.size(), 3);
    for (const LookupRow &row : banks.rows)
        QCOMPARE(row.choice, row.cells.at(0) + u' ' + row.cells.at(1));
    const LookupList credit = lookup.companyBanks(QStringLiteral("credit agricole"));
    QCOMPARE(credit.rows.size(), 1);
    QCOMPARE(credit.rows.first().choice, QStringLiteral("06230 13200"));
}

void TestLookupService::filterRule_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<bool>("matches");
    QTest::newRow("empty") << QString() << true;
    QTest::newRow("blanks only") << QStringLiteral("   ") << true;
    QTest::newRow("part of a cell") << QStringLiteral("sanp") << true;
    QTest::newRow("words in different cells") << QStringLiteral("milano intesa") << true;
    QTest::newRow("one word missing") << QStringLiteral("milano unicredit") << false;
    QTest::newRow("accent typed, none stored") << QStringLiteral("Intésa") << true;
    QTest::newRow("across two cells is not one word") << QStringLiteral("sanpaolomilano") << false;
}

void TestLookupService::filterRule()
{
    QFETCH(QString, filter);
    QFETCH(bool, matches);
    const QStringList cells{QStringLiteral("03069"), QStringLiteral("Intesa Sanpaolo"),
                            QStringLiteral("Milano - Sede")};
    QCOMPARE(LookupService::matches(cells, filter), matches);
}

QTEST_GUILESS_MAIN(TestLookupService)
#include "tst_lookupservice.moc"
