#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

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

    // The merged document cut at its rows, for printers that draw the rows themselves: the
    // HTML before the rows section, its body merged once with each row field written as
    // rowField(name), and the HTML after. Nothing for a template with problems, without
    // rows or with more than one rows section.
    struct Split
    {
        QString before;
        QString rowBody;
        QString after;
    };
    std::optional<Split> split(const MergeData &data) const;
    // What stands for a row field in Split::rowBody: characters no merged value holds.
    static QString rowField(const QString &name);

    struct Node;

private:
    std::unique_ptr<Node> m_root;
    QStringList m_problems;
};

} // namespace pg::printing
