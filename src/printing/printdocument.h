#pragma once

#include <QPageLayout>
#include <QString>

#include <memory>

class QPagedPaintDevice;
class QTextDocument;

namespace pg::printing {

// A merged distinta ready to go out: the HTML laid out on pages of the device it is printed
// on, each page with its footer ("Distinta N. 12 - Pagina 1 di 3") and, for a test print, the
// diagonal mark "STAMPA DI PROVA" across it, so that a test copy can never pass for the one
// the company signs. Tables repeat their heading rows on every page.
//
// A template chooses landscape pages with <meta name="orientamento" content="orizzontale">;
// pages are A4 otherwise portrait.
class PrintDocument
{
public:
    PrintDocument(const QString &html, const QString &footer, bool testPrint);
    ~PrintDocument();

    const QString &html() const { return m_html; }
    const QString &footer() const { return m_footer; }
    bool isTestPrint() const { return m_testPrint; }
    // The page layout the template asks for (A4, its orientation, the program's margins).
    QPageLayout pageLayout() const;

    // Lays the document out on the device and paints every page; the device's page layout
    // should be pageLayout(). The number of pages painted, 0 when painting could not start.
    int print(QPagedPaintDevice &device) const;
    // Writes the merged document as an OpenDocument text for an external program; false
    // with the reason when the file cannot be written.
    bool exportOdt(const QString &path, QString *error) const;

    static QString testMark() { return QStringLiteral("STAMPA DI PROVA"); }

private:
    QString m_html;
    QString m_footer;
    bool m_testPrint;
};

} // namespace pg::printing
