#include "archives/demo/demogenerator.h"
#include "archives/demo/demoinstallation.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erpsession.h"
#include "archives/text/archivetext.h"
#include "archives/text/archivetextfile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::archives;

class TestArchiveText : public QObject
{
    Q_OBJECT

private slots:
    void valuesRoundTrip_data();
    void valuesRoundTrip();
    void everyDemoRecordRoundTrips();
    void typesAndBlanks();
    void badLinesNameLineAndField_data();
    void badLinesNameLineAndField();
    void dueItemFieldsChecked_data();
    void dueItemFieldsChecked();
    void overlongLineSkipped();
    void refusedFileWritesNothing();
    void dumpLoadDumpGivesTheSameText();

private:
    // Writes a text file in the temporary directory and returns its path.
    QString writeText(const QString &name, const QByteArray &utf8);
    // The dump of an archive of an installation, through a fresh embedded store.
    QString dump(const DemoInstallation &demo, int archive, int key = 1);

    QTemporaryDir m_files;
};

QString TestArchiveText::writeText(const QString &name, const QByteArray &utf8)
{
    const QString path = m_files.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(utf8) != utf8.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QString TestArchiveText::dump(const DemoInstallation &demo, int archive, int key)
{
    EmbeddedArchiveStore store(demo.companyArchiveDir(), demo.commonArchiveDir());
    store.VBInit(1);
    ErpSession session(store, 1);
    QString text, error;
    QTextStream out(&text);
    if (!ArchiveTextFile::dump(session, archive, key, out, &error))
        text = QStringLiteral("ERRORE: ") + error;
    store.VBEnd(1);
    return text;
}

void TestArchiveText::valuesRoundTrip_data()
{
    QTest::addColumn<QString>("value");   // what the field holds, trailing blanks dropped
    QTest::addColumn<QString>("written"); // how the line writes it
    auto row = [](const char *name, const char *value, const char *written) {
        QTest::newRow(name) << QString::fromUtf8(value) << QString::fromUtf8(written);
    };
    row("accents stay as they are", "Forlì", "Forlì");
    row("blanks inside", "Via Roma, 12", "\"Via Roma, 12\"");
    row("leading blanks of an amount", "    12.50", "\"    12.50\"");
    row("quotes", "Bar \"Da Mimì\"", "\"Bar \\\"Da Mimì\\\"\"");
    row("equals sign", "a=b", "\"a=b\"");
    row("backslash", "C:\\ERP", "\"C:\\\\ERP\"");
    row("apostrophe and euro sign", "dell'€", "dell'€");
    row("control character", "a\tb", "\"a\\x09b\"");
    row("byte the code page leaves undefined", "\u0081x", "\"\\x81x\"");
    row("hash inside", "n.#12", "n.#12");
}

void TestArchiveText::valuesRoundTrip()
{
    QFETCH(QString, value);
    QFETCH(QString, written);
    // Set through the text form itself: the written value must read back as the value.
    std::optional<ErpRecord> parsed;
    ArchiveText::Problem problem;
    const QString line = QStringLiteral("0 * cod_clifor=400001 ragsoc=") + written;
    QCOMPARE(ArchiveText::parse(line, &parsed, &problem), ArchiveText::Line::Record);
    QCOMPARE(parsed->text(QStringLiteral("ragsoc")).left(value.size()), value);
    QVERIFY(parsed->text(QStringLiteral("ragsoc")).mid(value.size()).trimmed().isEmpty());
    QCOMPARE(ArchiveText::formatValue(value), written);
    QCOMPARE(ArchiveText::format(*parsed), line);
}

void TestArchiveText::everyDemoRecordRoundTrips()
{
    // Every record the demo makes, in every archive and type, comes back byte for byte.
    DemoOptions options;
    options.dueItems = 150;
    DemoGenerator generator(options);
    int records = 0;
    generator.generate([&](const ErpRecord &record) {
        const QString line = ArchiveText::format(record);
        std::optional<ErpRecord> parsed;
        ArchiveText::Problem problem;
        if (ArchiveText::parse(line, &parsed, &problem) != ArchiveText::Line::Record ||
            parsed->buffer() != record.buffer() || parsed->recordType() != record.recordType()) {
            qWarning("%s: %s", qPrintable(line), qPrintable(problem.message));
            return false;
        }
        ++records;
        return true;
    });
    QVERIFY(records > 150);
}

void TestArchiveText::typesAndBlanks()
{
    ErpRecord bank(TabelleComuni, QStringLiteral("BN "));
    bank.setText(QStringLiteral("codice"), QStringLiteral("0306901600"));
    bank.setText(QStringLiteral("des_banca"), QStringLiteral("Intesa Sanpaolo"));
    // The type's blank is written '_', tipo_rec is not repeated, blank fields are left out.
    QCOMPARE(ArchiveText::format(bank),
             QStringLiteral("15 BN_ codice=0306901600 des_banca=\"Intesa Sanpaolo\""));
    QCOMPARE(ArchiveText::recordTypeOf(TabelleComuni, bank.buffer()), QStringLiteral("BN "));
    QCOMPARE(ArchiveText::recordTypeOf(Scadenze, ErpRecord(Scadenze).buffer()),
             QStringLiteral("*"));

    std::optional<ErpRecord> parsed;
    ArchiveText::Problem problem;
    QCOMPARE(ArchiveText::parse(u"   # commento", &parsed, &problem), ArchiveText::Line::Ignored);
    QCOMPARE(ArchiveText::parse(u"", &parsed, &problem), ArchiveText::Line::Ignored);
    // Blanks and tabs between pairs, trailing blanks of a value dropped.
    QCOMPARE(ArchiveText::parse(u"14\tBA3  codice=0306913201 \t iban_paese=\"IT60  \"  ", &parsed,
                                &problem),
             ArchiveText::Line::Record);
    QCOMPARE(parsed->recordType(), QStringLiteral("BA3"));
    QCOMPARE(parsed->text(QStringLiteral("tipo_rec")), QStringLiteral("BA3"));
    QCOMPARE(parsed->text(QStringLiteral("iban_paese")), QStringLiteral("IT60"));
}

void TestArchiveText::badLinesNameLineAndField_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("message");
    auto row = [](const char *name, const char *line, const char *field, const char *message) {
        QTest::newRow(name) << QString::fromUtf8(line) << QString::fromUtf8(field)
                            << QString::fromUtf8(message);
    };
    row("no archive number", "trentotto * link=1", "", "numero di archivio");
    row("unknown archive", "99 * link=1", "", "archivio 99 sconosciuto");
    row("missing type", "38", "", "manca il tipo");
    row("type in an archive without types", "38 AZ1 link=1", "", "non ha tipi di record");
    row("unknown type", "15 XX_ codice=1", "", "tipo di record \"XX_\"");
    row("unknown field", "38 * link=1 importo=5", "importo", "campo sconosciuto");
    row("field of another type", "15 VL_ codice=EU des_banca=x", "des_banca", "record di tipo VL_");
    row("value wider than the field", "38 * flag_colpar=PP", "flag_colpar",
        "valore di 2 caratteri, il campo ne contiene 1");
    row("no equals sign", "38 * link 0001", "link", "atteso campo=valore");
    row("quote not closed", "0 * ragsoc=\"Rossi", "ragsoc", "virgolette non chiuse");
    row("quote in a bare value", "0 * ragsoc=Da\"Mimì\"", "ragsoc", "virgolette");
    row("bad escape", "0 * ragsoc=\"a\\nb\"", "ragsoc", "sequenza \\n");
    row("character outside the code page", "0 * ragsoc=Łódź", "ragsoc", "Windows-1252");
    row("record type as a field", "15 BN_ tipo_rec=VL_", "tipo_rec", "seconda colonna");
    row("field twice", "0 * cod_clifor=1 cod_clifor=2", "cod_clifor", "campo ripetuto");
}

