#include "faultyrecordmanager.h"
#include "scriptedprompter.h"
#include "testinstallation.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "core/vbformat.h"
#include "distinta/distinta.h"
#include "editor/selection/duitemcausali.h"
#include "editor/selection/duitemfilter.h"
#include "editor/selection/duitemloader.h"
#include "lists/usersettings.h"
#include "startup/companyenvironment.h"

#include <QFile>
#include <QTest>

using namespace pg;
using namespace pg::editor;
using archives::ErpRecord;
using pg::test::TestInstallation;

namespace {

const QString DefaultDesPag =
    UserSettings::fixed30(QStringLiteral("Vs.Fatt. NNNNNN/N del DD/DD/DD"));

// A due item of a supplier that every default selection takes: a credit transfer of 100.00
// euro, free, open, due on 30/11/2026, on bank 03069 agency 01600.
ErpRecord item(const QString &link, const QString &overrides = {})
{
    ErpRecord r = TestInstallation::dueItem(QStringLiteral("P"), link, QStringLiteral("6"),
                                            QStringLiteral("400001"), 100);
    r.setText(QStringLiteral("flag_insoluto"), QStringLiteral("0"));
    r.setText(QStringLiteral("flag_acconto"), QStringLiteral("0"));
    r.setNumber(QStringLiteral("imp_acconto_val"), 0, 2);
    r.setText(QStringLiteral("causale"), QStringLiteral("FA"));
    r.setText(QStringLiteral("banca"), QStringLiteral("03069"));
    r.setText(QStringLiteral("agenzia"), QStringLiteral("01600"));
    for (const QString &pair : overrides.split(u';', Qt::SkipEmptyParts)) {
        const QString field = pair.section(u'=', 0, 0);
        const QString value = pair.section(u'=', 1);
        if (field.startsWith(u"imp_"))
            r.setNumber(field, value.toDouble(), 2);
        else
            r.setText(field, value);
    }
    return r;
}

SelectionValues selection(const QString &overrides)
{
    SelectionValues v;
    v.bancaPres = QStringLiteral("03069");
    v.agenziaPres = QStringLiteral("01600");
    for (const QString &pair : overrides.split(u';', Qt::SkipEmptyParts)) {
        const QString key = pair.section(u'=', 0, 0);
        const QString value = pair.section(u'=', 1);
        if (key == u"tipo")
            v.tipoPagamento = value;
        else if (key == u"due_from")
            v.dataScadInizio = value;
        else if (key == u"due_to")
            v.dataScadFine = value;
        else if (key == u"from")
            v.codAnagraInizio = value;
        else if (key == u"to")
            v.codAnagraFine = value;
        else if (key == u"min")
            v.impMinimo = value.toDouble();
        else if (key == u"max")
            v.impMassimo = value.toDouble();
        else if (key == u"bank")
            v.bancaCli = value;
        else if (key == u"agency")
            v.agenziaCli = value;
        else
            qFatal("unknown selection key %s", qPrintable(key));
    }
    return v;
}

distinta::Distinta newDistinta()
{
    distinta::Distinta d;
    distinta::Testata header;
    header.cod_distinta = QStringLiteral("     7");
    header.flg_stato = QStringLiteral("P");
    d.testata.append(header);
    return d;
}

QString link(int n)
{
    return QStringLiteral("2026%1").arg(n, 9, 10, QLatin1Char('0'));
}

} // namespace

class TestDueItemLoader : public QObject
{
    Q_OBJECT

private slots:
    void filter_data();
    void filter();
    void walkAddsEachItemOnce();
    void distintaTakesItsOwnKind();
    void causaliDecideWhatIsTaken();
    void rowColumnsFromTheDueItem();
    void description_data();
    void description();
    void cancelledWalkKeepsTheRowsAdded();
    void readErrorStopsTheWalk_data();
    void readErrorStopsTheWalk();
};

