#include "localdb/schemafile.h"
#include "localdb/shippedschema.h"

#include "core/cp1252.h"

#include <QFile>
#include <QTest>

using namespace pg;
using namespace pg::localdb;

namespace {

// A schema file from lines written as UTF-8 text, stored as the program reads it.
QByteArray schemaFile(const QStringList &lines)
{
    return cp1252::encode(lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n"));
}

const QString Header = QStringLiteral("Database\tPagame\t06.07.01");
const QString TestataTable = QStringLiteral("Tabella\tT\n"
                                            "Campo\tk\t10\t6\t2\tFalse\t\tTrue\n"
                                            "Campo\tv\t7\t8\t1\tFalse\t0\tFalse\n"
                                            "Indice\tPrimaryKey\tFalse\tTrue\tTrue\n"
                                            "ColonnaIndice\tk\n"
                                            "FineIndice\n"
                                            "FineTabella");
const QString RowsTable = QStringLiteral("Tabella\tR\n"
                                         "Campo\tk\t10\t6\t2\tFalse\t\tFalse\n"
                                         "FineTabella");

QStringList lines(const QString &text)
{
    return text.split(u'\n');
}

} // namespace

class TestSchemaFile : public QObject
{
    Q_OBJECT

private slots:
    void shippedFile();
    void readingRules();
    void writingRules();
    void badFiles_data();
    void badFiles();
};

void TestSchemaFile::shippedFile()
{
    const QByteArray shipped = shippedSchemaDescription();
    QFile source(QStringLiteral(PAGAMENTI_SOURCE_DIR "/data/QXARTRAC.DAT"));
    QVERIFY(source.open(QIODevice::ReadOnly));
    QCOMPARE(shipped, source.readAll());
    QVERIFY(shipped.contains("\r\n"));
    QVERIFY(shipped.contains('\xB5')); // the comma stand-in, one byte of the code page

    const DatabaseSchema schema = parseSchemaDescription(shipped);
    QCOMPARE(schema.name, QStringLiteral("Pagame"));
    QStringList tables;
    for (const SchemaTable &t : schema.tables)
        tables << t.name;
    QCOMPARE(tables, QStringList({QStringLiteral("TB_TESTATA"), QStringLiteral("TB_RIGHE"),
                                  QStringLiteral("TB_RIGHE_RAGG"), QStringLiteral("_tblSys_EnvVar"),
                                  QStringLiteral("TB_GIORNALE"), QStringLiteral("TB_VERSIONI")}));
    // Rows and grouped rows are the same columns.
    QCOMPARE(schema.tables.at(1).fields.size(), 32);
    for (qsizetype i = 0; i < schema.tables.at(1).fields.size(); ++i)
        QVERIFY(schema.tables.at(1).fields.at(i).sameAs(schema.tables.at(2).fields.at(i)));
    const SchemaField *indist = schema.tables.at(1).field(QStringLiteral("val_imp_indist_eur"));
    QVERIFY(indist && indist->type == DaoDouble && !indist->required);
    const SchemaField *key = schema.tables.at(0).field(QStringLiteral("cod_distinta"));
    QVERIFY(key && key->type == DaoText && key->size == 6 && key->required);
    QCOMPARE(schema.relations.size(), 2);
    for (const SchemaRelation &r : schema.relations) {
        QVERIFY(r.enforced());
        QCOMPARE(r.table, QStringLiteral("TB_TESTATA"));
    }
    bool commaQuery = false;
    for (const SchemaQuery &q : schema.queries)
        commaQuery = commaQuery || q.sql.contains(u',');
    QVERIFY(commaQuery);

    // The shipped file is in the generator's own form, so a regenerated file differs from it
    // only where the database does.
    QCOMPARE(writeSchemaDescription(schema), shipped);
}

void TestSchemaFile::readingRules()
{
    QStringList file{QStringLiteral("Commento prima dell'intestazione"),
                     QStringLiteral("Database\tVecchio\t06.07.00"),
                     QStringLiteral("  Database\tPagame\t06.07.01  ")};
    file << lines(TestataTable);
    file << QStringLiteral("ParolaSconosciuta\tx\ty")
         << QStringLiteral("Tabella\tA\u00FFB") // character 255 stands for a TAB
         << QStringLiteral("Campo\tc\t12\t0\t2\tvero\t\"a\u00FFb\"\tfalso")
         << QStringLiteral("FineTabella")
         << QStringLiteral("Query\tqP\tPARAMETERS [p] Text ( 6 )\u00B5 [q] Long;  SELECT k\u00B5 v "
                           "FROM T\t0")
         << QStringLiteral("Query\tqS\tSELECT k\u00B5v FROM T\t5");
    // Line ends of any kind.
    const QByteArray bytes = schemaFile(file).replace("\r\n", "\n");
    const DatabaseSchema schema = parseSchemaDescription(bytes);

    QCOMPARE(schema.version, QStringLiteral("06.07.01"));
    QCOMPARE(schema.name, QStringLiteral("Pagame"));
    QCOMPARE(schema.tables.size(), 2);
    QCOMPARE(schema.tables.at(1).name, QStringLiteral("A\tB"));
    const SchemaField &memo = schema.tables.at(1).fields.at(0);
    QCOMPARE(memo.type, int(DaoMemo));
    QVERIFY(memo.allowZeroLength);
    QVERIFY(!memo.required);
    QCOMPARE(memo.defaultValue, QStringLiteral("\"a\tb\""));
    QCOMPARE(schema.queries.size(), 2);
    QCOMPARE(schema.queries.at(0).sql, QStringLiteral("SELECT k, v FROM T"));
    QCOMPARE(schema.queries.at(1).sql, QStringLiteral("SELECT k,v FROM T"));
    QCOMPARE(schema.queries.at(1).maxRecords, 5);

    // Any other version is refused, even when everything else is right.
    try {
        parseSchemaDescription(
            schemaFile(QStringList{QStringLiteral("Database\tx\t06.07.00")} + lines(TestataTable)));
        QFAIL("an old version was accepted");
    } catch (const SchemaError &e) {
        QVERIFY(e.versionMissing);
        QCOMPARE(e.message(), QStringLiteral("Errore d'installazione. Il file dati QXARTRAC.DAT "
                                             "non è corretto. Reinstallare il software"));
    }
}

void TestSchemaFile::writingRules()
{
    DatabaseSchema schema;
    schema.name = QStringLiteral("Pagame");
    schema.version = QStringLiteral("06.07.01");
    SchemaTable table;
    table.name = QStringLiteral("T");
    table.fields << SchemaField{QStringLiteral("a\tb"),  DaoText, 10, 2, true,
                                QStringLiteral("\"x\""), false,   0};
    schema.tables << table;
    schema.queries << SchemaQuery{QStringLiteral("q"),
                                  QStringLiteral("SELECT 1, 2\r\nFROM T\nWHERE 1\r"), 0, 0};
    const QByteArray bytes = writeSchemaDescription(schema);
    QVERIFY(bytes.contains("Campo\ta\xFF"
                           "b\t10\t10\t2\tTrue\t\"x\"\tFalse\r\n"));
    QVERIFY(bytes.contains("Query\tq\tSELECT 1\xB5 2 FROM T WHERE 1 \t0\r\n"));
    QVERIFY(!bytes.contains(','));

    const DatabaseSchema back = parseSchemaDescription(bytes);
    QVERIFY(back.tables.at(0).sameAs(table));
    QCOMPARE(back.queries.at(0).sql, QStringLiteral("SELECT 1, 2 FROM T WHERE 1 "));
}

void TestSchemaFile::badFiles_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("problem");

