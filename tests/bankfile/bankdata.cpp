#include "bankdata.h"

#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "core/checkdigits.h"
#include "core/distintacode.h"
#include "distinta/distintestore.h"

#include <QFile>
#include <QXmlStreamReader>

namespace pg::test {

using archives::ErpRecord;
using distinta::Distinta;
using distinta::DistinteStore;
using distinta::Riga;
using distinta::Testata;

static ErpRecord table(int archive, const QString &type, const QString &code,
                       const QList<std::pair<QString, QString>> &fields)
{
    ErpRecord r(archive, type);
    r.setText(QStringLiteral("codice"), code);
    for (const auto &[name, value] : fields)
        r.setText(name, value);
    return r;
}

ErpRecord master(const QString &code, const QString &name, const QString &address,
                 const QString &cap, const QString &city, const QString &province,
                 const QString &taxCode, const QString &vat)
{
    ErpRecord r(archives::AnagraficheComuni);
    r.setText(QStringLiteral("cod_clifor"), code);
    r.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    r.setText(QStringLiteral("ragsoc"), name);
    r.setText(QStringLiteral("indirizzo"), address);
    r.setText(QStringLiteral("cap"), cap);
    r.setText(QStringLiteral("citta"), city);
    r.setText(QStringLiteral("provincia"), province);
    r.setText(QStringLiteral("cod_fiscale"), taxCode);
    r.setText(QStringLiteral("partita_iva"), vat);
    return r;
}

static ErpRecord supplierBank(const QString &code, const QString &bank, const QString &agency,
                              const QString &account, const QString &ibanCountry,
                              const QString &ibanRest)
{
    ErpRecord r(archives::ClientiFornitori);
    r.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    r.setText(QStringLiteral("cod_clifor"), code);
    r.setText(QStringLiteral("banca"), bank);
    r.setText(QStringLiteral("agenzia"), agency);
    r.setText(QStringLiteral("conto"), account);
    r.setText(QStringLiteral("iban_paese"), ibanCountry);
    r.setText(QStringLiteral("iban_resto"), ibanRest);
    return r;
}

// The suite's data of the tests: the company, its two presenting banks (the second without a
// usable IBAN), banks and agencies, and suppliers with their bank data.
QList<ErpRecord> suiteRecords()
{
    using F = QList<std::pair<QString, QString>>;
    QList<ErpRecord> records{
        table(archives::TabelleAzienda, QStringLiteral("AZ1"), QString(),
              F{{QStringLiteral("ragsoc"), QStringLiteral("ACME FORNITURE S.P.A.")},
                {QStringLiteral("indirizzo"), QStringLiteral("VIA ROMA 1")},
                {QStringLiteral("citta"), QStringLiteral("MILANO")},
                {QStringLiteral("provincia"), QStringLiteral("MI")},
                {QStringLiteral("cap"), QStringLiteral("20100")}}),
        table(archives::TabelleAzienda, QStringLiteral("AZ3"), QString(),
              F{{QStringLiteral("cod_fiscale"), QStringLiteral("01234567890")},
                {QStringLiteral("partita_iva"), QStringLiteral("IT01234567890")}}),
        table(archives::TabelleAzienda, QStringLiteral("BA3"), QStringLiteral("0000100001"),
              F{{QStringLiteral("iban_paese"), QStringLiteral("IT60")},
                {QStringLiteral("iban_resto"), QStringLiteral("X0542811101000000123456")}}),
        table(archives::TabelleAzienda, QStringLiteral("BA3"), QStringLiteral("0000200002"),
              F{{QStringLiteral("iban_paese"), QStringLiteral("IT60")}}),
        table(archives::TabelleComuni, QStringLiteral("BN "), QStringLiteral("0306909606"),
              F{{QStringLiteral("abi"), QStringLiteral("03069")},
                {QStringLiteral("cab"), QStringLiteral("09606")},
                {QStringLiteral("des_banca"), QStringLiteral("INTESA SANPAOLO")},
                {QStringLiteral("des_agenzia"), QStringLiteral("FILIALE DI MILANO")}}),
        table(archives::TabelleComuni, QStringLiteral("BN "), QStringLiteral("0200800001"),
              F{{QStringLiteral("abi"), QStringLiteral("02008")},
                {QStringLiteral("cab"), QStringLiteral("00001")},
                {QStringLiteral("des_banca"), QStringLiteral("UNICREDIT BANCA")},
                {QStringLiteral("des_agenzia"), QStringLiteral("SEDE CENTRALE")}}),
        table(archives::TabelleComuni, QStringLiteral("BN "), QStringLiteral("0200801600"),
              F{{QStringLiteral("abi"), QStringLiteral("02008")},
                {QStringLiteral("cab"), QStringLiteral("01600")},
                {QStringLiteral("des_banca"), QStringLiteral("UNICREDIT")},
                {QStringLiteral("des_agenzia"), QStringLiteral("AGENZIA ROMA 1")}}),
        master(QStringLiteral("200001"), QStringLiteral("ROSSI MARIO SRL"),
               QStringLiteral("VIA GARIBALDI 10"), QStringLiteral("10121"),
               QStringLiteral("TORINO"), QStringLiteral("TO"), QStringLiteral("RSSMRA80A01L219X"),
               QStringLiteral("IT09876543210")),
        master(QStringLiteral("200002"), QStringLiteral("Società Caffè Città di Forlì S.r.l."),
               QStringLiteral("PIAZZA DUOMO 2"), QStringLiteral("47121"), QStringLiteral("FORLÌ"),
               QStringLiteral("FC"), QString(), QStringLiteral("IT02222222222")),
        master(QStringLiteral("200003"), QStringLiteral("NERI SPA"), QStringLiteral("VIA NAPOLI 3"),
               QStringLiteral("80100"), QStringLiteral("NAPOLI"), QStringLiteral("NA"),
               QStringLiteral("NRENRI70A01F839Z"), QString()),
        master(QStringLiteral("200005"), QStringLiteral("BIANCHI LUIGI"),
               QStringLiteral("VIA APPIA 1"), QStringLiteral("03100"), QStringLiteral("FROSINONE"),
               QStringLiteral("FR"), QStringLiteral("BNCLGU75B02D810K"),
               QStringLiteral("IT05555555555")),
        master(QStringLiteral("200006"), QStringLiteral("VERDI SNC"),
               QStringLiteral("CORSO ITALIA 3"), QStringLiteral("50123"), QStringLiteral("FIRENZE"),
               QStringLiteral("FI"), QString(), QStringLiteral("IT06666666666")),
        supplierBank(QStringLiteral("200001"), QStringLiteral("03069"), QStringLiteral("09606"),
                     QStringLiteral("123456789012345"), QStringLiteral("IT40"),
                     QStringLiteral("S0306909606123456789012345")),
        supplierBank(QStringLiteral("200002"), QStringLiteral("03069"), QStringLiteral("09606"),
                     QStringLiteral("12345"), QStringLiteral("IT12"),
                     QStringLiteral("A0306909606000000012345")),
        supplierBank(QStringLiteral("200003"), QStringLiteral("02008"), QStringLiteral("01600"),
                     QStringLiteral("55555"), QStringLiteral("IT33"),
                     QStringLiteral("B0200801600000000055555")),
        supplierBank(QStringLiteral("200004"), QStringLiteral("02008"), QStringLiteral("01600"),
                     QStringLiteral("777"), QString(), QString()),
        supplierBank(QStringLiteral("200005"), QStringLiteral("02008"), QStringLiteral("01600"),
                     QStringLiteral("000000099999"), QStringLiteral("IT99"), QString()),
        supplierBank(QStringLiteral("200006"), QStringLiteral("03069"), QStringLiteral("09606"),
                     QStringLiteral("12345"), QStringLiteral("IT02"),
                     QStringLiteral("L0306909606000000012345")),
    };
    records << site(QStringLiteral("200005"), QStringLiteral("VIA DEL CORSO 5"),
                    QStringLiteral("00186"), QStringLiteral("ROMA"), QStringLiteral("RM"));
    return records;
}

ErpRecord site(const QString &code, const QString &address, const QString &cap, const QString &city,
               const QString &province)
{
    ErpRecord r(archives::SediClientiFornitori);
    r.setText(QStringLiteral("cod_clifor"), code);
    r.setText(QStringLiteral("tipo_sede"), QStringLiteral("A"));
    r.setText(QStringLiteral("cod_sede"), QStringLiteral("000001"));
    r.setText(QStringLiteral("indirizzo"), address);
    r.setText(QStringLiteral("cap"), cap);
    r.setText(QStringLiteral("citta"), city);
    r.setText(QStringLiteral("provincia"), province);
    return r;
}

static RowData row(const char *link, const char *account, const char *doc, const char *date,
                   const QString &bank, const QString &agency, const char *accountNumber,
                   double amount, const QString &description, const char *series = " ",
                   const char *site = "")
{
    return RowData{QLatin1StringView(link),
                   QLatin1StringView(account),
                   QLatin1StringView(doc),
                   QLatin1StringView(date),
                   bank,
                   agency,
                   QLatin1StringView(accountNumber),
                   amount,
                   description,
                   QLatin1StringView(series),
                   QLatin1StringView(site)};
}

Riga rigaOf(const RowData &s)
{
    Riga r;
    r.flg_flag_colpar = QStringLiteral("F");
    r.des_link_orvida = s.link;
    r.des_num_doc = s.doc;
    r.des_serie_doc = s.series;
    r.dat_data_doc = s.date;
    r.des_num_rata = QStringLiteral("1");
    r.dat_data_scad = QStringLiteral("20240131");
    r.cod_tipo_pag = QStringLiteral("6");
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = s.account;
    r.cod_sedeamm = s.site;
    r.cod_banca_cli = s.bank;
    r.cod_agenzia_cli = s.agency;
    r.des_num_cc = s.accountNumber;
    r.cod_valuta = QStringLiteral("EU");
    r.val_cambio = 1;
    r.val_imp_dapag_val = r.val_imp_dapag_eur = s.amount;
    r.val_imp_residuo_val = r.val_imp_residuo_eur = s.amount;
    r.val_imp_indist_val = r.val_imp_indist_eur = s.amount;
    r.des_scadenza = s.description;
    return r;
}

static const QString Intesa = QStringLiteral("03069");
static const QString Milano = QStringLiteral("09606");

DistintaData distintaData(int number)
{
    const QString pagamenti = QStringLiteral("PAGAMENTI");
    const QString unicredit = QStringLiteral("02008");
    const QString roma = QStringLiteral("01600");
    switch (number) {
    case 1:
        return {1,
                false,
                pagamenti,
                1,
                1234.5,
                {row("0000000000001", "200001", "101", "20231215", Intesa, Milano,
                     "123456789012345", 1234.5, QStringLiteral("Vs.Fatt. 101 del 15/12/23"))}};
    case 2:
        return {2,
                true,
                QString(),
                1,
                250,
                {row("0000000000002", "200005", "300", "20231005", unicredit, roma, "000000099999",
                     250, QStringLiteral("Fattura 300"), " ", "000001")}};
    case 3:
        return {3,
                false,
                pagamenti,
                3,
                350.5,
                {row("0000000000031", "200001", "101", "20231215", Intesa, Milano,
                     "123456789012345", 100, QStringLiteral("Fatt. 101 del 15/12/2023")),
                 row("0000000000032", "200001", "102", "20231220", Intesa, Milano,
                     "123456789012345", 200.5, QStringLiteral("Fatt. 102 del 20/12/2023")),
                 row("0000000000033", "200006", "55", "20231201", Intesa, Milano, "12345", 50,
                     QStringLiteral("Fattura 55"))}};
    case 4:
        return {4,
                false,
                pagamenti,
                2,
                30,
                {row("0000000000041", "200003", "410", "20231110", Intesa, Milano, "55555", 10,
                     QStringLiteral("Fattura 410")),
                 row("0000000000042", "200004", "411", "20231111", QStringLiteral("99999"),
                     QStringLiteral("99999"), "777", 20, QStringLiteral("Fattura 411"))}};
    default:
        return {12,
                false,
                QStringLiteral("RIFERIMENTO MITTENTE"),
                1,
                0.5,
                {row("0000000000121", "200002", "77", "20240105", Intesa, Milano, "12345", 0.5,
                     QStringLiteral("Saldo \u0141\u00F3d\u017A \u2248 100%"), "A")}};
    }
}

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QByteArray goldenFile(const QString &name)
{
    return readAll(QStringLiteral(PAGAMENTI_SOURCE_DIR "/tests/bankfile/golden/") + name);
}

QList<ErpRecord> dueItemsOfTheDistinte()
{
    QList<ErpRecord> items;
    for (int n : {1, 2, 3, 4, 12})
        for (const RowData &r : distintaData(n).rows)
            items << TestInstallation::dueItem(QStringLiteral("F"), r.link, QStringLiteral("6"),
                                               r.account, r.amount);
    return items;
}

Distinta distintaOf(DistinteStore &store, const DistintaData &s, const QString &currency)
{
    Distinta d;
    store.Nuovo(d);
    Testata &h = d.editHeader();
    h.cod_distinta = formatDistintaCode(s.number);
    h.dat_data_creazione = QDate(2024, 1, 15);
    h.dat_data_valuta = QDate(2024, 1, 20);
    h.cod_valuta = currency;
    if (s.secondBank) {
        h.cod_abi_banca = h.cod_cab_banca = QStringLiteral("00002");
        h.cod_codiceabi = QStringLiteral("02008");
        h.cod_codicecab = QStringLiteral("00001");
        h.des_conto_ordinante = QStringLiteral("CC 4455");
        h.cod_sia_banca = QStringLiteral("Z9Y8X");
    } else {
        h.cod_abi_banca = h.cod_cab_banca = QStringLiteral("00001");
        h.cod_codiceabi = QStringLiteral("05428");
        h.cod_codicecab = QStringLiteral("11101");
        h.des_conto_ordinante = QStringLiteral("000000123456");
        h.cod_sia_banca = QStringLiteral("A1B2C");
    }
    h.des_riferimenti = s.references;
    h.num_numero_disp = s.dispositions;
    h.val_importo_totale = s.total;
    for (const RowData &r : s.rows) {
        Riga riga = rigaOf(r);
        riga.cod_distinta = h.cod_distinta;
        d.righe.append(riga);
    }
    return d;
}

// Valid IBANs of the suppliers of the bank-file data, on the bank and agency of their rows.
QString ibanOf(const QString &account)
{
    return checkdigits::italianIban(QStringLiteral("03069"), QStringLiteral("09606"), account);
}

archives::ErpRecord bankOf(const QString &supplier, const QString &iban)
{
    archives::ErpRecord r(archives::ClientiFornitori);
    r.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    r.setText(QStringLiteral("cod_clifor"), supplier);
    r.setText(QStringLiteral("banca"), QStringLiteral("03069"));
    r.setText(QStringLiteral("agenzia"), QStringLiteral("09606"));
    r.setText(QStringLiteral("iban_paese"), iban.left(4));
    r.setText(QStringLiteral("iban_resto"), iban.mid(4));
    return r;
}

// The texts of the elements whose path ends in suffix, in document order.
QStringList texts(const QByteArray &xml, const QString &suffix)
{
    QXmlStreamReader reader(xml);
    QStringList path;
    QStringList found;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            path << reader.name().toString();
            if ((u'/' + path.join(u'/')).endsWith(u'/' + suffix)) {
                found << reader.readElementText(QXmlStreamReader::IncludeChildElements);
                path.removeLast();
            }
        } else if (reader.isEndElement()) {
            path.removeLast();
        }
    }
    return reader.hasError() ? QStringList{QStringLiteral("<unreadable>")} : found;
}

} // namespace pg::test