void TestDueItemLoader::filter_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("criteria");
    QTest::addColumn<bool>("passes");
    auto row = [](const char *name, const char *item, const char *criteria, bool passes) {
        QTest::newRow(name) << QString::fromLatin1(item) << QString::fromLatin1(criteria) << passes;
    };
    row("everything by default", "", "", true);
    // The place of the due item in the distinte: only types 3 to 8 go in more than one.
    row("partly in a distinta, bonifico", "stato_dist=3", "", true);
    row("partly in a distinta, rimessa diretta", "stato_dist=3;tipo_pag=3", "", true);
    row("partly in a distinta, assegno circolare", "stato_dist=3;tipo_pag=8", "", true);
    row("partly in a distinta, ricevuta bancaria", "stato_dist=3;tipo_pag=1", "", false);
    row("partly in a distinta, RID", "stato_dist=3;tipo_pag=9", "", false);
    row("wholly in a distinta", "stato_dist=5", "", false);
    row("in more distinte", "stato_dist=4", "", false);
    row("free ricevuta bancaria", "tipo_pag=1", "", true);
    row("ricevuta bancaria already presented", "tipo_pag=1;mark_dist=B", "", false);
    row("marked, partly in a distinta", "mark_dist=B;stato_dist=3", "", true);
    row("never placed, blank marks", "tipo_pag=1;mark_dist= ;stato_dist= ", "", true);
    // The item's own flags.
    row("paid in full", "stato=2", "", false);
    row("partly paid", "stato=1;imp_pag_val=40", "", true);
    row("came back unpaid", "flag_insoluto=2", "", false);
    row("down payment covering it", "flag_acconto=1;imp_acconto_val=100", "", false);
    row("down payment of a part", "flag_acconto=1;imp_acconto_val=99.99", "", true);
    row("down payment of a credit note", "flag_acconto=1;imp_acconto_val=-50;imp_dapag_val=-100",
        "", true);
    row("down payment amount without its flag", "imp_acconto_val=500", "", true);
    // Payment type.
    row("type chosen", "", "tipo=6", true);
    row("other type chosen", "", "tipo=1", false);
    row("blank type, one type chosen", "tipo_pag= ", "tipo=6", false);
    // Due date: both ends included.
    row("due on the first day", "", "due_from=20261130", true);
    row("due on the last day", "", "due_to=20261130", true);
    row("due before the range", "", "due_from=20261201", false);
    row("due after the range", "", "due_to=20261129", false);
    // Account code.
    row("first account of the range", "", "from=400001;to=400001", true);
    row("account below the range", "", "from=400002", false);
    row("account above the range", "", "to=400000", false);
    // Amount to pay, without its sign.
    row("amount at the minimum", "", "min=100", true);
    row("amount a cent below the minimum", "", "min=100.01", false);
    row("amount at the maximum", "", "max=100", true);
    row("amount a cent above the maximum", "", "max=99.99", false);
    row("credit note within the range", "imp_dapag_val=-100", "min=50;max=100", true);
    // Bank and agency of the account on the item.
    row("bank chosen", "", "bank=03069", true);
    row("bank and agency chosen", "", "bank=03069;agency=01600", true);
    row("other agency", "", "bank=03069;agency=01601", false);
    row("other bank", "", "bank=05034", false);
    row("agency without a bank filters nothing", "", "bank=00000;agency=99999", true);
}

void TestDueItemLoader::filter()
{
    QFETCH(QString, item);
    QFETCH(QString, criteria);
    QFETCH(bool, passes);
    const ErpRecord record = ::item(link(1), item);
    QCOMPARE(DueItemFilter(selection(criteria)).passes(record.buffer()), passes);
}

void TestDueItemLoader::walkAddsEachItemOnce()
{
    test::ScriptedPrompter prompter;
    TestInstallation inst;
    QVERIFY(inst.isValid());
    QVERIFY(inst.put({item(link(1)), item(link(2), QStringLiteral("stato_dist=5")),
                      item(link(3), QStringLiteral("tipo_pag=1")),
                      item(link(4), QStringLiteral("data_scad=20270115"))}));

    distinta::Distinta d = newDistinta();
    DueItemLoader loader(inst.erp(), selection(QStringLiteral("due_to=20261231")), DefaultDesPag,
                         DueItemCausali());
    DueItemLoader::Result first = loader.cmdGenera_Click(d);
    QCOMPARE(first.read, 4);
    QCOMPARE(first.added, 2);
    QCOMPARE(d.righe.size(), 2);
    QCOMPARE(d.righe.at(0).des_link_orvida, link(1));
    QCOMPARE(d.righe.at(1).des_link_orvida, link(3));

    // The same selection again (rows added to the same distinta) adds nothing.
    DueItemLoader::Result second = loader.cmdGenera_Click(d);
    QCOMPARE(second.added, 0);
    QCOMPARE(second.alreadyIn, 2);
    QCOMPARE(d.righe.size(), 2);
    // A wider selection adds only the new item.
    DueItemLoader wider(inst.erp(), selection({}), DefaultDesPag, DueItemCausali());
    QCOMPARE(wider.cmdGenera_Click(d).added, 1);
    QCOMPARE(d.righe.size(), 3);
    QVERIFY(prompter.shown().isEmpty());
}

