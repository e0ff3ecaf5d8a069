#include "icons.h"

#include <QCoreApplication>
#include <QHash>
#include <QStringList>

namespace pg::ui {

namespace {

QString resource(const QString &file)
{
    return QStringLiteral(":/icons/") + file + QStringLiteral(".svg");
}

const QStringList &managementIcons()
{
    static const QStringList names{QStringLiteral("nuova"),      QStringLiteral("apri"),
                                   QStringLiteral("salva"),      QStringLiteral("elimina"),
                                   QStringLiteral("successiva"), QStringLiteral("precedente")};
    return names;
}

// Icons made once and shared: reading an icon parses its drawing, and its pictures are then
// kept with it, so the management buttons, which change image at every move between distinte,
// draw from what is already there. Emptied while the application still exists, before it
// takes its graphics system down.
QHash<QString, QIcon> &cache()
{
    static QHash<QString, QIcon> icons;
    static const bool cleared = [] {
        qAddPostRoutine([] { icons.clear(); });
        return true;
    }();
    Q_UNUSED(cleared);
    return icons;
}

} // namespace

QIcon icon(const QString &name)
{
    QIcon &result = cache()[name];
    if (result.isNull()) {
        result.addFile(resource(name), {}, QIcon::Normal);
        result.addFile(resource(name + QStringLiteral("-disabled")), {}, QIcon::Disabled);
    }
    return result;
}

QIcon toolbarImage(int number)
{
    if (number < 1 || number > 12)
        return {};
    const bool enabled = number <= 6;
    const QString name = managementIcons().at((number - 1) % 6);
    QIcon &result = cache()[QStringLiteral("#%1").arg(number)];
    if (result.isNull()) {
        // Each image shows one look whatever the button's state: the buttons pick the image.
        const QString file = resource(enabled ? name : name + QStringLiteral("-disabled"));
        result.addFile(file, {}, QIcon::Normal);
        result.addFile(file, {}, QIcon::Disabled);
    }
    return result;
}

} // namespace pg::ui
