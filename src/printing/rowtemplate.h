#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace pg::printing {

// The printed row of a template when it is one plain table row: <tr> with <td> cells that
// hold text and fields, no other markup (the shipped templates' rows). Such a row can be
// drawn straight, cell by cell, instead of going through the rich-text engine: what makes a
// distinta of ten thousand rows print in seconds rather than minutes. Any other row (markup
// inside a cell, a cell spanning columns, headings) is left to the rich-text engine.
class RowTemplate
{
public:
    // The rows section's body, merged once with TemplateMerge::rowField() for its fields.
    static std::optional<RowTemplate> fromBody(const QString &body);

    int columns() const { return int(m_cells.size()); }
    // The plain text of each cell for one row's values, as the rich-text engine shows it:
    // entities decoded, runs of blanks made one, no blanks at the ends.
    QStringList texts(const QHash<QString, QString> &row) const;
    // The row as HTML with these texts in its cells.
    QString html(const QStringList &texts) const;

private:
    struct Part
    {
        QString text;  // literal text, entities decoded
        QString field; // or the field whose value goes here
    };
    struct Cell
    {
        QString openTag; // "<td ...>"
        QList<Part> parts;
    };

    QString m_openTag; // "<tr ...>"
    QList<Cell> m_cells;
};

} // namespace pg::printing
