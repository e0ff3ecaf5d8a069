#include "scriptedprompter.h"

#include "app/olderdatabase.h"
#include "app/startupsequence.h"
#include "localdb/databaseconnection.h"
#include "localdb/localdatabase.h"
#include "localdb/shippedschema.h"

#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::app;

class TestStartupSequence : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void otherCommandLinesEndSilently_data();
    void otherCommandLinesEndSilently();
    void secondStartRaisesTheFirst();
    void noCurrentCompany();
    void localDatabaseFoundOrCreated();
    void nothingCreatedWithoutTheArchives();
    void databaseFileRefused();
    void developmentTreeRegeneratesTheSchemaFile();
    void databaseVersionRefused();
    void olderDatabaseIsToldNeverOpened();

private:
    // Runs the sequence; the exit code when it ended the process, -1 when it went on.
    int run(const QStringList &arguments = {QStringLiteral("Pagamenti")});

    StartupSequence::Steps m_steps;
    QStringList m_log;
    CompanyEnvironment m_env;
    bool m_databaseExists = true;
    bool m_created = true;
    bool m_versionOk = true;
    bool m_only = true;
    QString m_appDir = QStringLiteral("/opt/pagamenti/bin");
    QStringList m_existingDirs;
    QString m_archivesProblem;
    QString m_fileProblem;
};

void TestStartupSequence::init()
{
    m_log.clear();
    m_env = CompanyEnvironment();
    m_env.OrvidaDir = QStringLiteral("/srv/orvida/");
    m_env.CompanyCode = QStringLiteral("ABC");
    m_env.CompanyArchiveDir = QStringLiteral("/srv/orvida/D_ABC/");
    m_databaseExists = true;
    m_created = true;
    m_versionOk = true;
    m_only = true;
    m_existingDirs.clear();
    m_archivesProblem.clear();
    m_fileProblem.clear();
    m_steps.isOnlyInstance = [this] {
        m_log << QStringLiteral("instance");
        return m_only;
    };
    m_steps.ActivatePrevInstance = [this] { m_log << QStringLiteral("activate"); };
    m_steps.resolveCompanyEnvironment = [this] {
        m_log << QStringLiteral("environment");
        return m_env;
    };
    m_steps.applicationDirPath = [this] { return m_appDir; };
    m_steps.directoryExists = [this](const QString &p) { return m_existingDirs.contains(p); };
    m_steps.locateDatabase = [this] {
        return localdb::DatabaseLocation::file(m_env.CompanyArchiveDir + localdb::FileName);
    };
    m_steps.databaseExists = [this](const localdb::DatabaseLocation &d) {
        m_log << QStringLiteral("exists ") + d.filePath;
        return m_databaseExists;
    };
    m_steps.createDatabase = [this](const localdb::DatabaseLocation &d) {
        m_log << QStringLiteral("create ") + d.filePath;
        return m_created;
    };
    m_steps.generateSchemaFile = [this](const localdb::DatabaseLocation &d) {
        m_log << QStringLiteral("generate ") + d.filePath;
    };
    m_steps.companyArchivesProblem = [this](const QString &dir) {
        m_log << QStringLiteral("archives ") + dir;
        return m_archivesProblem;
    };
    m_steps.databaseFileProblem = [this](const QString &file) {
        m_log << QStringLiteral("file ") + file;
        return m_fileProblem;
    };
    m_steps.checkDatabaseVersion = [this](const localdb::DatabaseLocation &d) {
        m_log << QStringLiteral("version ") + d.filePath;
        return m_versionOk;
    };
    m_steps.noticeOlderDatabase = [this](const CompanyEnvironment &,
                                         const localdb::DatabaseLocation &) {
        m_log << QStringLiteral("older");
    };
}

int TestStartupSequence::run(const QStringList &arguments)
{
    try {
        StartupSequence(m_steps).run(arguments);
        return -1;
    } catch (const ProcessEnded &ended) {
        return ended.exitCode;
    }
}

