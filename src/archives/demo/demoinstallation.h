#pragma once

#include "demooptions.h"

#include <QByteArray>
#include <QString>

namespace pg::archives {

// A complete installation of the suite for one company, made up for demonstrations, manual
// tests and benchmarks:
//
//   DIR/ORVIDA.INI                      [AMBIENTE] Dir orvida, Codice Azienda, NodoId
//   DIR/orvida/                         the suite's directory (OrvidaDir)
//   DIR/orvida/D_AZI/<cod>parpe.ini     archive node and archive directories
//   DIR/orvida/D_<code>/                the company's archives (the local database goes here)
//   DIR/orvida/D_COMUNI/                the archives shared by all companies
//   DIR/orvida/exe/                     QXARTRAC.DAT and causali.ini
//   DIR/orvida/D_STM/, DIR/orvida/D_IMG/
//
// so that ORVIDA_INI_DIR=DIR makes the program work on it. The suite reads every ini value
// through a 40-character buffer: DIR must be short enough for the directories written into
// the ini files to fit in 39 characters.
class DemoInstallation
{
public:
    static constexpr int IniValueLimit = 39;

    explicit DemoInstallation(const QString &directory, const DemoOptions &options = {});

    const DemoOptions &options() const { return m_options; }
    // The directories, each ending in '/'.
    QString rootDir() const { return m_root; }
    QString orvidaDir() const;
    QString companyArchiveDir() const;
    QString commonArchiveDir() const;
    QString programDir() const;
    QString orvidaIniPath() const;
    QString parpePath() const;

    // Whether the installation can be written there: a valid company code, a directory that
    // is empty or does not exist yet, ini values within the limit. False with the reason.
    bool check(QString *error) const;

    // Writes the installation: the directories, the archives (none of their records when
    // emptyArchives is set), the program directory's files (schemaDescription is the content
    // of QXARTRAC.DAT) and, last, the ini files that make it resolvable.
    bool write(const QByteArray &schemaDescription, bool emptyArchives, QString *error);

    // Records written by the last write().
    qint64 recordCount() const { return m_records; }

private:
    // The ini files' values that name directories: what the suite will read back.
    QString iniDirectory(const QString &dir) const;
    bool writeArchives(bool emptyArchives, QString *error);

    QString m_root;
    DemoOptions m_options;
    qint64 m_records = 0;
};

} // namespace pg::archives
