#include "localdb/databaseconnection.h"
#include "localdb/databasefilecheck.h"
#include "localdb/localdatabase.h"
#include "localdb/schemacatalog.h"
#include "localdb/schemafile.h"
#include "localdb/shippedschema.h"

#include "scriptedprompter.h"
#include "startup/companyenvironment.h"
#include "startup/envvar.h"

#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;
using namespace pg::localdb;
using pg::test::ScriptedPrompter;

namespace {

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeAll(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

// The engine's own schema of a database, every object with its SQL, in name order.
QStringList engineSchema(QSqlDatabase &db)
{
    QSqlQuery q(QStringLiteral("SELECT type, name, tbl_name, sql FROM sqlite_master ORDER BY name"),
                db);
    QStringList out;
    while (q.next())
        out << QStringLiteral("%1|%2|%3|%4")
                   .arg(q.value(0).toString(), q.value(1).toString(), q.value(2).toString(),
                        q.value(3).toString());
    return out;
}

// Every row of every catalog table.
QStringList catalogRows(QSqlDatabase &db)
{
    QStringList out;
    QSqlQuery tables(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name "
                                    "LIKE 'MSys%' ORDER BY name"),
                     db);
    while (tables.next()) {
        QSqlQuery q(QStringLiteral("SELECT * FROM ") + tables.value(0).toString(), db);
        while (q.next()) {
            QStringList values{tables.value(0).toString()};
            for (int i = 0; i < q.record().count(); ++i)
                values << q.value(i).toString();
            out << values.join(u'|');
        }
    }
    return out;
}

QStringList columns(QSqlDatabase &db, const QString &table)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT name FROM pragma_table_info(?) ORDER BY cid"));
    q.addBindValue(table);
    q.exec();
    QStringList out;
    while (q.next())
        out << q.value(0).toString();
    return out;
}

bool run(QSqlDatabase &db, const QString &sql, const QVariantList &values = {})
{
    QSqlQuery q(db);
    if (!q.prepare(sql))
        return false;
    for (const QVariant &v : values)
        q.addBindValue(v);
    return q.exec();
}

QVariant scalar(QSqlDatabase &db, const QString &sql, const QVariantList &values = {})
{
    QSqlQuery q(db);
    q.prepare(sql);
    for (const QVariant &v : values)
        q.addBindValue(v);
    if (!q.exec() || !q.next())
        return QVariant();
    return q.value(0);
}

// The shipped description without the two columns that the conversion adds.
// The schema of an older release: no amounts in distinta, no write-back journal, no versions of
// the distinte.
QByteArray schemaOf060700()
{
    QByteArray out;
    bool journal = false;
    for (const QByteArray &line : shippedSchemaDescription().split('\n')) {
        journal = journal || line.startsWith("Tabella\tTB_GIORNALE") ||
                  line.startsWith("Tabella\tTB_VERSIONI");
        if (!line.isEmpty() && !line.contains("val_imp_indist_") && !journal)
            out += line + '\n';
        journal = journal && !line.startsWith("FineTabella");
    }
    return out;
}

// Rows of a distinta as an older version wrote them.
void addDistinta(QSqlDatabase &db, const QString &code, double residualEur, double residualVal)
{
    QVERIFY(db.transaction());
    for (const char *table : {"TB_RIGHE", "TB_RIGHE_RAGG"})
        QVERIFY(run(db,
                    QStringLiteral("INSERT INTO %1 (cod_distinta, val_imp_residuo_eur, "
                                   "val_imp_residuo_val) VALUES (?, ?, ?)")
                        .arg(QLatin1String(table)),
                    {code, residualEur, residualVal}));
    QVERIFY(run(db, QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta) VALUES (?)"), {code}));
    QVERIFY(db.commit());
}

// A prompter that lets the other program close the database when the question is asked.
class ReleasingPrompter : public ScriptedPrompter
{
public:
    std::unique_ptr<DatabaseConnection> holder;

    Answer ask(const Message &message) override
    {
        holder.reset();
        return ScriptedPrompter::ask(message);
    }
};

} // namespace

class TestLocalDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void roundTrip();
    void enforcement();
    void generatorDescribesAdditions();
    void relationsQueriesAndIndexes();
    void refusedSchemaLeavesNothing_data();
    void refusedSchemaLeavesNothing();
    void versionCheck();
    void upgradeFrom060700();
    void upgradeWaitsForOtherPrograms();
    void failures();
    void databaseFileChecked_data();
    void databaseFileChecked();

private:
    QString programDir() const { return m_dir->path() + QStringLiteral("/exe/"); }
    QString archiveDir() const { return m_dir->path() + QStringLiteral("/azi/"); }
    QString database() const { return archiveDir() + FileName; }
    QString generated() const { return programDir() + GeneratedSchemaFileName; }
    void installSchema(const QByteArray &bytes) { writeAll(programDir() + SchemaFileName, bytes); }
    // A database of version 06.07.00 with two distinte.
    void createOldDatabase(const QString &path);

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestLocalDatabase::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    QVERIFY(QDir().mkpath(programDir()));
    QVERIFY(QDir().mkpath(archiveDir()));
    CompanyEnvironment env;
    env.OrvidaDir = m_dir->path() + u'/';
    env.CompanyCode = QStringLiteral("001");
    env.CompanyArchiveDir = archiveDir();
    env.CommonArchiveDir = archiveDir();
    env.ProgramDir = programDir();
    setCompanyEnvironment(env);
    installSchema(shippedSchemaDescription());
}

void TestLocalDatabase::cleanup()
{
    setCompanyEnvironment({});
    m_dir.reset();
}

void TestLocalDatabase::createOldDatabase(const QString &path)
{
    // Built from the old description as the program built it then (today's creation wants
    // every table and field of the program's description).
    ScriptedPrompter prompter;
    writeAll(path, {});
    DatabaseConnection c(path);
    QVERIFY(c.isOpen());
    Transaction creation(c.database());
    SchemaCatalog::build(c.database(), parseSchemaDescription(schemaOf060700()));
    creation.commit();
    WriteEnvVar(c.database(), VersionVariable, PreviousVersion);
    addDistinta(c.database(), QStringLiteral("     1"), 10.5, 21.25);
    addDistinta(c.database(), QStringLiteral("     2"), 3, 6);
    QVERIFY(prompter.shown().isEmpty());
}

void TestLocalDatabase::roundTrip()
{
    ScriptedPrompter prompter;
    QCOMPARE(localDatabasePath(), database());
    QVERIFY(CreateDatabaseFromSchema(archiveDir(), FileName));
    QVERIFY(QFileInfo(database()).isFile());
    QCOMPARE(QDir(archiveDir()).entryList(QDir::Files), QStringList{FileName});

    GenerateSchemaFile(archiveDir(), FileName);
    QVERIFY(prompter.shown().isEmpty());
    const QByteArray first = readAll(generated());
    QVERIFY(!QFileInfo::exists(generated() + QStringLiteral("_new")));
    // Everything the shipped file says came back, in the same form.
    QCOMPARE(first, shippedSchemaDescription());

    // A second database from the generated file: the same in every respect.
    installSchema(first);
    const QString second = m_dir->path() + QStringLiteral("/second");
    QVERIFY(QDir().mkpath(second));
    QVERIFY(CreateDatabaseFromSchema(second, FileName));
    writeAll(generated(), "the previous file");
    GenerateSchemaFile(second, FileName);
    QCOMPARE(readAll(generated()), first);
    QVERIFY(prompter.shown().isEmpty());

    DatabaseConnection a(database());
    DatabaseConnection b(second + u'/' + FileName);
    QCOMPARE(engineSchema(b.database()), engineSchema(a.database()));
    QCOMPARE(catalogRows(b.database()), catalogRows(a.database()));
    QVERIFY(SchemaCatalog::describe(a.database(), QString())
                .sameAs(SchemaCatalog::describe(b.database(), QString())));
}

