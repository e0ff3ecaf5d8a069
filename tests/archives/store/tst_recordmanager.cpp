// The record manager's rules, run against each implementation: the embedded archive store
// called directly, and the library binding loading the program's own record-manager library.

#include "archivefixture.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/busywait.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erprecord.h"
#include "archives/store/libraryrecordmanager.h"
#include "archives/store/recordlayout.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTest>

#include <memory>
#include <thread>

using namespace pg;
using namespace pg::archives;
using pg::test::ArchiveFixture;
using pg::test::StoreConnection;

namespace {

enum Implementation { Embedded, Library };
enum Reader { First, Gen, Equal };

constexpr qint32 Session = 4711;
constexpr qint32 OtherSession = 4712;

const ArchiveLayout &dueItems()
{
    return *RecordLayouts::instance().archive(Scadenze);
}

// The due items of every test, written in this order. By key 1 (due date, account, key 2)
// they read F C E A D B; by key 2 (flag and link) C B D F A E, where D and F share key 2.
QByteArray item(char name)
{
    struct Item
    {
        const char *flag, *link, *date, *account;
    };
    static const Item items[] = {
        {"F", "0000000000003", "20240110", "F000010"}, // A
        {"F", "0000000000001", "20240301", "F000020"}, // B
        {"C", "0000000000002", "20240110", "C000005"}, // C
        {"F", "0000000000002", "20240215", "F000010"}, // D
        {"F", "0000000000010", "20240110", "F000003"}, // E
        {"F", "0000000000002", "20240105", "F000010"}, // F
    };
    const Item &i = items[name - 'A'];
    return test::dueItem(QString(QLatin1Char(name)), QString::fromLatin1(i.flag),
                         QString::fromLatin1(i.link), QString::fromLatin1(i.date),
                         QString::fromLatin1(i.account));
}

// A blank record of the archive with the key's fields holding the bytes, one field after
// the other, blank-padded: what the program sets before an equal or positioning read.
QByteArray withKey(int archive, int key, const QByteArray &bytes)
{
    const ArchiveLayout &layout = *RecordLayouts::instance().archive(archive);
    QByteArray record(layout.length, ' ');
    int at = 0;
    for (const FieldDef &f : layout.keyFields(key)) {
        const QByteArray part = bytes.mid(at, f.width);
        record.replace(f.offset, int(part.size()), part);
        at += f.width;
    }
    return record;
}

QByteArray changed(QByteArray record)
{
    ErpRecord r(Scadenze);
    r.buffer() = record;
    r.setText(QStringLiteral("stato_dist"), QStringLiteral("5"));
    r.setText(QStringLiteral("mark_dist"), QStringLiteral("B"));
    r.setText(QStringLiteral("mark_pres"), QStringLiteral("B"));
    r.setText(QStringLiteral("data_dist"), QStringLiteral("20240501"));
    r.setText(QStringLiteral("abi_pres"), QStringLiteral("03069"));
    r.setText(QStringLiteral("cab_pres"), QStringLiteral("01600"));
    return r.buffer();
}

} // namespace

class TestRecordManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void initTestCase_data();
    void init();
    void cleanup();

    void openFailures_data();
    void openFailures();
    void sessionsAndModes();
    void equalReads_data();
    void equalReads();
    void walksInKeyOrder_data();
    void walksInKeyOrder();
    void refusedReads_data();
    void refusedReads();
    void rewriteRefusals_data();
    void rewriteRefusals();
    void rewriteDuringAWalk();
    void damagedPageIsNotTheEnd();
    void busyStoreIsWaitedFor_data();
    void busyStoreIsWaitedFor();
    void rewriteMovingKey1();

private:
    // Opens an archive and checks that it opened.
    void open(qint32 session, int archive, int mode);
    // The outcome of the call just made, checked against its status: 0 or more on success.
    qint32 outcome(qint16 status);
    QByteArray stored(char name);

    ArchiveFixture m_template; // the stores every test starts from
    std::unique_ptr<ArchiveFixture> m_fx;
    std::unique_ptr<RecordManager> m_rm;
};

void TestRecordManager::initTestCase()
{
    QVERIFY(m_template.isValid());
    QList<std::pair<int, QByteArray>> records;
    for (char name = 'A'; name <= 'E'; ++name)
        records.append({Scadenze, item(name)});
    records.append({TabelleComuni, test::bankAgency()});
    QCOMPARE(m_template.load(records), QString());
    // F shares key 2 with D: the load refuses that, a store may still hold it.
    QVERIFY(m_template.insertAsIs(Scadenze, item('F')));
}

