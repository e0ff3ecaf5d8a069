#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace pg::printing {

// The print templates: HTML files in the suite's image directory (OrvidaDir + "D_IMG/"),
// named by their file name without extension ("Distinta" for "Distinta.html"). The templates
// shipped with the program are embedded in it and stand in for any of them that D_IMG does
// not hold, so that a fresh installation prints at once and a template the company changed
// in D_IMG wins over the shipped one.
class TemplateStore
{
public:
    // The template printed when the clerk does not choose one ("Seleziona Modello" off).
    static QString defaultName() { return QStringLiteral("Distinta"); }
    // The templates shipped with the program.
    static QStringList shippedNames();

    // The directory searched (OrvidaDir + "D_IMG/" unless another is given).
    explicit TemplateStore(const QString &directory = {});
    const QString &directory() const { return m_dir; }

    // Every template, sorted without regard to case, each name once.
    QStringList names() const;
    // The template's text; nothing when there is no template of that name.
    std::optional<QString> text(const QString &name) const;
    // Where the template comes from: its file, or the program's own copy.
    QString origin(const QString &name) const;

    // Copies the shipped templates into a directory (a new installation's D_IMG), leaving
    // alone any that is already there. False, with the reason, when one cannot be written.
    static bool installShipped(const QString &directory, QString *error);

private:
    QString fileOf(const QString &name) const;

    QString m_dir;
};

} // namespace pg::printing
