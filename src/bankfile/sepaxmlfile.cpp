#include "sepaxmlfile.h"

#include "fieldfill.h"
#include "filecommandsupport.h"
#include "ibancheck.h"
#include "sepatext.h"

#include "core/distintacode.h"
#include "core/money.h"
#include "core/vbdate.h"
#include "core/vbformat.h"

#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamWriter>

namespace pg::bankfile {

namespace {

// The lengths of the schema's text types.
constexpr int Max16 = 16;
constexpr int Max35 = 35;
constexpr int Max70 = 70;
constexpr int Max140 = 140;

QString ibanProblem(IbanCheck::Result result, const QString &iban)
{
    switch (result) {
    case IbanCheck::Result::Valid:
        break;
    case IbanCheck::Result::Missing:
        return QStringLiteral("IBAN mancante.");
    case IbanCheck::Result::Malformed:
        return QStringLiteral("IBAN %1 non valido (solo lettere e cifre, paese e cifre di "
                              "controllo all'inizio).")
            .arg(iban);
    case IbanCheck::Result::UnknownCountry:
        return QStringLiteral("IBAN %1 di un paese sconosciuto (%2).").arg(iban, iban.left(2));
    case IbanCheck::Result::WrongLength:
        return QStringLiteral("IBAN %1 di %2 caratteri invece di %3.")
            .arg(iban)
            .arg(iban.size())
            .arg(IbanCheck::lengthOf(QStringView(iban).left(2)));
    case IbanCheck::Result::WrongCheckDigits:
        return QStringLiteral("IBAN %1 con cifre di controllo errate.").arg(iban);
    }
    return {};
}

// An address is Italian when its province is a real one ("EE" is how the suite marks an
// address abroad); only then does the file name the country.
bool isItalianProvince(const QString &province)
{
    static const QRegularExpression twoLetters(QStringLiteral("^[A-Z]{2}$"));
    return twoLetters.match(province).hasMatch() && province != u"EE";
}

void writeText(QXmlStreamWriter &xml, const QString &name, const QString &text)
{
    if (!text.isEmpty())
        xml.writeTextElement(name, text);
}

void writeAddress(QXmlStreamWriter &xml, const QString &street, const QString &postCode,
                  const QString &town, const QString &province)
{
    if (street.isEmpty() && postCode.isEmpty() && town.isEmpty())
        return;
    xml.writeStartElement(QStringLiteral("PstlAdr"));
    writeText(xml, QStringLiteral("StrtNm"), street);
    writeText(xml, QStringLiteral("PstCd"), postCode);
    writeText(xml, QStringLiteral("TwnNm"), town);
    if (isItalianProvince(province)) {
        xml.writeTextElement(QStringLiteral("CtrySubDvsn"), province);
        xml.writeTextElement(QStringLiteral("Ctry"), QStringLiteral("IT"));
    }
    xml.writeEndElement();
}

void writeIbanAccount(QXmlStreamWriter &xml, const QString &element, const QString &iban)
{
    xml.writeStartElement(element);
    xml.writeStartElement(QStringLiteral("Id"));
    xml.writeTextElement(QStringLiteral("IBAN"), iban);
    xml.writeEndElement();
    xml.writeEndElement();
}

} // namespace

SepaXmlFile::SepaXmlFile(archives::ErpSession &erp, const archives::CompanyData &company)
    : m_reader(erp), m_company(company)
{}

bool SepaXmlFile::isValidCuc(const QString &cuc)
{
    static const QRegularExpression code(QStringLiteral("^[A-Z0-9]{8}$"));
    return code.match(cuc).hasMatch();
}

QString SepaXmlFile::amount(qint64 cents)
{
    return QStringLiteral("%1.%2").arg(cents / 100).arg(cents % 100, 2, 10, QChar(u'0'));
}

QString SepaXmlFile::documentReference(const distinta::Riga &row)
{
    QString reference = trimBlanks(row.des_num_doc);
    if (reference.isEmpty())
        return {};
    if (!trimBlanks(row.des_serie_doc).isEmpty())
        reference += u'/' + trimBlanks(row.des_serie_doc);
    QString text = QStringLiteral("Vs.Fatt. ") + reference;
    const QDate date = dates::fromYmd(row.dat_data_doc);
    if (date.isValid())
        text += QStringLiteral(" del ") + dates::toDmy(date);
    return text;
}

void SepaXmlFile::problem(const QString &text)
{
    if (!m_problems.contains(text))
        m_problems << text;
}

QString SepaXmlFile::supplierLabel(const QString &code, const QString &name)
{
    const QString label = u'\'' + code + u'\'';
    return name.isEmpty() ? label : label + QStringLiteral(" (") + name + u')';
}

bool SepaXmlFile::build(const distinta::Testata &header,
                        const distinta::RecordSet<distinta::Riga> &rows, const QString &cuc,
                        const QDateTime &created)
{
    m_problems.clear();
    m_dispositions.clear();
    m_controlSum = 0;
    m_cuc = cuc;
    const qint64 number = distintaNumber(header.cod_distinta);
    m_created = created.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    m_messageId = QStringLiteral("DIST%1-%2")
                      .arg(number)
                      .arg(created.toString(QStringLiteral("yyyyMMddHHmmss")));

    if (SepaText::field(m_company.ragsoc, Max70).isEmpty())
        problem(QStringLiteral("Manca la ragione sociale dell'azienda."));
    m_executionDate =
        header.dat_data_valuta.isValid() ? header.dat_data_valuta.toString(Qt::ISODate) : QString();
    if (m_executionDate.isEmpty())
        problem(QStringLiteral("Manca la data valuta della distinta, la data di esecuzione "
                               "chiesta alla banca."));

    // The presenting bank: its IBAN is debited, its ABI names it to the banks.
    const std::optional<Iban> own =
        m_reader.ibanAzienda(header.cod_abi_banca, header.cod_cab_banca);
    m_debtorIban = own ? IbanCheck::compact(own->paese + own->resto) : QString();
    const IbanCheck::Result ownResult = IbanCheck::check(m_debtorIban);
    if (ownResult != IbanCheck::Result::Valid)
        problem(QStringLiteral("Banca di presentazione: ") + ibanProblem(ownResult, m_debtorIban));
    m_debtorAbi = trimBlanks(header.cod_codiceabi);
    const QString ownAbi = IbanCheck::italianAbi(m_debtorIban);
    if (!isFiveDigits(m_debtorAbi))
        problem(
            QStringLiteral("Banca di presentazione: codice ABI '%1' non valido.").arg(m_debtorAbi));
    else if (!ownAbi.isEmpty() && ownAbi != m_debtorAbi)
        problem(QStringLiteral("Banca di presentazione: l'IBAN %1 è della banca ABI %2, non "
                               "dell'ABI %3 della distinta.")
                    .arg(m_debtorIban, ownAbi, m_debtorAbi));
    if (rows.isEmpty())
        problem(QStringLiteral("La distinta non ha disposizioni."));

    m_dispositions.reserve(rows.size());
    for (int k = 0; k < rows.size(); ++k) {
        const distinta::Riga &row = rows.at(k);
        Disposition d;
        d.supplier = trimBlanks(row.cod_clifor);
        d.endToEndId = QStringLiteral("DIST%1-RIGA%2").arg(number).arg(k + 1);

        const CbiArchiveReader::Anagrafica master = m_reader.anagrafica(row.cod_clifor);
        d.name = SepaText::field(master.beneficiario.ragsoc, Max70);
        const QString label = QStringLiteral("Fornitore ") + supplierLabel(d.supplier, d.name);
        if (!master.found)
            problem(label + QStringLiteral(": anagrafica non trovata."));
        else if (d.name.isEmpty())
            problem(label + QStringLiteral(": ragione sociale mancante."));
        Indirizzo address = master.indirizzo;
        if (!trimBlanks(row.cod_sedeamm).isEmpty()) {
            if (const std::optional<Indirizzo> site =
                    m_reader.sede(row.cod_clifor, row.cod_sedeamm))
                address = *site;
        }
        d.street = SepaText::field(address.indirizzo, Max70);
        d.postCode = SepaText::field(address.cap, Max16);
        d.town = SepaText::field(address.citta, Max35);
        d.province = SepaText::field(address.provincia, Max35);

        d.cents = row.val_imp_indist_val ? money::toCents(*row.val_imp_indist_val) : 0;
        if (d.cents <= 0)
            problem(QStringLiteral("Disposizione %1, %2: importo %3 non pagabile.")
                        .arg(k + 1)
                        .arg(label.at(0).toLower() + label.mid(1),
                             vb::format(money::fromCents(d.cents), u"#,0.00")));
        m_controlSum += d.cents;

        const QString kind =
            trimBlanks(row.flg_ind_clifor).isEmpty() ? QStringLiteral("F") : row.flg_ind_clifor;
        const CbiArchiveReader::BancaCliFor bank = m_reader.bancaCliFor(kind, row.cod_clifor);
        d.iban = IbanCheck::compact(bank.iban.paese + bank.iban.resto);
        checkCreditorIban(d, row);

        d.remittance = SepaText::field(row.des_scadenza, Max140);
        if (d.remittance.isEmpty())
            d.remittance = SepaText::field(documentReference(row), Max140);
        m_dispositions.append(d);
    }

    if (money::toCents(header.val_importo_totale) != m_controlSum)
        problem(QStringLiteral("Il totale della distinta (%1) è diverso dalla somma delle "
                               "disposizioni (%2).")
                    .arg(vb::format(header.val_importo_totale, u"#,0.00"),
                         vb::format(money::fromCents(m_controlSum), u"#,0.00")));
    return m_problems.isEmpty();
}

void SepaXmlFile::checkCreditorIban(const Disposition &disposition, const distinta::Riga &row)
{
    const QString label =
        QStringLiteral("Fornitore ") + supplierLabel(disposition.supplier, disposition.name);
    const IbanCheck::Result result = IbanCheck::check(disposition.iban);
    if (result != IbanCheck::Result::Valid) {
        problem(label + QStringLiteral(": ") + ibanProblem(result, disposition.iban));
        return;
    }
    const QString abi = IbanCheck::italianAbi(disposition.iban);
    if (abi.isEmpty())
        return;
    const QString cab = IbanCheck::italianCab(disposition.iban);
    // The row's bank and agency are the suite's codes: their ABI and CAB are those of the
    // bank table, or the codes themselves for a bank the table does not hold.
    const CbiArchiveReader::BancaAgenzia bank =
        m_reader.bancaAgenzia(row.cod_banca_cli, row.cod_agenzia_cli);
    const QString rowAbi = trimBlanks(bank.found ? bank.abi : row.cod_banca_cli);
    const QString rowCab = trimBlanks(bank.found ? bank.cab : row.cod_agenzia_cli);
    if (abi != rowAbi || cab != rowCab)
        problem(label + QStringLiteral(": l'IBAN %1 è della banca ABI %2 CAB %3, diversa da "
                                       "quella della scadenza (ABI %4 CAB %5).")
                            .arg(disposition.iban, abi, cab, rowAbi, rowCab));
}

QString SepaXmlFile::problemsMessage(const QStringList &problems)
{
    return listedProblems(QStringLiteral("Il file XML dei bonifici non è stato creato. Correggere "
                                         "i dati seguenti e ripetere:"),
                          problems);
}

QByteArray SepaXmlFile::document() const
{
    QByteArray bytes;
    bytes.reserve(1024 + 900 * m_dispositions.size());
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeDefaultNamespace(Namespace);
    xml.writeStartElement(Namespace, QStringLiteral("CBIPaymentRequest"));

    xml.writeStartElement(QStringLiteral("GrpHdr"));
    xml.writeTextElement(QStringLiteral("MsgId"), m_messageId);
    xml.writeTextElement(QStringLiteral("CreDtTm"), m_created);
    xml.writeTextElement(QStringLiteral("NbOfTxs"), QString::number(m_dispositions.size()));
    xml.writeTextElement(QStringLiteral("CtrlSum"), amount(m_controlSum));
    xml.writeStartElement(QStringLiteral("InitgPty"));
    writeText(xml, QStringLiteral("Nm"), SepaText::field(m_company.ragsoc, Max70));
    xml.writeStartElement(QStringLiteral("Id"));
    xml.writeStartElement(QStringLiteral("OrgId"));
    xml.writeStartElement(QStringLiteral("Othr"));
    xml.writeTextElement(QStringLiteral("Id"), m_cuc);
    xml.writeTextElement(QStringLiteral("Issr"), QStringLiteral("CBI"));
    xml.writeEndElement(); // Othr
    xml.writeEndElement(); // OrgId
    xml.writeEndElement(); // Id
    xml.writeEndElement(); // InitgPty
    xml.writeEndElement(); // GrpHdr

    xml.writeStartElement(QStringLiteral("PmtInf"));
    xml.writeTextElement(QStringLiteral("PmtInfId"), m_messageId);
    xml.writeTextElement(QStringLiteral("PmtMtd"), QStringLiteral("TRF"));
    xml.writeStartElement(QStringLiteral("PmtTpInf"));
    xml.writeStartElement(QStringLiteral("SvcLvl"));
    xml.writeTextElement(QStringLiteral("Cd"), QStringLiteral("SEPA"));
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("ReqdExctnDt"));
    xml.writeTextElement(QStringLiteral("Dt"), m_executionDate);
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("Dbtr"));
    xml.writeTextElement(QStringLiteral("Nm"), SepaText::field(m_company.ragsoc, Max70));
    writeAddress(xml, SepaText::field(m_company.indirizzo, Max70),
                 SepaText::field(m_company.cap, Max16), SepaText::field(m_company.citta, Max35),
                 SepaText::field(m_company.provincia, Max35));
    xml.writeEndElement();
    writeIbanAccount(xml, QStringLiteral("DbtrAcct"), m_debtorIban);
    xml.writeStartElement(QStringLiteral("DbtrAgt"));
    xml.writeStartElement(QStringLiteral("FinInstnId"));
    xml.writeStartElement(QStringLiteral("ClrSysMmbId"));
    xml.writeTextElement(QStringLiteral("MmbId"), m_debtorAbi);
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeTextElement(QStringLiteral("ChrgBr"), QStringLiteral("SLEV"));

    for (int k = 0; k < m_dispositions.size(); ++k) {
        const Disposition &d = m_dispositions.at(k);
        xml.writeStartElement(QStringLiteral("CdtTrfTxInf"));
        xml.writeStartElement(QStringLiteral("PmtId"));
        xml.writeTextElement(QStringLiteral("InstrId"), QString::number(k + 1));
        xml.writeTextElement(QStringLiteral("EndToEndId"), d.endToEndId);
        xml.writeEndElement();
        xml.writeStartElement(QStringLiteral("PmtTpInf"));
        xml.writeStartElement(QStringLiteral("CtgyPurp"));
        xml.writeTextElement(QStringLiteral("Cd"), QStringLiteral("SUPP"));
        xml.writeEndElement();
        xml.writeEndElement();
        xml.writeStartElement(QStringLiteral("Amt"));
        xml.writeStartElement(QStringLiteral("InstdAmt"));
        xml.writeAttribute(QStringLiteral("Ccy"), QStringLiteral("EUR"));
        xml.writeCharacters(amount(d.cents));
        xml.writeEndElement();
        xml.writeEndElement();
        xml.writeStartElement(QStringLiteral("Cdtr"));
        xml.writeTextElement(QStringLiteral("Nm"), d.name);
        writeAddress(xml, d.street, d.postCode, d.town, d.province);
        xml.writeEndElement();
        writeIbanAccount(xml, QStringLiteral("CdtrAcct"), d.iban);
        if (!d.remittance.isEmpty()) {
            xml.writeStartElement(QStringLiteral("RmtInf"));
            xml.writeTextElement(QStringLiteral("Ustrd"), d.remittance);
            xml.writeEndElement();
        }
        xml.writeEndElement(); // CdtTrfTxInf
    }
    xml.writeEndElement(); // PmtInf
    xml.writeEndElement(); // CBIPaymentRequest
    xml.writeEndDocument();
    return bytes;
}

