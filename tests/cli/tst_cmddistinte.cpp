// pagamenti-cli list, show and delete on a demo installation, each run a real process.

#include "clirun.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = pg::test::CliRun;

} // namespace

class TestCmdDistinte : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void listShowAndDelete();

private:
    Run cli(const QStringList &arguments);
    // Due items of the demo that some distinta holds (distinta state other than "0").
    int itemsInDistinte();

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_bank;
};

Run TestCmdDistinte::cli(const QStringList &arguments)
{
    return pg::test::runCli(arguments, m_dir->path());
}

int TestCmdDistinte::itemsInDistinte()
{
    const Run dump = cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("38")});
    return int(dump.out.count(QRegularExpression(QStringLiteral("stato_dist=[345]"))));
}

void TestCmdDistinte::initTestCase()
{
    m_dir = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/pglXXXXXX"));
    QVERIFY(m_dir->isValid());
    QCOMPARE(cli({QStringLiteral("demo"), m_dir->path(), QStringLiteral("--today"),
                  QStringLiteral("21/11/2026")})
                 .exitCode,
             0);
    const Run dump = cli({QStringLiteral("archive"), QStringLiteral("dump"), QStringLiteral("14")});
    const QRegularExpressionMatch m =
        QRegularExpression(QStringLiteral("BA1 codice=(\\d{5})(\\d{5})")).match(dump.out);
    QVERIFY(m.hasMatch());
    m_bank = m.captured(1) + u'/' + m.captured(2);
}

void TestCmdDistinte::listShowAndDelete()
{
    const Run empty = cli({QStringLiteral("list")});
    QCOMPARE(empty.exitCode, 0);
    QCOMPARE(empty.out.count(u'\n'), 1); // the heading alone

    const int before = itemsInDistinte();
    QCOMPARE(cli({QStringLiteral("new"), QStringLiteral("--bank"), m_bank, QStringLiteral("--type"),
                  QStringLiteral("6")})
                 .exitCode,
             0);
    QCOMPARE(cli({QStringLiteral("new"), QStringLiteral("--bank"), m_bank, QStringLiteral("--type"),
                  QStringLiteral("3")})
                 .exitCode,
             0);
    const int marked = itemsInDistinte();
    QVERIFY(marked > before);

    const Run list = cli({QStringLiteral("list")});
    QCOMPARE(list.exitCode, 0);
    const QStringList lines = list.out.split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(1).trimmed().startsWith(u'1'));
    QVERIFY(lines.at(2).trimmed().startsWith(u'2'));
    const QString today = QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy"));
    QVERIFY(lines.at(1).contains(today));
    QVERIFY(lines.at(1).contains(QRegularExpression(QStringLiteral("\\d,\\d\\d|\\d\\.\\d\\d"))));

    const Run show = cli({QStringLiteral("show"), QStringLiteral("1")});
    QCOMPARE(show.exitCode, 0);
    QVERIFY(show.out.startsWith(QStringLiteral("Distinta N. 1 (Fornitori) del ") + today));
    QVERIFY(show.out.contains(QStringLiteral("Stato: P (Prova)")));
    QVERIFY(show.out.contains(QStringLiteral("Bonifico")));
    QVERIFY(!show.out.contains(QStringLiteral("Rimessa diretta")));
    QCOMPARE(cli({QStringLiteral("show"), QStringLiteral("7")}).exitCode, 1);
    QCOMPARE(cli({QStringLiteral("show"), QStringLiteral("uno")}).exitCode, 2);

    // Without --yes the question is answered No and nothing goes.
    const Run declined = cli({QStringLiteral("delete"), QStringLiteral("1")});
    QCOMPARE(declined.exitCode, 1);
    QVERIFY(declined.err.contains(QStringLiteral("Elimina Distinta?")));
    QCOMPARE(itemsInDistinte(), marked);

    const Run deleted =
        cli({QStringLiteral("--yes"), QStringLiteral("delete"), QStringLiteral("1")});
    QCOMPARE(deleted.exitCode, 0);
    QVERIFY(itemsInDistinte() < marked);
    QCOMPARE(cli({QStringLiteral("list")}).out.split(u'\n', Qt::SkipEmptyParts).size(), 2);

    // Once presented to the bank a distinta is never deleted (the cash payments of distinta
    // 2 need no bank data, so its file is written).
    QCOMPARE(cli({QStringLiteral("cbi"), QStringLiteral("2"), QStringLiteral("--out"),
                  m_dir->filePath(QStringLiteral("cbi2.txt"))})
                 .exitCode,
             0);
    const Run refused =
        cli({QStringLiteral("--yes"), QStringLiteral("delete"), QStringLiteral("2")});
    QCOMPARE(refused.exitCode, 1);
    QVERIFY(refused.err.contains(QStringLiteral("presentata in banca")));
    QCOMPARE(cli({QStringLiteral("list")}).out.split(u'\n', Qt::SkipEmptyParts).size(), 2);
}

QTEST_GUILESS_MAIN(TestCmdDistinte)
#include "tst_cmddistinte.moc"
