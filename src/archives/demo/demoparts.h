#pragma once

// What the parts of the demo generator share: text helpers, the weighted pick, the accounts
// left incomplete on purpose and the company banks. Not part of the demo's interface.

#include "demodata.h"

#include "archives/store/erprecord.h"

#include <QRandomGenerator>
#include <QString>

#include <initializer_list>

namespace pg::archives::demoparts {

inline QString str(const char16_t *text)
{
    return QString::fromUtf16(text);
}

inline QString zeroPadded(qint64 value, int width)
{
    return QStringLiteral("%1").arg(value, width, 10, QChar(u'0'));
}

inline void setRate(ErpRecord &record, const QString &field, double rate)
{
    record.setNumber(field, rate, 6);
}

// Picks an index by weight.
inline int weighted(QRandomGenerator &rng, std::initializer_list<int> weights)
{
    int total = 0;
    for (int w : weights)
        total += w;
    int pick = int(rng.bounded(quint32(total)));
    int i = 0;
    for (int w : weights) {
        if (pick < w)
            return i;
        pick -= w;
        ++i;
    }
    return i - 1;
}

// Indices of the deliberately incomplete accounts (see the class comment).
inline constexpr int SupplierWithoutBankData = 3;
inline constexpr int SupplierWithoutIban = 7;
inline constexpr int SupplierWithoutAccount = 12;
inline constexpr int SupplierWithOtherBankOnItems = 16;
inline constexpr int SupplierWithoutBankAndAgency = 20;
inline constexpr int SupplierWithUnknownAgency = 22;
inline constexpr int CustomerWithoutBankData = 5;

// The company banks: bank and agency (indices into the bank table), ordering account, SIA.
struct CompanyBank
{
    int bank;
    int agency;
    const char16_t *account;
    const char16_t *sia;
};
inline constexpr CompanyBank CompanyBanks[] = {
    {0, 1, u"100000012345", u"A7K21"},
    {5, 0, u"000046210318", u"B4M09"},
    {4, 1, u"CC0071555502", u"C1P33"},
};

inline QString agencyCab(const demodata::Bank &bank, int agency)
{
    const demodata::Agency &a = bank.agencies[agency];
    return str(demodata::cities()[a.city].cabPrefix) + str(a.cabSuffix);
}

} // namespace pg::archives::demoparts
