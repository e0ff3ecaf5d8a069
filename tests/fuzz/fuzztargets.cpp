#include "fuzztargets.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erprecord.h"
#include "archives/store/fieldcheck.h"
#include "archives/text/archivetext.h"
#include "localdb/schemafile.h"
#include "startup/inifile.h"

#include <QFile>
#include <QStringDecoder>
#include <QTemporaryDir>

#include <cstdlib>

namespace pg::fuzz {

namespace {

// A property that must hold: its failure is a finding, as a crash is.
void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

void archiveText(QByteArrayView input)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(input);
    for (QStringView line : QStringView(text).split(u'\n')) {
        std::optional<archives::ErpRecord> record;
        archives::ArchiveText::Problem problem;
        if (archives::ArchiveText::parse(line, &record, &problem) !=
            archives::ArchiveText::Line::Record)
            continue;
        require(record.has_value());
        // What a dump writes of a record loads again.
        const QString written = archives::ArchiveText::format(*record);
        std::optional<archives::ErpRecord> again;
        require(archives::ArchiveText::parse(written, &again, &problem) ==
                archives::ArchiveText::Line::Record);
        require(archives::ArchiveText::format(*again) == written);
    }
}

void iniFile(QByteArrayView input)
{
    const IniFile ini = IniFile::parse(input.toByteArray());
    for (const char *section : {"AMBIENTE", "Ambiente", "Dir Archivi Server", "CAUSALI"}) {
        const QString name = QString::fromLatin1(section);
        for (const QString &key : ini.keys(name))
            require(ini.read(name, key, QString(), 40).size() <= 39);
        ini.read(name, QStringLiteral("Dir orvida"), QStringLiteral("x"), 40);
    }
}

void schemaFile(QByteArrayView input)
{
    try {
        const localdb::DatabaseSchema schema = localdb::parseSchemaDescription(input.toByteArray());
        // A description the program accepts is written and read back the same.
        const localdb::DatabaseSchema again =
            localdb::parseSchemaDescription(localdb::writeSchemaDescription(schema));
        require(again.tables.size() == schema.tables.size());
    } catch (const localdb::SchemaError &) {
    }
}

void storeRecords(QByteArrayView input)
{
    QTemporaryDir dir;
    require(dir.isValid());
    const QString archives = dir.path() + u'/';
    {
        QFile store(archives::EmbeddedArchiveStore::storePath(archives));
        require(store.open(QIODevice::WriteOnly) &&
                store.write(input.toByteArray()) == input.size());
    }
    // Nothing waits for a store that another program would hold.
    qputenv("PAGAMENTI_ARCHIVE_WAIT", "0");
    constexpr qint32 Session = 1;
    archives::EmbeddedArchiveStore store(archives, archives);
    store.VBInit(Session);
    for (int archive : archives::RecordLayouts::instance().archiveNumbers()) {
        if (store.AperturaFile(Session, archive, archives::ReadRewrite) < 0)
            continue;
        const archives::ArchiveLayout &layout =
            *archives::RecordLayouts::instance().archive(archive);
        for (int key : layout.keyNumbers()) {
            archives::ErpRecord record(archive);
            int read = 0;
            for (qint16 status =
                     store.LetturaFirstRec32(Session, archive, key, record.buffer(), {});
                 status >= 0 && read < 500;
                 status = store.LetturaNextRec32(Session, archive, record.buffer()), ++read) {
                require(record.buffer().size() == layout.length);
                record.setRecordType(archives::ArchiveText::recordTypeOf(archive, record.buffer()));
                for (const archives::FieldDef &field : layout.fields(record.recordType())) {
                    record.text(field.name);
                    archives::fieldValueProblem(field, record.bytes(field));
                }
                if (read == 1)
                    store.RiscritturaRec32(Session, archive, record.buffer());
            }
            QByteArray keyed = record.buffer();
            store.LetturaEqRec32(Session, archive, key, keyed);
        }
        store.ChiusuraFile(Session, archive);
    }
    store.VBEnd(Session);
}

const QList<Target> &targets()
{
    static const QList<Target> all{{"archivetext", archiveText},
                                   {"inifile", iniFile},
                                   {"schemafile", schemaFile},
                                   {"storerecords", storeRecords}};
    return all;
}

} // namespace pg::fuzz