void TestRecordManager::initTestCase_data()
{
    QTest::addColumn<int>("implementation");
    QTest::newRow("embedded store") << int(Embedded);
    QTest::newRow("library binding") << int(Library);
}

void TestRecordManager::init()
{
    QFETCH_GLOBAL(int, implementation);
    // A store held by another program is waited for this long before a call fails.
    qputenv("PAGAMENTI_ARCHIVE_WAIT", "0.2");
    m_fx = std::make_unique<ArchiveFixture>();
    QVERIFY(m_fx->isValid());
    m_fx->writeIniFiles();
    QVERIFY(m_fx->copyStoresFrom(m_template));

    if (implementation == Embedded) {
        m_rm = std::make_unique<EmbeddedArchiveStore>(m_fx->companyDir(), m_fx->commonDir());
    } else {
        auto binding = std::make_unique<LibraryRecordManager>(
            QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/tqzdbm32"));
        QVERIFY2(binding->isLoaded(), qPrintable(binding->errorString()));
        m_rm = std::move(binding);
    }
    QVERIFY(m_rm->VBInit(Session) != 0);
}

void TestRecordManager::cleanup()
{
    if (m_rm) {
        m_rm->VBEnd(Session);
        m_rm->VBEnd(OtherSession);
    }
    m_rm.reset();
    m_fx.reset();
}

void TestRecordManager::open(qint32 session, int archive, int mode)
{
    QCOMPARE(outcome(m_rm->AperturaFile(session, archive, mode)), qint32(Ok));
}

qint32 TestRecordManager::outcome(qint16 status)
{
    const qint32 code = m_rm->TqGetErcode();
    if ((status >= 0) != (code == Ok))
        qWarning("status %d with error code %d", int(status), int(code));
    return (status >= 0) == (code == Ok) ? code : -1;
}

QByteArray TestRecordManager::stored(char name)
{
    return StoreConnection(m_fx->companyStore())
        .record(Scadenze, 1, dueItems().keyOf(item(name), 1));
}

void TestRecordManager::openFailures_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<int>("archive");
    QTest::addColumn<int>("expected");
    auto row = [](const char *name, const char *damage, int archive, ArchiveError expected) {
        QTest::newRow(name) << QString::fromLatin1(damage) << archive << int(expected);
    };
    row("unknown archive", "", 99, UnknownArchive);
    row("opened twice", "open first", Scadenze, AlreadyOpen);
    row("store file missing", "remove common store", TabelleComuni, NotFound);
    row("archive missing from its store", "drop table", Pagamenti, NotFound);
    row("file that is not a store", "garbage", Scadenze, Damaged);
    row("database of another program", "foreign database", Scadenze, Damaged);
    row("store built for other layouts", "other layouts", Scadenze, Damaged);
    row("store held exclusively by another program", "exclusive lock", Scadenze, Locked);
}

void TestRecordManager::openFailures()
{
    QFETCH(QString, damage);
    QFETCH(int, archive);
    QFETCH(int, expected);

    const QString company = m_fx->companyStore();
    auto removeStore = [](const QString &path) {
        for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
            QFile::remove(path + suffix);
    };
    std::unique_ptr<StoreConnection> holder;
    if (damage == QStringLiteral("open first")) {
        open(Session, archive, ReadRewrite);
    } else if (damage == QStringLiteral("remove common store")) {
        removeStore(m_fx->commonStore());
    } else if (damage == QStringLiteral("drop table")) {
        QVERIFY(test::execOnStore(company, "DROP TABLE archivio_55"));
    } else if (damage == QStringLiteral("garbage")) {
        removeStore(company);
        QFile file(company);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(8192, '\x5a'));
    } else if (damage == QStringLiteral("foreign database")) {
        removeStore(company);
        StoreConnection foreign(company, true);
        QVERIFY(foreign.exec("CREATE TABLE archivio_38 (record BLOB)"));
    } else if (damage == QStringLiteral("other layouts")) {
        QVERIFY(test::execOnStore(company,
                                  "UPDATE tracciati SET firma = '300;1=0+14' WHERE archivio = 38"));
    } else if (damage == QStringLiteral("exclusive lock")) {
        holder = std::make_unique<StoreConnection>(company);
        QVERIFY(holder->exec("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; "
                             "UPDATE archivio_38 SET record = record"));
    }

    QCOMPARE(outcome(m_rm->AperturaFile(Session, archive, ReadRewrite)), qint32(expected));

    if (damage == QStringLiteral("open first")) {
        // The archive stays open as it was.
        QByteArray record = withKey(Scadenze, 2, "F0000000000001");
        QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, record)), qint32(Ok));
        QCOMPARE(record, item('B'));
    }
    holder.reset();
    // Whatever failed, the archives of the other store still open.
    const int other = EmbeddedArchiveStore::isCommonArchive(archive) ? Scadenze : TabelleComuni;
    if (archive != 99 && damage != QStringLiteral("open first"))
        open(Session, other, ReadOnly);
}

