#include "checkdigits.h"

namespace pg::checkdigits {

namespace {

// Values of a character in an odd (1st, 3rd ...) position, shared by the codice fiscale's
// check letter and the CIN of an Italian bank account.
constexpr int OddDigit[10] = {1, 0, 5, 7, 9, 13, 15, 17, 19, 21};
constexpr int OddLetter[26] = {1,  0,  5, 7, 9, 13, 15, 17, 19, 21, 2,  4,  18,
                               20, 11, 3, 6, 8, 12, 14, 16, 10, 22, 25, 24, 23};

int oddValue(QChar c)
{
    if (c.isDigit())
        return OddDigit[c.unicode() - u'0'];
    return OddLetter[c.toUpper().unicode() - u'A'];
}

int evenValue(QChar c)
{
    if (c.isDigit())
        return c.unicode() - u'0';
    return c.toUpper().unicode() - u'A';
}

bool isAsciiAlnum(QChar c)
{
    const char16_t u = c.toUpper().unicode();
    return (u >= u'0' && u <= u'9') || (u >= u'A' && u <= u'Z');
}

// The check letter of a text of digits and letters weighted by odd and even position.
QChar oddEvenLetter(const QString &text)
{
    int sum = 0;
    for (int i = 0; i < text.size(); ++i)
        sum += (i % 2 == 0) ? oddValue(text.at(i)) : evenValue(text.at(i));
    return QChar(u'A' + sum % 26);
}

// The remainder mod 97 of the number that a text of digits and letters spells out, letters
// counting as 10 (A) to 35 (Z); -1 for any other character.
int mod97(const QString &text)
{
    int rest = 0;
    for (QChar c : text) {
        if (!isAsciiAlnum(c))
            return -1;
        const int value = c.isDigit() ? c.unicode() - u'0' : c.toUpper().unicode() - u'A' + 10;
        rest = (value >= 10 ? rest * 100 : rest * 10) + value;
        rest %= 97;
    }
    return rest;
}

// The letters A-Z of a name, without accents.
QString plainLetters(const QString &text)
{
    QString out;
    for (QChar c : text.normalized(QString::NormalizationForm_D).toUpper())
        if (c >= u'A' && c <= u'Z')
            out += c;
    return out;
}

bool isVowel(QChar c)
{
    return QStringView(u"AEIOU").contains(c);
}

} // namespace

QString ibanCheckDigits(const QString &country, const QString &bban)
{
    const int rest = mod97(bban + country + QStringLiteral("00"));
    return QStringLiteral("%1").arg(98 - rest, 2, 10, QChar(u'0'));
}

bool isValidIban(const QString &iban)
{
    QString compact = iban;
    compact.remove(u' ');
    if (compact.size() < 15 || compact.size() > 34 || !compact.at(0).isLetter() ||
        !compact.at(1).isLetter() || !compact.at(2).isDigit() || !compact.at(3).isDigit())
        return false;
    return mod97(compact.mid(4) + compact.left(4)) == 1;
}

QChar italianCin(const QString &abi, const QString &cab, const QString &account)
{
    return oddEvenLetter(abi + cab + account.rightJustified(12, u'0'));
}

QString italianBban(const QString &abi, const QString &cab, const QString &account)
{
    const QString padded = account.rightJustified(12, u'0');
    return italianCin(abi, cab, padded) + abi + cab + padded;
}

QString italianIban(const QString &abi, const QString &cab, const QString &account)
{
    const QString bban = italianBban(abi, cab, account);
    return QStringLiteral("IT") + ibanCheckDigits(QStringLiteral("IT"), bban) + bban;
}

int partitaIvaCheckDigit(const QString &firstTen)
{
    int sum = 0;
    for (int i = 0; i < 10; ++i) {
        int d = firstTen.at(i).unicode() - u'0';
        if (i % 2 == 1) {
            d *= 2;
            if (d > 9)
                d -= 9;
        }
        sum += d;
    }
    return (10 - sum % 10) % 10;
}

bool isValidPartitaIva(const QString &partitaIva)
{
    if (partitaIva.size() != 11)
        return false;
    for (QChar c : partitaIva)
        if (c < u'0' || c > u'9')
            return false;
    return partitaIvaCheckDigit(partitaIva) == partitaIva.at(10).unicode() - u'0';
}

QString codiceFiscale(const QString &surname, const QString &name, const QDate &birth, bool female,
                      const QString &birthplaceCode)
{
    auto split = [](const QString &letters, QString *consonants, QString *vowels) {
        for (QChar c : letters)
            (isVowel(c) ? vowels : consonants)->append(c);
    };
    QString sc, sv, nc, nv;
    split(plainLetters(surname), &sc, &sv);
    split(plainLetters(name), &nc, &nv);
    const QString x3 = QStringLiteral("XXX");
    QString code = (sc + sv + x3).left(3);
    // A name with four consonants or more skips the second one.
    code += nc.size() >= 4 ? QString(nc.at(0)) + nc.at(2) + nc.at(3) : (nc + nv + x3).left(3);
    code += QStringLiteral("%1").arg(birth.year() % 100, 2, 10, QChar(u'0'));
    code += QStringView(u"ABCDEHLMPRST").at(birth.month() - 1);
    code += QStringLiteral("%1").arg(birth.day() + (female ? 40 : 0), 2, 10, QChar(u'0'));
    code += birthplaceCode.toUpper();
    return code + codiceFiscaleCheck(code);
}

QChar codiceFiscaleCheck(const QString &firstFifteen)
{
    return oddEvenLetter(firstFifteen.left(15));
}

bool isValidCodiceFiscale(const QString &codiceFiscale)
{
    if (codiceFiscale.size() != 16)
        return false;
    for (QChar c : codiceFiscale)
        if (!isAsciiAlnum(c) || c.isLower())
            return false;
    return codiceFiscaleCheck(codiceFiscale) == codiceFiscale.at(15);
}

} // namespace pg::checkdigits
