// Walks the due items (archive 38) in the order of key 1 through the record manager, with a
// first-read and next-reads as the loading walk of a distinta does, and beside it the same
// walk as a plain scan of the store with SQLite: the limit the record manager can approach.
//
//   bench_archivescan [--items N] [--library PATH] [DIR]
//
// DIR is an installation (a directory holding "ORVIDA.INI": its company environment is
// used) or an archive directory holding a store. Without DIR, or with a DIR that holds
// neither, the benchmark writes its own store of N due items (default 1,000,000) through the
// archive writer (in a temporary directory, or kept in DIR), and also times the load and
// 10,000 rewrites. With --library (by default the program's tqzdbm32 beside this executable)
// the walk is repeated through the library binding.

#include "archives/store/archivenumbers.h"
#include "archives/store/archivewriter.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/libraryrecordmanager.h"
#include "archives/store/recordlayout.h"

#include "startup/companyenvironment.h"
#include "startup/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <memory>

using namespace pg;
using namespace pg::archives;

namespace {

constexpr qint32 Session = 1;

struct Walk
{
    qint64 records = 0;
    double seconds = 0;
    qint32 error = 0;
    double rate() const { return seconds > 0 ? records / seconds : 0; }
};

const FieldDef &field(const char *name)
{
    return *RecordLayouts::instance().archive(Scadenze)->field(QStringLiteral("*"),
                                                               QString::fromLatin1(name));
}

void put(QByteArray &record, const FieldDef &f, const QByteArray &value)
{
    const QByteArray cut = value.left(f.width).leftJustified(f.width, ' ');
    std::memcpy(record.data() + f.offset, cut.constData(), size_t(f.width));
}

QByteArray digits(qint64 value, int width)
{
    return QByteArray::number(value).rightJustified(width, '0');
}

// Writes n due items spread over two years of due dates and a thousand suppliers.
bool writeDueItems(const QString &companyDir, const QString &commonDir, qint64 n, double *seconds)
{
    const ArchiveLayout &layout = *RecordLayouts::instance().archive(Scadenze);
    QRandomGenerator random(38);
    ArchiveWriter writer(companyDir, commonDir);
    QString error;
    QElapsedTimer timer;
    timer.start();
    if (!writer.begin(&error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return false;
    }
    const FieldDef &flag = field("flag_colpar"), &link = field("link"), &stato = field("stato"),
                   &tipoPag = field("tipo_pag"), &dataScad = field("data_scad"),
                   &indClifor = field("ind_clifor"), &codClifor = field("cod_clifor"),
                   &importo = field("imp_dapag_eur"), &statoDist = field("stato_dist"),
                   &descrizione = field("descrizione");
    QList<QByteArray> dates;
    for (int day = 0; day < 730; ++day)
        dates << QDate(2024, 1, 1).addDays(day).toString(QStringLiteral("yyyyMMdd")).toLatin1();
    QByteArray record(layout.length, ' ');
    for (qint64 i = 1; i <= n; ++i) {
        record.fill(' ');
        put(record, flag, "F");
        put(record, link, digits(i, 13));
        put(record, stato, "0");
        put(record, tipoPag, QByteArray::number(random.bounded(10)));
        put(record, dataScad, dates.at(random.bounded(730)));
        put(record, indClifor, "F");
        put(record, codClifor, digits(random.bounded(1000) + 1, 6));
        put(record, importo,
            QByteArray::number(random.bounded(1000000) / 100.0, 'f', 2).rightJustified(15, ' '));
        put(record, statoDist, "0");
        put(record, descrizione, "Scadenza " + digits(i, 9));
        if (!writer.put(Scadenze, record, &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return false;
        }
    }
    if (!writer.commit(&error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return false;
    }
    *seconds = timer.nsecsElapsed() / 1e9;
    return true;
}

Walk walkThrough(RecordManager &manager)
{
    Walk walk;
    QByteArray record;
    QElapsedTimer timer;
    timer.start();
    manager.AperturaFile(Session, Scadenze, ReadOnly);
    if ((walk.error = manager.TqGetErcode()) != 0)
        return walk;
    manager.LetturaFirstRec32(Session, Scadenze, 1, record, QByteArray());
    while (manager.TqGetErcode() == 0) {
        ++walk.records;
        manager.LetturaNextRec32(Session, Scadenze, record);
    }
    walk.seconds = timer.nsecsElapsed() / 1e9;
    manager.ChiusuraFile(Session, Scadenze);
    return walk;
}

// The same records in the same order, straight from the store: the limit of any walk.
Walk rawScan(const QString &storePath)
{
    Walk walk;
    sqlite3 *db = nullptr;
    sqlite3_stmt *statement = nullptr;
    QElapsedTimer timer;
    timer.start();
    if (sqlite3_open_v2(storePath.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) !=
            SQLITE_OK ||
        sqlite3_prepare_v2(db, "SELECT record FROM archivio_38 ORDER BY chiave_1, id", -1,
                           &statement, nullptr) != SQLITE_OK) {
        walk.error = -1;
    } else {
        QByteArray record(RecordLayouts::instance().archive(Scadenze)->length, ' ');
        while (sqlite3_step(statement) == SQLITE_ROW) {
            const int n = std::min(int(record.size()), sqlite3_column_bytes(statement, 0));
            std::memcpy(record.data(), sqlite3_column_blob(statement, 0), size_t(n));
            ++walk.records;
        }
        walk.seconds = timer.nsecsElapsed() / 1e9;
    }
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return walk;
}

// Reads n due items by key 2 and rewrites each with a distinta mark, as saving does.
double rewrites(RecordManager &manager, qint64 items, int n)
{
    const ArchiveLayout &layout = *RecordLayouts::instance().archive(Scadenze);
    manager.AperturaFile(Session, Scadenze, ReadRewrite);
    QElapsedTimer timer;
    timer.start();
    const FieldDef &flag = field("flag_colpar"), &link = field("link"),
                   &markDist = field("mark_dist"), &abiPres = field("abi_pres");
    QByteArray record(layout.length, ' ');
    for (int i = 0; i < n; ++i) {
        record.fill(' ');
        put(record, flag, "F");
        put(record, link, digits(1 + (qint64(i) * 7919) % items, 13));
        manager.LetturaEqRec32(Session, Scadenze, 2, record);
        if (manager.TqGetErcode() != 0)
            return -1;
        put(record, markDist, "B");
        // A bank that changes from run to run: every rewrite really writes.
        put(record, abiPres, digits(QRandomGenerator::global()->bounded(100000), 5));
        manager.RiscritturaRec32(Session, Scadenze, record);
        if (manager.TqGetErcode() != 0)
            return -1;
    }
    const double seconds = timer.nsecsElapsed() / 1e9;
    manager.ChiusuraFile(Session, Scadenze);
    return seconds;
}

void report(const char *what, const Walk &walk)
{
    if (walk.error != 0)
        std::printf("%-28s errore %d\n", what, walk.error);
    else
        std::printf("%-28s %10lld record %8.3f s %12.0f record/s\n", what,
                    static_cast<long long>(walk.records), walk.seconds, walk.rate());
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    qint64 items = 1000000;
    QString library = QCoreApplication::applicationDirPath() + QStringLiteral("/tqzdbm32");
    QString dir;
    for (int i = 0; i < args.size(); ++i) {
        if (args.at(i) == QStringLiteral("--items") && i + 1 < args.size())
            items = args.at(++i).toLongLong();
        else if (args.at(i) == QStringLiteral("--library") && i + 1 < args.size())
            library = args.at(++i);
        else
            dir = args.at(i);
    }

    // Short enough for the suite's ini values (39 characters), for the library's sake.
    QTemporaryDir temporary(QDir::tempPath() + QStringLiteral("/pgbXXXXXX"));
    QString companyDir;
    QString commonDir;
    const bool isInstallation =
        !dir.isEmpty() &&
        QFileInfo::exists(paths::resolveCase(QDir(dir).filePath(QStringLiteral("ORVIDA.INI"))));
    const bool own =
        dir.isEmpty() ||
        (!isInstallation &&
         !QFileInfo::exists(EmbeddedArchiveStore::storePath(paths::withTrailingSeparator(dir))));
    if (own) {
        const QString root = dir.isEmpty() ? temporary.path() + u'/'
                                           : paths::withTrailingSeparator(QDir(dir).absolutePath());
        companyDir = root + QStringLiteral("az/");
        commonDir = root + QStringLiteral("co/");
        QDir().mkpath(companyDir);
        QDir().mkpath(commonDir);
        QDir().mkpath(root + QStringLiteral("D_AZI"));
        QFile ini(root + QStringLiteral("ORVIDA.INI"));
        QFile parpe(root + QStringLiteral("D_AZI/BENparpe.ini"));
        if (!ini.open(QIODevice::WriteOnly) || !parpe.open(QIODevice::WriteOnly))
            return 1;
        ini.write("[AMBIENTE]\r\nDir orvida=" + root.toUtf8() + "\r\nCodice Azienda=BEN\r\n");
        parpe.write("[Dir Archivi Client]\r\nAzienda=" + companyDir.toUtf8() +
                    "\r\nComuni=" + commonDir.toUtf8() + "\r\n");
        qputenv("ORVIDA_INI_DIR", root.toLocal8Bit());
        double seconds = 0;
        std::printf("Scrittura di %lld scadenze...\n", static_cast<long long>(items));
        std::fflush(stdout);
        if (!writeDueItems(companyDir, commonDir, items, &seconds))
            return 1;
        std::printf("%-28s %10lld record %8.3f s %12.0f record/s\n", "archive writer",
                    static_cast<long long>(items), seconds, items / seconds);
    } else if (isInstallation) {
        qputenv("ORVIDA_INI_DIR", QDir(dir).absolutePath().toLocal8Bit());
        const CompanyEnvironment env = ResolveCompanyEnvironment();
        companyDir = env.CompanyArchiveDir;
        commonDir = env.CommonArchiveDir;
    } else {
        companyDir = commonDir = paths::withTrailingSeparator(dir);
        library.clear(); // the library finds its archives only through the ini files
    }

    EmbeddedArchiveStore store(companyDir, commonDir);
    // A first scan brings the file into the system's cache: every walk then starts warm.
    rawScan(store.storePathOf(Scadenze));
    const Walk embedded = walkThrough(store);
    const Walk raw = rawScan(store.storePathOf(Scadenze));
    report("scansione SQLite (limite)", raw);
    report("archivio incorporato", embedded);
    if (raw.rate() > 0 && embedded.error == 0)
        std::printf("%-28s %.2f\n", "rapporto incorporato/limite", embedded.rate() / raw.rate());

    LibraryRecordManager binding(library);
    if (library.isEmpty()) {
        // An archive directory without an installation: no walk through the library.
    } else if (binding.isLoaded() && binding.VBInit(Session) != 0) {
        const Walk viaLibrary = walkThrough(binding);
        report("libreria tqzdbm32", viaLibrary);
        if (raw.rate() > 0 && viaLibrary.error == 0)
            std::printf("%-28s %.2f\n", "rapporto libreria/limite", viaLibrary.rate() / raw.rate());
        binding.VBEnd(Session);
    } else {
        std::printf("%-28s %s\n", "libreria tqzdbm32", qPrintable(binding.errorString()));
    }

    if (own && items > 0) {
        const int n = int(std::min<qint64>(10000, items));
        const double seconds = rewrites(store, items, n);
        if (seconds < 0)
            std::printf("%-28s errore %d\n", "riscritture", store.TqGetErcode());
        else
            std::printf("%-28s %10d record %8.3f s %12.0f record/s\n", "letture e riscritture", n,
                        seconds, n / seconds);
    }
    return 0;
}
