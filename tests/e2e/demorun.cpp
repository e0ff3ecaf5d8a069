#include "demorun.h"

#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/erpsession.h"

namespace pg::test {

namespace {

constexpr qint32 ReaderHandle = 7373;

} // namespace

// The suite keeps at most 39 characters of a directory in its ini files: a short path.
DemoRun::DemoRun() : m_dir(QStringLiteral("/tmp/pgeXXXXXX"))
{
    if (!m_dir.isValid())
        return;
    qputenv("ORVIDA_INI_DIR", m_dir.path().toLocal8Bit());
    m_env = cliEnvironment(m_dir.path());
    const Run demo = cli({QStringLiteral("demo"), m_dir.path(), QStringLiteral("--today"),
                          today().toString(QStringLiteral("dd/MM/yyyy"))});
    if (demo.exitCode != 0)
        qWarning("pagamenti-cli demo: %s", qPrintable(demo.err));
    m_valid = demo.exitCode == 0;
}

DemoRun::Run DemoRun::cli(const QStringList &arguments) const
{
    return runCli(arguments, m_env);
}

archives::ErpRecord DemoRun::dueItem(const QString &key) const
{
    // A store of our own beside the program's: each read sees what was committed.
    archives::EmbeddedArchiveStore store(companyDir(), commonDir());
    archives::ErpSession erp(store, ReaderHandle);
    archives::ErpRecord record(archives::Scadenze);
    if (erp.open(archives::Scadenze, 1) != 0)
        return record;
    record.setText(QStringLiteral("flag_colpar"), key.left(1));
    record.setText(QStringLiteral("link"), key.mid(1));
    if (!erp.readEq(record, 2))
        record.clear();
    erp.close(archives::Scadenze);
    return record;
}

bool DemoRun::put(const QList<archives::ErpRecord> &records) const
{
    return TestInstallation::putRecords(companyDir(), commonDir(), records);
}

} // namespace pg::test
