#include "ribafile.h"

#include "fieldfill.h"
#include "filecommandsupport.h"

#include "core/distintacode.h"
#include "core/money.h"
#include "core/paymenttype.h"
#include "core/vbdate.h"
#include "core/vbformat.h"

#include <QHash>
#include <QRegularExpression>

namespace pg::bankfile {

namespace {

// The payment type of a ricevuta bancaria.
const QString RicevutaBancaria = QStringLiteral("1");

bool isBlank(const QString &text)
{
    return trimBlanks(text).isEmpty();
}

QString customerLabel(const QString &code, const QString &name)
{
    const QString label = QStringLiteral("Cliente ") + trimBlanks(code);
    return isBlank(name) ? label : label + QStringLiteral(" (") + trimBlanks(name) + u')';
}

// The receipt's number: the bill number the suite gave the due item, when it is one;
// otherwise the receivable's progressive number.
QString receiptNumber(const distinta::Riga &row, int num)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,10}$"));
    const QString effetto = trimBlanks(row.des_num_effetto);
    return digits.match(effetto).hasMatch() ? effetto : QString::number(num);
}

} // namespace

RibaFile::RibaFile(archives::ErpSession &erp, const archives::CompanyData &company)
    : m_reader(erp), m_company(company)
{}

void RibaFile::problem(const QString &text)
{
    if (!m_problems.contains(text))
        m_problems << text;
}

QString RibaFile::problemsMessage(const QStringList &problems)
{
    return listedProblems(
        QStringLiteral("Il file RiBa non è stato creato. Correggere i dati seguenti e ripetere:"),
        problems);
}

QString RibaFile::documentOf(const distinta::Riga &row)
{
    QString text = trimBlanks(row.des_num_doc);
    if (CbiRecords::hasSeries(row.des_serie_doc))
        text += u'/' + trimBlanks(row.des_serie_doc);
    text += QStringLiteral(" del ") + dates::ymdToDmy(row.dat_data_doc);
    const int rata = trimBlanks(row.des_num_rata).toInt();
    if (rata > 1)
        text += QStringLiteral(" rata %1").arg(rata);
    return text;
}

QStringList RibaFile::otherPaymentTypes(const distinta::RecordSet<distinta::Riga> &rows)
{
    QStringList lines;
    for (int i = 0; i < rows.size(); ++i) {
        const distinta::Riga &row = rows.at(i);
        const QString type = row.cod_tipo_pag.trimmed();
        if (type == RicevutaBancaria)
            continue;
        const QString name = PaymentTypeName(type);
        lines << customerLabel(row.cod_clifor, QString()) + QStringLiteral(", documento ") +
                     documentOf(row) + QStringLiteral(": ") +
                     (name.isEmpty() ? QStringLiteral("tipo di pagamento '%1'").arg(type) : name);
    }
    return lines;
}

QString RibaFile::otherPaymentTypesMessage(const QStringList &rows)
{
    return listedProblems(QStringLiteral("Il file RiBa raccoglie solo ricevute bancarie: togliere "
                                         "dalla distinta le scadenze seguenti e ripetere:"),
                          rows);
}

void RibaFile::checkHeader(const QString &sia)
{
    static const QRegularExpression siaCode(QStringLiteral("^[A-Z0-9]{5}$"));
    if (sia.isEmpty())
        problem(QStringLiteral("Manca il codice SIA dell'azienda."));
    else if (!siaCode.match(sia).hasMatch())
        problem(QStringLiteral("Il codice SIA '%1' non è valido: deve essere di 5 lettere o "
                               "cifre.")
                    .arg(sia));
    if (!isFiveDigits(m_presentazione.abi) || !isFiveDigits(m_presentazione.cab))
        problem(QStringLiteral("Banca di presentazione: ABI '%1' e CAB '%2' non validi.")
                    .arg(m_presentazione.abi, m_presentazione.cab));
    if (!m_presentation.isValid())
        problem(QStringLiteral("Manca la data della distinta, la data di presentazione."));
    const QString taxCode = RibaRecords::normalizedTaxCode(m_company.taxIdentifier());
    if (taxCode.isEmpty())
        problem(QStringLiteral("Manca il codice fiscale o la partita IVA dell'azienda."));
    else if (!RibaRecords::isValidTaxCode(taxCode))
        problem(QStringLiteral("Il codice fiscale o la partita IVA dell'azienda '%1' non è "
                               "valido.")
                    .arg(taxCode));
    if (isBlank(m_company.ragsoc))
        problem(QStringLiteral("Manca la ragione sociale dell'azienda."));
}