void TestRecordManager::sessionsAndModes()
{
    open(Session, Scadenze, ReadOnly);
    QByteArray record = withKey(Scadenze, 2, "F0000000000001");
    QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, record)), qint32(Ok));

    // Another session has archives of its own, with their own mode and record last read.
    QVERIFY(m_rm->VBInit(OtherSession) != 0);
    QByteArray other = withKey(Scadenze, 2, "F0000000000002");
    QCOMPARE(outcome(m_rm->LetturaEqRec32(OtherSession, Scadenze, 2, other)), qint32(NotOpen));
    open(OtherSession, Scadenze, ReadRewrite);
    QCOMPARE(outcome(m_rm->LetturaEqRec32(OtherSession, Scadenze, 2, other)), qint32(Ok));
    const QByteArray newD = changed(other);
    QCOMPARE(outcome(m_rm->RiscritturaRec32(OtherSession, Scadenze, newD)), qint32(Ok));
    QCOMPARE(outcome(m_rm->RiscritturaRec32(Session, Scadenze, changed(record))),
             qint32(OpenedReadOnly));
    // Committed when the call returns: another connection reads it whole. Rewriting it again
    // is allowed, and F, which shares D's key 2, is left alone.
    QCOMPARE(stored('D'), newD);
    QCOMPARE(outcome(m_rm->RiscritturaRec32(OtherSession, Scadenze, newD)), qint32(Ok));
    QCOMPARE(stored('B'), item('B'));
    QCOMPARE(stored('F'), item('F'));

    QCOMPARE(outcome(m_rm->ChiusuraFile(Session, Scadenze)), qint32(Ok));
    QCOMPARE(outcome(m_rm->ChiusuraFile(Session, Scadenze)), qint32(NotOpen));
    QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, record)), qint32(NotOpen));
    QCOMPARE(outcome(m_rm->ChiusuraFile(Session, 99)), qint32(UnknownArchive));

    // Ending a session closes what it left open; the other archives stay usable, and reopened
    // they read the rewritten record.
    open(Session, Scadenze, ReadOnly);
    m_rm->VBEnd(OtherSession);
    QCOMPARE(outcome(m_rm->LetturaEqRec32(OtherSession, Scadenze, 2, other)), qint32(NotOpen));
    QByteArray again = withKey(Scadenze, 1, dueItems().keyOf(item('D'), 1));
    QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 1, again)), qint32(Ok));
    QCOMPARE(again, newD);
}

void TestRecordManager::equalReads_data()
{
    QTest::addColumn<int>("archive");
    QTest::addColumn<int>("key");
    QTest::addColumn<QByteArray>("search");
    QTest::addColumn<QByteArray>("expected"); // empty: not found

    // Equal reads on a full key 1, and on the key 2 that D and F share, start walks below.
    QTest::newRow("key 2") << int(Scadenze) << 2 << withKey(Scadenze, 2, "F0000000000001")
                           << item('B');
    QTest::newRow("buffer holding only the key")
        << int(Scadenze) << 2 << QByteArray("C0000000000002") << item('C');
    QTest::newRow("key of no record")
        << int(Scadenze) << 2 << withKey(Scadenze, 2, "F0000000000004") << QByteArray();
    QTest::newRow("prefix is not equal")
        << int(Scadenze) << 1 << withKey(Scadenze, 1, "20240215") << QByteArray();
    QTest::newRow("common table") << int(TabelleComuni) << 1
                                  << withKey(TabelleComuni, 1, "BN 0306901600")
                                  << test::bankAgency();
}

