#include "printing/mergefield.h"
#include "printing/templatemerge.h"
#include "printing/templatestore.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace pg::printing;

namespace {

MergeData sample(int rows)
{
    MergeData data;
    data.fields.insert(QStringLiteral("ragione_sociale_azienda"), QStringLiteral("A & <B>"));
    data.fields.insert(QStringLiteral("numero_distinta"), QStringLiteral("12"));
    for (int i = 1; i <= rows; ++i)
        data.rows << QHash<QString, QString>{
            {QStringLiteral("progressivo"), QString::number(i)},
            {QStringLiteral("importo"), QStringLiteral("%1,00").arg(i * 10)}};
    return data;
}

} // namespace

class TestTemplateMerge : public QObject
{
    Q_OBJECT

private slots:
    void fieldsAndRepeatedRows();
    void sections_data();
    void sections();
    void problems_data();
    void problems();
    void shippedTemplatesAreValid();
    void everyFieldIsDocumented();
};

void TestTemplateMerge::fieldsAndRepeatedRows()
{
    const TemplateMerge merge(QStringLiteral(
        "<h1>{{ ragione_sociale_azienda }} n. {{numero_distinta}}</h1>\n<table>{{#righe}}"
        "<tr><td>{{progressivo}}</td><td>{{importo}}</td><td>{{numero_distinta}}</td></tr>"
        "{{/righe}}</table>"));
    QVERIFY2(merge.isValid(), qPrintable(merge.problems().join(u'\n')));
    QCOMPARE(merge.merge(sample(3)),
             QStringLiteral("<h1>A &amp; &lt;B&gt; n. 12</h1>\n<table>"
                            "<tr><td>1</td><td>10,00</td><td>12</td></tr>"
                            "<tr><td>2</td><td>20,00</td><td>12</td></tr>"
                            "<tr><td>3</td><td>30,00</td><td>12</td></tr></table>"));
    // No rows: the block is simply absent; a field without a value is empty.
    const TemplateMerge empty(QStringLiteral("[{{#righe}}x{{/righe}}]{{codice_sia}}."));
    QCOMPARE(empty.merge(sample(0)), QStringLiteral("[]."));
}

void TestTemplateMerge::sections_data()
{
    QTest::addColumn<bool>("totali");
    QTest::addColumn<bool>("prova");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("expected");
    QTest::newRow("test print, no totals") << false << true << 2 << QStringLiteral("P|rr|");
    QTest::newRow("test print with totals") << true << true << 2 << QStringLiteral("P|rr|T");
    QTest::newRow("final print with totals") << true << false << 1 << QStringLiteral("D|r|T");
    QTest::newRow("final print, no rows") << false << false << 0 << QStringLiteral("D|-|");
}

void TestTemplateMerge::sections()
{
    QFETCH(bool, totali);
    QFETCH(bool, prova);
    QFETCH(int, rows);
    QFETCH(QString, expected);
    MergeData data = sample(rows);
    data.conditions.insert(QStringLiteral("totali"), totali);
    data.conditions.insert(QStringLiteral("prova"), prova);
    const TemplateMerge merge(QStringLiteral("{{#prova}}P{{/prova}}{{^prova}}D{{/prova}}|"
                                             "{{#righe}}r{{/righe}}{{^righe}}-{{/righe}}|"
                                             "{{#totali}}T{{/totali}}"));
    QVERIFY(merge.isValid());
    QCOMPARE(merge.merge(data), expected);
}

