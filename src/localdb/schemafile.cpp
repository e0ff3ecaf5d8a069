#include "schemafile.h"

#include "localdb/localdatabase.h"

#include "core/cp1252.h"

#include <QSet>

#include <limits>
#include <optional>

namespace pg::localdb {

namespace {

const QChar TabStandIn = QChar(0xFF);   // "ÿ"
const QChar CommaStandIn = QChar(0xB5); // "µ"

[[noreturn]] void fail(int line, const QString &text)
{
    throw SchemaError{line, text, false};
}

QString quoted(const QString &name)
{
    return u'"' + name + u'"';
}

// Splits the file into its lines, whatever the line ends, as text of the code page.
QStringList fileLines(const QByteArray &bytes)
{
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes.at(i);
        if (c != '\r' && c != '\n')
            continue;
        lines << cp1252::decode(QByteArrayView(bytes).sliced(start, i - start));
        if (c == '\r' && i + 1 < bytes.size() && bytes.at(i + 1) == '\n')
            ++i;
        start = i + 1;
    }
    if (start < bytes.size())
        lines << cp1252::decode(QByteArrayView(bytes).sliced(start));
    return lines;
}

// Leading and trailing blanks go; a TAB at either end is a field separator and stays.
QString trimBlanks(const QString &line)
{
    qsizetype begin = 0;
    qsizetype end = line.size();
    while (begin < end && line.at(begin) == u' ')
        ++begin;
    while (end > begin && line.at(end - 1) == u' ')
        --end;
    return line.mid(begin, end - begin);
}

QStringList lineFields(const QString &line)
{
    QStringList fields = line.split(u'\t');
    for (QString &field : fields)
        field.replace(TabStandIn, u'\t');
    return fields;
}

// One line of the file being read: its number and its fields, with checked readers.
class Line
{
public:
    Line(int number, QStringList fields) : m_number(number), m_fields(std::move(fields)) {}

    int number() const { return m_number; }
    const QString &keyword() const { return m_fields.first(); }

    void expect(int count) const
    {
        const int present = int(m_fields.size()) - 1;
        if (present < count)
            fail(m_number, QStringLiteral("la riga \"%1\" è incompleta: servono %2 valori dopo "
                                          "la parola chiave, ce ne sono %3.")
                               .arg(keyword())
                               .arg(count)
                               .arg(present));
    }

    const QString &text(int i) const { return m_fields.at(i); }

    QString name(int i, const QString &what) const
    {
        const QString value = m_fields.at(i);
        if (value.trimmed().isEmpty())
            fail(m_number, QStringLiteral("manca il nome %1.").arg(what));
        if (isSystemObjectName(value))
            fail(m_number, QStringLiteral("il nome %1 è riservato agli oggetti di sistema.")
                               .arg(quoted(value)));
        return value;
    }

    qint64 integer(int i, const QString &what, qint64 min, qint64 max) const
    {
        bool ok = false;
        const qint64 value = m_fields.at(i).trimmed().toLongLong(&ok);
        if (!ok || value < min || value > max)
            fail(m_number, QStringLiteral("%1 non è un numero valido per %2.")
                               .arg(quoted(m_fields.at(i)), what));
        return value;
    }

    bool truth(int i, const QString &what) const
    {
        const QString value = m_fields.at(i).trimmed().toLower();
        static const QStringList yes{QStringLiteral("true"), QStringLiteral("vero"),
                                     QStringLiteral("yes"),  QStringLiteral("sì"),
                                     QStringLiteral("si"),   QStringLiteral("-1"),
                                     QStringLiteral("1")};
        static const QStringList no{QStringLiteral("false"), QStringLiteral("falso"),
                                    QStringLiteral("no"), QStringLiteral("0")};
        if (yes.contains(value))
            return true;
        if (no.contains(value))
            return false;
        fail(m_number, QStringLiteral("%1 non è un valore logico (True o False) per %2.")
                           .arg(quoted(m_fields.at(i)), what));
    }

private:
    int m_number;
    QStringList m_fields;
};

constexpr qint64 LongMin = std::numeric_limits<qint32>::min();
constexpr qint64 LongMax = std::numeric_limits<qint32>::max();

// Builds the schema from the lines after the header, keeping track of what is open.
class SchemaBuilder
{
public:
    explicit SchemaBuilder(DatabaseSchema &schema) : m_schema(schema) {}