void TestArchiveText::badLinesNameLineAndField()
{
    QFETCH(QString, line);
    QFETCH(QString, field);
    QFETCH(QString, message);
    std::optional<ErpRecord> parsed;
    ArchiveText::Problem problem;
    QCOMPARE(ArchiveText::parse(line, &parsed, &problem), ArchiveText::Line::Invalid);
    QVERIFY(!parsed.has_value());
    QCOMPARE(problem.field, field);
    QVERIFY2(problem.message.contains(message), qPrintable(problem.message));

    // In a file, the problem names the line (and the field).
    const QString path =
        writeText(QStringLiteral("bad.txt"),
                  "# prima riga\n0 * cod_clifor=400001\n\n" + line.toUtf8() + "\r\n");
    const QStringList problems = ArchiveTextFile::validate(path);
    QCOMPARE(problems.size(), 1);
    const QString where = field.isEmpty() ? QStringLiteral("riga 4: ")
                                          : QStringLiteral("riga 4, campo %1: ").arg(field);
    QVERIFY2(problems.first().startsWith(where), qPrintable(problems.first()));
}

void TestArchiveText::dueItemFieldsChecked_data()
{
    // One field of a complete due item given another value ("" leaves the field out), the
    // field refused (empty when the line loads) and words of the reason.
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("problem");
    auto row = [](const char *name, const char *field, const char *value, const char *problem) {
        QTest::newRow(name) << QString::fromUtf8(field) << QString::fromUtf8(value)
                            << QString::fromUtf8(problem);
    };
    row("amount right-aligned", "imp_dapag_val", "\"        -48.88\"", "");
    row("amount without decimals", "imp_dapag_val", "1500", "");
    row("amount with a comma", "imp_dapag_val", "12x34,5", "importo \"12x34,5\" non valido");
    row("amount in letters", "imp_dapag_eur", "abc", "importo \"abc\" non valido");
    row("amount with an exponent", "imp_dapag_val", "1.5e3", "importo \"1.5e3\" non valido");
    row("exponent without a point", "imp_dapag_eur", "1e5", "importo \"1e5\" non valido");
    row("three decimals", "imp_pag_val", "48.885", "al massimo 2 decimali");
    row("two points", "imp_pag_eur", "1.000.00", "non valido");
    row("29 February of a leap year", "data_scad", "20240229", "");
    row("month 13", "data_scad", "20251399", "data \"20251399\" non valida");
    row("29 February of another year", "data_doc", "20250229", "non valida");
    row("date of six digits", "data_dist", "250331", "non valida");
    row("rate of zero", "cambio", "0.000000", "cambio \"0.000000\" non valido");
    row("rate with a sign", "cambio", "-1.5", "non valido");
    row("account code with a letter", "cod_clifor", "40001A", "solo cifre");
    row("payment type out of the list", "tipo_pag", "X", "i valori possibili sono 0, 1");
    row("distinta state out of the list", "stato_dist", "9", "0, 3, 4, 5");
    row("control character as it is", "num_doc", "12\x01", "carattere di controllo di codice 01");
    row("control character between quotes", "descrizione", "\"a\tb\"", "codice 09");
    row("control character written \\x", "descrizione", "\"a\\x09b\"", "");
    row("empty link", "link", "\"\"", "manca il valore");
    row("no flag", "flag_colpar", "", "manca il valore");
    row("no amount in euro", "imp_dapag_eur", "", "manca il valore");
}

