#include "reports/ReportEngine.h"

#include "runtime/VBFunctions.h"

#include <QHash>

#include <algorithm>
#include <memory>

namespace reports {

// ---------------------------------------------------------------------------------------
// Wrapping

QStringList wrapText(const QString& text, int width, const Font& font, TextMeasurer& m, bool breakWords)
{
    QStringList out;
    if (text.isEmpty()) {
        out << QString();
        return out;
    }
    const int space = m.width(QStringLiteral(" "), font);
    QString normalised = text;
    normalised.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    const QStringList paragraphs = normalised.split(QLatin1Char('\n'));
    for (const QString& para : paragraphs) {
        const qsizetype first = out.size();
        QString line;
        int lineWidth = 0;
        const QStringList words = para.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString& word : words) {
            int w = m.width(word, font);
            if (!line.isEmpty() && lineWidth + space + w <= width) {
                line += QLatin1Char(' ') + word;
                lineWidth += space + w;
                continue;
            }
            if (!line.isEmpty()) {
                out << line;
                line.clear();
                lineWidth = 0;
            }
            if (w <= width || !breakWords) {
                line = word;
                lineWidth = w;
                continue;
            }
            // A word wider than the field: break it between characters.
            QString piece;
            for (const QChar ch : word) {
                const QString next = piece + ch;
                if (!piece.isEmpty() && m.width(next, font) > width) {
                    out << piece;
                    piece = ch;
                } else {
                    piece = next;
                }
            }
            line = piece;
            lineWidth = m.width(piece, font);
        }
        // A paragraph on one line keeps its blanks as written ("FORNITORE: ").
        out << (out.size() == first && !line.isEmpty() ? para : line);
    }
    return out;
}

// ---------------------------------------------------------------------------------------
// Binding

namespace {

/// A value as its control prints it: under the control's Format pattern when it has one.
QString valueText(const vb::Variant& v, const Control& c)
{
    return c.dataFormat.isEmpty() ? v.displayText() : vb::Format(v, c.dataFormat).displayText();
}

QString columnText(const ReportData::Values* values, int column, const Control& c)
{
    if (!values || column < 0 || column >= static_cast<int>(values->size()))
        return {};
    return valueText((*values)[column], c);
}

/// A band's controls with the columns they read, found once for all its occurrences:
/// fields without a data member read the parent row, fields with one the child row.
/// A column the data lacks prints nothing.
class BandBinder
{
public:
    BandBinder(const ReportLayout& layout, const ReportData& data, Section s) : m_section(s), m_band(&layout.band(s))
    {
        m_columns.reserve(m_band->controls.size());
        for (const Control& c : m_band->controls)
            m_columns.push_back(c.kind != ControlKind::Field ? -1
                                : c.dataMember.isEmpty()     ? data.column(c.dataField)
                                                             : data.childColumn(c.dataField));
    }

    BoundBand bind(const ReportData::Values* parent, const ReportData::Values* child) const
    {
        BoundBand b{m_section, m_band, {}};
        b.texts.reserve(m_band->controls.size());
        for (size_t i = 0; i < m_band->controls.size(); ++i) {
            const Control& c = m_band->controls[i];
            switch (c.kind) {
            case ControlKind::Label: b.texts.push_back(c.caption); break;
            case ControlKind::Field:
                b.texts.push_back(columnText(c.dataMember.isEmpty() ? parent : child, m_columns[i], c));
                break;
            default: b.texts.push_back(QString());
            }
        }
        return b;
    }

private:
    Section m_section;
    const Band* m_band;
    std::vector<int> m_columns;
};

BoundBand bindBand(const ReportLayout& layout, const ReportData& data, Section s, const ReportData::Values* parent,
                   const ReportData::Values* child)
{
    return BandBinder(layout, data, s).bind(parent, child);
}

/// Sums and counts over all parent rows (every row of a flat document).
QString totalText(const Control& c, const ReportData& data)
{
    const int col = data.column(c.dataField);
    double sum = 0;
    int count = 0;
    if (col >= 0) {
        for (const auto& row : data.rows) {
            const vb::Variant& v = row.values[col];
            if (v.isNull() || v.isEmpty())
                continue;
            ++count;
            if (c.total == Total::Sum)
                sum += v.toDouble();
        }
    }
    return valueText(c.total == Total::Count ? vb::Variant(count) : vb::Variant(sum), c);
}

bool bandPrints(const Band& b)
{
    return b.visible && b.height > 0;
}

} // namespace

