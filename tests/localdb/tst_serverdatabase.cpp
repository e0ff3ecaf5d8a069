// The local database on a PostgreSQL server: made and described back from the schema file,
// converted from the older version, moved from a SQLite file, and the failures a clerk or an
// administrator meets, each in plain Italian.
#include "scriptedprompter.h"
#include "testdatabase.h"

#include "localdb/databaseconnection.h"
#include "localdb/databasemigration.h"
#include "localdb/localdatabase.h"
#include "localdb/schemacatalog.h"
#include "localdb/schemafile.h"
#include "localdb/shippedschema.h"
#include "startup/companyenvironment.h"
#include "startup/envvar.h"

#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::localdb;
using pg::test::ScriptedPrompter;

namespace {

QVariant value(QSqlDatabase &db, const QString &sql)
{
    QSqlQuery q(sql, db);
    return q.next() ? q.value(0) : QVariant();
}

// The shipped schema as an older release had it: no amounts in distinta, no journal, no
// versions of the distinte.
DatabaseSchema schemaOf060700()
{
    DatabaseSchema schema = parseSchemaDescription(shippedSchemaDescription());
    schema.tables.removeIf(
        [](const SchemaTable &t) { return t.name == u"TB_GIORNALE" || t.name == u"TB_VERSIONI"; });
    for (SchemaTable &t : schema.tables)
        t.fields.removeIf(
            [](const SchemaField &f) { return f.name.startsWith(u"val_imp_indist_"); });
    return schema;
}

} // namespace

class TestServerDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void schemaMadeAndDescribedBack();
    void upgradeFrom060700();
    void settingsAndFailures();
    void migrationFromTheFile();

private:
    QString companyDir() const { return m_dir->path() + QStringLiteral("/azi/"); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<test::TestDatabase> m_database;
};

void TestServerDatabase::init()
{
    QVERIFY(test::onServer());
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir().mkpath(companyDir()));
    QVERIFY(QDir().mkpath(m_dir->path() + QStringLiteral("/exe")));
    CompanyEnvironment env;
    env.CompanyArchiveDir = companyDir();
    env.ProgramDir = m_dir->path() + QStringLiteral("/exe/");
    setCompanyEnvironment(env);
    QFile schema(env.ProgramDir + SchemaFileName);
    QVERIFY(schema.open(QIODevice::WriteOnly));
    schema.write(shippedSchemaDescription());
    schema.close();
    m_database = std::make_unique<test::TestDatabase>(companyDir());
    QVERIFY(m_database->isValid());
}

void TestServerDatabase::cleanup()
{
    m_database.reset();
    setCompanyEnvironment({});
    m_dir.reset();
}

void TestServerDatabase::schemaMadeAndDescribedBack()
{
    ScriptedPrompter prompter;
    // The company's Pagame.ini leads start-up to the server, which gets every table.
    const std::optional<DatabaseLocation> found = companyDatabase();
    QVERIFY(found);
    const DatabaseLocation location = *found;
    QCOMPARE(location, m_database->location());
    QVERIFY(!databaseExists(location));
    QVERIFY(CreateDatabase(location));
    QVERIFY(databaseExists(location));
    QVERIFY(CheckDatabaseVersion(location));
    QVERIFY(prompter.shown().isEmpty());
    DatabaseConnection conn(location);
    QSqlDatabase &db = conn.database();
    const DatabaseSchema shipped = parseSchemaDescription(shippedSchemaDescription());
    DatabaseSchema described = SchemaCatalog::describe(db, QString());
    described.version = shipped.version;
    QVERIFY(described.sameAs(shipped));
    QCOMPARE(ReadEnvVar(db, VersionVariable, QString()), CurrentVersion);

    // The six-character codes sort as their numbers; a key is unique; a text stays whole.
    for (const char *code : {"     9", "    10"})
        QVERIFY(QSqlQuery(db).exec(
            QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta, flg_stato) VALUES ('%1', 'P')")
                .arg(QLatin1String(code))));
    QCOMPARE(value(db, QStringLiteral("SELECT MAX(cod_distinta) FROM TB_TESTATA")).toString(),
             QStringLiteral("    10"));
    QVERIFY(!QSqlQuery(db).exec(
        QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta) VALUES ('    10')")));
    // The schema's views are the server's views.
    QCOMPARE(value(db, QStringLiteral("SELECT COUNT(*) FROM qryUltimaDistinta")).toInt(), 1);

    // A second creation is refused: the database is not empty.
    QVERIFY(!CreateDatabase(location));
    QVERIFY(prompter.lastText().contains(QStringLiteral("non sono del programma")));
}

