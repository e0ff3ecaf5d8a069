#include "bankfile/cbirecords.h"
#include "bankfile/fieldfill.h"

#include "core/apperror.h"

#include <QTest>

using namespace pg;
using namespace pg::bankfile;

class TestCbiRecords : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void riempiCampoA_data();
    void riempiCampoA();
    void riempiCampoN_data();
    void riempiCampoN();
    void riempiCampoEuro_data();
    void riempiCampoEuro();
    void riempiSinistra_data();
    void riempiSinistra();
    void recordsKeepTheirWidthWhateverTheData();
    void missingAmountStopsTheDisposition();
    void documentOfRecord50_data();
    void documentOfRecord50();

private:
    QLocale m_previous;
};

void TestCbiRecords::init()
{
    m_previous = QLocale();
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
}

void TestCbiRecords::cleanup()
{
    QLocale::setDefault(m_previous);
}

void TestCbiRecords::riempiCampoA_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");
    QTest::newRow("short text padded") << "ABC" << 5 << "ABC  ";
    QTest::newRow("surrounding blanks removed") << "  AB C  " << 6 << "AB C  ";
    QTest::newRow("long text cut on the right") << "ABCDEFGH" << 5 << "ABCDE";
    QTest::newRow("blank text") << "     " << 3 << "   ";
    QTest::newRow("null text") << QString() << 4 << "    ";
    QTest::newRow("cut after trimming") << "   1_PAGAMENTI" << 4 << "1_PA";
}

void TestCbiRecords::riempiCampoA()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QFETCH(QString, expected);
    QCOMPARE(RiempiCampoA(text, width), expected);
}

void TestCbiRecords::riempiCampoN_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");
    QTest::newRow("short number zero-filled") << "123" << 5 << "00123";
    QTest::newRow("blanks around removed") << "  42 " << 4 << "0042";
    QTest::newRow("leading digits lost") << "1234567" << 5 << "34567";
    QTest::newRow("empty is zeros") << "" << 3 << "000";
    QTest::newRow("exact width") << "05428" << 5 << "05428";
}

void TestCbiRecords::riempiCampoN()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QFETCH(QString, expected);
    QCOMPARE(RiempiCampoN(text, width), expected);
}

void TestCbiRecords::riempiCampoEuro_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<double>("amount");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");
    const QLocale it(QLocale::Italian, QLocale::Italy);
    const QLocale en(QLocale::English, QLocale::UnitedStates);
    const QLocale fr(QLocale::French, QLocale::France);
    QTest::newRow("cents under a comma locale") << it << 1234.5 << 13 << "0000000123450";
    QTest::newRow("the point stays under an English locale")
        << en << 1234.5 << 13 << "0000001234.50";
    QTest::newRow("French comma") << fr << 1234.5 << 13 << "0000000123450";
    QTest::newRow("no grouping in thousands") << it << 1234567.8 << 15 << "000000123456780";
    QTest::newRow("half a cent rounds up") << it << 0.005 << 13 << "0000000000001";
    QTest::newRow("zero") << it << 0.0 << 13 << "0000000000000";
    QTest::newRow("too long keeps its last digits")
        << it << 123456789012.34 << 13 << "2345678901234";
    QTest::newRow("a negative amount keeps its sign inside")
        << it << -12.5 << 13 << "00000000-1250";
}

void TestCbiRecords::riempiCampoEuro()
{
    QFETCH(QLocale, locale);
    QFETCH(double, amount);
    QFETCH(int, width);
    QFETCH(QString, expected);
    // The user's locale is the default one: the file follows it.
    QLocale::setDefault(locale);
    QCOMPARE(RiempiCampoEuro(amount, width), expected);
}

void TestCbiRecords::riempiSinistra_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("fill");
    QTest::addColumn<QString>("expected");
    QTest::newRow("progressive number") << "7" << 7 << "0"
                                        << "0000007";
    QTest::newRow("too many digits") << "12345678" << 7 << "0"
                                     << "2345678";
    QTest::newRow("no fill means blanks") << " 5 " << 3 << ""
                                          << "  5";
}

void TestCbiRecords::riempiSinistra()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QFETCH(QString, fill);
    QFETCH(QString, expected);
    QCOMPARE(RiempiSinistra(text, width, fill), expected);
}

