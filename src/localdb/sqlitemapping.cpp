#include "sqlitemapping.h"

#include <QRegularExpression>

namespace pg::localdb::sqlmap {

namespace {

struct TypeName
{
    int type;
    const char *declared;
    qint32 size;
};

// The declared type and the usual size of every type of the description.
constexpr TypeName Types[] = {
    {DaoBoolean, "BOOLEAN", 1},  {DaoByte, "TINYINT", 1},      {DaoInteger, "SMALLINT", 2},
    {DaoLong, "INTEGER", 4},     {DaoCurrency, "CURRENCY", 8}, {DaoSingle, "FLOAT", 4},
    {DaoDouble, "DOUBLE", 8},    {DaoDate, "DATETIME", 8},     {DaoText, "VARCHAR", 255},
    {DaoLongBinary, "BLOB", 0},  {DaoMemo, "TEXT", 0},         {DaoGuid, "GUID", 16},
    {DaoDecimal, "DECIMAL", 16},
};

const TypeName &typeName(int type)
{
    for (const TypeName &t : Types)
        if (t.type == type)
            return t;
    return Types[6]; // double: the engine's numeric affinity
}

bool isTextual(int type)
{
    return type == DaoText || type == DaoMemo;
}

QString stringLiteral(const QString &text)
{
    QString escaped = text;
    escaped.replace(u'\'', QLatin1String("''"));
    return u'\'' + escaped + u'\'';
}

const QRegularExpression &numberPattern()
{
    static const QRegularExpression pattern(
        QStringLiteral("^[+-]?(\\d+(\\.\\d*)?|\\.\\d+)([eE][+-]?\\d+)?$"));
    return pattern;
}

// The text of a literal quoted with the given character, the quote doubled inside; nothing
// when the value is not such a literal.
std::optional<QString> unquoted(const QString &value, QChar quote)
{
    if (value.size() < 2 || value.front() != quote || value.back() != quote)
        return std::nullopt;
    const QString inner = value.mid(1, value.size() - 2);
    const QString doubled = QString(quote) + quote;
    QString text;
    for (qsizetype i = 0; i < inner.size(); ++i) {
        if (inner.at(i) == quote) {
            if (inner.mid(i, 2) != doubled)
                return std::nullopt;
            ++i;
        }
        text += inner.at(i);
    }
    return text;
}

QString compact(const QString &value)
{
    QString out;
    for (QChar c : value)
        if (!c.isSpace())
            out += c.toLower();
    return out;
}

} // namespace

QString quoteIdentifier(const QString &name)
{
    QString escaped = name;
    escaped.replace(u'"', QLatin1String("\"\""));
    return u'"' + escaped + u'"';
}

QString declaredType(const SchemaField &field)
{
    if (field.type == DaoText)
        return QStringLiteral("VARCHAR(%1)").arg(field.size);
    return QLatin1String(typeName(field.type).declared);
}

std::optional<QString> defaultExpression(const QString &defaultValue)
{
    QString value = defaultValue.trimmed();
    if (value.startsWith(u'='))
        value = value.mid(1).trimmed();
    if (value.isEmpty())
        return std::nullopt;
    if (const auto text = unquoted(value, u'"'))
        return stringLiteral(*text);
    if (const auto text = unquoted(value, u'\''))
        return stringLiteral(*text);
    if (numberPattern().match(value).hasMatch())
        return value;
    const QString word = compact(value);
    if (word == QLatin1String("true") || word == QLatin1String("yes") ||
        word == QLatin1String("on"))
        return QStringLiteral("1");
    if (word == QLatin1String("false") || word == QLatin1String("no") ||
        word == QLatin1String("off"))
        return QStringLiteral("0");
    if (word == QLatin1String("date()"))
        return QStringLiteral("CURRENT_DATE");
    if (word == QLatin1String("now()"))
        return QStringLiteral("CURRENT_TIMESTAMP");
    if (word == QLatin1String("time()"))
        return QStringLiteral("CURRENT_TIME");
    return std::nullopt;
}

QString columnDefinition(const SchemaField &field, bool inPrimaryIndex)
{
    const QString column = quoteIdentifier(field.name);
    QString sql = column + u' ' + declaredType(field);
    if (field.required || inPrimaryIndex)
        sql += QLatin1String(" NOT NULL");
    if (const auto expression = defaultExpression(field.defaultValue))
        sql += QLatin1String(" DEFAULT ") + *expression;
    if (field.type == DaoText)
        sql += QStringLiteral(" CHECK (length(%1) <= %2)").arg(column).arg(field.size);
    if (isTextual(field.type) && !field.allowZeroLength)
        sql += QStringLiteral(" CHECK (%1 <> '')").arg(column);
    return sql;
}

SchemaField fieldFromColumn(const QString &name, const QString &declared, bool notNull,
                            const QString &defaultSql)
{
    SchemaField field;
    field.name = name;
    field.required = notNull;

    const QString upper = declared.trimmed().toUpper();
    static const QRegularExpression withLength(QStringLiteral("^([A-Z ]+?)\\s*\\(\\s*(\\d+)"));
    const QRegularExpressionMatch m = withLength.match(upper);
    const QString base = m.hasMatch() ? m.captured(1).trimmed() : upper;
    const qint32 length = m.hasMatch() ? m.captured(2).toInt() : 0;

    int type = -1;
    for (const TypeName &t : Types)
        if (base == QLatin1String(t.declared))
            type = t.type;
    if (type == -1) {
        const auto has = [&](const char *part) { return base.contains(QLatin1String(part)); };
        if (has("INT"))
            type = DaoLong;
        else if (has("CHAR") || has("CLOB") || has("TEXT"))
            type = DaoText;
        else if (has("BLOB") || base.isEmpty())
            type = DaoLongBinary;
        else if (has("REAL") || has("FLOA") || has("DOUB"))
            type = DaoDouble;
        else if (has("DATE") || has("TIME"))
            type = DaoDate;
        else if (has("BOOL"))
            type = DaoBoolean;
        else if (has("DEC") || has("NUMERIC"))
            type = DaoDecimal;
        else if (has("MONEY"))
            type = DaoCurrency;
        else
            type = DaoDouble;
    }
    // Text keeps its declared length up to 255; longer or unsized text (CLOB, TEXT) is memo.
    if (type == DaoText && (length > 255 || (length == 0 && !base.contains(QLatin1String("CHAR")))))
        type = DaoMemo;
    field.type = type;
    field.size = type == DaoText ? (length > 0 ? length : 255) : typeName(type).size;
    field.attributes =
        (isTextual(type) || type == DaoLongBinary) ? DaoVariableField : DaoFixedField;
    field.allowZeroLength = isTextual(type);

    // The default back in the suite's form.
    const QString d = defaultSql.trimmed();
    if (d.isEmpty() || d.compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0)
        field.defaultValue.clear();
    else if (const auto text = unquoted(d, u'\''))
        field.defaultValue = u'"' + QString(*text).replace(u'"', QLatin1String("\"\"")) + u'"';
    else if (d.compare(QLatin1String("CURRENT_DATE"), Qt::CaseInsensitive) == 0)
        field.defaultValue = QStringLiteral("Date()");
    else if (d.compare(QLatin1String("CURRENT_TIMESTAMP"), Qt::CaseInsensitive) == 0)
        field.defaultValue = QStringLiteral("Now()");
    else if (d.compare(QLatin1String("CURRENT_TIME"), Qt::CaseInsensitive) == 0)
        field.defaultValue = QStringLiteral("Time()");
    else
        field.defaultValue = d;
    return field;
}

QString indexName(const QString &table, const QString &index)
{
    return table + u'.' + index;
}

QString viewText(const QString &createSql)
{
    static const QRegularExpression pattern(
        QStringLiteral(
            "^\\s*CREATE\\s+(?:TEMP\\s+|TEMPORARY\\s+)?VIEW\\s+(?:IF\\s+NOT\\s+EXISTS\\s+)?"
            "(?:\"(?:[^\"]|\"\")*\"|\\[[^\\]]*\\]|`[^`]*`|[^\\s(]+)\\s*"
            "(?:\\([^)]*\\)\\s*)?AS\\s+(.*)$"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch m = pattern.match(createSql);
    return m.hasMatch() ? m.captured(1).trimmed() : createSql;
}

} // namespace pg::localdb::sqlmap
