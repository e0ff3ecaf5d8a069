// The print of a distinta of many rows to a PDF file, beside the limit of the same machine in
// the same run: the same lines (each row's cell texts, as the print shows them) drawn straight
// onto a PDF writer of the same page size, one text a cell, as many lines a page as fit.
//
//   bench_print [--rows N] [--runs R]

#include "benchcommon.h"
#include "benchinstallation.h"

#include "archives/store/companydata.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"
#include "printing/distintamergedata.h"
#include "printing/pdfoutput.h"
#include "printing/printarchivereader.h"
#include "printing/printdocument.h"
#include "printing/printrun.h"
#include "printing/rowsband.h"
#include "printing/templatestore.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>

using namespace pg;
using namespace pg::distinta;

namespace {

// The limit: every line's texts drawn in equal columns, page after page.
void drawLines(const QString &path, const QPageLayout &layout, const QList<QStringList> &lines)
{
    QPdfWriter writer(path);
    writer.setResolution(600);
    writer.setPageLayout(layout);
    QPainter painter(&writer);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(7);
    painter.setFont(font);
    const qreal pitch = painter.fontMetrics().lineSpacing() * 1.3;
    const int perPage = std::max(1, int(writer.height() / pitch));
    const int columns = lines.isEmpty() ? 1 : int(lines.first().size());
    const qreal width = qreal(writer.width()) / columns;
    for (int i = 0; i < lines.size(); ++i) {
        if (i > 0 && i % perPage == 0)
            writer.newPage();
        const qreal y = (i % perPage) * pitch;
        for (int c = 0; c < columns; ++c)
            painter.drawText(QRectF(c * width, y, width, pitch), Qt::AlignLeft | Qt::AlignVCenter,
                             lines.at(i).at(c));
    }
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    const int rows = bench::intOption(app.arguments(), u"--rows", 10000);
    const int runs = bench::intOption(app.arguments(), u"--runs", 3);
    bench::SilentPrompter prompter;
    PrompterScope scope(prompter);

    test::TestInstallation inst;
    if (!inst.isValid() || !inst.put(bench::installationRecords(rows)))
        return 1;
    const archives::CompanyData company = archives::CompanyData::read(inst.erp());
    DistinteStore store(&inst.erp());
    store.setPStrConn(inst.connectionString());
    const QString code = bench::saveDistinta(store, rows);
    if (code.isEmpty())
        return 1;
    printing::PrintOptions options;
    options.totals = true;

    // The lines of the limit: the cells of every printed row, as the print merges them.
    Distinta saved;
    store.Leggi(saved, code);
    printing::PrintArchiveReader reader(&inst.erp());
    const printing::MergeData data =
        printing::distintaMergeData(saved, company, reader, options, currentSettings().desAlt);
    const printing::TemplateMerge merge(
        *printing::TemplateStore().text(printing::TemplateStore::defaultName()));
    const QList<QStringList> lines = printing::RowsBand::contentOf(merge, data)->rows;
    const QPageLayout layout = printing::PrintDocument(merge.merge(data), {}, true).pageLayout();

    QList<double> print, limit;
    for (int run = 0; run < runs; ++run) {
        print << bench::timedMs([&] {
            printing::PrintRun printRun(store, &inst.erp(), company);
            printing::PdfOutput output(inst.root() + QStringLiteral("distinta.pdf"));
            if (!printRun.AvviaWord(code, options, output))
                std::fprintf(stderr, "stampa non riuscita\n");
        });
        limit << bench::timedMs(
            [&] { drawLines(inst.root() + QStringLiteral("righe.pdf"), layout, lines); });
    }
    bench::report("stampa PDF", rows, bench::median(print), bench::median(limit));
    bench::reportMemory("stampa PDF");
    return 0;
}
