#include "companyarchives.h"

#include "archiveerrortext.h"
#include "archivenumbers.h"
#include "storefile.h"

#include <QDir>
#include <QFileInfo>

namespace pg::archives {

QString companyArchivesProblem(const QString &companyArchiveDir,
                               const RecordManagerSettings &settings)
{
    const QString dir = QDir::toNativeSeparators(companyArchiveDir);
    if (companyArchiveDir.isEmpty() || !QFileInfo(companyArchiveDir).isDir())
        return QStringLiteral("La cartella degli archivi dell'azienda \"%1\" non esiste.").arg(dir);
    if (settings.usesLibrary())
        return {};
    const QString path = StoreFile::pathIn(companyArchiveDir);
    if (!QFileInfo(path).isFile())
        return QStringLiteral("La cartella degli archivi dell'azienda %1 non contiene gli archivi "
                              "di [orvida] (manca il file %2).")
            .arg(dir, StoreFile::fileName());
    // Opened as the record manager opens it: reading, never creating or changing the file.
    StoreFile store;
    ArchiveError error = store.open(path, StoreFile::Access::Existing);
    if (error == Ok)
        error = store.checkArchive(*RecordLayouts::instance().archive(Scadenze));
    if (error == Ok)
        return {};
    return QStringLiteral("Il file %1 non contiene un archivio delle scadenze leggibile: %2 (%3).")
        .arg(QDir::toNativeSeparators(path), archiveErrorText(error), store.errorText());
}

} // namespace pg::archives
