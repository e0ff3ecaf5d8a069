#include "ibancheck.h"

#include "core/checkdigits.h"

#include <QHash>

namespace pg::bankfile {

namespace {

// The countries of the IBAN registry and the length of their IBANs.
const QHash<QString, int> &lengths()
{
    static const QHash<QString, int> table{
        {QStringLiteral("AD"), 24}, {QStringLiteral("AE"), 23}, {QStringLiteral("AL"), 28},
        {QStringLiteral("AT"), 20}, {QStringLiteral("AZ"), 28}, {QStringLiteral("BA"), 20},
        {QStringLiteral("BE"), 16}, {QStringLiteral("BG"), 22}, {QStringLiteral("BH"), 22},
        {QStringLiteral("BR"), 29}, {QStringLiteral("BY"), 28}, {QStringLiteral("CH"), 21},
        {QStringLiteral("CR"), 22}, {QStringLiteral("CY"), 28}, {QStringLiteral("CZ"), 24},
        {QStringLiteral("DE"), 22}, {QStringLiteral("DK"), 18}, {QStringLiteral("DO"), 28},
        {QStringLiteral("EE"), 20}, {QStringLiteral("EG"), 29}, {QStringLiteral("ES"), 24},
        {QStringLiteral("FI"), 18}, {QStringLiteral("FO"), 18}, {QStringLiteral("FR"), 27},
        {QStringLiteral("GB"), 22}, {QStringLiteral("GE"), 22}, {QStringLiteral("GI"), 23},
        {QStringLiteral("GL"), 18}, {QStringLiteral("GR"), 27}, {QStringLiteral("GT"), 28},
        {QStringLiteral("HR"), 21}, {QStringLiteral("HU"), 28}, {QStringLiteral("IE"), 22},
        {QStringLiteral("IL"), 23}, {QStringLiteral("IQ"), 23}, {QStringLiteral("IS"), 26},
        {QStringLiteral("IT"), 27}, {QStringLiteral("JO"), 30}, {QStringLiteral("KW"), 30},
        {QStringLiteral("KZ"), 20}, {QStringLiteral("LB"), 28}, {QStringLiteral("LC"), 32},
        {QStringLiteral("LI"), 21}, {QStringLiteral("LT"), 20}, {QStringLiteral("LU"), 20},
        {QStringLiteral("LV"), 21}, {QStringLiteral("MC"), 27}, {QStringLiteral("MD"), 24},
        {QStringLiteral("ME"), 22}, {QStringLiteral("MK"), 19}, {QStringLiteral("MR"), 27},
        {QStringLiteral("MT"), 31}, {QStringLiteral("MU"), 30}, {QStringLiteral("NL"), 18},
        {QStringLiteral("NO"), 15}, {QStringLiteral("PK"), 24}, {QStringLiteral("PL"), 28},
        {QStringLiteral("PS"), 29}, {QStringLiteral("PT"), 25}, {QStringLiteral("QA"), 29},
        {QStringLiteral("RO"), 24}, {QStringLiteral("RS"), 22}, {QStringLiteral("SA"), 24},
        {QStringLiteral("SC"), 31}, {QStringLiteral("SE"), 24}, {QStringLiteral("SI"), 19},
        {QStringLiteral("SK"), 24}, {QStringLiteral("SM"), 27}, {QStringLiteral("ST"), 25},
        {QStringLiteral("SV"), 28}, {QStringLiteral("TL"), 23}, {QStringLiteral("TN"), 24},
        {QStringLiteral("TR"), 26}, {QStringLiteral("UA"), 29}, {QStringLiteral("VA"), 22},
        {QStringLiteral("VG"), 24}, {QStringLiteral("XK"), 20},
    };
    return table;
}

bool isCapital(QChar c)
{
    return c >= u'A' && c <= u'Z';
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isItalian(const QString &iban)
{
    return iban.startsWith(QStringLiteral("IT")) &&
           IbanCheck::check(iban) == IbanCheck::Result::Valid;
}

} // namespace

QString IbanCheck::compact(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (QChar c : text)
        if (!c.isSpace())
            out += c.toUpper();
    return out;
}

int IbanCheck::lengthOf(QStringView country)
{
    return lengths().value(country.toString(), 0);
}

IbanCheck::Result IbanCheck::check(const QString &iban)
{
    if (iban.isEmpty())
        return Result::Missing;
    if (iban.size() < 5 || !isCapital(iban.at(0)) || !isCapital(iban.at(1)) ||
        !isDigit(iban.at(2)) || !isDigit(iban.at(3)))
        return Result::Malformed;
    for (QChar c : iban)
        if (!isCapital(c) && !isDigit(c))
            return Result::Malformed;
    const int length = lengthOf(QStringView(iban).left(2));
    if (length == 0)
        return Result::UnknownCountry;
    if (iban.size() != length)
        return Result::WrongLength;
    return checkdigits::isValidIban(iban) ? Result::Valid : Result::WrongCheckDigits;
}

QString IbanCheck::italianAbi(const QString &iban)
{
    return isItalian(iban) ? iban.mid(5, 5) : QString();
}

QString IbanCheck::italianCab(const QString &iban)
{
    return isItalian(iban) ? iban.mid(10, 5) : QString();
}

} // namespace pg::bankfile
