#include "faultyrecordmanager.h"
#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "checks/markreconciliation.h"
#include "core/vbdate.h"
#include "distinta/distintestore.h"
#include "localdb/databaseconnection.h"
#include "startup/errortrap.h"

#include <QSqlQuery>
#include <QTest>

using namespace pg;
using namespace pg::distinta;
using checks::MarkDisagreement;
using checks::MarkReconciliation;
using pg::test::TestInstallation;

namespace {

using Kind = MarkDisagreement::Kind;

QString link(int n)
{
    return QStringLiteral("2026%1").arg(n, 9, 10, QLatin1Char('0'));
}

Riga rowFor(int n, const QString &type, double amount, double inDistinta)
{
    Riga r;
    r.flg_flag_colpar = QStringLiteral("F");
    r.des_link_orvida = link(n);
    r.des_num_doc = link(n).right(6);
    r.dat_data_doc = QStringLiteral("20261015");
    r.dat_data_scad = QStringLiteral("20261130");
    r.cod_tipo_pag = type;
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = QStringLiteral("200001");
    r.val_cambio = 1;
    r.val_imp_dapag_val = r.val_imp_dapag_eur = amount;
    r.val_imp_residuo_val = r.val_imp_residuo_eur = inDistinta;
    r.val_imp_indist_val = r.val_imp_indist_eur = inDistinta;
    return r;
}

} // namespace

class TestMarkReconciliation : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void disagreementsOfEveryKindAndTheirRepair();
    void repairLeavesItemsChangedSinceTheWalk();
    void walkThatFailsIsNotAFinding();

private:
    void save(int number, const QList<Riga> &rows);
    // Sets fields of a due item as another program of the suite would.
    void setFields(int n, const QList<std::pair<const char *, const char *>> &fields);
    archives::ErpRecord item(int n);
    QList<Kind> kinds(const MarkReconciliation &r);

    std::unique_ptr<TestInstallation> m_inst;
    std::unique_ptr<test::FaultyRecordManager> m_faulty;
    std::unique_ptr<archives::ErpSession> m_erp;
    std::unique_ptr<DistinteStore> m_store;
};

void TestMarkReconciliation::init()
{
    ErrorTrap::instance().resetForTest();
    dates::setToday(QDate(2026, 11, 21));
    m_store.reset();
    m_erp.reset();
    m_faulty.reset();
    m_inst.reset();
    m_inst = std::make_unique<TestInstallation>();
    QVERIFY(m_inst->isValid());
    QList<archives::ErpRecord> items;
    for (int n = 1; n <= 8; ++n)
        items << TestInstallation::dueItem(QStringLiteral("F"), link(n),
                                           n == 8 ? QStringLiteral("9") : QStringLiteral("6"),
                                           QStringLiteral("200001"), 100);
    QVERIFY(m_inst->put(items));
    m_faulty = std::make_unique<test::FaultyRecordManager>(m_inst->store());
    m_erp = std::make_unique<archives::ErpSession>(*m_faulty, TestInstallation::Handle);
    m_store = std::make_unique<DistinteStore>(m_erp.get());
    m_store->setPStrConn(m_inst->connectionString());
}

void TestMarkReconciliation::save(int number, const QList<Riga> &rows)
{
    Distinta d;
    m_store->Nuovo(d);
    QCOMPARE(d.header().cod_distinta.trimmed(), QString::number(number));
    d.editHeader().cod_abi_banca = QStringLiteral("02008");
    d.editHeader().cod_cab_banca = QStringLiteral("01600");
    for (Riga r : rows) {
        r.cod_distinta = d.header().cod_distinta;
        d.righe.append(r);
    }
    QVERIFY(m_store->Salva(d, false, false));
}

void TestMarkReconciliation::setFields(int n,
                                       const QList<std::pair<const char *, const char *>> &fields)
{
    archives::ErpRecord r = item(n);
    for (const auto &[field, value] : fields)
        r.setText(QString::fromLatin1(field), QString::fromLatin1(value));
    QVERIFY(m_inst->erp().rewrite(r));
}

