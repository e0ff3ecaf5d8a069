#include "recordlayout.h"

#include <QFile>

#include <algorithm>

namespace pg::archives {

const FieldDef *ArchiveLayout::field(const QString &recordType, const QString &fieldName) const
{
    // The record type's own fields first, then the fields every record has.
    const auto find = [&](const QString &type) -> const FieldDef * {
        const auto t = m_index.constFind(type);
        if (t == m_index.constEnd())
            return nullptr;
        const auto f = t->constFind(fieldName);
        return f == t->constEnd() ? nullptr : &*f;
    };
    if (const FieldDef *own = find(recordType))
        return own;
    static const QString everyRecord = QStringLiteral("*");
    return recordType == everyRecord ? nullptr : find(everyRecord);
}

QList<FieldDef> ArchiveLayout::fields(const QString &recordType) const
{
    QList<FieldDef> out = m_fields.value(QStringLiteral("*"));
    if (recordType != QStringLiteral("*"))
        out += m_fields.value(recordType);
    std::stable_sort(out.begin(), out.end(),
                     [](const FieldDef &a, const FieldDef &b) { return a.offset < b.offset; });
    return out;
}

QStringList ArchiveLayout::recordTypes() const
{
    QStringList out;
    for (auto it = m_fields.cbegin(); it != m_fields.cend(); ++it)
        if (it.key() != QStringLiteral("*"))
            out << it.key();
    return out;
}

const QList<FieldDef> &ArchiveLayout::keyFields(int key) const
{
    static const QList<FieldDef> none;
    const auto it = m_keys.constFind(key);
    return it == m_keys.constEnd() ? none : *it;
}

int ArchiveLayout::keyLength(int key) const
{
    int n = 0;
    for (const FieldDef &f : keyFields(key))
        n += f.width;
    return n;
}

QByteArray ArchiveLayout::keyOf(const QByteArray &record, int key) const
{
    QByteArray out;
    out.reserve(keyLength(key));
    for (const FieldDef &f : keyFields(key)) {
        // A short record reads as blanks past its end.
        const qsizetype available = std::clamp<qsizetype>(record.size() - f.offset, 0, f.width);
        out.append(record.constData() + std::min<qsizetype>(f.offset, record.size()), available);
        out.append(f.width - available, ' ');
    }
    return out;
}

namespace {

// The kind and the "required" mark after a field's width; false for a word it does not know.
bool readFieldKind(const QStringList &words, FieldDef *field)
{
    for (const QString &word : words) {
        const QString kind = word.section(u':', 0, 0);
        const QString argument = word.section(u':', 1);
        bool ok = true;
        if (word == u"required") {
            field->required = true;
        } else if (word == u"text") {
            field->kind = FieldKind::Text;
        } else if (word == u"date") {
            field->kind = FieldKind::Date;
        } else if (word == u"digits") {
            field->kind = FieldKind::Digits;
        } else if (kind == u"amount" || kind == u"rate") {
            field->kind = kind == u"amount" ? FieldKind::Amount : FieldKind::Rate;
            field->decimals = argument.toInt(&ok);
            ok = ok && field->decimals >= 0 && field->decimals < field->width;
        } else if (kind == u"choice" && !argument.isEmpty() && field->width == 1) {
            field->kind = FieldKind::Choice;
            field->choices = argument.toLatin1();
        } else {
            ok = false;
        }
        if (!ok)
            return false;
    }
    return true;
}

} // namespace

RecordLayouts RecordLayouts::parse(const QString &text, QString *error)
{
    RecordLayouts layouts;
    struct PendingKey
    {
        int line;
        int archive;
        int key;
        QStringList fields;
    };
    QList<PendingKey> pendingKeys;
    QList<PendingKey> pendingUnique; // keys named unique, checked once every key is known
    const QStringList lines = text.split(u'\n');
    auto fail = [&](int lineNumber, const QString &why) {
        if (error)
            *error = QStringLiteral("Tracciati record, riga %1: %2").arg(lineNumber).arg(why);
        return RecordLayouts();
    };
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const QStringList parts = line.split(u' ', Qt::SkipEmptyParts);
        const QString kind = parts.first();
        bool ok = parts.size() >= 2;
        const int archive = ok ? parts.at(1).toInt(&ok) : 0;
        if (!ok)
            return fail(i + 1, QStringLiteral("numero di archivio mancante"));
        if (kind == QStringLiteral("ARCHIVE")) {
            ArchiveLayout a;
            a.number = archive;
            a.length = parts.value(2).toInt(&ok);
            if (!ok || a.length <= 0)
                return fail(i + 1, QStringLiteral("lunghezza del record non valida"));
            a.name = parts.mid(3).join(u' ');
            layouts.m_archives.insert(archive, a);
            continue;
        }
        auto it = layouts.m_archives.find(archive);
        if (it == layouts.m_archives.end())
            return fail(i + 1, QStringLiteral("archivio %1 non dichiarato").arg(archive));
        ArchiveLayout &a = *it;
        if (kind == QStringLiteral("KEY")) {
            const int key = parts.value(2).toInt(&ok);
            if (!ok || parts.size() < 4)
                return fail(i + 1, QStringLiteral("chiave non valida"));
            // Key fields may be declared after the key: resolved once every line is read.
            pendingKeys.append({i + 1, archive, key, parts.mid(3)});
        } else if (kind == QStringLiteral("UNIQUE")) {
            const int key = parts.value(2).toInt(&ok);
            if (!ok || parts.size() != 3 || key == 1)
                return fail(i + 1, QStringLiteral("chiave univoca non valida"));
            pendingUnique.append({i + 1, archive, key, {}});
        } else if (kind == QStringLiteral("FIELD")) {
            if (parts.size() < 6)
                return fail(i + 1, QStringLiteral("campo incompleto"));
            QString type = parts.at(2);
            type.replace(u'_', u' ');
            FieldDef f;
            f.name = parts.at(3);
            f.offset = parts.at(4).toInt(&ok);
            bool okWidth = false;
            f.width = parts.at(5).toInt(&okWidth);
            if (!ok || !okWidth || f.offset < 0 || f.width <= 0 || f.offset + f.width > a.length)
                return fail(i + 1,
                            QStringLiteral("posizione del campo %1 fuori dal record").arg(f.name));
            if (!readFieldKind(parts.mid(6), &f))
                return fail(i + 1, QStringLiteral("tipo del campo %1 non valido").arg(f.name));
            a.m_index[type].insert(f.name, f);
            a.m_fields[type].append(f);
        } else {
            return fail(i + 1, QStringLiteral("riga sconosciuta: %1").arg(kind));
        }
    }
    for (const PendingKey &pending : std::as_const(pendingKeys)) {
        ArchiveLayout &a = layouts.m_archives[pending.archive];
        QList<FieldDef> keyFields;
        for (const QString &name : pending.fields) {
            const FieldDef *f = a.field(QStringLiteral("*"), name);
            if (!f)
                return fail(pending.line,
                            QStringLiteral("campo di chiave %1 non dichiarato").arg(name));
            keyFields << *f;
        }
        a.m_keys.insert(pending.key, keyFields);
    }
    for (const PendingKey &pending : std::as_const(pendingUnique)) {
        ArchiveLayout &a = layouts.m_archives[pending.archive];
        if (!a.hasKey(pending.key))
            return fail(pending.line, QStringLiteral("chiave %1 non dichiarata").arg(pending.key));
        a.m_unique << pending.key;
    }
    return layouts;
}

const RecordLayouts &RecordLayouts::instance()
{
    static const RecordLayouts layouts = [] {
        QFile file(QStringLiteral(":/layouts/tracciati.txt"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("The record layouts are missing from the program.");
        QString error;
        RecordLayouts parsed = parse(QString::fromUtf8(file.readAll()), &error);
        if (!error.isEmpty())
            qFatal("%s", qPrintable(error));
        return parsed;
    }();
    return layouts;
}

const ArchiveLayout *RecordLayouts::archive(int number) const
{
    const auto it = m_archives.constFind(number);
    return it == m_archives.constEnd() ? nullptr : &*it;
}

} // namespace pg::archives
