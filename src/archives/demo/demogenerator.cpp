#include "demogenerator.h"

#include "archives/store/archivenumbers.h"
#include "core/checkdigits.h"
#include "demodata.h"

#include "core/vbdate.h"
#include "startup/inifile.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace pg::archives {

namespace {

QString str(const char16_t *text)
{
    return QString::fromUtf16(text);
}

QString zeroPadded(qint64 value, int width)
{
    return QStringLiteral("%1").arg(value, width, 10, QChar(u'0'));
}

void setRate(ErpRecord &record, const QString &field, double rate)
{
    record.setNumber(field, rate, 6);
}

// A whole number as ASCII digits, zero-filled to a width.
class Digits
{
public:
    explicit Digits(qint64 value, int width = 0)
    {
        char *end = m_text + sizeof m_text;
        char *p = end;
        const bool negative = value < 0;
        quint64 v = negative ? quint64(-value) : quint64(value);
        do {
            *--p = char('0' + v % 10);
            v /= 10;
        } while (v);
        while (end - p < width && p > m_text + 1)
            *--p = '0';
        if (negative)
            *--p = '-';
        m_begin = p;
    }
    QByteArrayView view() const { return QByteArrayView(m_begin, m_text + sizeof m_text); }

private:
    char m_text[24];
    const char *m_begin;
};

// Picks an index by weight.
int weighted(QRandomGenerator &rng, std::initializer_list<int> weights)
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
constexpr int SupplierWithoutBankData = 3;
constexpr int SupplierWithoutIban = 7;
constexpr int SupplierWithoutAccount = 12;
constexpr int SupplierWithOtherBankOnItems = 16;
constexpr int SupplierWithoutBankAndAgency = 20;
constexpr int SupplierWithUnknownAgency = 22;
constexpr int CustomerWithoutBankData = 5;

// The company banks: bank and agency (indices into the bank table), ordering account, SIA.
struct CompanyBank
{
    int bank;
    int agency;
    const char16_t *account;
    const char16_t *sia;
};
constexpr CompanyBank CompanyBanks[] = {
    {0, 1, u"100000012345", u"A7K21"},
    {5, 0, u"000046210318", u"B4M09"},
    {4, 1, u"CC0071555502", u"C1P33"},
};

QString agencyCab(const demodata::Bank &bank, int agency)
{
    const demodata::Agency &a = bank.agencies[agency];
    return str(demodata::cities()[a.city].cabPrefix) + str(a.cabSuffix);
}

} // namespace

DemoGenerator::DemoGenerator(const DemoOptions &options)
    : m_options(options)
    , m_today(options.today.isValid() ? options.today : dates::today())
    , m_rng(options.seed)
{}

