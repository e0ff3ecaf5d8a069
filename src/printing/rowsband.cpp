#include "rowsband.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextTable>

#include <algorithm>
#include <array>
#include <functional>
#include <limits>

namespace pg::printing {

namespace {

enum Side { Top, Right, Bottom, Left };

// The text of a table cell as the document holds it.
QString cellText(const QTextTableCell &cell)
{
    QTextCursor cursor = cell.firstCursorPosition();
    cursor.setPosition(cell.lastCursorPosition().position(), QTextCursor::KeepAnchor);
    return cursor.selectedText();
}

bool rowHolds(const QTextTable *table, int row, const QStringList &texts)
{
    for (int c = 0; c < table->columns(); ++c)
        if (cellText(table->cellAt(row, c)) != texts.value(c))
            return false;
    return true;
}

// Each column's index of the row whose text scores highest.
QList<int> highest(int columns, int rows, const std::function<qreal(int row, int column)> &score)
{
    QList<int> best(columns, 0);
    QList<qreal> top(columns, -1);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c)
            if (const qreal s = score(r, c); s > top[c]) {
                top[c] = s;
                best[c] = r;
            }
    return best;
}

qreal longestWord(const QString &text)
{
    qsizetype longest = 0;
    qsizetype run = 0;
    for (QChar c : text) {
        run = c == u' ' ? 0 : run + 1;
        longest = std::max(longest, run);
    }
    return qreal(longest);
}

} // namespace

std::optional<RowsBand::Content> RowsBand::contentOf(const TemplateMerge &merge,
                                                     const MergeData &data)
{
    const std::optional<TemplateMerge::Split> split = merge.split(data);
    if (!split)
        return std::nullopt;
    const std::optional<RowTemplate> row = RowTemplate::fromBody(split->rowBody);
    if (!row)
        return std::nullopt;
    Content content{split->before, split->after, *row, {}};
    content.rows.reserve(data.rows.size());
    for (const QHash<QString, QString> &values : data.rows)
        content.rows << row->texts(values);
    return content;
}

RowsBand::RowsBand(Content content) : m_content(std::move(content)) {}

RowsBand::~RowsBand() = default;

bool RowsBand::layOut(QPagedPaintDevice &device, const QSizeF &textArea)
{
    const QList<QStringList> &rows = m_content.rows;
    const int columns = m_content.row.columns();
    if (rows.isEmpty() || columns == 0)
        return false;
    auto texts = [&](const QList<int> &pick) {
        QStringList out;
        for (int c = 0; c < columns; ++c)
            out << rows.at(pick.at(c)).value(c);
        return out;
    };
    // First the longest texts by their characters, to learn the columns' fonts; then the
    // widest in those fonts.
    const QList<int> byLength = highest(
        columns, int(rows.size()), [&](int r, int c) { return qreal(rows.at(r).value(c).size()); });
    const QStringList longestWords = texts(highest(
        columns, int(rows.size()), [&](int r, int c) { return longestWord(rows.at(r).value(c)); }));
    if (!frame(device, textArea.width(), texts(byLength), longestWords))
        return false;
    readColumns(device);
    m_advances.resize(rows.size() * columns);
    for (int c = 0; c < columns; ++c) {
        // Columns repeat their texts (names, banks, dates): each is measured once.
        const QFontMetricsF metrics(m_columns.at(c).font, &device);
        QHash<QString, qreal> measured;
        for (int r = 0; r < rows.size(); ++r) {
            const QString &text = rows.at(r).at(c);
            auto it = measured.constFind(text);
            if (it == measured.constEnd())
                it = measured.insert(text, metrics.horizontalAdvance(text));
            m_advances[r * columns + c] = *it;
        }
    }
    const QList<int> byWidth = highest(
        columns, int(rows.size()), [&](int r, int c) { return m_advances.at(r * columns + c); });
    if (byWidth != byLength) {
        if (!frame(device, textArea.width(), texts(byWidth), longestWords))
            return false;
        readColumns(device);
    }
    measureRows(device);
    paginate(textArea.height());
    return true;
}

