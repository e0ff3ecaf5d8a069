// The demo's due items, written straight into their records' bytes.
#include "demogenerator.h"

#include "demodata.h"
#include "demoparts.h"

#include "archives/store/archivenumbers.h"
#include "core/vbdate.h"

#include <cmath>
#include <cstring>
#include <iterator>

namespace pg::archives {

using namespace demoparts;

namespace {

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

} // namespace

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
        if (!m_accounts.at(i).ribaShowcase)
            (m_accounts.at(i).kind == u'F' ? suppliers : customers) << i;

    qint64 produced = 0;
    qint64 protocol = 0;
    qint64 salesNumber = 0;
    qint64 effectNumber = 0;
    int document = 0;
    // The last due items are those of the customers of ricevute bancarie.
    const qint64 randomItems = m_options.dueItems - ribaDueItems();
    while (produced < randomItems) {
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
        const int count = int(qMin<qint64>(instalments, randomItems - produced));
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

    if (!emitRibaDueItems(sink))
        return false;

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
