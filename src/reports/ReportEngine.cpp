#include "reports/ReportEngine.h"

#include "runtime/VBFunctions.h"

#include <QHash>

#include <algorithm>

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

/// Binds one band: fields without a data member read the parent row, fields with one the
/// child row. A column the data lacks prints nothing.
BoundBand bindBand(const ReportLayout& layout, const ReportData& data, Section s, const ReportData::Values* parent,
                   const ReportData::Values* child)
{
    BoundBand b{s, &layout.band(s), {}};
    b.texts.reserve(b.band->controls.size());
    for (const Control& c : b.band->controls) {
        switch (c.kind) {
        case ControlKind::Label: b.texts.push_back(c.caption); break;
        case ControlKind::Field:
            if (!c.dataMember.isEmpty())
                b.texts.push_back(columnText(child, data.childColumn(c.dataField), c));
            else
                b.texts.push_back(columnText(parent, data.column(c.dataField), c));
            break;
        default: b.texts.push_back(QString());
        }
    }
    return b;
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
    for (const auto& row : data.rows) {
        if (!grouped) {
            if (detail)
                flow.push_back(bindBand(layout, data, Section::Detail, &row.values, &row.values));
            continue;
        }
        // A parent without children still prints its header and footer.
        if (header)
            flow.push_back(bindBand(layout, data, Section::GroupHeader, &row.values, nullptr));
        if (detail)
            for (const auto& child : row.children)
                flow.push_back(bindBand(layout, data, Section::Detail, &row.values, &child));
        if (footer)
            flow.push_back(bindBand(layout, data, Section::GroupFooter, &row.values, nullptr));
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

/// The lines of the texts wrapped so far in one layout, by field width, font and
/// breaking: a long report prints the same names, dates and quantities on every page.
class WrapMemo
{
public:
    QStringList wrap(const QString& text, int width, const Font& font, TextMeasurer& m, bool breakWords)
    {
        const quint64 key = (quint64(quint32(width)) << 32) | (quint64(quint32(font.size)) << 2) |
                            (font.bold ? 2u : 0u) | (breakWords ? 1u : 0u);
        QHash<QString, QStringList>& lines = m_lines[key];
        if (const auto it = lines.constFind(text); it != lines.constEnd())
            return *it;
        QStringList wrapped = wrapText(text, width, font, m, breakWords);
        if (lines.size() < 100000)
            lines.insert(text, wrapped);
        return wrapped;
    }

private:
    QHash<quint64, QHash<QString, QStringList>> m_lines;
};

/// Grows a band around its texts. A growing field takes as many lines as its text
/// needs; everything that lies wholly below it in the band moves down by its growth;
/// rules and boxes that reach the band's bottom stretch with it.
MeasuredBand measure(const ReportLayout& layout, const BoundBand& bb, TextMeasurer& m, bool pageBand,
                     WrapMemo* memo = nullptr)
{
    const Band& band = *bb.band;
    const auto& controls = band.controls;
    const size_t n = controls.size();
    MeasuredBand out;
    std::vector<int> growth(n, 0), shift(n, 0);
    std::vector<QStringList> lines(n);
    std::vector<int> lineHeights(n, 0);

    for (size_t i = 0; i < n; ++i) {
        const Control& c = controls[i];
        if (!c.visible || !isText(c.kind))
            continue;
        const int lh = m.lineHeight(c.font);
        lineHeights[i] = lh;
        const QString& text = bb.texts[i];
        if (pageBand && (text.contains(QLatin1String("%p")) || text.contains(QLatin1String("%P")))) {
            lines[i] = QStringList{text}; // filled and drawn at paint time
            continue;
        }
        // A fixed-height field keeps its first lines; a word is never cut there, so a
        // value a little wider than its column still prints whole.
        lines[i] = memo ? memo->wrap(text, c.width, c.font, m, c.canGrow && !pageBand)
                        : wrapText(text, c.width, c.font, m, c.canGrow && !pageBand);
        const int needed = static_cast<int>(lines[i].size()) * lh;
        if (c.canGrow && !pageBand) {
            growth[i] = std::max(0, needed - c.height);
        } else {
            const int fit = std::max(1, c.height / std::max(1, lh));
            if (lines[i].size() > fit)
                lines[i] = lines[i].mid(0, fit);
        }
    }

    // Controls in reading order from the top: each moves by the largest push of the
    // controls that end above it.
    std::vector<size_t> order(n);
    for (size_t i = 0; i < n; ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return controls[a].top < controls[b].top; });
    int bandGrowth = 0;
    for (size_t oi = 0; oi < n; ++oi) {
        const size_t i = order[oi];
        for (size_t oj = 0; oj < oi; ++oj) {
            const size_t j = order[oj];
            if (controls[j].top + controls[j].height <= controls[i].top)
                shift[i] = std::max(shift[i], shift[j] + growth[j]);
        }
        bandGrowth = std::max(bandGrowth, shift[i] + growth[i]);
    }
    out.height = band.height + bandGrowth;

    const int x0 = layout.leftMargin;
    for (size_t i = 0; i < n; ++i) {
        const Control& c = controls[i];
        if (!c.visible)
            continue;
        PlacedItem it;
        it.foreColor = c.foreColor;
        it.backColor = c.backColor;
        it.font = c.font;
        it.align = c.align;
        const int top = c.top + shift[i];
        if (isText(c.kind)) {
            if (lines[i].size() == 1 && lines[i].front().isEmpty() && c.backColor == NoColour)
                continue;
            it.kind = PlacedItem::Kind::Text;
            it.rect = QRect(x0 + c.left, top, c.width, c.height + growth[i]);
            it.lines = std::move(lines[i]);
            it.lineHeight = lineHeights[i];
            it.pageNumbers =
                pageBand && it.lines.size() == 1 &&
                (it.lines.front().contains(QLatin1String("%p")) || it.lines.front().contains(QLatin1String("%P")));
        } else {
            // Rules and boxes that reach the band's bottom follow it: a horizontal rule
            // moves down with the band, a vertical rule or a box stretches.
            const bool toBottom = c.top + c.height >= band.height - 15;
            int y = top, height = c.height;
            if (toBottom && c.height == 0)
                y = c.top + bandGrowth;
            else if (toBottom)
                height += bandGrowth - shift[i];
            it.kind = c.kind == ControlKind::Line ? PlacedItem::Kind::Line : PlacedItem::Kind::Box;
            // The rectangle runs corner to corner; a rule of width 0 is vertical.
            it.rect = QRect(QPoint(x0 + c.left, y), QPoint(x0 + c.left + c.width, y + height));
        }
        out.items.push_back(std::move(it));
    }
    return out;
}

class Paginator
{
public:
    Paginator(const ReportLayout& layout, TextMeasurer& m) : m_layout(layout), m_m(m)
    {
        m_header = measure(layout, BindStatic(layout, Section::PageHeader), m, true);
        m_footer = measure(layout, BindStatic(layout, Section::PageFooter), m, true);
        if (!bandPrints(layout.band(Section::PageHeader)))
            m_header = {};
        if (!bandPrints(layout.band(Section::PageFooter)))
            m_footer = {};
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
                measured[i] = measure(m_layout, flow[i], m_m, false, &m_wraps);
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

            place(band, m_y);
            m_y += band.height;
            m_hasBody = true;
            band = {}; // placed: free the memory of long documents
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

    void startPage(const MeasuredBand* reportHeader)
    {
        m_doc.pages.emplace_back();
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
    TextMeasurer& m_m;
    WrapMemo m_wraps;
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
