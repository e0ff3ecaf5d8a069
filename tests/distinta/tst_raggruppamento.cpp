#include "distinta/raggruppamento.h"

#include <QTest>

using namespace pg::distinta;

namespace {

Riga row(const QString &account, const QString &bank, const QString &agency, const QString &doc,
         double amount, const QString &series = QStringLiteral(" "))
{
    Riga r;
    r.cod_distinta = QStringLiteral("     1");
    r.flg_flag_colpar = QStringLiteral("F");
    static int link = 0;
    r.des_link_orvida = QString::number(++link).rightJustified(13, u'0');
    r.cod_clifor = account;
    r.cod_banca_cli = bank;
    r.cod_agenzia_cli = agency;
    r.des_num_doc = doc;
    r.des_serie_doc = series;
    r.des_scadenza = QStringLiteral("Vs.Fatt. ") + doc;
    r.val_imp_dapag_val = amount;
    r.val_imp_dapag_eur = amount;
    r.val_imp_residuo_val = amount;
    r.val_imp_residuo_eur = amount;
    r.val_imp_pag_val = 1;
    r.val_imp_pag_eur = 1;
    r.val_imp_indist_val = amount;
    r.val_imp_indist_eur = amount;
    return r;
}

Distinta distintaOf(const QList<Riga> &rows)
{
    Distinta d;
    for (const Riga &r : rows)
        d.righe.append(r);
    return d;
}

const QString Template = defaultGroupDescriptionTemplate();

} // namespace

class TestRaggruppamento : public QObject
{
    Q_OBJECT

private slots:
    void groupsByAccountBankAndAgency();
    void descriptionsListDocumentsOnce();
    void longDescriptionsTakeTheTemplate_data();
    void longDescriptionsTakeTheTemplate();
    void workingValuesCarryOverBetweenGroups();
    void alternativeDescriptionMarker();
    void missingAmountsStayMissing();
    void regroupingReplacesPreviousGroups();
};

void TestRaggruppamento::groupsByAccountBankAndAgency()
{
    Distinta empty;
    raggruppaRighe(empty, Template);
    QVERIFY(empty.righeRagg.isEmpty());

    Riga first = row(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("01600"),
                     QStringLiteral("100"), 10.5);
    first.cod_banca_pres = QStringLiteral("02008");
    first.flg_ind_dist = QStringLiteral("P");
    Distinta d = distintaOf({first,
                             row(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("01600"),
                                 QStringLiteral("101"), 20.25),
                             row(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("01601"),
                                 QStringLiteral("102"), 7),
                             row(QStringLiteral("200002"), QStringLiteral("03069"), QStringLiteral("01600"),
                                 QStringLiteral("103"), 3)});
    raggruppaRighe(d, Template);
    QCOMPARE(d.righeRagg.size(), 3);
    const Riga &g = d.righeRagg.at(0);
    // Every column comes from the group's first row; only amounts and description change.
    QCOMPARE(g.des_link_orvida, first.des_link_orvida);
    QCOMPARE(g.cod_banca_pres, QStringLiteral("02008"));
    QCOMPARE(g.flg_ind_dist, QStringLiteral("P"));
    QCOMPARE(g.val_imp_dapag_val, 30.75);
    QCOMPARE(g.val_imp_residuo_eur, 30.75);
    QCOMPARE(g.val_imp_pag_val, 2.0);
    QCOMPARE(*g.val_imp_indist_val, 30.75);
    QCOMPARE(*g.val_imp_indist_eur, 30.75);
    QCOMPARE(d.righeRagg.at(1).cod_agenzia_cli, QStringLiteral("01601"));
    QCOMPARE(d.righeRagg.at(1).val_imp_dapag_val, 7.0);
    QCOMPARE(d.righeRagg.at(2).cod_clifor, QStringLiteral("200002"));
    // The rows themselves are untouched.
    QCOMPARE(d.righe.at(0).val_imp_dapag_val, 10.5);
}

