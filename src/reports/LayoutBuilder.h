#pragma once
/// @file LayoutBuilder.h
/// A compact way to write the 21 designs: each band as lines of items, each item a
/// label, a field or a total at its offset from the left margin. The builder gives the
/// lines their height, the items their width (up to the next item of the line) and
/// their names, and adds the ordinary ruling and the page footer.

#include "reports/ReportLayout.h"

#include <initializer_list>
#include <vector>

namespace reports::design {

struct Item
{
    ControlKind kind = ControlKind::Label;
    QString text; ///< caption or data field
    int left = 0;
    Align align = Align::Left;
    bool grows = false;
    bool hidden = false;
    Total total = Total::Sum;
    /// 0: up to the next item of the line; the last item of a line reaches the right
    /// edge when left-aligned, is centred on the page when centred, and is 1134 wide
    /// (or up to the edge) otherwise.
    int width = 0;
    QString name;   ///< empty: numbered by the builder
    QString format; ///< the field's Format pattern

    Item right() const
    {
        return with([](Item& i) { i.align = Align::Right; });
    }
    Item centre() const
    {
        return with([](Item& i) { i.align = Align::Centre; });
    }
    Item grow() const
    {
        return with([](Item& i) { i.grows = true; });
    }
    Item hide() const
    {
        return with([](Item& i) { i.hidden = true; });
    }
    Item w(int width) const
    {
        return with([width](Item& i) { i.width = width; });
    }
    Item as(const char* n) const
    {
        return with([n](Item& i) { i.name = QString::fromLatin1(n); });
    }
    Item fmt(const char* f) const
    {
        return with([f](Item& i) { i.format = QString::fromUtf8(f); });
    }

private:
    template <typename F> Item with(F f) const
    {
        Item copy = *this;
        f(copy);
        return copy;
    }
};

Item L(const QString& caption, int left);
Item F(const char* field, int left);
Item SumOf(const char* field, int left);
Item CountOf(const char* field, int left);

using Line = std::vector<Item>;

struct BandSpec
{
    BandSpec() = default;
    BandSpec(std::initializer_list<Line> l) : lines(l) { }
    std::vector<Line> lines;
    PageBreak pageBreak = PageBreak::None;
    bool columnRules = false; ///< "vertical rules separate the columns"
    bool frame = false;       ///< "boxes frame the fields"
    int rulesLine = -1;       ///< the line whose columns are ruled; -1 the last
    std::vector<int> extraRules;

    BandSpec newPage(PageBreak b) const
    {
        BandSpec c = *this;
        c.pageBreak = b;
        return c;
    }
    BandSpec rules(std::vector<int> extra = {}, int line = -1) const
    {
        BandSpec c = *this;
        c.columnRules = true;
        c.extraRules = std::move(extra);
        c.rulesLine = line;
        return c;
    }
    BandSpec framed() const
    {
        BandSpec c = *this;
        c.frame = true;
        return c;
    }
};

class Builder
{
public:
    Builder(const char* name, const QString& title);
    Builder& band(Section s, const BandSpec& spec);
    /// The colour of the values of the group header (192 dark red, 128 maroon).
    Builder& groupValues(std::int64_t colour);
    /// The page footer: "by Velmora" left (unless `byLine` is false) and the page text.
    Builder& pageFooter(bool byLine, bool pageText, int pageTextLeft = 8504);
    /// An A4 page turned on its side, the design's width following it (the whole chart).
    Builder& landscape();
    ReportLayout build() const;

private:
    QString m_name, m_title;
    std::vector<std::pair<Section, BandSpec>> m_bands;
    std::int64_t m_groupColour = 0;
    bool m_byLine = true, m_pageText = true;
    int m_pageTextLeft = 8504;
    bool m_landscape = false;
};

} // namespace reports::design