    void take(const Line &line)
    {
        const QString &k = line.keyword();
        if (k == QLatin1String("Tabella"))
            table(line);
        else if (k == QLatin1String("Campo"))
            field(line);
        else if (k == QLatin1String("Indice"))
            index(line);
        else if (k == QLatin1String("ColonnaIndice"))
            indexColumn(line);
        else if (k == QLatin1String("FineIndice"))
            endIndex(line);
        else if (k == QLatin1String("FineTabella"))
            endTable(line);
        else if (k == QLatin1String("Query"))
            query(line);
        else if (k == QLatin1String("Relazioni"))
            relation(line);
        else if (k == QLatin1String("CampoRelazione"))
            relationField(line);
        else if (k == QLatin1String("FineRelazione"))
            endRelation(line);
        // Any other keyword is not the program's and is ignored.
    }

    void finish()
    {
        if (m_index)
            fail(m_index->line, QStringLiteral("l'indice %1 non è chiuso da \"FineIndice\" "
                                               "prima della fine del file.")
                                    .arg(quoted(m_index->name)));
        if (m_table)
            fail(m_table->line, QStringLiteral("la tabella %1 non è chiusa da \"FineTabella\" "
                                               "prima della fine del file.")
                                    .arg(quoted(m_table->name)));
        if (m_relation)
            fail(m_relation->line, QStringLiteral("la relazione %1 non è chiusa da "
                                                  "\"FineRelazione\" prima della fine del file.")
                                       .arg(quoted(m_relation->name)));
    }

private:
    void atTopLevel(const Line &line, const QString &what)
    {
        if (m_table)
            fail(line.number(), QStringLiteral("%1 dentro la tabella %2, che non è chiusa da "
                                               "\"FineTabella\".")
                                    .arg(what, quoted(m_table->name)));
        if (m_relation)
            fail(line.number(), QStringLiteral("%1 dentro la relazione %2, che non è chiusa da "
                                               "\"FineRelazione\".")
                                    .arg(what, quoted(m_relation->name)));
    }

    void inTable(const Line &line, const QString &what)
    {
        if (!m_table)
            fail(line.number(), QStringLiteral("%1 è fuori da una tabella.").arg(what));
        if (m_index)
            fail(line.number(), QStringLiteral("%1 dentro l'indice %2, che non è chiuso da "
                                               "\"FineIndice\".")
                                    .arg(what, quoted(m_index->name)));
    }

    bool nameTaken(const QString &name) const
    {
        return m_schema.table(name) || (m_table && sameName(m_table->name, name)) ||
               std::any_of(m_schema.queries.begin(), m_schema.queries.end(),
                           [&](const SchemaQuery &q) { return sameName(q.name, name); });
    }

    void table(const Line &line)
    {
        line.expect(1);
        const QString name = line.name(1, QStringLiteral("della tabella"));
        atTopLevel(line, QStringLiteral("la tabella %1 inizia").arg(quoted(name)));
        if (nameTaken(name))
            fail(line.number(),
                 QStringLiteral("il nome della tabella %1 è già usato.").arg(quoted(name)));
        m_table = SchemaTable{name, {}, {}, line.number()};
    }

