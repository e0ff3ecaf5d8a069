#include "ribarecords.h"

#include "cbiline.h"
#include "fieldfill.h"

#include "core/checkdigits.h"
#include "core/vbdate.h"

#include <QRegularExpression>

namespace pg::bankfile {

namespace {

const QLatin1StringView Euro("E");

// The references laid out greedily, each line as full as it can be; empty when they need
// more lines than allowed. A reference longer than a line has one of its own, cut by the
// field.
QStringList layout(const QStringList &tokens, int width, int lines)
{
    QStringList out;
    for (const QString &token : tokens) {
        if (!out.isEmpty() && out.last().size() + 1 + token.size() <= width)
            out.last() += u' ' + token;
        else
            out << token;
        if (out.size() > lines)
            return {};
    }
    return out;
}

} // namespace

QByteArray RibaRecords::recordIB(const RibaPresentazione &p)
{
    return CbiLine(QLatin1StringView("IB"))
        .alpha(p.sia, 5)
        .numeric(p.abi, 5)
        .fixed(dates::toDdmmyy(p.data), 6)
        .alpha(p.supporto, 20)
        .blanks(6)
        .blanks(59)
        // Type, qualifier and gateway bank of a market-place flow: not one.
        .blanks(7)
        .blanks(2)
        .literal(Euro)
        .blanks(1)
        .blanks(5)
        .finish(Width);
}

QByteArray RibaRecords::record14(const Ricevuta &r, const RibaPresentazione &p)
{
    return CbiLine(QLatin1StringView("14"))
        .number(r.num, 7)
        .blanks(12)
        .fixed(dates::ymdToDdmmyy(r.scadenza), 6)
        .literal(QLatin1StringView("30000"))
        .number(r.cents, 13)
        .literal(QLatin1StringView("-"))
        .numeric(p.abi, 5)
        .numeric(p.cab, 5)
        .numeric(p.conto, 12)
        .numeric(r.abi, 5)
        .numeric(r.cab, 5)
        .blanks(12)
        .alpha(p.sia, 5)
        .literal(QLatin1StringView("4"))
        .alpha(r.cliente, 16)
        // The debtor is not a bank.
        .blanks(1)
        .blanks(5)
        .literal(Euro)
        .finish(Width);
}

QByteArray RibaRecords::record20(int num, const archives::CompanyData &company)
{
    const QString town = trimBlanks(CbiRecords::plain(company.cap)) + u' ' +
                         CbiRecords::cityAndProvince(company.citta, company.provincia);
    return CbiLine(QLatin1StringView("20"))
        .number(num, 7)
        .alpha(company.ragsoc, 24)
        .alpha(company.indirizzo, 24)
        .alpha(town, 24)
        .alpha(normalizedTaxCode(company.taxIdentifier()), 24)
        .blanks(14)
        .finish(Width);
}

QByteArray RibaRecords::record30(const Ricevuta &r)
{
    // The name goes on in the second part where the first ends.
    const QString name = trimBlanks(CbiRecords::plain(r.nome));
    return CbiLine(QLatin1StringView("30"))
        .number(r.num, 7)
        .alpha(QStringView(name).left(30), 30)
        .alpha(QStringView(name).mid(30), 30)
        .alpha(r.codiceFiscale, 16)
        .blanks(34)
        .finish(Width);
}

QByteArray RibaRecords::record40(const Ricevuta &r)
{
    return CbiLine(QLatin1StringView("40"))
        .number(r.num, 7)
        .alpha(r.indirizzo.indirizzo, 30)
        .alpha(r.indirizzo.cap, 5)
        .alpha(r.indirizzo.citta, 23)
        .alpha(r.indirizzo.provincia, 2)
        .alpha(r.banca, 50)
        .finish(Width);
}

QByteArray RibaRecords::record50(const Ricevuta &r, const QString &creditorTaxCode)
{
    const QStringList lines = referenceLines(r.documenti, Lines, 2);
    return CbiLine(QLatin1StringView("50"))
        .number(r.num, 7)
        .alpha(lines.value(0), Lines)
        .alpha(lines.value(1), Lines)
        .blanks(10)
        .alpha(creditorTaxCode, 16)
        .blanks(4)
        .finish(Width);
}

QByteArray RibaRecords::record51(const Ricevuta &r, const QString &creditorName)
{
    return CbiLine(QLatin1StringView("51"))
        .number(r.num, 7)
        .numeric(r.numeroRicevuta, 10)
        .alpha(creditorName, 20)
        // Stamp duty paid virtually: province, number and date of the authorisation.
        .blanks(15)
        .blanks(10)
        .blanks(6)
        .blanks(49)
        .finish(Width);
}

QByteArray RibaRecords::record70(int num)
{
    // Circuit indicators, document for the debtor, outcome and notice flags, control keys:
    // all blank, so that the bank applies what it agreed with the company.
    return CbiLine(QLatin1StringView("70"))
        .number(num, 7)
        .blanks(78)
        .blanks(12)
        .blanks(3)
        .blanks(17)
        .finish(Width);
}

QByteArray RibaRecords::recordEF(QByteArrayView ib, int dispositions, qint64 totalCents,
                                 int lineCount)
{
    return CbiLine(QLatin1StringView("EF"))
        .support(ib)
        .blanks(6)
        .number(dispositions, 7)
        .number(totalCents, 15)
        .number(0, 15)
        .number(lineCount, 7)
        .blanks(24)
        .literal(Euro)
        .blanks(6)
        .finish(Width);
}

QString RibaRecords::normalizedTaxCode(const QString &text)
{
    QString code = text.toUpper();
    code.remove(u' ');
    static const QRegularExpression italianVat(QStringLiteral("^IT[0-9]{11}$"));
    if (italianVat.match(code).hasMatch())
        code.remove(0, 2);
    return code;
}

bool RibaRecords::isValidTaxCode(const QString &normalized)
{
    return normalized.size() == 11 ? checkdigits::isValidPartitaIva(normalized)
                                   : checkdigits::isValidCodiceFiscale(normalized);
}

QStringList RibaRecords::referenceLines(const QStringList &documenti, int width, int lines)
{
    if (documenti.isEmpty())
        return {};
    for (qsizetype shown = documenti.size(); shown > 0; --shown) {
        QStringList tokens;
        for (qsizetype i = 0; i < shown; ++i)
            tokens << (i == 0 ? QStringLiteral("Fatt. ") : QString()) + documenti.at(i) +
                          (i + 1 < shown ? QStringLiteral(",") : QString());
        if (shown < documenti.size())
            tokens.last() += QStringLiteral(" e altre %1").arg(documenti.size() - shown);
        const QStringList out = layout(tokens, width, lines);
        if (!out.isEmpty())
            return out;
    }
    return {};
}

} // namespace pg::bankfile
