#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/archivewriter.h"
#include "localdb/localdatabase.h"
#include "localdb/shippedschema.h"

#include <QDir>
#include <QFile>
#include <QTest>

namespace pg::test {

TestInstallation::TestInstallation(bool createDatabase) : m_previous(companyEnvironment())
{
    if (!m_dir.isValid())
        return;
    CompanyEnvironment env;
    env.OrvidaDir = root() + QStringLiteral("orvida/");
    env.CompanyCode = QStringLiteral("001");
    env.CompanyArchiveDir = env.OrvidaDir + QStringLiteral("ARCHIVI/001/");
    env.CommonArchiveDir = env.OrvidaDir + QStringLiteral("ARCHIVI/COMUNI/");
    env.ProgramDir = programDirOf(env.OrvidaDir);
    for (const QString &dir :
         {env.CompanyArchiveDir, env.CommonArchiveDir, env.ProgramDir,
          env.OrvidaDir + QStringLiteral("D_STM/"), env.OrvidaDir + QStringLiteral("D_IMG/")})
        QDir().mkpath(dir);
    QFile schema(env.ProgramDir + localdb::SchemaFileName);
    if (!schema.open(QIODevice::WriteOnly))
        return;
    schema.write(shippedSchemaDescription());
    schema.close();
    setCompanyEnvironment(env);
    // Empty stores, so that every archive opens.
    archives::ArchiveWriter writer(env.CompanyArchiveDir, env.CommonArchiveDir);
    QString error;
    if (!writer.begin(&error) || !writer.commit(&error)) {
        qWarning("%s", qPrintable(error));
        return;
    }
    m_database = std::make_unique<TestDatabase>(env.CompanyArchiveDir);
    if (!m_database->isValid())
        return;
    if (createDatabase && !localdb::CreateDatabase(m_database->location()))
        return;
    m_valid = true;
}

TestInstallation::~TestInstallation()
{
    m_erp.reset();
    m_store.reset();
    m_database.reset();
    setCompanyEnvironment(m_previous);
}

const localdb::DatabaseLocation &TestInstallation::database() const
{
    return m_database->location();
}

bool TestInstallation::put(const QList<archives::ErpRecord> &records)
{
    return putRecords(CompanyArchiveDir(), CommonArchiveDir(), records);
}

bool TestInstallation::putRecords(const QString &companyDir, const QString &commonDir,
                                  const QList<archives::ErpRecord> &records)
{
    archives::ArchiveWriter writer(companyDir, commonDir);
    QString error;
    bool ok = writer.begin(&error);
    for (const archives::ErpRecord &r : records)
        ok = ok && writer.put(r.archive(), r.buffer(), &error);
    ok = ok && writer.commit(&error);
    if (!ok)
        qWarning("%s", qPrintable(error));
    return ok;
}

archives::EmbeddedArchiveStore &TestInstallation::store()
{
    if (!m_store) {
        m_store = std::make_unique<archives::EmbeddedArchiveStore>(CompanyArchiveDir(),
                                                                   CommonArchiveDir());
        m_store->VBInit(Handle);
        for (int archive : {15, 0, 14, 3, 42, 38, 37, 55, 28})
            m_store->AperturaFile(Handle, archive, archive == archives::Scadenze ? 2 : 0);
    }
    return *m_store;
}

archives::ErpSession &TestInstallation::erp()
{
    if (!m_erp)
        m_erp = std::make_unique<archives::ErpSession>(store(), Handle);
    return *m_erp;
}

bool TestInstallation::setMarks(const QString &flag, const QString &link, const QString &state,
                                const QString &mark)
{
    archives::ErpRecord r(archives::Scadenze);
    r.setText(QStringLiteral("flag_colpar"), flag);
    r.setText(QStringLiteral("link"), link);
    if (!erp().readEq(r, 2))
        return false;
    r.setText(QStringLiteral("stato_dist"), state);
    r.setText(QStringLiteral("mark_dist"), mark);
    return erp().rewrite(r);
}

archives::ErpRecord TestInstallation::dueItem(const QString &flag, const QString &link,
                                              const QString &type, const QString &account,
                                              double amount)
{
    archives::ErpRecord r(archives::Scadenze);
    r.setText(QStringLiteral("flag_colpar"), flag);
    r.setText(QStringLiteral("link"), link);
    r.setText(QStringLiteral("stato"), QStringLiteral("0"));
    r.setText(QStringLiteral("tipo_pag"), type);
    r.setText(QStringLiteral("data_scad"), QStringLiteral("20261130"));
    r.setText(QStringLiteral("ind_clifor"), QStringLiteral("F"));
    r.setText(QStringLiteral("cod_clifor"), account);
    r.setText(QStringLiteral("num_doc"), link.right(6));
    r.setText(QStringLiteral("data_doc"), QStringLiteral("20261015"));
    r.setText(QStringLiteral("valuta"), QStringLiteral("EU"));
    r.setNumber(QStringLiteral("cambio"), 1, 6);
    r.setNumber(QStringLiteral("imp_dapag_val"), amount, 2);
    r.setNumber(QStringLiteral("imp_dapag_eur"), amount, 2);
    r.setNumber(QStringLiteral("imp_pag_val"), 0, 2);
    r.setNumber(QStringLiteral("imp_pag_eur"), 0, 2);
    r.setText(QStringLiteral("stato_dist"), QStringLiteral("0"));
    r.setText(QStringLiteral("mark_dist"), QStringLiteral("0"));
    return r;
}

} // namespace pg::test