void TestRecordManager::equalReads()
{
    QFETCH(int, archive);
    QFETCH(int, key);
    QFETCH(QByteArray, search);
    QFETCH(QByteArray, expected);
    open(Session, archive, ReadOnly);

    QByteArray record = search;
    const qint32 code = outcome(m_rm->LetturaEqRec32(Session, archive, key, record));
    if (expected.isEmpty()) {
        QCOMPARE(code, qint32(NotFound));
        QCOMPARE(record, search);
    } else {
        QCOMPARE(code, qint32(Ok));
        QCOMPARE(record, expected);
    }
}

void TestRecordManager::walksInKeyOrder_data()
{
    QTest::addColumn<int>("reader");
    QTest::addColumn<int>("key");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QString>("expected");
    auto row = [](const char *name, Reader reader, int key, const char *start, const char *names) {
        QTest::newRow(name) << int(reader) << key << QByteArray(start)
                            << QString::fromLatin1(names);
    };
    row("key 1 from the start", First, 1, "", "FCEADB");
    row("key 1 from a day and kind of account", First, 1, "20240110F", "EADB");
    row("key 1 from between two keys", First, 1, "20240111", "DB");
    row("key 1 from after the last", First, 1, "2025", "");
    row("key 2 from the start", First, 2, "", "CBDFAE");
    row("key 2 from a flag", First, 2, "F", "BDFAE");
    row("key 2 from a shared key", First, 2, "F0000000000002", "DFAE");
    row("positioning read on key 1", Gen, 1, "20240110F", "EADB");
    row("positioning read on key 2", Gen, 2, "F0000000000003", "AE");
    row("positioning read after the last", Gen, 1, "3", "");
    row("next-reads after an equal read on key 2", Equal, 2, "F0000000000002", "DFAE");
    row("next-reads after an equal read on key 1", Equal, 1, "20240110F000003F0000000000010",
        "EADB");
}

void TestRecordManager::walksInKeyOrder()
{
    QFETCH(int, reader);
    QFETCH(int, key);
    QFETCH(QByteArray, start);
    QFETCH(QString, expected);
    open(Session, Scadenze, ReadRewrite);

    QByteArray record = withKey(Scadenze, key, start);
    qint32 code = Ok;
    if (reader == First)
        code = outcome(m_rm->LetturaFirstRec32(Session, Scadenze, key, record, start));
    else if (reader == Gen)
        code = outcome(m_rm->LetturaGenRec32(Session, Scadenze, key, record));
    else
        code = outcome(m_rm->LetturaEqRec32(Session, Scadenze, key, record));

    QString names;
    while (code == Ok) {
        names += test::nameOf(record);
        QCOMPARE(record, item(names.back().toLatin1()));
        code = outcome(m_rm->LetturaNextRec32(Session, Scadenze, record));
    }
    QCOMPARE(names, expected);
    QCOMPARE(code, qint32(EndOfArchive));
    // The end stays the end, and there is no record to rewrite there.
    QCOMPARE(outcome(m_rm->LetturaNextRec32(Session, Scadenze, record)), qint32(EndOfArchive));
    QCOMPARE(outcome(m_rm->RiscritturaRec32(Session, Scadenze, item('A'))),
             qint32(NoCurrentRecord));
}

void TestRecordManager::refusedReads_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<int>("archive");
    QTest::addColumn<int>("key");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<int>("expected");
    auto row = [](const char *name, const char *call, int archive, int key, const char *start,
                  ArchiveError expected) {
        QTest::newRow(name) << QString::fromLatin1(call) << archive << key << QByteArray(start)
                            << int(expected);
    };
    row("start key longer than the key", "first", Scadenze, 2, "F00000000000020", BadKey);
    row("first-read on a key the archive lacks", "first", Scadenze, 3, "", BadKey);
    row("equal read on a key the archive lacks", "equal", TabelleComuni, 2, "", BadKey);
    row("positioning read on key 0", "gen", Scadenze, 0, "", BadKey);
    row("unknown archive", "equal", 99, 1, "", UnknownArchive);
    row("next-read on an unknown archive", "next", 99, 0, "", UnknownArchive);
    row("archive not opened", "first", SediClientiFornitori, 1, "", NotOpen);
    row("next-read without a read", "next", Scadenze, 0, "", NoCurrentRecord);
    row("next-read after a read that found nothing", "missed equal, next", Scadenze, 2, "",
        NoCurrentRecord);
}

