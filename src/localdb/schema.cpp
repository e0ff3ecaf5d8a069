#include "schema.h"

#include <algorithm>

namespace pg::localdb {

namespace {

template<typename T>
bool allSame(const QList<T> &a, const QList<T> &b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](const T &x, const T &y) { return x.sameAs(y); });
}

template<typename T>
const T *byName(const QList<T> &items, const QString &name)
{
    for (const T &item : items)
        if (sameName(item.name, name))
            return &item;
    return nullptr;
}

} // namespace

bool isKnownDaoType(int type)
{
    switch (type) {
    case DaoBoolean:
    case DaoByte:
    case DaoInteger:
    case DaoLong:
    case DaoCurrency:
    case DaoSingle:
    case DaoDouble:
    case DaoDate:
    case DaoText:
    case DaoLongBinary:
    case DaoMemo:
    case DaoGuid:
    case DaoDecimal:
        return true;
    default:
        return false;
    }
}

bool sameName(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

bool isSystemObjectName(const QString &name)
{
    return name.startsWith(QLatin1String("MSys"), Qt::CaseInsensitive) ||
           name.startsWith(QLatin1String("sqlite_"), Qt::CaseInsensitive);
}

bool SchemaField::sameAs(const SchemaField &o) const
{
    return name == o.name && type == o.type && size == o.size && attributes == o.attributes &&
           allowZeroLength == o.allowZeroLength && defaultValue == o.defaultValue &&
           required == o.required;
}

bool SchemaIndex::sameAs(const SchemaIndex &o) const
{
    return name == o.name && ignoreNulls == o.ignoreNulls && primary == o.primary &&
           unique == o.unique && columns == o.columns;
}

const SchemaField *SchemaTable::field(const QString &fieldName) const
{
    return byName(fields, fieldName);
}

const SchemaIndex *SchemaTable::index(const QString &indexName) const
{
    return byName(indexes, indexName);
}

bool SchemaTable::sameAs(const SchemaTable &o) const
{
    return name == o.name && allSame(fields, o.fields) && allSame(indexes, o.indexes);
}

bool SchemaQuery::sameAs(const SchemaQuery &o) const
{
    return name == o.name && sql == o.sql && maxRecords == o.maxRecords;
}

bool SchemaRelation::sameAs(const SchemaRelation &o) const
{
    return name == o.name && attributes == o.attributes && foreignTable == o.foreignTable &&
           table == o.table && fields == o.fields;
}

const SchemaTable *DatabaseSchema::table(const QString &tableName) const
{
    return byName(tables, tableName);
}

const SchemaRelation *DatabaseSchema::relation(const QString &relationName) const
{
    return byName(relations, relationName);
}

bool DatabaseSchema::sameAs(const DatabaseSchema &o) const
{
    return name == o.name && version == o.version && allSame(tables, o.tables) &&
           allSame(queries, o.queries) && allSame(relations, o.relations);
}

QString SchemaError::message() const
{
    QString text = QStringLiteral("Errore d'installazione. Il file dati QXARTRAC.DAT non è "
                                  "corretto. Reinstallare il software");
    if (!versionMissing && !this->text.isEmpty()) {
        text += QStringLiteral("\r\n");
        if (line > 0)
            text += QStringLiteral("Riga %1: ").arg(line);
        text += this->text;
    }
    return text;
}

} // namespace pg::localdb
