#include "faultyrecordmanager.h"
#include "scriptedprompter.h"
#include "testdatabase.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "checks/markreconciliation.h"
#include "core/apperror.h"
#include "core/vbdate.h"
#include "distinta/distintaversions.h"
#include "distinta/distintestore.h"
#include "distinta/programvalues.h"
#include "localdb/databaseconnection.h"
#include "startup/errortrap.h"

#include <QSqlQuery>
#include <QTest>

using namespace pg;
using namespace pg::distinta;
using pg::test::TestInstallation;

namespace {

Riga rowFor(const QString &link, const QString &type, double amount, double inDistinta,
            const QString &account = QStringLiteral("200001"))
{
    Riga r;
    r.flg_flag_colpar = QStringLiteral("F");
    r.des_link_orvida = link;
    r.des_num_doc = link.right(6);
    r.des_serie_doc = QStringLiteral(" ");
    r.dat_data_doc = QStringLiteral("20261015");
    r.dat_data_scad = QStringLiteral("20261130");
    r.cod_tipo_pag = type;
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = account;
    r.cod_banca_cli = QStringLiteral("03069");
    r.cod_agenzia_cli = QStringLiteral("01600");
    r.des_num_cc = QStringLiteral("000012345678");
    r.cod_valuta = QStringLiteral("EU");
    r.val_cambio = 1;
    r.val_imp_dapag_val = amount;
    r.val_imp_dapag_eur = amount;
    r.val_imp_residuo_val = inDistinta;
    r.val_imp_residuo_eur = inDistinta;
    r.val_imp_indist_val = inDistinta;
    r.val_imp_indist_eur = inDistinta;
    r.des_scadenza = QStringLiteral("Vs.Fatt. ") + r.des_num_doc;
    return r;
}

QString link(int n)
{
    return QStringLiteral("2026%1").arg(n, 9, 10, QLatin1Char('0'));
}

} // namespace

class TestDistinteStore : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void numbersAndNavigation();
    void numberOverflowIsAnError();
    void validationMessagesAndFocus();
    void saveWritesExactlyWhatChanged();
    void declinedSaveKeepsEverything();
    void stateOfDueItemsFollowsTheDistinte();
    void removedRowsAreReleased();
    void vanishedDueItemStopsTheSave();
    void failuresAtEveryPositionEndInAgreement_data();
    void failuresAtEveryPositionEndInAgreement();
    void releasedAndAddedAgainIsOneChange();
    void lockedDatabase();
    void stateChangeAndSingleRowMarking();
    void twoClerksAtOnce();
    void databaseLostInsideTheSave();

private:
    std::unique_ptr<TestInstallation> m_inst;
    std::unique_ptr<test::FaultyRecordManager> m_faulty;
    std::unique_ptr<archives::ErpSession> m_erp;
    std::unique_ptr<DistinteStore> m_store;

    Distinta newDistinta(const QList<Riga> &rows);
    archives::ErpRecord dueItem(const QString &link);
    QString stateOf(const QString &link) { return dueItem(link).text(QStringLiteral("stato_dist")); }
    int count(const QString &sql);
    // What the reconciliation finds between the suite and the saved distinte.
    QStringList disagreements();
};

void TestDistinteStore::init()
{
    ErrorTrap::instance().resetForTest();
    programValues() = ProgramValues();
    dates::setToday(QDate(2026, 11, 21));
    m_store.reset();
    m_erp.reset();
    m_faulty.reset();
    m_inst.reset();
    m_inst = std::make_unique<TestInstallation>();
    QVERIFY(m_inst->isValid());
    QList<archives::ErpRecord> items;
    for (int n = 1; n <= 6; ++n)
        items << TestInstallation::dueItem(QStringLiteral("F"), link(n), QStringLiteral("6"),
                                           QStringLiteral("200001"), 100.0 * n);
    items << TestInstallation::dueItem(QStringLiteral("F"), link(7), QStringLiteral("9"),
                                       QStringLiteral("200002"), 70);
    items << TestInstallation::dueItem(QStringLiteral("F"), link(8), QStringLiteral("1"),
                                       QStringLiteral("200002"), 80);
    QVERIFY(m_inst->put(items));
    m_faulty = std::make_unique<test::FaultyRecordManager>(m_inst->store());
    m_erp = std::make_unique<archives::ErpSession>(*m_faulty, TestInstallation::Handle);
    m_store = std::make_unique<DistinteStore>(m_erp.get());
    m_store->setPStrConn(m_inst->connectionString());
}

