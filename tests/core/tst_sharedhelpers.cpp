#include "core/cp1252.h"
#include "core/distintacode.h"
#include "core/filewriteerror.h"
#include "core/money.h"
#include "core/paymenttype.h"
#include "core/vbdate.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace pg;

class TestSharedHelpers : public QObject
{
    Q_OBJECT

private slots:
    void distintaCodesSortAsNumbers();
    void paymentTypeNames();
    void dateForms();
    void twoDigitYears();
    void amountsInCents();
    void codePageKeepsOneBytePerCharacter();
    void fullDiskSaidSo();
};

void TestSharedHelpers::distintaCodesSortAsNumbers()
{
    QCOMPARE(formatDistintaCode(1), QStringLiteral("     1"));
    QCOMPARE(formatDistintaCode(11), QStringLiteral("    11"));
    QCOMPARE(formatDistintaCode(32767), QStringLiteral(" 32767"));
    QVERIFY(formatDistintaCode(9) < formatDistintaCode(10));
    QVERIFY(formatDistintaCode(99) < formatDistintaCode(100));
    QCOMPARE(distintaNumber(QStringLiteral("    10")), 10);
    QCOMPARE(distintaNumber(QString()), 0);
}

void TestSharedHelpers::paymentTypeNames()
{
    QCOMPARE(PaymentTypeName(QStringLiteral("0")), QStringLiteral("Tratta"));
    QCOMPARE(PaymentTypeName(QStringLiteral("1")), QStringLiteral("Ricevuta bancaria"));
    QCOMPARE(PaymentTypeName(QStringLiteral("6")), QStringLiteral("Bonifico"));
    QCOMPARE(PaymentTypeName(QStringLiteral("8")), QStringLiteral("Assegno circolare"));
    QCOMPARE(PaymentTypeName(QStringLiteral("9")), QStringLiteral("RID"));
    QCOMPARE(PaymentTypeName(QStringLiteral("X")), QString());
    QCOMPARE(PaymentTypeName(QStringLiteral("10")), QString());
    QCOMPARE(PaymentTypeName(QString()), QString());
}

void TestSharedHelpers::dateForms()
{
    const QDate d(2024, 1, 5);
    QCOMPARE(dates::toDmy(d), QStringLiteral("05/01/2024"));
    QCOMPARE(dates::toYmd(d), QStringLiteral("20240105"));
    QCOMPARE(dates::toDdmmyy(d), QStringLiteral("050124"));
    // The same texts as Qt's patterns, early years padded with zeros, two-digit years cut.
    for (const QDate &day : {QDate(1, 1, 1), QDate(999, 12, 31), QDate(2009, 10, 9), QDate(9999, 12, 31)}) {
        QCOMPARE(dates::toDmy(day), day.toString(QStringLiteral("dd/MM/yyyy")));
        QCOMPARE(dates::toYmd(day), day.toString(QStringLiteral("yyyyMMdd")));
        QCOMPARE(dates::toDdmmyy(day), day.toString(QStringLiteral("ddMMyy")));
    }
    QVERIFY(dates::toYmd(QDate()).isEmpty());
    QCOMPARE(dates::ymdToDdmmyy(QStringLiteral("20240105")), QStringLiteral("050124"));
    QCOMPARE(dates::ymdToDmy(QStringLiteral("20240105")), QStringLiteral("05/01/2024"));
    QCOMPARE(dates::dmyToYmd(QStringLiteral("05/01/2024")), QStringLiteral("20240105"));
    QCOMPARE(dates::fromYmd(QStringLiteral("20240229")), QDate(2024, 2, 29));
    QVERIFY(!dates::fromYmd(QStringLiteral("20230229")).isValid());
    QVERIFY(!dates::fromYmd(QStringLiteral("2024010")).isValid());
    QCOMPARE(dates::parseDmy(QStringLiteral("31/12/2024")), QDate(2024, 12, 31));
    QVERIFY(!dates::isValidDmy(QStringLiteral("31/02/2024")));
    QVERIFY(!dates::isValidDmy(QStringLiteral("__/__/____")));
    QVERIFY(!dates::isValidDmy(QStringLiteral("12/31/2024")));
    // Month first in the database literal, whatever the locale.
    QCOMPARE(dates::jetLiteral(QDate(2024, 1, 31)), QStringLiteral("#01/31/2024#"));
    QCOMPARE(dates::parseJetLiteral(QStringLiteral("#01/31/2024#")), QDate(2024, 1, 31));
    dates::setToday(QDate(2026, 3, 4));
    QCOMPARE(dates::today(), QDate(2026, 3, 4));
    dates::setToday(QDate());
    QCOMPARE(dates::today(), QDate::currentDate());
}

