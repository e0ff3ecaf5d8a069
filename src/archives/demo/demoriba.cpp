// The demo's customers paying by ricevuta bancaria: made whole, with invoices due in the
// coming months, so that a customers' distinta of theirs gives a RiBa file the bank takes.
// Nothing here draws on the seed: the demo's other records stay what the seed makes them.
#include "demogenerator.h"

#include "demodata.h"
#include "demoparts.h"

#include "archives/store/archivenumbers.h"
#include "core/checkdigits.h"
#include "core/vbdate.h"

namespace pg::archives {

using namespace demoparts;

namespace {

struct RibaCustomer
{
    demodata::Account account;
    const char16_t *city;
    const char16_t *address;
    int bank;   // index into banks()
    int agency; // index into the bank's agencies
    bool withSite;
};

constexpr RibaCustomer RibaCustomers[] = {
    {{u"Pasticceria Dolcezze di Cantù S.r.l."}, u"Cantù", u"Via Matteotti, 7", 2, 1, false},
    {{u"Ferramenta Nardò & Figli S.n.c."},
     u"Nardò",
     u"Corso Vittorio Emanuele II, 41",
     11,
     0,
     false},
    {{u"Rossi Giuseppe", u"Rossi", u"Giuseppe"}, u"Torino", u"Via della Consolata, 3", 1, 1, false},
    {{u"Ottica Perù S.r.l."}, u"Milano", u"Via Paolo Sarpi, 18", 6, 0, true},
    {{u"Tipografia Sant'Agata dei Goti S.p.A."}, u"Napoli", u"Via Santa Chiara, 10", 0, 2, false},
    {{u"Mobilificio Brianza Città S.r.l."}, u"Bologna", u"Via dell'Indipendenza, 52", 4, 0, false},
};

// An invoice of one of them: its customer, how many days ago it was issued, its amount, its
// instalments and the month of the first one (1: the end of next month).
struct RibaInvoice
{
    int customer;
    int daysAgo;
    qint64 cents;
    int instalments;
    int firstMonth;
};

// The first customer has two invoices due on one day (one receivable when grouped) and a
// third due later; the second an invoice in two instalments.
constexpr RibaInvoice RibaInvoices[] = {
    {0, 20, 122000, 1, 1}, {0, 12, 36605, 1, 1}, {0, 8, 73210, 1, 2},
    {1, 25, 244000, 2, 1}, {2, 15, 42700, 1, 1}, {3, 10, 109800, 1, 2},
    {4, 18, 61000, 1, 2},  {4, 9, 30500, 1, 2},  {5, 5, 390400, 1, 2},
};

constexpr int FirstCode = 100101;

int cityIndex(const char16_t *name)
{
    const auto cities = demodata::cities();
    for (int i = 0; i < int(cities.size()); ++i)
        if (str(cities[i].name) == str(name))
            return i;
    return 0;
}

} // namespace

int DemoGenerator::ribaDueItems() const
{
    // A demo too small for them keeps its few due items for the other payment types.
    if (m_options.dueItems < 100)
        return 0;
    int count = 0;
    for (const RibaInvoice &invoice : RibaInvoices)
        count += invoice.instalments;
    return count;
}

void DemoGenerator::makeRibaCustomers()
{
    const auto cities = demodata::cities();
    const auto banks = demodata::banks();
    for (int i = 0; i < int(std::size(RibaCustomers)); ++i) {
        const RibaCustomer &c = RibaCustomers[i];
        const demodata::City &city = cities[cityIndex(c.city)];
        AccountData a;
        a.kind = u'C';
        a.ribaShowcase = true;
        a.code = zeroPadded(FirstCode + i, 6);
        a.name = str(c.account.name);
        a.address = str(c.address);
        a.cap = str(city.cap);
        a.city = str(city.name);
        a.province = str(city.province);
        if (c.account.surname) {
            a.codiceFiscale =
                checkdigits::codiceFiscale(str(c.account.surname), str(c.account.firstName),
                                           QDate(1968, 5, 12 + i), false, str(city.cadastral));
        } else {
            const QString firstTen = zeroPadded(4710020 + i, 7) + zeroPadded(37 + i, 3);
            a.partitaIva = firstTen + QChar(u'0' + checkdigits::partitaIvaCheckDigit(firstTen));
            a.codiceFiscale = a.partitaIva;
        }
        a.phone = QStringLiteral("0") + zeroPadded(31 + i, 2) + u' ' + zeroPadded(271828 + i, 6);
        a.email = QStringLiteral("amministrazione@cliente%1.it").arg(i + 1);
        a.paymentTerm = QStringLiteral("RB3");
        a.usualType = u'1';
        const demodata::Bank &bank = banks[c.bank];
        a.bank = str(bank.abi);
        a.agency = agencyCab(bank, c.agency);
        a.account = zeroPadded(3141500 + 27 * i, 12);
        a.bic = str(bank.bic);
        a.iban = checkdigits::italianIban(a.bank, a.agency, a.account);
        a.itemBank = a.bank;
        a.itemAgency = a.agency;
        a.itemAccount = a.account;
        a.hasSite = c.withSite;
        if (a.hasSite) {
            a.siteAddress = QStringLiteral("Corso Buenos Aires, 23");
            a.siteCap = QStringLiteral("20124");
            a.siteCity = QStringLiteral("Milano");
            a.siteProvince = QStringLiteral("MI");
        }
        m_accounts.append(a);
    }
}

bool DemoGenerator::emitRibaDueItems(const Sink &sink)
{
    if (ribaDueItems() == 0)
        return true;
    QList<int> showcase;
    for (int i = 0; i < m_accounts.size(); ++i)
        if (m_accounts.at(i).ribaShowcase)
            showcase << i;

    ErpRecord r(Scadenze);
    int document = 0;
    for (const RibaInvoice &invoice : RibaInvoices) {
        const AccountData &a = m_accounts.at(showcase.at(invoice.customer));
        const QDate docDate = m_today.addDays(-invoice.daysAgo);
        const int number = 9001 + document++;
        const QString description =
            QStringLiteral("Ns. fatt. n. %1/R del %2").arg(number).arg(dates::toDmy(docDate));
        for (int k = 0; k < invoice.instalments; ++k) {
            // Due at the end of a coming month.
            const QDate month = m_today.addMonths(invoice.firstMonth + k);
            const QDate due(month.year(), month.month(), month.daysInMonth());
            qint64 cents = invoice.cents / invoice.instalments;
            if (k == invoice.instalments - 1)
                cents = invoice.cents - cents * (invoice.instalments - 1);
            r.clear();
            r.setText(QStringLiteral("flag_colpar"), QStringLiteral("P"));
            r.setText(QStringLiteral("link"), QStringLiteral("%1%2%3")
                                                  .arg(docDate.year())
                                                  .arg(9000000 + number, 7)
                                                  .arg(k + 1, 2, 10, QChar(u'0')));
            r.setText(QStringLiteral("stato"), QStringLiteral("0"));
            r.setText(QStringLiteral("flag_insoluto"), QStringLiteral("0"));
            r.setText(QStringLiteral("flag_acconto"), QStringLiteral("0"));
            r.setText(QStringLiteral("tipo_pag"), QStringLiteral("1"));
            r.setText(QStringLiteral("data_scad"), dates::toYmd(due));
            r.setText(QStringLiteral("ind_clifor"), QStringLiteral("C"));
            r.setText(QStringLiteral("cod_clifor"), a.code);
            if (a.hasSite)
                r.setText(QStringLiteral("cod_sede"), QStringLiteral("000001"));
            r.setText(QStringLiteral("num_doc"), QString::number(number));
            r.setText(QStringLiteral("serie_doc"), QStringLiteral("R"));
            r.setText(QStringLiteral("data_doc"), dates::toYmd(docDate));
            r.setText(QStringLiteral("num_prot"), QString::number(9000 + document));
            r.setText(QStringLiteral("num_rata"), zeroPadded(k + 1, 2));
            r.setText(QStringLiteral("num_effetto"), QString::number(number * 10 + k + 1));
            r.setText(QStringLiteral("causale"), QStringLiteral("FV"));
            r.setText(QStringLiteral("banca"), a.itemBank);
            r.setText(QStringLiteral("agenzia"), a.itemAgency);
            r.setText(QStringLiteral("conto"), a.itemAccount);
            r.setText(QStringLiteral("valuta"), QStringLiteral("EU"));
            setRate(r, QStringLiteral("cambio"), 1.0);
            for (const char *field : {"imp_dapag_val", "imp_dapag_eur"})
                r.setNumber(QString::fromLatin1(field), double(cents) / 100.0, 2);
            for (const char *field : {"imp_pag_val", "imp_pag_eur", "imp_acconto_val"})
                r.setNumber(QString::fromLatin1(field), 0.0, 2);
            r.setText(QStringLiteral("stato_dist"), QStringLiteral("0"));
            r.setText(QStringLiteral("mark_dist"), QStringLiteral("0"));
            r.setText(QStringLiteral("descrizione"),
                      invoice.instalments > 1
                          ? description +
                                QStringLiteral(" r.%1/%2").arg(k + 1).arg(invoice.instalments)
                          : description);
            if (!sink(r))
                return false;
        }
    }
    return true;
}

} // namespace pg::archives