    void field(const Line &line)
    {
        line.expect(7);
        inTable(line, QStringLiteral("il campo %1").arg(quoted(line.text(1))));
        SchemaField f;
        f.name = line.name(1, QStringLiteral("del campo"));
        f.type = int(line.integer(2, QStringLiteral("il tipo del campo"), -32768, 32767));
        f.size =
            qint32(line.integer(3, QStringLiteral("la dimensione del campo"), LongMin, LongMax));
        f.attributes =
            qint32(line.integer(4, QStringLiteral("gli attributi del campo"), LongMin, LongMax));
        f.allowZeroLength = line.truth(5, QStringLiteral("\"consenti lunghezza zero\""));
        f.defaultValue = line.text(6);
        f.required = line.truth(7, QStringLiteral("\"richiesto\""));
        f.line = line.number();
        if (!isKnownDaoType(f.type))
            fail(line.number(), QStringLiteral("il tipo %1 del campo %2 non è un tipo conosciuto.")
                                    .arg(f.type)
                                    .arg(quoted(f.name)));
        if (f.type == DaoText && (f.size < 1 || f.size > 255))
            fail(line.number(),
                 QStringLiteral("la dimensione %1 del campo di testo %2 non è tra 1 e 255.")
                     .arg(f.size)
                     .arg(quoted(f.name)));
        if (m_table->field(f.name))
            fail(line.number(), QStringLiteral("il campo %1 è già definito nella tabella %2.")
                                    .arg(quoted(f.name), quoted(m_table->name)));
        m_table->fields << f;
    }

    void index(const Line &line)
    {
        line.expect(4);
        inTable(line, QStringLiteral("l'indice %1").arg(quoted(line.text(1))));
        SchemaIndex i;
        i.name = line.name(1, QStringLiteral("dell'indice"));
        i.ignoreNulls = line.truth(2, QStringLiteral("\"ignora i valori null\""));
        i.primary = line.truth(3, QStringLiteral("\"primario\""));
        i.unique = line.truth(4, QStringLiteral("\"univoco\""));
        i.line = line.number();
        if (m_table->index(i.name))
            fail(line.number(), QStringLiteral("l'indice %1 è già definito nella tabella %2.")
                                    .arg(quoted(i.name), quoted(m_table->name)));
        if (i.primary)
            for (const SchemaIndex &other : m_table->indexes)
                if (other.primary)
                    fail(line.number(), QStringLiteral("la tabella %1 ha già l'indice primario %2.")
                                            .arg(quoted(m_table->name), quoted(other.name)));
        m_index = i;
    }

    void indexColumn(const Line &line)
    {
        line.expect(1);
        if (!m_index)
            fail(line.number(), QStringLiteral("la colonna d'indice %1 è fuori da un indice.")
                                    .arg(quoted(line.text(1))));
        const SchemaField *f = m_table->field(line.text(1));
        if (!f)
            fail(line.number(),
                 QStringLiteral("la colonna d'indice %1 non è un campo della tabella %2.")
                     .arg(quoted(line.text(1)), quoted(m_table->name)));
        for (const QString &column : std::as_const(m_index->columns))
            if (sameName(column, f->name))
                fail(line.number(), QStringLiteral("la colonna %1 è già nell'indice %2.")
                                        .arg(quoted(f->name), quoted(m_index->name)));
        m_index->columns << line.text(1);
    }

    void endIndex(const Line &line)
    {
        if (!m_index)
            fail(line.number(), QStringLiteral("\"FineIndice\" senza un indice aperto."));
        if (m_index->columns.isEmpty())
            fail(line.number(),
                 QStringLiteral("l'indice %1 non ha colonne.").arg(quoted(m_index->name)));
        m_table->indexes << *m_index;
        m_index.reset();
    }

    void endTable(const Line &line)
    {
        if (!m_table)
            fail(line.number(), QStringLiteral("\"FineTabella\" senza una tabella aperta."));
        if (m_index)
            fail(line.number(), QStringLiteral("l'indice %1 non è chiuso da \"FineIndice\".")
                                    .arg(quoted(m_index->name)));
        if (m_table->fields.isEmpty())
            fail(line.number(),
                 QStringLiteral("la tabella %1 non ha campi.").arg(quoted(m_table->name)));
        m_schema.tables << *m_table;
        m_table.reset();
    }

