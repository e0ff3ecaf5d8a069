#include "bonificifile.h"

#include "fieldfill.h"

#include "core/apperror.h"
#include "core/filewriteerror.h"
#include "core/prompter.h"

#include <QFileDevice>

namespace pg::bankfile {

namespace {

bool differs(const QString &a, const QString &b)
{
    return trimBlanks(a) != trimBlanks(b);
}

} // namespace

class BonificiFile::Output
{
public:
    explicit Output(QIODevice &device) : m_device(device) { m_buffer.reserve(BlockSize); }

    void line(const QByteArray &bytes)
    {
        m_buffer += bytes;
        m_buffer += "\r\n";
        if (m_buffer.size() >= BlockSize)
            flush();
    }

    void flush()
    {
        if (m_device.write(m_buffer) != m_buffer.size()) {
            const auto *file = qobject_cast<QFileDevice *>(&m_device);
            throw AppError(AppError::PathFileAccess,
                           pathFileAccessText(file ? file->fileName() : QString(),
                                              fileWriteProblem(m_device, m_buffer.size())));
        }
        m_buffer.clear();
    }

private:
    static constexpr qsizetype BlockSize = 64 * 1024;
    QIODevice &m_device;
    QByteArray m_buffer;
};

BonificiFile::BonificiFile(archives::ErpSession &erp, const archives::CompanyData &company,
                           bool modDescr)
    : m_reader(erp), m_company(company), m_modDescr(modDescr)
{}

QString BonificiFile::messaggio16()
{
    return QStringLiteral(
        "Il Record 16 dei Bonifici non viene generato perchè i dati IBAN sono inesistenti o non "
        "validi, verificare i dati in Banche Azienda relativamente alla banca di presentazione.");
}

QString BonificiFile::messaggio17(Stato17 stato, const QString &supplierCode)
{
    if (stato == Stato17::BancaDiversa)
        return QStringLiteral("Il Record 17 dei Bonifici non viene generato perchè la "
                              "banca/agenzia utilizzata è diversa da quella codificata in "
                              "anagrafica del fornitore '") +
               supplierCode + QStringLiteral("'.");
    return QStringLiteral("Il Record 17 dei Bonifici non viene generato perchè i dati IBAN sono "
                          "inesistenti o non validi, verificare i dati nell'anagrafica del "
                          "fornitore '") +
           supplierCode + QStringLiteral("'.");
}

void BonificiFile::build(const distinta::Testata &header,
                         const distinta::RecordSet<distinta::Riga> &rows,
                         const std::function<void(int)> &afterDisposition)
{
    m_header = header;
    for (QByteArrayList *records : {&m_r10, &m_r16, &m_r17, &m_r20, &m_r30, &m_r40, &m_r50, &m_r70})
        records->clear();
    m_stato17.clear();
    m_fornitori.clear();
    m_pc = CbiRecords::recordPC(header);
    const QByteArray creationDate = m_pc.mid(13, 6);

    // The presenting bank is the same for every disposition: its IBAN is read once, and
    // whether it is usable decides every "16" line of the file.
    const std::optional<Iban> ibanAzienda =
        rows.isEmpty() ? std::nullopt
                       : m_reader.ibanAzienda(header.cod_abi_banca, header.cod_cab_banca);
    m_valido16 = ibanAzienda && ibanAzienda->isComplete();

    for (int k = 0; k < rows.size(); ++k) {
        const distinta::Riga &row = rows.at(k);
        const int num = k + 1;

        const CbiArchiveReader::BancaAgenzia bank =
            m_reader.bancaAgenzia(row.cod_banca_cli, row.cod_agenzia_cli);
        m_r10 << CbiRecords::record10(num, creationDate, header, row,
                                      bank.found ? bank.abi : QStringLiteral("00000"),
                                      bank.found ? bank.cab : QStringLiteral("00000"));
        m_r16 << (m_valido16 ? CbiRecords::recordIban(QLatin1StringView("16"), num, *ibanAzienda)
                             : QByteArray());

        // The beneficiary's IBAN: the supplier's bank record must exist, agree with the bank
        // data of the row and hold both parts of the IBAN.
        Stato17 stato = Stato17::Valido;
        const CbiArchiveReader::BancaCliFor supplierBank =
            m_reader.bancaCliFor(QStringLiteral("F"), row.cod_clifor);
        if (!supplierBank.found)
            stato = Stato17::Mancante;
        if (differs(supplierBank.banca, row.cod_banca_cli) ||
            differs(supplierBank.agenzia, row.cod_agenzia_cli) ||
            differs(supplierBank.conto, row.des_num_cc))
            stato = Stato17::BancaDiversa;
        if (!supplierBank.iban.isComplete())
            stato = Stato17::Mancante;
        m_stato17 << stato;
        m_fornitori << row.cod_clifor;
        m_r17 << (stato == Stato17::Valido
                      ? CbiRecords::recordIban(QLatin1StringView("17"), num, supplierBank.iban)
                      : QByteArray());

        m_r20 << CbiRecords::record20(num, m_company);

        const CbiArchiveReader::Anagrafica master = m_reader.anagrafica(row.cod_clifor);
        if (!master.found)
            msgBox(QStringLiteral("Si è verificato un errore in ricerca clienti"));
        m_r30 << CbiRecords::record30(num, master.beneficiario);

        Indirizzo address = master.indirizzo;
        if (!trimBlanks(row.cod_sedeamm).isEmpty()) {
            if (const std::optional<Indirizzo> site =
                    m_reader.sede(row.cod_clifor, row.cod_sedeamm))
                address = *site;
        }
        m_r40 << CbiRecords::record40(
            num, address, m_reader.DecodificaBanca(row.cod_banca_cli),
            m_reader.DecodificaAgenzia(row.cod_banca_cli, row.cod_agenzia_cli));
        m_r50 << CbiRecords::record50(num, row, m_modDescr);
        m_r70 << CbiRecords::record70(num);

        if (afterDisposition)
            afterDisposition(k);
    }
}

int BonificiFile::write(QIODevice &device)
{
    const int n = dispositions();
    int written16 = 0;
    int written17 = 0;
    bool told16 = false;

    Output out(device);
    out.line(m_pc);
    for (int k = 0; k < n; ++k) {
        out.line(m_r10.at(k));
        if (m_valido16) {
            out.line(m_r16.at(k));
            ++written16;
        } else if (!told16) {
            msgBox(messaggio16());
            told16 = true;
        }
        if (m_stato17.at(k) == Stato17::Valido) {
            out.line(m_r17.at(k));
            ++written17;
        } else {
            msgBox(messaggio17(m_stato17.at(k), m_fornitori.at(k)));
        }
        out.line(m_r20.at(k));
        out.line(m_r30.at(k));
        out.line(m_r40.at(k));
        out.line(m_r50.at(k));
        out.line(m_r70.at(k));
    }
    // Six lines a disposition, the "16" and "17" lines written, "PC" and "EF".
    const int lineCount = 6 * n + written16 + written17 + 2;
    out.line(CbiRecords::recordEF(m_pc, m_header, lineCount));
    out.flush();
    return lineCount;
}

} // namespace pg::bankfile
