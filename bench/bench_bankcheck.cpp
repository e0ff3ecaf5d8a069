// The bank file and the completeness check of a distinta of many rows, each beside the limit
// of the same work done plainly: the same reads and rewrites of the suite's records (recorded
// during the command and replayed), and the same bytes written to a file.
//
//   bench_bankcheck [--rows N] [--runs R]

#include "benchcommon.h"
#include "benchinstallation.h"
#include "recordingrecordmanager.h"

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
    store.setPStrFilespec(inst.databasePath());
    store.setPStrConn(DistinteStore::connectionStringFor(inst.databasePath()));

    const QString code = bench::saveDistinta(store, rows);
    if (code.isEmpty())
        return 1;
    Distinta d;
    const QString file = inst.root() + QStringLiteral("CBI.txt");

    QList<double> cbi, cbiLimit, check, checkLimit;
    for (int run = 0; run < runs; ++run) {
        {
            // Each run starts from a distinta not yet presented, as the clerk's does.
            DatabaseConnection conn(inst.databasePath());
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
        });

        recorder.clear();
        checks::CompletenessCheck completeness(store, erp);
        check << bench::timedMs([&] { completeness.chkDatiBAnca(d, false, {}); });
        checkLimit << bench::timedMs([&] {
            recorder.replay(test::TestInstallation::Handle);
            copyBytes(checks::CompletenessCheck::reportPath(), file + QStringLiteral(".controllo"));
        });
    }
    bench::report("file CBI", rows, bench::median(cbi), bench::median(cbiLimit));
    bench::report("controllo completezza", rows, bench::median(check), bench::median(checkLimit));
    bench::reportMemory("file CBI e controllo");
    return 0;
}