void TestServerDatabase::upgradeFrom060700()
{
    const DatabaseLocation location = m_database->location();
    {
        DatabaseConnection conn(location);
        QSqlDatabase &db = conn.database();
        Transaction transaction(db);
        SchemaCatalog::build(db, schemaOf060700());
        WriteEnvVar(db, VersionVariable, PreviousVersion);
        QVERIFY(QSqlQuery(db).exec(QStringLiteral(
            "INSERT INTO TB_TESTATA (cod_distinta, flg_stato) VALUES ('     1', 'P')")));
        QVERIFY(QSqlQuery(db).exec(QStringLiteral(
            "INSERT INTO TB_RIGHE (cod_distinta, val_imp_residuo_eur, val_imp_residuo_val) "
            "VALUES ('     1', 10.5, 21.25)")));
        transaction.commit();
    }
    // Another clerk's program on the database: the conversion waits, the clerk gives up.
    {
        ScriptedPrompter prompter;
        prompter.script({Answer::Cancel});
        DatabaseConnection other(location);
        QVERIFY(!UpgradeTo060701(location));
        QVERIFY(prompter.lastText().startsWith(
            QStringLiteral("La conversione non può avere inizio fintantoché l'archivo è in uso")));
    }
    ScriptedPrompter prompter;
    QVERIFY(CheckDatabaseVersion(location));
    QVERIFY(prompter.shown().isEmpty());
    DatabaseConnection conn(location);
    QSqlDatabase &db = conn.database();
    QCOMPARE(ReadEnvVar(db, VersionVariable, QString()), CurrentVersion);
    QCOMPARE(value(db, QStringLiteral("SELECT val_imp_indist_val FROM TB_RIGHE")).toDouble(),
             21.25);
    for (const char *table : {"TB_GIORNALE", "TB_VERSIONI"})
        QVERIFY(SchemaCatalog::hasTable(db, QLatin1String(table)));

    // A database of a newer program is said so, and used as it is.
    WriteEnvVar(db, VersionVariable, QStringLiteral("06.08.00"));
    QVERIFY(CheckDatabaseVersion(location));
    QVERIFY(prompter.lastText().contains(QStringLiteral("più recente")));
}

void TestServerDatabase::settingsAndFailures()
{
    ScriptedPrompter prompter;
    const QString ini = companyDir() + SettingsFileName;
    const auto settings = [&](const QByteArray &text) {
        QFile file(ini);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("[Database]\r\n" + text);
    };
    const auto refusal = [&] {
        QString error;
        return DatabaseLocation::ofCompany(companyDir(), &error) ? QString() : error;
    };
    settings("Engine=Oracle\r\n");
    QVERIFY(refusal().contains(QStringLiteral("\"Oracle\", che il programma non conosce")));
    settings("Engine=PostgreSQL\r\nDatabase=x\r\nPassword=segreta\r\n");
    QVERIFY(refusal().contains(QStringLiteral("contiene una password")));
    settings("Engine=PostgreSQL\r\nDatabase=x\r\nPort=cinque\r\n");
    QVERIFY(refusal().contains(QStringLiteral("la porta \"cinque\"")));
    settings("Engine=PostgreSQL\r\nHost=localhost\r\n");
    QVERIFY(refusal().contains(QStringLiteral("né il servizio (Service) né il database")));
    settings("Engine=SQLite\r\n");
    QCOMPARE(DatabaseLocation::ofCompany(companyDir(), nullptr)->filePath, companyDir() + FileName);

    // A server that does not answer, a database that is not there, one of another program.
    DatabaseLocation elsewhere = m_database->location();
    elsewhere.port = 1;
    QVERIFY(!CreateDatabase(elsewhere));
    QVERIFY(prompter.lastText().contains(QStringLiteral("non risponde")));
    // A clerk whose password the server refuses.
    QVERIFY(test::onServerAdmin(QStringLiteral(
        "DO $$ BEGIN IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = 'cassiere') THEN "
        "CREATE ROLE cassiere LOGIN PASSWORD 'giusta'; END IF; END $$")));
    DatabaseLocation clerk = m_database->location();
    clerk.user = QStringLiteral("cassiere");
    qputenv("PGPASSWORD", "sbagliata");
    QVERIFY(!CreateDatabase(clerk));
    qunsetenv("PGPASSWORD");
    QVERIFY(prompter.lastText().contains(QStringLiteral("ha rifiutato l'accesso")));
    DatabaseLocation missing = m_database->location();
    missing.database = QStringLiteral("nessuno");
    QVERIFY(!CreateDatabase(missing));
    QVERIFY(prompter.lastText().contains(QStringLiteral("non esiste sul server")));
    {
        DatabaseConnection conn(m_database->location());
        QVERIFY(QSqlQuery(conn.database()).exec(QStringLiteral("CREATE TABLE fatture (n int)")));
    }
    QVERIFY(!CreateDatabase(m_database->location()));
    QVERIFY(prompter.lastText().contains(QStringLiteral("fatture")));
}

