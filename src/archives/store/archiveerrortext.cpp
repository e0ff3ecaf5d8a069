#include "archiveerrortext.h"

#include "archiveerror.h"
#include "embeddedarchivestore.h"
#include "recordlayout.h"

#include <QDir>

namespace pg::archives {

QString archiveErrorText(qint32 code)
{
    QString what;
    switch (code) {
    case NotFound:
        what = QStringLiteral("record non trovato");
        break;
    case EndOfArchive:
        what = QStringLiteral("fine dell'archivio");
        break;
    case NotOpen:
        what = QStringLiteral("archivio non aperto");
        break;
    case OpenedReadOnly:
        what = QStringLiteral("archivio aperto in sola lettura");
        break;
    case Locked:
        what = QStringLiteral("archivio in uso da un altro programma");
        break;
    case Damaged:
        what = QStringLiteral("archivio danneggiato");
        break;
    case UnknownArchive:
        what = QStringLiteral("archivio sconosciuto");
        break;
    case AlreadyOpen:
        what = QStringLiteral("archivio già aperto");
        break;
    case NoCurrentRecord:
        what = QStringLiteral("nessun record letto prima");
        break;
    case BadKey:
        what = QStringLiteral("chiave non valida");
        break;
    case BadRecord:
        what = QStringLiteral("record di lunghezza errata");
        break;
    case IoError:
        what = QStringLiteral("errore di lettura o scrittura del file");
        break;
    case NotInitialised:
        what = QStringLiteral("librerie non inizializzate");
        break;
    default:
        return QStringLiteral("errore %1").arg(code);
    }
    return QStringLiteral("%1 (errore %2)").arg(what).arg(code);
}

QString archiveDescription(const RecordManager &manager, int archive)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    QStringList about;
    if (layout && !layout->name.isEmpty())
        about << layout->name;
    // Only the embedded store knows its files; a library of the suite keeps them to itself.
    if (const auto *store = dynamic_cast<const EmbeddedArchiveStore *>(&manager))
        about << QStringLiteral("file ") + QDir::toNativeSeparators(store->storePathOf(archive));
    QString text = QStringLiteral("archivio %1").arg(archive);
    if (!about.isEmpty())
        text += QStringLiteral(" (") + about.join(QStringLiteral(", ")) + u')';
    return text;
}

} // namespace pg::archives
