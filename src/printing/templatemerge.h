#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

namespace pg::printing {

// The values a template is merged with: the distinta's fields, one set of fields per printed
// row, and the conditions of the sections ("totali", "prova", "raggruppate").
struct MergeData
{
    QHash<QString, QString> fields;
    QList<QHash<QString, QString>> rows;
    QHash<QString, bool> conditions;
};

// A print template: HTML with named fields {{name}} and sections {{#name}} ... {{/name}}
// (inverted: {{^name}} ... {{/name}}), of which "righe" repeats once per printed row. The
// template is checked once against the names templates know (MergeField): every problem is
// kept with its line, so that a template with a slip is reported whole, not printed with a
// hole in it. Values are written HTML-escaped.
class TemplateMerge
{
public:
    explicit TemplateMerge(const QString &templateText);
    ~TemplateMerge();
    TemplateMerge(TemplateMerge &&) noexcept;
    TemplateMerge &operator=(TemplateMerge &&) noexcept;

    bool isValid() const { return m_problems.isEmpty(); }
    // "riga 12: campo sconosciuto {{ragione_sociale}}", one per problem, in text order.
    const QStringList &problems() const { return m_problems; }

    // The merged HTML; for a template with problems, empty.
    QString merge(const MergeData &data) const;

    struct Node;

private:
    std::unique_ptr<Node> m_root;
    QStringList m_problems;
};

} // namespace pg::printing