Distinta TestDistinteStore::newDistinta(const QList<Riga> &rows)
{
    Distinta d;
    m_store->Nuovo(d);
    Testata &h = d.editHeader();
    h.cod_abi_banca = QStringLiteral("02008");
    h.cod_cab_banca = QStringLiteral("01600");
    for (Riga r : rows) {
        r.cod_distinta = h.cod_distinta;
        d.righe.append(r);
    }
    return d;
}

archives::ErpRecord TestDistinteStore::dueItem(const QString &l)
{
    archives::ErpRecord r(archives::Scadenze);
    r.setText(QStringLiteral("flag_colpar"), QStringLiteral("F"));
    r.setText(QStringLiteral("link"), l);
    if (!m_inst->erp().readEq(r, 2))
        qWarning("due item %s not found", qPrintable(l));
    return r;
}

int TestDistinteStore::count(const QString &sql)
{
    DatabaseConnection conn(m_inst->database());
    QSqlQuery q(sql, conn.database());
    return q.next() ? q.value(0).toInt() : -1;
}

QStringList TestDistinteStore::disagreements()
{
    checks::MarkReconciliation reconciliation(*m_store, m_inst->erp());
    if (!reconciliation.run())
        return {QStringLiteral("the walk did not end")};
    QStringList lines;
    for (const checks::MarkDisagreement &d : reconciliation.disagreements())
        lines << d.text();
    return lines;
}