void TestCbiRecords::recordsKeepTheirWidthWhateverTheData()
{
    // Line ends, tabs, characters outside the code page and outside the basic plane, text far
    // longer than any field: every record still has its width, in characters and in bytes,
    // and no line end of the data gets into the file.
    const QString nasty =
        QStringLiteral("A\r\nB\tC\u0000D \U0001F600 \u2248 \u0141\u00F3d\u017A ") +
        QString(200, u'X');
    distinta::Testata header;
    header.cod_distinta = nasty;
    header.cod_sia_banca = nasty;
    header.cod_codiceabi = nasty;
    header.cod_codicecab = nasty;
    header.des_conto_ordinante = nasty;
    header.des_riferimenti = nasty;
    header.num_numero_disp = 123456789;
    header.val_importo_totale = 1e15;
    distinta::Riga row;
    row.cod_clifor = nasty;
    row.des_num_cc = nasty;
    row.des_num_doc = nasty;
    row.des_serie_doc = nasty;
    row.dat_data_doc = nasty;
    row.des_scadenza = nasty;
    row.val_imp_indist_val = -1e14;
    archives::CompanyData company;
    company.ragsoc = company.indirizzo = company.citta = company.provincia = nasty;
    company.partitaIva = nasty;
    const Iban iban{nasty, nasty};
    const Beneficiario beneficiario{nasty, nasty, nasty};
    const Indirizzo indirizzo{nasty, nasty, nasty, nasty};

    const QByteArray pc = CbiRecords::recordPC(header);
    const QList<std::pair<QByteArray, int>> records{
        {pc, 120},
        {CbiRecords::record10(1234567890, QByteArray(200, 'X'), header, row, nasty, nasty), 120},
        {CbiRecords::recordIban(QLatin1StringView("16"), 1, iban), 120},
        {CbiRecords::recordIban(QLatin1StringView("17"), 1, iban), 120},
        {CbiRecords::record20(1, company), 120},
        {CbiRecords::record30(1, beneficiario), 120},
        {CbiRecords::record40(1, indirizzo, nasty, nasty), 120},
        {CbiRecords::record50(1, row, true), 120},
        {CbiRecords::record50(1, row, false), 120},
        {CbiRecords::record70(1), 48},
        {CbiRecords::recordEF(pc, header, 99999999), 120},
    };
    for (const auto &[line, width] : records) {
        QCOMPARE(line.size(), width);
        QVERIFY2(!line.contains('\r') && !line.contains('\n') && !line.contains('\0'),
                 line.constData());
    }
    // The second half of the beneficiary's name in "30" is always blank.
    QCOMPARE(records.at(5).first.mid(40, 30), QByteArray(30, ' '));

    // Control characters of a text the code page holds become blanks, and the blanks around
    // the text go, before it is aligned: on the left for text, on the right for numbers.
    archives::CompanyData plainCompany;
    plainCompany.ragsoc = QStringLiteral("\tRossi\u0007S.p.A. \r\n");
    QCOMPARE(CbiRecords::record20(1, plainCompany).mid(10, 30),
             QByteArray("Rossi S.p.A.").leftJustified(30));
    distinta::Testata plainHeader;
    plainHeader.cod_codiceabi = QStringLiteral(" \t3069\n");
    plainHeader.cod_codicecab = QStringLiteral("1234567");
    distinta::Riga plainRow;
    plainRow.val_imp_indist_val = 1;
    const QByteArray r10 = CbiRecords::record10(1, {}, plainHeader, plainRow, {}, {});
    QCOMPARE(r10.mid(47, 10), QByteArray("0306934567"));
}

void TestCbiRecords::missingAmountStopsTheDisposition()
{
    distinta::Testata header;
    distinta::Riga row;
    try {
        CbiRecords::record10(1, "150124", header, row, QStringLiteral("00000"),
                             QStringLiteral("00000"));
        QFAIL("a row without an amount in distinta was written");
    } catch (const AppError &error) {
        QCOMPARE(error.number(), 94);
    }
}

void TestCbiRecords::documentOfRecord50_data()
{
    QTest::addColumn<QString>("series");
    QTest::addColumn<QString>("document");
    QTest::newRow("the suite's blank: no series") << " " << "123";
    QTest::newRow("an empty text is a series") << "" << "123/";
    QTest::newRow("a letter") << "A" << "123/A";
}

void TestCbiRecords::documentOfRecord50()
{
    QFETCH(QString, series);
    QFETCH(QString, document);
    distinta::Riga row;
    row.des_num_doc = QStringLiteral("   123");
    row.des_serie_doc = series;
    row.dat_data_doc = QStringLiteral("20240131");
    QCOMPARE(QString::fromLatin1(CbiRecords::record50(7, row, false).mid(10, 30)),
             document.leftJustified(24) + QStringLiteral("310124"));
}

QTEST_GUILESS_MAIN(TestCbiRecords)
#include "tst_cbirecords.moc"