bool RowsBand::frame(QPagedPaintDevice &device, qreal width, const QStringList &widest,
                     const QStringList &longestWords)
{
    m_doc = std::make_unique<QTextDocument>();
    m_doc->documentLayout()->setPaintDevice(&device);
    m_doc->setDocumentMargin(0);
    // One long page: the pages are cut here, between rows.
    m_doc->setTextWidth(width);
    m_doc->setHtml(m_content.before + m_content.row.html(widest) +
                   m_content.row.html(longestWords) + m_content.after);
    m_table = nullptr;
    std::function<void(QTextFrame *)> find = [&](QTextFrame *frame) {
        auto *table = qobject_cast<QTextTable *>(frame);
        if (table && table->columns() == m_content.row.columns()) {
            for (int r = 0; r + 1 < table->rows() && !m_table; ++r) {
                if (rowHolds(table, r, widest) && rowHolds(table, r + 1, longestWords)) {
                    m_table = table;
                    m_standIn = r;
                }
            }
        }
        for (QTextFrame *child : frame->childFrames())
            if (!m_table)
                find(child);
    };
    find(m_doc->rootFrame());
    return m_table != nullptr;
}

namespace {

// The text of a table cell as laid out, and where its top lies.
QTextBlock blockOf(const QTextTable *table, int row, int column)
{
    return table->cellAt(row, column).firstCursorPosition().block();
}

} // namespace

RowsBand::Box RowsBand::boxOf(int row, int column, qreal contentLeft, qreal contentWidth,
                              qreal scale, qreal inside) const
{
    const QTextTableCellFormat cell = m_table->cellAt(row, column).format().toTableCellFormat();
    Box box;
    box.left = contentLeft - scale * (cell.leftPadding() + inside * cell.leftBorder());
    box.right =
        contentLeft + contentWidth + scale * (cell.rightPadding() + inside * cell.rightBorder());
    box.background = cell.background();
    box.borders[Top] = scale * cell.topBorder();
    box.borders[Right] = scale * cell.rightBorder();
    box.borders[Bottom] = scale * cell.bottomBorder();
    box.borders[Left] = scale * cell.leftBorder();
    box.brushes[Top] = cell.topBorderBrush();
    box.brushes[Right] = cell.rightBorderBrush();
    box.brushes[Bottom] = cell.bottomBorderBrush();
    box.brushes[Left] = cell.leftBorderBrush();
    box.inset = inside - 0.5;
    return box;
}