void TestRecordManager::refusedReads()
{
    QFETCH(QString, call);
    QFETCH(int, archive);
    QFETCH(int, key);
    QFETCH(QByteArray, start);
    QFETCH(int, expected);
    open(Session, Scadenze, ReadRewrite);
    open(Session, TabelleComuni, ReadOnly);

    const QByteArray before = withKey(Scadenze, 2, "F0000000000001");
    QByteArray record = before;
    qint32 code = Ok;
    if (call == QStringLiteral("first")) {
        code = outcome(m_rm->LetturaFirstRec32(Session, archive, key, record, start));
    } else if (call == QStringLiteral("equal")) {
        code = outcome(m_rm->LetturaEqRec32(Session, archive, key, record));
    } else if (call == QStringLiteral("gen")) {
        code = outcome(m_rm->LetturaGenRec32(Session, archive, key, record));
    } else if (call == QStringLiteral("next")) {
        code = outcome(m_rm->LetturaNextRec32(Session, archive, record));
    } else {
        QByteArray missing = withKey(Scadenze, 2, "X0000000000000");
        QCOMPARE(outcome(m_rm->LetturaFirstRec32(Session, archive, key, record, "F")), qint32(Ok));
        QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, archive, key, missing)), qint32(NotFound));
        record = before;
        code = outcome(m_rm->LetturaNextRec32(Session, archive, record));
    }
    QCOMPARE(code, qint32(expected));
    QCOMPARE(record, before);
}

void TestRecordManager::rewriteRefusals_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("expected");
    QTest::newRow("archive opened read-only") << "read-only" << int(OpenedReadOnly);
    QTest::newRow("without a read") << "no read" << int(NoCurrentRecord);
    QTest::newRow("after a read that found nothing") << "missed read" << int(NoCurrentRecord);
    QTest::newRow("after the end of the archive") << "end" << int(NoCurrentRecord);
    QTest::newRow("read by another session") << "other session" << int(NoCurrentRecord);
    QTest::newRow("record shorter than the layout") << "short" << int(BadRecord);
    QTest::newRow("store locked by another connection") << "locked" << int(Locked);
}

void TestRecordManager::rewriteRefusals()
{
    QFETCH(QString, before);
    QFETCH(int, expected);
    open(Session, Scadenze, before == QStringLiteral("read-only") ? ReadOnly : ReadRewrite);

    QByteArray record = withKey(Scadenze, 2, "F0000000000002");
    if (before == QStringLiteral("other session")) {
        QVERIFY(m_rm->VBInit(OtherSession) != 0);
        open(OtherSession, Scadenze, ReadRewrite);
        QCOMPARE(outcome(m_rm->LetturaEqRec32(OtherSession, Scadenze, 2, record)), qint32(Ok));
    } else if (before != QStringLiteral("no read")) {
        QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, record)), qint32(Ok));
    }
    QByteArray newD = changed(record);
    if (before == QStringLiteral("missed read")) {
        QByteArray missing = withKey(Scadenze, 2, "F0000000000004");
        QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, missing)), qint32(NotFound));
    } else if (before == QStringLiteral("end")) {
        QByteArray last = withKey(Scadenze, 2, "F0000000000010");
        QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, last)), qint32(Ok));
        QCOMPARE(outcome(m_rm->LetturaNextRec32(Session, Scadenze, last)), qint32(EndOfArchive));
    } else if (before == QStringLiteral("short")) {
        newD.chop(1);
    }

    std::unique_ptr<StoreConnection> holder;
    if (before == QStringLiteral("locked")) {
        holder = std::make_unique<StoreConnection>(m_fx->companyStore());
        QVERIFY(holder->exec("BEGIN IMMEDIATE; UPDATE archivio_38 SET record = record"));
    }
    QCOMPARE(outcome(m_rm->RiscritturaRec32(Session, Scadenze, newD)), qint32(expected));
    if (holder) {
        // The store stays readable while another program writes.
        QByteArray read = withKey(Scadenze, 2, "F0000000000002");
        QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, read)), qint32(Ok));
        QCOMPARE(read, item('D'));
        QVERIFY(holder->exec("ROLLBACK"));
        holder.reset();
    }
    QCOMPARE(stored('D'), item('D'));
    QCOMPARE(stored('F'), item('F'));
}

