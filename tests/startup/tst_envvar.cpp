#include "startup/envvar.h"

#include "core/apperror.h"

#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;

class TestEnvVar : public QObject
{
    Q_OBJECT

private slots:
    void readAndWrite();
    void failuresAreErrors();
};

void TestEnvVar::readAndWrite()
{
    QTemporaryDir dir;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("t"));
        db.setDatabaseName(dir.filePath(QStringLiteral("x.db")));
        QVERIFY(db.open());
        QSqlQuery(db).exec(QStringLiteral("CREATE TABLE _tblSys_EnvVar (Var VARCHAR(50), Value VARCHAR(255))"));
        QCOMPARE(ReadEnvVar(db, QStringLiteral("VersioneDatabase"), QStringLiteral("def")),
                 QStringLiteral("def"));
        WriteEnvVar(db, QStringLiteral("VersioneDatabase"), QStringLiteral("06.07.00"));
        WriteEnvVar(db, QStringLiteral("VersioneDatabase"), QStringLiteral("06.07.01"));
        QCOMPARE(ReadEnvVar(db, QStringLiteral("VersioneDatabase"), QString()), QStringLiteral("06.07.01"));
        QSqlQuery count(QStringLiteral("SELECT COUNT(*) FROM _tblSys_EnvVar"), db);
        QVERIFY(count.next());
        QCOMPARE(count.value(0).toInt(), 1);

        // A name with an apostrophe is simply a name.
        const QString odd = QStringLiteral("l'azienda' OR '1'='1");
        QCOMPARE(ReadEnvVar(db, odd, QStringLiteral("none")), QStringLiteral("none"));
        WriteEnvVar(db, odd, QStringLiteral("v"));
        QCOMPARE(ReadEnvVar(db, odd, QString()), QStringLiteral("v"));
        QCOMPARE(ReadEnvVar(db, QStringLiteral("VersioneDatabase"), QString()), QStringLiteral("06.07.01"));

        // A null value reads as absent.
        QSqlQuery(db).exec(QStringLiteral("INSERT INTO _tblSys_EnvVar VALUES ('Nulla', NULL)"));
        QCOMPARE(ReadEnvVar(db, QStringLiteral("Nulla"), QStringLiteral("d")), QStringLiteral("d"));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("t"));
}

void TestEnvVar::failuresAreErrors()
{
    QTemporaryDir dir;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("u"));
        db.setDatabaseName(dir.filePath(QStringLiteral("empty.db")));
        QVERIFY(db.open());
        try {
            ReadEnvVar(db, QStringLiteral("x"), QString());
            QFAIL("no error");
        } catch (const AppError &e) {
            QVERIFY(e.number() > AppError::DatabaseBase);
        }
        QVERIFY_THROWS_EXCEPTION(AppError, WriteEnvVar(db, QStringLiteral("x"), QStringLiteral("y")));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("u"));
}

QTEST_GUILESS_MAIN(TestEnvVar)
#include "tst_envvar.moc"