void RowsBand::readColumns(QPagedPaintDevice &device)
{
    QAbstractTextDocumentLayout *layout = m_doc->documentLayout();
    // Padding and borders are given in CSS pixels, which the engine scales to the device;
    // collapsed borders lie half inside each of the two cells they part.
    const qreal scale = device.logicalDpiY() / 96.0;
    const qreal inside = m_table->format().borderCollapse() ? 0.5 : 1.0;
    auto contentTop = [&](int row, qreal *height) {
        qreal top = std::numeric_limits<qreal>::max();
        qreal bottom = 0;
        for (int c = 0; c < m_table->columns(); ++c) {
            const QRectF rect = layout->blockBoundingRect(blockOf(m_table, row, c));
            top = std::min(top, rect.top());
            bottom = std::max(bottom, rect.bottom());
        }
        if (height)
            *height = bottom - top;
        return top;
    };

    m_columns.clear();
    for (int c = 0; c < m_table->columns(); ++c) {
        const QTextBlock block = blockOf(m_table, m_standIn, c);
        const QRectF rect = layout->blockBoundingRect(block);
        const QTextCharFormat chars = block.begin() != block.end()
                                          ? block.begin().fragment().charFormat()
                                          : block.charFormat();
        Column column;
        column.font = chars.font().resolve(m_doc->defaultFont());
        column.pen = chars.foreground().style() == Qt::NoBrush ? QPen(Qt::black)
                                                               : QPen(chars.foreground(), 0);
        const Qt::Alignment align = block.blockFormat().alignment() & Qt::AlignHorizontal_Mask;
        column.alignment = align & (Qt::AlignRight | Qt::AlignTrailing)
                               ? Qt::AlignRight
                               : (align & Qt::AlignHCenter ? Qt::AlignHCenter : Qt::AlignLeft);
        column.wraps = !block.blockFormat().nonBreakableLines();
        const QTextLayout *lines = block.layout();
        column.left = rect.left();
        column.width = lines && lines->lineCount() > 0 ? lines->lineAt(0).width() : rect.width();
        column.lineHeight =
            lines && lines->lineCount() > 0 ? lines->lineAt(0).height() : rect.height();
        column.box = boxOf(m_standIn, c, column.left, column.width, scale, inside);
        m_columns << column;
    }

    // The stand-ins' pitch tells a row's height beyond its text.
    qreal heightA = 0;
    qreal heightB = 0;
    const qreal topA = contentTop(m_standIn, &heightA);
    const qreal topB = contentTop(m_standIn + 1, &heightB);
    m_rowExtra = std::max<qreal>(0, topB - topA - heightA);
    auto topOffset = [&](int row) {
        qreal offset = 0;
        for (int c = 0; c < m_table->columns(); ++c) {
            const QTextTableCellFormat f = m_table->cellAt(row, c).format().toTableCellFormat();
            offset = std::max(offset, scale * (f.topPadding() + inside * f.topBorder()));
        }
        return offset;
    };
    m_topOffset = std::clamp(topOffset(m_standIn), qreal(0), m_rowExtra);
    m_rowsTop = topA - m_topOffset;
    m_rowsBottom = topB + heightB + m_rowExtra - m_topOffset;
    // The table's heading rows, repeated at the top of every page of rows.
    const int heading = m_table->format().headerRowCount();
    m_headingTop = m_headingBottom = 0;
    if (heading > 0 && heading <= m_standIn) {
        m_headingTop = contentTop(0, nullptr) - topOffset(0);
        m_headingBottom =
            heading == m_standIn ? m_rowsTop : contentTop(heading, nullptr) - topOffset(heading);
    }
    readHeading(scale, inside);

    // Where the document may be cut: under a line where no other line goes on (the lines
    // of the cells of one table row side by side are cut after the row).
    QList<std::pair<qreal, qreal>> lines;
    for (QTextBlock block = m_doc->begin(); block.isValid(); block = block.next()) {
        const QTextLayout *text = block.layout();
        if (!text)
            continue;
        const qreal origin = layout->blockBoundingRect(block).top() - text->boundingRect().top();
        for (int i = 0; i < text->lineCount(); ++i) {
            const QRectF line = text->lineAt(i).rect();
            lines.append({origin + line.top(), origin + line.bottom()});
        }
    }
    std::sort(lines.begin(), lines.end());
    m_breaks.clear();
    for (const auto &[top, bottom] : std::as_const(lines)) {
        if (!m_breaks.isEmpty() && top < m_breaks.last() - 0.01)
            m_breaks.last() = std::max(m_breaks.last(), bottom);
        else
            m_breaks << bottom;
    }
}

void RowsBand::readHeading(qreal scale, qreal inside)
{
    QAbstractTextDocumentLayout *layout = m_doc->documentLayout();
    m_heading.clear();
    const int rows = m_headingBottom > m_headingTop ? m_table->format().headerRowCount() : 0;
    QList<qreal> tops;
    for (int r = 0; r <= rows; ++r) {
        qreal top = m_headingBottom;
        if (r < rows) {
            top = std::numeric_limits<qreal>::max();
            for (int c = 0; c < m_table->columns(); ++c)
                top = std::min(top, layout->blockBoundingRect(blockOf(m_table, r, c)).top());
            const QTextTableCellFormat f = m_table->cellAt(r, 0).format().toTableCellFormat();
            top = r == 0 ? m_headingTop : top - scale * (f.topPadding() + inside * f.topBorder());
        }
        tops << top - m_headingTop;
    }
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < m_table->columns(); ++c) {
            const QTextTableCell cell = m_table->cellAt(r, c);
            // A cell spanning columns is met once, at its first column.
            if (cell.column() != c || cell.row() != r)
                continue;
            const QTextBlock block = cell.firstCursorPosition().block();
            const QRectF rect = layout->blockBoundingRect(block);
            HeadingCell h;
            h.text = block.layout();
            h.at = QPointF(rect.left(), rect.top() - m_headingTop);
            h.top = tops.at(r);
            h.bottom = tops.at(std::min(r + cell.rowSpan(), rows));
            const int last = std::min(c + cell.columnSpan(), m_table->columns()) - 1;
            const QRectF lastRect = layout->blockBoundingRect(blockOf(m_table, r, last));
            h.box = boxOf(r, c, rect.left(), lastRect.right() - rect.left(), scale, inside);
            m_heading << h;
        }
    }
}

