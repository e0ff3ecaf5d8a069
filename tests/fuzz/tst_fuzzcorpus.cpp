// The inputs the fuzzers found or started from, kept in tests/fuzz/corpus/<target>/, read
// again by every target's parser: what once crashed it stays fixed.

#include "fuzztargets.h"

#include <QDir>
#include <QFile>
#include <QTest>

class TestFuzzCorpus : public QObject
{
    Q_OBJECT

private slots:
    void everyKeptInputReadsSafely_data();
    void everyKeptInputReadsSafely();
};

void TestFuzzCorpus::everyKeptInputReadsSafely_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("path");
    const QList<pg::fuzz::Target> &targets = pg::fuzz::targets();
    for (int t = 0; t < targets.size(); ++t) {
        const QDir dir(QStringLiteral(PAGAMENTI_SOURCE_DIR "/tests/fuzz/corpus/") +
                       QString::fromLatin1(targets.at(t).name));
        const QStringList files = dir.entryList(QDir::Files, QDir::Name);
        QVERIFY2(!files.isEmpty(), qPrintable(dir.path()));
        for (const QString &file : files)
            QTest::addRow("%s/%s", targets.at(t).name, qPrintable(file)) << t << dir.filePath(file);
    }
}

void TestFuzzCorpus::everyKeptInputReadsSafely()
{
    QFETCH(int, target);
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    // A finding crashes or aborts the test; a safe read simply returns.
    pg::fuzz::targets().at(target).run(file.readAll());
}

QTEST_GUILESS_MAIN(TestFuzzCorpus)
#include "tst_fuzzcorpus.moc"
