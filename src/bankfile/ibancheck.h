#pragma once

#include <QString>

namespace pg::bankfile {

// The checks an IBAN must pass before a credit transfer goes to the bank: its form, the
// length its country prescribes and its mod-97 check digits; and, for an Italian IBAN, the
// bank (ABI) and branch (CAB) codes it holds.
class IbanCheck
{
public:
    enum class Result {
        Valid,
        Missing,          // nothing besides blanks
        Malformed,        // not two letters, two digits and letters or digits
        UnknownCountry,   // a country that does not issue IBANs
        WrongLength,      // not the length of its country
        WrongCheckDigits, // the mod-97 test fails
    };

    // The IBAN as one word in capitals: the blanks between its groups removed.
    static QString compact(const QString &text);

    // The length of the IBANs of a country (two capitals); 0 for a country without IBANs.
    static int lengthOf(QStringView country);

    // Checks an IBAN given in its compact form.
    static Result check(const QString &iban);

    // The ABI and CAB inside a valid Italian IBAN ("IT", check digits, CIN, ABI, CAB,
    // account); empty for any other IBAN.
    static QString italianAbi(const QString &iban);
    static QString italianCab(const QString &iban);
};

} // namespace pg::bankfile
