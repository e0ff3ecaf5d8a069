#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "checks/completenesscheck.h"
#include "core/distintacode.h"
#include "distinta/distintestore.h"
#include "startup/companyenvironment.h"
#include "startup/errortrap.h"

#include <QFile>
#include <QTest>

using namespace pg;
using namespace pg::distinta;
using pg::archives::ErpRecord;
using pg::checks::CompletenessCheck;
using pg::test::TestInstallation;

namespace {

const QString NoBank(5, u' ');
const QString NoAccount(20, u' ');

struct RowData
{
    const char *link;
    const char *account;
    const char *type;
    const char *doc;
    const char *series;
    const char *day; // of January 2024 for the document, of February for the due date
    const char *rata;
    double amount;
    QString bank;
    QString agency;
    QString accountNumber;
    std::optional<double> inDistinta = {}; // the amount in the distinta, when not the amount
};

Riga rigaOf(const RowData &s)
{
    Riga r;
    r.flg_flag_colpar = QStringLiteral("F");
    r.des_link_orvida = QLatin1StringView(s.link);
    r.des_num_doc = QLatin1StringView(s.doc);
    r.des_serie_doc = QLatin1StringView(s.series);
    r.dat_data_doc = QStringLiteral("202401") + QLatin1StringView(s.day);
    r.des_num_rata = QLatin1StringView(s.rata);
    r.dat_data_scad = QStringLiteral("202402") + QLatin1StringView(s.day);
    r.cod_tipo_pag = QLatin1StringView(s.type);
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = QLatin1StringView(s.account);
    r.cod_banca_cli = s.bank;
    r.cod_agenzia_cli = s.agency;
    r.des_num_cc = s.accountNumber;
    r.cod_valuta = QStringLiteral("EU");
    r.val_cambio = 1;
    r.val_imp_dapag_val = r.val_imp_dapag_eur = s.amount;
    r.val_imp_residuo_val = r.val_imp_residuo_eur = s.amount;
    r.val_imp_indist_val = r.val_imp_indist_eur = s.inDistinta.value_or(s.amount);
    return r;
}

// Distinta 7: rows of every kind of finding. Distinta 8: a row without any.
QList<RowData> rowsOf(int number)
{
    if (number == 8)
        return {{"0000000000801", "300006", "6", "506", " ", "15", "01", 10,
                 QStringLiteral("03069"), QStringLiteral("09606"), QStringLiteral("12345")}};
    return {
        // A bank transfer without any bank data: account number, then bank and agency.
        {"0000000000701", "300001", "6", "501", " ", "10", "01", 1234.5, NoBank, NoBank, NoAccount},
        // A Ri.Ba. whose supplier has a bank but no agency in the suite either.
        {"0000000000702", "300002", "1", "502", "A", "11", "01", 99.9, QStringLiteral("03069"),
         NoBank, NoAccount},
        // Blank here, complete in the suite: refreshed, but its due item is already paid.
        {"0000000000703", "300003", "6", "503", " ", "12", "01", 0.5, NoBank, NoBank, NoAccount},
        // A direct remittance needs no bank; its link, with leading blanks, is not found by its
        // last thirteen characters.
        {"   0000000704", "300004", "3", "504", " ", "13", "01", 1000000, NoBank, NoBank,
         NoAccount},
        // A RID without bank and agency.
        {"0000000000705", "300005", "9", "505", " ", "14", "02", 250, NoBank, NoBank, NoAccount},
        // Nothing to say.
        {"0000000000706", "300006", "6", "506", " ", "15", "01", 10, QStringLiteral("03069"),
         QStringLiteral("09606"), QStringLiteral("12345")},
        // An invoice with a negative amount in the distinta, and a series that is empty rather
        // than the suite's blank.
        {"0000000000707", "300007", "3", "507", "", "16", "01", 80, NoBank, NoBank, NoAccount,
         -5},
    };
}

ErpRecord supplierBank(const QString &code, const QString &bank, const QString &agency,
                       const QString &account)
{
    ErpRecord r(archives::ClientiFornitori);
    r.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    r.setText(QStringLiteral("cod_clifor"), code);
    r.setText(QStringLiteral("banca"), bank);
    r.setText(QStringLiteral("agenzia"), agency);
    r.setText(QStringLiteral("conto"), account);
    return r;
}

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class TestCompletenessCheck : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void reportOfTheRules_data();
    void reportOfTheRules();
    void bankDataAreRefreshedFromTheSuiteAndSaved();
    void nothingIsCheckedWithoutANumberOrASave();

private:
    Distinta create(int number);