QByteArray DemoGenerator::causaliIni()
{
    QFile file(QStringLiteral(":/demo/causali.ini"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The example causali.ini is missing from the program.");
    return file.readAll();
}

QStringList DemoGenerator::reasonCodes()
{
    return IniFile::load(QStringLiteral(":/demo/causali.ini")).keys(QStringLiteral("CAUSALI"));
}

QString DemoGenerator::digits(int count)
{
    QString out;
    out.reserve(count);
    for (int i = 0; i < count; ++i)
        out += QChar(u'0' + bounded(10));
    return out;
}

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
}

bool DemoGenerator::generate(const Sink &sink)
{
    m_rng.seed(m_options.seed);
    m_groups.clear();
    makeAccounts();
    return emitCommonTables(sink) && emitAccounts(sink) && emitCompanyTables(sink) &&
           emitBankData(sink) && emitSites(sink) && emitPaymentTerms(sink) &&
           emitPriceLists(sink) && emitDueItems(sink);
}

bool DemoGenerator::emitCommonTables(const Sink &sink)
{
    ErpRecord bn(TabelleComuni, QStringLiteral("BN "));
    for (const demodata::Bank &bank : demodata::banks()) {
        for (int i = 0; i < int(bank.agencies.size()); ++i) {
            const demodata::Agency &agency = bank.agencies[i];
            const demodata::City &city = demodata::cities()[agency.city];
            const QString cab = agencyCab(bank, i);
            bn.clear();
            bn.setText(QStringLiteral("codice"), str(bank.abi) + cab);
            bn.setText(QStringLiteral("abi"), str(bank.abi));
            bn.setText(QStringLiteral("cab"), cab);
            bn.setText(QStringLiteral("des_banca"), str(bank.name));
            bn.setText(QStringLiteral("des_agenzia"), str(agency.name));
            bn.setText(QStringLiteral("indirizzo"), str(agency.address));
            bn.setText(QStringLiteral("cap"), str(city.cap));
            bn.setText(QStringLiteral("localita"), str(city.name));
            bn.setText(QStringLiteral("provincia"), str(city.province));
            bn.setText(QStringLiteral("bic"), str(bank.bic));
            if (!sink(bn))
                return false;
        }
    }
    ErpRecord vl(TabelleComuni, QStringLiteral("VL "));
    for (const demodata::Currency &currency : demodata::currencies()) {
        vl.clear();
        vl.setText(QStringLiteral("codice"), str(currency.code));
        vl.setText(QStringLiteral("des_valuta"), str(currency.description));
        vl.setText(QStringLiteral("decimali"), QString::number(currency.decimals));
        setRate(vl, QStringLiteral("cambio"), currency.rate);
        vl.setText(QStringLiteral("sigla_iso"), str(currency.iso));
        if (!sink(vl))
            return false;
    }
    return true;
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

bool DemoGenerator::emitCompanyTables(const Sink &sink)
{
    ErpRecord az1(TabelleAzienda, QStringLiteral("AZ1"));
    az1.setText(QStringLiteral("ragsoc"), QStringLiteral("Bertolè Forniture Industriali S.p.A."));
    az1.setText(QStringLiteral("indirizzo"), QStringLiteral("Via dell'Artigianato, 14"));
    az1.setText(QStringLiteral("citta"), QStringLiteral("Forlì"));
    az1.setText(QStringLiteral("provincia"), QStringLiteral("FC"));
    az1.setText(QStringLiteral("cap"), QStringLiteral("47122"));
    if (!sink(az1))
        return false;

    const QString firstTen = QStringLiteral("0362718040");
    const QString partitaIva = firstTen + QChar(u'0' + checkdigits::partitaIvaCheckDigit(firstTen));
    ErpRecord az3(TabelleAzienda, QStringLiteral("AZ3"));
    az3.setText(QStringLiteral("cod_fiscale"), partitaIva);
    az3.setText(QStringLiteral("partita_iva"), partitaIva);
    az3.setText(QStringLiteral("cuc"), QStringLiteral("0BF3K7Q2"));
    if (!sink(az3))
        return false;

    ErpRecord rel(TabelleAzienda, QStringLiteral("REL"));
    rel.setText(QStringLiteral("release"), archiveRelease());
    if (!sink(rel))
        return false;

    for (const CompanyBank &cb : CompanyBanks) {
        const demodata::Bank &bank = demodata::banks()[cb.bank];
        const QString abi = str(bank.abi);
        const QString cab = agencyCab(bank, cb.agency);
        const QString city = str(demodata::cities()[bank.agencies[cb.agency].city].name);
        ErpRecord ba1(TabelleAzienda, QStringLiteral("BA1"));
        ba1.setText(QStringLiteral("codice"), abi + cab);
        ba1.setText(QStringLiteral("abi"), abi);
        ba1.setText(QStringLiteral("cab"), cab);
        ba1.setText(QStringLiteral("conto_ordinante"), str(cb.account));
        ba1.setText(QStringLiteral("des_banca"), str(bank.name) + u' ' + city);
        ErpRecord ba2(TabelleAzienda, QStringLiteral("BA2"));
        ba2.setText(QStringLiteral("codice"), abi + cab);
        ba2.setText(QStringLiteral("sia"), str(cb.sia));
        const QString iban = checkdigits::italianIban(abi, cab, str(cb.account));
        ErpRecord ba3(TabelleAzienda, QStringLiteral("BA3"));
        ba3.setText(QStringLiteral("codice"), abi + cab);
        ba3.setText(QStringLiteral("riferimenti"), QStringLiteral("Pagamenti fornitori"));
        ba3.setText(QStringLiteral("iban_paese"), iban.left(4));
        ba3.setText(QStringLiteral("iban_resto"), iban.mid(4));
        ba3.setText(QStringLiteral("bic"), str(bank.bic));
        if (!sink(ba1) || !sink(ba2) || !sink(ba3))
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

bool DemoGenerator::emitPaymentTerms(const Sink &sink)
{
    ErpRecord r(Pagamenti);
    for (const demodata::PaymentTerm &term : demodata::paymentTerms()) {
        r.clear();
        r.setText(QStringLiteral("cod_pag"), str(term.code));
        r.setText(QStringLiteral("descrizione"), str(term.description));
        r.setText(QStringLiteral("tipo_pag"), QString(QChar(term.type)));
        r.setText(QStringLiteral("num_rate"), zeroPadded(term.instalments, 2));
        if (!sink(r))
            return false;
    }
    return true;
}

bool DemoGenerator::emitPriceLists(const Sink &sink)
{
    ErpRecord r(Listini);
    int n = 0;
    for (const char16_t *name : demodata::priceLists()) {
        r.clear();
        r.setText(QStringLiteral("cod_listino"), QStringLiteral("LIS") + zeroPadded(++n, 3));
        r.setText(QStringLiteral("descrizione"), str(name));
        if (!sink(r))
            return false;
    }
    return true;
}

bool DemoGenerator::emitDueItems(const Sink &sink)
{
    // A million due items must be quick to make: the fields are looked up once and every
    // value (plain ASCII) is written straight into the record's bytes.
    ErpRecord r(Scadenze);
    auto field = [&](const char *name) { return r.fieldDef(QString::fromLatin1(name)); };
    const FieldDef fFlag = field("flag_colpar"), fLink = field("link"), fStato = field("stato"),
                   fInsoluto = field("flag_insoluto"), fAcconto = field("flag_acconto"),
                   fTipo = field("tipo_pag"), fScad = field("data_scad"),
                   fKind = field("ind_clifor"), fCode = field("cod_clifor"),
                   fSede = field("cod_sede"), fNumDoc = field("num_doc"),
                   fSerie = field("serie_doc"), fDataDoc = field("data_doc"),
                   fProt = field("num_prot"), fRata = field("num_rata"),
                   fEffetto = field("num_effetto"), fCausale = field("causale"),
                   fBanca = field("banca"), fAgenzia = field("agenzia"), fConto = field("conto"),
                   fValuta = field("valuta"), fCambio = field("cambio"),
                   fDapagVal = field("imp_dapag_val"), fDapagEur = field("imp_dapag_eur"),
                   fPagVal = field("imp_pag_val"), fPagEur = field("imp_pag_eur"),
                   fAccontoVal = field("imp_acconto_val"), fStatoDist = field("stato_dist"),
                   fMarkDist = field("mark_dist"), fMarkPres = field("mark_pres"),
                   fDataDist = field("data_dist"), fAbiPres = field("abi_pres"),
                   fCabPres = field("cab_pres"), fDescr = field("descrizione");
    QByteArray &buf = r.buffer();
    auto put = [&](const FieldDef &f, QByteArrayView value) {
        std::memcpy(buf.data() + f.offset, value.data(),
                    size_t(qMin(value.size(), qsizetype(f.width))));
    };
    auto putRight = [&](const FieldDef &f, QByteArrayView value) {
        const qsizetype n = qMin(value.size(), qsizetype(f.width));
        std::memcpy(buf.data() + f.offset + f.width - n, value.data() + value.size() - n,
                    size_t(n));
    };
    auto amount = [](qint64 cents) {
        const qint64 a = cents < 0 ? -cents : cents;
        QByteArray text = Digits(a / 100).view().toByteArray();
        text += '.';
        text += Digits(a % 100, 2).view();
        return cents < 0 ? '-' + text : text;
    };
    auto date = [](const QDate &d) {
        return Digits(qint64(d.year()) * 10000 + d.month() * 100 + d.day(), 8).view().toByteArray();
    };

    struct Text
    {
        QByteArray code, bank, agency, account;
    };
    QList<Text> accountText;
    for (const AccountData &a : std::as_const(m_accounts))
        accountText.append({a.code.toLatin1(), a.itemBank.toLatin1(), a.itemAgency.toLatin1(),
                            a.itemAccount.toLatin1()});
    struct Presenting
    {
        QByteArray abi, cab;
    };
    QList<Presenting> presenting;
    for (const CompanyBank &cb : CompanyBanks) {
        const demodata::Bank &bank = demodata::banks()[cb.bank];
        presenting.append({str(bank.abi).toLatin1(), agencyCab(bank, cb.agency).toLatin1()});
    }

    const auto currencies = demodata::currencies();
    int foreignWeight = 0;
    for (const auto &c : currencies)
        foreignWeight += c.weight;
    QList<QByteArray> rateText, codeText;
    for (const auto &c : currencies) {
        rateText << QByteArray::number(c.rate, 'f', 6);
        codeText << str(c.code).toLatin1();
    }

    const QStringList reasons = reasonCodes();
    QStringList supplierReasons, customerReasons;
    for (const QString &code : reasons) {
        if (code != u"FV" && code != u"FD")
            supplierReasons << code;
        if (code != u"FA" && code != u"PA" && code != u"AN")
            customerReasons << code;
    }
    QList<int> suppliers, customers;
    for (int i = 0; i < m_accounts.size(); ++i)
        (m_accounts.at(i).kind == u'F' ? suppliers : customers) << i;

    qint64 produced = 0;
    qint64 protocol = 0;
    qint64 salesNumber = 0;
    qint64 effectNumber = 0;
    int document = 0;
    while (produced < m_options.dueItems) {
        const bool supplier = bounded(100) < 70;
        const int accountIndex = supplier ? suppliers.at(bounded(int(suppliers.size())))
                                          : customers.at(bounded(int(customers.size())));
        const AccountData &a = m_accounts.at(accountIndex);
        const Text &at = accountText.at(accountIndex);
        // The first ten documents take every payment type once, so that a demo of any size
        // shows them all; later ones mostly follow the account's payment term.
        char type;
        if (document < 10)
            type = char('0' + document);
        else if (bounded(100) < 65)
            type = char(a.usualType.unicode());
        else
            type = char('0' + (supplier ? weighted(m_rng, {1, 2, 2, 6, 1, 1, 8, 1, 1, 1})
                                        : weighted(m_rng, {2, 8, 2, 3, 1, 1, 2, 1, 1, 4})));
        ++document;

        // Mostly invoices; now and then a credit note, a debit note, a fee, an advance.
        const QStringList &reasonsOfKind = supplier ? supplierReasons : customerReasons;
        QString reason = supplier ? QStringLiteral("FA") : QStringLiteral("FV");
        const int pick = bounded(100);
        if (pick < 5)
            reason = QStringLiteral("NC");
        else if (pick < 9)
            reason = QStringLiteral("ND");
        else if (supplier && pick < 14)
            reason = QStringLiteral("PA");
        else if (supplier && pick < 17)
            reason = QStringLiteral("AN");
        else if (!supplier && pick < 25)
            reason = QStringLiteral("FD");
        if (!reasonsOfKind.contains(reason))
            reason = reasonsOfKind.value(0);
        const bool creditNote = reason == u"NC";
        const QByteArray reasonText = reason.toLatin1();

        const QDate docDate = m_today.addDays(-bounded(150));
        static constexpr int Instalments[] = {1, 1, 1, 1, 1, 1, 1, 2, 3, 3};
        const int instalments = creditNote ? 1 : Instalments[bounded(10)];
        const int count = int(qMin<qint64>(instalments, m_options.dueItems - produced));
        const bool endOfMonth = bounded(2) == 0;

        int currency = 0;
        if (bounded(100) < 12) {
            int weight = bounded(foreignWeight);
            for (currency = 0; weight >= currencies[currency].weight; ++currency)
                weight -= currencies[currency].weight;
        }
        const double rate = currencies[currency].rate;
        const qint64 unit = currencies[currency].decimals == 0 ? 100 : 1;
        // Amounts worth from a few tens to tens of thousands of euro (as many between 30 and
        // 120 as between 6000 and 24000), in the currency at its rate and rounded to its
        // decimals; no transcendental functions, so that a seed gives the same amounts on
        // every platform.
        static constexpr qint64 Bands[] = {3000, 12000, 48000, 190000, 760000, 2400000};
        const int band = bounded(int(std::size(Bands)) - 1);
        const qint64 euroCents =
            Bands[band] + qint64(m_rng.bounded(quint32(Bands[band + 1] - Bands[band])));
        const qint64 totalCents = qMax(unit, std::llround(double(euroCents) * rate) / unit * unit);

        const qint64 docNumber = supplier ? 1 + bounded(9999) : ++salesNumber;
        const QByteArray series =
            supplier ? (bounded(100) < 15 ? "B" : "") : (bounded(2) ? "A" : "");
        ++protocol;
        const bool withSite = a.hasSite && bounded(2);
        const QByteArray docDateText = date(docDate);
        QByteArray description =
            (creditNote ? "Nota credito n. " : (supplier ? "Fatt. n. " : "Ns. fatt. n. ")) +
            Digits(docNumber).view().toByteArray() +
            (series.isEmpty() ? QByteArray() : '/' + series) + " del " +
            dates::toDmy(docDate).toLatin1();

        for (int k = 0; k < count; ++k) {
            buf.fill(' ');
            QByteArray link = Digits(docDate.year(), 4).view().toByteArray();
            link += Digits(protocol, 7).view();
            link += Digits(k + 1, 2).view();
            QDate due = docDate.addDays(30 * (k + 1));
            if (endOfMonth)
                due = QDate(due.year(), due.month(), due.daysInMonth());
            put(fFlag, "P");
            put(fLink, link);
            put(fTipo, QByteArrayView(&type, 1));
            put(fScad, date(due));
            put(fKind, a.kind == u'C' ? "C" : "F");
            put(fCode, at.code);
            if (withSite)
                put(fSede, "000001");
            put(fNumDoc, Digits(docNumber).view());
            put(fSerie, series);
            put(fDataDoc, docDateText);
            put(fProt, Digits(protocol % 1000000).view());
            put(fRata, Digits(k + 1, 2).view());
            if (!supplier && (type == '0' || type == '1'))
                put(fEffetto, Digits(++effectNumber % 1000000).view());
            put(fCausale, reasonText);
            // Direct remittance and cash need no bank: the suite leaves it blank.
            if (type != '3' && type != '4') {
                put(fBanca, at.bank);
                put(fAgenzia, at.agency);
                put(fConto, at.account);
            }
            put(fValuta, codeText.at(currency));
            putRight(fCambio, rateText.at(currency));

            qint64 cents = totalCents / count / unit * unit;
            if (k == count - 1)
                cents = totalCents - cents * (count - 1);
            if (creditNote)
                cents = -cents;
            auto toEuro = [&](qint64 c) { return qint64(std::llround(double(c) / rate)); };
            putRight(fDapagVal, amount(cents));
            putRight(fDapagEur, amount(toEuro(cents)));

            // Paid, partly paid or open; a down payment now and then.
            char state = '0';
            qint64 paid = 0;
            const int p = bounded(100);
            if (!creditNote && p < 6) {
                state = '2';
                paid = cents;
            } else if (!creditNote && p < 14) {
                state = '1';
                paid = cents * (30 + bounded(41)) / 100 / unit * unit;
            }
            put(fStato, QByteArrayView(&state, 1));
            putRight(fPagVal, amount(paid));
            putRight(fPagEur, amount(toEuro(paid)));
            const bool downPayment = !creditNote && state == '0' && bounded(100) < 3;
            put(fAcconto, downPayment ? "1" : "0");
            putRight(fAccontoVal,
                     amount(downPayment ? cents * (10 + bounded(21)) / 100 / unit * unit : 0));
            const bool unpaid = !supplier && (type == '0' || type == '1') && due < m_today &&
                                state == '0' && bounded(100) < 10;
            put(fInsoluto, unpaid ? "2" : "0");

            // Some open items already sit in a distinta. Only types 3 to 8 take a distinta
            // state; the others carry just the marks, the date and the presenting bank.
            char distState = '0';
            if (state != '2' && !creditNote && bounded(100) < 9) {
                const Presenting &bank = presenting.at(bounded(int(presenting.size())));
                if (type >= '3' && type <= '8') {
                    const int s = bounded(100);
                    distState = s < 60 ? '5' : (s < 95 ? '3' : '4');
                }
                put(fMarkDist, "B");
                put(fMarkPres, "B");
                put(fDataDist, date(qMax(docDate, m_today.addDays(-1 - bounded(20)))));
                put(fAbiPres, bank.abi);
                put(fCabPres, bank.cab);
            } else {
                put(fMarkDist, "0");
            }
            put(fStatoDist, QByteArrayView(&distState, 1));

            if (count > 1)
                put(fDescr, description + " r." + Digits(k + 1).view().toByteArray() + '/' +
                                Digits(count).view().toByteArray());
            else
                put(fDescr, description);

            if (!sink(r))
                return false;
            if (k == 0 && count > 1 && m_groups.size() < 8)
                m_groups.append({QString::fromLatin1(link),
                                 QStringLiteral("Rate ") + QString::fromLatin1(description)});
        }
        produced += count;
    }

    // The group records of the first documents split into instalments.
    ErpRecord group(GruppoScadenze);
    for (const auto &[link, description] : std::as_const(m_groups)) {
        group.clear();
        group.setText(QStringLiteral("flag_colpar"), QStringLiteral("P"));
        group.setText(QStringLiteral("link"), link);
        group.setText(QStringLiteral("descrizione"), description);
        if (!sink(group))
            return false;
    }
    return true;
}

} // namespace pg::archives
