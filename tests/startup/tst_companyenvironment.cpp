#include "scriptedprompter.h"

#include "startup/companyenvironment.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;

class TestCompanyEnvironment : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void archiveNodeTakesServerDirectories();
    void nodeComparisonIsExact_data();
    void nodeComparisonIsExact();
    void onlyThreeCharactersNameTheParpeFile();
    void missingParpeTellsTheCause_data();
    void missingParpeTellsTheCause();
    void iniDirectoryLookup();

private:
    void writeFile(const QString &path, const QByteArray &content);
    void writeOrvida(const QByteArray &dir, const QByteArray &code, const QByteArray &node);
    QString root() const { return m_dir.path() + u'/'; }
    QTemporaryDir m_dir;
};

void TestCompanyEnvironment::writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(content);
}

void TestCompanyEnvironment::writeOrvida(const QByteArray &dir, const QByteArray &code,
                                         const QByteArray &node)
{
    QByteArray ini = "[AMBIENTE]\r\nDir orvida=" + dir + "\r\nCodice Azienda=" + code + "\r\n";
    if (!node.isNull())
        ini += "NodoId=" + node + "\r\n";
    writeFile(root() + QStringLiteral("ini/ORVIDA.INI"), ini);
}

void TestCompanyEnvironment::init()
{
    QVERIFY(m_dir.isValid());
    QDir(root()).removeRecursively();
    QDir().mkpath(root());
    qputenv("ORVIDA_INI_DIR", (root() + QStringLiteral("ini")).toLocal8Bit());
}

void TestCompanyEnvironment::archiveNodeTakesServerDirectories()
{
    writeOrvida(root().toLocal8Bit() + "erp", "ABC", "7");
    writeFile(root() + QStringLiteral("erp/D_AZI/ABCparpe.ini"),
              "[Ambiente]\nNodoIDUbicazioneArchivi=7\n"
              "[Dir Archivi Server]\nAzienda=/srv/abc\nComuni=/srv/com/\n"
              "[Dir Archivi Client]\nAzienda=/mnt/abc\nComuni=/mnt/com\n");
    const CompanyEnvironment env = ResolveCompanyEnvironment();
    QCOMPARE(env.OrvidaDir, root() + QStringLiteral("erp/"));
    QCOMPARE(env.CompanyCode, QStringLiteral("ABC"));
    QCOMPARE(env.CompanyArchiveDir, QStringLiteral("/srv/abc/"));
    QCOMPARE(env.CommonArchiveDir, QStringLiteral("/srv/com/"));
    QVERIFY(env.ProgramDir.isEmpty());
    QCOMPARE(programDirOf(env.OrvidaDir), root() + QStringLiteral("erp/exe/"));
}

void TestCompanyEnvironment::nodeComparisonIsExact_data()
{
    QTest::addColumn<QByteArray>("nodeId");
    QTest::addColumn<QByteArray>("parpeNode"); // null: the key is missing
    QTest::addColumn<bool>("server");
    QTest::newRow("equal") << QByteArray("nodo1") << QByteArray("nodo1") << true;
    QTest::newRow("case differs") << QByteArray("Nodo1") << QByteArray("nodo1") << false;
    QTest::newRow("missing parpe value counts as 1") << QByteArray("1") << QByteArray() << true;
    QTest::newRow("missing node id") << QByteArray() << QByteArray("1") << false;
    QTest::newRow("both empty") << QByteArray("") << QByteArray("") << false;
}

void TestCompanyEnvironment::nodeComparisonIsExact()
{
    QFETCH(QByteArray, nodeId);
    QFETCH(QByteArray, parpeNode);
    QFETCH(bool, server);
    writeOrvida(root().toLocal8Bit() + "erp/", "001", nodeId);
    QByteArray parpe = "[Dir Archivi Server]\nAzienda=S\n[Dir Archivi Client]\nAzienda=C\n";
    if (!parpeNode.isNull())
        parpe = "[Ambiente]\nNodoIDUbicazioneArchivi=" + parpeNode + "\n" + parpe;
    writeFile(root() + QStringLiteral("erp/D_AZI/001parpe.ini"), parpe);
    const CompanyEnvironment env = ResolveCompanyEnvironment();
    QCOMPARE(env.CompanyArchiveDir, server ? QStringLiteral("S/") : QStringLiteral("C/"));
    QCOMPARE(env.CommonArchiveDir, QStringLiteral("/"));
}