archives::ErpRecord TestMarkReconciliation::item(int n)
{
    archives::ErpRecord r(archives::Scadenze);
    r.setText(QStringLiteral("flag_colpar"), QStringLiteral("F"));
    r.setText(QStringLiteral("link"), link(n));
    m_inst->erp().readEq(r, 2);
    return r;
}

QList<Kind> TestMarkReconciliation::kinds(const MarkReconciliation &r)
{
    QList<Kind> list;
    for (const MarkDisagreement &d : r.disagreements())
        list << d.kind;
    return list;
}

void TestMarkReconciliation::disagreementsOfEveryKindAndTheirRepair()
{
    test::ScriptedPrompter prompter;
    // Distinta 1 pays items 1, 3, 4 (in part), 5 and the RID 8; distinta 2 the rest of 4.
    save(1, {rowFor(1, QStringLiteral("6"), 100, 100), rowFor(3, QStringLiteral("6"), 100, 100),
             rowFor(4, QStringLiteral("6"), 100, 60), rowFor(5, QStringLiteral("6"), 100, 100),
             rowFor(8, QStringLiteral("9"), 100, 100)});
    save(2, {rowFor(4, QStringLiteral("6"), 100, 40)});
    MarkReconciliation clean(*m_store, *m_erp);
    QVERIFY(clean.run());
    QCOMPARE(clean.itemsRead(), 8);
    QVERIFY(clean.disagreements().isEmpty());

    // What earlier programs left: 2 marked in no distinta, 3 free although in distinta 1, 4
    // in two distinte with the state of one, 5 with another distinta's date, 7 with a state
    // but no mark; and a row of distinta 2 whose due item the suite no longer has.
    setFields(2, {{"stato_dist", "5"},
                  {"mark_dist", "B"},
                  {"mark_pres", "B"},
                  {"data_dist", "20261101"},
                  {"abi_pres", "02008"},
                  {"cab_pres", "01600"}});
    setFields(3, {{"stato_dist", "0"}, {"mark_dist", "0"}, {"mark_pres", " "}});
    setFields(4, {{"stato_dist", "3"}});
    setFields(5, {{"data_dist", "20261101"}});
    setFields(7, {{"stato_dist", "3"}});
    {
        DatabaseConnection conn(m_inst->database());
        QVERIFY(QSqlQuery(conn.database())
                    .exec(QStringLiteral("INSERT INTO TB_RIGHE (cod_distinta, flg_flag_colpar, "
                                         "des_link_orvida, des_num_doc, dat_data_doc, "
                                         "dat_data_scad, cod_clifor, cod_tipo_pag) VALUES "
                                         "('     2', 'F', '2026000000009', '000009', "
                                         "'20261015', '20261130', '200001', '6')")));
    }

    MarkReconciliation found(*m_store, *m_erp);
    QVERIFY(found.run());
    QCOMPARE(kinds(found),
             (QList<Kind>{Kind::MarkedWithoutDistinta, Kind::FreeInDistinta, Kind::WrongState,
                          Kind::WrongPresentation, Kind::WrongState, Kind::MissingItem}));
    QCOMPARE(found.repairableCount(), 5);
    const QStringList report = found.reportLines();
    QCOMPARE(report.at(1),
             QStringLiteral("Scadenze lette: 8. Differenze: 6, di cui correggibili: 5."));
    QCOMPARE(report.at(3), QStringLiteral("Scadenza F 2026000000002 (conto 200001, doc. 000002 del "
                                          "15/10/2026, scad. 30/11/2026): in [orvida] risulta in "
                                          "distinta (stato 5, segno B), ma non è in nessuna "
                                          "distinta salvata."));
    QCOMPARE(report.at(5), QStringLiteral("Scadenza F 2026000000004 (conto 200001, doc. 000004 del "
                                          "15/10/2026, scad. 30/11/2026): in [orvida] ha stato 3, "
                                          "segno B, ma è in 2 distinte (1, 2): dovrebbe avere "
                                          "stato 4, segno B."));
    QCOMPARE(report.at(6), QStringLiteral("Scadenza F 2026000000005 (conto 200001, doc. 000005 del "
                                          "15/10/2026, scad. 30/11/2026): in [orvida] è presentata "
                                          "il 01/11/2026, banca 02008/01600, ma è nella distinta "
                                          "1, presentata il 21/11/2026, banca 02008/01600."));
    QVERIFY(report.at(8).endsWith(QStringLiteral("è nella distinta 2, ma non è più nell'archivio "
                                                 "delle scadenze di [orvida]: va tolta dalla "
                                                 "distinta.")));
    QVERIFY(prompter.shown().isEmpty());

    // The repair sets every item as the distinte say; the missing one stays to be removed.
    QCOMPARE(found.repair(), 0);
    QCOMPARE(item(2).text(QStringLiteral("mark_dist")), QStringLiteral("0"));
    QCOMPARE(item(2).text(QStringLiteral("data_dist")), QString(8, u' '));
    QCOMPARE(item(3).text(QStringLiteral("stato_dist")), QStringLiteral("5"));
    QCOMPARE(item(4).text(QStringLiteral("stato_dist")), QStringLiteral("4"));
    QCOMPARE(item(5).text(QStringLiteral("data_dist")), QStringLiteral("20261121"));
    QCOMPARE(item(7).text(QStringLiteral("stato_dist")), QStringLiteral("0"));
    for (int n : {3, 5})
        QCOMPARE(item(n).buffer().mid(189, 21), item(1).buffer().mid(189, 21));
    MarkReconciliation after(*m_store, *m_erp);
    QVERIFY(after.run());
    QCOMPARE(kinds(after), QList<Kind>{Kind::MissingItem});
    QCOMPARE(after.repair(), 0);
}