void TestDueItemLoader::distintaTakesItsOwnKind()
{
    test::ScriptedPrompter prompter;
    TestInstallation inst;
    QVERIFY(inst.isValid());
    // A supplier's and a customer's bonifico, due the same day, both free.
    QVERIFY(inst.put({item(link(1)), item(link(2), QStringLiteral("ind_clifor=C"))}));
    auto taken = [&](const QString &tipo, const QString &chosen) {
        distinta::Distinta d = newDistinta();
        d.editHeader().flg_tipo = tipo;
        SelectionValues values = selection({});
        values.tipoDistinta = chosen;
        DueItemLoader(inst.erp(), values, DefaultDesPag, DueItemCausali()).cmdGenera_Click(d);
        QStringList links;
        for (int i = 0; i < d.righe.size(); ++i)
            links << d.righe.at(i).des_link_orvida;
        return links;
    };
    QCOMPARE(taken(QStringLiteral("F"), QStringLiteral("F")), QStringList{link(1)});
    QCOMPARE(taken(QStringLiteral("C"), QStringLiteral("C")), QStringList{link(2)});
    // Rows added to a distinta are of its kind, whatever the selection chose last.
    QCOMPARE(taken(QStringLiteral("F"), QStringLiteral("C")), QStringList{link(1)});
    QVERIFY(prompter.shown().isEmpty());
}

