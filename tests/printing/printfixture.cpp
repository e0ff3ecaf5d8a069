#include "printfixture.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"

namespace pg::test {

using archives::ErpRecord;
using distinta::Riga;

namespace {

ErpRecord anagrafica(const QString &code, const QString &name, const QString &city)
{
    ErpRecord r(archives::AnagraficheComuni);
    r.setText(QStringLiteral("cod_clifor"), code);
    r.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    r.setText(QStringLiteral("ragsoc"), name);
    r.setText(QStringLiteral("indirizzo"), QStringLiteral("Via Garibaldi 12"));
    r.setText(QStringLiteral("cap"), QStringLiteral("20121"));
    r.setText(QStringLiteral("citta"), city);
    r.setText(QStringLiteral("provincia"), QStringLiteral("MI"));
    r.setText(QStringLiteral("partita_iva"), QStringLiteral("01234567890"));
    return r;
}

ErpRecord bancaCliFor(const QString &code, const QString &bank, const QString &agency,
                      const QString &account, const QString &ibanRest)
{
    ErpRecord r(archives::ClientiFornitori);
    r.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    r.setText(QStringLiteral("cod_clifor"), code);
    r.setText(QStringLiteral("banca"), bank);
    r.setText(QStringLiteral("agenzia"), agency);
    r.setText(QStringLiteral("conto"), account);
    if (!ibanRest.isEmpty()) {
        r.setText(QStringLiteral("iban_paese"), QStringLiteral("IT60"));
        r.setText(QStringLiteral("iban_resto"), ibanRest);
        r.setText(QStringLiteral("bic"), QStringLiteral("BCITITMM"));
    }
    return r;
}

ErpRecord sportello(const QString &bank, const QString &agency, const QString &name)
{
    ErpRecord r(archives::TabelleComuni, QStringLiteral("BN "));
    r.setText(QStringLiteral("codice"), bank + agency);
    r.setText(QStringLiteral("abi"), bank);
    r.setText(QStringLiteral("cab"), agency);
    r.setText(QStringLiteral("des_banca"), name);
    r.setText(QStringLiteral("des_agenzia"), QStringLiteral("FILIALE DI MILANO"));
    return r;
}

QString linkOf(int n)
{
    return QStringLiteral("2026%1").arg(n, 9, 10, QLatin1Char('0'));
}

} // namespace

QString PrintFixture::accountOf(int row)
{
    return QStringLiteral("20000%1").arg((row - 1) % 3 + 1);
}

PrintFixture::PrintFixture() : m_inst(std::make_unique<TestInstallation>())
{
    if (!m_inst->isValid())
        return;
    ErpRecord companyBank(archives::TabelleAzienda, QStringLiteral("BA3"));
    companyBank.setText(QStringLiteral("codice"), QStringLiteral("0200801600"));
    companyBank.setText(QStringLiteral("iban_paese"), QStringLiteral("IT40"));
    companyBank.setText(QStringLiteral("iban_resto"), QStringLiteral("S0200801600000000012345"));
    const QList<ErpRecord> records{
        anagrafica(QStringLiteral("200001"), QStringLiteral("ROSSI FORNITURE S.R.L."),
                   QStringLiteral("MILANO")),
        anagrafica(QStringLiteral("200002"), QStringLiteral("BIANCHI & FIGLI <S.P.A.>"),
                   QStringLiteral("BERGAMO")),
        bancaCliFor(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("01600"),
                    QStringLiteral("000012345678"), QStringLiteral("X0306901600000012345678")),
        bancaCliFor(QStringLiteral("200002"), QStringLiteral("05034"), QStringLiteral("11100"),
                    QStringLiteral("000000987654"), {}),
        sportello(QStringLiteral("03069"), QStringLiteral("01600"),
                  QStringLiteral("INTESA SANPAOLO")),
        sportello(QStringLiteral("05034"), QStringLiteral("11100"), QStringLiteral("BANCO BPM")),
        companyBank,
    };
    if (!m_inst->put(records))
        return;
    m_counting = std::make_unique<FaultyRecordManager>(m_inst->store());
    m_erp = std::make_unique<archives::ErpSession>(*m_counting, TestInstallation::Handle);
    m_store = std::make_unique<distinta::DistinteStore>(m_erp.get());
    m_store->setPStrConn(m_inst->connectionString());

    m_company.ragsoc = QStringLiteral("ORVIDA DEMO S.P.A.");
    m_company.indirizzo = QStringLiteral("Corso Italia 1");
    m_company.cap = QStringLiteral("20122");
    m_company.citta = QStringLiteral("MILANO");
    m_company.provincia = QStringLiteral("MI");
    m_company.codFiscale = QStringLiteral("09876543210");
    m_company.partitaIva = QStringLiteral("09876543210");
    m_valid = true;
}

distinta::Distinta PrintFixture::saveDistinta(int rows)
{
    QList<ErpRecord> items;
    QList<Riga> righe;
    for (int i = 1; i <= rows; ++i) {
        const QString link = linkOf(m_nextLink++);
        const QString account = accountOf(i);
        const double amount = amountOf(i);
        items << TestInstallation::dueItem(QStringLiteral("F"), link, QStringLiteral("6"), account,
                                           amount);
        Riga r;
        r.flg_flag_colpar = QStringLiteral("F");
        r.des_link_orvida = link;
        r.des_num_doc = QString::number(100 + i);
        r.des_serie_doc = i % 2 ? QStringLiteral("A") : QStringLiteral(" ");
        r.dat_data_doc = QStringLiteral("20261015");
        r.dat_data_scad = QStringLiteral("20261130");
        r.cod_tipo_pag = QStringLiteral("6");
        r.flg_ind_clifor = QStringLiteral("F");
        r.cod_clifor = account;
        const bool first = account == u"200001";
        r.cod_banca_cli = first ? QStringLiteral("03069") : QStringLiteral("05034");
        r.cod_agenzia_cli = first ? QStringLiteral("01600") : QStringLiteral("11100");
        r.des_num_cc = first ? QStringLiteral("000012345678") : QStringLiteral("000000987654");
        r.cod_valuta = QStringLiteral("EU");
        r.val_cambio = 1;
        r.val_imp_dapag_val = r.val_imp_dapag_eur = amount;
        r.val_imp_residuo_val = r.val_imp_residuo_eur = amount;
        r.val_imp_indist_val = r.val_imp_indist_eur = amount;
        r.des_scadenza = QStringLiteral("Vs.Fatt. %1").arg(r.des_num_doc);
        righe << r;
    }
    if (!m_inst->put(items))
        return {};

    distinta::Distinta d;
    m_store->Nuovo(d);
    distinta::Testata &h = d.editHeader();
    h.cod_abi_banca = QStringLiteral("02008");
    h.cod_cab_banca = QStringLiteral("01600");
    h.cod_codiceabi = QStringLiteral("02008");
    h.cod_codicecab = QStringLiteral("01600");
    h.des_ban_azi = QStringLiteral("UNICREDIT - AG. MILANO CORDUSIO");
    h.des_conto_ordinante = QStringLiteral("000000012345");
    h.cod_sia_banca = QStringLiteral("A1B2C");
    h.des_riferimenti = QStringLiteral("UFF. TESORERIA");
    h.dat_data_valuta = QDate(2026, 11, 30);
    double total = 0;
    for (Riga r : std::as_const(righe)) {
        r.cod_distinta = h.cod_distinta;
        total += *r.val_imp_indist_val;
        d.righe.append(r);
    }
    h.val_importo_totale = total;
    h.num_numero_disp = rows;
    const QString code = h.cod_distinta;
    if (!m_store->Salva(d, false, false))
        return {};
    distinta::Distinta saved;
    m_store->Leggi(saved, code);
    return saved;
}

} // namespace pg::test
