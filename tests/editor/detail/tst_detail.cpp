#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "editor/detail/detailaccount.h"
#include "editor/detail/detaildialog.h"
#include "editor/detail/detaildueitem.h"
#include "ui/codelineedit.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QTest>

using namespace pg;
using namespace pg::editor;
using archives::ErpRecord;
using pg::test::TestInstallation;

namespace {

QList<ErpRecord> suite()
{
    ErpRecord bn(archives::TabelleComuni, QStringLiteral("BN "));
    bn.setText(QStringLiteral("codice"), QStringLiteral("0306901600"));
    bn.setText(QStringLiteral("abi"), QStringLiteral("03069"));
    bn.setText(QStringLiteral("cab"), QStringLiteral("01600"));
    bn.setText(QStringLiteral("des_banca"), QStringLiteral("Intesa Sanpaolo"));
    bn.setText(QStringLiteral("des_agenzia"), QStringLiteral("Milano Centro"));
    ErpRecord vl(archives::TabelleComuni, QStringLiteral("VL "));
    vl.setText(QStringLiteral("codice"), QStringLiteral("US"));
    vl.setText(QStringLiteral("des_valuta"), QStringLiteral("Dollaro USA"));

    ErpRecord account(archives::AnagraficheComuni);
    account.setText(QStringLiteral("cod_clifor"), QStringLiteral("400001"));
    account.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    account.setText(QStringLiteral("ragsoc"), QStringLiteral("Ferramenta Rossi Srl"));
    account.setText(QStringLiteral("indirizzo"), QStringLiteral("Via Roma 1"));
    account.setText(QStringLiteral("cap"), QStringLiteral("20121"));
    account.setText(QStringLiteral("citta"), QStringLiteral("Milano"));
    account.setText(QStringLiteral("provincia"), QStringLiteral("MI"));
    account.setText(QStringLiteral("partita_iva"), QStringLiteral("01234567890"));
    ErpRecord bank(archives::ClientiFornitori);
    bank.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    bank.setText(QStringLiteral("cod_clifor"), QStringLiteral("400001"));
    bank.setText(QStringLiteral("banca"), QStringLiteral("03069"));
    bank.setText(QStringLiteral("agenzia"), QStringLiteral("01600"));
    bank.setText(QStringLiteral("conto"), QStringLiteral("000012345678"));
    bank.setText(QStringLiteral("iban_paese"), QStringLiteral("IT60"));
    bank.setText(QStringLiteral("iban_resto"), QStringLiteral("X0306901600000012345678"));
    // A customer with the same code among the bank data must not be taken for the supplier.
    ErpRecord otherKind = bank;
    otherKind.setText(QStringLiteral("ind_clifor"), QStringLiteral("C"));
    otherKind.setText(QStringLiteral("conto"), QStringLiteral("999"));
    ErpRecord site(archives::SediClientiFornitori);
    site.setText(QStringLiteral("cod_clifor"), QStringLiteral("400001"));
    site.setText(QStringLiteral("tipo_sede"), QStringLiteral("A"));
    site.setText(QStringLiteral("cod_sede"), QStringLiteral("000001"));
    site.setText(QStringLiteral("indirizzo"), QStringLiteral("Viale Monza 300"));
    site.setText(QStringLiteral("citta"), QStringLiteral("Sesto San Giovanni"));
    ErpRecord otherSite = site;
    otherSite.setText(QStringLiteral("cod_clifor"), QStringLiteral("400000"));
    otherSite.setText(QStringLiteral("indirizzo"), QStringLiteral("Altrove"));
    return {bn, vl, account, bank, otherKind, site, otherSite};
}

QString valueOf(const DetailFields &fields, const QString &section, const QString &label)
{
    for (const DetailField &f : fields)
        if (f.section == section && f.label == label)
            return f.value;
    return QStringLiteral("<missing>");
}

// Compares the values shown under each section and label; the first difference fails the test.
bool shows(const DetailFields &fields, const QList<std::array<const char *, 3>> &expected)
{
    for (const auto &[section, label, value] : expected) {
        const QString actual =
            valueOf(fields, QString::fromUtf8(section), QString::fromUtf8(label));
        if (actual != QString::fromUtf8(value)) {
            qWarning("%s, %s: \"%s\" instead of \"%s\"", section, label, qPrintable(actual), value);
            return false;
        }
    }
    return true;
}

} // namespace

class TestDetail : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void dueItemShowsEveryField();
    void accountFromItsArchives();
    void windows();

private:
    std::unique_ptr<TestInstallation> m_inst;
};

void TestDetail::initTestCase()
{
    m_inst = std::make_unique<TestInstallation>(false);
    QVERIFY(m_inst->isValid());
    QVERIFY(m_inst->put(suite()));
}

void TestDetail::cleanupTestCase()
{
    m_inst.reset();
}

void TestDetail::init()
{
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
}