void TestStartupSequence::otherCommandLinesEndSilently_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("none") << QStringList();
    QTest::newRow("lower case") << QStringList{QStringLiteral("pagamenti")};
    QTest::newRow("trailing blank") << QStringList{QStringLiteral("Pagamenti ")};
    QTest::newRow("two arguments")
        << QStringList{QStringLiteral("Pagamenti"), QStringLiteral("Pagamenti")};
}

void TestStartupSequence::otherCommandLinesEndSilently()
{
    QFETCH(QStringList, arguments);
    test::ScriptedPrompter prompter;
    QCOMPARE(run(arguments), 0);
    QVERIFY(prompter.shown().isEmpty());
    QVERIFY(m_log.isEmpty());
}

void TestStartupSequence::secondStartRaisesTheFirst()
{
    test::ScriptedPrompter prompter;
    m_only = false;
    QCOMPARE(run(), 0);
    QCOMPARE(m_log, (QStringList{QStringLiteral("instance"), QStringLiteral("activate")}));
    QVERIFY(prompter.shown().isEmpty());
}

void TestStartupSequence::noCurrentCompany()
{
    test::ScriptedPrompter prompter;
    m_env.CompanyCode = QStringLiteral("...");
    QCOMPARE(run(), 1);
    QCOMPARE(prompter.texts(),
             QStringList{QStringLiteral("Nessuna azienda corrente.\r\n\r\nEntrare in [orvida] e "
                                        "selezionare una azienda Valida")});
    QCOMPARE(prompter.shown().first().icon, Icon::Critical);
    QCOMPARE(m_log, (QStringList{QStringLiteral("instance"), QStringLiteral("environment")}));
    // The program directory was set before the check.
    QCOMPARE(ProgramDir(), QStringLiteral("/srv/orvida/exe/"));
}

void TestStartupSequence::localDatabaseFoundOrCreated()
{
    test::ScriptedPrompter prompter;
    const QString db = QStringLiteral("/srv/orvida/D_ABC/Pagame.db");
    QCOMPARE(run(), -1);
    QVERIFY(!m_log.contains(QStringLiteral("create ") + db));
    QCOMPARE(m_log.mid(m_log.size() - 2),
             (QStringList{QStringLiteral("version ") + db, QStringLiteral("older")}));

    m_log.clear();
    m_databaseExists = false;
    QCOMPARE(run(), -1);
    QVERIFY(m_log.contains(QStringLiteral("create ") + db));

    m_log.clear();
    m_created = false;
    QCOMPARE(run(), 1);
    QCOMPARE(m_log.last(), QStringLiteral("create ") + db);
}

void TestStartupSequence::nothingCreatedWithoutTheArchives()
{
    test::ScriptedPrompter prompter;
    m_databaseExists = false;
    m_archivesProblem = QStringLiteral("La cartella degli archivi dell'azienda /srv/orvida/D_ABC/ "
                                       "non contiene gli archivi di [orvida] (manca il file "
                                       "archivi.db).");
    QCOMPARE(run(), 1);
    QVERIFY(m_log.filter(QStringLiteral("create")).isEmpty());
    QCOMPARE(m_log.last(), QStringLiteral("archives /srv/orvida/D_ABC/"));
    QCOMPARE(prompter.texts(), QStringList{QStringLiteral("Impossibile aprire il file delle "
                                                          "Scadenze di [orvida]. Impossibile "
                                                          "continuare.\r\n") +
                                           m_archivesProblem});
    QCOMPARE(prompter.shown().first().title, QStringLiteral("ERRORE"));

    // An existing database is opened as it is: its archives are the main window's to open.
    m_log.clear();
    m_databaseExists = true;
    QCOMPARE(run(), -1);
    QVERIFY(m_log.filter(QStringLiteral("archives")).isEmpty());
}

