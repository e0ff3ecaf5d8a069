#pragma once

#include <QList>
#include <QString>

namespace pg::printing {

// One name a print template may use: a field, written {{name}}, or a section, written
// {{#name}} ... {{/name}} (shown when its condition holds, once per row for "righe") or
// {{^name}} ... {{/name}} (shown when it does not hold).
struct MergeField
{
    enum class Scope {
        Documento, // a value of the whole distinta, usable anywhere
        Riga,      // a value of one printed row, usable only inside {{#righe}}
        Sezione,   // a section
    };

    QString name;
    Scope scope;
    QString description; // what the clerk reads in the list of template variables

    // Every name a template may use, in the order the list of template variables shows
    // them: the distinta's fields, then the row fields, then the sections.
    static const QList<MergeField> &all();
    // The field or section of that name; nullptr when templates know no such name.
    static const MergeField *find(const QString &name);
    // The name of the repeated section of the rows.
    static QString rowSection() { return QStringLiteral("righe"); }
    // The scope as the list of template variables shows it.
    static QString scopeName(Scope scope);
};

} // namespace pg::printing
