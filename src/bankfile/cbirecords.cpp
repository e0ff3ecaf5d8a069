#include "cbirecords.h"

#include "fieldfill.h"

#include "core/apperror.h"
#include "core/cp1252.h"
#include "core/vbdate.h"

#include <algorithm>

namespace pg::bankfile {

namespace {

QString blanks(int n)
{
    return QString(n, u' ');
}

// A record's first three characters (a blank and its type), with room for the whole line:
// the fields are then appended in place.
QString begin(QStringView type)
{
    QString line;
    line.reserve(CbiRecords::Width);
    line += u' ';
    line += type;
    return line;
}

void addBlanks(QString &line, int n)
{
    line.resize(line.size() + n, u' ');
}

// A field that is not filled by one of the fillers (a date, a copied field): exactly n
// characters, blank-filled or cut on the right.
QString fixed(const QString &text, int n)
{
    return CbiRecords::plain(text).leftJustified(n, u' ', true);
}

// Letters and numbers of a text field, through the code page, left-aligned in n.
QString alpha(const QString &text, int n)
{
    return RiempiCampoA(CbiRecords::plain(text), n);
}

QString numeric(const QString &text, int n)
{
    return RiempiCampoN(CbiRecords::plain(text), n);
}

// The characters of a text as the file holds them when the code page has every one of them
// (the usual case): itself, a control character as a blank. Without its leading and trailing
// blanks, as the fillers take it.
struct PlainView
{
    QStringView text;
    bool plain = true;

    explicit PlainView(const QString &source)
    {
        for (QChar c : source)
            if (!cp1252::isRepresentable(c.unicode())) {
                plain = false;
                return;
            }
        qsizetype begin = 0;
        qsizetype end = source.size();
        while (begin < end && at(source, begin) == u' ')
            ++begin;
        while (end > begin && at(source, end - 1) == u' ')
            --end;
        text = QStringView(source).sliced(begin, end - begin);
    }