void RowsBand::measureRows(QPagedPaintDevice &device)
{
    const QList<QStringList> &rows = m_content.rows;
    const int columns = int(m_columns.size());
    QList<QFontMetricsF> metrics;
    for (const Column &column : std::as_const(m_columns))
        metrics << QFontMetricsF(column.font, &device);
    m_heights.resize(rows.size());
    for (int r = 0; r < rows.size(); ++r) {
        qreal text = 0;
        for (int c = 0; c < columns; ++c) {
            const Column &column = m_columns.at(c);
            qreal height = column.lineHeight;
            // A text wider than its column wraps, as the engine wraps it.
            if (column.wraps && m_advances.at(r * columns + c) > column.width + 0.01)
                height = metrics.at(c)
                             .boundingRect(QRectF(0, 0, column.width, 1e9), Qt::TextWordWrap,
                                           rows.at(r).value(c))
                             .height();
            text = std::max(text, height);
        }
        m_heights[r] = text + m_rowExtra;
    }
}

void RowsBand::paginate(qreal pageHeight)
{
    m_pages.clear();
    m_pages.append(QList<Piece>());
    m_rowY.resize(m_content.rows.size());
    qreal y = 0;
    bool rowsOnPage = false;
    qreal headingOnPage = 0;
    auto newPage = [&] {
        m_pages.append(QList<Piece>());
        y = 0;
        rowsOnPage = false;
        headingOnPage = 0;
    };
    // A piece of the document, cut where the pages end between two lines, as the engine
    // cuts it.
    auto place = [&](qreal top, qreal bottom) {
        while (bottom - top > 0.5) {
            qreal take = bottom - top;
            if (take > pageHeight - y) {
                const auto fits = std::upper_bound(m_breaks.cbegin(), m_breaks.cend(),
                                                   top + pageHeight - y + 0.5);
                take = fits != m_breaks.cbegin() ? *std::prev(fits) - top : 0;
                if (take < 0.5 && y < 0.5) // a line taller than a page
                    take = pageHeight;
            }
            if (take >= 0.5) {
                m_pages.last().append(Piece{y, top, top + take, -1, -1});
                y += take;
                top += take;
            }
            if (bottom - top > 0.5)
                newPage();
        }
    };

    place(0, m_rowsTop);
    const qreal heading = m_headingBottom - m_headingTop;
    for (int r = 0; r < m_content.rows.size(); ++r) {
        const qreal height = m_heights.at(r);
        if (y + height > pageHeight && (rowsOnPage || y > headingOnPage + 0.5)) {
            newPage();
            if (heading > 0 && heading < pageHeight / 2) {
                m_pages.last().append(Piece{0, m_headingTop, m_headingBottom, -1, -1, true});
                y = headingOnPage = heading;
            }
        }
        QList<Piece> &page = m_pages.last();
        if (!page.isEmpty() && page.last().endRow == r)
            page.last().endRow = r + 1;
        else
            page.append(Piece{y, 0, 0, r, r + 1});
        m_rowY[r] = y;
        y += height;
        rowsOnPage = true;
    }
    place(m_rowsBottom, m_doc->documentLayout()->documentSize().height());
}

void RowsBand::paintDocument(QPainter &painter, qreal top, qreal bottom) const
{
    painter.save();
    painter.translate(0, -top);
    const QRectF clip(0, top, m_doc->textWidth(), bottom - top);
    painter.setClipRect(clip);
    QAbstractTextDocumentLayout::PaintContext context;
    // A line that ends (or begins) where the piece begins (or ends) belongs to the page
    // before (or after): it is not drawn here, even cut off.
    context.clip = clip.adjusted(0, 0.5, 0, -0.5);
    context.palette.setColor(QPalette::Text, Qt::black);
    m_doc->documentLayout()->draw(&painter, context);
    painter.restore();
}

