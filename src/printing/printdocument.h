#pragma once

#include "rowsband.h"

#include <QPageLayout>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QPagedPaintDevice;
class QPainter;
class QTextDocument;

namespace pg::printing {

// A merged distinta ready to go out: the HTML laid out on pages of the device it is printed
// on, each page with its footer ("Distinta N. 12 - Pagina 1 di 3") and, for a test print, the
// diagonal mark "STAMPA DI PROVA" across it, so that a test copy can never pass for the one
// the company signs. Tables repeat their heading rows on every page.
//
// A template chooses landscape pages with <meta name="orientamento" content="orizzontale">;
// pages are A4 otherwise portrait.
//
// Given its rows apart (setRows), the document draws them straight (RowsBand): a distinta of
// thousands of rows prints in seconds; otherwise, or when the rows cannot be drawn that way,
// the whole HTML goes through the rich-text engine.
class PrintDocument
{
public:
    // Told before each page is painted (1-based) with the number of pages; false stops.
    using Progress = std::function<bool(int page, int pages)>;
    // What print() returns when the progress stopped it.
    static constexpr int Cancelled = -1;

    PrintDocument(const QString &html, const QString &footer, bool testPrint);
    ~PrintDocument();

    // The same document with its rows apart, to be drawn straight.
    void setRows(RowsBand::Content rows) { m_rows = std::move(rows); }
    void setProgress(Progress progress) { m_progress = std::move(progress); }

    const QString &html() const { return m_html; }
    const QString &footer() const { return m_footer; }
    bool isTestPrint() const { return m_testPrint; }
    // The page layout the template asks for (A4, its orientation, the program's margins).
    QPageLayout pageLayout() const;

    // Lays the document out on the device and paints every page; the device's page layout
    // should be pageLayout(). The number of pages painted, 0 when painting could not start,
    // Cancelled when the progress stopped it (a printer's job is then aborted).
    int print(QPagedPaintDevice &device) const;
    // Writes the merged document as an OpenDocument text for an external program; false
    // with the reason when the file cannot be written.
    bool exportOdt(const QString &path, QString *error) const;

    static QString testMark() { return QStringLiteral("STAMPA DI PROVA"); }

private:
    void paintFooter(QPainter &painter, const QRectF &page, qreal footerHeight, int index,
                     int pages) const;

    QString m_html;
    QString m_footer;
    bool m_testPrint;
    std::optional<RowsBand::Content> m_rows;
    Progress m_progress;
};

} // namespace pg::printing
