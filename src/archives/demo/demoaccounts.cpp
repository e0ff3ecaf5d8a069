// The demo's customers and suppliers: made up, then written as masters, bank data and sites.
#include "demogenerator.h"

#include "demodata.h"
#include "demoparts.h"

#include "archives/store/archivenumbers.h"
#include "core/checkdigits.h"

namespace pg::archives {

using namespace demoparts;

void DemoGenerator::makeAccounts()
{
    m_accounts.clear();
    const auto cities = demodata::cities();
    const auto streets = demodata::streets();
    const auto banks = demodata::banks();
    const auto terms = demodata::paymentTerms();

    auto make = [&](const demodata::Account &source, QChar kind, int index) {
        AccountData a;
        a.kind = kind;
        a.code = zeroPadded((kind == u'C' ? 100001 : 400001) + index, 6);
        a.name = str(source.name);
        const demodata::City &city = cities[bounded(int(cities.size()))];
        a.address = str(streets[bounded(int(streets.size()))]) + QStringLiteral(", ") +
                    QString::number(1 + bounded(180));
        a.cap = str(city.cap);
        a.city = str(city.name);
        a.province = str(city.province);
        const bool person = source.surname != nullptr;
        // Private customers are people known by their name alone: no partita IVA.
        const bool privateCustomer =
            person && kind == u'C' && a.name.startsWith(str(source.surname));
        if (!privateCustomer) {
            const QString firstTen = digits(7) + zeroPadded(1 + bounded(100), 3);
            a.partitaIva = firstTen + QChar(u'0' + checkdigits::partitaIvaCheckDigit(firstTen));
        }
        if (person) {
            const QDate birth = QDate(1950, 1, 1).addDays(bounded(40 * 365));
            const demodata::City &birthplace = cities[bounded(int(cities.size()))];
            a.codiceFiscale =
                checkdigits::codiceFiscale(str(source.surname), str(source.firstName), birth,
                                           source.female, str(birthplace.cadastral));
        } else {
            a.codiceFiscale = a.partitaIva; // a company's codice fiscale is its partita IVA
        }
        a.phone = QStringLiteral("0") + digits(2) + u' ' + digits(6);
        QString slug;
        for (QChar c : a.name.normalized(QString::NormalizationForm_D).toLower())
            if ((c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9'))
                slug += c;
        a.email = QStringLiteral("amministrazione@") + slug.left(20) + QStringLiteral(".it");
        const demodata::PaymentTerm &term =
            kind == u'F' ? terms[weighted(m_rng, {3, 5, 3, 1, 1, 0, 1, 0, 1, 0, 1, 1})]
                         : terms[weighted(m_rng, {3, 1, 0, 4, 3, 3, 1, 1, 1, 0, 1, 0})];
        a.paymentTerm = str(term.code);
        a.usualType = QChar(term.type);

        const int b = bounded(int(banks.size()));
        const int ag = bounded(int(banks[b].agencies.size()));
        a.bank = str(banks[b].abi);
        a.agency = agencyCab(banks[b], ag);
        a.account = digits(12);
        a.bic = str(banks[b].bic);
        a.iban = checkdigits::italianIban(a.bank, a.agency, a.account);
        a.itemBank = a.bank;
        a.itemAgency = a.agency;
        a.itemAccount = a.account;

        a.hasSite = index % 4 == 1;
        if (a.hasSite) {
            const demodata::City &site = cities[bounded(int(cities.size()))];
            a.siteAddress = str(streets[bounded(int(streets.size()))]) + QStringLiteral(", ") +
                            QString::number(1 + bounded(90));
            a.siteCap = str(site.cap);
            a.siteCity = str(site.name);
            a.siteProvince = str(site.province);
        }
        return a;
    };

    const auto suppliers = demodata::suppliers();
    for (int i = 0; i < int(suppliers.size()); ++i) {
        AccountData a = make(suppliers[i], u'F', i);
        switch (i) {
        case SupplierWithoutBankData:
            a.hasBankRecord = false;
            a.itemBank.clear();
            a.itemAgency.clear();
            a.itemAccount.clear();
            break;
        case SupplierWithoutIban:
            a.iban.clear();
            break;
        case SupplierWithoutAccount:
            a.account.clear();
            a.iban.clear();
            a.itemAccount.clear();
            break;
        case SupplierWithoutBankAndAgency:
            a.bank.clear();
            a.agency.clear();
            a.iban.clear();
            a.itemBank.clear();
            a.itemAgency.clear();
            break;
        case SupplierWithUnknownAgency:
            // An agency closed since: its CAB is no longer in the bank table.
            a.agency = a.agency.left(3) + QStringLiteral("99");
            a.itemAgency = a.agency;
            a.iban = checkdigits::italianIban(a.bank, a.agency, a.account);
            break;
        case SupplierWithOtherBankOnItems: {
            // The supplier changed bank after its invoices were booked.
            const int n = int(banks.size());
            int own = 0;
            while (own < n - 1 && str(banks[own].abi) != a.bank)
                ++own;
            const demodata::Bank &other = banks[(own + 1 + bounded(n - 1)) % n];
            a.itemBank = str(other.abi);
            a.itemAgency = agencyCab(other, 0);
            a.itemAccount = digits(12);
            break;
        }
        default:
            break;
        }
        m_accounts.append(a);
    }
    const auto customers = demodata::customers();
    for (int i = 0; i < int(customers.size()); ++i) {
        AccountData a = make(customers[i], u'C', i);
        if (i == CustomerWithoutBankData) {
            a.hasBankRecord = false;
            a.itemBank.clear();
            a.itemAgency.clear();
            a.itemAccount.clear();
        }
        m_accounts.append(a);
    }
    makeRibaCustomers();
}

bool DemoGenerator::emitAccounts(const Sink &sink)
{
    ErpRecord r(AnagraficheComuni);
    for (const AccountData &a : std::as_const(m_accounts)) {
        r.clear();
        r.setText(QStringLiteral("cod_clifor"), a.code);
        r.setText(QStringLiteral("ind_clifor"), a.kind);
        r.setText(QStringLiteral("ragsoc"), a.name);
        r.setText(QStringLiteral("indirizzo"), a.address);
        r.setText(QStringLiteral("cap"), a.cap);
        r.setText(QStringLiteral("citta"), a.city);
        r.setText(QStringLiteral("provincia"), a.province);
        r.setText(QStringLiteral("nazione"), QStringLiteral("IT"));
        r.setText(QStringLiteral("cod_fiscale"), a.codiceFiscale);
        r.setText(QStringLiteral("partita_iva"), a.partitaIva);
        r.setText(QStringLiteral("telefono"), a.phone);
        r.setText(QStringLiteral("email"), a.email);
        r.setText(QStringLiteral("cod_pag"), a.paymentTerm);
        if (!sink(r))
            return false;
    }
    return true;
}

bool DemoGenerator::emitBankData(const Sink &sink)
{
    ErpRecord r(ClientiFornitori);
    for (const AccountData &a : std::as_const(m_accounts)) {
        if (!a.hasBankRecord)
            continue;
        r.clear();
        r.setText(QStringLiteral("ind_clifor"), a.kind);
        r.setText(QStringLiteral("cod_clifor"), a.code);
        r.setText(QStringLiteral("banca"), a.bank);
        r.setText(QStringLiteral("agenzia"), a.agency);
        r.setText(QStringLiteral("conto"), a.account);
        r.setText(QStringLiteral("iban_paese"), a.iban.left(4));
        r.setText(QStringLiteral("iban_resto"), a.iban.mid(4));
        if (!a.iban.isEmpty())
            r.setText(QStringLiteral("bic"), a.bic);
        if (!sink(r))
            return false;
    }
    return true;
}

bool DemoGenerator::emitSites(const Sink &sink)
{
    ErpRecord r(SediClientiFornitori);
    for (const AccountData &a : std::as_const(m_accounts)) {
        if (!a.hasSite)
            continue;
        r.clear();
        r.setText(QStringLiteral("cod_clifor"), a.code);
        r.setText(QStringLiteral("tipo_sede"), QStringLiteral("A"));
        r.setText(QStringLiteral("cod_sede"), QStringLiteral("000001"));
        r.setText(QStringLiteral("descrizione"), QStringLiteral("Sede amministrativa"));
        r.setText(QStringLiteral("indirizzo"), a.siteAddress);
        r.setText(QStringLiteral("cap"), a.siteCap);
        r.setText(QStringLiteral("citta"), a.siteCity);
        r.setText(QStringLiteral("provincia"), a.siteProvince);
        if (!sink(r))
            return false;
    }
    return true;
}

} // namespace pg::archives
