#include "core/apperror.h"
#include "core/typedamount.h"
#include "core/vbformat.h"

#include <QTest>

using namespace pg;

class TestVbFormat : public QObject
{
    Q_OBJECT

private slots:
    void numbers_data();
    void numbers();
    void texts();
    void rounding_data();
    void rounding();
    void sixteenBitConversion();
    void plainNumbers();
    void typedNumbers();
    void typedAmounts_data();
    void typedAmounts();
};

void TestVbFormat::numbers_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("expected");

    QTest::newRow("amount it") << "it_IT" << 1234.5 << "#,0.00" << "1.234,50";
    QTest::newRow("amount en") << "en_US" << 1234.5 << "#,0.00" << "1,234.50";
    QTest::newRow("millions") << "it_IT" << 1234567.891 << "#,0.00" << "1.234.567,89";
    QTest::newRow("zero keeps its zero") << "it_IT" << 0.0 << "#,0.00" << "0,00";
    QTest::newRow("hash drops leading zero") << "it_IT" << 0.5 << "#,#.00" << ",50";
    QTest::newRow("hash report amount") << "it_IT" << 1234.5 << "#,#.00" << "1.234,50";
    QTest::newRow("negative") << "it_IT" << -1234.5 << "#,0.00" << "-1.234,50";
    QTest::newRow("negative rounding to zero") << "it_IT" << -0.001 << "0.00" << "0,00";
    QTest::newRow("no grouping it") << "it_IT" << 1234.5 << "0.00" << "1234,50";
    QTest::newRow("no grouping en") << "en_US" << 1234.5 << "0.00" << "1234.50";
    QTest::newRow("half away from zero") << "it_IT" << 2.675 << "0.00" << "2,68";
    QTest::newRow("half away small") << "it_IT" << 0.125 << "0.00" << "0,13";
    QTest::newRow("count three digits") << "it_IT" << 12.0 << "000" << "012";
    QTest::newRow("count overflowing") << "it_IT" << 1234.0 << "000" << "1234";
    QTest::newRow("abi") << "it_IT" << 3069.0 << "00000" << "03069";
    QTest::newRow("rate six") << "it_IT" << 1936.27 << "#,0.000000" << "1.936,270000";
    QTest::newRow("rate five") << "it_IT" << 9999.0 << "#,0.00000" << "9.999,00000";
    QTest::newRow("rate four") << "it_IT" << 99999.0 << "#,0.0000" << "99.999,0000";
    QTest::newRow("carry") << "it_IT" << 999.995 << "#,0.00" << "1.000,00";
}

void TestVbFormat::numbers()
{
    QFETCH(QString, locale);
    QFETCH(double, value);
    QFETCH(QString, pattern);
    QFETCH(QString, expected);
    QCOMPARE(vb::format(value, pattern, QLocale(locale)), expected);
}

void TestVbFormat::texts()
{
    const QLocale it(QStringLiteral("it_IT"));
    QCOMPARE(vb::format(QStringLiteral("7"), u"@@@@@@", it), QStringLiteral("     7"));
    QCOMPARE(vb::format(QStringLiteral("1234567"), u"@@@@@@", it), QStringLiteral("1234567"));
    QCOMPARE(vb::format(QStringLiteral("123"), u"00000", it), QStringLiteral("00123"));
    QCOMPARE(vb::format(QStringLiteral("1.234"), u"00000", it), QStringLiteral("01234"));
    QCOMPARE(vb::format(QStringLiteral("ABC"), u"00000", it), QStringLiteral("ABC"));
    QCOMPARE(vb::format(QString(), u"00000", it), QString());
}

void TestVbFormat::rounding_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("even");
    QTest::addColumn<double>("away");
    QTest::newRow("tie down to even") << 0.125 << 0.12 << 0.13;
    QTest::newRow("tie up to even") << 0.135 << 0.14 << 0.14;
    QTest::newRow("decimal tie not binary") << 2.675 << 2.68 << 2.68;
    QTest::newRow("negative tie") << -0.125 << -0.12 << -0.13;
    QTest::newRow("beyond half") << 0.1251 << 0.13 << 0.13;
    QTest::newRow("thirds") << 100.0 / 3.0 << 33.33 << 33.33;
    QTest::newRow("integral") << 10.0 << 10.0 << 10.0;
}

void TestVbFormat::rounding()
{
    QFETCH(double, value);
    QFETCH(double, even);
    QFETCH(double, away);
    QCOMPARE(vb::roundHalfEven(value, 2), even);
    QCOMPARE(vb::roundHalfAway(value, 2), away);
}