void TestServerDatabase::migrationFromTheFile()
{
    // A company that has worked on its SQLite file.
    const QString file = companyDir() + FileName;
    {
        ScriptedPrompter quiet;
        QVERIFY(CreateDatabaseFromSchema(companyDir(), FileName));
        QVERIFY(CheckDatabaseVersion(file));
        DatabaseConnection conn(file);
        QSqlQuery q(conn.database());
        QVERIFY(q.exec(QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta, flg_stato, "
                                      "dat_data_creazione, val_importo_totale) VALUES "
                                      "('     1', 'P', '2026-11-21', 1234.56)")));
        for (int i = 1; i <= 3; ++i)
            QVERIFY(q.exec(QStringLiteral("INSERT INTO TB_RIGHE (cod_distinta, des_link_orvida, "
                                          "des_scadenza, val_imp_pag_eur, val_imp_indist_val) "
                                          "VALUES ('     1', '202600000000%1', 'Fatt. è %1', "
                                          "%1.10, NULL)")
                               .arg(i)));
        QVERIFY(q.exec(QStringLiteral("INSERT INTO TB_VERSIONI VALUES ('     1', 4)")));
    }
    const QByteArray before = [&] {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();

    ScriptedPrompter prompter;
    QStringList report;
    QVERIFY(DatabaseMigration::migrate(file, m_database->location(), &report));
    QVERIFY(prompter.shown().isEmpty());
    QCOMPARE(report.size(), 6);
    QCOMPARE(report.at(1), QStringLiteral("TB_RIGHE: 3 righe, somma degli importi 6.30, uguali "
                                          "nel file e sul server"));
    DatabaseConnection conn(m_database->location());
    QSqlDatabase &db = conn.database();
    QCOMPARE(value(db, QStringLiteral("SELECT dat_data_creazione FROM TB_TESTATA")).toDate(),
             QDate(2026, 11, 21));
    QCOMPARE(value(db, QStringLiteral("SELECT des_scadenza FROM TB_RIGHE WHERE des_link_orvida = "
                                      "'2026000000002'"))
                 .toString(),
             QStringLiteral("Fatt. è 2"));
    QCOMPARE(value(db, QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE WHERE val_imp_indist_val IS "
                                      "NULL"))
                 .toInt(),
             3);
    QCOMPARE(value(db, QStringLiteral("SELECT num_versione FROM TB_VERSIONI")).toInt(), 4);
    QCOMPARE(ReadEnvVar(db, VersionVariable, QString()), CurrentVersion);
    // The file is as it was, and a second copy into the same database is refused.
    QFile after(file);
    QVERIFY(after.open(QIODevice::ReadOnly));
    QCOMPARE(after.readAll(), before);
    QVERIFY(!DatabaseMigration::migrate(file, m_database->location(), &report));
    QVERIFY(prompter.lastText().contains(QStringLiteral("non è vuoto")));
}

QTEST_GUILESS_MAIN(TestServerDatabase)
#include "tst_serverdatabase.moc"
