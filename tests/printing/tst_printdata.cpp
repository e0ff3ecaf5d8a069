#include "printfixture.h"
#include "scriptedprompter.h"

#include "core/vbdate.h"
#include "core/vbformat.h"
#include "lists/usersettings.h"
#include "printing/distintamergedata.h"
#include "printing/editoroutput.h"
#include "printing/mergefield.h"
#include "printing/outputchoice.h"
#include "printing/printarchivereader.h"
#include "printing/printdocument.h"
#include "printing/templatestore.h"
#include "startup/companyenvironment.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace pg;
using namespace pg::printing;
using pg::test::PrintFixture;

class TestPrintData : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void fieldsFromTheDistintaAndTheArchives();
    void groupedRows();
    void templatesInTheImageDirectory();
    void externalProgram();
    void outputKinds_data();
    void outputKinds();

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

void TestPrintData::fieldsFromTheDistintaAndTheArchives()
{
    const distinta::Distinta d = m_fx->saveDistinta(6);
    QCOMPARE(d.righe.size(), 6);
    PrintOptions options;
    options.presentationDate = QDate(2026, 11, 25);
    m_fx->counting().reset();
    PrintArchiveReader reader(&m_fx->erp());
    const MergeData data = distintaMergeData(d, m_fx->company(), reader, options, {});

    // The suite's records are read once per account and bank, however many rows they have:
    // three accounts (master and bank data), two banks, the company's bank.
    QCOMPARE(m_fx->counting().equalReads(), 3 * 2 + 2 + 1);

    const auto &f = data.fields;
    QCOMPARE(f.value(QStringLiteral("ragione_sociale_azienda")),
             QStringLiteral("ORVIDA DEMO S.P.A."));
    QCOMPARE(f.value(QStringLiteral("numero_distinta")), QStringLiteral("1"));
    QCOMPARE(f.value(QStringLiteral("data_creazione")), QStringLiteral("21/11/2026"));
    QCOMPARE(f.value(QStringLiteral("data_valuta")), QStringLiteral("30/11/2026"));
    QCOMPARE(f.value(QStringLiteral("data_presentazione")), QStringLiteral("25/11/2026"));
    QCOMPARE(f.value(QStringLiteral("banca_presentazione")),
             QStringLiteral("UNICREDIT - AG. MILANO CORDUSIO"));
    QCOMPARE(f.value(QStringLiteral("abi_presentazione")), QStringLiteral("02008"));
    QCOMPARE(f.value(QStringLiteral("iban_ordinante")),
             QStringLiteral("IT40S0200801600000000012345"));
    QCOMPARE(f.value(QStringLiteral("codice_sia")), QStringLiteral("A1B2C"));
    QCOMPARE(f.value(QStringLiteral("tipo_stampa")), QStringLiteral("STAMPA DI PROVA"));
    QCOMPARE(f.value(QStringLiteral("numero_disposizioni")), QStringLiteral("6"));
    double total = 0;
    for (int i = 1; i <= 6; ++i)
        total += PrintFixture::amountOf(i);
    QCOMPARE(total, 21003.0);
    QCOMPARE(f.value(QStringLiteral("totale_importo")), QStringLiteral("21.003,00"));
    QCOMPARE(data.conditions.value(QStringLiteral("prova")), true);
    QCOMPARE(data.conditions.value(QStringLiteral("totali")), false);

    // Rows come in the distinta's order (account, document date, series, number).
    QCOMPARE(data.rows.size(), 6);
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(data.rows.at(i).value(QStringLiteral("progressivo")), QString::number(i + 1));
        QCOMPARE(data.rows.at(i).value(QStringLiteral("numero_documento")),
                 d.righe.at(i).des_num_doc.trimmed());
    }
    auto document = [&](const QString &number) {
        for (const auto &row : data.rows)
            if (row.value(QStringLiteral("numero_documento")) == number)
                return row;
        return QHash<QString, QString>();
    };
    const auto first = document(QStringLiteral("101"));
    const auto second = document(QStringLiteral("102"));
    QCOMPARE(first.value(QStringLiteral("ragione_sociale_beneficiario")),
             QStringLiteral("ROSSI FORNITURE S.R.L."));
    QCOMPARE(first.value(QStringLiteral("documento")), QStringLiteral("101/A"));
    QCOMPARE(first.value(QStringLiteral("data_documento")), QStringLiteral("15/10/2026"));
    QCOMPARE(first.value(QStringLiteral("data_scadenza")), QStringLiteral("30/11/2026"));
    QCOMPARE(first.value(QStringLiteral("tipo_pagamento")), QStringLiteral("Bonifico"));
    QCOMPARE(first.value(QStringLiteral("banca_beneficiario")), QStringLiteral("INTESA SANPAOLO"));
    QCOMPARE(first.value(QStringLiteral("coordinate_bancarie")),
             QStringLiteral("IT60X0306901600000012345678"));
    QCOMPARE(first.value(QStringLiteral("importo")), QStringLiteral("1.000,50"));
    // Without an IBAN the coordinates are the bank, agency and account of the due item.
    QCOMPARE(second.value(QStringLiteral("ragione_sociale_beneficiario")),
             QStringLiteral("BIANCHI & FIGLI <S.P.A.>"));
    QCOMPARE(second.value(QStringLiteral("documento")), QStringLiteral("102"));
    QCOMPARE(second.value(QStringLiteral("coordinate_bancarie")),
             QStringLiteral("ABI 05034 CAB 11100 C/C 000000987654"));
    // An account the suite does not know prints without a name, never with another's.
    QCOMPARE(document(QStringLiteral("103")).value(QStringLiteral("ragione_sociale_beneficiario")),
             QString());
    QCOMPARE(document(QStringLiteral("103")).value(QStringLiteral("banca_beneficiario")),
             QStringLiteral("BANCO BPM"));

    // The list of template variables and the values printed are the same names.
    QSet<QString> produced;
    for (auto it = f.cbegin(); it != f.cend(); ++it) {
        const MergeField *field = MergeField::find(it.key());
        QVERIFY2(field && field->scope == MergeField::Scope::Documento, qPrintable(it.key()));
        produced << it.key();
    }
    for (auto it = first.cbegin(); it != first.cend(); ++it) {
        const MergeField *field = MergeField::find(it.key());
        QVERIFY2(field && field->scope == MergeField::Scope::Riga, qPrintable(it.key()));
        produced << it.key();
    }
    for (auto it = data.conditions.cbegin(); it != data.conditions.cend(); ++it)
        produced << it.key();
    for (const MergeField &field : MergeField::all())
        QVERIFY2(produced.contains(field.name) || field.name == MergeField::rowSection(),
                 qPrintable(field.name));
}

