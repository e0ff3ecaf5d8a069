#pragma once

#include "recordlayout.h"

#include <QByteArray>
#include <QString>

namespace pg::archives {

// One record of an archive as the program handles it: a fixed-length single-byte buffer
// seen through the archive's layout. Text comes out decoded from Windows-1252 with every
// NUL read as a blank; text goes in left-aligned, blank-padded and cut to the field's width.
class ErpRecord
{
public:
    // A blank record of the archive, of the given record type ("*" where the archive has
    // no types; a type of the table archives is also written into the record).
    explicit ErpRecord(int archive, const QString &recordType = QStringLiteral("*"));

    int archive() const { return m_layout->number; }
    const ArchiveLayout &layout() const { return *m_layout; }
    const QString &recordType() const { return m_type; }
    void setRecordType(const QString &recordType);

    QByteArray &buffer() { return m_buffer; }
    const QByteArray &buffer() const { return m_buffer; }

    // The field as stored, not trimmed; an unknown field is a programming error.
    QString text(const QString &field) const;
    QString trimmed(const QString &field) const { return text(field).trimmed(); }
    void setText(const QString &field, const QString &value);
    // The field's raw bytes, for comparisons on hot paths.
    QByteArrayView bytes(const FieldDef &field) const;

    // Amounts and rates are kept as text with a '.' decimal sign; blanks read as 0.
    double number(const QString &field) const;
    void setNumber(const QString &field, double value, int decimals);

    // Blanks the whole record, keeping its type.
    void clear();

    const FieldDef &fieldDef(const QString &field) const;

private:
    const ArchiveLayout *m_layout;
    QString m_type;
    QByteArray m_buffer;
};

} // namespace pg::archives