void TestVbFormat::sixteenBitConversion()
{
    QCOMPARE(vb::cint(32767.0), qint16(32767));
    QCOMPARE(vb::cint(-32768.0), qint16(-32768));
    QCOMPARE(vb::cint(2.5), qint16(2));
    QCOMPARE(vb::cint(3.5), qint16(4));
    for (double tooBig : {32768.0, 32767.5, -32769.0, 1e300}) {
        try {
            vb::cint(tooBig);
            QFAIL("no overflow");
        } catch (const AppError &e) {
            QCOMPARE(e.number(), AppError::Overflow);
            QCOMPARE(e.description(), QStringLiteral("Overflow"));
        }
    }
}

void TestVbFormat::plainNumbers()
{
    const QLocale it(QStringLiteral("it_IT"));
    QCOMPARE(vb::cstr(1234.5, it), QStringLiteral("1234,5"));
    QCOMPARE(vb::cstr(1234.5, QLocale::c()), QStringLiteral("1234.5"));
    QCOMPARE(vb::cstr(0.1 + 0.2, it), QStringLiteral("0,3"));
    QCOMPARE(vb::cstr(100.0, it), QStringLiteral("100"));
    QCOMPARE(vb::cstr(-0.0, it), QStringLiteral("0"));
    QCOMPARE(vb::leadingNumber(u"    11"), 11);
    QCOMPARE(vb::leadingNumber(u" 12ab"), 12);
    QCOMPARE(vb::leadingNumber(u"abc"), 0);
}

void TestVbFormat::typedNumbers()
{
    const QLocale it(QStringLiteral("it_IT"));
    double v = 0;
    QVERIFY(vb::toNumber(QStringLiteral("1.234,56"), &v, it));
    QCOMPARE(v, 1234.56);
    QVERIFY(vb::toNumber(QStringLiteral(" 12,5 "), &v, it));
    QCOMPARE(v, 12.5);
    QVERIFY(!vb::toNumber(QStringLiteral("12a"), &v, it));
    QVERIFY(!vb::toNumber(QString(), &v, it));
}

void TestVbFormat::typedAmounts_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("plain"); // empty: refused
    QTest::addColumn<double>("value");

    QTest::newRow("decimal comma") << "12,5" << "12,5" << 12.5;
    QTest::newRow("grouped with decimals") << "1.000,50" << "1000,50" << 1000.5;
    QTest::newRow("grouped thousands") << "1.000" << "1000" << 1000.0;
    QTest::newRow("grouped millions") << " 1.234.567 " << "1234567" << 1234567.0;
    QTest::newRow("point that cannot group") << "12.5" << "12,5" << 12.5;
    QTest::newRow("point with cents") << "1234.50" << "1234,50" << 1234.5;
    QTest::newRow("negative") << "-5" << "-5" << -5.0;
    QTest::newRow("leading comma") << ",50" << "0,50" << 0.5;
    QTest::newRow("leading zeros") << "007" << "7" << 7.0;
    QTest::newRow("two commas") << "1,000,50" << "" << 0.0;
    QTest::newRow("point after comma") << "1,000.50" << "" << 0.0;
    QTest::newRow("group of two") << "1.00,5" << "" << 0.0;
    QTest::newRow("three decimals") << "12,345" << "" << 0.0;
    QTest::newRow("decimal point and three decimals") << "0.125" << "" << 0.0;
    QTest::newRow("two points not grouping") << "1.2.3" << "" << 0.0;
    QTest::newRow("letter") << "12a" << "" << 0.0;
    QTest::newRow("fourteen digits") << "12345678901234" << "" << 0.0;
    QTest::newRow("sign alone") << "-" << "" << 0.0;
}

void TestVbFormat::typedAmounts()
{
    QFETCH(QString, typed);
    QFETCH(QString, plain);
    QFETCH(double, value);
    // The same reading whatever the locale in use.
    for (const QLocale &locale : {QLocale(QLocale::Italian, QLocale::Italy),
                                  QLocale(QLocale::English, QLocale::UnitedStates)}) {
        QLocale::setDefault(locale);
        const vb::TypedAmount amount = vb::TypedAmount::read(typed);
        QCOMPARE(amount.isValid(), !plain.isEmpty());
        if (amount.isValid()) {
            QCOMPARE(amount.plain, plain);
            QCOMPARE(amount.value, value);
        }
    }
    QLocale::setDefault(QLocale::c());
    QCOMPARE(vb::TypedAmount::read(QStringLiteral("  ")).outcome,
             vb::TypedAmount::Outcome::Empty);
}

QTEST_GUILESS_MAIN(TestVbFormat)
#include "tst_vbformat.moc"