QString SepaXmlFile::describe(const XsdValidator::Issue &issue) const
{
    static const QRegularExpression transaction(
        QStringLiteral("/CdtTrfTxInf(?:\\[(\\d+)\\])?(/.*)?$"));
    QString where;
    QString element = issue.path;
    const QRegularExpressionMatch m = transaction.match(issue.path);
    if (m.hasMatch()) {
        const int k = m.captured(1).isEmpty() ? 1 : m.captured(1).toInt();
        where = QStringLiteral("disposizione %1").arg(k);
        if (k >= 1 && k <= m_dispositions.size()) {
            const Disposition &d = m_dispositions.at(k - 1);
            where += QStringLiteral(", fornitore ") + supplierLabel(d.supplier, d.name);
        }
        element = QStringLiteral("CdtTrfTxInf") + m.captured(2);
    }
    QString text = element.isEmpty()
                       ? QStringLiteral("Riga %1").arg(issue.line)
                       : QStringLiteral("Elemento %1 (riga %2)").arg(element).arg(issue.line);
    if (!where.isEmpty())
        text += QStringLiteral(", ") + where;
    return text + QStringLiteral(": ") + issue.message;
}

QString SepaXmlFile::invalidMessage(const QList<XsdValidator::Issue> &issues) const
{
    QStringList described;
    for (const XsdValidator::Issue &issue : issues)
        described << describe(issue);
    return listedProblems(QStringLiteral("Il file XML dei bonifici non è stato creato: non è "
                                         "conforme allo schema CBI."),
                          described);
}

} // namespace pg::bankfile
