#include "archivefixture.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/archivewriter.h"
#include "archives/store/embeddedarchivestore.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace pg;
using namespace pg::archives;
using pg::test::ArchiveFixture;

class TestArchiveWriter : public QObject
{
    Q_OBJECT

private slots:
    void writesEachArchiveIntoItsStore_data();
    void writesEachArchiveIntoItsStore();
    void replacesTheRecordWithTheSameKey();
    void allOrNothing_data();
    void allOrNothing();
    void rebuildsAStoreOfOtherLayouts();
    void refusesWhereItCannotWrite();
};

namespace {

// Built on first use: the record layouts are not there before main() starts.
QByteArray itemA()
{
    return test::dueItem(QStringLiteral("A"), QStringLiteral("F"), QStringLiteral("0000000000001"),
                         QStringLiteral("20240110"), QStringLiteral("F000010"));
}

QByteArray itemB()
{
    return test::dueItem(QStringLiteral("B"), QStringLiteral("F"), QStringLiteral("0000000000002"),
                         QStringLiteral("20240301"), QStringLiteral("F000020"));
}

// The record of archive 38 with that key 2, read through a fresh store; empty when missing.
QByteArray readByKey2(const QString &companyDir, const QString &commonDir, const QByteArray &item,
                      qint32 *error = nullptr)
{
    EmbeddedArchiveStore store(companyDir, commonDir);
    store.AperturaFile(1, Scadenze, ReadOnly);
    qint32 code = store.TqGetErcode();
    QByteArray record = item;
    if (code == Ok) {
        store.LetturaEqRec32(1, Scadenze, 2, record);
        code = store.TqGetErcode();
    }
    if (error)
        *error = code;
    return code == Ok ? record : QByteArray();
}

} // namespace

void TestArchiveWriter::writesEachArchiveIntoItsStore_data()
{
    QTest::addColumn<bool>("oneDirectory");
    QTest::newRow("company and common directories") << false;
    QTest::newRow("one directory for both") << true;
}

void TestArchiveWriter::writesEachArchiveIntoItsStore()
{
    QFETCH(bool, oneDirectory);
    ArchiveFixture fx;
    const QString commonDir = oneDirectory ? fx.companyDir() : fx.commonDir();
    ArchiveWriter writer(fx.companyDir(), commonDir);
    QString error;
    QVERIFY2(writer.begin(&error), qPrintable(error));
    QVERIFY(writer.put(Scadenze, itemA(), &error));
    QVERIFY(writer.put(TabelleComuni, test::bankAgency(), &error));
    QVERIFY2(writer.commit(&error), qPrintable(error));

    const QString common = EmbeddedArchiveStore::storePath(commonDir);
    QCOMPARE(test::rowCount(fx.companyStore(), "archivio_38"), 1);
    QCOMPARE(test::rowCount(common, "archivio_15"), 1);
    // Every archive of the layouts gets its table, empty until written.
    QCOMPARE(test::rowCount(fx.companyStore(), "archivio_55"), 0);
    QCOMPARE(test::rowCount(common, "archivio_0"), 0);
    if (!oneDirectory) {
        QCOMPARE(test::rowCount(fx.companyStore(), "archivio_15"), -1);
        QCOMPARE(test::rowCount(fx.commonStore(), "archivio_38"), -1);
    }
    QCOMPARE(readByKey2(fx.companyDir(), commonDir, itemA()), itemA());
}

void TestArchiveWriter::replacesTheRecordWithTheSameKey()
{
    ArchiveFixture fx;
    QCOMPARE(fx.load({{Scadenze, itemA()}, {Scadenze, itemB()}}), QString());
    // Same key 1 as A, other contents: replaces A. Same key 2 (flag and link) as B, another
    // due date and so another key 1: replaces B, never a second record of the same due item.
    QByteArray changedA = itemA();
    changedA.replace(210, 1, "Z");
    const QByteArray sameKey2AsB =
        test::dueItem(QStringLiteral("C"), QStringLiteral("F"), QStringLiteral("0000000000002"),
                      QStringLiteral("20231231"), QStringLiteral("F000020"));
    QCOMPARE(fx.load({{Scadenze, changedA}, {Scadenze, sameKey2AsB}}), QString());

    QCOMPARE(test::rowCount(fx.companyStore(), "archivio_38"), 2);
    QCOMPARE(test::nameOf(readByKey2(fx.companyDir(), fx.commonDir(), itemA())),
             QStringLiteral("Z"));
    QCOMPARE(test::nameOf(readByKey2(fx.companyDir(), fx.commonDir(), itemB())),
             QStringLiteral("C"));

    // Two versions of one due item in the same load: which one is right cannot be told, so
    // the load writes nothing.
    const QString refused =
        fx.load({{Scadenze, itemB()}, {Scadenze, changedA}, {Scadenze, sameKey2AsB}});
    QVERIFY2(refused.contains(u"flag_colpar e link (\"F0000000000002\")"), qPrintable(refused));
    QCOMPARE(test::rowCount(fx.companyStore(), "archivio_38"), 2);
    QCOMPARE(test::nameOf(readByKey2(fx.companyDir(), fx.commonDir(), itemB())),
             QStringLiteral("C"));
}

