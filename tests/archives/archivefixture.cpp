#include "archivefixture.h"

#include "archives/archivewriter.h"
#include "archives/embeddedarchivestore.h"
#include "archives/erprecord.h"

#include <QDir>
#include <QFile>

#include <sqlite3.h>

namespace pg::test {

using namespace pg::archives;

ArchiveFixture::ArchiveFixture()
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

QByteArray commonTable(const QString &type, const QString &code, const QString &description)
{
    ErpRecord r(15, type);
    r.setText(QStringLiteral("codice"), code);
    r.setText(type == QStringLiteral("VL ") ? QStringLiteral("des_valuta")
                                            : QStringLiteral("des_banca"),
              description);
    return r.buffer();
}

QString nameOf(const QByteArray &dueItem)
{
    ErpRecord r(38);
    r.buffer() = dueItem;
    return r.trimmed(QStringLiteral("descrizione"));
}

bool execOnStore(const QString &storePath, const QByteArray &sql)
{
    sqlite3 *db = nullptr;
    bool ok = sqlite3_open_v2(storePath.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE,
                              nullptr) == SQLITE_OK;
    ok = ok && sqlite3_exec(db, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    return ok;
}

int rowCount(const QString &storePath, const QByteArray &table)
{
    if (!QFile::exists(storePath))
        return -1;
    sqlite3 *db = nullptr;
    sqlite3_stmt *statement = nullptr;
    int count = -1;
    if (sqlite3_open_v2(storePath.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) ==
            SQLITE_OK &&
        sqlite3_prepare_v2(db, ("SELECT count(*) FROM " + table).constData(), -1, &statement,
                           nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW)
        count = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return count;
}

} // namespace pg::test
