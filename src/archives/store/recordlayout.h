#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

namespace pg::archives {

// What a field holds, as the load of records from text checks it.
enum class FieldKind {
    Text,   // any text of the code page
    Amount, // sign, digits, a point and at most `decimals` decimals ("-1234.50")
    Rate,   // an exchange rate: digits, a point and at most `decimals` decimals, above zero
    Date,   // a real date, eight digits year, month and day ("20250331")
    Digits, // digits only (bank and agency codes, account codes)
    Choice  // one of the characters of `choices`
};

// One field of a record: where it lies in the single-byte buffer, and what it may hold.
struct FieldDef
{
    QString name;
    int offset = 0;
    int width = 0;
    FieldKind kind = FieldKind::Text;
    int decimals = 0;      // Amount and Rate
    QByteArray choices;    // Choice
    bool required = false; // a loaded record must give it a value
};

// The layout of one archive: record length, the keys and the fields of each record type.
// Fields of type "*" are common to every record of the archive.
class ArchiveLayout
{
public:
    int number = 0;
    int length = 0;
    QString name;

    // The field of that record type (or a common one); nullptr when there is none.
    const FieldDef *field(const QString &recordType, const QString &fieldName) const;
    // Every field of the record type, common ones first, in offset order.
    QList<FieldDef> fields(const QString &recordType) const;
    QStringList recordTypes() const; // without "*"

    bool hasKey(int key) const { return m_keys.contains(key); }
    // Keys besides key 1 that identify a record: no two records of the archive may share one
    // (the due items' key 2, flag and link, which the distinte find their items by).
    const QList<int> &uniqueKeys() const { return m_unique; }
    QList<int> keyNumbers() const { return m_keys.keys(); }
    const QList<FieldDef> &keyFields(int key) const;
    int keyLength(int key) const;
    // The key of a record: its key fields' bytes one after the other.
    QByteArray keyOf(const QByteArray &record, int key) const;

private:
    friend class RecordLayouts;
    QMap<QString, QList<FieldDef>> m_fields; // record type -> fields
    QHash<QString, QHash<QString, FieldDef>> m_index; // record type -> name -> field
    QMap<int, QList<FieldDef>> m_keys;
    QList<int> m_unique;
};

// The record layouts of every archive, from the program's layout table (data/layouts).
class RecordLayouts
{
public:
    // The layouts shipped with the program.
    static const RecordLayouts &instance();
    // Parses a layout table; on a malformed line returns an empty set and describes it.
    //   ARCHIVE <number> <record length> <name...>
    //   KEY     <archive> <key number> <field> [<field>...]
    //   UNIQUE  <archive> <key number>        the key identifies a record
    //   FIELD   <archive> <record type> <field> <offset> <width> [<kind>] [required]
    // with kind one of text, amount:<decimals>, rate:<decimals>, date, digits,
    // choice:<characters>.
    static RecordLayouts parse(const QString &text, QString *error);

    const ArchiveLayout *archive(int number) const;
    QList<int> archiveNumbers() const { return m_archives.keys(); }

private:
    QMap<int, ArchiveLayout> m_archives;
};

} // namespace pg::archives
