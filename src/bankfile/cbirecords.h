#pragma once

#include "archives/store/companydata.h"
#include "distinta/riga.h"
#include "distinta/testata.h"

#include <QByteArray>
#include <QString>

namespace pg::bankfile {

// The IBAN of a bank record, as the suite keeps it: country and check digits (4) and the
// rest (30).
struct Iban
{
    QString paese;
    QString resto;

    // Usable in the file: both parts hold something besides blanks.
    bool isComplete() const;
};

// The beneficiary as the suite's master record describes it: name (40) and the two tax
// identifiers (16 each).
struct Beneficiario
{
    QString ragsoc;
    QString codFiscale;
    QString partitaIva;
};

// An address: of the beneficiary's master record, or of its administrative site.
struct Indirizzo
{
    QString indirizzo;
    QString cap;
    QString citta;
    QString provincia;
};

// The records of the CBI "Bonifici" file, one line each as the bytes the file holds
// (Windows-1252, no line end), built field by field at their fixed positions. Every text that
// comes from data is brought into the file's code page (a character that Windows-1252 lacks
// becomes one substitute byte, a control character a blank), so that every line is exactly
// its width in bytes: 120, and 48 for the closing record "70" of a disposition.
class CbiRecords
{
public:
    static constexpr int Width = 120;
    static constexpr int Width70 = 48;

    // The support header "PC": the SIA code, the presenting bank's ABI, the creation date and
    // the support name (the distinta's code as stored, "_" and the references, cut to 20).
    static QByteArray recordPC(const distinta::Testata &header);

    // The disposition "10". creationDate is bytes 14-19 of "PC"; abi and cab are the
    // beneficiary's bank and branch numbers ("00000" when unknown). A row without an amount
    // in distinta cannot be paid: error 94, "Invalid use of Null".
    static QByteArray record10(int num, QByteArrayView creationDate,
                               const distinta::Testata &header, const distinta::Riga &row,
                               const QString &abi, const QString &cab);

    // "16" (the presenting bank's IBAN) and "17" (the beneficiary's) share one layout.
    static QByteArray recordIban(QLatin1StringView type, int num, const Iban &iban);

    // "20": the ordering company.
    static QByteArray record20(int num, const archives::CompanyData &company);

    // "30": the beneficiary's name and tax identifier.
    static QByteArray record30(int num, const Beneficiario &beneficiario);

    // "40": the beneficiary's address and the names of its bank and agency.
    static QByteArray record40(int num, const Indirizzo &indirizzo, const QString &nomeBanca,
                               const QString &nomeAgenzia);

    // "50": the document paid and, when descriptions are managed, the row's description.
    static QByteArray record50(int num, const distinta::Riga &row, bool modDescr);

    // "70": the short closing record of a disposition.
    static QByteArray record70(int num);

    // The trailer "EF": the support fields of "PC", the header's number of dispositions and
    // total as stored, and the number of lines of the file.
    static QByteArray recordEF(QByteArrayView pc, const distinta::Testata &header, int lineCount);

    // A text from data as the file can hold it: one code-page character per character,
    // control characters (line ends among them) as blanks.
    static QString plain(const QString &text);

    // The tax identifier the bank wants: the first when it holds more than blanks, else the
    // second.
    static QString taxIdentifier(const QString &first, const QString &second);

    // True when a document has a series: anything but the single blank with which the suite
    // keeps "no series" (an empty text too). The document is then named number + "/" + series.
    static bool hasSeries(const QString &serie);

    // City and province as one text. The city is taken without its trailing blanks, so that
    // the province follows it after one blank ("MILANO MI") and stays inside the field.
    static QString cityAndProvince(const QString &citta, const QString &provincia);

    // The bank and its agency named in one field of 50: the bank's name cut to the field and
    // trimmed, one blank, the agency's name.
    static QString bankAndAgency(const QString &nomeBanca, const QString &nomeAgenzia);
};

} // namespace pg::bankfile