    QLocale m_locale;
    std::unique_ptr<test::ScriptedPrompter> m_prompter;
    std::unique_ptr<TestInstallation> m_inst;
    std::unique_ptr<DistinteStore> m_store;
};

void TestCompletenessCheck::init()
{
    m_locale = QLocale();
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    ErrorTrap::instance().resetForTest();
    m_inst = std::make_unique<TestInstallation>();
    QVERIFY(m_inst->isValid());
    QList<ErpRecord> records{
        supplierBank(QStringLiteral("300002"), QStringLiteral("03069"), QString(), QString()),
        supplierBank(QStringLiteral("300003"), QStringLiteral("02008"), QStringLiteral("01600"),
                     QStringLiteral("000000099999")),
        supplierBank(QStringLiteral("300006"), QStringLiteral("03069"), QStringLiteral("09606"),
                     QStringLiteral("12345")),
    };
    for (int number : {7, 8}) {
        for (const RowData &s : rowsOf(number)) {
            ErpRecord item = TestInstallation::dueItem(
                QStringLiteral("F"), QLatin1StringView(s.link), QLatin1StringView(s.type),
                QLatin1StringView(s.account), s.amount);
            if (QLatin1StringView(s.account) == u"300003")
                item.setNumber(QStringLiteral("imp_pag_val"), 50, 2);
            records << item;
        }
    }
    QVERIFY(m_inst->put(records));
    m_store = std::make_unique<DistinteStore>(&m_inst->erp());
    m_store->setPStrConn(m_inst->connectionString());
    m_prompter = std::make_unique<test::ScriptedPrompter>();
}

void TestCompletenessCheck::cleanup()
{
    m_prompter.reset();
    m_store.reset();
    m_inst.reset();
    QLocale::setDefault(m_locale);
}

Distinta TestCompletenessCheck::create(int number)
{
    Distinta d;
    m_store->Nuovo(d);
    Testata &h = d.editHeader();
    h.cod_distinta = formatDistintaCode(number);
    h.dat_data_creazione = QDate(2024, 1, 15);
    h.dat_data_valuta = QDate(2024, 1, 20);
    h.cod_abi_banca = h.cod_cab_banca = QStringLiteral("00001");
    for (const RowData &s : rowsOf(number)) {
        Riga r = rigaOf(s);
        r.cod_distinta = h.cod_distinta;
        d.righe.append(r);
    }
    if (!m_store->Salva(d, false, false))
        return {};
    m_store->Leggi(d, h.cod_distinta);
    m_prompter->clear();
    return d;
}

void TestCompletenessCheck::reportOfTheRules_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("errorsFound");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("every kind of error") << 7 << "controllo_errors.txt" << true << QStringList();
    QTest::newRow("no errors") << 8 << "controllo_clean.txt" << false
                               << QStringList{QStringLiteral(
                                      "Non sono stati trovati errori nella distinta corrente.")};
}

