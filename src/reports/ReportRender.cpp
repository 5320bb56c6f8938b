#include "reports/ReportRender.h"

#include "controls/ScreenFont.h"

#include <QFile>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

#include <cmath>
#include <unordered_map>

namespace reports {

QString reportFontFamily()
{
    return vb::bundledSansFamily();
}

QFont qtFont(const Font& font)
{
    QFont f(reportFontFamily());
    f.setPixelSize(font.size);
    f.setBold(font.bold);
    // Unhinted outlines scale linearly: the widths measured are the widths printed.
    f.setHintingPreference(QFont::PreferNoHinting);
    f.setStyleStrategy(QFont::NoFontMerging);
    return f;
}

QFontMetricsF& QtTextMeasurer::metrics(const Font& font)
{
    const int key = font.size * 2 + (font.bold ? 1 : 0);
    auto it = m_metrics.find(key);
    if (it == m_metrics.end())
        it = m_metrics.insert(key, std::make_shared<QFontMetricsF>(qtFont(font)));
    return **it;
}

int QtTextMeasurer::lineHeight(const Font& font)
{
    return static_cast<int>(std::ceil(metrics(font).lineSpacing()));
}

int QtTextMeasurer::width(const QString& text, const Font& font)
{
    QHash<QString, int>& cache = m_widths[font.size * 2 + (font.bold ? 1 : 0)];
    if (const auto it = cache.constFind(text); it != cache.constEnd())
        return *it;
    if (cache.size() > 100000)
        cache.clear();
    const int w = static_cast<int>(std::ceil(metrics(font).horizontalAdvance(text)));
    cache.insert(text, w);
    return w;
}

namespace {

QColor vbColour(std::int64_t c)
{
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF), static_cast<int>((c >> 16) & 0xFF));
}

Qt::Alignment qtAlign(Align a)
{
    switch (a) {
    case Align::Right: return Qt::AlignRight | Qt::AlignTop;
    case Align::Centre: return Qt::AlignHCenter | Qt::AlignTop;
    default: return Qt::AlignLeft | Qt::AlignTop;
    }
}

/// A font as painted, with what its lines need to be placed.
struct PaintFont
{
    PaintFont(const QFont& f, const QPaintDevice* device) : font(f), metrics(f, device) { }
    QFont font;
    QFontMetricsF metrics;
    QHash<QString, qreal> advances; ///< of the right-aligned and centred lines
};

/// What the painter holds between items: setting a font or a pen the painter already
/// has costs a font look-up and a state change in the file, once per text otherwise.
struct PaintState
{
    std::unordered_map<int, PaintFont> fonts;
    PaintFont* font = nullptr;
    enum class Pen { None, Rule, Text } pen = Pen::None;
    QRgb textColour = 0;
};

/// Whether a line prints as it is written: no tab, control character or line separator
/// (which drawing in a rectangle turns into blanks or breaks) and no right-to-left script.
bool plainLine(const QString& text)
{
    for (const QChar ch : text) {
        const char16_t c = ch.unicode();
        if (c < 0x20 || (c >= 0x7F && c < 0xA0) || c >= 0x0590)
            return false;
    }
    return true;
}

/// Draws one line of a text where drawText(rect, alignment | Qt::TextDontClip) puts it,
/// without laying it out again: its baseline the font's ascent below the rectangle's
/// top; its start at the left, or its end (trailing blanks included, "FORNITORE: ") at
/// the right, or its middle in the middle.
void drawLine(QPainter& p, PaintFont& f, const QRect& r, Align align, const QString& text)
{
    if (!plainLine(text)) {
        p.drawText(r, qtAlign(align) | Qt::TextDontClip, text);
        return;
    }
    qreal x = r.left();
    if (align != Align::Left) {
        auto it = f.advances.constFind(text);
        if (it == f.advances.constEnd()) {
            if (f.advances.size() > 10000)
                f.advances.clear();
            it = f.advances.insert(text, f.metrics.horizontalAdvance(text));
        }
        x += align == Align::Right ? r.width() - *it : (r.width() - *it) / 2;
    }
    p.drawText(QPointF(x, r.top() + f.metrics.ascent()), text);
}

void paintItems(QPainter& p, const Page& page, int number, int total, PaintState& st)
{
    QPen rule(Qt::black);
    rule.setWidth(15); // about a quarter of a millimetre
    for (const PlacedItem& it : page.items) {
        switch (it.kind) {
        case PlacedItem::Kind::Line:
        case PlacedItem::Kind::Box:
            if (st.pen != PaintState::Pen::Rule) {
                p.setPen(rule);
                st.pen = PaintState::Pen::Rule;
            }
            if (it.kind == PlacedItem::Kind::Line) {
                p.drawLine(it.rect.topLeft(), it.rect.bottomRight());
            } else {
                p.setBrush(Qt::NoBrush);
                p.drawRect(QRect(it.rect.topLeft(), it.rect.bottomRight()));
            }
            break;
        case PlacedItem::Kind::Text: {
            if (it.backColor != NoColour)
                p.fillRect(it.rect, vbColour(it.backColor));
            const int key = it.font.size * 2 + (it.font.bold ? 1 : 0);
            if (!st.font || st.font->font.pixelSize() != it.font.size || st.font->font.bold() != it.font.bold) {
                auto f = st.fonts.find(key);
                if (f == st.fonts.end())
                    f = st.fonts.try_emplace(key, qtFont(it.font), p.device()).first;
                p.setFont(f->second.font);
                st.font = &f->second;
            }
            const QColor colour = vbColour(it.foreColor);
            if (st.pen != PaintState::Pen::Text || st.textColour != colour.rgb()) {
                p.setPen(colour);
                st.pen = PaintState::Pen::Text;
                st.textColour = colour.rgb();
            }
            for (int i = 0; i < it.lines.size(); ++i) {
                const QRect line(it.rect.left(), it.rect.top() + i * it.lineHeight, it.rect.width(), it.lineHeight);
                drawLine(p, *st.font, line, it.align, printedLine(it, i, number, total));
            }
            break;
        }
        }
    }
}

} // namespace

void paintPage(QPainter& p, const Page& page, int number, int total)
{
    PaintState state;
    paintItems(p, page, number, total, state);
}

bool render(QPagedPaintDevice& device, const Document& doc)
{
    QPainter p;
    if (!p.begin(&device))
        return false;
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    const double sx = device.logicalDpiX() / 1440.0;
    const double sy = device.logicalDpiY() / 1440.0;
    PaintState state;
    const int total = static_cast<int>(doc.pages.size());
    for (int i = 0; i < total; ++i) {
        if (i > 0 && !device.newPage())
            return false;
        p.save();
        p.scale(sx, sy);
        paintItems(p, doc.pages[i], i + 1, total, state);
        p.restore(); // back to the painter's own font and pen
        state.font = nullptr;
        state.pen = PaintState::Pen::None;
    }
    return p.end();
}

QPageLayout pageLayout(const Document& doc)
{
    const auto orientation = doc.pageWidth > doc.pageHeight ? QPageLayout::Landscape : QPageLayout::Portrait;
    return QPageLayout(QPageSize(QPageSize::A4), orientation, QMarginsF(0, 0, 0, 0));
}

bool writePdf(const Document& doc, const QString& path, const QString& title)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QPdfWriter pdf(&file);
    pdf.setCreator(QStringLiteral("Velmora"));
    pdf.setTitle(title);
    pdf.setPageLayout(pageLayout(doc));
    return render(pdf, doc);
}

} // namespace reports
