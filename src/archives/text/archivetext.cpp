#include "archivetext.h"

#include "archives/store/fieldcheck.h"
#include "core/cp1252.h"

#include <QSet>

namespace pg::archives {

namespace {

const QString TypeField = QStringLiteral("tipo_rec");

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

// Characters that a bare value cannot hold.
bool needsQuotes(QChar c)
{
    const char16_t u = c.unicode();
    return u <= 0x20 || u == 0x7F || (u >= 0x80 && u <= 0x9F) || u == u'"' || u == u'=';
}

bool isControl(char16_t u)
{
    return u < 0x20 || u == 0x7F || (u >= 0x80 && u <= 0x9F);
}

// The byte a character of a value is stored as; -1 when Windows-1252 has none. The five
// bytes the code page leaves undefined come back from the control characters they are read
// as, so that every record survives a dump and a load.
int storedByte(char32_t c)
{
    if (c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D)
        return int(c);
    if (!cp1252::isRepresentable(c))
        return -1;
    return static_cast<unsigned char>(cp1252::encode(QString::fromUcs4(&c, 1)).at(0));
}

// A control character written as it is: the format wants it between quotes as \xHH, so that
// a line never holds a character the eye cannot see.
QString rawControl(QChar c)
{
    const QString code = QStringLiteral("%1").arg(int(c.unicode()), 2, 16, QChar(u'0')).toUpper();
    return QStringLiteral("carattere di controllo di codice %1 scritto così com'è: va scritto "
                          "\\x%1 tra virgolette")
        .arg(code);
}

int hexValue(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

} // namespace

QString ArchiveText::formatValue(const QString &value)
{
    bool quoted = value.isEmpty();
    for (QChar c : value)
        quoted = quoted || needsQuotes(c) || c == u'\\';
    if (!quoted)
        return value;
    QString out;
    out.reserve(value.size() + 2);
    out += u'"';
    for (QChar c : value) {
        if (c == u'"' || c == u'\\')
            out += u'\\', out += c;
        else if (isControl(c.unicode()))
            out += QStringLiteral("\\x") +
                   QStringLiteral("%1").arg(int(c.unicode()), 2, 16, QChar(u'0')).toUpper();
        else
            out += c;
    }
    out += u'"';
    return out;
}

QString ArchiveText::recordTypeOf(int archive, const QByteArray &buffer)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    const FieldDef *type = layout ? layout->field(QStringLiteral("*"), TypeField) : nullptr;
    if (!type)
        return QStringLiteral("*");
    QByteArray raw = buffer.mid(type->offset, type->width);
    raw.replace('\0', ' ');
    return cp1252::decode(raw.leftJustified(type->width, ' '));
}

QString ArchiveText::typeColumn(const QString &recordType)
{
    QString column = recordType;
    column.replace(u' ', u'_');
    return column;
}

QString ArchiveText::format(const ErpRecord &record)
{
    QString line = QString::number(record.archive()) + u' ';
    const QString type = typeColumn(record.recordType());
    bool plain = !type.isEmpty();
    for (QChar c : type)
        plain = plain && !needsQuotes(c) && c != u'\\';
    line += plain ? type : formatValue(type);
    for (const FieldDef &field : record.layout().fields(record.recordType())) {
        if (field.name == TypeField)
            continue;
        QString value = record.text(field.name);
        qsizetype end = value.size();
        while (end > 0 && value.at(end - 1) == u' ')
            --end;
        if (end == 0)
            continue;
        value.truncate(end);
        line += u' ' + field.name + u'=' + formatValue(value);
    }
    return line;
}

ArchiveText::Line ArchiveText::parse(QStringView line, std::optional<ErpRecord> *record,
                                     Problem *problem)
{
    record->reset();
    qsizetype pos = 0;
    const qsizetype size = line.size();
    auto skipBlanks = [&] {
        while (pos < size && isBlank(line.at(pos)))
            ++pos;
    };
    auto token = [&] {
        const qsizetype start = pos;
        while (pos < size && !isBlank(line.at(pos)))
            ++pos;
        return line.sliced(start, pos - start);
    };
    auto invalid = [&](const QString &field, const QString &message) {
        *problem = Problem{field, message};
        record->reset();
        return Line::Invalid;
    };

    skipBlanks();
    if (pos == size || line.at(pos) == u'#')
        return Line::Ignored;

    const QStringView number = token();
    bool ok = !number.isEmpty();
    for (QChar c : number)
        ok = ok && c.isDigit() && c.unicode() < 0x80;
    const int archive = ok ? number.toInt(&ok) : 0;
    if (!ok)
        return invalid(
            {}, QStringLiteral("numero di archivio non valido: \"%1\"").arg(number.toString()));
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    if (!layout)
        return invalid({}, QStringLiteral("archivio %1 sconosciuto").arg(archive));

    skipBlanks();
    const QString typeText = token().toString();
    if (typeText.isEmpty())
        return invalid({}, QStringLiteral("manca il tipo di record"));
    const bool typed = layout->field(QStringLiteral("*"), TypeField) != nullptr;
    QString type = typeText;
    type.replace(u'_', u' ');
    if (!typed && type != u"*")
        return invalid({}, QStringLiteral("l'archivio %1 non ha tipi di record: scrivere * "
                                          "invece di \"%2\"")
                               .arg(archive)
                               .arg(typeText));
    if (typed && !layout->recordTypes().contains(type)) {
        QStringList known;
        for (const QString &t : layout->recordTypes())
            known << typeColumn(t);
        return invalid({}, QStringLiteral("tipo di record \"%1\" sconosciuto nell'archivio %2 "
                                          "(tipi: %3)")
                               .arg(typeText)
                               .arg(archive)
                               .arg(known.join(QStringLiteral(", "))));
    }

    ErpRecord result(archive, type);
    QSet<QString> seen;
    while (true) {
        skipBlanks();
        if (pos == size)
            break;
        const qsizetype nameStart = pos;
        while (pos < size && !isBlank(line.at(pos)) && line.at(pos) != u'=')
            ++pos;
        const QString name = line.sliced(nameStart, pos - nameStart).toString();
        if (pos == size || line.at(pos) != u'=')
            return invalid(name, QStringLiteral("atteso campo=valore"));
        if (name.isEmpty())
            return invalid({}, QStringLiteral("manca il nome del campo prima di '='"));
        ++pos;

        QString value;
        if (pos < size && line.at(pos) == u'"') {
            ++pos;
            bool closed = false;
            while (pos < size) {
                const QChar c = line.at(pos++);
                if (c == u'"') {
                    closed = true;
                    break;
                }
                if (isControl(c.unicode()))
                    return invalid(name, rawControl(c));
                if (c != u'\\') {
                    value += c;
                    continue;
                }
                if (pos == size)
                    break;
                const QChar e = line.at(pos++);
                if (e == u'"' || e == u'\\') {
                    value += e;
                } else if (e == u'x' && pos + 1 < size && hexValue(line.at(pos)) >= 0 &&
                           hexValue(line.at(pos + 1)) >= 0) {
                    value +=
                        QChar(char16_t(hexValue(line.at(pos)) * 16 + hexValue(line.at(pos + 1))));
                    pos += 2;
                } else {
                    return invalid(
                        name, QStringLiteral("sequenza \\%1 non valida tra virgolette").arg(e));
                }
            }
            if (!closed)
                return invalid(name, QStringLiteral("virgolette non chiuse"));
            if (pos < size && !isBlank(line.at(pos)))
                return invalid(name, QStringLiteral("dopo le virgolette di chiusura serve uno "
                                                    "spazio"));
        } else {
            const QStringView bare = token();
            for (QChar c : bare) {
                if (c == u'"' || c == u'=')
                    return invalid(name, QStringLiteral("un valore con '\"' o '=' va scritto "
                                                        "tra virgolette"));
                if (isControl(c.unicode()))
                    return invalid(name, rawControl(c));
            }
            value = bare.toString();
        }

        if (name == TypeField)
            return invalid(name, QStringLiteral("il tipo di record si scrive nella seconda "
                                                "colonna"));
        const FieldDef *field = layout->field(type, name);
        if (!field)
            return invalid(
                name, typed ? QStringLiteral("campo sconosciuto nei record di tipo "
                                             "%1 dell'archivio %2")
                                  .arg(typeText)
                                  .arg(archive)
                            : QStringLiteral("campo sconosciuto nell'archivio %1").arg(archive));
        if (seen.contains(name))
            return invalid(name, QStringLiteral("campo ripetuto"));
        seen.insert(name);

        while (!value.isEmpty() && value.back() == u' ')
            value.chop(1);
        QByteArray bytes;
        bytes.reserve(value.size());
        for (char32_t c : value.toUcs4()) {
            const int b = storedByte(c);
            if (b < 0)
                return invalid(name, QStringLiteral("il carattere '%1' (U+%2) non esiste nella "
                                                    "codifica degli archivi (Windows-1252)")
                                         .arg(QString::fromUcs4(&c, 1))
                                         .arg(uint(c), 4, 16, QChar(u'0')));
            bytes += char(b);
        }
        if (bytes.size() > field->width)
            return invalid(name, QStringLiteral("valore di %1 caratteri, il campo ne contiene %2")
                                     .arg(bytes.size())
                                     .arg(field->width));
        if (const QString wrong = fieldValueProblem(*field, bytes); !wrong.isEmpty())
            return invalid(name, wrong);
        result.buffer().replace(field->offset, bytes.size(), bytes);
    }
    for (const FieldDef &field : layout->fields(type))
        if (field.required && isBlankValue(result.bytes(field)))
            return invalid(field.name, QStringLiteral("manca il valore, obbligatorio nei record "
                                                      "dell'archivio %1")
                                           .arg(archive));
    record->emplace(std::move(result));
    return Line::Record;
}

} // namespace pg::archives
