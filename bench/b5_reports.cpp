// B5: a 1000-page DataReport9 (one machine a page) laid out and written to PDF, against
// QPdfWriter drawing the same texts at the same places in one loop, same run.
#include "BenchStore.h"
#include "reports/LayoutCatalogue.h"
#include "reports/ReportRender.h"

#include <QApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const reports::ReportLayout layout = *reports::MakeLayout(QStringLiteral("DataReport9"));

    // 1000 machines with 25 parts replaced each: a page per machine.
    reports::ReportData data;
    data.columns = {QStringLiteral("Macchina"), QStringLiteral("Modello"), QStringLiteral("Numerazione")};
    data.childColumns = {QStringLiteral("Data"), QStringLiteral("Ricambi"), QStringLiteral("Descrizione"),
                         QStringLiteral("Quantita"), QStringLiteral("Destinazione")};
    for (int p = 0; p < 1000; ++p) {
        reports::ReportData::Row row;
        row.values = {vb::Variant(QStringLiteral("PRESSA %1").arg(p)), vb::Variant(QStringLiteral("AX-%1").arg(p)),
                      vb::Variant(p % 40 + 1)};
        for (int c = 0; c < 25; ++c)
            row.children.push_back({vb::Variant::fromDate(QDate(2026, 1 + c % 12, 1 + c)),
                                    vb::Variant(QStringLiteral("CUSCINETTO %1").arg(c)),
                                    vb::Variant(QStringLiteral("Cuscinetto a sfere schermato 6204 ZZ")),
                                    vb::Variant(c % 5 + 1), vb::Variant(QStringLiteral("Albero motore lato pompa"))});
        data.rows.push_back(std::move(row));
    }

    int pages = 0;
    auto ours = [&] {
        reports::QtTextMeasurer m;
        const reports::Document doc = reports::LayOut(layout, data, m);
        pages = static_cast<int>(doc.pages.size());
        reports::writePdf(doc, dir.filePath(QStringLiteral("ours.pdf")));
    };
    ours();

    // The baseline draws the same lines at the same places with the same font.
    reports::QtTextMeasurer m;
    const auto texts = reports::placedTexts(reports::LayOut(layout, data, m));
    const QFont font = reports::qtFont(reports::Font{});
    auto raw = [&] {
        QPdfWriter pdf(dir.filePath(QStringLiteral("raw.pdf")));
        pdf.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
        QPainter p(&pdf);
        const double s = pdf.logicalDpiX() / 1440.0;
        p.scale(s, s);
        p.setFont(font);
        for (size_t i = 0; i < texts.size(); ++i) {
            if (i > 0)
                pdf.newPage();
            for (const reports::PlacedText& t : texts[i])
                p.drawText(QPoint(t.x, t.y + 160), t.text);
        }
    };

    const int rounds = 3;
    const double tOurs = bench::bestOf(rounds, ours);
    const double tRaw = bench::bestOf(rounds, raw);
    std::printf("B5 report to PDF (%d pages of DataReport9): best of %d runs\n", pages, rounds);
    std::printf("  layout + render to PDF:            %8.1f ms\n", tOurs);
    std::printf("  QPdfWriter drawing the same texts: %8.1f ms\n", tRaw);
    std::printf("  ratio: %.2fx (goal <= 1.3x)\n", tOurs / tRaw);
    reports::Document laid;
    const double tLayout = bench::bestOf(rounds, [&] {
        reports::QtTextMeasurer fresh;
        laid = reports::LayOut(layout, data, fresh);
    });
    std::printf("  of which layout alone:             %8.1f ms\n", tLayout);
    return 0;
}