void TestTemplateMerge::problems_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("unknown field, with its line")
        << QStringLiteral("<p>\n</p>{{ragione_sociale}}")
        << QStringList{QStringLiteral("riga 2: campo sconosciuto {{ragione_sociale}}")};
    QTest::newRow("row field outside the rows")
        << QStringLiteral("{{importo}}")
        << QStringList{QStringLiteral("riga 1: {{importo}} è un campo di riga: va usato dentro "
                                      "{{#righe}} ... {{/righe}}")};
    QTest::newRow("block left open")
        << QStringLiteral("{{#righe}}\n<tr>")
        << QStringList{QStringLiteral("riga 1: il blocco {{#righe}} non è chiuso da {{/righe}}")};
    QTest::newRow("closing what is not open")
        << QStringLiteral("{{/totali}}")
        << QStringList{QStringLiteral("riga 1: {{/totali}} chiude un blocco che non è aperto")};
    QTest::newRow("closing another block")
        << QStringLiteral("{{#prova}}\n{{/totali}}{{/prova}}")
        << QStringList{QStringLiteral("riga 2: {{/totali}} chiude un blocco diverso da quello "
                                      "aperto, {{#prova}}")};
    QTest::newRow("unknown block")
        << QStringLiteral("{{#pagina}}{{/pagina}}")
        << QStringList{QStringLiteral("riga 1: blocco sconosciuto {{#pagina}}")};
    QTest::newRow("block written as a field")
        << QStringLiteral("{{totali}}")
        << QStringList{QStringLiteral("riga 1: {{totali}} è un blocco: va scritto {{#totali}} "
                                      "... {{/totali}}")};
    QTest::newRow("field written as a block")
        << QStringLiteral("{{^importo}}{{/importo}}")
        << QStringList{QStringLiteral("riga 1: {{^importo}} è un campo, non un blocco: va "
                                      "scritto {{importo}}")};
    QTest::newRow("rows inside rows")
        << QStringLiteral("{{#righe}}{{#righe}}{{/righe}}{{/righe}}")
        << QStringList{QStringLiteral("riga 1: {{#righe}} dentro un altro blocco {{#righe}}")};
    QTest::newRow("braces never closed")
        << QStringLiteral("ok\n\n{{numero_distinta")
        << QStringList{QStringLiteral("riga 3: \"{{\" senza la chiusura \"}}\"")};
    QTest::newRow("every problem, in order")
        << QStringLiteral("{{uno}}\n{{#righe}}{{due}}{{/righe}}\n{{importo}}")
        << QStringList{QStringLiteral("riga 1: campo sconosciuto {{uno}}"),
                       QStringLiteral("riga 2: campo sconosciuto {{due}}"),
                       QStringLiteral("riga 3: {{importo}} è un campo di riga: va usato dentro "
                                      "{{#righe}} ... {{/righe}}")};
}

void TestTemplateMerge::problems()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    const TemplateMerge merge(text);
    QVERIFY(!merge.isValid());
    QCOMPARE(merge.problems(), expected);
    QVERIFY(merge.merge(sample(2)).isEmpty());
}

void TestTemplateMerge::shippedTemplatesAreValid()
{
    const TemplateStore store(QDir::tempPath() + QStringLiteral("/no-such-d-img"));
    QCOMPARE(TemplateStore::shippedNames(),
             (QStringList{QStringLiteral("Distinta"), QStringLiteral("Lettera")}));
    for (const QString &name : TemplateStore::shippedNames()) {
        const std::optional<QString> text = store.text(name);
        QVERIFY2(text && !text->isEmpty(), qPrintable(name));
        const TemplateMerge merge(*text);
        QVERIFY2(merge.isValid(), qPrintable(name + u'\n' + merge.problems().join(u'\n')));
    }
}

void TestTemplateMerge::everyFieldIsDocumented()
{
    QFile doc(QStringLiteral(PAGAMENTI_SOURCE_DIR "/docs/printing.md"));
    QVERIFY(doc.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(doc.readAll());
    for (const MergeField &field : MergeField::all()) {
        const QString written = field.scope == MergeField::Scope::Sezione
                                    ? QStringLiteral("{{#%1}}").arg(field.name)
                                    : QStringLiteral("`%1`").arg(field.name);
        QVERIFY2(text.contains(written), qPrintable(written));
    }
}

QTEST_GUILESS_MAIN(TestTemplateMerge)
#include "tst_templatemerge.moc"