void TestStartupSequence::databaseFileRefused()
{
    test::ScriptedPrompter prompter;
    m_fileProblem = QStringLiteral("Il file /srv/orvida/D_ABC/Pagame.db è vuoto: ...");
    QCOMPARE(run(), 1);
    QCOMPARE(m_log.last(), QStringLiteral("file /srv/orvida/D_ABC/Pagame.db"));
    QCOMPARE(prompter.texts(), QStringList{m_fileProblem});
    QCOMPARE(prompter.shown().first().icon, Icon::Critical);
}

void TestStartupSequence::developmentTreeRegeneratesTheSchemaFile()
{
    test::ScriptedPrompter prompter;
    QCOMPARE(StartupSequence::developmentTreeProbe(QStringLiteral("/opt/pagamenti/bin")),
             QStringLiteral("/opt/pagamenti/bin..\\..\\src"));
    QCOMPARE(run(), -1);
    QVERIFY(m_log.filter(QStringLiteral("generate")).isEmpty());

    m_log.clear();
    m_existingDirs << QStringLiteral("/opt/pagamenti/bin..\\..\\src");
    QCOMPARE(run(), -1);
    QCOMPARE(m_log.filter(QStringLiteral("generate")),
             QStringList{QStringLiteral("generate /srv/orvida/D_ABC/Pagame.db")});
}

void TestStartupSequence::databaseVersionRefused()
{
    test::ScriptedPrompter prompter;
    m_versionOk = false;
    QCOMPARE(run(), 1);
}

void TestStartupSequence::olderDatabaseIsToldNeverOpened()
{
    QTemporaryDir dir;
    CompanyEnvironment env;
    env.OrvidaDir = dir.path() + u'/';
    env.CompanyCode = QStringLiteral("ABC");
    env.CompanyArchiveDir = env.OrvidaDir + QStringLiteral("D_ABC/");
    env.ProgramDir = env.OrvidaDir + QStringLiteral("exe/");
    QVERIFY(QDir().mkpath(env.CompanyArchiveDir) && QDir().mkpath(env.ProgramDir));
    setCompanyEnvironment(env);
    QFile schema(env.ProgramDir + localdb::SchemaFileName);
    QVERIFY(schema.open(QIODevice::WriteOnly));
    schema.write(shippedSchemaDescription());
    schema.close();
    test::ScriptedPrompter prompter;
    QVERIFY(localdb::CreateDatabaseFromSchema(env.CompanyArchiveDir, localdb::FileName));
    const auto database =
        localdb::DatabaseLocation::file(env.CompanyArchiveDir + localdb::FileName);

    // Nothing of an earlier version: nothing to say.
    OlderDatabase::notice(env, database);
    QVERIFY(prompter.shown().isEmpty());

    // Both places of the earlier version's files, their names as Windows wrote them.
    const QByteArray jet("\x00\x01\x00\x00Standard Jet DB");
    const QStringList files{env.CompanyArchiveDir + QStringLiteral("PAGAME.MDB"),
                            env.ProgramDir + QStringLiteral("ABCPagam.mdb")};
    for (const QString &path : files) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(jet);
    }
    OlderDatabase::notice(env, database);
    QCOMPARE(prompter.texts(),
             QStringList{OlderDatabase::message({QDir::toNativeSeparators(files.at(0)),
                                                 QDir::toNativeSeparators(files.at(1))})});
    QCOMPARE(prompter.shown().first().icon, Icon::Exclamation);
    for (const QString &path : files) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), jet);
    }

    // Once this version holds distinte of its own, the clerk has started with it.
    {
        DatabaseConnection c(database);
        QSqlQuery insert(c.database());
        QVERIFY(insert.exec(QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta, flg_stato) "
                                           "VALUES ('     1', 'P')")));
    }
    prompter.clear();
    OlderDatabase::notice(env, database);
    QVERIFY(prompter.shown().isEmpty());
}

QTEST_GUILESS_MAIN(TestStartupSequence)
#include "tst_startupsequence.moc"