    // Line 1 is the header; the body starts at line 2.
    QTest::newRow("truncated field")
        << QStringLiteral("Tabella\tT\nCampo\tk\t10\t6\t2") << 3 << QStringLiteral("incompleta");
    QTest::newRow("unknown type") << QStringLiteral("Tabella\tT\nCampo\tk\t9\t6\t2\tTrue\t\tFalse")
                                  << 3 << QStringLiteral("il tipo 9 del campo \"k\"");
    QTest::newRow("bad number") << QStringLiteral("Tabella\tT\nCampo\tk\t10\tsei\t2\tTrue\t\tFalse")
                                << 3 << QStringLiteral("\"sei\" non è un numero");
    QTest::newRow("bad truth") << QStringLiteral("Tabella\tT\nCampo\tk\t10\t6\t2\tforse\t\tFalse")
                               << 3 << QStringLiteral("\"forse\" non è un valore logico");
    QTest::newRow("text too long")
        << QStringLiteral("Tabella\tT\nCampo\tk\t10\t300\t2\tTrue\t\tFalse") << 3
        << QStringLiteral("tra 1 e 255");
    QTest::newRow("field outside table") << QStringLiteral("Campo\tk\t10\t6\t2\tTrue\t\tFalse") << 2
                                         << QStringLiteral("fuori da una tabella");
    QTest::newRow("index outside table") << QStringLiteral("Indice\tI\tFalse\tFalse\tFalse") << 2
                                         << QStringLiteral("fuori da una tabella");
    QTest::newRow("index column outside index")
        << QStringLiteral("Tabella\tT\nCampo\tk\t10\t6\t2\tTrue\t\tFalse\nColonnaIndice\tk") << 4
        << QStringLiteral("fuori da un indice");
    QTest::newRow("index column not a field")
        << QStringLiteral("Tabella\tT\nCampo\tk\t10\t6\t2\tTrue\t\tFalse\nIndice\tI\tFalse\tFalse\t"
                          "False\nColonnaIndice\tz")
        << 5 << QStringLiteral("non è un campo della tabella \"T\"");
    QTest::newRow("duplicate field")
        << QStringLiteral(
               "Tabella\tT\nCampo\tk\t10\t6\t2\tTrue\t\tFalse\nCampo\tK\t4\t4\t1\tFalse\t\t"
               "False")
        << 4 << QStringLiteral("già definito");
    QTest::newRow("second primary index")
        << TestataTable.section(u'\n', 0, 5) + QStringLiteral("\nIndice\tPK2\tFalse\tTrue\tTrue")
        << 8 << QStringLiteral("ha già l'indice primario");
    QTest::newRow("table left open")
        << QStringLiteral("Tabella\tT\nCampo\tk\t10\t6\t2\tTrue\t\tFalse") << 2
        << QStringLiteral("non è chiusa");
    QTest::newRow("table inside table")
        << QStringLiteral("Tabella\tT\nCampo\tk\t10\t6\t2\tTrue\t\tFalse\nTabella\tU") << 4
        << QStringLiteral("non è chiusa");
    QTest::newRow("comma") << TestataTable + QStringLiteral("\nQuery\tq\tSELECT k, v FROM T\t0")
                           << 9 << QStringLiteral("virgola");
    QTest::newRow("relation to missing table")
        << TestataTable + QStringLiteral("\nRelazioni\tr\t0\tNessuna\tT") << 9
        << QStringLiteral("la tabella \"Nessuna\", che non esiste");
    QTest::newRow("relation to missing field")
        << TestataTable + u'\n' + RowsTable +
               QStringLiteral("\nRelazioni\tr\t0\tR\tT\nCampoRelazione\tk\tnessuno")
        << 13 << QStringLiteral("il campo \"nessuno\", che non esiste nella tabella \"R\"");
    QTest::newRow("enforced relation without unique index")
        << RowsTable + u'\n' +
               QString(RowsTable).replace(QStringLiteral("\tR\n"), QStringLiteral("\tS\n")) +
               QStringLiteral("\nRelazioni\tr\t0\tR\tS\nCampoRelazione\tk\tk\nFineRelazione")
        << 10 << QStringLiteral("richiede un indice univoco");
    QTest::newRow("reserved name")
        << QStringLiteral("Tabella\tMSysTabelle") << 2 << QStringLiteral("riservato");
}

void TestSchemaFile::badFiles()
{
    QFETCH(QString, body);
    QFETCH(int, line);
    QFETCH(QString, problem);
    try {
        parseSchemaDescription(schemaFile(QStringList{Header} + lines(body)));
        QFAIL("the file was accepted");
    } catch (const SchemaError &e) {
        QVERIFY(!e.versionMissing);
        QCOMPARE(e.line, line);
        QVERIFY2(e.text.contains(problem), qPrintable(e.text));
        QVERIFY(e.message().startsWith(QStringLiteral("Errore d'installazione. Il file dati "
                                                      "QXARTRAC.DAT non è corretto.")));
        QVERIFY(e.message().contains(QStringLiteral("Riga %1: ").arg(line)));
    }
}

QTEST_GUILESS_MAIN(TestSchemaFile)
#include "tst_schemafile.moc"
