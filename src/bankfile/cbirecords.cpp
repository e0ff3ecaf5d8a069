#include "cbirecords.h"

#include "cbiline.h"
#include "fieldfill.h"

#include "core/apperror.h"
#include "core/cp1252.h"
#include "core/vbdate.h"

namespace pg::bankfile {

namespace {

// Letters and numbers of a text field, through the code page, left-aligned in n.
QString alphaText(const QString &text, int n)
{
    return RiempiCampoA(CbiRecords::plain(text), n);
}

} // namespace

bool Iban::isComplete() const
{
    return !trimBlanks(paese).isEmpty() && !trimBlanks(resto).isEmpty();
}

QString CbiRecords::plain(const QString &text)
{
    QString out = cp1252::toCodePage(text);
    for (QChar &c : out)
        if (c.unicode() < 0x20 || c.unicode() == 0x7F)
            c = u' ';
    return out;
}

QString CbiRecords::taxIdentifier(const QString &first, const QString &second)
{
    return trimBlanks(first).isEmpty() ? second : first;
}

bool CbiRecords::hasSeries(const QString &serie)
{
    // The suite writes a single blank for a document without a series; any other text, an
    // empty one included, is a series and follows the number after a "/".
    return serie != u" ";
}

QString CbiRecords::cityAndProvince(const QString &citta, const QString &provincia)
{
    return trimBlanks(plain(citta)) + u' ' + plain(provincia);
}

QString CbiRecords::bankAndAgency(const QString &nomeBanca, const QString &nomeAgenzia)
{
    return trimBlanks(alphaText(nomeBanca, 50)) + u' ' + plain(nomeAgenzia);
}

QByteArray CbiRecords::recordPC(const distinta::Testata &header)
{
    return CbiLine(QLatin1StringView("PC"))
        .alpha(header.cod_sia_banca, 5)
        .alpha(header.cod_codiceabi, 5)
        .fixed(dates::toDdmmyy(header.dat_data_creazione), 6)
        // The support name: the code as stored, leading blanks and all, before the references.
        .alpha(header.cod_distinta + u'_' + header.des_riferimenti, 20)
        .blanks(6)
        .blanks(68)
        .literal(QLatin1StringView("E"))
        .blanks(1)
        .blanks(5)
        .finish(Width);
}

QByteArray CbiRecords::record10(int num, QByteArrayView creationDate,
                                const distinta::Testata &header, const distinta::Riga &row,
                                const QString &abi, const QString &cab)
{
    if (!row.val_imp_indist_val)
        throw AppError(94, QStringLiteral("Invalid use of Null"));
    return CbiLine(QLatin1StringView("10"))
        .number(num, 7)
        .blanks(6)
        .copied(creationDate, 6)
        .fixed(dates::toDdmmyy(header.dat_data_valuta), 6)
        .literal(QLatin1StringView("48000"))
        .fixed(RiempiCampoEuro(*row.val_imp_indist_val, 13), 13)
        .literal(QLatin1StringView("+"))
        .numeric(header.cod_codiceabi, 5)
        .numeric(header.cod_codicecab, 5)
        // The ordering account left-aligned with blanks, the beneficiary's right-aligned with
        // zeros after being cut to 12 on the right: the two are meant to differ.
        .alpha(header.des_conto_ordinante, 12)
        .numeric(abi, 5)
        .numeric(cab, 5)
        .numeric(alphaText(row.des_num_cc, 12), 12)
        .alpha(header.cod_sia_banca, 5)
        .literal(QLatin1StringView("5"))
        .alpha(row.cod_clifor, 16)
        .blanks(1)
        .blanks(5)
        .literal(QLatin1StringView("E"))
        .finish(Width);
}

QByteArray CbiRecords::recordIban(QLatin1StringView type, int num, const Iban &iban)
{
    return CbiLine(type)
        .number(num, 7)
        .alpha(iban.paese, 4)
        .alpha(iban.resto, 30)
        .blanks(76)
        .finish(Width);
}

QByteArray CbiRecords::record20(int num, const archives::CompanyData &company)
{
    return CbiLine(QLatin1StringView("20"))
        .number(num, 7)
        .alpha(company.ragsoc, 30)
        .alpha(company.indirizzo, 30)
        .alpha(cityAndProvince(company.citta, company.provincia), 30)
        .alpha(taxIdentifier(company.codFiscale, company.partitaIva), 16)
        .blanks(4)
        .finish(Width);
}

QByteArray CbiRecords::record30(int num, const Beneficiario &beneficiario)
{
    // The name field is cut in place to its first 30 characters and blank-filled to its 40
    // again; the second part of the name is then its last 10 characters, which are always
    // blank. The file has always been written so.
    const QString name = plain(beneficiario.ragsoc);
    return CbiLine(QLatin1StringView("30"))
        .number(num, 7)
        .alpha(QStringView(name).left(30), 30)
        .blanks(30)
        .blanks(30)
        .alpha(taxIdentifier(beneficiario.codFiscale, beneficiario.partitaIva), 16)
        .blanks(4)
        .finish(Width);
}

QByteArray CbiRecords::record40(int num, const Indirizzo &indirizzo, const QString &nomeBanca,
                                const QString &nomeAgenzia)
{
    return CbiLine(QLatin1StringView("40"))
        .number(num, 7)
        .alpha(indirizzo.indirizzo, 30)
        .alpha(indirizzo.cap, 5)
        .alpha(cityAndProvince(indirizzo.citta, indirizzo.provincia), 25)
        .alpha(bankAndAgency(nomeBanca, nomeAgenzia), 50)
        .finish(Width);
}

QByteArray CbiRecords::record50(int num, const distinta::Riga &row, bool modDescr)
{
    QString documento = trimBlanks(plain(row.des_num_doc));
    if (hasSeries(row.des_serie_doc))
        documento += u'/' + plain(row.des_serie_doc);
    CbiLine line(QLatin1StringView("50"));
    line.number(num, 7).alpha(documento, 24).fixed(dates::ymdToDdmmyy(row.dat_data_doc), 6);
    if (modDescr)
        line.alpha(row.des_scadenza, 30);
    else
        line.blanks(30);
    return line.blanks(30).blanks(20).finish(Width);
}

QByteArray CbiRecords::record70(int num)
{
    // Blank (15), (8), (2) and (1) twice each, (1) and (8) once: 48 characters in all.
    return CbiLine(QLatin1StringView("70"))
        .number(num, 7)
        .blanks(15 + 8 + 2 + 1 + 2 + 1 + 1 + 8)
        .finish(Width70);
}

QByteArray CbiRecords::recordEF(QByteArrayView pc, const distinta::Testata &header, int lineCount)
{
    return CbiLine(QLatin1StringView("EF"))
        .support(pc)
        .blanks(6)
        .number(header.num_numero_disp, 7)
        .literal(QLatin1StringView("000000000000000"))
        .fixed(RiempiCampoEuro(header.val_importo_totale, 15), 15)
        .number(lineCount, 7)
        .blanks(24)
        .literal(QLatin1StringView("E"))
        .blanks(6)
        .finish(Width);
}

} // namespace pg::bankfile