void TestDistinteStore::numbersAndNavigation()
{
    QString code;
    QVERIFY(!m_store->Esiste(code, 0));
    QVERIFY(!m_store->Esiste(code, 1));
    QVERIFY(!m_store->Esiste(code, 2));

    Distinta d;
    m_store->Nuovo(d);
    QCOMPARE(d.header().cod_distinta, QStringLiteral("     1"));
    QCOMPARE(d.header().flg_stato, QStringLiteral("P"));
    QCOMPARE(d.header().dat_data_creazione, QDate(2026, 11, 21));
    QCOMPARE(d.header().dat_data_valuta, QDate(2026, 11, 21));
    QCOMPARE(d.header().cod_valuta, QStringLiteral("  "));
    QCOMPARE(d.header().des_valuta, QStringLiteral("EURO"));
    QCOMPARE(d.header().flg_tipo, QStringLiteral("F"));

    {
        DatabaseConnection conn(m_inst->database());
        QSqlQuery q(conn.database());
        for (const char *c : {"     9", "    10", "     3"})
            QVERIFY(q.exec(QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta) VALUES ('%1')").arg(QLatin1String(c))));
    }
    m_store->Nuovo(d);
    QCOMPARE(d.header().cod_distinta, QStringLiteral("    11"));

    code = QStringLiteral("     9");
    QCOMPARE(m_store->Esiste(code, 0), std::optional<QString>(QStringLiteral("     9")));
    QCOMPARE(m_store->Esiste(code, 1), std::optional<QString>(QStringLiteral("    10")));
    QCOMPARE(m_store->Esiste(code, 2), std::optional<QString>(QStringLiteral("     3")));
    code = QStringLiteral("     5");
    QVERIFY(!m_store->Esiste(code, 0));
    // Past the last and before the first stay on the last and the first.
    code = QStringLiteral("    10");
    QCOMPARE(m_store->Esiste(code, 1), std::optional<QString>(QStringLiteral("    10")));
    code = QStringLiteral("     3");
    QCOMPARE(m_store->Esiste(code, 2), std::optional<QString>(QStringLiteral("     3")));
    // Previous from nothing is the last, and the caller's code is changed.
    code = QStringLiteral("   ");
    QCOMPARE(m_store->Esiste(code, 2), std::optional<QString>(QStringLiteral("    10")));
    QCOMPARE(code, QStringLiteral("zzzzzzzzzz"));
    // A code with an apostrophe is simply a code.
    code = QStringLiteral("' OR 1=1 --");
    QVERIFY(!m_store->Esiste(code, 0));
}

void TestDistinteStore::numberOverflowIsAnError()
{
    {
        DatabaseConnection conn(m_inst->database());
        QSqlQuery(conn.database()).exec(QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta) VALUES (' 32767')"));
    }
    Distinta d;
    try {
        m_store->Nuovo(d);
        QFAIL("no overflow");
    } catch (const AppError &e) {
        QCOMPARE(e.number(), AppError::Overflow);
    }
    QVERIFY(!d.hasHeader());
}

void TestDistinteStore::validationMessagesAndFocus()
{
    test::ScriptedPrompter prompter;
    QList<HeaderField> focus;
    m_store->setFocusRequestHandler([&](HeaderField f) { focus << f; });
    Distinta d = newDistinta({});
    d.editHeader().dat_data_valuta = QDate();
    QVERIFY(!m_store->ValidaDati(d));
    d.editHeader().dat_data_valuta = QDate(2026, 12, 1);
    d.editHeader().dat_data_creazione = QDate();
    QVERIFY(!m_store->ValidaDati(d));
    d.editHeader().dat_data_creazione = QDate(2026, 11, 21);
    d.editHeader().cod_abi_banca = QStringLiteral("   ");
    QVERIFY(!m_store->ValidaDati(d));
    d.editHeader().cod_abi_banca = QStringLiteral("02008");
    d.editHeader().cod_cab_banca = QString();
    QVERIFY(!m_store->ValidaDati(d));
    d.editHeader().cod_cab_banca = QStringLiteral("01600");
    QVERIFY(!m_store->Salva(d, false, false));
    QCOMPARE(prompter.texts(), QStringList({QStringLiteral("Inserire la data valuta!"),
                                            QStringLiteral("Inserire la data di creazione distinta!"),
                                            QStringLiteral("Inserire la banca di presentazione!"),
                                            QStringLiteral("Inserire la agenzia di presentazione!"),
                                            QStringLiteral("Imposssibile salvare non esistono righe!")}));
    for (const Message &m : prompter.shown())
        QCOMPARE(m.icon, Icon::Exclamation);
    QCOMPARE(focus, QList<HeaderField>({HeaderField::BancaPresentazione, HeaderField::AgenziaPresentazione}));
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA")), 0);
    QCOMPARE(m_faulty->equalReads(), 0);
}

void TestDistinteStore::saveWritesExactlyWhatChanged()
{
    test::ScriptedPrompter prompter;
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 100),
                              rowFor(link(2), QStringLiteral("6"), 200, 150),
                              rowFor(link(7), QStringLiteral("9"), 70, 70, QStringLiteral("200002"))});
    QVERIFY(m_store->Salva(d, false, false));
    QVERIFY(prompter.shown().isEmpty());
    QVERIFY(!d.hasChanges());
    QCOMPARE(d.righeRagg.size(), 2);

    {
        // Count the statements a second save sends.
        DatabaseConnection conn(m_inst->database());
        QSqlQuery q(conn.database());
        QVERIFY(q.exec(QStringLiteral("CREATE TABLE log (what TEXT)")));
        if (test::onServer())
            QVERIFY(q.exec(QStringLiteral(
                "CREATE FUNCTION log_write() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN INSERT "
                "INTO log VALUES (TG_OP || ' ' || upper(TG_TABLE_NAME)); RETURN NULL; END $$")));
        for (const char *table : {"TB_TESTATA", "TB_RIGHE", "TB_RIGHE_RAGG"})
            for (const char *op : {"INSERT", "UPDATE", "DELETE"})
                QVERIFY(q.exec(
                    (test::onServer()
                         ? QStringLiteral("CREATE TRIGGER t_%1_%2 AFTER %2 ON %1 FOR EACH ROW "
                                          "EXECUTE FUNCTION log_write()")
                         : QStringLiteral("CREATE TRIGGER t_%1_%2 AFTER %2 ON %1 BEGIN INSERT "
                                          "INTO log VALUES ('%2 %1'); END"))
                        .arg(QLatin1String(table), QLatin1String(op))));
    }
    d.righe.edit(1).des_scadenza = QStringLiteral("Acconto ") + QString(70, u'x');
    QVERIFY(m_store->Salva(d, false, true));
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM log")), 1);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM log WHERE what = 'UPDATE TB_RIGHE'")), 1);

    Distinta read;
    m_store->Leggi(read, QStringLiteral("     1"));
    QCOMPARE(read.righe.size(), 3);
    QCOMPARE(read.header().cod_abi_banca, QStringLiteral("02008"));
    QCOMPARE(read.header().dat_data_creazione, QDate(2026, 11, 21));
    // A description longer than its column is stored cut to the column.
    QCOMPARE(read.righe.at(read.righe.indexOfKey(QStringLiteral("F") + link(2))).des_scadenza,
             (QStringLiteral("Acconto ") + QString(70, u'x')).left(60));
    QCOMPARE(*read.righe.at(1).val_imp_indist_val, 150.0);
    QCOMPARE(read.righeRagg.size(), 2);
    // Rows come back ordered by account.
    QCOMPARE(read.righe.at(2).cod_clifor, QStringLiteral("200002"));

    // Unknown values are stored as NULL and come back unknown; an empty text stays a text.
    d.righe.edit(0).des_scadenza = QString();
    d.righe.edit(0).des_num_prot = QStringLiteral("");
    d.righe.edit(0).val_imp_indist_val.reset();
    QVERIFY(m_store->Salva(d, false, true));
    const QString rowOne = QStringLiteral(" FROM TB_RIGHE WHERE des_link_orvida = '%1'").arg(link(1));
    QCOMPARE(count(QStringLiteral("SELECT des_scadenza IS NULL AND val_imp_indist_val IS NULL") +
                   rowOne),
             1);
    QCOMPARE(count(QStringLiteral("SELECT des_num_prot = ''") + rowOne), 1);
    m_store->Leggi(read, QStringLiteral("     1"));
    const Riga &back = read.righe.at(read.righe.indexOfKey(QStringLiteral("F") + link(1)));
    QVERIFY(back.des_scadenza.isNull());
    QVERIFY(!back.des_num_prot.isNull());
    QVERIFY(!back.val_imp_indist_val);
}

