#pragma once
/// @file ReportRender.h
/// Painting laid-out pages, and the measurer that lays them out with the bundled fonts.
/// The same render() serves the printer, the PDF file and the preview.

#include "reports/ReportEngine.h"

#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QPageLayout>

#include <memory>

class QPagedPaintDevice;
class QPainter;

namespace reports {

/// Registers the bundled Liberation Sans faces (once); the family every page uses.
QString reportFontFamily();

/// The font of a design, in pixels of one twip each: the painter works in twips, and
/// points would come out wrong on high-resolution devices.
QFont qtFont(const Font& font);

/// Measures with the bundled fonts, so page breaks are the same on every machine.
class QtTextMeasurer : public TextMeasurer
{
public:
    int lineHeight(const Font& font) override;
    int width(const QString& text, const Font& font) override;

private:
    QFontMetricsF& metrics(const Font& font);
    QHash<int, std::shared_ptr<QFontMetricsF>> m_metrics;
    // Long documents repeat the same words: their widths are measured once per font.
    QHash<int, QHash<QString, int>> m_widths;
};

/// Paints page `number` of `total` with a painter whose unit is one twip, each line of
/// text where drawing it in its rectangle with its alignment would put it.
void paintPage(QPainter& p, const Page& page, int number, int total);

/// Paints every page on the device, one device page each (the device's margins are its
/// caller's: the PDF and a full-page printer draw from the paper's corner). The painter
/// is scaled by dpi / 1440 so that one unit is one twip. False when painting cannot start.
bool render(QPagedPaintDevice& device, const Document& doc);

/// A4 with no margins, on its side when the document's pages are wider than tall.
QPageLayout pageLayout(const Document& doc);

/// Writes the pages as an A4 PDF with no margins; false when the file cannot be written.
bool writePdf(const Document& doc, const QString& path, const QString& title = {});

} // namespace reports
