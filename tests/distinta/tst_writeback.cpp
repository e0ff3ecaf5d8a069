#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "distinta/duitemmarks.h"
#include "distinta/erpwriteback.h"
#include "distinta/writebackapplier.h"
#include "distinta/writebackjournal.h"
#include "localdb/databaseconnection.h"

#include <QSqlQuery>
#include <QTest>

using namespace pg;
using namespace pg::distinta;
using pg::test::TestInstallation;

namespace {

const QString Link = QStringLiteral("2026000000001");

DueItemMarks marks(const char *stato, const char *mark, const char *date = "", const char *abi = "")
{
    DueItemMarks m;
    m.stato = QString::fromLatin1(stato);
    m.markDist = QString::fromLatin1(mark);
    m.markPres = QString::fromLatin1(*mark == 'B' ? "B" : "");
    m.dataDist = QString::fromLatin1(date);
    m.abiPres = QString::fromLatin1(abi);
    m.cabPres = QString::fromLatin1(abi);
    return m.normalized();
}

} // namespace

class TestWriteBack : public QObject
{
    Q_OBJECT

private slots:
    void rules_data();
    void rules();
    void entriesAreCarriedOutOnce();
};

void TestWriteBack::rules_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QString>("after");
    auto row = [](const char *name, const char *before, const char *rule, const char *after) {
        QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(rule)
                            << QString::fromLatin1(after);
    };
    // Released: "3", "0", "5" free with every mark cleared; "4" becomes "3" and keeps its
    // marks (the other distinta still holds it); any other state is left alone.
    row("release 5", "5B", "release", "0 ");
    row("release 3", "3B", "release", "0 ");
    row("release 4", "4B", "release", "3B");
    row("release unknown state", "7B", "release", "7B");
    // Marked for a row: only types 3 to 8 move the state.
    row("whole bonifico", "0 ", "6 whole", "5B");
    row("part of a bonifico", "0 ", "6 part", "3B");
    row("part in a second distinta", "3B", "6 part 2", "4B");
    row("part alone again", "3B", "6 part 1", "3B");
    row("whole again", "5B", "6 whole", "5B");
    row("RID keeps its state", "0 ", "9 whole", "0B");
    row("Ri.Ba. keeps its state", "4B", "1 whole", "4B");
}

void TestWriteBack::rules()
{
    QFETCH(QString, before);
    QFETCH(QString, rule);
    QFETCH(QString, after);
    DueItemMarks from =
        marks(before.left(1).toLatin1().constData(), before.at(1) == u'B' ? "B" : "0",
              before.at(1) == u'B' ? "20261101" : "", before.at(1) == u'B' ? "03069" : "");
    DueItemMarks to;
    if (rule == u"release") {
        to = from.released();
    } else {
        const QStringList parts = rule.split(u' ');
        Riga row;
        row.cod_tipo_pag = parts.at(0);
        row.val_imp_dapag_val = 100;
        row.val_imp_indist_val = parts.at(1) == u"whole" ? 100 : 60;
        Testata header;
        header.dat_data_creazione = QDate(2026, 11, 21);
        header.cod_abi_banca = header.cod_cab_banca = QStringLiteral("02008");
        const int count = parts.size() > 2 ? parts.at(2).toInt() : 1;
        to = from.markedFor(row, header, [count] { return count; });
    }
    QCOMPARE(to.stato + (to.isMarked() ? u'B' : u' '), after);
    if (after.at(1) == u' ') {
        QCOMPARE(to, marks(after.left(1).toLatin1().constData(), "0"));
    } else if (rule != u"release") {
        QCOMPARE(to.markPres, QStringLiteral("B"));
        QCOMPARE(to.dataDist, QStringLiteral("20261121"));
        QCOMPARE(to.abiPres + to.cabPres, QStringLiteral("0200802008"));
    } else {
        QCOMPARE(to.dataDist, from.dataDist);
    }
}

void TestWriteBack::entriesAreCarriedOutOnce()
{
    test::ScriptedPrompter prompter;
    TestInstallation inst;
    QVERIFY(inst.isValid());
    QVERIFY(inst.put({TestInstallation::dueItem(QStringLiteral("F"), Link, QStringLiteral("6"),
                                                QStringLiteral("200001"), 100)}));
    archives::ErpRecord item(archives::Scadenze);
    item.setText(QStringLiteral("flag_colpar"), QStringLiteral("F"));
    item.setText(QStringLiteral("link"), Link);
    QVERIFY(inst.erp().readEq(item, 2));
    marks("4", "B", "20261101", "03069").writeTo(item);
    QVERIFY(inst.erp().rewrite(item));

    // One release of an item in two distinte, journaled.
    WriteBackEntry release;
    release.flag = QStringLiteral("F");
    release.link = Link;
    release.before = DueItemMarks::of(item);
    release.after = release.before.released();
    WriteBackEntry gone = release;
    gone.link = QStringLiteral("2026000000099");
    QList<WriteBackEntry> entries{release, gone};
    DatabaseConnection conn(inst.database());
    QSqlDatabase &db = conn.database();
    {
        Transaction transaction(db);
        WriteBackJournal::record(db, WriteBackJournal::Operation::Delete, QStringLiteral("     3"),
                                 entries);
        transaction.commit();
    }
    const QList<WriteBackEntry> pending = WriteBackJournal::pending(db);
    QCOMPARE(pending.size(), 2);
    QCOMPARE(pending.first().before, release.before);
    QCOMPARE(pending.first().after, release.after);
    QCOMPARE(pending.first().kind, WriteBackEntry::Kind::Row);

    // Carried out twice (a crash before its tick): "4" becomes "3", never "0".
    ErpWriteBack erp(inst.erp());
    QCOMPARE(erp.apply(pending.first()), ErpWriteBack::Applied::Done);
    QCOMPARE(erp.apply(pending.first()), ErpWriteBack::Applied::AlreadyDone);
    QVERIFY(inst.erp().readEq(item, 2));
    QCOMPARE(DueItemMarks::of(item), release.after);
    QCOMPARE(item.text(QStringLiteral("stato_dist")), QStringLiteral("3"));

    // Changed by someone else meanwhile: left as it is.
    item.setText(QStringLiteral("stato_dist"), QStringLiteral("5"));
    QVERIFY(inst.erp().rewrite(item));
    QCOMPARE(erp.apply(pending.first()), ErpWriteBack::Applied::Conflict);
    QVERIFY(inst.erp().readEq(item, 2));
    QCOMPARE(item.text(QStringLiteral("stato_dist")), QStringLiteral("5"));

    // The applier ticks off what is done and keeps the conflicts, not as work to do.
    WriteBackApplier applier(inst.erp(), db);
    const WriteBackApplier::Result result = applier.apply(pending, false);
    QCOMPARE(result.done, 0);
    QCOMPARE(result.conflicts.size(), 2); // changed, and gone from the suite
    QVERIFY(result.pending.isEmpty());
    QVERIFY(WriteBackJournal::pending(db).isEmpty());
    QSqlQuery kept(QStringLiteral("SELECT COUNT(*) FROM TB_GIORNALE WHERE flg_esito = 'X'"), db);
    QVERIFY(kept.next());
    QCOMPARE(kept.value(0).toInt(), 2);
}

QTEST_GUILESS_MAIN(TestWriteBack)
#include "tst_writeback.moc"