void TestDistinteStore::declinedSaveKeepsEverything()
{
    test::ScriptedPrompter prompter;
    prompter.script({Answer::No});
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 100)});
    QVERIFY(!m_store->Salva(d, true, false));
    QCOMPARE(prompter.lastText(), QStringLiteral("Salva le modifiche alla Distinta?"));
    QCOMPARE(prompter.shown().last().buttons, Buttons::YesNo);
    QVERIFY(d.hasChanges());
    QVERIFY(d.righeRagg.isEmpty());
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE")), 0);
    QCOMPARE(stateOf(link(1)), QStringLiteral("0"));
}

void TestDistinteStore::stateOfDueItemsFollowsTheDistinte()
{
    test::ScriptedPrompter prompter;
    // Item 1 wholly, item 2 split over two distinte, a "9" and a "1" that keep their state.
    Distinta first = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 100),
                                  rowFor(link(2), QStringLiteral("6"), 200, 120),
                                  rowFor(link(7), QStringLiteral("9"), 70, 70, QStringLiteral("200002")),
                                  rowFor(link(8), QStringLiteral("1"), 80, 80, QStringLiteral("200002"))});
    QVERIFY(m_store->Salva(first, false, false));
    QCOMPARE(stateOf(link(1)), QStringLiteral("5"));
    QCOMPARE(stateOf(link(2)), QStringLiteral("3"));
    QCOMPARE(stateOf(link(7)), QStringLiteral("0"));
    QCOMPARE(stateOf(link(8)), QStringLiteral("0"));
    const archives::ErpRecord marked = dueItem(link(7));
    QCOMPARE(marked.text(QStringLiteral("mark_dist")), QStringLiteral("B"));
    QCOMPARE(marked.text(QStringLiteral("mark_pres")), QStringLiteral("B"));
    QCOMPARE(marked.text(QStringLiteral("data_dist")), QStringLiteral("20261121"));
    QCOMPARE(marked.text(QStringLiteral("abi_pres")), QStringLiteral("02008"));
    QCOMPARE(marked.text(QStringLiteral("cab_pres")), QStringLiteral("01600"));

    // Saving again does not move a "5".
    first.righe.edit(0).des_scadenza = QStringLiteral("x");
    QVERIFY(m_store->Salva(first, false, false));
    QCOMPARE(stateOf(link(1)), QStringLiteral("5"));
    QCOMPARE(stateOf(link(2)), QStringLiteral("3"));

    Distinta second = newDistinta({rowFor(link(2), QStringLiteral("6"), 200, 80)});
    QCOMPARE(second.header().cod_distinta, QStringLiteral("     2"));
    QVERIFY(m_store->Salva(second, false, false));
    QCOMPARE(stateOf(link(2)), QStringLiteral("4"));

    QVERIFY(m_store->Cancella(second));
    QCOMPARE(stateOf(link(2)), QStringLiteral("3"));
    QCOMPARE(dueItem(link(2)).text(QStringLiteral("mark_dist")), QStringLiteral("B"));
    QVERIFY(m_store->Cancella(first));
    for (int n : {1, 2, 7, 8}) {
        const archives::ErpRecord item = dueItem(link(n));
        QCOMPARE(item.text(QStringLiteral("stato_dist")), QStringLiteral("0"));
        QCOMPARE(item.text(QStringLiteral("mark_dist")), QStringLiteral("0"));
        QCOMPARE(item.text(QStringLiteral("mark_pres")), QStringLiteral(" "));
        QCOMPARE(item.text(QStringLiteral("data_dist")), QString(8, u' '));
        QCOMPARE(item.text(QStringLiteral("abi_pres")), QString(5, u' '));
    }
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA")), 0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE")), 0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE_RAGG")), 0);
    QVERIFY(first.righe.isEmpty());
    QVERIFY(prompter.shown().isEmpty());
}

