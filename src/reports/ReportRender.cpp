#include "reports/ReportRender.h"

#include "controls/ScreenFont.h"

#include <QFile>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

#include <cmath>

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

/// What the painter holds between items: setting a font or a pen the painter already
/// has costs a font look-up and a state change in the file, once per text otherwise.
struct PaintState
{
    QHash<int, QFont> fonts;
    int font = -1;
    enum class Pen { None, Rule, Text } pen = Pen::None;
    QRgb textColour = 0;
};

void paintPage(QPainter& p, const Page& page, int number, int total, PaintState& st)
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
            if (key != st.font) {
                auto f = st.fonts.find(key);
                if (f == st.fonts.end())
                    f = st.fonts.insert(key, qtFont(it.font));
                p.setFont(*f);
                st.font = key;
            }
            const QColor colour = vbColour(it.foreColor);
            if (st.pen != PaintState::Pen::Text || st.textColour != colour.rgb()) {
                p.setPen(colour);
                st.pen = PaintState::Pen::Text;
                st.textColour = colour.rgb();
            }
            for (int i = 0; i < it.lines.size(); ++i) {
                const QRect line(it.rect.left(), it.rect.top() + i * it.lineHeight, it.rect.width(), it.lineHeight);
                p.drawText(line, qtAlign(it.align) | Qt::TextDontClip, printedLine(it, i, number, total));
            }
            break;
        }
        }
    }
}

} // namespace

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
        paintPage(p, doc.pages[i], i + 1, total, state);
        p.restore(); // back to the painter's own font and pen
        state.font = -1;
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
