#include "erprecord.h"

#include "core/cp1252.h"

#include <QtGlobal>

#include <algorithm>
#include <cstring>

namespace pg::archives {

namespace {

const ArchiveLayout &layoutOf(int archive)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    if (!layout)
        qFatal("No record layout for archive %d", archive);
    return *layout;
}

} // namespace

ErpRecord::ErpRecord(int archive, const QString &recordType)
    : m_layout(&layoutOf(archive)), m_buffer(m_layout->length, ' ')
{
    setRecordType(recordType);
}

void ErpRecord::setRecordType(const QString &recordType)
{
    m_type = recordType;
    if (recordType != QStringLiteral("*") &&
        m_layout->field(QStringLiteral("*"), QStringLiteral("tipo_rec")))
        setText(QStringLiteral("tipo_rec"), recordType);
}

const FieldDef &ErpRecord::fieldDef(const QString &field) const
{
    const FieldDef *f = m_layout->field(m_type, field);
    if (!f)
        qFatal("Archive %d has no field %s in records of type '%s'", m_layout->number,
               qPrintable(field), qPrintable(m_type));
    return *f;
}

QByteArrayView ErpRecord::bytes(const FieldDef &field) const
{
    if (m_buffer.size() < field.offset + field.width)
        return {};
    return QByteArrayView(m_buffer).sliced(field.offset, field.width);
}

QString ErpRecord::text(const QString &field) const
{
    const FieldDef &f = fieldDef(field);
    QString out = cp1252::decode(bytes(f));
    out.replace(QChar(u'\0'), QChar(u' '));
    if (out.size() < f.width)
        out.resize(f.width, u' ');
    return out;
}

void ErpRecord::setText(const QString &field, const QString &value)
{
    const FieldDef &f = fieldDef(field);
    // Fields are short: the value is encoded on the stack unless it is long.
    char local[256];
    QByteArray heap;
    char *raw = local;
    if (value.size() > qsizetype(sizeof local)) {
        heap.resize(value.size());
        raw = heap.data();
    }
    const qsizetype encoded = cp1252::encodeInto(value, raw);
    const qsizetype length = std::max<qsizetype>(m_layout->length, f.offset + f.width);
    if (m_buffer.size() < length)
        m_buffer.append(QByteArray(length - m_buffer.size(), ' '));
    // The field's bytes: the value cut to the field's width, blanks after it.
    char *dst = m_buffer.data() + f.offset;
    const qsizetype used = std::min<qsizetype>(encoded, f.width);
    std::memcpy(dst, raw, size_t(used));
    std::memset(dst + used, ' ', size_t(f.width - used));
}

double ErpRecord::number(const QString &field) const
{
    bool ok = false;
    const double v = text(field).trimmed().toDouble(&ok);
    return ok ? v : 0.0;
}

void ErpRecord::setNumber(const QString &field, double value, int decimals)
{
    const FieldDef &f = fieldDef(field);
    setText(field, QString::number(value, 'f', decimals).rightJustified(f.width, u' '));
}

void ErpRecord::clear()
{
    m_buffer.fill(' ', m_layout->length);
    setRecordType(m_type);
}

} // namespace pg::archives
