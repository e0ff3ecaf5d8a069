#include "demogenerator.h"

#include "demodata.h"
#include "demoparts.h"

#include "archives/store/archivenumbers.h"
#include "core/checkdigits.h"
#include "core/vbdate.h"
#include "startup/inifile.h"

#include <QFile>

namespace pg::archives {

using namespace demoparts;

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

} // namespace pg::archives
