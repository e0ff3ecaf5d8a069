#include "icons.h"

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

} // namespace

QIcon icon(const QString &name)
{
    QIcon result;
    result.addFile(resource(name), {}, QIcon::Normal);
    result.addFile(resource(name + QStringLiteral("-disabled")), {}, QIcon::Disabled);
    return result;
}

QIcon toolbarImage(int number)
{
    if (number < 1 || number > 12)
        return {};
    const bool enabled = number <= 6;
    const QString name = managementIcons().at((number - 1) % 6);
    // Each image shows one look whatever the button's state: the buttons pick the image.
    QIcon result;
    const QString file = resource(enabled ? name : name + QStringLiteral("-disabled"));
    result.addFile(file, {}, QIcon::Normal);
    result.addFile(file, {}, QIcon::Disabled);
    return result;
}

} // namespace pg::ui
