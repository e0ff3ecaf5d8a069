#include "archivefixture.h"

#include "archives/store/archivewriter.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erprecord.h"

#include <QDir>
#include <QFile>

#include <sqlite3.h>

namespace pg::test {

using namespace pg::archives;

ArchiveFixture::ArchiveFixture() : m_dir(QDir::tempPath() + QStringLiteral("/pgXXXXXX"))
{
    QDir().mkpath(companyDir());
    QDir().mkpath(commonDir());
}

QString ArchiveFixture::companyStore() const
{
    return EmbeddedArchiveStore::storePath(companyDir());
}

QString ArchiveFixture::commonStore() const
{
    return EmbeddedArchiveStore::storePath(commonDir());
}

void ArchiveFixture::writeIniFiles() const
{
    QDir().mkpath(root() + QStringLiteral("ini"));
    QDir().mkpath(root() + QStringLiteral("orvida/D_AZI"));
    QFile orvida(root() + QStringLiteral("ini/ORVIDA.INI"));
    if (orvida.open(QIODevice::WriteOnly))
        orvida.write("[AMBIENTE]\r\nDir orvida=" + root().toUtf8() +
                     "orvida\r\nCodice Azienda=DEM\r\nNodoId=2\r\n");
    QFile parpe(root() + QStringLiteral("orvida/D_AZI/DEMparpe.ini"));
    if (parpe.open(QIODevice::WriteOnly))
        parpe.write("[Ambiente]\r\nNodoIDUbicazioneArchivi=1\r\n[Dir Archivi Client]\r\nAzienda=" +
                    companyDir().toUtf8() + "\r\nComuni=" + commonDir().toUtf8() + "\r\n");
    qputenv("ORVIDA_INI_DIR", (root() + QStringLiteral("ini")).toLocal8Bit());
}

QString ArchiveFixture::load(const QList<std::pair<int, QByteArray>> &records) const
{
    ArchiveWriter writer(companyDir(), commonDir());
    QString error;
    if (!writer.begin(&error))
        return error;
    for (const auto &[archive, record] : records)
        if (!writer.put(archive, record, &error))
            return error;
    if (!writer.commit(&error))
        return error;
    return {};
}

bool ArchiveFixture::insertAsIs(int archive, const QByteArray &record) const
{
    const ArchiveLayout &layout = *RecordLayouts::instance().archive(archive);
    QByteArray columns = "record";
    QByteArray values = "X'" + record.toHex() + '\'';
    for (int key : layout.keyNumbers()) {
        columns += ", chiave_" + QByteArray::number(key);
        values += ", X'" + layout.keyOf(record, key).toHex() + '\'';
    }
    return execOnStore(companyStore(), "INSERT INTO archivio_" + QByteArray::number(archive) +
                                           " (" + columns + ") VALUES (" + values + ')');
}

bool ArchiveFixture::copyStoresFrom(const ArchiveFixture &other) const
{
    return QFile::copy(other.companyStore(), companyStore()) &&
           QFile::copy(other.commonStore(), commonStore());
}

QByteArray dueItem(const QString &name, const QString &flag, const QString &link,
                   const QString &dueDate, const QString &account)
{
    ErpRecord r(38);
    r.setText(QStringLiteral("flag_colpar"), flag);
    r.setText(QStringLiteral("link"), link);
    r.setText(QStringLiteral("stato"), QStringLiteral("0"));
    r.setText(QStringLiteral("data_scad"), dueDate);
    r.setText(QStringLiteral("ind_clifor"), account.left(1));
    r.setText(QStringLiteral("cod_clifor"), account.mid(1));
    r.setText(QStringLiteral("stato_dist"), QStringLiteral("0"));
    r.setText(QStringLiteral("descrizione"), name);
    return r.buffer();
}

QByteArray bankAgency()
{
    ErpRecord r(15, QStringLiteral("BN "));
    r.setText(QStringLiteral("codice"), QStringLiteral("0306901600"));
    r.setText(QStringLiteral("des_banca"), QStringLiteral("Banca di prova"));
    return r.buffer();
}

QString nameOf(const QByteArray &dueItem)
{
    ErpRecord r(38);
    r.buffer() = dueItem;
    return r.trimmed(QStringLiteral("descrizione"));
}

StoreConnection::StoreConnection(const QString &storePath, bool create)
{
    const int flags = SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0);
    if (sqlite3_open_v2(storePath.toUtf8().constData(), &m_db, flags, nullptr) != SQLITE_OK) {
        sqlite3_close(m_db);
        m_db = nullptr;
    }
}

StoreConnection::~StoreConnection()
{
    sqlite3_close(m_db);
}

bool StoreConnection::exec(const QByteArray &sql)
{
    return m_db && sqlite3_exec(m_db, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

QByteArray StoreConnection::record(int archive, int key, const QByteArray &keyBytes)
{
    const QByteArray sql = "SELECT record FROM archivio_" + QByteArray::number(archive) +
                           " WHERE chiave_" + QByteArray::number(key) + " = ?1 ORDER BY id";
    sqlite3_stmt *statement = nullptr;
    QByteArray out;
    if (m_db && sqlite3_prepare_v2(m_db, sql.constData(), -1, &statement, nullptr) == SQLITE_OK) {
        sqlite3_bind_blob(statement, 1, keyBytes.constData(), int(keyBytes.size()),
                          SQLITE_TRANSIENT);
        if (sqlite3_step(statement) == SQLITE_ROW)
            out = QByteArray(static_cast<const char *>(sqlite3_column_blob(statement, 0)),
                             sqlite3_column_bytes(statement, 0));
    }
    sqlite3_finalize(statement);
    return out;
}

int StoreConnection::rowCount(const QByteArray &table)
{
    sqlite3_stmt *statement = nullptr;
    int count = -1;
    if (m_db &&
        sqlite3_prepare_v2(m_db, ("SELECT count(*) FROM " + table).constData(), -1, &statement,
                           nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW)
        count = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    return count;
}

bool execOnStore(const QString &storePath, const QByteArray &sql)
{
    return StoreConnection(storePath).exec(sql);
}

int rowCount(const QString &storePath, const QByteArray &table)
{
    if (!QFile::exists(storePath))
        return -1;
    return StoreConnection(storePath).rowCount(table);
}

} // namespace pg::test