void TestDistinteStore::removedRowsAreReleased()
{
    test::ScriptedPrompter prompter;
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 100),
                              rowFor(link(3), QStringLiteral("6"), 300, 300)});
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(stateOf(link(3)), QStringLiteral("5"));

    // An empty list of released items reads nothing beyond the rows.
    m_faulty->reset();
    d.righe.edit(0).des_scadenza = QStringLiteral("y");
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(m_faulty->equalReads(), 2);

    const int i = d.righe.indexOfKey(QStringLiteral("F") + link(3));
    DistinteStore::AddRigheDaCanc(d, d.righe.at(i).key());
    // An item already free is left alone.
    DistinteStore::AddRigheDaCanc(d, QStringLiteral("F") + link(4));
    d.righe.removeAt(i);
    m_faulty->reset();
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(stateOf(link(3)), QStringLiteral("0"));
    QCOMPARE(m_faulty->rewrites(), 1); // the released item: the remaining row already agrees
    QVERIFY(d.righeDaCanc.isEmpty());
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE")), 1);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE_RAGG")), 1);
}

void TestDistinteStore::vanishedDueItemStopsTheSave()
{
    test::ScriptedPrompter prompter;
    // A due item the suite no longer has cannot be marked: nothing is saved or marked, and
    // the clerk is told which one it is.
    m_faulty->failReadsOf("F" + link(2).toLatin1());
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 100),
                              rowFor(link(2), QStringLiteral("6"), 200, 200),
                              rowFor(link(3), QStringLiteral("6"), 300, 300)});
    QVERIFY(!m_store->Salva(d, false, false));
    QCOMPARE(prompter.texts(),
             QStringList{QStringLiteral("Errore in ricerca archivi [orvida]\r\nLa scadenza non è "
                                        "più nell'archivio: documento 000002 del 15/10/2026, "
                                        "rata , conto 200001.")});
    QCOMPARE(prompter.shown().first().icon, Icon::None);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA")), 0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_GIORNALE")), 0);
    QVERIFY(d.hasChanges());
    QCOMPARE(m_faulty->rewrites(), 0);
    QCOMPARE(ErrorTrap::instance().ErrorCount(), qint16(0));

    // The clerk removes the row: the save goes through, the vanished item is left alone.
    DistinteStore::AddRigheDaCanc(d, d.righe.at(1).key());
    d.righe.removeAt(1);
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(stateOf(link(1)), QStringLiteral("5"));
    QCOMPARE(stateOf(link(3)), QStringLiteral("5"));
    m_faulty->reset();
    QCOMPARE(disagreements(), QStringList());

    // Deleting a distinta whose item has vanished frees the others.
    m_faulty->failReadsOf("F" + link(3).toLatin1());
    QVERIFY(m_store->Cancella(d));
    QCOMPARE(stateOf(link(1)), QStringLiteral("0"));
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE")), 0);
}

void TestDistinteStore::failuresAtEveryPositionEndInAgreement_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("reads");
    QTest::addColumn<int>("position");
    // The second save of the distinta reads seven items (item 3 it released, six rows) and
    // changes four (item 3 freed, 4, 5 and 6 marked); its delete reads four and frees four.
    for (int p = 1; p <= 4; ++p)
        QTest::addRow("save, rewrite %d", p) << QStringLiteral("save") << false << p;
    for (int p = 1; p <= 11; ++p)
        QTest::addRow("save, read %d", p) << QStringLiteral("save") << true << p;
    for (int p = 1; p <= 4; ++p)
        QTest::addRow("delete, rewrite %d", p) << QStringLiteral("delete") << false << p;
    for (int p = 1; p <= 8; ++p)
        QTest::addRow("delete, read %d", p) << QStringLiteral("delete") << true << p;
}