BoundBand BindStatic(const ReportLayout& layout, Section section)
{
    static const ReportData none;
    return bindBand(layout, none, section, nullptr, nullptr);
}

std::vector<BoundBand> Bind(const ReportLayout& layout, const ReportData& data)
{
    std::vector<BoundBand> flow;
    const bool grouped = layout.isGrouped();
    if (bandPrints(layout.band(Section::ReportHeader)))
        flow.push_back(bindBand(layout, data, Section::ReportHeader, nullptr, nullptr));

    const bool header = bandPrints(layout.band(Section::GroupHeader));
    const bool footer = bandPrints(layout.band(Section::GroupFooter));
    const bool detail = bandPrints(layout.band(Section::Detail));
    const BandBinder headers(layout, data, Section::GroupHeader), details(layout, data, Section::Detail),
        footers(layout, data, Section::GroupFooter);
    size_t bands = 0;
    for (const auto& row : data.rows)
        bands += grouped ? (header ? 1 : 0) + (detail ? row.children.size() : 0) + (footer ? 1 : 0) : (detail ? 1 : 0);
    flow.reserve(bands + 2);
    for (const auto& row : data.rows) {
        if (!grouped) {
            if (detail)
                flow.push_back(details.bind(&row.values, &row.values));
            continue;
        }
        // A parent without children still prints its header and footer.
        if (header)
            flow.push_back(headers.bind(&row.values, nullptr));
        if (detail)
            for (const auto& child : row.children)
                flow.push_back(details.bind(&row.values, &child));
        if (footer)
            flow.push_back(footers.bind(&row.values, nullptr));
    }

    if (bandPrints(layout.band(Section::ReportFooter))) {
        BoundBand b = bindBand(layout, data, Section::ReportFooter, nullptr, nullptr);
        for (size_t i = 0; i < b.band->controls.size(); ++i)
            if (b.band->controls[i].kind == ControlKind::Function)
                b.texts[i] = totalText(b.band->controls[i], data);
        flow.push_back(std::move(b));
    }
    return flow;
}

// ---------------------------------------------------------------------------------------
// Pagination

namespace {

struct MeasuredBand
{
    int height = 0;
    std::vector<PlacedItem> items; ///< x in page twips, y relative to the band's top
};

bool isText(ControlKind k)
{
    return k == ControlKind::Label || k == ControlKind::Field || k == ControlKind::Function;
}

/// What measuring the occurrences of one band needs of its design, worked out once per
/// layout: the line height of each text, the controls in reading order from the top,
/// and per control the lines of the texts it wrapped so far (a long report prints the
/// same names, dates and quantities on every page).
class BandMeasurer
{
public:
    BandMeasurer(const ReportLayout& layout, const Band& band, TextMeasurer& m, bool pageBand)
        : m_layout(layout), m_band(band), m_m(m), m_pageBand(pageBand)
    {
        const auto& controls = band.controls;
        const size_t n = controls.size();
        m_lineHeights.assign(n, 0);
        for (size_t i = 0; i < n; ++i)
            if (controls[i].visible && isText(controls[i].kind))
                m_lineHeights[i] = m.lineHeight(controls[i].font);
        m_order.resize(n);
        for (size_t i = 0; i < n; ++i)
            m_order[i] = i;
        std::stable_sort(m_order.begin(), m_order.end(),
                         [&](size_t a, size_t b) { return controls[a].top < controls[b].top; });
        if (!pageBand)
            m_wraps.resize(n);
        m_growth.resize(n);
        m_shift.resize(n);
        m_lines.resize(n);
    }