void TestPrintData::groupedRows()
{
    const distinta::Distinta d = m_fx->saveDistinta(6);
    QCOMPARE(d.righeRagg.size(), 3);
    PrintOptions options;
    options.grouped = true;
    options.definitive = true;
    options.totals = true;
    PrintArchiveReader reader(&m_fx->erp());
    const MergeData data = distintaMergeData(d, m_fx->company(), reader, options, {});
    QCOMPARE(data.rows.size(), 3);
    // Rows 1 and 4 are the first supplier's.
    QCOMPARE(data.rows.at(0).value(QStringLiteral("importo")),
             vb::format(PrintFixture::amountOf(1) + PrintFixture::amountOf(4), u"#,0.00"));
    QCOMPARE(data.rows.at(0).value(QStringLiteral("importo")), QStringLiteral("5.001,00"));
    QCOMPARE(data.fields.value(QStringLiteral("numero_disposizioni")), QStringLiteral("3"));
    QCOMPARE(data.fields.value(QStringLiteral("numero_scadenze")), QStringLiteral("6"));
    QCOMPARE(data.fields.value(QStringLiteral("totale_importo")), QStringLiteral("21.003,00"));
    QCOMPARE(data.fields.value(QStringLiteral("tipo_stampa")), QStringLiteral("STAMPA DEFINITIVA"));
    QCOMPARE(data.conditions.value(QStringLiteral("raggruppate")), true);

    // A distinta saved before grouped rows existed is grouped for the print.
    distinta::Distinta old = d;
    old.righeRagg.removeAll();
    const MergeData regrouped = distintaMergeData(old, m_fx->company(), reader, options, {});
    QCOMPARE(regrouped.rows.size(), 3);
    QCOMPARE(regrouped.rows.at(0).value(QStringLiteral("importo")), QStringLiteral("5.001,00"));
}