void TestArchiveWriter::allOrNothing_data()
{
    QTest::addColumn<int>("archive");
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("unknown archive") << 99 << itemB();
    QTest::newRow("short record") << int(Scadenze) << itemB().left(itemB().size() - 1);
    QTest::newRow("long record") << int(Scadenze) << itemB() + ' ';
    QTest::newRow("common table of another length") << int(TabelleComuni) << itemB();
}

void TestArchiveWriter::allOrNothing()
{
    QFETCH(int, archive);
    QFETCH(QByteArray, record);
    ArchiveFixture fx;
    QCOMPARE(fx.load({{Scadenze, itemA()}}), QString());

    QByteArray changedA = itemA();
    changedA.replace(210, 1, "Z");
    {
        ArchiveWriter writer(fx.companyDir(), fx.commonDir());
        QString error;
        QVERIFY(writer.begin(&error));
        QVERIFY(writer.put(Scadenze, changedA, &error));
        QVERIFY(writer.put(TabelleComuni, test::bankAgency(), &error));
        QVERIFY(!writer.put(archive, record, &error));
        QVERIFY(!error.isEmpty());
        error.clear();
        QVERIFY(writer.put(Scadenze, itemB(), &error));
        QVERIFY(!writer.commit(&error));
        QVERIFY(!error.isEmpty());
    }
    QCOMPARE(test::rowCount(fx.companyStore(), "archivio_38"), 1);
    QCOMPARE(test::rowCount(fx.commonStore(), "archivio_15"), 0);
    QCOMPARE(readByKey2(fx.companyDir(), fx.commonDir(), itemA()), itemA());

    // A writer dropped before its commit leaves nothing either.
    {
        ArchiveWriter writer(fx.companyDir(), fx.commonDir());
        QVERIFY(writer.begin(nullptr));
        QVERIFY(writer.put(Scadenze, itemB(), nullptr));
    }
    QCOMPARE(test::rowCount(fx.companyStore(), "archivio_38"), 1);
}

void TestArchiveWriter::rebuildsAStoreOfOtherLayouts()
{
    ArchiveFixture fx;
    QCOMPARE(fx.load({{Scadenze, itemA()}, {Scadenze, itemB()}}), QString());
    // A store whose due items were written when key 2 was another field.
    QVERIFY(test::execOnStore(fx.companyStore(),
                              "UPDATE tracciati SET firma = '320;1=18+8;2=14+1' "
                              "WHERE archivio = 38; UPDATE archivio_38 SET chiave_2 = x'30'"));
    qint32 error = Ok;
    QVERIFY(readByKey2(fx.companyDir(), fx.commonDir(), itemB(), &error).isEmpty());
    QCOMPARE(error, qint32(Damaged));

    QCOMPARE(fx.load({}), QString());
    QCOMPARE(readByKey2(fx.companyDir(), fx.commonDir(), itemB()), itemB());
    QCOMPARE(readByKey2(fx.companyDir(), fx.commonDir(), itemA()), itemA());
}

void TestArchiveWriter::refusesWhereItCannotWrite()
{
    ArchiveFixture fx;
    const QByteArray garbage(5000, 'x');
    QFile file(fx.companyStore());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(garbage);
    file.close();

    QVERIFY(!fx.load({{Scadenze, itemA()}}).isEmpty());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), garbage);
    QCOMPARE(test::rowCount(fx.commonStore(), "archivio_15"), -1);

    // Directories never resolved: no store appears where the program happens to run.
    const QString here = QDir::currentPath();
    QVERIFY(QDir::setCurrent(fx.commonDir()));
    ArchiveWriter writer{QString(), QString()};
    QString error;
    QVERIFY(!writer.begin(&error));
    QVERIFY(!error.isEmpty());
    QVERIFY(QDir(fx.commonDir()).entryList(QDir::Files).isEmpty());
    EmbeddedArchiveStore store{QString(), QString()};
    store.AperturaFile(1, TabelleComuni, ReadOnly);
    QCOMPARE(store.TqGetErcode(), qint32(NotFound));
    QVERIFY(QDir::setCurrent(here));
}

QTEST_GUILESS_MAIN(TestArchiveWriter)
#include "tst_archivewriter.moc"
