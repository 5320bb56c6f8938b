// B5: a 1000-page DataReport9 (one machine a page) laid out and written to PDF, against
// QPdfWriter drawing the same pages (texts at the same places in the same fonts and
// colours, the same rules) in one loop, same run.
#include "BenchStore.h"
#include "reports/LayoutCatalogue.h"
#include "reports/ReportRender.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QHash>
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

    // The baseline draws what the pages hold, as a hand-written program would: every line
    // of text where it prints, in its font and colour, and every rule and box, the
    // painter's font and pen set only when they change. Where each text goes (its
    // alignment) is worked out beforehand.
    struct Drawn
    {
        reports::PlacedItem::Kind kind = reports::PlacedItem::Kind::Text;
        QPointF at;
        QPoint to;
        QString line;
        int font = 0;
        QRgb colour = 0;
    };
    reports::QtTextMeasurer m;
    const reports::Document laidOut = reports::LayOut(layout, data, m);
    std::vector<std::vector<Drawn>> pageItems;
    QHash<int, QFont> fonts;
    for (size_t pi = 0; pi < laidOut.pages.size(); ++pi) {
        std::vector<Drawn>& out = pageItems.emplace_back();
        for (const reports::PlacedItem& it : laidOut.pages[pi].items) {
            if (it.kind != reports::PlacedItem::Kind::Text) {
                out.push_back({it.kind, it.rect.topLeft(), it.rect.bottomRight(), {}, 0, 0});
                continue;
            }
            const int key = it.font.size * 2 + (it.font.bold ? 1 : 0);
            if (!fonts.contains(key))
                fonts.insert(key, reports::qtFont(it.font));
            const QFontMetricsF fm(fonts[key]);
            const QRgb colour =
                qRgb(int(it.foreColor & 0xFF), int((it.foreColor >> 8) & 0xFF), int((it.foreColor >> 16) & 0xFF));
            for (int i = 0; i < it.lines.size(); ++i) {
                const QString line = reports::printedLine(it, i, int(pi) + 1, int(laidOut.pages.size()));
                if (line.isEmpty())
                    continue;
                double x = it.rect.left();
                if (it.align == reports::Align::Right)
                    x = it.rect.left() + it.rect.width() - fm.horizontalAdvance(line);
                else if (it.align == reports::Align::Centre)
                    x = it.rect.left() + (it.rect.width() - fm.horizontalAdvance(line)) / 2;
                out.push_back(
                    {it.kind, QPointF(x, it.rect.top() + i * it.lineHeight + fm.ascent()), {}, line, key, colour});
            }
        }
    }
    auto raw = [&] {
        QPdfWriter pdf(dir.filePath(QStringLiteral("raw.pdf")));
        pdf.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
        QPainter p(&pdf);
        const double s = pdf.logicalDpiX() / 1440.0;
        p.scale(s, s);
        QPen rule(Qt::black);
        rule.setWidth(15);
        int font = -1;
        bool ruling = false;
        QRgb colour = qRgb(0, 0, 0);
        for (size_t i = 0; i < pageItems.size(); ++i) {
            if (i > 0)
                pdf.newPage();
            for (const Drawn& d : pageItems[i]) {
                if (d.kind != reports::PlacedItem::Kind::Text) {
                    if (!ruling)
                        p.setPen(rule);
                    ruling = true;
                    if (d.kind == reports::PlacedItem::Kind::Line)
                        p.drawLine(d.at.toPoint(), d.to);
                    else
                        p.drawRect(QRect(d.at.toPoint(), d.to));
                    continue;
                }
                if (d.font != font)
                    p.setFont(fonts[d.font]);
                font = d.font;
                if (ruling || d.colour != colour)
                    p.setPen(QColor(d.colour));
                ruling = false;
                colour = d.colour;
                p.drawText(d.at, d.line);
            }
        }
    };

    const int rounds = 3;
    const double tOurs = bench::bestOf(rounds, ours);
    const double tRaw = bench::bestOf(rounds, raw);
    std::printf("B5 report to PDF (%d pages of DataReport9): best of %d runs\n", pages, rounds);
    std::printf("  layout + render to PDF:            %8.1f ms\n", tOurs);
    std::printf("  QPdfWriter drawing the same pages: %8.1f ms\n", tRaw);
    std::printf("  ratio: %.2fx (goal <= 1.3x)\n", tOurs / tRaw);
    reports::Document laid;
    const double tLayout = bench::bestOf(rounds, [&] {
        reports::QtTextMeasurer fresh;
        laid = reports::LayOut(layout, data, fresh);
    });
    std::printf("  of which layout alone:             %8.1f ms\n", tLayout);
    return 0;
}