void TestCompanyEnvironment::onlyThreeCharactersNameTheParpeFile()
{
    writeOrvida(root().toLocal8Bit() + "erp", "12345", "1");
    writeFile(root() + QStringLiteral("erp/d_azi/123PARPE.INI"), "[Dir Archivi Server]\nAzienda=x\n");
    const CompanyEnvironment env = ResolveCompanyEnvironment();
    QCOMPARE(env.CompanyCode, QStringLiteral("12345"));
    QCOMPARE(env.CompanyArchiveDir, QStringLiteral("x/"));
}

void TestCompanyEnvironment::missingParpeTellsTheCause_data()
{
    // ORVIDA.INI as written (absent when null; ROOT stands for the test's directory), and the
    // cause told after the suite's message and the company code.
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("cause");
    const QByteArray dir = "Dir orvida=ROOT/erp\r\n";
    QTest::newRow("no ORVIDA.INI")
        << QByteArray() << QString() << "Il file ROOT/ini/ORVIDA.INI non esiste.";
    QTest::newRow("empty ORVIDA.INI")
        << QByteArray("") << QString()
        << "Nel file ROOT/ini/ORVIDA.INI manca la sezione [AMBIENTE].";
    QTest::newRow("junk") << QByteArray("\x01\xff\xfe garbage = \r\n[[[") << QString()
                          << "Nel file ROOT/ini/ORVIDA.INI manca la sezione [AMBIENTE].";
    QTest::newRow("no company code") << "[AMBIENTE]\r\n" + dir << QString()
                                     << "Nel file ROOT/ini/ORVIDA.INI manca il valore \"Codice "
                                        "Azienda\" della sezione [AMBIENTE].";
    QTest::newRow("directory cut at 39 characters")
        << "[AMBIENTE]\r\nDir orvida=ROOT/" + QByteArray(40, 'd') + "\r\nCodice Azienda=ABC\r\n"
        << "ABC"
        << "Il valore \"Dir orvida\" del file ROOT/ini/ORVIDA.INI è lungo";
    // No company selected in the suite: the parpe file of "..." does not exist.
    QTest::newRow("no parpe file") << "[AMBIENTE]\r\n" + dir + "Codice Azienda=...\r\n"
                                   << "..."
                                   << "Il file ROOT/erp/D_AZI/...parpe.ini non esiste.";
}

void TestCompanyEnvironment::missingParpeTellsTheCause()
{
    QFETCH(QByteArray, ini);
    QFETCH(QString, code);
    QFETCH(QString, cause);
    const QString root = QDir::toNativeSeparators(m_dir.path());
    if (!ini.isNull())
        writeFile(this->root() + QStringLiteral("ini/ORVIDA.INI"),
                  ini.replace("ROOT", m_dir.path().toLocal8Bit()));
    test::ScriptedPrompter prompter;
    QVERIFY_THROWS_EXCEPTION(ProcessEnded, ResolveCompanyEnvironment());
    QCOMPARE(prompter.shown().size(), 1);
    const Message &m = prompter.shown().first();
    // The suite's own message first, then the cause on a line of its own.
    const QString message =
        QStringLiteral("Errore. Non è stato trovato il Parpe per l'azienda attiva ") + code;
    QVERIFY2(m.text.startsWith(message + QStringLiteral("\r\n") +
                               cause.replace(QStringLiteral("ROOT"), root)),
             qPrintable(m.text));
    QCOMPARE(m.buttons, Buttons::Ok);
    QCOMPARE(m.title, QString());
}

void TestCompanyEnvironment::iniDirectoryLookup()
{
    QCOMPARE(orvidaIniDirectory(), root() + QStringLiteral("ini"));
    writeOrvida("/x", "A", "1");
    QCOMPARE(orvidaIniPath(), root() + QStringLiteral("ini/ORVIDA.INI"));
    qunsetenv("ORVIDA_INI_DIR");
#ifndef Q_OS_WIN
    const QByteArray saved = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/cfg");
    QCOMPARE(orvidaIniDirectory(), QStringLiteral("/cfg/orvida"));
    qunsetenv("XDG_CONFIG_HOME");
    QCOMPARE(orvidaIniDirectory(), QDir::homePath() + QStringLiteral("/.config/orvida"));
    qputenv("XDG_CONFIG_HOME", saved);
#endif
}

QTEST_GUILESS_MAIN(TestCompanyEnvironment)
#include "tst_companyenvironment.moc"