Ricevuta RibaFile::start(const distinta::Riga &row, int num)
{
    Ricevuta r;
    r.num = num;
    r.scadenza = row.dat_data_scad;
    r.cliente = row.cod_clifor;
    r.numeroRicevuta = receiptNumber(row, num);

    const CbiArchiveReader::Anagrafica master = m_reader.anagrafica(row.cod_clifor);
    r.nome = master.beneficiario.ragsoc;
    r.indirizzo = master.indirizzo;
    if (!isBlank(row.cod_sedeamm)) {
        if (const std::optional<Indirizzo> site = m_reader.sede(row.cod_clifor, row.cod_sedeamm))
            r.indirizzo = *site;
    }
    const QString label = customerLabel(row.cod_clifor, r.nome);
    if (!master.found) {
        problem(label + QStringLiteral(": anagrafica non trovata."));
    } else {
        r.codiceFiscale = RibaRecords::normalizedTaxCode(CbiRecords::taxIdentifier(
            master.beneficiario.codFiscale, master.beneficiario.partitaIva));
        if (r.codiceFiscale.isEmpty())
            problem(label + QStringLiteral(": manca il codice fiscale o la partita IVA."));
        else if (!RibaRecords::isValidTaxCode(r.codiceFiscale))
            problem(label + QStringLiteral(": il codice fiscale o la partita IVA '%1' non è "
                                           "valido.")
                                .arg(r.codiceFiscale));
        if (isBlank(r.indirizzo.indirizzo) || isBlank(r.indirizzo.cap) ||
            isBlank(r.indirizzo.citta))
            problem(label + QStringLiteral(": manca l'indirizzo (via, CAP e comune)."));
    }

    // The row's bank and agency are the suite's codes: their ABI and CAB are those of the bank
    // table, or the codes themselves for a bank the table does not hold.
    if (isBlank(row.cod_banca_cli) || isBlank(row.cod_agenzia_cli)) {
        problem(label + QStringLiteral(": manca la banca d'appoggio (ABI e CAB)."));
    } else {
        const CbiArchiveReader::BancaAgenzia bank =
            m_reader.bancaAgenzia(row.cod_banca_cli, row.cod_agenzia_cli);
        r.abi = trimBlanks(bank.found ? bank.abi : row.cod_banca_cli);
        r.cab = trimBlanks(bank.found ? bank.cab : row.cod_agenzia_cli);
        if (!isFiveDigits(r.abi) || !isFiveDigits(r.cab) || r.abi == u"00000")
            problem(label + QStringLiteral(": la banca d'appoggio ABI '%1' CAB '%2' non è "
                                           "valida.")
                                .arg(r.abi, r.cab));
        r.banca = CbiRecords::bankAndAgency(
            m_reader.DecodificaBanca(row.cod_banca_cli),
            m_reader.DecodificaAgenzia(row.cod_banca_cli, row.cod_agenzia_cli));
    }
    return r;
}

