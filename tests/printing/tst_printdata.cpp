#include "printfixture.h"
#include "scriptedprompter.h"

#include "core/vbdate.h"
#include "printing/distintamergedata.h"
#include "printing/editoroutput.h"
#include "printing/mergefield.h"
#include "printing/printarchivereader.h"
#include "printing/printdocument.h"
#include "printing/printeroutput.h"
#include "printing/templatestore.h"
#include "startup/companyenvironment.h"

#include <QDir>
#include <QFile>
#include <QPrinterInfo>
#include <QTest>

using namespace pg;
using namespace pg::printing;
using pg::test::PrintFixture;

namespace {

using Fields = QHash<QString, QString>;

// Compares the named values; the first difference fails the test with its name.
bool sameValues(const Fields &actual, const QList<std::pair<const char *, const char *>> &expected)
{
    for (const auto &[name, value] : expected)
        if (actual.value(QString::fromLatin1(name)) != QString::fromUtf8(value)) {
            qWarning("%s: \"%s\" instead of \"%s\"", name,
                     qPrintable(actual.value(QString::fromLatin1(name))), value);
            return false;
        }
    return true;
}

} // namespace

class TestPrintData : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void valuesOfTheDistintaAndTheArchives();
    void groupedRows();
    void templatesInTheImageDirectory();
    void externalProgramAndPrinter();

private:
    std::unique_ptr<PrintFixture> m_fx;
};

void TestPrintData::init()
{
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    dates::setToday(QDate(2026, 11, 21));
    m_fx = std::make_unique<PrintFixture>();
    QVERIFY(m_fx->isValid());
}

void TestPrintData::cleanup()
{
    m_fx.reset();
    QLocale::setDefault(QLocale::c());
}

void TestPrintData::valuesOfTheDistintaAndTheArchives()
{
    const distinta::Distinta d = m_fx->saveDistinta(6);
    PrintOptions options;
    options.presentationDate = QDate(2026, 11, 25);
    m_fx->counting().reset();
    PrintArchiveReader reader(&m_fx->erp());
    const MergeData data = distintaMergeData(d, m_fx->company(), reader, options, {});

    // Read once per account and bank, however many rows they have: three accounts (master
    // and bank data), two banks, the company's bank.
    QCOMPARE(m_fx->counting().equalReads(), 3 * 2 + 2 + 1);
    QVERIFY(sameValues(data.fields, {{"ragione_sociale_azienda", "ORVIDA DEMO S.P.A."},
                                     {"numero_distinta", "1"},
                                     {"data_creazione", "21/11/2026"},
                                     {"data_valuta", "30/11/2026"},
                                     {"data_presentazione", "25/11/2026"},
                                     {"abi_presentazione", "02008"},
                                     {"iban_ordinante", "IT40S0200801600000000012345"},
                                     {"tipo_stampa", "STAMPA DI PROVA"},
                                     {"numero_disposizioni", "6"},
                                     {"totale_importo", "21.003,00"}}));
    QVERIFY(data.conditions.value(QStringLiteral("prova")));
    QVERIFY(!data.conditions.value(QStringLiteral("totali")));

    // Rows in the distinta's order (account, document date, series, number).
    QCOMPARE(data.rows.size(), 6);
    QHash<QString, Fields> byDocument;
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(data.rows.at(i).value(QStringLiteral("progressivo")), QString::number(i + 1));
        byDocument.insert(d.righe.at(i).des_num_doc.trimmed(), data.rows.at(i));
    }
    QVERIFY(sameValues(byDocument.value(QStringLiteral("101")),
                       {{"ragione_sociale_beneficiario", "ROSSI FORNITURE S.R.L."},
                        {"documento", "101/A"},
                        {"data_documento", "15/10/2026"},
                        {"data_scadenza", "30/11/2026"},
                        {"tipo_pagamento", "Bonifico"},
                        {"banca_beneficiario", "INTESA SANPAOLO"},
                        {"coordinate_bancarie", "IT60X0306901600000012345678"},
                        {"importo", "1.000,50"}}));
    // Without an IBAN the coordinates are the due item's bank, agency and account.
    QVERIFY(sameValues(byDocument.value(QStringLiteral("102")),
                       {{"ragione_sociale_beneficiario", "BIANCHI & FIGLI <S.P.A.>"},
                        {"documento", "102"},
                        {"coordinate_bancarie", "ABI 05034 CAB 11100 C/C 000000987654"}}));
    // An account the suite does not know prints without a name, never with another's.
    QVERIFY(
        sameValues(byDocument.value(QStringLiteral("103")),
                   {{"ragione_sociale_beneficiario", ""}, {"banca_beneficiario", "BANCO BPM"}}));

    // The list of template variables and the values printed are the same names.
    QSet<QString> produced;
    const auto collect = [&](const Fields &fields, MergeField::Scope scope) {
        for (auto it = fields.cbegin(); it != fields.cend(); ++it) {
            const MergeField *field = MergeField::find(it.key());
            QVERIFY2(field && field->scope == scope, qPrintable(it.key()));
            produced << it.key();
        }
    };
    collect(data.fields, MergeField::Scope::Documento);
    collect(data.rows.first(), MergeField::Scope::Riga);
    for (auto it = data.conditions.cbegin(); it != data.conditions.cend(); ++it)
        produced << it.key();
    produced << MergeField::rowSection();
    for (const MergeField &field : MergeField::all())
        QVERIFY2(produced.contains(field.name), qPrintable(field.name));
}