void TestDistinteStore::failuresAtEveryPositionEndInAgreement()
{
    QFETCH(QString, operation);
    QFETCH(bool, reads);
    QFETCH(int, position);
    test::ScriptedPrompter prompter;
    // Item 2 is split over two distinte ("4"): releasing it twice would free it.
    Distinta other = newDistinta({rowFor(link(2), QStringLiteral("6"), 200, 50)});
    QVERIFY(m_store->Salva(other, false, false));
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 100),
                              rowFor(link(2), QStringLiteral("6"), 200, 150),
                              rowFor(link(3), QStringLiteral("6"), 300, 300),
                              rowFor(link(7), QStringLiteral("9"), 70, 70, QStringLiteral("200002"))});
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(stateOf(link(2)), QStringLiteral("4"));
    if (operation == u"save") {
        DistinteStore::AddRigheDaCanc(d, d.righe.at(d.righe.indexOfKey(QStringLiteral("F") + link(3))).key());
        d.righe.removeAt(d.righe.indexOfKey(QStringLiteral("F") + link(3)));
        for (int n : {4, 5, 6}) {
            Riga r = rowFor(link(n), QStringLiteral("6"), 100.0 * n, 100.0 * n);
            r.cod_distinta = d.header().cod_distinta;
            d.righe.append(r);
        }
    }

    reads ? m_faulty->failEqualReadsFrom(position) : m_faulty->failRewritesFrom(position);
    const bool done = operation == u"save" ? m_store->Salva(d, false, false) : m_store->Cancella(d);
    m_faulty->reset();
    // A save that the archive stops says why, after the suite's own words.
    if (operation == u"save" && !done)
        QVERIFY2(prompter.lastText().endsWith(QStringLiteral(
                     "\r\nCausa: errore di lettura o scrittura del file (errore 12), archivio 38 "
                     "(Scadenze).")),
                 qPrintable(prompter.lastText()));
    // The next start completes whatever was left; an operation that did not happen can be
    // done again.
    QVERIFY(m_store->completePendingWriteBacks());
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_GIORNALE")), 0);
    QCOMPARE(disagreements(), QStringList());
    if (!done && operation == u"save")
        QVERIFY(m_store->Salva(d, false, false));
    if (!done && operation == u"delete")
        QVERIFY(m_store->Cancella(d));
    QCOMPARE(disagreements(), QStringList());
    // Split over two distinte, item 2 is never freed while the other one holds it.
    QCOMPARE(stateOf(link(2)), operation == u"save" ? QStringLiteral("4") : QStringLiteral("3"));
    QCOMPARE(stateOf(link(3)), QStringLiteral("0"));
    QCOMPARE(ErrorTrap::instance().ErrorCount(), qint16(0));
}

void TestDistinteStore::releasedAndAddedAgainIsOneChange()
{
    test::ScriptedPrompter prompter;
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 60)});
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(stateOf(link(1)), QStringLiteral("3"));
    // Removed and taken again for its whole amount before the save: freed, then marked whole.
    DistinteStore::AddRigheDaCanc(d, d.righe.at(0).key());
    d.righe.removeAt(0);
    Riga whole = rowFor(link(1), QStringLiteral("6"), 100, 100);
    whole.cod_distinta = d.header().cod_distinta;
    d.righe.append(whole);
    m_faulty->reset();
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(stateOf(link(1)), QStringLiteral("5"));
    QCOMPARE(m_faulty->rewrites(), 1);
    QVERIFY(prompter.shown().isEmpty());
}

void TestDistinteStore::lockedDatabase()
{
    test::ScriptedPrompter prompter;
    prompter.script({Answer::Yes});
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 100)});
    test::DatabaseHold hold(m_inst->database());
    QVERIFY(hold.isHeld());
    QVERIFY(!m_store->Salva(d, false, false));
    QCOMPARE(prompter.shown().size(), 1);
    QVERIFY(prompter.lastText().startsWith(QStringLiteral("Error 300")));
    QVERIFY(prompter.lastText().contains(QStringLiteral(" in frmMain!Sub Salva()")));
    QVERIFY(d.hasChanges());
    QCOMPARE(stateOf(link(1)), QStringLiteral("0"));
    hold.release();
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(stateOf(link(1)), QStringLiteral("5"));
}

