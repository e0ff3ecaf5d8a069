#include "rowtemplate.h"

#include "templatemerge.h"

#include <QRegularExpression>
#include <QTextDocument>

namespace pg::printing {

namespace {

// A literal of a cell as the rich-text engine reads it (entities decoded, blanks made one);
// the stand-ins at its ends keep the blanks it has there.
QString decoded(const QString &html)
{
    QTextDocument doc;
    doc.setHtml(QStringLiteral("<p>\u00a4") + html + QStringLiteral("\u00a4</p>"));
    const QString text = doc.toRawText();
    return text.mid(1, text.size() - 2);
}

bool isCollapsible(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

// Runs of blanks made one and the ends trimmed, as HTML shows a cell; no-break spaces stay.
QString collapsed(const QString &text)
{
    QString out;
    out.reserve(text.size());
    bool blank = false;
    for (QChar c : text) {
        if (isCollapsible(c)) {
            blank = !out.isEmpty();
            continue;
        }
        if (blank)
            out += u' ';
        blank = false;
        out += c;
    }
    return out;
}

} // namespace

std::optional<RowTemplate> RowTemplate::fromBody(const QString &body)
{
    static const QRegularExpression row(
        QStringLiteral("^\\s*(<tr\\b[^>]*>)((?:\\s*<td\\b[^>]*>[^<]*</td>)+)\\s*</tr>\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression cell(QStringLiteral("<td\\b([^>]*)>([^<]*)</td>"),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression spans(QStringLiteral("\\b(colspan|rowspan)\\b"),
                                          QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch whole = row.match(body);
    if (!whole.hasMatch())
        return std::nullopt;
    RowTemplate result;
    result.m_openTag = whole.captured(1);
    const QString open = TemplateMerge::rowField({}).left(1);
    const QString close = TemplateMerge::rowField({}).right(1);
    for (auto it = cell.globalMatch(whole.captured(2)); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        if (spans.match(m.captured(1)).hasMatch())
            return std::nullopt;
        Cell c;
        c.openTag = QStringLiteral("<td") + m.captured(1) + u'>';
        const QString content = m.captured(2);
        qsizetype pos = 0;
        while (pos < content.size()) {
            const qsizetype start = content.indexOf(open, pos);
            const qsizetype end = start < 0 ? -1 : content.indexOf(close, start);
            const QString literal = content.mid(pos, (end < 0 ? content.size() : start) - pos);
            if (!literal.isEmpty())
                c.parts.append({decoded(literal), {}});
            if (end < 0)
                break;
            c.parts.append({{}, content.mid(start + 1, end - start - 1)});
            pos = end + 1;
        }
        result.m_cells.append(c);
    }
    return result;
}

QStringList RowTemplate::texts(const QHash<QString, QString> &row) const
{
    QStringList out;
    out.reserve(m_cells.size());
    for (const Cell &c : m_cells) {
        if (c.parts.size() == 1 && !c.parts.first().field.isEmpty()) {
            out << collapsed(row.value(c.parts.first().field));
            continue;
        }
        QString text;
        for (const Part &part : c.parts)
            text += part.field.isEmpty() ? part.text : row.value(part.field);
        out << collapsed(text);
    }
    return out;
}

QString RowTemplate::html(const QStringList &texts) const
{
    QString out = m_openTag;
    for (qsizetype i = 0; i < m_cells.size(); ++i)
        out += m_cells.at(i).openTag + texts.value(i).toHtmlEscaped() + QStringLiteral("</td>");
    return out + QStringLiteral("</tr>");
}

} // namespace pg::printing