    /// Grows the band around its texts. A growing field takes as many lines as its text
    /// needs; everything that lies wholly below it in the band moves down by its growth;
    /// rules and boxes that reach the band's bottom stretch with it.
    MeasuredBand measure(const BoundBand& bb)
    {
        const auto& controls = m_band.controls;
        const size_t n = controls.size();
        MeasuredBand out;
        std::fill(m_growth.begin(), m_growth.end(), 0);
        std::fill(m_shift.begin(), m_shift.end(), 0);

        for (size_t i = 0; i < n; ++i) {
            const Control& c = controls[i];
            m_lines[i].clear();
            if (!c.visible || !isText(c.kind))
                continue;
            const int lh = m_lineHeights[i];
            const QString& text = bb.texts[i];
            if (m_pageBand && (text.contains(QLatin1String("%p")) || text.contains(QLatin1String("%P")))) {
                m_lines[i] = QStringList{text}; // filled and drawn at paint time
                continue;
            }
            // A fixed-height field keeps its first lines; a word is never cut there, so a
            // value a little wider than its column still prints whole.
            const bool grows = c.canGrow && !m_pageBand;
            m_lines[i] = wrap(i, text, c, grows);
            const int needed = static_cast<int>(m_lines[i].size()) * lh;
            if (grows) {
                m_growth[i] = std::max(0, needed - c.height);
            } else {
                const int fit = std::max(1, c.height / std::max(1, lh));
                if (m_lines[i].size() > fit)
                    m_lines[i] = m_lines[i].mid(0, fit);
            }
        }

        // Controls in reading order from the top: each moves by the largest push of the
        // controls that end above it.
        int bandGrowth = 0;
        for (size_t oi = 0; oi < n; ++oi) {
            const size_t i = m_order[oi];
            for (size_t oj = 0; oj < oi; ++oj) {
                const size_t j = m_order[oj];
                if (controls[j].top + controls[j].height <= controls[i].top)
                    m_shift[i] = std::max(m_shift[i], m_shift[j] + m_growth[j]);
            }
            bandGrowth = std::max(bandGrowth, m_shift[i] + m_growth[i]);
        }
        out.height = m_band.height + bandGrowth;

        const int x0 = m_layout.leftMargin;
        out.items.reserve(n);
        for (size_t i = 0; i < n; ++i) {
            const Control& c = controls[i];
            if (!c.visible)
                continue;
            PlacedItem it;
            it.foreColor = c.foreColor;
            it.backColor = c.backColor;
            it.font = c.font;
            it.align = c.align;
            const int top = c.top + m_shift[i];
            if (isText(c.kind)) {
                if (m_lines[i].size() == 1 && m_lines[i].constFirst().isEmpty() && c.backColor == NoColour)
                    continue;
                it.kind = PlacedItem::Kind::Text;
                it.rect = QRect(x0 + c.left, top, c.width, c.height + m_growth[i]);
                it.lines = std::move(m_lines[i]);
                it.lineHeight = m_lineHeights[i];
                it.pageNumbers = m_pageBand && it.lines.size() == 1 &&
                                 (it.lines.constFirst().contains(QLatin1String("%p")) ||
                                  it.lines.constFirst().contains(QLatin1String("%P")));
            } else {
                // Rules and boxes that reach the band's bottom follow it: a horizontal rule
                // moves down with the band, a vertical rule or a box stretches.
                const bool toBottom = c.top + c.height >= m_band.height - 15;
                int y = top, height = c.height;
                if (toBottom && c.height == 0)
                    y = c.top + bandGrowth;
                else if (toBottom)
                    height += bandGrowth - m_shift[i];
                it.kind = c.kind == ControlKind::Line ? PlacedItem::Kind::Line : PlacedItem::Kind::Box;
                // The rectangle runs corner to corner; a rule of width 0 is vertical.
                it.rect = QRect(QPoint(x0 + c.left, y), QPoint(x0 + c.left + c.width, y + height));
            }
            out.items.push_back(std::move(it));
        }
        return out;
    }

private:
    QStringList wrap(size_t i, const QString& text, const Control& c, bool grows)
    {
        if (m_wraps.empty())
            return wrapText(text, c.width, c.font, m_m, grows);
        QHash<QString, QStringList>& lines = m_wraps[i];
        if (const auto it = lines.constFind(text); it != lines.constEnd())
            return *it;
        QStringList wrapped = wrapText(text, c.width, c.font, m_m, grows);
        if (lines.size() < 100000)
            lines.insert(text, wrapped);
        return wrapped;
    }

    const ReportLayout& m_layout;
    const Band& m_band;
    TextMeasurer& m_m;
    bool m_pageBand;
    std::vector<int> m_lineHeights;
    std::vector<size_t> m_order;
    std::vector<QHash<QString, QStringList>> m_wraps;
    // Reused from one occurrence to the next.
    std::vector<int> m_growth, m_shift;
    std::vector<QStringList> m_lines;
};

MeasuredBand measurePageBand(const ReportLayout& layout, Section s, TextMeasurer& m)
{
    if (!bandPrints(layout.band(s)))
        return {};
    return BandMeasurer(layout, layout.band(s), m, true).measure(BindStatic(layout, s));
}

class Paginator
{
public:
    Paginator(const ReportLayout& layout, TextMeasurer& m) : m_layout(layout)
    {
        m_header = measurePageBand(layout, Section::PageHeader, m);
        m_footer = measurePageBand(layout, Section::PageFooter, m);
        for (int s = 0; s < SectionCount; ++s)
            m_bands[s] = std::make_unique<BandMeasurer>(layout, layout.band(static_cast<Section>(s)), m, false);
        m_doc.pageWidth = layout.pageWidth;
        m_doc.pageHeight = layout.pageHeight;
        m_bottom = layout.pageHeight - layout.bottomMargin - m_footer.height;
    }