void TestPrintData::templatesInTheImageDirectory()
{
    const QString dImg = OrvidaDir() + QStringLiteral("D_IMG/");
    const TemplateStore store;
    QCOMPARE(store.directory(), dImg);
    QCOMPARE(store.names(), TemplateStore::shippedNames());
    QVERIFY(store.text(QStringLiteral("Distinta"))->contains(QStringLiteral("{{#righe}}")));
    QVERIFY(!store.text(QStringLiteral("Sollecito")));

    auto write = [&](const QString &name, const QByteArray &content) {
        QFile file(dImg + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    write(QStringLiteral("distinta.HTML"), "<p>{{numero_distinta}} della ditta</p>");
    write(QStringLiteral("Sollecito.htm"), "<p>sollecito</p>");
    write(QStringLiteral("note.txt"), "not a template");
    QCOMPARE(store.names(), (QStringList{QStringLiteral("Distinta"), QStringLiteral("Lettera"),
                                         QStringLiteral("Sollecito")}));
    // The company's own template wins over the shipped one of the same name.
    QCOMPARE(*store.text(QStringLiteral("Distinta")),
             QStringLiteral("<p>{{numero_distinta}} della ditta</p>"));
    QCOMPARE(*store.text(QStringLiteral("sollecito")), QStringLiteral("<p>sollecito</p>"));

    // A new installation gets the shipped templates, without overwriting the company's.
    QString error;
    QVERIFY2(TemplateStore::installShipped(dImg, &error), qPrintable(error));
    QVERIFY(QFile::exists(dImg + QStringLiteral("Lettera.html")));
    QCOMPARE(*store.text(QStringLiteral("Distinta")),
             QStringLiteral("<p>{{numero_distinta}} della ditta</p>"));
    QFile copied(dImg + QStringLiteral("Lettera.html"));
    QVERIFY(copied.open(QIODevice::ReadWrite));
}

void TestPrintData::externalProgram()
{
    test::ScriptedPrompter prompter;
    const QString dir = OrvidaDir() + QStringLiteral("D_STM/");
    const PrintDocument document(QStringLiteral("<p>Distinta 7</p>"), QString(), true);
    QStringList launched;
    bool starts = true;
    EditorOutput output(QStringLiteral(" /opt/office/bin/writer "), dir,
                        [&](const QString &program, const QString &file) {
                            launched << program << file;
                            return starts;
                        });
    QVERIFY(output.deliver(document, QStringLiteral("Distinta_7")));
    const QString file = dir + QStringLiteral("Distinta_7.odt");
    QCOMPARE(output.file(), file);
    QCOMPARE(launched, (QStringList{QStringLiteral("/opt/office/bin/writer"), file}));
    QFile odt(file);
    QVERIFY(odt.open(QIODevice::ReadOnly));
    QCOMPARE(odt.read(2), QByteArray("PK")); // an OpenDocument is a zip archive
    QVERIFY(prompter.shown().isEmpty());

    starts = false;
    QVERIFY(!output.deliver(document, QStringLiteral("Distinta_7")));
    QCOMPARE(prompter.lastText(),
             QStringLiteral("Impossibile avviare il programma di stampa /opt/office/bin/writer"));

    EditorOutput noProgram(QString(), dir, [&](const QString &, const QString &) {
        launched << QStringLiteral("unexpected");
        return true;
    });
    QVERIFY(!noProgram.deliver(document, QStringLiteral("Distinta_7")));
    QCOMPARE(prompter.lastText(),
             QStringLiteral("Indicare nelle Opzioni il programma da utilizzare per la stampa."));
    QVERIFY(!launched.contains(QStringLiteral("unexpected")));
}

void TestPrintData::outputKinds_data()
{
    QTest::addColumn<int>("editor");
    QTest::addColumn<bool>("autoPrint");
    QTest::addColumn<OutputKind>("expected");
    QTest::newRow("own print with preview") << 99 << false << OutputKind::Preview;
    QTest::newRow("own print, directly") << 99 << true << OutputKind::Printer;
    QTest::newRow("other program") << 1 << false << OutputKind::ExternalProgram;
    QTest::newRow("other program, directly") << 0 << true << OutputKind::ExternalProgram;
}

void TestPrintData::outputKinds()
{
    QFETCH(int, editor);
    QFETCH(bool, autoPrint);
    QFETCH(OutputKind, expected);
    UserSettings settings;
    settings.editor = quint8(editor);
    QCOMPARE(outputKind(settings, autoPrint), expected);
}

QTEST_MAIN(TestPrintData)
#include "tst_printdata.moc"