    static QChar at(QStringView text, qsizetype i)
    {
        const QChar c = text.at(i);
        return c.unicode() < 0x20 || c.unicode() == 0x7F ? QChar(u' ') : c;
    }
    void appendTo(QString &line, qsizetype from, qsizetype count) const
    {
        for (qsizetype i = from; i < from + count; ++i)
            line += at(text, i);
    }
};

// alpha() and numeric() appended to the line in place, without the intermediate texts.
void addAlpha(QString &line, const QString &text, int n)
{
    const PlainView view(text);
    if (!view.plain) {
        line += alpha(text, n);
        return;
    }
    const qsizetype used = std::min<qsizetype>(view.text.size(), n);
    view.appendTo(line, 0, used);
    line.resize(line.size() + (n - used), u' ');
}

void addNumeric(QString &line, const QString &text, int n)
{
    const PlainView view(text);
    if (!view.plain) {
        line += numeric(text, n);
        return;
    }
    const qsizetype size = view.text.size();
    if (size >= n) {
        view.appendTo(line, size - n, n);
        return;
    }
    line.resize(line.size() + (n - size), u'0');
    view.appendTo(line, 0, size);
}

// City and province as one text. The city is taken without its trailing blanks, so that the
// province follows it after one blank ("MILANO MI") and stays inside the field.
QString cityAndProvince(const QString &citta, const QString &provincia)
{
    return trimBlanks(CbiRecords::plain(citta)) + u' ' + CbiRecords::plain(provincia);
}

QString checked(QString line, int width)
{
    // The fillers make every field its width; a line of any other length is a fault of the
    // program and must never reach the bank.
    if (line.size() != width)
        throw AppError(
            AppError::Overflow,
            QStringLiteral("Record CBI di %1 caratteri invece di %2").arg(line.size()).arg(width));
    return line;
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
    return !trimBlanks(serie).isEmpty();
}

QString CbiRecords::progressivo(int num)
{
    return RiempiSinistra(QString::number(num), 7, QStringLiteral("0"));
}

QString CbiRecords::recordPC(const distinta::Testata &header)
{
    QString line = begin(u"PC");
    addAlpha(line, header.cod_sia_banca, 5);
    addAlpha(line, header.cod_codiceabi, 5);
    line += fixed(dates::toDdmmyy(header.dat_data_creazione), 6);
    // The support name: the code as stored, leading blanks and all, before the references.
    addAlpha(line, header.cod_distinta + u'_' + header.des_riferimenti, 20);
    addBlanks(line, 6);
    addBlanks(line, 68);
    line += QStringLiteral("E");
    addBlanks(line, 1);
    addBlanks(line, 5);
    return checked(line, Width);
}

QString CbiRecords::record10(int num, const QString &creationDate, const distinta::Testata &header,
                             const distinta::Riga &row, const QString &abi, const QString &cab)
{
    if (!row.val_imp_indist_val)
        throw AppError(94, QStringLiteral("Invalid use of Null"));
    QString line = begin(u"10");
    line += progressivo(num);
    addBlanks(line, 6);
    line += fixed(creationDate, 6);
    line += fixed(dates::toDdmmyy(header.dat_data_valuta), 6);
    line += QString::number(48000);
    line += RiempiCampoEuro(*row.val_imp_indist_val, 13);
    line += QStringLiteral("+");
    addNumeric(line, header.cod_codiceabi, 5);
    addNumeric(line, header.cod_codicecab, 5);
    // The ordering account left-aligned with blanks, the beneficiary's right-aligned with
    // zeros after being cut to 12 on the right: the two are meant to differ.
    addAlpha(line, header.des_conto_ordinante, 12);
    addNumeric(line, abi, 5);
    addNumeric(line, cab, 5);
    line += (QString(20, u'0') + trimBlanks(alpha(row.des_num_cc, 12))).right(12);
    addAlpha(line, header.cod_sia_banca, 5);
    line += QStringLiteral("5");
    addAlpha(line, row.cod_clifor, 16);
    addBlanks(line, 1);
    addBlanks(line, 5);
    line += QStringLiteral("E");
    return checked(line, Width);
}

QString CbiRecords::recordIban(const QString &type, int num, const Iban &iban)
{
    QString line = begin(type);
    line += progressivo(num);
    addAlpha(line, iban.paese, 4);
    addAlpha(line, iban.resto, 30);
    addBlanks(line, 76);
    return checked(line, Width);
}

QString CbiRecords::record20(int num, const archives::CompanyData &company)
{
    QString line = begin(u"20");
    line += progressivo(num);
    addAlpha(line, company.ragsoc, 30);
    addAlpha(line, company.indirizzo, 30);
    addAlpha(line, cityAndProvince(company.citta, company.provincia), 30);
    addAlpha(line, taxIdentifier(company.codFiscale, company.partitaIva), 16);
    addBlanks(line, 4);
    return checked(line, Width);
}

QString CbiRecords::record30(int num, const Beneficiario &beneficiario)
{
    // The name field is cut in place to its first 30 characters and blank-filled to its 40
    // again; the second part of the name is then its last 10 characters, which are always
    // blank. The file has always been written so.
    const QString name = plain(beneficiario.ragsoc).left(30).leftJustified(40, u' ');
    QString line = begin(u"30");
    line += progressivo(num);
    addAlpha(line, name.left(30), 30);
    addAlpha(line, name.right(10), 30);
    addBlanks(line, 30);
    addAlpha(line, taxIdentifier(beneficiario.codFiscale, beneficiario.partitaIva), 16);
    addBlanks(line, 4);
    return checked(line, Width);
}

QString CbiRecords::record40(int num, const Indirizzo &indirizzo, const QString &nomeBanca,
                             const QString &nomeAgenzia)
{
    QString line = begin(u"40");
    line += progressivo(num);
    addAlpha(line, indirizzo.indirizzo, 30);
    addAlpha(line, indirizzo.cap, 5);
    addAlpha(line, cityAndProvince(indirizzo.citta, indirizzo.provincia), 25);
    const QString banca = alpha(nomeBanca, 50);
    addAlpha(line, trimBlanks(banca) + u' ' + plain(nomeAgenzia), 50);
    return checked(line, Width);
}

QString CbiRecords::record50(int num, const distinta::Riga &row, bool modDescr)
{
    QString documento = trimBlanks(plain(row.des_num_doc));
    if (hasSeries(row.des_serie_doc))
        documento += u'/' + plain(row.des_serie_doc);
    QString line = begin(u"50");
    line += progressivo(num);
    addAlpha(line, documento, 24);
    line += fixed(dates::ymdToDdmmyy(row.dat_data_doc), 6);
    line += modDescr ? alpha(row.des_scadenza, 30) : blanks(30);
    addBlanks(line, 30);
    addBlanks(line, 20);
    return checked(line, Width);
}

QString CbiRecords::record70(int num)
{
    // Blank (15), (8), (2) and (1) twice each, (1) and (8) once: 48 characters in all.
    QString line = begin(u"70");
    line += progressivo(num);
    addBlanks(line, 15 + 8 + 2 + 1 + 2 + 1 + 1 + 8);
    return checked(line, Width70);
}

QString CbiRecords::recordEF(const QString &pc, const distinta::Testata &header, int lineCount)
{
    QString line = begin(u"EF");
    line += pc.mid(3, 5);
    line += pc.mid(8, 5);
    line += pc.mid(13, 6);
    line += pc.mid(19, 20);
    addBlanks(line, 6);
    line += RiempiCampoN(QString::number(header.num_numero_disp), 7);
    line += QString(15, u'0');
    line += RiempiCampoEuro(header.val_importo_totale, 15);
    line += RiempiSinistra(QString::number(lineCount), 7, QStringLiteral("0"));
    addBlanks(line, 24);
    line += QStringLiteral("E");
    addBlanks(line, 6);
    return checked(line, Width);
}

} // namespace pg::bankfile