void TestRecordManager::rewriteDuringAWalk()
{
    QVERIFY(m_rm->VBInit(OtherSession) != 0);
    open(Session, Scadenze, ReadRewrite);
    open(OtherSession, Scadenze, ReadRewrite);
    const QString store = m_fx->companyStore();

    QByteArray record(10, ' ');
    QCOMPARE(outcome(m_rm->LetturaFirstRec32(Session, Scadenze, 1, record, QByteArray())),
             qint32(Ok));
    QCOMPARE(test::nameOf(record), QStringLiteral("F"));
    QCOMPARE(outcome(m_rm->LetturaNextRec32(Session, Scadenze, record)), qint32(Ok));
    QCOMPARE(test::nameOf(record), QStringLiteral("C"));
    // Another program changes F, already walked, while the walk stands on C: the walk's
    // rewrite of C still goes through, and is durable at once though the walk goes on.
    QVERIFY(test::execOnStore(store, "UPDATE archivio_38 SET record = "
                                     "substr(record, 1, 319) || x'58' WHERE id = 6"));
    QCOMPARE(outcome(m_rm->RiscritturaRec32(Session, Scadenze, changed(record))), qint32(Ok));
    QCOMPARE(stored('C'), changed(item('C')));

    QCOMPARE(outcome(m_rm->LetturaNextRec32(Session, Scadenze, record)), qint32(Ok));
    QCOMPARE(record, item('E'));

    // With the walk on E, another program changes D, further along; another session reads
    // it as it is now and rewrites A, also further along.
    QVERIFY(test::execOnStore(store, "UPDATE archivio_38 SET record = "
                                     "substr(record, 1, 319) || x'59' WHERE id = 4"));
    QByteArray d = withKey(Scadenze, 2, "F0000000000002");
    QCOMPARE(outcome(m_rm->LetturaEqRec32(OtherSession, Scadenze, 2, d)), qint32(Ok));
    QCOMPARE(d, stored('D'));
    QCOMPARE(d.back(), 'Y');
    QByteArray a = withKey(Scadenze, 2, "F0000000000003");
    QCOMPARE(outcome(m_rm->LetturaEqRec32(OtherSession, Scadenze, 2, a)), qint32(Ok));
    QCOMPARE(outcome(m_rm->RiscritturaRec32(OtherSession, Scadenze, changed(a))), qint32(Ok));

    // The walk goes on where it stood and reads each record as it is now.
    QString rest = QStringLiteral("E");
    while (outcome(m_rm->LetturaNextRec32(Session, Scadenze, record)) == Ok) {
        rest += test::nameOf(record);
        QCOMPARE(record, stored(rest.back().toLatin1()));
    }
    QCOMPARE(rest, QStringLiteral("EADB"));
    QCOMPARE(m_rm->TqGetErcode(), qint32(EndOfArchive));
    QCOMPARE(stored('A'), changed(item('A')));
}

void TestRecordManager::rewriteMovingKey1()
{
    open(Session, Scadenze, ReadRewrite);
    QByteArray b = withKey(Scadenze, 2, "F0000000000001");
    QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, b)), qint32(Ok));
    ErpRecord moved(Scadenze);
    moved.buffer() = b;
    moved.setText(QStringLiteral("data_scad"), QStringLiteral("20240101"));
    QCOMPARE(outcome(m_rm->RiscritturaRec32(Session, Scadenze, moved.buffer())), qint32(Ok));

    QByteArray record;
    QString names;
    qint32 code = outcome(m_rm->LetturaFirstRec32(Session, Scadenze, 1, record, QByteArray()));
    while (code == Ok) {
        names += test::nameOf(record);
        code = outcome(m_rm->LetturaNextRec32(Session, Scadenze, record));
    }
    QCOMPARE(names, QStringLiteral("BFCEAD"));

    QByteArray byOldKey = withKey(Scadenze, 1, dueItems().keyOf(item('B'), 1));
    QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 1, byOldKey)), qint32(NotFound));
    QByteArray byNewKey = withKey(Scadenze, 1, dueItems().keyOf(moved.buffer(), 1));
    QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 1, byNewKey)), qint32(Ok));
    QCOMPARE(byNewKey, moved.buffer());
}