void TestArchiveText::dueItemFieldsChecked()
{
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(QString, problem);
    QString line = QStringLiteral(
        "38 * flag_colpar=P link=2025000012301 stato=0 tipo_pag=6 data_scad=20250331 "
        "ind_clifor=F cod_clifor=400017 num_doc=1234 data_doc=20250203 num_rata=02 "
        "valuta=EU cambio=1.000000 imp_dapag_val=48.88 imp_dapag_eur=48.88 stato_dist=0 "
        "mark_dist=0");
    const QRegularExpression pair(u' ' + field + QStringLiteral("=\\S*"));
    line.remove(pair);
    if (!value.isEmpty())
        line += u' ' + field + u'=' +
                QString(value).replace(QStringLiteral("\\t"), QStringLiteral("\t"));
    std::optional<ErpRecord> parsed;
    ArchiveText::Problem found;
    const ArchiveText::Line kind = ArchiveText::parse(line, &parsed, &found);
    if (problem.isEmpty()) {
        QVERIFY2(kind == ArchiveText::Line::Record, qPrintable(found.message));
        return;
    }
    QCOMPARE(kind, ArchiveText::Line::Invalid);
    QCOMPARE(found.field, field);
    QVERIFY2(found.message.contains(problem), qPrintable(found.message));
}

void TestArchiveText::overlongLineSkipped()
{
    // A value of megabytes is refused without being read into memory, and the lines after it
    // are still checked, with their own numbers.
    QByteArray text = "0 * cod_clifor=400001 ragsoc=\"" +
                      QByteArray(4 * ArchiveTextFile::MaxLineBytes, 'x') + "\"\n" +
                      "0 * cod_clifor=4000Z1\n";
    const QStringList problems =
        ArchiveTextFile::validate(writeText(QStringLiteral("long.txt"), text));
    QCOMPARE(problems,
             (QStringList{QStringLiteral("riga 1: riga troppo lunga: più di %1 caratteri")
                              .arg(ArchiveTextFile::MaxLineBytes),
                          QStringLiteral("riga 2, campo cod_clifor: valore \"4000Z1\" non valido: "
                                         "sono ammesse solo cifre")}));
}