void TestLocalDatabase::enforcement()
{
    ScriptedPrompter prompter;
    QVERIFY(CreateDatabaseFromSchema(archiveDir(), FileName));
    DatabaseConnection c(database());
    QSqlDatabase &db = c.database();

    // Header and rows may be written in any order within one transaction.
    addDistinta(db, QStringLiteral("     1"), 1, 1);
    QCOMPARE(scalar(db, QStringLiteral("SELECT flg_stato FROM TB_TESTATA")).toString(),
             QStringLiteral("P"));
    // A row of a distinta that does not exist is refused at commit.
    QVERIFY(db.transaction());
    QVERIFY(run(db, QStringLiteral("INSERT INTO TB_RIGHE (cod_distinta) VALUES ('     9')")));
    QVERIFY(!db.commit());
    db.rollback();
    QCOMPARE(scalar(db, QStringLiteral("SELECT COUNT(*) FROM TB_RIGHE")).toInt(), 1);

    // Key, size and zero-length rules of the description.
    QVERIFY(!run(db, QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta) VALUES ('     1')")));
    QVERIFY(!run(db, QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta) VALUES (NULL)")));
    QVERIFY(!run(db, QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta) VALUES ('')")));
    QVERIFY(!run(db, QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta) VALUES ('1234567')")));
    QVERIFY(run(db, QStringLiteral("INSERT INTO TB_TESTATA (cod_distinta, flg_tipo) VALUES "
                                   "('     2', '')")));
    QVERIFY(!run(db, QStringLiteral("INSERT INTO _tblSys_EnvVar (Var) VALUES (NULL)")));

    // The stored queries are views; the maximum records holds.
    QCOMPARE(scalar(db, QStringLiteral("SELECT COUNT(*) FROM qryUltimaDistinta")).toInt(), 1);
    QCOMPARE(scalar(db, QStringLiteral("SELECT cod_distinta FROM qryUltimaDistinta")).toString(),
             QStringLiteral("     2"));
    QVERIFY(db.transaction());
    QVERIFY(
        run(db,
            QStringLiteral("INSERT INTO TB_RIGHE (cod_distinta, cod_tipo_pag, "
                           "cod_banca_cli, cod_agenzia_cli, des_num_cc) VALUES (?, ?, ?, ?, ?)"),
            {QStringLiteral("     2"), QStringLiteral("6"), QStringLiteral("03069"),
             QStringLiteral("01234"), QStringLiteral("    ")}));
    QVERIFY(
        run(db,
            QStringLiteral("INSERT INTO TB_RIGHE (cod_distinta, cod_tipo_pag, "
                           "cod_banca_cli, cod_agenzia_cli, des_num_cc) VALUES (?, ?, ?, ?, ?)"),
            {QStringLiteral("     2"), QStringLiteral("1"), QStringLiteral("03069"),
             QStringLiteral("     "), QString()}));
    QVERIFY(
        run(db,
            QStringLiteral("INSERT INTO TB_RIGHE (cod_distinta, cod_tipo_pag, "
                           "cod_banca_cli, cod_agenzia_cli, des_num_cc) VALUES (?, ?, ?, ?, ?)"),
            {QStringLiteral("     2"), QStringLiteral("6"), QStringLiteral("03069"),
             QStringLiteral("01234"), QStringLiteral("000000123456")}));
    QVERIFY(db.commit());
    QCOMPARE(scalar(db, QStringLiteral("SELECT COUNT(*) FROM qryRigheSenzaDatiBanca")).toInt(), 2);
    QCOMPARE(scalar(db,
                    QStringLiteral("SELECT group_concat(cod_tipo_pag) FROM "
                                   "qryRigheSenzaDatiBanca WHERE cod_distinta = ?"),
                    {QStringLiteral("     2")})
                 .toString(),
             QStringLiteral("6,1"));
}

void TestLocalDatabase::generatorDescribesAdditions()
{
    ScriptedPrompter prompter;
    QVERIFY(CreateDatabaseFromSchema(archiveDir(), FileName));
    {
        DatabaseConnection c(database());
        QSqlDatabase &db = c.database();
        QVERIFY(run(db, QStringLiteral("ALTER TABLE TB_TESTATA ADD COLUMN des_note VARCHAR(30) "
                                       "NOT NULL DEFAULT 'nessuna'")));
        QVERIFY(run(db, QStringLiteral("ALTER TABLE TB_TESTATA ADD COLUMN num_copie SMALLINT")));
        QVERIFY(run(db, QStringLiteral("CREATE UNIQUE INDEX \"TB_TESTATA.idxNote\" ON TB_TESTATA "
                                       "(des_note, num_copie)")));
        QVERIFY(run(db, QStringLiteral("CREATE TABLE Extra (id INTEGER, ref VARCHAR(6) REFERENCES "
                                       "TB_TESTATA (cod_distinta) ON DELETE CASCADE)")));
        QVERIFY(run(db, QStringLiteral("CREATE VIEW qryExtra AS SELECT id, ref FROM Extra")));
        WriteEnvVar(db, VersionVariable, CurrentVersion);
    }
    GenerateSchemaFile(archiveDir(), FileName);
    QVERIFY(prompter.shown().isEmpty());
    const QByteArray text = readAll(generated());
    const QByteArray testata = text.mid(text.indexOf("Tabella\tTB_TESTATA"));
    QVERIFY(testata.contains("Campo\tval_importo_totale\t7\t8\t1\tFalse\t0\tFalse\r\n"
                             "Campo\tdes_note\t10\t30\t2\tTrue\t\"nessuna\"\tTrue\r\n"
                             "Campo\tnum_copie\t3\t2\t1\tFalse\t\tFalse\r\n"
                             "Indice\tPrimaryKey\tFalse\tTrue\tTrue\r\n"));
    QVERIFY(testata.contains("Indice\tidxNote\tFalse\tFalse\tTrue\r\nColonnaIndice\tdes_note\r\n"
                             "ColonnaIndice\tnum_copie\r\nFineIndice\r\n"));
    QVERIFY(text.contains("Tabella\tExtra\r\nCampo\tid\t4\t4\t1\tFalse\t\tFalse\r\n"
                          "Campo\tref\t10\t6\t2\tTrue\t\tFalse\r\nFineTabella\r\n"));
    QVERIFY(text.contains("Query\tqryExtra\tSELECT id\xB5 ref FROM Extra\t0\r\n"));
    QVERIFY(text.contains("Relazioni\tTB_TESTATAExtra\t4096\tExtra\tTB_TESTATA\r\n"
                          "CampoRelazione\tcod_distinta\tref\r\nFineRelazione\r\n"));
    QVERIFY(!text.contains("MSys"));

    // The description creates a database that describes itself the same way.
    installSchema(text);
    const QString again = m_dir->path() + QStringLiteral("/again");
    QVERIFY(QDir().mkpath(again));
    QVERIFY(CreateDatabaseFromSchema(again, FileName));
    GenerateSchemaFile(again, FileName);
    QCOMPARE(readAll(generated()), text);
    QVERIFY(prompter.shown().isEmpty());
}

void TestLocalDatabase::relationsQueriesAndIndexes()
{
    QByteArray schema = shippedSchemaDescription();
    schema.replace("Relazioni\tTB_TESTATATB_RIGHE_RAGG\t", "Relazioni\tTB_TESTATATB_RIGHE\t");
    // An index that ignores nulls covers only the rows that have its columns.
    schema.replace("FineTabella\r\nTabella\t_tblSys_EnvVar",
                   "Indice\tidxEffetto\tTrue\tFalse\tTrue\r\nColonnaIndice\tdes_num_effetto\r\n"
                   "FineIndice\r\nFineTabella\r\nTabella\t_tblSys_EnvVar");
    schema += "Relazioni\tTB_TESTATATB_RIGHE\t2\tTB_RIGHE\tTB_TESTATA\r\n"
              "CampoRelazione\tcod_distinta\tcod_distinta\r\nFineRelazione\r\n"
              // A query with parameters is stored as its statement alone; it cannot be a view.
              "Query\tqryRigheDistinta\tPARAMETERS pDistinta Text ( 6 )\xB5 pTipo Text; SELECT "
              "cod_clifor\xB5 des_num_doc FROM TB_RIGHE WHERE cod_distinta = :pDistinta\t0\r\n";
    installSchema(schema);
    ScriptedPrompter prompter;
    QVERIFY(CreateDatabaseFromSchema(archiveDir(), FileName));
    GenerateSchemaFile(archiveDir(), FileName);
    const QByteArray text = readAll(generated());
    QVERIFY(text.contains("Relazioni\tTB_TESTATATB_RIGHE\t0\tTB_RIGHE\tTB_TESTATA\r\n"));
    QVERIFY(text.contains("Relazioni\tTB_TESTATATB_RIGHE_1\t0\tTB_RIGHE_RAGG\tTB_TESTATA\r\n"));
    QVERIFY(text.contains("Relazioni\tTB_TESTATATB_RIGHE_2\t2\tTB_RIGHE\tTB_TESTATA\r\n"));
    QVERIFY(text.contains("Query\tqryRigheDistinta\tSELECT cod_clifor\xB5 des_num_doc FROM "
                          "TB_RIGHE WHERE cod_distinta = :pDistinta\t0\r\n"));
    QVERIFY(text.contains("Indice\tidxEffetto\tTrue\tFalse\tTrue\r\nColonnaIndice\tdes_num_effetto"
                          "\r\nFineIndice\r\nFineTabella\r\nTabella\t_tblSys_EnvVar\r\n"));
    QVERIFY(prompter.shown().isEmpty());
    DatabaseConnection c(database());
    QCOMPARE(scalar(c.database(), QStringLiteral("SELECT \"unique\" || partial FROM "
                                                 "pragma_index_list('TB_RIGHE_RAGG') WHERE name = "
                                                 "'TB_RIGHE_RAGG.idxEffetto'"))
                 .toString(),
             QStringLiteral("11"));
    QCOMPARE(scalar(c.database(), QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = "
                                                 "'view'"))
                 .toInt(),
             2);
    // The relation that is not enforced has no foreign key.
    QCOMPARE(scalar(c.database(), QStringLiteral("SELECT COUNT(*) FROM "
                                                 "pragma_foreign_key_list('TB_RIGHE')"))
                 .toInt(),
             1);
}

void TestLocalDatabase::refusedSchemaLeavesNothing_data()
{
    QTest::addColumn<QByteArray>("schema");
    QTest::addColumn<QString>("message");

    const QString installation = QStringLiteral("Errore d'installazione. Il file dati QXARTRAC.DAT "
                                                "non è corretto. Reinstallare il software");
    QByteArray old = shippedSchemaDescription();
    old.replace("Database\tPagame\t06.07.01", "Database\tPagame\t06.07.00");
    QTest::newRow("old version") << old << installation;

    QByteArray badQuery = shippedSchemaDescription();
    badQuery.replace("FROM TB_TESTATA ORDER BY", "FROM TB_NESSUNA ORDER BY");
    QTest::newRow("query the engine refuses")
        << badQuery
        << installation + QStringLiteral("\r\nRiga 144: la query \"qryUltimaDistinta\" "
                                         "non è valida: no such table: TB_NESSUNA");

    QByteArray outside = shippedSchemaDescription();
    outside.replace("FineTabella\r\nTabella\tTB_RIGHE\r\n", "FineTabella\r\n");
    QTest::newRow("field outside a table")
        << outside
        << installation + QStringLiteral("\r\nRiga 24: il campo \"cod_distinta\" è fuori "
                                         "da una tabella.");
    // A file cut short at the end of an object still reads as a whole file.
    const QByteArray shipped = shippedSchemaDescription();
    QTest::newRow("cut at the end of a table")
        << shipped.left(shipped.indexOf("Tabella\tTB_RIGHE_RAGG"))
        << installation + QStringLiteral("\r\nmanca la tabella \"TB_RIGHE_RAGG\": il file è "
                                         "incompleto.");
    QTest::newRow("cut before the relations")
        << shipped.left(shipped.indexOf("Relazioni\t"))
        << installation + QStringLiteral("\r\nmanca la relazione tra le tabelle \"TB_TESTATA\" e "
                                         "\"TB_RIGHE\": il file è incompleto.");
}

void TestLocalDatabase::refusedSchemaLeavesNothing()
{
    QFETCH(QByteArray, schema);
    QFETCH(QString, message);
    installSchema(schema);
    ScriptedPrompter prompter;
    QVERIFY(!CreateDatabaseFromSchema(archiveDir(), FileName));
    QCOMPARE(prompter.texts(), QStringList{message});
    QCOMPARE(QDir(archiveDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList());

    // Without a schema file there is nothing to create from.
    prompter.clear();
    QVERIFY(QFile::remove(programDir() + SchemaFileName));
    QVERIFY(!CreateDatabaseFromSchema(archiveDir(), FileName));
    QCOMPARE(prompter.texts(),
             QStringList{QStringLiteral("Errore d'installazione. Non è stato trovato il file "
                                        "QXARTRAC.DAT nella cartella d'installazione.")});
}

void TestLocalDatabase::versionCheck()
{
    ScriptedPrompter prompter;
    QVERIFY(CreateDatabaseFromSchema(archiveDir(), FileName));
    // A database without a version is current, and stamped so.
    QVERIFY(CheckDatabaseVersion(database()));
    {
        DatabaseConnection c(database());
        QCOMPARE(ReadEnvVar(c.database(), VersionVariable, QString()), CurrentVersion);
        addDistinta(c.database(), QStringLiteral("     1"), 5, 5);
    }
    // A current database is opened and closed without a change.
    const QByteArray before = readAll(database());
    QVERIFY(CheckDatabaseVersion(database()));
    QCOMPARE(readAll(database()), before);

    // Only the company's database file is converted.
    const QString other = archiveDir() + QStringLiteral("Copia.db");
    createOldDatabase(other);
    const QByteArray oldBytes = readAll(other);
    QVERIFY(CheckDatabaseVersion(other));
    QCOMPARE(readAll(other), oldBytes);
    QVERIFY(prompter.shown().isEmpty());
}

void TestLocalDatabase::upgradeFrom060700()
{
    createOldDatabase(database());
    ScriptedPrompter prompter;
    QVERIFY(CheckDatabaseVersion(database()));
    QVERIFY(prompter.shown().isEmpty());

    DatabaseConnection c(database());
    QSqlDatabase &db = c.database();
    QCOMPARE(ReadEnvVar(db, VersionVariable, QString()), CurrentVersion);
    for (const QString &table : {QStringLiteral("TB_RIGHE"), QStringLiteral("TB_RIGHE_RAGG")}) {
        QCOMPARE(columns(db, table).mid(30), QStringList({QStringLiteral("val_imp_indist_eur"),
                                                          QStringLiteral("val_imp_indist_val")}));
        QSqlQuery q(db);
        QVERIFY(q.exec(QStringLiteral("SELECT cod_distinta, val_imp_indist_eur, val_imp_indist_val "
                                      "FROM %1 ORDER BY cod_distinta")
                           .arg(table)));
        QVERIFY(q.next());
        QCOMPARE(q.value(1).toDouble(), 10.5);
        QCOMPARE(q.value(2).toDouble(), 21.25);
        QVERIFY(q.next());
        QCOMPARE(q.value(1).toDouble(), 3.0);
        QCOMPARE(q.value(2).toDouble(), 6.0);
    }
    // The new columns are nullable doubles, described like the shipped ones.
    QVERIFY(run(db, QStringLiteral("UPDATE TB_RIGHE SET val_imp_indist_eur = NULL")));
    const DatabaseSchema schema = SchemaCatalog::describe(db, QString());
    const SchemaField *added =
        schema.table(QStringLiteral("TB_RIGHE_RAGG"))->field(QStringLiteral("val_imp_indist_val"));
    QVERIFY(added);
    QVERIFY(added->sameAs(*parseSchemaDescription(shippedSchemaDescription())
                               .table(QStringLiteral("TB_RIGHE_RAGG"))
                               ->field(QStringLiteral("val_imp_indist_val"))));
    // The write-back journal it lacked is there, as the shipped schema describes it, and a
    // second check leaves it alone.
    const SchemaTable *journal = schema.table(QStringLiteral("TB_GIORNALE"));
    QVERIFY(journal);
    QVERIFY(journal->sameAs(
        *parseSchemaDescription(shippedSchemaDescription()).table(QStringLiteral("TB_GIORNALE"))));
    QVERIFY(run(db, QStringLiteral("INSERT INTO TB_GIORNALE (num_operazione, num_voce, "
                                   "flg_operazione, flg_voce, flg_flag_colpar, des_link_orvida) "
                                   "VALUES (1, 1, 'S', 'R', 'F', '2026000000001')")));
    QVERIFY(CheckDatabaseVersion(database()));
    QSqlQuery entry(QStringLiteral("SELECT COUNT(*), MIN(flg_esito) FROM TB_GIORNALE"), db);
    QVERIFY(entry.next());
    QCOMPARE(entry.value(0).toInt(), 1);
    QCOMPARE(entry.value(1).toString(), QStringLiteral("A"));
}

void TestLocalDatabase::upgradeWaitsForOtherPrograms()
{
    createOldDatabase(database());
    const QString inUse = QStringLiteral("La conversione non può avere inizio fintantoché "
                                         "l'archivo è in uso da altri utenti o programmi.\r\n"
                                         "Chiudere tutte le sessioni e riprovare.");
    {
        // Another program keeps the database open: OK tries again, Cancel gives up, and the
        // check ends the program with the database untouched.
        DatabaseConnection other(database());
        QVERIFY(other.isOpen());
        ScriptedPrompter prompter;
        prompter.script({Answer::Ok, Answer::Cancel});
        QVERIFY_THROWS_EXCEPTION(ProcessEnded, CheckDatabaseVersion(database()));
        QCOMPARE(prompter.texts(), QStringList({inUse, inUse}));
        for (const Message &m : prompter.shown()) {
            QCOMPARE(m.title, QStringLiteral("Conversione archivio"));
            QCOMPARE(m.icon, Icon::Exclamation);
            QCOMPARE(m.buttons, Buttons::OkCancel);
        }
        QCOMPARE(ReadEnvVar(other.database(), VersionVariable, QString()), PreviousVersion);
        QCOMPARE(columns(other.database(), QStringLiteral("TB_RIGHE")).size(), 30);
    }
    // The other program closes while the question is shown: OK converts.
    ReleasingPrompter prompter;
    prompter.holder = std::make_unique<DatabaseConnection>(database());
    prompter.script({Answer::Ok});
    QVERIFY(UpgradeTo060701(database()));
    QCOMPARE(prompter.texts(), QStringList{inUse});
    DatabaseConnection c(database());
    QCOMPARE(ReadEnvVar(c.database(), VersionVariable, QString()), CurrentVersion);
}

void TestLocalDatabase::failures()
{
    // A conversion that fails is rolled back, shown, and ends the program.
    {
        ScriptedPrompter prompter;
        QVERIFY(CreateDatabaseFromSchema(archiveDir(), FileName));
        {
            DatabaseConnection c(database());
            WriteEnvVar(c.database(), VersionVariable, PreviousVersion);
        }
        QVERIFY_THROWS_EXCEPTION(ProcessEnded, CheckDatabaseVersion(database()));
        QCOMPARE(prompter.shown().size(), 1);
        const Message &m = prompter.shown().first();
        QVERIFY(m.text.startsWith(QStringLiteral(
            "Il database non è stato aggiornato alla versione 06.07.01 e non è possibile "
            "continuare. Descrizione errore:\r\nduplicate column name: val_imp_indist_eur")));
        QCOMPARE(m.title, QStringLiteral("E' fallita la procedura di Aggiornamento Database."));
        QCOMPARE(m.icon, Icon::Exclamation);
        DatabaseConnection c(database());
        QCOMPARE(ReadEnvVar(c.database(), VersionVariable, QString()), PreviousVersion);
    }
    // A file that is not a database: a message, false, and the file left as it was.
    QVERIFY(QFile::remove(database()));
    const QByteArray notADatabase("Questo non è un database, ma un file di testo qualsiasi.\r\n");
    writeAll(database(), notADatabase.repeated(40));
    ScriptedPrompter prompter;
    QVERIFY(!CheckDatabaseVersion(database()));
    QVERIFY(!UpgradeTo060701(database()));
    GenerateSchemaFile(archiveDir(), FileName);
    const QStringList texts = prompter.texts();
    QCOMPARE(texts.size(), 3);
    for (int i = 0; i < 2; ++i)
        QVERIFY2(
            texts.at(i).startsWith(QStringLiteral(
                "Errore non previsto durante la conversione dell'archivio.\r\nErrore: 3026 - ")),
            qPrintable(texts.at(i)));
    QVERIFY2(texts.at(2).startsWith(QStringLiteral(
                 "Errore non previsto durante la generazione del file QXARTRAC.DAT. 3026 - ")),
             qPrintable(texts.at(2)));
    for (const QString &text : texts)
        QVERIFY(text.contains(QDir::toNativeSeparators(database()) +
                              QStringLiteral(" non è un database o è danneggiato.")));
    QVERIFY(!QFileInfo::exists(generated()));
    QCOMPARE(readAll(database()), notADatabase.repeated(40));

    // An existing file is never replaced by a new database.
    prompter.clear();
    QVERIFY(!CreateDatabaseFromSchema(archiveDir(), FileName));
    QCOMPARE(prompter.shown().size(), 1);
    QCOMPARE(readAll(database()), notADatabase.repeated(40));
    QCOMPARE(QDir(archiveDir()).entryList(QDir::Files), QStringList{FileName});
}

void TestLocalDatabase::databaseFileChecked_data()
{
    QTest::addColumn<QString>("file"); // what is in the database's place
    QTest::addColumn<QString>("problem");
    QTest::newRow("the program's database") << "database" << QString();
    QTest::newRow("empty file") << "empty"
                                << "è vuoto: non è un database di Pagamenti";
    QTest::newRow("text file") << "text"
                               << "non è un database di Pagamenti e non viene modificato";
    QTest::newRow("another program's database")
        << "foreign"
        << "non è un database di Pagamenti (manca la tabella _tblSys_EnvVar)";
    QTest::newRow("pages overwritten") << "damaged"
                                       << "è danneggiato e non può essere usato";
}

void TestLocalDatabase::databaseFileChecked()
{
    QFETCH(QString, file);
    QFETCH(QString, problem);
    ScriptedPrompter prompter;
    if (file == u"database" || file == u"damaged") {
        QVERIFY(CreateDatabaseFromSchema(archiveDir(), FileName));
    } else if (file == u"foreign") {
        writeAll(database(), {});
        DatabaseConnection c(database());
        QVERIFY(run(c.database(), QStringLiteral("CREATE TABLE clienti (nome TEXT)")));
    } else {
        writeAll(database(), file == u"text" ? QByteArray("Non sono un database.\r\n") : "");
    }
    if (file == u"damaged") {
        // Every page after the first, where the tables' pages are, overwritten.
        QByteArray bytes = readAll(database());
        for (qsizetype i = 4096; i < bytes.size(); ++i)
            bytes[i] = char(i * 7);
        writeAll(database(), bytes);
    }
    const QByteArray before = readAll(database());
    const QString found = localDatabaseFileProblem(database());
    if (problem.isEmpty())
        QCOMPARE(found, QString());
    else
        QVERIFY2(found.contains(QDir::toNativeSeparators(database()) + u' ' + problem),
                 qPrintable(found));
    // Looked at, never written.
    QCOMPARE(readAll(database()), before);
    QVERIFY(prompter.shown().isEmpty());
}

QTEST_GUILESS_MAIN(TestLocalDatabase)
#include "tst_localdatabase.moc"
