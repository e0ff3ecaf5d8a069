#pragma once

#include <QList>
#include <QString>

namespace pg::localdb {

// The local database as the schema description file describes it: tables with their fields
// and indexes, stored queries and relations, with the properties of the suite's data access
// objects (type numbers, sizes, attributes). The same model is read from the file, built into
// a database and read back from one, so that a description survives every round trip.

// Type numbers of the data access objects, as the schema file writes them.
enum DaoType : int {
    DaoBoolean = 1,
    DaoByte = 2,
    DaoInteger = 3,
    DaoLong = 4,
    DaoCurrency = 5,
    DaoSingle = 6,
    DaoDouble = 7,
    DaoDate = 8,
    DaoText = 10,
    DaoLongBinary = 11,
    DaoMemo = 12,
    DaoGuid = 15,
    DaoDecimal = 20,
};

bool isKnownDaoType(int type);

// Field attributes of the data access objects.
enum DaoFieldAttribute : qint32 {
    DaoFixedField = 1,
    DaoVariableField = 2,
    DaoAutoIncrField = 16,
    DaoUpdatableField = 32,
};

// Relation attributes of the data access objects.
enum DaoRelationAttribute : qint32 {
    DaoRelationUnique = 1,
    DaoRelationDontEnforce = 2,
    DaoRelationUpdateCascade = 256,
    DaoRelationDeleteCascade = 4096,
};

struct SchemaField
{
    QString name;
    int type = DaoText;
    qint32 size = 0;
    qint32 attributes = 0;
    bool allowZeroLength = false;
    QString defaultValue; // as the suite writes it: "P" in double quotes, 0, Date()
    bool required = false;
    int line = 0; // where the schema file defines it; 0 when read from a database

    bool sameAs(const SchemaField &other) const;
};

struct SchemaIndex
{
    QString name;
    bool ignoreNulls = false;
    bool primary = false;
    bool unique = false;
    QStringList columns;
    int line = 0;

    bool sameAs(const SchemaIndex &other) const;
};

struct SchemaTable
{
    QString name;
    QList<SchemaField> fields;
    QList<SchemaIndex> indexes;
    int line = 0;

    const SchemaField *field(const QString &fieldName) const;
    const SchemaIndex *index(const QString &indexName) const;
    bool sameAs(const SchemaTable &other) const;
};

struct SchemaQuery
{
    QString name;
    QString sql; // with its commas, without a PARAMETERS declaration
    qint32 maxRecords = 0;
    int line = 0;

    bool sameAs(const SchemaQuery &other) const;
};

// One pair of related columns: the field of the primary table and the field of the foreign
// (referencing) table.
struct RelationField
{
    QString name;
    QString foreignName;

    bool operator==(const RelationField &) const = default;
};

struct SchemaRelation
{
    QString name;
    qint32 attributes = 0;
    QString foreignTable; // the referencing table
    QString table;        // the primary table
    QList<RelationField> fields;
    int line = 0;

    bool enforced() const { return !(attributes & DaoRelationDontEnforce); }
    bool sameAs(const SchemaRelation &other) const;
};

struct DatabaseSchema
{
    QString name;
    QString version;
    QList<SchemaTable> tables;
    QList<SchemaQuery> queries;
    QList<SchemaRelation> relations;

    const SchemaTable *table(const QString &tableName) const;
    const SchemaRelation *relation(const QString &relationName) const;
    // Equal in every property that the file carries (line numbers aside).
    bool sameAs(const DatabaseSchema &other) const;
};

// Names compare as the database compares them: without regard to letter case.
bool sameName(const QString &a, const QString &b);

// The database's own objects, never described by the generator nor created from a schema
// file: the catalog (names beginning "MSys", like the system tables of the suite's databases)
// and the engine's internal tables ("sqlite_").
bool isSystemObjectName(const QString &name);

// What is wrong with a schema description: the line of the file (0 when it is not one line)
// and the problem in words; versionMissing when the file has no "Database" line of the
// current version.
struct SchemaError
{
    int line = 0;
    QString text;
    bool versionMissing = false;

    // The message for the user: the installation error, and the line and problem when known.
    QString message() const;
};

} // namespace pg::localdb