void TestCompletenessCheck::reportOfTheRules()
{
    QFETCH(int, number);
    QFETCH(QString, expected);
    QFETCH(bool, errorsFound);
    QFETCH(QStringList, messages);
    Distinta d = create(number);
    QVERIFY(d.hasHeader());
    // The report of an earlier run is rewritten, not added to.
    QFile old(CompletenessCheck::reportPath());
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(10000, '#'));
    old.close();

    CompletenessCheck check(*m_store, m_inst->erp());
    const CompletenessCheck::Result result = check.chkDatiBAnca(d, false, {});
    QVERIFY(result.reportWritten);
    QCOMPARE(result.errorsFound, errorsFound);
    QCOMPARE(result.reportPath, ProgramDir() + QStringLiteral("controllo.txt"));
    QCOMPARE(m_prompter->texts(), messages);

    const QByteArray written = readAll(result.reportPath);
    const QByteArray wanted =
        readAll(QStringLiteral(PAGAMENTI_SOURCE_DIR "/tests/checks/expected/") + expected);
    QVERIFY(!wanted.isEmpty());
    const QList<QByteArray> writtenLines = written.split('\n');
    const QList<QByteArray> wantedLines = wanted.split('\n');
    for (int i = 0; i < std::min(writtenLines.size(), wantedLines.size()); ++i)
        QCOMPARE(writtenLines.at(i), wantedLines.at(i));
    QCOMPARE(written, wanted);
}

void TestCompletenessCheck::bankDataAreRefreshedFromTheSuiteAndSaved()
{
    Distinta d = create(7);
    CompletenessCheck check(*m_store, m_inst->erp());
    check.chkDatiBAnca(d, false, {});
    QVERIFY(!d.hasChanges());

    Distinta saved;
    m_store->Leggi(saved, formatDistintaCode(7));
    QCOMPARE(saved.righe.size(), 7);
    const auto rowOf = [&](const QString &account) {
        for (int i = 0; i < saved.righe.size(); ++i)
            if (saved.righe.at(i).cod_clifor == account)
                return saved.righe.at(i);
        return Riga();
    };
    // Found in the suite: the suite's values, at their widths.
    QCOMPARE(rowOf(QStringLiteral("300003")).cod_banca_cli, QStringLiteral("02008"));
    QCOMPARE(rowOf(QStringLiteral("300003")).cod_agenzia_cli, QStringLiteral("01600"));
    QCOMPARE(rowOf(QStringLiteral("300003")).des_num_cc, QStringLiteral("000000099999        "));
    QCOMPARE(rowOf(QStringLiteral("300002")).cod_agenzia_cli, NoBank);
    // Not in the suite: the row keeps its own.
    QCOMPARE(rowOf(QStringLiteral("300001")).des_num_cc, NoAccount);
}

void TestCompletenessCheck::nothingIsCheckedWithoutANumberOrASave()
{
    CompletenessCheck check(*m_store, m_inst->erp());
    Distinta none;
    QVERIFY(!check.chkDatiBAnca(none, false, {}).reportWritten);

    Distinta d = create(8);
    d.editHeader().cod_distinta = QStringLiteral("     0");
    QVERIFY(!check.chkDatiBAnca(d, false, {}).reportWritten);

    m_store->Leggi(d, formatDistintaCode(8));
    QStringList log;
    const auto failingSave = [&](Distinta &) {
        log << QStringLiteral("save");
        return false;
    };
    QVERIFY(!check.chkDatiBAnca(d, true, failingSave).reportWritten);
    QCOMPARE(log, QStringList{QStringLiteral("save")});
    QVERIFY(!QFile::exists(CompletenessCheck::reportPath()));
    QVERIFY(m_prompter->shown().isEmpty());

    // Changes saved first, then checked.
    const auto save = [&](Distinta &distinta) {
        log << QStringLiteral("save");
        return m_store->Salva(distinta, false, false);
    };
    QVERIFY(check.chkDatiBAnca(d, true, save).reportWritten);
    QCOMPARE(log.size(), 2);
}

QTEST_GUILESS_MAIN(TestCompletenessCheck)
#include "tst_completenesscheck.moc"