void TestDetail::cleanup()
{
    QLocale::setDefault(QLocale::c());
}

void TestDetail::dueItemShowsEveryField()
{
    ErpRecord item =
        TestInstallation::dueItem(QStringLiteral("P"), QStringLiteral("2026000000012"),
                                  QStringLiteral("6"), QStringLiteral("400001"), 1234.5);
    item.setText(QStringLiteral("banca"), QStringLiteral("03069"));
    item.setText(QStringLiteral("agenzia"), QStringLiteral("01600"));
    item.setText(QStringLiteral("valuta"), QStringLiteral("US"));
    item.setNumber(QStringLiteral("cambio"), 1.1628, 6);
    item.setText(QStringLiteral("stato_dist"), QStringLiteral("5"));
    item.setText(QStringLiteral("data_dist"), QStringLiteral("        "));

    const DetailFields fields = DueItemDetail::fields(item, &m_inst->erp());
    QCOMPARE(fields.size(), item.layout().fields(QStringLiteral("*")).size());
    QVERIFY(shows(fields, {{"Scadenza", "Collegamento", "2026000000012"},
                           {"Scadenza", "Data scadenza", "30/11/2026"},
                           {"Scadenza", "Tipo pagamento", "6 - Bonifico"},
                           {"Importi", "Da pagare (VAL)", "1.234,50"},
                           {"Importi", "Cambio", "1,162800"},
                           {"Importi", "Valuta", "US - Dollaro USA"},
                           {"Appoggio", "Agenzia", "01600 - Intesa Sanpaolo - Milano Centro"},
                           {"Distinta", "Stato distinta", "5 - in distinta per l'intero importo"},
                           {"Distinta", "Data distinta", ""}}));

    // An agency the common tables do not know shows its code alone.
    item.setText(QStringLiteral("agenzia"), QStringLiteral("01601"));
    QCOMPARE(valueOf(DueItemDetail::fields(item, &m_inst->erp()), QStringLiteral("Appoggio"),
                     QStringLiteral("Agenzia")),
             QStringLiteral("01601"));
}

void TestDetail::accountFromItsArchives()
{
    const AccountDetail supplier = AccountDetail::read(m_inst->erp(), QStringLiteral("400001"));
    QVERIFY(supplier.found());
    QCOMPARE(supplier.kind(), QStringLiteral("F"));
    QVERIFY(shows(supplier.fields(), {{"Anagrafica", "Ragione sociale", "Ferramenta Rossi Srl"},
                                      {"Anagrafica", "Partita IVA", "01234567890"},
                                      {"Banca d'appoggio", "Conto corrente", "000012345678"},
                                      {"Banca d'appoggio", "IBAN", "IT60X0306901600000012345678"},
                                      {"Banca d'appoggio", "Descrizione agenzia", "Milano Centro"},
                                      {"Sede amministrativa", "Indirizzo", "Viale Monza 300"}}));

    const AccountDetail unknown = AccountDetail::read(m_inst->erp(), QStringLiteral("123456"));
    QVERIFY(!unknown.found());
    for (const DetailField &f : unknown.fields())
        QVERIFY2(f.label == u"Codice" || f.value.isEmpty(), qPrintable(f.label));
}

void TestDetail::windows()
{
    DetailDialog account(QStringLiteral("Zoom Fornitore"), QStringLiteral("Dati Fornitore"),
                         AccountDetail::read(m_inst->erp(), QStringLiteral("400001")).fields());
    QLineEdit *name =
        account.valueBox(QStringLiteral("Anagrafica"), QStringLiteral("Ragione sociale"));
    QVERIFY(name);
    QCOMPARE(name->text(), QStringLiteral("Ferramenta Rossi Srl"));
    QVERIFY(name->isReadOnly());

    ErpRecord item = TestInstallation::dueItem(QStringLiteral("P"), QStringLiteral("2026000000012"),
                                               QStringLiteral("1"), QStringLiteral("400001"), 10);
    DetailDialog dueItem(DueItemDetail::title(), DueItemDetail::frame(),
                         DueItemDetail::fields(item, &m_inst->erp()));
    QCOMPARE(dueItem.findChildren<QLineEdit *>().size(),
             item.layout().fields(QStringLiteral("*")).size());
    for (QLineEdit *box : dueItem.findChildren<QLineEdit *>())
        QVERIFY(box->isReadOnly());

    // Each window fits a 1024x768 screen and shows its values whole (an IBAN, an address).
    for (DetailDialog *dialog : {&account, &dueItem}) {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        QVERIFY(dialog->height() <= 768 && dialog->width() <= 1024);
        for (QLineEdit *box : dialog->findChildren<QLineEdit *>())
            QVERIFY2(box->width() >= ui::widthToShow(box, box->text()), qPrintable(box->text()));
    }
}

QTEST_MAIN(TestDetail)
#include "tst_detail.moc"