void TestSharedHelpers::twoDigitYears()
{
    QCOMPARE(dates::completeTwoDigitYear(QStringLiteral("01/02/09__")), QStringLiteral("01/02/2009"));
    QCOMPARE(dates::completeTwoDigitYear(QStringLiteral("01/02/2009")), QStringLiteral("01/02/2009"));
    QCOMPARE(dates::completeTwoDigitYear(QStringLiteral("__/__/____")), QStringLiteral("__/__/____"));
}

void TestSharedHelpers::amountsInCents()
{
    QCOMPARE(money::toCents(1.005), qint64(101));
    QCOMPARE(money::toCents(0.1 + 0.2), qint64(30));
    QVERIFY(money::sameAmount(0.1 + 0.2, 0.3));
    QVERIFY(money::exceeds(100.01, 100.0));
    QVERIFY(!money::exceeds(100.004, 100.0));
    QCOMPARE(money::fromCents(12345), 123.45);
}

void TestSharedHelpers::codePageKeepsOneBytePerCharacter()
{
    const QString text = QStringLiteral("Società € Łódź ŝ 😀 “x”");
    const QByteArray bytes = cp1252::encode(text);
    QCOMPARE(bytes.size(), cp1252::toCodePage(text).size());
    QCOMPARE(bytes, QByteArray("Societ\xE0 \x80 L\xF3" "dz s ? \x93x\x94"));
    QCOMPARE(cp1252::decode(bytes), QStringLiteral("Società € Lódz s ? “x”"));
    QCOMPARE(cp1252::decode(QByteArray("\x81")), QString(QChar(0x81)));
    // A lone half of a surrogate pair is one unknown character, never two or none.
    QCOMPARE(cp1252::encode(QString(QChar(0xD83D)) + u'a' + QChar(0xDE00)), QByteArray("?a?"));
}

void TestSharedHelpers::fullDiskSaidSo()
{
    // The system's full device answers every write as a full disk does.
    QFile full(QStringLiteral("/dev/full"));
    if (!full.open(QIODevice::WriteOnly))
        QSKIP("no /dev/full on this system");
    const QByteArray block(64 * 1024, 'x');
    QVERIFY(full.write(block) != block.size() || !full.flush());
    QCOMPARE(fileWriteProblem(full, block.size()), QStringLiteral("disco pieno"));
    QCOMPARE(pathFileAccessText(QStringLiteral("/tmp/CBI_7.txt"), QStringLiteral("disco pieno")),
             QStringLiteral("Path/File access error: %1 (disco pieno)")
                 .arg(QDir::toNativeSeparators(QStringLiteral("/tmp/CBI_7.txt"))));

    // Any other failure keeps the device's own words.
    QFile missing(QStringLiteral("/nessuna/cartella/CBI_7.txt"));
    QVERIFY(!missing.open(QIODevice::WriteOnly));
    QCOMPARE(fileWriteProblem(missing), missing.errorString());
}

QTEST_GUILESS_MAIN(TestSharedHelpers)
#include "tst_sharedhelpers.moc"
