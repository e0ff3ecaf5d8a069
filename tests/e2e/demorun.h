#pragma once

#include "clirun.h"

#include "archives/store/erprecord.h"

#include <QDate>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace pg::test {

// A demo installation made by the command line, as an administrator makes one, for the tests
// that run the programs end to end: the suite's ini files, archives and directories of one
// company, with due items gathered around a fixed day so that every run sees the same data.
// The program's own start-up finds it through ORVIDA_INI_DIR, which the constructor sets for
// this process (and for the command lines it starts).
class DemoRun
{
public:
    DemoRun();

    bool isValid() const { return m_valid; }
    // The directory of ORVIDA.INI.
    QString root() const { return m_dir.path(); }
    QString orvidaDir() const { return m_dir.path() + QStringLiteral("/orvida/"); }
    QString companyDir() const { return orvidaDir() + QStringLiteral("D_DEMO/"); }
    QString commonDir() const { return orvidaDir() + QStringLiteral("D_COMUNI/"); }
    QString programDir() const { return orvidaDir() + QStringLiteral("exe/"); }

    // The day the demo's due dates gather around, and the program's today.
    static QDate today() { return QDate(2026, 11, 21); }

    using Run = CliRun;
    // pagamenti-cli on this installation.
    Run cli(const QStringList &arguments) const;

    // A due item as the suite's archive holds it now (key: flag and link); a blank record when
    // it cannot be read.
    archives::ErpRecord dueItem(const QString &key) const;
    // Writes records into the suite's archives, as the suite itself would change them.
    bool put(const QList<archives::ErpRecord> &records) const;

private:
    QTemporaryDir m_dir;
    QProcessEnvironment m_env;
    bool m_valid = false;
};

} // namespace pg::test
