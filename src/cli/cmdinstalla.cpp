// pagamenti-cli installa [CARTELLA]
//
// Puts the program's files where an installation of the suite reads them: the schema
// description file and the payment reasons in its program directory (CARTELLA/exe/), the print
// templates in CARTELLA/D_IMG/. CARTELLA is the suite's directory; without it, the "Dir
// orvida" of ORVIDA.INI. Files the installation has made its own (causali.ini, templates) are
// never replaced; the schema description file is the program's and follows it.
#include "commandargs.h"
#include "commandcontext.h"
#include "commands.h"

#include "archives/demo/demogenerator.h"
#include "localdb/localdatabase.h"
#include "localdb/shippedschema.h"
#include "printing/templatestore.h"
#include "startup/companyenvironment.h"
#include "startup/inifile.h"
#include "startup/paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace pg::cli {

namespace {

// The suite's directory as ORVIDA.INI names it; empty without one.
QString orvidaDirFromIni()
{
    const IniFile ini = IniFile::load(orvidaIniPath());
    return ini.read(QStringLiteral("AMBIENTE"), QStringLiteral("Dir orvida"), QString(), 40)
        .trimmed();
}

bool writeWhole(const QString &path, const QByteArray &bytes, QString *error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    *error = QStringLiteral("Impossibile scrivere il file %1: %2")
                 .arg(QDir::toNativeSeparators(path), file.errorString());
    return false;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

int runInstalla(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {}, {}, &error))
        return context.usageError(error);
    if (args.positional().size() > 1)
        return context.usageError(QStringLiteral("Indicare al più una cartella."));
    const QString given =
        args.positional().isEmpty() ? orvidaDirFromIni() : args.positional().first();
    if (given.isEmpty())
        return context.usageError(QStringLiteral("Indicare la cartella di [orvida], oppure "
                                                 "la sua \"Dir orvida\" in %1.")
                                      .arg(QDir::toNativeSeparators(orvidaIniPath())));
    const QString orvida = paths::directoryFromIni(given);
    if (!QFileInfo(orvida).isDir())
        return context.fail(QStringLiteral("La cartella di [orvida] %1 non esiste.")
                                .arg(QDir::toNativeSeparators(orvida)));
    const QString exe = programDirOf(orvida);
    if (!QDir().mkpath(exe))
        return context.fail(QStringLiteral("Impossibile creare la cartella %1.")
                                .arg(QDir::toNativeSeparators(exe)));

    QTextStream &out = context.out();
    // The schema the program creates its database from: always this version's.
    const QString schema = paths::resolveCase(exe + localdb::SchemaFileName);
    if (contentOf(schema) == shippedSchemaDescription()) {
        out << QStringLiteral("%1: già aggiornato\n").arg(QDir::toNativeSeparators(schema));
    } else {
        if (!writeWhole(schema, shippedSchemaDescription(), &error))
            return context.fail(error);
        out << QStringLiteral("%1: scritto\n").arg(QDir::toNativeSeparators(schema));
    }
    // The payment reasons are the company's: an example only where there are none.
    const QString causali = paths::resolveCase(exe + QStringLiteral("causali.ini"));
    if (QFileInfo::exists(causali)) {
        out << QStringLiteral("%1: già presente, lasciato com'è\n")
                   .arg(QDir::toNativeSeparators(causali));
    } else {
        if (!writeWhole(causali, archives::DemoGenerator::causaliIni(), &error))
            return context.fail(error);
        out << QStringLiteral("%1: scritto (esempio: indicare le causali dell'azienda)\n")
                   .arg(QDir::toNativeSeparators(causali));
    }
    // The print templates, each only where the company has none of that name.
    const QString dImg = orvida + QStringLiteral("D_IMG/");
    if (!printing::TemplateStore::installShipped(dImg, &error))
        return context.fail(error);
    out << QStringLiteral("%1: modelli di stampa presenti\n").arg(QDir::toNativeSeparators(dImg));
    return ExitSuccess;
}

} // namespace pg::cli
