// The bank file and the completeness check of a distinta of many rows, each beside the limit
// of the same work done plainly: the same reads and rewrites of the suite's records (recorded
// during the command and replayed), and the same bytes written to a file; for the bank file
// also one plain read of the distinta's rows, which the rules oblige any program to do once
// the distinta's state "F" is saved.
//
//   bench_bankcheck [--rows N] [--runs R]

#include "benchcommon.h"
#include "recordingrecordmanager.h"
#include "testdatabase.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/companydata.h"
#include "bankfile/confirmedcreafiledialog.h"
#include "bankfile/creafilecommand.h"
#include "checks/completenesscheck.h"
#include "core/prompter.h"
#include "distinta/distintestore.h"
#include "localdb/databaseconnection.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlQuery>
#include <QSqlRecord>

using namespace pg;
using namespace pg::distinta;

namespace {

// Messages are counted, not shown: a benchmark has nobody to read them.
class SilentPrompter : public Prompter
{
public:
    int messages = 0;
    Answer ask(const Message &m) override
    {
        ++messages;
        return m.buttons == Buttons::YesNo ? Answer::Yes : Answer::Ok;
    }
    [[noreturn]] void endProcess(int code) override { std::exit(code); }
};

QString supplierOf(int n)
{
    return QString::number(200000 + n % 500);
}

QString agencyOf(const QString &supplier)
{
    return QString::number(1000 + supplier.toInt() % 3).rightJustified(5, u'0');
}

QList<archives::ErpRecord> installationRecords(int rows)
{
    using archives::ErpRecord;
    QList<ErpRecord> out;
    ErpRecord ba3(archives::TabelleAzienda, QStringLiteral("BA3"));
    ba3.setText(QStringLiteral("codice"), QStringLiteral("0200801600"));
    ba3.setText(QStringLiteral("riferimenti"), QStringLiteral("Pagamenti"));
    ba3.setText(QStringLiteral("iban_paese"), QStringLiteral("IT60"));
    ba3.setText(QStringLiteral("iban_resto"), QStringLiteral("X0542811101000000123456"));
    out << ba3;
    for (int a = 0; a < 3; ++a) {
        ErpRecord bn(archives::TabelleComuni, QStringLiteral("BN "));
        const QString agency = QString::number(1000 + a).rightJustified(5, u'0');
        bn.setText(QStringLiteral("codice"), QStringLiteral("03069") + agency);
        bn.setText(QStringLiteral("abi"), QStringLiteral("03069"));
        bn.setText(QStringLiteral("cab"), agency);
        bn.setText(QStringLiteral("des_banca"), QStringLiteral("Intesa Sanpaolo"));
        bn.setText(QStringLiteral("des_agenzia"), QStringLiteral("Filiale %1").arg(a + 1));
        out << bn;
    }
    for (int s = 0; s < 500; ++s) {
        const QString code = supplierOf(s);
        ErpRecord master(archives::AnagraficheComuni);
        master.setText(QStringLiteral("cod_clifor"), code);
        master.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
        master.setText(QStringLiteral("ragsoc"), QStringLiteral("Fornitore %1 S.r.l.").arg(code));
        master.setText(QStringLiteral("indirizzo"), QStringLiteral("Via Roma %1").arg(s + 1));
        master.setText(QStringLiteral("cap"), QStringLiteral("20100"));
        master.setText(QStringLiteral("citta"), QStringLiteral("Milano"));
        master.setText(QStringLiteral("provincia"), QStringLiteral("MI"));
        master.setText(QStringLiteral("partita_iva"), QStringLiteral("01234567890"));
        out << master;
        ErpRecord bank(archives::ClientiFornitori);
        bank.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
        bank.setText(QStringLiteral("cod_clifor"), code);
        bank.setText(QStringLiteral("banca"), QStringLiteral("03069"));
        bank.setText(QStringLiteral("agenzia"), agencyOf(code));
        bank.setText(QStringLiteral("conto"), QStringLiteral("000012345678"));
        bank.setText(QStringLiteral("iban_paese"), QStringLiteral("IT40"));
        bank.setText(QStringLiteral("iban_resto"), QStringLiteral("S0306901000000012345678"));
        out << bank;
    }
    for (int n = 1; n <= rows; ++n)
        out << test::TestInstallation::dueItem(QStringLiteral("F"),
                                               QStringLiteral("K%1").arg(n, 12, 10, QLatin1Char('0')),
                                               QStringLiteral("6"), supplierOf(n), 100 + n % 900);
    return out;
}

Riga rowFor(int n, const QString &code)
{
    Riga r;
    r.cod_distinta = code;
    r.flg_flag_colpar = QStringLiteral("F");
    r.des_link_orvida = QStringLiteral("K%1").arg(n, 12, 10, QLatin1Char('0'));
    r.des_num_doc = QString::number(n % 999999).rightJustified(6, u'0');
    r.des_serie_doc = QStringLiteral(" ");
    r.dat_data_doc = QStringLiteral("20261015");
    r.dat_data_scad = QStringLiteral("20261130");
    r.cod_tipo_pag = QStringLiteral("6");
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = supplierOf(n);
    r.cod_banca_cli = QStringLiteral("03069");
    r.cod_agenzia_cli = agencyOf(r.cod_clifor);
    // The account number as the row takes it from the suite's record: the whole field.
    r.des_num_cc = QStringLiteral("000012345678").leftJustified(20, u' ');
    r.cod_valuta = QStringLiteral("EU");
    r.val_cambio = 1;
    r.val_imp_dapag_val = r.val_imp_dapag_eur = 100 + n % 900;
    r.val_imp_residuo_val = r.val_imp_residuo_eur = r.val_imp_dapag_val;
    r.val_imp_indist_val = r.val_imp_indist_eur = r.val_imp_dapag_val;
    r.des_scadenza = QStringLiteral("Vs.Fatt. ") + r.des_num_doc;
    return r;
}

void copyBytes(const QString &from, const QString &to)
{
    QFile in(from);
    QFile out(to);
    if (in.open(QIODevice::ReadOnly) && out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        out.write(in.readAll());
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int rows = bench::intOption(app.arguments(), u"--rows", 10000);
    const int runs = bench::intOption(app.arguments(), u"--runs", 3);
    SilentPrompter prompter;
    PrompterScope scope(prompter);

    test::TestInstallation inst;
    if (!inst.isValid() || !inst.put(installationRecords(rows)))
        return 1;
    bench::RecordingRecordManager recorder(inst.store());
    archives::ErpSession erp(recorder, test::TestInstallation::Handle);
    const archives::CompanyData company = archives::CompanyData::read(erp);
    DistinteStore store(&erp);
    store.setPStrConn(inst.connectionString());

    Distinta d;
    store.Nuovo(d);
    d.editHeader().cod_abi_banca = QStringLiteral("02008");
    d.editHeader().cod_cab_banca = QStringLiteral("01600");
    for (int n = 1; n <= rows; ++n)
        d.righe.append(rowFor(n, d.header().cod_distinta));
    if (!store.Salva(d, false, false))
        return 1;
    const QString code = d.header().cod_distinta;
    const QString file = inst.root() + QStringLiteral("CBI.txt");

    QList<double> cbi, cbiLimit, check, checkLimit;
    for (int run = 0; run < runs; ++run) {
        {
            // Each run starts from a distinta not yet presented, as the clerk's does.
            DatabaseConnection conn(inst.database());
            QSqlQuery(conn.database()).exec(QStringLiteral("UPDATE TB_TESTATA SET flg_stato = 'P'"));
        }
        store.Leggi(d, code);
        recorder.clear();
        bankfile::ConfirmedCreaFileDialog dialog(file);
        bankfile::CreaFileCommand command(store, erp, company, dialog);
        // The flat file this benchmark measures, whatever format the settings remember.
        command.setProposedFormat(BankFileFormat::CbiFlat);
        cbi << bench::timedMs([&] {
            if (command.cmdCreaFile(d, false, {}) != bankfile::CreaFileCommand::Outcome::Written)
                std::fprintf(stderr, "file non scritto\n");
        });
        cbiLimit << bench::timedMs([&] {
            recorder.replay(test::TestInstallation::Handle);
            copyBytes(file, file + QStringLiteral(".copia"));
            DatabaseConnection conn(inst.database());
            QSqlQuery q(conn.database());
            q.setForwardOnly(true);
            q.prepare(QStringLiteral("SELECT * FROM TB_RIGHE WHERE cod_distinta = ?"));
            q.addBindValue(code);
            q.exec();
            qint64 sink = 0;
            const int columns = q.record().count();
            while (q.next())
                for (int c = 0; c < columns; ++c)
                    sink += q.value(c).isNull() ? 0 : 1;
            if (sink < 0)
                std::printf("?");
        });

        recorder.clear();
        checks::CompletenessCheck completeness(store, erp);
        check << bench::timedMs([&] { completeness.chkDatiBAnca(d, false, {}); });
        checkLimit << bench::timedMs([&] {
            recorder.replay(test::TestInstallation::Handle);
            copyBytes(checks::CompletenessCheck::reportPath(), file + QStringLiteral(".controllo"));
        });
    }
    const QLatin1String engine(test::onServer() ? " (PostgreSQL)" : "");
    bench::report(qPrintable(QStringLiteral("file CBI") + engine), rows, bench::median(cbi),
                  bench::median(cbiLimit));
    bench::report(qPrintable(QStringLiteral("controllo completezza") + engine), rows,
                  bench::median(check), bench::median(checkLimit));
    bench::reportMemory("file CBI e controllo");
    return 0;
}