void TestDueItemLoader::causaliDecideWhatIsTaken()
{
    test::ScriptedPrompter prompter;
    TestInstallation inst;
    QVERIFY(inst.isValid());
    QVERIFY(inst.put(
        {item(link(1), QStringLiteral("causale=FA")), item(link(2), QStringLiteral("causale=NC")),
         item(link(3), QStringLiteral("causale=XY")), item(link(4), QStringLiteral("causale=  ")),
         item(link(5), QStringLiteral("causale=an"))}));
    auto linksTaken = [&](const DueItemCausali &causali) {
        distinta::Distinta d = newDistinta();
        DueItemLoader(inst.erp(), selection({}), DefaultDesPag, causali).cmdGenera_Click(d);
        QStringList links;
        for (int i = 0; i < d.righe.size(); ++i)
            links << d.righe.at(i).des_link_orvida.right(1);
        return links.join(u',');
    };

    // No file: every reason is taken.
    QCOMPARE(linksTaken(DueItemCausali::load(DueItemCausali::defaultPath())),
             QStringLiteral("1,2,3,4,5"));

    QFile file(ProgramDir() + QStringLiteral("causali.ini"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("; causali\r\n[Causali]\r\nFA=SI\r\nNC = no\r\nAN=NO\r\nREGIVA=NO\r\n"
               "[ALTRE]\r\nXY=NO\r\n");
    file.close();
    // "NO" keeps a reason out, whatever its case and the case of the code on the item; a
    // reason the section does not list is taken.
    QCOMPARE(linksTaken(DueItemCausali::load(DueItemCausali::defaultPath())),
             QStringLiteral("1,3,4"));
}

void TestDueItemLoader::rowColumnsFromTheDueItem()
{
    test::ScriptedPrompter prompter;
    TestInstallation inst;
    QVERIFY(inst.isValid());
    ErpRecord r = item(link(1), QStringLiteral("imp_dapag_val=1234.56;imp_dapag_eur=617.28;"
                                               "imp_pag_val=234.50;imp_pag_eur=117.25;"
                                               "num_doc=  120;serie_doc=A;data_doc=20260915;"
                                               "num_prot=88;num_rata=02;num_effetto=777;"
                                               "ind_clifor=F;cod_sede=000001;conto=CC0001;"
                                               "valuta=US;stato=1"));
    r.setNumber(QStringLiteral("cambio"), 2, 6);
    ErpRecord noRate = item(link(2));
    noRate.setText(QStringLiteral("cambio"), QString());
    QVERIFY(inst.put({r, noRate}));

    distinta::Distinta d = newDistinta();
    SelectionValues v = selection({});
    v.bancaPres = QStringLiteral("05034");
    v.agenziaPres = QStringLiteral("11701");
    QCOMPARE(DueItemLoader(inst.erp(), v, DefaultDesPag, DueItemCausali()).cmdGenera_Click(d).added,
             2);

    const distinta::Riga &row = d.righe.at(0);
    QCOMPARE(row.cod_distinta, QStringLiteral("     7"));
    QCOMPARE(row.flg_flag_colpar, QStringLiteral("P"));
    QCOMPARE(row.des_link_orvida, link(1));
    QCOMPARE(row.des_num_doc, QStringLiteral("  120 "));
    QCOMPARE(row.des_serie_doc, QStringLiteral("A"));
    QCOMPARE(row.dat_data_doc, QStringLiteral("20260915"));
    QCOMPARE(row.des_num_prot.trimmed(), QStringLiteral("88"));
    QCOMPARE(row.des_num_rata, QStringLiteral("02"));
    QCOMPARE(row.dat_data_scad, QStringLiteral("20261130"));
    QCOMPARE(row.des_num_effetto.trimmed(), QStringLiteral("777"));
    QCOMPARE(row.cod_tipo_pag, QStringLiteral("6"));
    QCOMPARE(row.flg_ind_clifor, QStringLiteral("F"));
    QCOMPARE(row.cod_clifor, QStringLiteral("400001"));
    QCOMPARE(row.cod_sedeamm, QStringLiteral("000001"));
    QCOMPARE(row.cod_banca_cli, QStringLiteral("03069"));
    QCOMPARE(row.cod_agenzia_cli, QStringLiteral("01600"));
    QCOMPARE(row.des_num_cc, QStringLiteral("CC0001").leftJustified(20));
    QCOMPARE(row.cod_valuta, QStringLiteral("US"));
    QCOMPARE(row.val_imp_dapag_val, 1234.56);
    QCOMPARE(row.val_imp_dapag_eur, 617.28);
    QCOMPARE(row.val_imp_pag_val, 234.50);
    QCOMPARE(row.val_imp_pag_eur, 117.25);
    QCOMPARE(row.val_imp_residuo_val, 1000.06);
    QCOMPARE(row.val_imp_residuo_eur, 500.03);
    QCOMPARE(row.val_imp_indist_val, std::optional<double>(1000.06));
    QCOMPARE(row.val_imp_indist_eur, std::optional<double>(500.03));
    QCOMPARE(row.val_cambio, 2.0);
    QCOMPARE(row.cod_banca_pres, QStringLiteral("05034"));
    QCOMPARE(row.cod_agenzia_pres, QStringLiteral("11701"));
    QCOMPARE(row.flg_ind_dist, QString());
    QCOMPARE(row.des_scadenza, QStringLiteral("Vs.Fatt. 120/A del 15/09/26"));
    // A due item without a rate is taken as euro.
    QCOMPARE(d.righe.at(1).val_cambio, 1.0);
}

void TestDueItemLoader::description_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("series");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("expected");
    // A blank-padded number with its series and date: the description of the loaded row above.
    auto row = [](const char *name, const QString &pattern, const char *number, const char *series,
                  const char *date, const char *expected) {
        QTest::newRow(name) << pattern << QString::fromLatin1(number) << QString::fromLatin1(series)
                            << QString::fromLatin1(date) << QString::fromLatin1(expected);
    };
    row("blank series", DefaultDesPag, "123456", " ", "20261015", "Vs.Fatt. 123456 del 15/10/26");
    row("number only in the pattern", QStringLiteral("Pag. NNNNNN"), "9", "B", "20261015",
        "Pag. 9/B");
    row("no document date", DefaultDesPag, "5", "", "        ", "Vs.Fatt. 5 del");
    row("pattern without places", QStringLiteral("Saldo fornitura"), "5", "A", "20261015",
        "Saldo fornitura");
}

void TestDueItemLoader::description()
{
    QFETCH(QString, pattern);
    QFETCH(QString, number);
    QFETCH(QString, series);
    QFETCH(QString, date);
    QFETCH(QString, expected);
    QCOMPARE(DueItemLoader::descrizione(pattern, number, series, date), expected);
}

void TestDueItemLoader::cancelledWalkKeepsTheRowsAdded()
{
    test::ScriptedPrompter prompter;
    TestInstallation inst;
    QVERIFY(inst.isValid());
    const int count = DueItemLoader::ProgressInterval + 100;
    QList<ErpRecord> records;
    for (int i = 1; i <= count; ++i)
        records << item(link(i), i % 2 ? QString() : QStringLiteral("stato_dist=5"));
    QVERIFY(inst.put(records));

    distinta::Distinta d = newDistinta();
    DueItemLoader loader(inst.erp(), selection({}), DefaultDesPag, DueItemCausali());
    QList<qint64> reports;
    loader.setProgress([&](qint64 read, int added) {
        reports << read << added;
        return false;
    });
    const DueItemLoader::Result result = loader.cmdGenera_Click(d);
    QVERIFY(result.cancelled);
    QCOMPARE(reports,
             (QList<qint64>{DueItemLoader::ProgressInterval, DueItemLoader::ProgressInterval / 2}));
    QCOMPARE(d.righe.size(), DueItemLoader::ProgressInterval / 2);
}

void TestDueItemLoader::readErrorStopsTheWalk_data()
{
    QTest::addColumn<bool>("ask");      // the clerk is there to say (the desktop)
    QTest::addColumn<int>("answer");    // the clerk's answer, when asked
    QTest::addColumn<int>("rowsAfter"); // the distinta's rows after the walk
    QTest::newRow("kept at the clerk's word") << true << int(Answer::Yes) << 3;
    QTest::newRow("left out at the clerk's word") << true << int(Answer::No) << 1;
    QTest::newRow("nobody to ask: left out") << false << -1 << 1;
}

void TestDueItemLoader::readErrorStopsTheWalk()
{
    QFETCH(bool, ask);
    QFETCH(int, answer);
    QFETCH(int, rowsAfter);
    test::ScriptedPrompter prompter;
    if (answer >= 0)
        prompter.script({Answer(answer)});
    TestInstallation inst;
    QVERIFY(inst.isValid());
    QList<ErpRecord> records;
    for (int i = 1; i <= 5; ++i)
        records << item(link(i));
    QVERIFY(inst.put(records));
    test::FaultyRecordManager faulty(inst.store());
    archives::ErpSession erp(faulty, TestInstallation::Handle);

    // A distinta that already has a row of its own: the walk's failure leaves it alone.
    distinta::Distinta d = newDistinta();
    DueItemLoader(inst.erp(), selection(QStringLiteral("due_to=20261130")), DefaultDesPag,
                  DueItemCausali())
        .AggiungiRighe(d, item(link(9)).buffer());
    DueItemLoader loader(erp, selection({}), DefaultDesPag, DueItemCausali());
    loader.setOnReadError(ask ? DueItemLoader::OnReadError::Ask
                              : DueItemLoader::OnReadError::Refuse);
    // The third record cannot be read: the first two were, the last three never are.
    faulty.failNextReadsFrom(2);
    const DueItemLoader::Result result = loader.cmdGenera_Click(d);

    QCOMPARE(result.readError, qint32(archives::IoError));
    QCOMPARE(result.read, 2);
    QCOMPARE(result.added, rowsAfter - 1);
    QCOMPARE(d.righe.size(), rowsAfter);
    QCOMPARE(d.righe.at(0).des_link_orvida, link(9));
    QCOMPARE(prompter.shown().size(), 1);
    const Message &m = prompter.shown().first();
    // The archive and the reason (a record manager other than the embedded store keeps its
    // files to itself), what was read and what was found.
    QVERIFY2(
        m.text.startsWith(QStringLiteral(
            "La lettura delle scadenze si è interrotta per un errore nel leggere l'archivio 38 "
            "(Scadenze): errore di lettura o scrittura del file (errore 12).\r\nScadenze "
            "lette: 2; righe trovate fino all'errore: 2.")),
        qPrintable(m.text));
    QCOMPARE(m.buttons, ask ? Buttons::YesNo : Buttons::Ok);
}

QTEST_GUILESS_MAIN(TestDueItemLoader)
#include "tst_duitemloader.moc"
