// The selection walk of a new distinta over the due items of an installation (filter,
// payment reasons, AggiungiRighe), beside the limit: the plain first/next scan of the same
// archive through the same record manager.
//
//   bench_selection DIR [--runs R] [--from dd/mm/yyyy] [--to dd/mm/yyyy]
//
// DIR holds the installation's ORVIDA.INI (pagamenti-cli demo DIR --due-items N). The
// selection takes the due items of a window of due dates (by default the two days from
// the demo's day, 21/11/2026), every payment type, every account.

#include "benchcommon.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erpsession.h"
#include "core/vbdate.h"
#include "distinta/distinta.h"
#include "editor/selection/duitemloader.h"
#include "lists/usersettings.h"
#include "startup/companyenvironment.h"

#include <QCoreApplication>

using namespace pg;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "uso: bench_selection CARTELLA [--runs R] [--from GG/MM/AAAA] [--to GG/MM/AAAA]\n");
        return 2;
    }
    const int runs = bench::intOption(args, u"--runs", 3);
    QDate from(2026, 11, 21);
    QDate to = from.addDays(1);
    for (int i = 2; i + 1 < args.size(); i += 2) {
        if (args.at(i) == u"--from")
            from = dates::parseDmy(args.at(i + 1));
        else if (args.at(i) == u"--to")
            to = dates::parseDmy(args.at(i + 1));
    }
    qputenv("ORVIDA_INI_DIR", args.at(1).toLocal8Bit());
    CompanyEnvironment env = ResolveCompanyEnvironment();
    env.ProgramDir = programDirOf(env.OrvidaDir);
    setCompanyEnvironment(env);

    archives::EmbeddedArchiveStore store;
    constexpr qint32 Handle = 1;
    store.VBInit(Handle);
    if (store.AperturaFile(Handle, archives::Scadenze, archives::ReadOnly) < 0) {
        std::fprintf(stderr, "archivio delle scadenze non aperto (errore %d)\n", store.TqGetErcode());
        return 1;
    }
    archives::ErpSession erp(store, Handle);

    editor::SelectionValues values;
    values.bancaPres = QStringLiteral("03069");
    values.agenziaPres = QStringLiteral("01600");
    values.dataScadInizio = dates::toYmd(from);
    values.dataScadFine = dates::toYmd(to);
    const editor::DueItemCausali causali = editor::DueItemCausali::load(editor::DueItemCausali::defaultPath());

    QList<double> walk;
    QList<double> scan;
    qint64 records = 0;
    int added = 0;
    for (int run = 0; run < runs; ++run) {
        scan << bench::timedMs([&] {
            archives::ErpRecord record(archives::Scadenze);
            records = 0;
            bool ok = erp.readFirst(record, 1, QByteArray());
            while (ok) {
                ++records;
                ok = erp.readNext(record);
            }
        });
        distinta::Distinta d;
        editor::DueItemLoader loader(erp, values, currentSettings().desPag, causali);
        walk << bench::timedMs([&] { added = loader.cmdGenera_Click(d).added; });
    }
    std::fprintf(stderr, "%lld scadenze lette, %d righe aggiunte\n", static_cast<long long>(records), added);
    bench::report("selezione (filtro, righe)", records, bench::median(walk), bench::median(scan));
    bench::reportMemory("selezione (filtro, righe)");
    store.VBEnd(Handle);
    return 0;
}
