#pragma once

#include <QDate>
#include <QString>

// The check digits of the Italian and international codes that bank data carries, and their
// validation: the bank file checks the beneficiaries' IBANs with them, and the demo
// installation makes its codes with them. Bank data that fails these tests is refused by the
// banks.
namespace pg::checkdigits {

// IBAN (ISO 13616): the two check digits of a country code and a BBAN, and the mod-97 test
// of a whole IBAN (blanks allowed between groups).
QString ibanCheckDigits(const QString &country, const QString &bban);
bool isValidIban(const QString &iban);

// The Italian BBAN: CIN letter, ABI (5), CAB (5), account (12, zero-filled on the left).
QChar italianCin(const QString &abi, const QString &cab, const QString &account);
QString italianBban(const QString &abi, const QString &cab, const QString &account);
QString italianIban(const QString &abi, const QString &cab, const QString &account);

// Partita IVA: eleven digits, the last one a check digit over the first ten.
int partitaIvaCheckDigit(const QString &firstTen);
bool isValidPartitaIva(const QString &partitaIva);

// Codice fiscale of a person: surname and name letters, birth date and sex, the cadastral
// code of the birthplace, and the check letter.
QString codiceFiscale(const QString &surname, const QString &name, const QDate &birth, bool female,
                      const QString &birthplaceCode);
QChar codiceFiscaleCheck(const QString &firstFifteen);
bool isValidCodiceFiscale(const QString &codiceFiscale);

} // namespace pg::checkdigits