void TestRaggruppamento::descriptionsListDocumentsOnce()
{
    const QString a = QStringLiteral("200001");
    const QString bank = QStringLiteral("03069");
    const QString agency = QStringLiteral("01600");
    Distinta d = distintaOf({row(a, bank, agency, QStringLiteral("120"), 1),
                             row(a, bank, agency, QStringLiteral("121"), 1),
                             row(a, bank, agency, QStringLiteral("121"), 1)});
    raggruppaRighe(d, Template);
    QCOMPARE(d.righeRagg.size(), 1);
    QCOMPARE(d.righeRagg.at(0).des_scadenza, QStringLiteral("Vs.Fatt.120-121"));
    QCOMPARE(d.righeRagg.at(0).val_imp_dapag_val, 3.0);

    // Two instalments of one invoice: one document, the first row's own description kept.
    Distinta inst = distintaOf({row(a, bank, agency, QStringLiteral("77"), 5, QStringLiteral("A")),
                                row(a, bank, agency, QStringLiteral("77"), 5, QStringLiteral("A"))});
    raggruppaRighe(inst, Template);
    QCOMPARE(inst.righeRagg.size(), 1);
    QCOMPARE(inst.righeRagg.at(0).des_scadenza, QStringLiteral("Vs.Fatt. 77"));
    QCOMPARE(inst.righeRagg.at(0).val_imp_residuo_val, 10.0);

    // The same number in another series is another document.
    Distinta series = distintaOf({row(a, bank, agency, QStringLiteral("77"), 5, QStringLiteral("A")),
                                  row(a, bank, agency, QStringLiteral("77"), 5, QStringLiteral("B"))});
    raggruppaRighe(series, Template);
    QCOMPARE(series.righeRagg.at(0).des_scadenza, QStringLiteral("Vs.Fatt.77-77"));
}

void TestRaggruppamento::longDescriptionsTakeTheTemplate_data()
{
    QTest::addColumn<QStringList>("documents");
    QTest::addColumn<QString>("expected");
    // "Vs.Fatt." + 4 numbers of 5 digits joined by "-": 8 + 23 = 31 characters.
    QTest::newRow("30 characters kept") << QStringList{QStringLiteral("1234"), QStringLiteral("12345"),
                                                       QStringLiteral("12346"), QStringLiteral("12347")}
                                        << QStringLiteral("Vs.Fatt.1234-12345-12346-12347");
    QTest::newRow("31 characters replaced")
        << QStringList{QStringLiteral("12345"), QStringLiteral("12346"), QStringLiteral("12347"),
                       QStringLiteral("12348")}
        << QStringLiteral("Pagamentio 004 Scadenze").leftJustified(30);
    QStringList twelve;
    for (int i = 0; i < 12; ++i)
        twelve << QString::number(500 + i);
    QTest::newRow("twelve invoices") << twelve << QStringLiteral("Pagamentio 012 Scadenze").leftJustified(30);
}

void TestRaggruppamento::longDescriptionsTakeTheTemplate()
{
    QFETCH(QStringList, documents);
    QFETCH(QString, expected);
    QList<Riga> rows;
    for (const QString &doc : documents)
        rows << row(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("01600"), doc, 1);
    Distinta d = distintaOf(rows);
    raggruppaRighe(d, Template);
    QCOMPARE(d.righeRagg.size(), 1);
    QCOMPARE(d.righeRagg.at(0).des_scadenza, expected);
    QCOMPARE(d.righeRagg.at(0).des_scadenza.size(), expected.size());
}

