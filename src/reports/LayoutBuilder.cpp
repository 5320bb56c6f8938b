#include "reports/LayoutBuilder.h"

#include <QSet>

#include <algorithm>

namespace reports::design {

namespace {
constexpr int LinePitch = 300;  // one line of 9-point text and its leading
constexpr int TitlePitch = 420; // a line holding a title
constexpr int BandPadding = 45; // above the first line
constexpr Font TextFont{180, false};
constexpr Font HeadingFont{180, true};
constexpr Font TitleFont{280, true};
constexpr Font FooterFont{160, false};

Font fontFor(Section s, const Item& item)
{
    if (s == Section::PageFooter)
        return FooterFont;
    if (item.kind == ControlKind::Function)
        return HeadingFont;
    if (item.kind != ControlKind::Label)
        return TextFont;
    if (s == Section::ReportHeader && item.align == Align::Centre)
        return TitleFont;
    return s == Section::Detail ? TextFont : HeadingFont;
}

const char* prefixFor(ControlKind k)
{
    switch (k) {
    case ControlKind::Label: return "Label";
    case ControlKind::Field: return "TextBox";
    case ControlKind::Function: return "Function";
    case ControlKind::Line: return "Line";
    case ControlKind::Box: return "Shape";
    }
    return "Control";
}

int autoWidth(const Item& item, const std::vector<int>& sortedLefts, int full)
{
    const auto next = std::upper_bound(sortedLefts.begin(), sortedLefts.end(), item.left);
    if (next != sortedLefts.end())
        return *next - item.left;
    const int toEdge = full - item.left;
    if (item.align == Align::Left)
        return toEdge;
    if (item.align == Align::Centre && full - 2 * item.left > 0)
        return full - 2 * item.left;
    return std::min(1134, toEdge);
}

Control rule(ControlKind kind, int left, int top, int width, int height)
{
    Control c;
    c.kind = kind;
    c.left = left;
    c.top = top;
    c.width = width;
    c.height = height;
    return c;
}
} // namespace

Item L(const QString& caption, int left)
{
    Item i;
    i.kind = ControlKind::Label;
    i.text = caption;
    i.left = left;
    return i;
}

Item F(const char* field, int left)
{
    Item i;
    i.kind = ControlKind::Field;
    i.text = QString::fromUtf8(field);
    i.left = left;
    return i;
}

Item SumOf(const char* field, int left)
{
    Item i = F(field, left);
    i.kind = ControlKind::Function;
    i.total = Total::Sum;
    return i;
}

Item CountOf(const char* field, int left)
{
    Item i = SumOf(field, left);
    i.total = Total::Count;
    return i;
}

Builder::Builder(const char* name, const QString& title) : m_name(QString::fromLatin1(name)), m_title(title)
{
}

Builder& Builder::band(Section s, const BandSpec& spec)
{
    m_bands.emplace_back(s, spec);
    return *this;
}

Builder& Builder::groupValues(std::int64_t colour)
{
    m_groupColour = colour;
    return *this;
}

Builder& Builder::pageFooter(bool byLine, bool pageText, int pageTextLeft)
{
    m_byLine = byLine;
    m_pageText = pageText;
    m_pageTextLeft = pageTextLeft;
    return *this;
}

Builder& Builder::landscape()
{
    m_landscape = true;
    return *this;
}

ReportLayout Builder::build() const
{
    ReportLayout layout;
    layout.name = m_name;
    layout.title = m_title;
    if (m_landscape) {
        std::swap(layout.pageWidth, layout.pageHeight);
        layout.reportWidth = layout.pageWidth - layout.leftMargin - layout.rightMargin;
    }
    const int full = layout.reportWidth;

    std::vector<std::pair<Section, BandSpec>> bands = m_bands;
    BandSpec footer;
    footer.lines.push_back({});
    if (m_byLine)
        footer.lines[0].push_back(L(QStringLiteral("by Velmora"), 0));
    if (m_pageText)
        footer.lines[0].push_back(
            L(QStringLiteral("Pagina %p di %P"), m_pageTextLeft).right().w(layout.reportWidth - m_pageTextLeft));
    bands.emplace_back(Section::PageFooter, footer);

    bool grouped = false;
    for (const auto& [s, spec] : bands)
        grouped = grouped || s == Section::GroupHeader || s == Section::GroupFooter;

    for (const auto& [s, spec] : bands) {
        Band& band = layout.band(s);
        band.pageBreak = spec.pageBreak;
        int top = BandPadding;
        const int ruled = spec.rulesLine < 0 ? static_cast<int>(spec.lines.size()) - 1 : spec.rulesLine;
        int ruledTop = top;
        for (const Line& line : spec.lines) {
            int pitch = LinePitch;
            for (const Item& item : line)
                if (fontFor(s, item).size >= TitleFont.size)
                    pitch = TitlePitch;
            std::vector<int> lefts;
            for (const Item& item : line)
                lefts.push_back(item.left);
            std::sort(lefts.begin(), lefts.end());
            for (const Item& item : line) {
                Control c;
                c.kind = item.kind;
                c.name = item.name;
                c.left = item.left;
                c.top = top;
                c.height = pitch - BandPadding;
                c.width = item.width > 0 ? item.width : autoWidth(item, lefts, full);
                c.align = item.align;
                c.canGrow = item.grows;
                c.visible = !item.hidden;
                c.font = fontFor(s, item);
                if (item.kind == ControlKind::Label) {
                    c.caption = item.text;
                } else {
                    c.dataField = item.text;
                    c.dataFormat = item.format;
                    c.total = item.total;
                    if (s == Section::Detail && grouped && item.kind == ControlKind::Field)
                        c.dataMember = QStringLiteral("Dati");
                    if (s == Section::GroupHeader && item.kind == ControlKind::Field)
                        c.foreColor = m_groupColour;
                }
                band.controls.push_back(std::move(c));
            }
            if (&line - spec.lines.data() == ruled)
                ruledTop = top;
            top += pitch;
        }
        band.height = spec.lines.empty() ? 0 : top;

        // The ordinary ruling: under page and group headers, over group and report footers.
        if (s == Section::PageHeader || s == Section::GroupHeader)
            band.controls.push_back(rule(ControlKind::Line, 0, band.height - 15, full, 0));
        if (s == Section::GroupFooter || s == Section::ReportFooter)
            band.controls.push_back(rule(ControlKind::Line, 0, 15, full, 0));
        if (spec.columnRules && !spec.lines.empty()) {
            QSet<int> at(spec.extraRules.begin(), spec.extraRules.end());
            for (const Item& item : spec.lines[ruled])
                if (item.left > 0)
                    at.insert(item.left - 30);
            std::vector<int> sorted(at.begin(), at.end());
            std::sort(sorted.begin(), sorted.end());
            for (int x : sorted)
                band.controls.push_back(rule(ControlKind::Line, x, ruledTop - 30, 0, band.height - ruledTop + 30));
        }
        if (spec.frame)
            band.controls.push_back(rule(ControlKind::Box, 0, 15, full, band.height - 30));
    }

    // Names the design did not give: numbered per kind, skipping the given ones.
    QSet<QString> used;
    for (int i = 0; i < SectionCount; ++i)
        for (const Control& c : layout.band(static_cast<Section>(i)).controls)
            if (!c.name.isEmpty())
                used.insert(c.name.toLower());
    int next[5] = {1, 1, 1, 1, 1};
    for (int i = 0; i < SectionCount; ++i) {
        for (Control& c : layout.band(static_cast<Section>(i)).controls) {
            if (!c.name.isEmpty())
                continue;
            int& n = next[static_cast<int>(c.kind)];
            QString candidate;
            do
                candidate = QString::fromLatin1(prefixFor(c.kind)) + QString::number(n++);
            while (used.contains(candidate.toLower()));
            used.insert(candidate.toLower());
            c.name = candidate;
        }
    }
    return layout;
}

} // namespace reports::design