    Document run(const std::vector<BoundBand>& flow)
    {
        std::vector<MeasuredBand> measured(flow.size());
        std::vector<bool> done(flow.size(), false);
        auto get = [&](size_t i) -> MeasuredBand& {
            if (!done[i]) {
                measured[i] = m_bands[static_cast<int>(flow[i].section)]->measure(flow[i]);
                done[i] = true;
            }
            return measured[i];
        };

        size_t i = 0;
        if (!flow.empty() && flow.front().section == Section::ReportHeader) {
            // The report header opens the first page, above its page header.
            startPage(&get(0));
            measured[0] = {};
            i = 1;
        } else {
            startPage(nullptr);
        }

        bool breakPending = false;
        for (; i < flow.size(); ++i) {
            MeasuredBand& band = get(i);
            const Band& design = *flow[i].band;
            int needed = band.height;
            // A group header is kept with its first detail.
            if (flow[i].section == Section::GroupHeader && i + 1 < flow.size() &&
                flow[i + 1].section == Section::Detail)
                needed += get(i + 1).height;

            if (m_hasBody && (breakPending || design.pageBreak == PageBreak::Before))
                newPage();
            else if (m_hasBody && m_y + needed > m_bottom)
                newPage();
            breakPending = design.pageBreak == PageBreak::After;

            const int height = band.height;
            place(std::move(band), m_y); // placed: frees the memory of long documents
            m_y += height;
            m_hasBody = true;
        }
        endPage();
        return std::move(m_doc);
    }

private:
    void place(const MeasuredBand& band, int y)
    {
        auto& items = m_doc.pages.back().items;
        for (PlacedItem it : band.items) {
            it.rect.translate(0, y);
            items.push_back(std::move(it));
        }
    }

    void place(MeasuredBand&& band, int y)
    {
        auto& items = m_doc.pages.back().items;
        for (PlacedItem& it : band.items) {
            it.rect.translate(0, y);
            items.push_back(std::move(it));
        }
        band = {};
    }

    void startPage(const MeasuredBand* reportHeader)
    {
        const size_t last = m_doc.pages.empty() ? 0 : m_doc.pages.back().items.size();
        m_doc.pages.emplace_back();
        m_doc.pages.back().items.reserve(last); // pages of a long document are alike
        m_y = m_layout.topMargin;
        if (reportHeader) {
            place(*reportHeader, m_y);
            m_y += reportHeader->height;
        }
        place(m_header, m_y);
        m_y += m_header.height;
        m_hasBody = false;
    }

    void endPage() { place(m_footer, m_bottom); }

    void newPage()
    {
        endPage();
        startPage(nullptr);
    }

    const ReportLayout& m_layout;
    std::unique_ptr<BandMeasurer> m_bands[SectionCount];
    MeasuredBand m_header, m_footer;
    Document m_doc;
    int m_y = 0;
    int m_bottom = 0;
    bool m_hasBody = false;
};

} // namespace

Document Paginate(const ReportLayout& layout, const std::vector<BoundBand>& flow, TextMeasurer& measurer)
{
    return Paginator(layout, measurer).run(flow);
}

QString printedLine(const PlacedItem& item, int line, int page, int pages)
{
    QString text = item.lines.value(line);
    if (item.pageNumbers)
        text.replace(QLatin1String("%p"), QString::number(page)).replace(QLatin1String("%P"), QString::number(pages));
    return text;
}

std::vector<std::vector<PlacedText>> placedTexts(const Document& doc)
{
    std::vector<std::vector<PlacedText>> out;
    const int total = static_cast<int>(doc.pages.size());
    for (int p = 0; p < total; ++p) {
        std::vector<PlacedText> page;
        for (const PlacedItem& it : doc.pages[p].items) {
            if (it.kind != PlacedItem::Kind::Text)
                continue;
            for (int i = 0; i < it.lines.size(); ++i) {
                QString text = printedLine(it, i, p + 1, total);
                if (!text.isEmpty())
                    page.push_back({it.rect.left(), it.rect.top() + i * it.lineHeight, std::move(text)});
            }
        }
        std::stable_sort(page.begin(), page.end(),
                         [](const PlacedText& a, const PlacedText& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
        out.push_back(std::move(page));
    }
    return out;
}

} // namespace reports