void TestRaggruppamento::workingValuesCarryOverBetweenGroups()
{
    // One supplier paid through two banks, rows alternating between them: the description
    // being built continues from whichever group was touched last.
    const QString a = QStringLiteral("200001");
    Distinta d = distintaOf({row(a, QStringLiteral("03069"), QStringLiteral("01600"), QStringLiteral("1"), 1),
                             row(a, QStringLiteral("02008"), QStringLiteral("05000"), QStringLiteral("2"), 1),
                             row(a, QStringLiteral("03069"), QStringLiteral("01600"), QStringLiteral("3"), 1),
                             row(a, QStringLiteral("02008"), QStringLiteral("05000"), QStringLiteral("3"), 1)});
    raggruppaRighe(d, Template);
    QCOMPARE(d.righeRagg.size(), 2);
    QCOMPARE(d.righeRagg.at(0).des_scadenza, QStringLiteral("Vs.Fatt.2-3"));
    // Same document as the last one seen: nothing added, but the count (2) still applies.
    QCOMPARE(d.righeRagg.at(1).des_scadenza, QStringLiteral("Vs.Fatt.2-3"));
    QCOMPARE(d.righeRagg.at(1).val_imp_dapag_val, 2.0);
}

void TestRaggruppamento::alternativeDescriptionMarker()
{
    const QString a = QStringLiteral("200001");
    const QString bank = QStringLiteral("03069");
    const QString agency = QStringLiteral("01600");
    Riga marked = row(a, bank, agency, QStringLiteral("9"), 1);
    marked.flg_des_alt = QStringLiteral("X");
    marked.des_scadenza = QStringLiteral("Descrizione propria");
    Distinta one = distintaOf({marked});
    raggruppaRighe(one, Template);
    QCOMPARE(one.righeRagg.at(0).des_scadenza, QStringLiteral("Descrizione propria"));

    Distinta two = distintaOf({marked, row(a, bank, agency, QStringLiteral("10"), 1)});
    raggruppaRighe(two, QStringLiteral("Pagamento NNN Scadenze"));
    QCOMPARE(two.righeRagg.at(0).des_scadenza, QStringLiteral("Pagamento 002 Scadenze"));
}

void TestRaggruppamento::missingAmountsStayMissing()
{
    Riga old = row(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("01600"),
                   QStringLiteral("1"), 1);
    old.val_imp_indist_val.reset();
    Distinta d = distintaOf({row(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("01600"),
                                 QStringLiteral("2"), 1),
                             old});
    raggruppaRighe(d, Template);
    QVERIFY(!d.righeRagg.at(0).val_imp_indist_val.has_value());
    QCOMPARE(*d.righeRagg.at(0).val_imp_indist_eur, 2.0);
}

void TestRaggruppamento::regroupingReplacesPreviousGroups()
{
    Distinta d = distintaOf({row(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("01600"),
                                 QStringLiteral("1"), 1),
                             row(QStringLiteral("200002"), QStringLiteral("03069"), QStringLiteral("01600"),
                                 QStringLiteral("2"), 2)});
    raggruppaRighe(d, Template);
    // As saved: the first payment as it will come out again, the second with another amount,
    // and a third payment that no row makes any more.
    Riga stale = d.righeRagg.at(1);
    stale.val_imp_dapag_val = 99;
    Riga gone = d.righeRagg.at(1);
    gone.cod_clifor = QStringLiteral("200003");
    using Entry = RecordSet<Riga>::Entry;
    d.righeRagg.load({Entry{d.righeRagg.at(0), 41, RecordSet<Riga>::Status::Unchanged},
                      Entry{stale, 42, RecordSet<Riga>::Status::Unchanged},
                      Entry{gone, 43, RecordSet<Riga>::Status::Unchanged}});
    raggruppaRighe(d, Template);
    QCOMPARE(d.righeRagg.size(), 2);
    QCOMPARE(d.righeRagg.entries().at(0).status, RecordSet<Riga>::Status::Unchanged);
    QCOMPARE(d.righeRagg.entries().at(1).status, RecordSet<Riga>::Status::Changed);
    QCOMPARE(d.righeRagg.entries().at(1).rowid, qint64(42));
    QCOMPARE(d.righeRagg.at(1).val_imp_dapag_val, 2.0);
    QCOMPARE(d.righeRagg.removedRowids(), QList<qint64>{43});
    QCOMPARE(d.righeRagg.indexOfKey(d.righe.at(1).key()), 1);
}

QTEST_GUILESS_MAIN(TestRaggruppamento)
#include "tst_raggruppamento.moc"
