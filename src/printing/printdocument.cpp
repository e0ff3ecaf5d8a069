#include "printdocument.h"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPrinter>
#include <QRegularExpression>
#include <QTextDocument>
#include <QTextDocumentWriter>

namespace pg::printing {

namespace {

// Room kept under the text of each page for the footer, in points.
constexpr qreal FooterPoints = 16;

bool landscape(const QString &html)
{
    static const QRegularExpression meta(
        QStringLiteral("<meta\\s+name\\s*=\\s*\"orientamento\"\\s+content\\s*=\\s*\"([^\"]*)\""),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = meta.match(html);
    return match.hasMatch() && match.captured(1).trimmed().compare(QStringLiteral("orizzontale"),
                                                                   Qt::CaseInsensitive) == 0;
}

void paintTestMark(QPainter &painter, const QRectF &page)
{
    painter.save();
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setBold(true);
    font.setPointSizeF(64);
    painter.setFont(font);
    painter.setPen(QColor(200, 200, 200));
    painter.translate(page.center());
    painter.rotate(page.width() > page.height() ? -25 : -50);
    const QRectF box(-page.width(), -page.height() / 4, 2 * page.width(), page.height() / 2);
    painter.drawText(box, Qt::AlignCenter, PrintDocument::testMark());
    painter.restore();
}

} // namespace

PrintDocument::PrintDocument(const QString &html, const QString &footer, bool testPrint)
    : m_html(html), m_footer(footer), m_testPrint(testPrint)
{}

PrintDocument::~PrintDocument() = default;

QPageLayout PrintDocument::pageLayout() const
{
    return QPageLayout(QPageSize(QPageSize::A4),
                       landscape(m_html) ? QPageLayout::Landscape : QPageLayout::Portrait,
                       QMarginsF(12, 10, 12, 8), QPageLayout::Millimeter);
}

int PrintDocument::print(QPagedPaintDevice &device) const
{
    // The printable area in device pixels; the text keeps clear of the footer.
    const qreal dpi = device.logicalDpiY();
    const qreal footerHeight = FooterPoints * dpi / 72;
    const QRectF page(0, 0, device.width(), device.height());
    const QSizeF textSize(page.width(), page.height() - footerHeight);

    std::unique_ptr<RowsBand> band;
    if (m_rows) {
        band = std::make_unique<RowsBand>(*m_rows);
        if (!band->layOut(device, textSize))
            band.reset();
    }
    QTextDocument doc;
    if (!band) {
        // The page size first: laying the text out twice, without pages and then with them,
        // would cost as much again.
        doc.documentLayout()->setPaintDevice(&device);
        doc.setDocumentMargin(0);
        doc.setPageSize(textSize);
        doc.setHtml(m_html);
    }
    const int pages = band ? band->pageCount() : doc.pageCount();

    QPainter painter;
    if (!painter.begin(&device))
        return 0;
    for (int i = 0; i < pages; ++i) {
        if (m_progress && !m_progress(i + 1, pages)) {
            if (auto *printer = dynamic_cast<QPrinter *>(&device))
                printer->abort();
            painter.end();
            return Cancelled;
        }
        if (i > 0)
            device.newPage();
        if (m_testPrint)
            paintTestMark(painter, page);
        painter.save();
        if (band) {
            painter.setClipRect(QRectF(QPointF(0, 0), textSize));
            band->paintPage(painter, i);
        } else {
            const QRectF clip(0, i * textSize.height(), textSize.width(), textSize.height());
            painter.translate(0, -clip.top());
            QAbstractTextDocumentLayout::PaintContext context;
            context.clip = clip;
            context.palette.setColor(QPalette::Text, Qt::black);
            painter.setClipRect(clip);
            doc.documentLayout()->draw(&painter, context);
        }
        painter.restore();
        paintFooter(painter, page, footerHeight, i, pages);
    }
    painter.end();
    return pages;
}

void PrintDocument::paintFooter(QPainter &painter, const QRectF &page, qreal footerHeight,
                                int index, int pages) const
{
    painter.save();
    QFont footerFont(QStringLiteral("DejaVu Sans"));
    footerFont.setStyleHint(QFont::SansSerif);
    footerFont.setPointSizeF(7.5);
    painter.setFont(footerFont);
    painter.setPen(Qt::black);
    const QRectF footerBox(0, page.height() - footerHeight * 0.8, page.width(), footerHeight * 0.8);
    const QString pageText = QStringLiteral("Pagina %1 di %2").arg(index + 1).arg(pages);
    painter.drawText(footerBox, Qt::AlignLeft | Qt::AlignBottom, m_footer);
    painter.drawText(footerBox, Qt::AlignRight | Qt::AlignBottom, pageText);
    if (m_testPrint)
        painter.drawText(footerBox, Qt::AlignHCenter | Qt::AlignBottom, testMark());
    painter.restore();
}

bool PrintDocument::exportOdt(const QString &path, QString *error) const
{
    QTextDocument doc;
    doc.setHtml(m_html);
    QTextDocumentWriter writer(path, QByteArrayLiteral("odf"));
    if (!writer.write(&doc)) {
        *error = writer.device() ? writer.device()->errorString() : QString();
        return false;
    }
    return true;
}

} // namespace pg::printing