void TestDistinteStore::stateChangeAndSingleRowMarking()
{
    test::ScriptedPrompter prompter;
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 60)});
    QVERIFY(m_store->Salva(d, false, false));
    QVERIFY(m_store->AggiornaFlagStato(d, QStringLiteral("F")));
    QCOMPARE(d.header().flg_stato, QStringLiteral("F"));
    Distinta read;
    m_store->Leggi(read, d.header().cod_distinta);
    QCOMPARE(read.header().flg_stato, QStringLiteral("F"));

    m_faulty->reset();
    QVERIFY(m_store->AggiornaFlagStato(d, QStringLiteral("F")));
    QCOMPARE(m_faulty->rewrites(), 0);

    QVERIFY(m_store->ControllaDatiBanca(d.righe));
    d.righe.edit(0).des_num_cc = QStringLiteral("   ");
    QVERIFY(!m_store->ControllaDatiBanca(d.righe));
    d.righe.edit(0).cod_tipo_pag = QStringLiteral("1");
    QVERIFY(m_store->ControllaDatiBanca(d.righe));
    d.righe.edit(0).cod_agenzia_cli = QString();
    QVERIFY(!m_store->ControllaDatiBanca(d.righe));
    d.righe.edit(0).cod_tipo_pag = QStringLiteral("3");
    QVERIFY(m_store->ControllaDatiBanca(d.righe));
}

void TestDistinteStore::twoClerksAtOnce()
{
    test::ScriptedPrompter prompter;
    DistinteStore other(m_erp.get());
    other.setPStrConn(m_inst->connectionString());
    const auto distintaOf = [&](DistinteStore &store, const QList<Riga> &rows) {
        Distinta d;
        store.Nuovo(d);
        d.editHeader().cod_abi_banca = QStringLiteral("02008");
        d.editHeader().cod_cab_banca = QStringLiteral("01600");
        for (Riga r : rows) {
            r.cod_distinta = d.header().cod_distinta;
            d.righe.append(r);
        }
        return d;
    };
    const auto rowsOf = [&](const QString &code) {
        return count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE WHERE cod_distinta = '%1'")
                         .arg(code));
    };

    // Both press "Nuova distinta" before either saves: the same number, and the same free
    // items, item 1 whole in both, item 2 in parts that together do not pass its amount.
    Distinta mine = distintaOf(*m_store, {rowFor(link(1), QStringLiteral("6"), 100, 100),
                                          rowFor(link(2), QStringLiteral("6"), 200, 120),
                                          rowFor(link(3), QStringLiteral("6"), 300, 300)});
    Distinta theirs = distintaOf(other, {rowFor(link(1), QStringLiteral("6"), 100, 100),
                                         rowFor(link(2), QStringLiteral("6"), 200, 80),
                                         rowFor(link(4), QStringLiteral("6"), 400, 400)});
    QCOMPARE(theirs.header().cod_distinta, mine.header().cod_distinta);
    QVERIFY(m_store->Salva(mine, false, false));
    QVERIFY(prompter.shown().isEmpty());
    QVERIFY(other.Salva(theirs, false, false));
    // The second takes the next number and leaves out the item the first pays whole.
    QCOMPARE(theirs.header().cod_distinta, QStringLiteral("     2"));
    QCOMPARE(prompter.texts().size(), 2);
    QVERIFY(prompter.texts().at(0).contains(QStringLiteral("salvata con il numero 2")));
    QVERIFY(prompter.texts().at(1).contains(QStringLiteral("documento ") + link(1).right(6)));
    QVERIFY(!prompter.texts().at(1).contains(QStringLiteral("documento ") + link(2).right(6)));
    QCOMPARE(rowsOf(QStringLiteral("     1")), 3);
    QCOMPARE(rowsOf(QStringLiteral("     2")), 2);
    QCOMPARE(stateOf(link(1)), QStringLiteral("5"));
    QCOMPARE(stateOf(link(2)), QStringLiteral("4"));
    QCOMPARE(disagreements(), QStringList());

    // A third wants more of item 2 than is left: with nothing else to save, nothing is saved.
    prompter.clear();
    Distinta late = distintaOf(other, {rowFor(link(2), QStringLiteral("6"), 200, 10)});
    QVERIFY(!other.Salva(late, false, false));
    QCOMPARE(prompter.texts().size(), 2);
    QCOMPARE(prompter.texts().last(), QStringLiteral("Imposssibile salvare non esistono righe!"));
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA")), 2);

    // The same distinta open twice: the second save of what it read before the first is
    // refused, and saved once read again.
    Distinta first, second;
    m_store->Leggi(first, QStringLiteral("     1"));
    other.Leggi(second, QStringLiteral("     1"));
    first.righe.edit(0).des_scadenza = QStringLiteral("Prima finestra");
    QVERIFY(m_store->Salva(first, false, true));
    second.righe.edit(0).des_scadenza = QStringLiteral("Seconda finestra");
    prompter.clear();
    QVERIFY(!other.Salva(second, false, true));
    QCOMPARE(prompter.texts(), QStringList{DistintaVersions::staleMessage(QStringLiteral("1"))});
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE WHERE des_scadenza = "
                                  "'Prima finestra'")),
             1);
    other.Leggi(second, QStringLiteral("     1"));
    second.righe.edit(0).des_scadenza = QStringLiteral("Seconda finestra");
    QVERIFY(other.Salva(second, false, true));

    // Deleted meanwhile: not saved back.
    m_store->Leggi(first, QStringLiteral("     2"));
    other.Leggi(second, QStringLiteral("     2"));
    QVERIFY(m_store->Cancella(first));
    second.righe.edit(0).des_scadenza = QStringLiteral("Dopo l'eliminazione");
    prompter.clear();
    QVERIFY(!other.Salva(second, false, true));
    QCOMPARE(prompter.texts(), QStringList{DistintaVersions::staleMessage(QStringLiteral("2"))});
    QCOMPARE(rowsOf(QStringLiteral("     2")), 0);
    QCOMPARE(disagreements(), QStringList());
}