    void query(const Line &line)
    {
        line.expect(3);
        const QString name = line.name(1, QStringLiteral("della query"));
        atTopLevel(line, QStringLiteral("la query %1").arg(quoted(name)));
        if (nameTaken(name))
            fail(line.number(),
                 QStringLiteral("il nome della query %1 è già usato.").arg(quoted(name)));
        SchemaQuery q;
        q.name = name;
        q.sql = queryTextFromFile(line.text(2));
        q.maxRecords =
            qint32(line.integer(3, QStringLiteral("il numero massimo di record"), 0, LongMax));
        q.line = line.number();
        if (q.sql.trimmed().isEmpty())
            fail(line.number(), QStringLiteral("la query %1 non ha testo.").arg(quoted(name)));
        m_schema.queries << q;
    }

    void relation(const Line &line)
    {
        line.expect(4);
        SchemaRelation r;
        r.name = line.name(1, QStringLiteral("della relazione"));
        atTopLevel(line, QStringLiteral("la relazione %1").arg(quoted(r.name)));
        r.attributes = qint32(
            line.integer(2, QStringLiteral("gli attributi della relazione"), LongMin, LongMax));
        r.foreignTable = line.text(3);
        r.table = line.text(4);
        r.line = line.number();
        for (const QString &t : {r.foreignTable, r.table})
            if (!m_schema.table(t))
                fail(line.number(), QStringLiteral("la relazione %1 nomina la tabella %2, che "
                                                   "non esiste.")
                                        .arg(quoted(r.name), quoted(t)));
        m_relation = r;
    }

    void relationField(const Line &line)
    {
        line.expect(2);
        if (!m_relation)
            fail(line.number(), QStringLiteral("il campo di relazione %1 è fuori da una "
                                               "relazione.")
                                    .arg(quoted(line.text(1))));
        const RelationField pair{line.text(1), line.text(2)};
        const auto check = [&](const QString &fieldName, const QString &tableName) {
            if (!m_schema.table(tableName)->field(fieldName))
                fail(line.number(),
                     QStringLiteral("la relazione %1 nomina il campo %2, che non "
                                    "esiste nella tabella %3.")
                         .arg(quoted(m_relation->name), quoted(fieldName), quoted(tableName)));
        };
        check(pair.name, m_relation->table);
        check(pair.foreignName, m_relation->foreignTable);
        m_relation->fields << pair;
    }

    void endRelation(const Line &line)
    {
        if (!m_relation)
            fail(line.number(), QStringLiteral("\"FineRelazione\" senza una relazione aperta."));
        if (m_relation->fields.isEmpty())
            fail(line.number(),
                 QStringLiteral("la relazione %1 non ha campi.").arg(quoted(m_relation->name)));
        if (m_relation->enforced() && !hasUniqueIndexOnFields(*m_relation))
            fail(line.number(),
                 QStringLiteral("la relazione %1 richiede un indice univoco (non \"ignora i "
                                "valori null\") sui suoi campi della tabella %2.")
                     .arg(quoted(m_relation->name), quoted(m_relation->table)));
        m_schema.relations << *m_relation;
        m_relation.reset();
    }

    // An enforced relation refers to rows of the primary table that its fields identify: a
    // unique index on exactly those fields.
    bool hasUniqueIndexOnFields(const SchemaRelation &r) const
    {
        QSet<QString> wanted;
        for (const RelationField &f : r.fields)
            wanted << f.name.toLower();
        for (const SchemaIndex &i : m_schema.table(r.table)->indexes) {
            if (!(i.unique || i.primary) || i.ignoreNulls)
                continue;
            QSet<QString> columns;
            for (const QString &c : i.columns)
                columns << c.toLower();
            if (columns == wanted && columns.size() == i.columns.size())
                return true;
        }
        return false;
    }

