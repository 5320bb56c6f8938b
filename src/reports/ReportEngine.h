#pragma once
/// @file ReportEngine.h
/// From design and data to pages, in two steps that know nothing of painting:
/// Bind() turns rows into band occurrences with their texts; Paginate() measures the
/// texts through a TextMeasurer, grows the bands, breaks pages and returns each page as
/// a list of placed items in page twips. Painting (ReportRender.h) never measures again.

#include "reports/ReportData.h"
#include "reports/ReportLayout.h"

#include <QRect>
#include <QStringList>

#include <vector>

namespace reports {

/// Text metrics in twips. The printed pages use the bundled fonts; tests use a fake.
class TextMeasurer
{
public:
    virtual ~TextMeasurer() = default;
    virtual int lineHeight(const Font& font) = 0;
    virtual int width(const QString& text, const Font& font) = 0;
};

/// Word wrap to `width`: paragraphs at line ends, words at blanks, a word wider than the
/// line broken between characters (unless `breakWords` is false: then it stays whole).
/// Always at least one line ("" for an empty text).
QStringList wrapText(const QString& text, int width, const Font& font, TextMeasurer& m, bool breakWords = true);

/// One occurrence of a band with the text of each of its controls (parallel to
/// Band::controls; labels carry their caption, totals their result).
struct BoundBand
{
    Section section;
    const Band* band = nullptr;
    std::vector<QString> texts;
};

/// The bands that flow down the pages, in print order: the report header, then for each
/// parent row its group header, one detail per child row and its group footer (a flat
/// document: one detail per row), then the report footer. Page header and footer are
/// bound once, without a row, by BindStatic().
std::vector<BoundBand> Bind(const ReportLayout& layout, const ReportData& data);
BoundBand BindStatic(const ReportLayout& layout, Section section);

struct PlacedItem
{
    enum class Kind { Text, Line, Box };
    Kind kind = Kind::Text;
    QRect rect;        ///< page twips; a Line runs from rect.topLeft() to rect.bottomRight()
    QStringList lines; ///< already wrapped; line i is drawn at rect.top() + i * lineHeight
    int lineHeight = 0;
    Align align = Align::Left;
    Font font;
    std::int64_t foreColor = 0;
    std::int64_t backColor = NoColour;
    bool pageNumbers = false; ///< "%p" and "%P" filled at paint time
};

struct Page
{
    std::vector<PlacedItem> items;
};

struct Document
{
    int pageWidth = 0, pageHeight = 0;
    std::vector<Page> pages;
};

/// Lays the bound bands out on pages. A band is as tall as its design or as its growing
/// fields need; a band that does not fit goes to the next page; a group header stays
/// with its first detail; page breaks before or after a band as the design asks.
Document Paginate(const ReportLayout& layout, const std::vector<BoundBand>& flow, TextMeasurer& measurer);

inline Document LayOut(const ReportLayout& layout, const ReportData& data, TextMeasurer& measurer)
{
    return Paginate(layout, Bind(layout, data), measurer);
}

/// A line of a placed item as printed on page `page` (1-based) of `pages`.
QString printedLine(const PlacedItem& item, int line, int page, int pages);

/// A printed line of text where it starts: the left of its field (whatever the field's
/// alignment) and the top of the line, in twips from the page's top left corner.
struct PlacedText
{
    int x = 0, y = 0;
    QString text;
};

/// Every non-empty line of every page, top to bottom and left to right, page numbers
/// filled in.
std::vector<std::vector<PlacedText>> placedTexts(const Document& doc);

} // namespace reports
