#include "demoinstallation.h"

#include "archives/store/archivewriter.h"
#include "demogenerator.h"

#include "core/cp1252.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

namespace pg::archives {

namespace {

bool writeFile(const QString &path, const QByteArray &content, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() ||
        !file.commit()) {
        *error = QStringLiteral("Impossibile scrivere il file %1: %2")
                     .arg(QDir::toNativeSeparators(path), file.errorString());
        return false;
    }
    return true;
}

// An ini file as the suite's programs write theirs: Windows-1252, CR LF line ends.
QByteArray iniText(const QList<QPair<QString, QList<QPair<QString, QString>>>> &sections)
{
    QString text;
    for (const auto &[section, entries] : sections) {
        text += u'[' + section + QStringLiteral("]\r\n");
        for (const auto &[key, value] : entries)
            text += key + u'=' + value + QStringLiteral("\r\n");
    }
    return cp1252::encode(text);
}

bool representable(const QString &text)
{
    for (char32_t c : text.toUcs4())
        if (!cp1252::isRepresentable(c))
            return false;
    return true;
}

} // namespace

DemoInstallation::DemoInstallation(const QString &directory, const DemoOptions &options)
    : m_root(QDir::cleanPath(QDir(directory).absolutePath())), m_options(options)
{
    if (!m_root.endsWith(u'/'))
        m_root += u'/';
}

QString DemoInstallation::orvidaDir() const
{
    return m_root + QStringLiteral("orvida/");
}

QString DemoInstallation::companyArchiveDir() const
{
    return orvidaDir() + QStringLiteral("D_") + m_options.companyCode + u'/';
}

QString DemoInstallation::commonArchiveDir() const
{
    return orvidaDir() + QStringLiteral("D_COMUNI/");
}

QString DemoInstallation::programDir() const
{
    return orvidaDir() + QStringLiteral("exe/");
}

QString DemoInstallation::orvidaIniPath() const
{
    return m_root + QStringLiteral("ORVIDA.INI");
}

QString DemoInstallation::parpePath() const
{
    return orvidaDir() + QStringLiteral("D_AZI/") + m_options.companyCode.left(3) +
           QStringLiteral("parpe.ini");
}

QString DemoInstallation::iniDirectory(const QString &dir) const
{
    return QDir::toNativeSeparators(dir);
}

bool DemoInstallation::check(QString *error) const
{
    const QString code = m_options.companyCode;
    static const QRegularExpression codeForm(QStringLiteral("^[A-Za-z0-9]{1,10}$"));
    if (!codeForm.match(code).hasMatch()) {
        *error = QStringLiteral("Codice azienda non valido: \"%1\". Usare da 1 a 10 lettere o "
                                "cifre.")
                     .arg(code);
        return false;
    }
    for (const char16_t *reserved : {u"AZI", u"STM", u"IMG", u"COMUNI"}) {
        if (code.compare(QString::fromUtf16(reserved), Qt::CaseInsensitive) == 0) {
            *error = QStringLiteral("Codice azienda non valido: \"%1\" è il nome di una cartella "
                                    "dell'installazione (D_%2).")
                         .arg(code, code.toUpper());
            return false;
        }
    }
    if (m_options.dueItems < 0) {
        *error = QStringLiteral("Il numero di scadenze non può essere negativo.");
        return false;
    }

    const QFileInfo root(m_root);
    if (root.exists() && !root.isDir()) {
        *error = QStringLiteral("%1 esiste e non è una cartella.")
                     .arg(QDir::toNativeSeparators(QDir::cleanPath(m_root)));
        return false;
    }
    if (root.isDir() &&
        !QDir(m_root)
             .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System)
             .isEmpty()) {
        *error = QStringLiteral("La cartella %1 non è vuota: l'installazione dimostrativa va "
                                "creata in una cartella nuova o vuota.")
                     .arg(QDir::toNativeSeparators(QDir::cleanPath(m_root)));
        return false;
    }

    const QString values[] = {iniDirectory(orvidaDir()), iniDirectory(companyArchiveDir()),
                              iniDirectory(commonArchiveDir())};
    int longest = 0;
    QString longestValue;
    for (const QString &value : values) {
        if (!representable(value)) {
            *error = QStringLiteral("Il percorso %1 contiene caratteri che i file ini di "
                                    "[orvida] non possono contenere.")
                         .arg(value);
            return false;
        }
        if (value.size() > longest) {
            longest = int(value.size());
            longestValue = value;
        }
    }
    if (longest > IniValueLimit) {
        const int excess = longest - IniValueLimit;
        const int rootLength = int(QDir::cleanPath(m_root).size());
        *error = QStringLiteral("Percorso troppo lungo: la cartella %1 (%2 caratteri) scritta "
                                "nei file ini supera i %3 caratteri che [orvida] legge. "
                                "Scegliere una cartella il cui percorso abbia al massimo %4 "
                                "caratteri.")
                     .arg(longestValue)
                     .arg(longest)
                     .arg(IniValueLimit)
                     .arg(rootLength - excess);
        return false;
    }
    return true;
}

bool DemoInstallation::write(const QByteArray &schemaDescription, bool emptyArchives,
                             QString *error)
{
    m_records = 0;
    if (!check(error))
        return false;
    for (const QString &dir :
         {orvidaDir(), orvidaDir() + QStringLiteral("D_AZI/"), companyArchiveDir(),
          commonArchiveDir(), programDir(), orvidaDir() + QStringLiteral("D_STM/"),
          orvidaDir() + QStringLiteral("D_IMG/")}) {
        if (!QDir().mkpath(dir)) {
            *error = QStringLiteral("Impossibile creare la cartella %1.")
                         .arg(QDir::toNativeSeparators(dir));
            return false;
        }
    }
    if (!writeArchives(emptyArchives, error))
        return false;
    if (!writeFile(programDir() + QStringLiteral("QXARTRAC.DAT"), schemaDescription, error) ||
        !writeFile(programDir() + QStringLiteral("causali.ini"), DemoGenerator::causaliIni(),
                   error))
        return false;

    // The ini files come last: until they exist the installation does not resolve.
    const QString node = QStringLiteral("1");
    const QList<QPair<QString, QString>> dirs = {
        {QStringLiteral("Azienda"), iniDirectory(companyArchiveDir())},
        {QStringLiteral("Comuni"), iniDirectory(commonArchiveDir())},
    };
    const QByteArray parpe = iniText({
        {QStringLiteral("Ambiente"), {{QStringLiteral("NodoIDUbicazioneArchivi"), node}}},
        {QStringLiteral("Dir Archivi Server"), dirs},
        {QStringLiteral("Dir Archivi Client"), dirs},
    });
    const QByteArray orvida = iniText({
        {QStringLiteral("AMBIENTE"),
         {{QStringLiteral("Dir orvida"), iniDirectory(orvidaDir())},
          {QStringLiteral("Codice Azienda"), m_options.companyCode},
          {QStringLiteral("NodoId"), node}}},
    });
    return writeFile(parpePath(), parpe, error) && writeFile(orvidaIniPath(), orvida, error);
}

bool DemoInstallation::writeArchives(bool emptyArchives, QString *error)
{
    ArchiveWriter writer(companyArchiveDir(), commonArchiveDir());
    if (!writer.begin(error))
        return false;
    if (!emptyArchives) {
        DemoGenerator generator(m_options);
        const bool complete = generator.generate([&](const ErpRecord &record) {
            if (!writer.put(record.archive(), record.buffer(), error))
                return false;
            ++m_records;
            return true;
        });
        if (!complete)
            return false;
    }
    return writer.commit(error);
}

} // namespace pg::archives