    DatabaseSchema &m_schema;
    std::optional<SchemaTable> m_table;
    std::optional<SchemaIndex> m_index;
    std::optional<SchemaRelation> m_relation;
};

QString fileValue(QString value)
{
    return value.replace(u'\t', TabStandIn);
}

QString truth(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

} // namespace

QString queryTextFromFile(const QString &fileText)
{
    QString sql = fileText;
    sql.replace(CommaStandIn, u',');
    // The stored queries carry no declared parameters: the declaration up to its ";" goes.
    if (sql.startsWith(QLatin1String("PARAMETERS"), Qt::CaseInsensitive)) {
        const qsizetype end = sql.indexOf(u';');
        if (end >= 0) {
            sql = sql.mid(end + 1);
            qsizetype begin = 0;
            while (begin < sql.size() && sql.at(begin).isSpace())
                ++begin;
            sql = sql.mid(begin);
        }
    }
    return sql;
}

DatabaseSchema parseSchemaDescription(const QByteArray &bytes)
{
    const QStringList lines = fileLines(bytes);
    DatabaseSchema schema;
    int number = 0;
    bool header = false;
    for (; number < lines.size() && !header; ++number) {
        const QStringList fields = lineFields(trimBlanks(lines.at(number)));
        if (fields.size() >= 3 && fields.at(0) == QLatin1String("Database") &&
            fields.at(2).compare(CurrentVersion, Qt::CaseInsensitive) == 0) {
            schema.name = fields.at(1);
            schema.version = fields.at(2);
            header = true;
        }
    }
    if (!header)
        throw SchemaError{0, {}, true};

    SchemaBuilder builder(schema);
    for (; number < lines.size(); ++number) {
        const QString text = trimBlanks(lines.at(number));
        if (text.contains(u','))
            fail(number + 1, QStringLiteral("la virgola non è ammessa (nel testo delle query si "
                                            "scrive µ)."));
        builder.take(Line(number + 1, lineFields(text)));
    }
    builder.finish();
    return schema;
}

QByteArray writeSchemaDescription(const DatabaseSchema &schema)
{
    QStringList lines;
    const auto line = [&lines](QStringList fields) {
        for (QString &f : fields)
            f = fileValue(f);
        lines << fields.join(u'\t');
    };
    line({QStringLiteral("Database"), schema.name, schema.version});
    for (const SchemaTable &t : schema.tables) {
        line({QStringLiteral("Tabella"), t.name});
        for (const SchemaField &f : t.fields)
            line({QStringLiteral("Campo"), f.name, QString::number(f.type), QString::number(f.size),
                  QString::number(f.attributes), truth(f.allowZeroLength), f.defaultValue,
                  truth(f.required)});
        for (const SchemaIndex &i : t.indexes) {
            line({QStringLiteral("Indice"), i.name, truth(i.ignoreNulls), truth(i.primary),
                  truth(i.unique)});
            for (const QString &c : i.columns)
                line({QStringLiteral("ColonnaIndice"), c});
            line({QStringLiteral("FineIndice")});
        }
        line({QStringLiteral("FineTabella")});
    }
    for (const SchemaQuery &q : schema.queries) {
        QString text = q.sql;
        text.replace(QLatin1String("\r\n"), QLatin1String(" "));
        text.replace(u'\r', u' ');
        text.replace(u'\n', u' ');
        text.replace(u',', CommaStandIn);
        line({QStringLiteral("Query"), q.name, text, QString::number(q.maxRecords)});
    }
    for (const SchemaRelation &r : schema.relations) {
        line({QStringLiteral("Relazioni"), r.name, QString::number(r.attributes), r.foreignTable,
              r.table});
        for (const RelationField &f : r.fields)
            line({QStringLiteral("CampoRelazione"), f.name, f.foreignName});
        line({QStringLiteral("FineRelazione")});
    }
    QByteArray out;
    for (const QString &l : std::as_const(lines)) {
        out += cp1252::encode(l);
        out += "\r\n";
    }
    return out;
}

} // namespace pg::localdb