void TestPrintData::groupedRows()
{
    const distinta::Distinta d = m_fx->saveDistinta(6);
    PrintOptions options;
    options.grouped = true;
    options.definitive = true;
    PrintArchiveReader reader(&m_fx->erp());
    // As saved, and as a distinta saved before grouped rows existed.
    distinta::Distinta old = d;
    old.righeRagg.removeAll();
    const QList<const distinta::Distinta *> both{&d, &old};
    for (const distinta::Distinta *each : both) {
        const MergeData data = distintaMergeData(*each, m_fx->company(), reader, options, {});
        QCOMPARE(data.rows.size(), 3);
        // Rows 1 and 4 are the first supplier's: 1.000,50 + 4.000,50.
        QCOMPARE(data.rows.at(0).value(QStringLiteral("importo")), QStringLiteral("5.001,00"));
        QVERIFY(sameValues(data.fields, {{"numero_disposizioni", "3"},
                                         {"numero_scadenze", "6"},
                                         {"totale_importo", "21.003,00"},
                                         {"tipo_stampa", "STAMPA DEFINITIVA"}}));
        QVERIFY(data.conditions.value(QStringLiteral("raggruppate")));
    }
}

void TestPrintData::templatesInTheImageDirectory()
{
    const QString dImg = OrvidaDir() + QStringLiteral("D_IMG/");
    const TemplateStore store;
    QCOMPARE(store.directory(), dImg);
    QCOMPARE(store.names(), TemplateStore::shippedNames());
    QVERIFY(!store.text(QStringLiteral("Sollecito")));

    auto write = [&](const QString &name, const QByteArray &content) {
        QFile file(dImg + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    write(QStringLiteral("distinta.HTML"), "<p>della ditta</p>");
    write(QStringLiteral("Sollecito.htm"), "<p>sollecito</p>");
    write(QStringLiteral("note.txt"), "not a template");
    QCOMPARE(store.names(), (QStringList{QStringLiteral("Distinta"), QStringLiteral("Lettera"),
                                         QStringLiteral("Sollecito")}));
    // The company's own template wins over the shipped one of the same name.
    QCOMPARE(*store.text(QStringLiteral("Distinta")), QStringLiteral("<p>della ditta</p>"));
    QCOMPARE(*store.text(QStringLiteral("sollecito")), QStringLiteral("<p>sollecito</p>"));

    // Installing the shipped templates leaves the company's alone; the copies can be edited.
    QString error;
    QVERIFY2(TemplateStore::installShipped(dImg, &error), qPrintable(error));
    QCOMPARE(*store.text(QStringLiteral("Distinta")), QStringLiteral("<p>della ditta</p>"));
    QFile copied(dImg + QStringLiteral("Lettera.html"));
    QVERIFY(copied.open(QIODevice::ReadWrite));
}

void TestPrintData::externalProgramAndPrinter()
{
    test::ScriptedPrompter prompter;
    const QString dir = OrvidaDir() + QStringLiteral("D_STM/");
    const PrintDocument document(QStringLiteral("<p>Distinta 7</p>"), QString(), true);
    QStringList launched;
    bool starts = true;
    const auto launcher = [&](const QString &program, const QString &file) {
        launched << program << file;
        return starts;
    };
    EditorOutput output(QStringLiteral(" /opt/office/bin/writer "), dir, launcher);
    QVERIFY(output.deliver(document, QStringLiteral("Distinta_7")));
    const QString file = dir + QStringLiteral("Distinta_7.odt");
    QCOMPARE(launched, (QStringList{QStringLiteral("/opt/office/bin/writer"), file}));
    QFile odt(file);
    QVERIFY(odt.open(QIODevice::ReadOnly));
    QCOMPARE(odt.read(2), QByteArray("PK")); // an OpenDocument is a zip archive
    QVERIFY(prompter.shown().isEmpty());

    starts = false;
    QVERIFY(!output.deliver(document, QStringLiteral("Distinta_7")));
    QCOMPARE(prompter.lastText(),
             QStringLiteral("Impossibile avviare il programma di stampa /opt/office/bin/writer"));
    launched.clear();
    QVERIFY(!EditorOutput(QString(), dir, launcher).deliver(document, QStringLiteral("x")));
    QCOMPARE(prompter.lastText(),
             QStringLiteral("Indicare nelle Opzioni il programma da utilizzare per la stampa."));
    QVERIFY(launched.isEmpty());

    // Straight to the printer on a machine without printers: nothing goes out, and the clerk
    // is told (never a silent PDF in place of the print).
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        QVERIFY(!PrinterOutput(std::nullopt).deliver(document, QStringLiteral("Distinta_7")));
        QCOMPARE(prompter.lastText(),
                 QStringLiteral("Nessuna stampante disponibile: la stampa non è stata eseguita."));
    }
}

QTEST_MAIN(TestPrintData)
#include "tst_printdata.moc"
