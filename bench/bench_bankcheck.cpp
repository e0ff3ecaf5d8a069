// The bank file and the completeness check of a distinta of many rows, each beside the limit
// of the same work done plainly: the same reads and rewrites of the suite's records (recorded
// during the command and replayed), and the same bytes written to a file; for the bank file
// also one plain read of the distinta's rows, which the rules oblige any program to do once
// the distinta's state "F" is saved.
//
//   bench_bankcheck [--rows N] [--runs R]

#include "benchcommon.h"
#include "benchinstallation.h"
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
using bench::installationRecords;
using bench::SilentPrompter;

namespace {

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

    const QString code = bench::saveDistinta(store, rows);
    if (code.isEmpty())
        return 1;
    Distinta d;
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