void RowsBand::paintPage(QPainter &painter, int page) const
{
    for (const Piece &piece : m_pages.value(page)) {
        if (piece.firstRow >= 0) {
            paintRows(painter, piece);
        } else if (piece.heading) {
            paintHeading(painter, piece.y);
        } else {
            painter.save();
            painter.translate(0, piece.y);
            paintDocument(painter, piece.docTop, piece.docBottom);
            painter.restore();
        }
    }
}

namespace {

using Lines = std::array<QList<QLineF>, 4>;

// The borders of a box from top to bottom, as the engine draws them: inside the cell, or
// (collapsed) across its edge.
template<typename Box>
void addBorders(const Box &box, qreal top, qreal bottom, Lines &lines)
{
    for (int side = Top; side <= Left; ++side) {
        const qreal shift = box.borders[side] * box.inset;
        if (box.borders[side] <= 0)
            continue;
        switch (side) {
        case Top:
            lines[side] << QLineF(box.left, top + shift, box.right, top + shift);
            break;
        case Bottom:
            lines[side] << QLineF(box.left, bottom - shift, box.right, bottom - shift);
            break;
        case Left:
            lines[side] << QLineF(box.left + shift, top, box.left + shift, bottom);
            break;
        default:
            lines[side] << QLineF(box.right - shift, top, box.right - shift, bottom);
        }
    }
}

template<typename Box>
void strokeBorders(QPainter &painter, const Box &box, const Lines &lines)
{
    for (int side = Top; side <= Left; ++side) {
        if (lines[side].isEmpty())
            continue;
        painter.setPen(QPen(box.brushes[side], box.borders[side], Qt::SolidLine, Qt::FlatCap));
        painter.drawLines(lines[side]);
    }
}

} // namespace

void RowsBand::paintHeading(QPainter &painter, qreal y) const
{
    painter.save();
    for (const HeadingCell &cell : m_heading) {
        const QRectF box(cell.box.left, y + cell.top, cell.box.right - cell.box.left,
                         cell.bottom - cell.top);
        if (cell.box.background.style() != Qt::NoBrush)
            painter.fillRect(box, cell.box.background);
        Lines lines;
        addBorders(cell.box, box.top(), box.bottom(), lines);
        strokeBorders(painter, cell.box, lines);
        // The text as the document laid it out, with its own fonts and colours.
        painter.setPen(Qt::black);
        cell.text->draw(&painter, QPointF(0, y) + cell.at - cell.text->position());
    }
    painter.restore();
}

void RowsBand::paintRows(QPainter &painter, const Piece &piece) const
{
    const int columns = int(m_columns.size());
    painter.save();
    // Cell by cell as the engine draws them: backgrounds, borders, then the texts, one
    // column at a time so that each font and colour is set once.
    for (int c = 0; c < columns; ++c) {
        const Column &column = m_columns.at(c);
        Lines lines;
        for (int r = piece.firstRow; r < piece.endRow; ++r) {
            const qreal top = m_rowY.at(r);
            if (column.box.background.style() != Qt::NoBrush)
                painter.fillRect(QRectF(column.box.left, top, column.box.right - column.box.left,
                                        m_heights.at(r)),
                                 column.box.background);
            addBorders(column.box, top, top + m_heights.at(r), lines);
        }
        strokeBorders(painter, column.box, lines);
        painter.setFont(column.font);
        painter.setPen(column.pen);
        const qreal ascent = painter.fontMetrics().ascent();
        for (int r = piece.firstRow; r < piece.endRow; ++r) {
            const QString &text = m_content.rows.at(r).at(c);
            if (text.isEmpty())
                continue;
            const qreal advance = m_advances.at(r * columns + c);
            const qreal top = m_rowY.at(r) + m_topOffset;
            if (column.wraps && advance > column.width + 0.01) {
                painter.drawText(
                    QRectF(column.left, top, column.width, m_heights.at(r) - m_rowExtra),
                    int(column.alignment | Qt::AlignTop) | Qt::TextWordWrap, text);
                continue;
            }
            // One line, placed by its measured width: no layout of the text at all.
            qreal x = column.left;
            if (column.alignment & Qt::AlignRight)
                x += column.width - advance;
            else if (column.alignment & Qt::AlignHCenter)
                x += (column.width - advance) / 2;
            painter.drawText(QPointF(x, top + ascent), text);
        }
    }
    painter.restore();
}

} // namespace pg::printing