void TestRecordManager::damagedPageIsNotTheEnd()
{
    // Enough due items for many pages, then garbage over pages in the middle of the file.
    ArchiveFixture fx;
    QList<std::pair<int, QByteArray>> records;
    const int count = 3000;
    for (int i = 0; i < count; ++i)
        records.append(
            {Scadenze, test::dueItem(QString::number(i), QStringLiteral("F"),
                                     QStringLiteral("%1").arg(i, 13, 10, QChar(u'0')),
                                     QStringLiteral("20240110"), QStringLiteral("F000010"))});
    QCOMPARE(fx.load(records), QString());
    QFile store(fx.companyStore());
    QVERIFY(store.open(QIODevice::ReadWrite));
    QVERIFY(store.seek(store.size() / 2 / 4096 * 4096));
    store.write(QByteArray(16 * 4096, '\x5a'));
    store.close();

    // The record manager of the test, on these archives (the library finds them through the
    // suite's ini files).
    QFETCH_GLOBAL(int, implementation);
    m_rm->VBEnd(Session);
    fx.writeIniFiles();
    if (implementation == Embedded)
        m_rm = std::make_unique<EmbeddedArchiveStore>(fx.companyDir(), fx.commonDir());
    else
        m_rm = std::make_unique<LibraryRecordManager>(
            QStringLiteral(PAGAMENTI_BINARY_DIR "/bin/tqzdbm32"));
    QVERIFY(m_rm->VBInit(Session) != 0);
    open(Session, Scadenze, ReadOnly);
    QByteArray record;
    int read = 0;
    qint32 code = outcome(m_rm->LetturaFirstRec32(Session, Scadenze, 1, record, QByteArray()));
    while (code == Ok) {
        ++read;
        code = outcome(m_rm->LetturaNextRec32(Session, Scadenze, record));
    }
    // The walk stops at the damage and says so: the end of the archive is another code.
    QCOMPARE(code, qint32(Damaged));
    QVERIFY(read < count);
    m_rm->VBEnd(Session);
    m_rm.reset();
}

void TestRecordManager::busyStoreIsWaitedFor_data()
{
    // How long another program holds the store (-1: until the call has returned), the
    // longest wait in seconds, and whether the observer ends the wait at its first notice.
    QTest::addColumn<int>("holdMs");
    QTest::addColumn<QByteArray>("wait");
    QTest::addColumn<bool>("cancel");
    QTest::addColumn<int>("expected");
    QTest::newRow("a brief hold is waited out") << 300 << QByteArray("5") << false << int(Ok);
    QTest::newRow("a hold longer than the wait") << -1 << QByteArray("0.3") << false
                                                  << int(Locked);
    QTest::newRow("the wait shown and ended") << -1 << QByteArray("5") << true << int(Locked);
}

void TestRecordManager::busyStoreIsWaitedFor()
{
    QFETCH_GLOBAL(int, implementation);
    QFETCH(int, holdMs);
    QFETCH(QByteArray, wait);
    QFETCH(bool, cancel);
    QFETCH(int, expected);
    if (cancel && implementation == Library)
        QSKIP("the library keeps its own observer: only the program's stores tell the wait");
    qputenv("PAGAMENTI_ARCHIVE_WAIT", wait);
    QList<BusyWait::Notice> notices;
    BusyWait::setObserver([&](const BusyWait::Notice &notice) {
        notices << notice;
        return !cancel;
    });
    const auto noObserver = qScopeGuard([] { BusyWait::setObserver({}); });

    open(Session, Scadenze, ReadRewrite);
    QByteArray record = withKey(Scadenze, 2, "F0000000000001");
    QCOMPARE(outcome(m_rm->LetturaEqRec32(Session, Scadenze, 2, record)), qint32(Ok));
    StoreConnection holder(m_fx->companyStore());
    QVERIFY(holder.exec("BEGIN IMMEDIATE; UPDATE archivio_38 SET record = record"));
    std::thread release;
    if (holdMs >= 0)
        release = std::thread([&holder, holdMs] {
            std::this_thread::sleep_for(std::chrono::milliseconds(holdMs));
            holder.exec("ROLLBACK");
        });
    const qint32 code = outcome(m_rm->RiscritturaRec32(Session, Scadenze, changed(record)));
    if (release.joinable())
        release.join();
    else
        QVERIFY(holder.exec("ROLLBACK"));
    QCOMPARE(code, qint32(expected));
    QCOMPARE(stored('B'), expected == Ok ? changed(item('B')) : item('B'));
    if (cancel) {
        QCOMPARE(notices.size(), 1);
        QVERIFY(notices.first().first);
        QCOMPARE(notices.first().path, m_fx->companyStore());
        QCOMPARE(notices.first().limitMs, 5000);
    }
}

QTEST_GUILESS_MAIN(TestRecordManager)
#include "tst_recordmanager.moc"