void RibaFile::add(Ricevuta &r, const distinta::Riga &row)
{
    const QString label =
        customerLabel(row.cod_clifor, r.nome) + QStringLiteral(", documento ") + documentOf(row);
    const QDate due = dates::fromYmd(row.dat_data_scad);
    if (!due.isValid())
        problem(label + QStringLiteral(": manca la data di scadenza."));
    else if (m_presentation.isValid() && due < m_presentation)
        problem(label + QStringLiteral(": scadenza %1 anteriore alla data di presentazione %2.")
                            .arg(dates::toDmy(due), dates::toDmy(m_presentation)));
    if (!isEuro(row.cod_valuta))
        problem(label +
                QStringLiteral(": valuta '%1' diversa dall'euro.").arg(row.cod_valuta.trimmed()));
    const qint64 cents = row.val_imp_indist_val ? money::toCents(*row.val_imp_indist_val) : 0;
    if (cents <= 0)
        problem(label + QStringLiteral(": importo %1 non positivo.")
                            .arg(vb::format(money::fromCents(cents), u"#,0.00")));
    r.cents += cents;
    const QString document = documentOf(row);
    if (!r.documenti.contains(document))
        r.documenti << document;
}

bool RibaFile::build(const distinta::Testata &header,
                     const distinta::RecordSet<distinta::Riga> &rows, const QString &sia,
                     bool grouped)
{
    m_problems.clear();
    m_ricevute.clear();
    m_totalCents = 0;
    m_presentation = header.dat_data_creazione;
    m_presentazione = RibaPresentazione{
        sia.trimmed().toUpper(),
        trimBlanks(header.cod_codiceabi),
        trimBlanks(header.cod_codicecab),
        header.des_conto_ordinante,
        m_presentation,
        QStringLiteral("RIBA_%1").arg(distintaNumber(header.cod_distinta)),
    };
    checkHeader(m_presentazione.sia);
    if (rows.isEmpty())
        problem(QStringLiteral("La distinta non ha scadenze."));

    // Grouped, the receivable of a customer, bank and due date is the one its first row
    // started.
    QHash<QString, int> receivableOf;
    for (int i = 0; i < rows.size(); ++i) {
        const distinta::Riga &row = rows.at(i);
        const QString key =
            grouped ? QStringList{trimBlanks(row.cod_clifor), trimBlanks(row.cod_banca_cli),
                                  trimBlanks(row.cod_agenzia_cli), trimBlanks(row.dat_data_scad)}
                          .join(u'\x1f')
                    : QString::number(i);
        auto found = receivableOf.constFind(key);
        if (found == receivableOf.cend()) {
            found = receivableOf.insert(key, int(m_ricevute.size()));
            m_ricevute << start(row, int(m_ricevute.size()) + 1);
        }
        add(m_ricevute[*found], row);
    }
    for (const Ricevuta &r : std::as_const(m_ricevute))
        m_totalCents += r.cents;
    return m_problems.isEmpty();
}

QByteArray RibaFile::document() const
{
    const QString creditorTaxCode = RibaRecords::normalizedTaxCode(m_company.taxIdentifier());
    const QByteArray ib = RibaRecords::recordIB(m_presentazione);
    QByteArray out;
    out.reserve((RibaRecords::Width + 2) * (7 * m_ricevute.size() + 2));
    auto line = [&out](const QByteArray &bytes) { out += bytes + "\r\n"; };
    line(ib);
    for (const Ricevuta &r : m_ricevute) {
        line(RibaRecords::record14(r, m_presentazione));
        line(RibaRecords::record20(r.num, m_company));
        line(RibaRecords::record30(r));
        line(RibaRecords::record40(r));
        line(RibaRecords::record50(r, creditorTaxCode));
        line(RibaRecords::record51(r, m_company.ragsoc));
        line(RibaRecords::record70(r.num));
    }
    // Seven lines a receivable, "IB" and "EF".
    const int lineCount = 7 * int(m_ricevute.size()) + 2;
    line(RibaRecords::recordEF(ib, int(m_ricevute.size()), m_totalCents, lineCount));
    return out;
}

} // namespace pg::bankfile