void TestMarkReconciliation::repairLeavesItemsChangedSinceTheWalk()
{
    test::ScriptedPrompter prompter;
    setFields(2, {{"stato_dist", "5"}, {"mark_dist", "B"}});
    setFields(3, {{"stato_dist", "5"}, {"mark_dist", "B"}});
    MarkReconciliation found(*m_store, *m_erp);
    QVERIFY(found.run());
    QCOMPARE(found.disagreements().size(), 2);
    // Another program puts item 3 in a distinta of its own before the repair.
    setFields(3, {{"stato_dist", "3"}});
    QCOMPARE(found.repair(), 1);
    QCOMPARE(item(2).text(QStringLiteral("mark_dist")), QStringLiteral("0"));
    QCOMPARE(item(3).text(QStringLiteral("stato_dist")), QStringLiteral("3"));
    QCOMPARE(prompter.shown().size(), 1);
    QVERIFY(prompter.lastText().contains(QStringLiteral("F 2026000000003: da stato 5, segno B a "
                                                        "stato 0, segno 0")));
    // Kept in the journal as a conflict, not as work to do.
    QVERIFY(m_store->completePendingWriteBacks());
    QCOMPARE(m_store->pendingWriteBacks(), 0);
}

void TestMarkReconciliation::walkThatFailsIsNotAFinding()
{
    test::ScriptedPrompter prompter;
    m_faulty->failNextReadsFrom(3);
    MarkReconciliation walk(*m_store, *m_erp);
    QVERIFY(!walk.run());
    QCOMPARE(prompter.texts(),
             QStringList{QStringLiteral("Errore in ricerca archivi [orvida]\r\nL'archivio delle "
                                        "scadenze non si legge oltre la scadenza 3 (errore 12): "
                                        "la verifica non è completa.")});
}

QTEST_GUILESS_MAIN(TestMarkReconciliation)
#include "tst_markreconciliation.moc"
