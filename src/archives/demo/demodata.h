#pragma once

#include <QtGlobal>

#include <span>

// The fixed material of the demo installation: Italian places, streets, banks with their
// agencies, currencies, customers and suppliers. The generator combines them under its seed.
namespace pg::archives::demodata {

struct City
{
    const char16_t *name;      // as the suite writes it, accents included
    const char16_t *province;  // two-letter province
    const char16_t *cap;       // postal code
    const char16_t *cadastral; // cadastral code of the municipality (codice fiscale)
    const char16_t *cabPrefix; // first three digits of the agencies' CAB in this town
};

struct Agency
{
    const char16_t *name; // the agency's name, as the bank file prints it after the bank's
    int city;             // index into cities()
    const char16_t *cabSuffix;
    const char16_t *address;
};

struct Bank
{
    const char16_t *abi;
    const char16_t *name;
    const char16_t *bic;
    std::span<const Agency> agencies;
};

struct Currency
{
    const char16_t *code; // the suite's two-character code
    const char16_t *description;
    const char16_t *iso;
    int decimals;
    double rate; // units of the currency for one euro
    int weight;  // how often due items use it, out of the foreign ones
};

// A customer or supplier: a company, or a person (surname and name separate, for the
// codice fiscale).
struct Account
{
    const char16_t *name;
    const char16_t *surname = nullptr; // set for a person
    const char16_t *firstName = nullptr;
    bool female = false;
};

struct PaymentTerm
{
    const char16_t *code;
    const char16_t *description;
    char16_t type;
    int instalments;
};

std::span<const City> cities();
std::span<const char16_t *const> streets();
std::span<const Bank> banks();
std::span<const Currency> currencies();
std::span<const Account> suppliers();
std::span<const Account> customers();
std::span<const PaymentTerm> paymentTerms();
std::span<const char16_t *const> priceLists();

} // namespace pg::archives::demodata
