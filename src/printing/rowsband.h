#pragma once

#include "rowtemplate.h"
#include "templatemerge.h"

#include <QBrush>
#include <QFont>
#include <QList>
#include <QPen>
#include <QRectF>

#include <memory>
#include <optional>

class QPagedPaintDevice;
class QPainter;
class QTextDocument;
class QTextLayout;
class QTextTable;

namespace pg::printing {

// A document whose rows are drawn straight. The rich-text engine lays out what surrounds the
// rows (the template before and after them, the table's heading) with two stand-in rows in
// their place, chosen to hold each column's widest texts so that the columns come out as
// wide as with every row; the rows themselves are then drawn cell by cell in the stand-ins'
// columns, fonts, alignment, padding and borders, as the engine would draw them. The pages
// are cut between rows, the table's heading repeated at the top of every page of rows.
class RowsBand
{
public:
    struct Content
    {
        QString before;          // the merged document before the rows
        QString after;           // and after them
        RowTemplate row;         // the printed row
        QList<QStringList> rows; // each row's cell texts
    };

    // The content of a merge whose row can be drawn straight; nothing otherwise.
    static std::optional<Content> contentOf(const TemplateMerge &merge, const MergeData &data);

    explicit RowsBand(Content content);
    ~RowsBand();
    RowsBand(const RowsBand &) = delete;
    RowsBand &operator=(const RowsBand &) = delete;

    // Lays the document out on the device in pages of the text area's size. False when the
    // stand-in rows cannot be found in the laid-out document: the document must then go
    // through the rich-text engine whole.
    bool layOut(QPagedPaintDevice &device, const QSizeF &textArea);
    int pageCount() const { return int(m_pages.size()); }
    // Paints one page's text area (0-based) with the painter at its origin.
    void paintPage(QPainter &painter, int page) const;

private:
    // A cell's box: its edges, background and borders (top, right, bottom, left).
    struct Box
    {
        qreal left = 0;
        qreal right = 0;
        QBrush background;
        qreal borders[4] = {};
        QBrush brushes[4];
        qreal inset = 0.5; // where a border's middle lies inside the cell, in its widths
    };
    // How a column's cells are drawn: as the stand-in row's cell.
    struct Column
    {
        QFont font;
        QPen pen;
        Qt::Alignment alignment = Qt::AlignLeft;
        bool wraps = true;
        qreal left = 0; // the text's left edge and width
        qreal width = 0;
        qreal lineHeight = 0;
        Box box;
    };
    // A cell of the table's heading, its text as the document laid it out; places are from
    // the heading's top.
    struct HeadingCell
    {
        const QTextLayout *text = nullptr;
        QPointF at;
        qreal top = 0;
        qreal bottom = 0;
        Box box;
    };
    // A piece of the laid-out document or a run of rows, where the page shows it.
    struct Piece
    {
        qreal y = 0;      // on the page
        qreal docTop = 0; // a piece of the document: its top and bottom in the document
        qreal docBottom = 0;
        int firstRow = -1; // or rows [firstRow, endRow)
        int endRow = -1;
        bool heading = false; // the table's heading again
    };

    // The frame document with these stand-in rows; false when they are not found in it.
    bool frame(QPagedPaintDevice &device, qreal width, const QStringList &widest,
               const QStringList &longestWords);
    void readColumns(QPagedPaintDevice &device);
    void readHeading(qreal scale, qreal inside);
    Box boxOf(int row, int column, qreal contentLeft, qreal contentWidth, qreal scale,
              qreal inside) const;
    void measureRows(QPagedPaintDevice &device);
    void paginate(qreal pageHeight);
    void paintRows(QPainter &painter, const Piece &piece) const;
    void paintHeading(QPainter &painter, qreal y) const;
    // The document from top to bottom, its top at the painter's origin.
    void paintDocument(QPainter &painter, qreal top, qreal bottom) const;

    Content m_content;
    std::unique_ptr<QTextDocument> m_doc;
    QTextTable *m_table = nullptr;
    int m_standIn = -1; // the table row of the first stand-in
    QList<Column> m_columns;
    QList<qreal> m_advances; // each row's cells' widths, row after row
    QList<qreal> m_heights;  // each row's height
    QList<qreal> m_rowY;     // each row's top on its page
    qreal m_topOffset = 0;   // from a row's top to its text
    qreal m_rowExtra = 0;    // a row's height beyond its text
    qreal m_rowsTop = 0;     // where the stand-ins begin and end in the document
    qreal m_rowsBottom = 0;
    qreal m_headingTop = 0; // the table's heading in the document
    qreal m_headingBottom = 0;
    QList<HeadingCell> m_heading;
    QList<qreal> m_breaks; // where the document may be cut between pages, top to bottom
    QList<QList<Piece>> m_pages;
};

} // namespace pg::printing
