// Whether the accounts that run the program can use the company's database: the permissions a
// new database takes, and what start-up says when it does not open.
#include "localdb/databaseaccess.h"
#include "localdb/localdatabase.h"
#include "localdb/shippedschema.h"
#include "scriptedprompter.h"
#include "startup/companyenvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace pg;
using namespace pg::localdb;
using pg::test::ScriptedPrompter;

class TestDatabaseAccess : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void newDatabaseIsOpenToWhomTheFolderAllows();
    void whyItDoesNotOpenIsSaidPlainly();

private:
    QString archiveDir() const { return m_dir->path() + QStringLiteral("/azi/"); }
    QString database() const { return archiveDir() + FileName; }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestDatabaseAccess::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    CompanyEnvironment env;
    env.CompanyArchiveDir = archiveDir();
    env.ProgramDir = m_dir->path() + QStringLiteral("/exe/");
    QVERIFY(QDir().mkpath(env.ProgramDir) && QDir().mkpath(archiveDir()));
    setCompanyEnvironment(env);
    QFile schema(env.ProgramDir + SchemaFileName);
    QVERIFY(schema.open(QIODevice::WriteOnly));
    schema.write(shippedSchemaDescription());
}

void TestDatabaseAccess::newDatabaseIsOpenToWhomTheFolderAllows()
{
#ifdef Q_OS_UNIX
    // Another clerk's account, or the administrator's, reads and writes the database that the
    // first start made: it has the permissions of any new file of its folder.
    const mode_t previous = ::umask(002);
    ScriptedPrompter prompter;
    QVERIFY(CreateDatabaseFromSchema(archiveDir(), FileName));
    QFile probe(archiveDir() + QStringLiteral("probe"));
    QVERIFY(probe.open(QIODevice::WriteOnly));
    ::umask(previous);
    QCOMPARE(QFileInfo(database()).permissions(), probe.permissions());
    QVERIFY(QFileInfo(database()).permissions().testFlag(QFileDevice::WriteGroup));
    QVERIFY(prompter.shown().isEmpty());

    // An account that may not is told so, with the file's owner and permissions (an
    // administrator's account may always).
    QVERIFY(QFile::setPermissions(database(), QFileDevice::ReadOwner | QFileDevice::WriteOwner));
    QVERIFY(QFile::setPermissions(archiveDir(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    if (::geteuid() != 0) {
        QVERIFY(!databaseOpens(DatabaseLocation::file(database())));
        QVERIFY2(prompter.lastText().contains(QStringLiteral("non ha il permesso")),
                 qPrintable(prompter.lastText()));
    }
    QFile::setPermissions(archiveDir(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                            QFileDevice::ExeOwner);
#else
    QSKIP("File permissions of the Unix kind.");
#endif
}

void TestDatabaseAccess::whyItDoesNotOpenIsSaidPlainly()
{
    // A file that is not a database: start-up says so, not that a conversion failed.
    QFile notADatabase(database());
    QVERIFY(notADatabase.open(QIODevice::WriteOnly));
    notADatabase.write(QByteArray("Questo non è un database.\r\n").repeated(40));
    notADatabase.close();
    ScriptedPrompter prompter;
    QVERIFY(!databaseOpens(DatabaseLocation::file(database())));
    QCOMPARE(prompter.shown().size(), 1);
    QVERIFY(prompter.lastText().startsWith(
        QStringLiteral("Impossibile aprire il database locale del programma.\r\n")));
    QVERIFY(prompter.lastText().contains(QStringLiteral(" non è un database o è danneggiato.")));
    QCOMPARE(prompter.shown().first().icon, Icon::Critical);
}

QTEST_GUILESS_MAIN(TestDatabaseAccess)
#include "tst_databaseaccess.moc"