void TestDistinteStore::databaseLostInsideTheSave()
{
    // The last write of a save fails: on a server the connection itself goes (the server ends
    // the session), with SQLite the statement is refused.
    {
        DatabaseConnection conn(m_inst->database());
        QSqlQuery q(conn.database());
        if (test::onServer()) {
            QVERIFY(q.exec(QStringLiteral(
                "CREATE FUNCTION lose() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN PERFORM "
                "pg_terminate_backend(pg_backend_pid()); RETURN NEW; END $$")));
            QVERIFY(q.exec(QStringLiteral("CREATE TRIGGER lose BEFORE INSERT ON TB_GIORNALE FOR "
                                          "EACH STATEMENT EXECUTE FUNCTION lose()")));
        } else {
            QVERIFY(q.exec(QStringLiteral("CREATE TRIGGER lose BEFORE INSERT ON TB_GIORNALE BEGIN "
                                          "SELECT RAISE(ABORT, 'disk I/O error'); END")));
        }
    }
    test::ScriptedPrompter prompter;
    Distinta d = newDistinta({rowFor(link(1), QStringLiteral("6"), 100, 100),
                              rowFor(link(2), QStringLiteral("6"), 200, 50)});
    QVERIFY(!m_store->Salva(d, false, false));
    QCOMPARE(prompter.shown().size(), 1);
    QVERIFY(prompter.lastText().contains(QStringLiteral(" in frmMain!Sub Salva()")));
    if (test::onServer())
        QVERIFY(prompter.lastText().contains(QStringLiteral("Connessione al database interrotta")));
    // Nothing half-written, nothing marked, nothing lost in memory.
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_TESTATA")), 0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE")), 0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TB_GIORNALE")), 0);
    QCOMPARE(stateOf(link(1)), QStringLiteral("0"));
    QVERIFY(d.hasChanges());
    {
        DatabaseConnection conn(m_inst->database());
        QVERIFY(QSqlQuery(conn.database()).exec(QStringLiteral("DROP TRIGGER lose") +
                                               (test::onServer() ? QStringLiteral(" ON TB_GIORNALE")
                                                                 : QString())));
    }
    QVERIFY(m_store->Salva(d, false, false));
    QCOMPARE(stateOf(link(1)), QStringLiteral("5"));
    QCOMPARE(stateOf(link(2)), QStringLiteral("3"));
    QCOMPARE(disagreements(), QStringList());
}

QTEST_GUILESS_MAIN(TestDistinteStore)
#include "tst_distintestore.moc"