void TestArchiveText::refusedFileWritesNothing()
{
    QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/pgtXXXXXX"));
    DemoInstallation demo(dir.path());
    QString error;
    QVERIFY2(demo.write(QByteArray("schema"), true, &error), qPrintable(error));

    // Good lines in both stores, then a bad one near the end, then many bad ones.
    const QByteArray dueItem = "38 * tipo_pag=6 ind_clifor=F cod_clifor=400001 "
                               "imp_dapag_val=10.00 imp_dapag_eur=10.00 data_scad=20250331 ";
    QByteArray text = "15 VL_ codice=EU des_valuta=EURO decimali=2\n"
                      "0 * cod_clifor=400001 ind_clifor=F ragsoc=\"Bellè & Figli\"\n" +
                      dueItem + "flag_colpar=P link=2025000000101\n" + dueItem +
                      "flag_colpar=P link=2025000000201 descrizione=\"" + QByteArray(41, 'x') +
                      "\"\n";
    for (int i = 0; i < ArchiveTextFile::MaxProblems + 5; ++i)
        text += "38 * nessuno=1\n";
    const QString path = writeText(QStringLiteral("refused.txt"), text);
    QStringList problems;
    QVERIFY(
        !ArchiveTextFile::load(path, demo.companyArchiveDir(), demo.commonArchiveDir(), &problems));
    QCOMPARE(problems.size(), ArchiveTextFile::MaxProblems + 1);
    QVERIFY2(problems.first().startsWith(u"riga 4, campo descrizione: valore di 41"),
             qPrintable(problems.first()));
    QVERIFY(problems.at(1).startsWith(u"riga 5, campo nessuno:"));
    QVERIFY(problems.last().contains(u"altre 6 righe"));
    for (int archive : {TabelleComuni, AnagraficheComuni, Scadenze})
        QCOMPARE(dump(demo, archive), QString());

    // The same file without its bad lines loads whole.
    const QString good =
        writeText(QStringLiteral("good.txt"),
                  text.left(text.indexOf(dueItem + "flag_colpar=P link=2025000000201")));
    QMap<int, qint64> counts;
    QVERIFY(ArchiveTextFile::load(good, demo.companyArchiveDir(), demo.commonArchiveDir(),
                                  &problems, &counts));
    QCOMPARE(counts, (QMap<int, qint64>{{0, 1}, {15, 1}, {38, 1}}));
    QCOMPARE(dump(demo, AnagraficheComuni),
             QStringLiteral("0 * cod_clifor=400001 ind_clifor=F ragsoc=\"Bellè & Figli\"\n"));
}

void TestArchiveText::dumpLoadDumpGivesTheSameText()
{
    QTemporaryDir from(QDir::tempPath() + QStringLiteral("/pgtXXXXXX"));
    QTemporaryDir into(QDir::tempPath() + QStringLiteral("/pgtXXXXXX"));
    DemoOptions options;
    options.dueItems = 200;
    options.seed = 11;
    DemoInstallation source(from.path(), options);
    DemoInstallation target(into.path(), options);
    QString error;
    QVERIFY2(source.write(QByteArray("schema"), false, &error), qPrintable(error));
    QVERIFY2(target.write(QByteArray("schema"), true, &error), qPrintable(error));

    QByteArray everything;
    QMap<int, QString> dumps;
    for (int archive : RecordLayouts::instance().archiveNumbers()) {
        dumps[archive] = dump(source, archive);
        QVERIFY2(!dumps[archive].isEmpty(), qPrintable(QString::number(archive)));
        everything += dumps[archive].toUtf8();
    }
    QStringList problems;
    QVERIFY(ArchiveTextFile::load(writeText(QStringLiteral("all.txt"), everything),
                                  target.companyArchiveDir(), target.commonArchiveDir(),
                                  &problems));
    for (auto it = dumps.cbegin(); it != dumps.cend(); ++it)
        QCOMPARE(dump(target, it.key()), it.value());
    // Key 2 of the due items reads them in another order, the same on both.
    const QString byKey2 = dump(source, Scadenze, 2);
    QVERIFY(byKey2 != dumps[Scadenze]);
    QCOMPARE(dump(target, Scadenze, 2), byKey2);
    QVERIFY(dump(source, Scadenze, 3).startsWith(u"ERRORE: L'archivio 38 non ha la chiave 3"));
}

QTEST_GUILESS_MAIN(TestArchiveText)
#include "tst_archivetext.moc"
