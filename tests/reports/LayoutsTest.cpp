// The 21 documents laid out with rows in every column they print, and spot checks of
// places, colours, page marks and totals as the documents are designed.
#include "reports/LayoutCatalogue.h"
#include "reports/ReportRender.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace reports;
using vb::Variant;

namespace {

constexpr int Margin = 283; // the left margin every design is offset by

/// Rows for a design: two parents, the first with two children, the second with none,
/// every bound column holding "{column}" (numbers for the totals' columns).
ReportData sampleData(const ReportLayout& l, int parents = 2)
{
    ReportData d;
    auto addColumn = [](QStringList& cols, const QString& name) {
        for (const QString& c : cols)
            if (c.compare(name, Qt::CaseInsensitive) == 0)
                return;
        cols << name;
    };
    QStringList totals;
    for (int s = 0; s < SectionCount; ++s) {
        for (const Control& c : l.band(static_cast<Section>(s)).controls) {
            if (c.dataField.isEmpty())
                continue;
            if (c.kind == ControlKind::Function) {
                addColumn(d.columns, c.dataField);
                totals << c.dataField.toLower();
            } else if (!c.dataMember.isEmpty()) {
                addColumn(d.childColumns, c.dataField);
            } else {
                addColumn(d.columns, c.dataField);
            }
        }
    }
    auto values = [&](const QStringList& cols, int n) {
        ReportData::Values v;
        for (const QString& c : cols)
            v.push_back(totals.contains(c.toLower()) ? Variant(n + 2) : Variant(c + QString::number(n)));
        return v;
    };
    for (int p = 0; p < parents; ++p) {
        ReportData::Row row;
        row.values = values(d.columns, p);
        if (p == 0 && !d.childColumns.isEmpty())
            row.children = {values(d.childColumns, 10), values(d.childColumns, 11)};
        d.rows.push_back(std::move(row));
    }
    return d;
}

QStringList textsOf(const Document& doc)
{
    QStringList out;
    for (const auto& page : placedTexts(doc))
        for (const PlacedText& t : page)
            out << t.text;
    return out;
}

const PlacedItem* itemWith(const Document& doc, const QString& text, int page = 0)
{
    for (const PlacedItem& it : doc.pages[page].items)
        if (it.kind == PlacedItem::Kind::Text && it.lines.join(' ') == text)
            return &it;
    return nullptr;
}

} // namespace

TEST(Layouts, EveryDocumentLaysOutItsRowsOnThePage)
{
    QtTextMeasurer m;
    for (const QString& name : LayoutNames()) {
        SCOPED_TRACE(name.toStdString());
        const ReportLayout l = *MakeLayout(name);
        EXPECT_EQ(l.name, name);
        const ReportData data = sampleData(l);
        const Document doc = LayOut(l, data, m);
        ASSERT_FALSE(doc.pages.empty());
        // Every visible bound field of the group header and detail prints its value, a
        // narrow column breaking it over lines.
        QStringList texts;
        for (const Page& page : doc.pages)
            for (const PlacedItem& it : page.items)
                texts << it.lines.join(QString());
        for (Section s : {Section::GroupHeader, Section::Detail}) {
            for (const Control& c : l.band(s).controls) {
                if (c.kind != ControlKind::Field || !c.visible)
                    continue;
                const QString expected = c.dataField + (c.dataMember.isEmpty() ? "0" : "10");
                EXPECT_TRUE(texts.contains(expected)) << c.name.toStdString() << " " << expected.toStdString();
            }
        }
        // Nothing starts outside the paper.
        for (const Page& page : doc.pages) {
            for (const PlacedItem& it : page.items) {
                EXPECT_GE(it.rect.left(), Margin);
                EXPECT_LE(it.rect.left(), Margin + l.reportWidth);
                EXPECT_GE(it.rect.top(), l.topMargin);
                EXPECT_LE(it.rect.top(), l.pageHeight - l.bottomMargin);
            }
        }
    }
}

TEST(Layouts, PlacesAndThePageTextAtTheRightMargin)
{
    QtTextMeasurer m;
    const ReportLayout l = *MakeLayout("DataReport1");
    const Document doc = LayOut(l, sampleData(l, 1), m);
    const auto pages = placedTexts(doc);
    ASSERT_EQ(pages.size(), 1u);
    auto at = [&](const QString& text) -> const PlacedText* {
        for (const PlacedText& t : pages[0])
            if (t.text == text)
                return &t;
        return nullptr;
    };
    ASSERT_TRUE(at("DESCRIZIONE") && at("FORNITORE") && at("RICAMBI"));
    EXPECT_EQ(at("RICAMBI")->x, Margin);
    EXPECT_EQ(at("DESCRIZIONE")->x, Margin + 2987);
    EXPECT_EQ(at("FORNITORE")->x, Margin + 8934);
    EXPECT_EQ(at("DESCRIZIONE")->y, at("FORNITORE")->y);
    // The page text is right-aligned in a field that ends at the right margin.
    const PlacedItem* page = itemWith(doc, "Pagina %p di %P");
    ASSERT_TRUE(page);
    EXPECT_EQ(page->align, Align::Right);
    EXPECT_EQ(page->rect.left(), Margin + 8504);
    EXPECT_EQ(page->rect.left() + page->rect.width(), Margin + l.reportWidth);
    EXPECT_EQ(at("Pagina 1 di 1")->x, Margin + 8504);
    EXPECT_FALSE(at("by Velmora"));
}

TEST(Layouts, GroupValuesPrintInTheirColours)
{
    QtTextMeasurer m;
    struct Case
    {
        const char* report;
        const char* field;
        std::int64_t colour;
    };
    // 192 is dark red, 128 maroon; other documents print their values in black.
    for (const Case& c : {Case{"DataReport2", "Operatore", 192}, Case{"DataReport9", "Macchina", 192},
                          Case{"DataReport17", "Ricambi", 192}, Case{"DataReport14", "Macchina", 128},
                          Case{"DataReport8", "Reparto", 0}}) {
        SCOPED_TRACE(c.report);
        const ReportLayout l = *MakeLayout(c.report);
        const Document doc = LayOut(l, sampleData(l), m);
        const PlacedItem* it = itemWith(doc, QString::fromLatin1(c.field) + "0");
        ASSERT_TRUE(it);
        EXPECT_EQ(it->foreColor, c.colour);
    }
}

TEST(Layouts, NewPagePerMachineAndTotalsOverAllGroups)
{
    QtTextMeasurer m;
    // DataReport9 starts each machine on a page of its own.
    const ReportLayout r9 = *MakeLayout("DataReport9");
    const auto pages = placedTexts(LayOut(r9, sampleData(r9, 3), m));
    ASSERT_EQ(pages.size(), 3u);
    EXPECT_EQ(pages[2].back().text, "Pagina 3 di 3");

    // DataReport11's report footer counts the parts' groups and sums their counts.
    const ReportLayout r11 = *MakeLayout("DataReport11");
    const QStringList texts = textsOf(LayOut(r11, sampleData(r11, 3), m));
    const int count = static_cast<int>(texts.indexOf("CONTEGGIO DI RICAMBI N°"));
    const int sum = static_cast<int>(texts.indexOf("TOTALE MATERIALI PRESENTI N°"));
    ASSERT_GE(count, 0);
    ASSERT_GE(sum, 0);
    EXPECT_EQ(texts[count + 1], "3");     // three parents
    EXPECT_EQ(texts[sum + 1], "9");       // 2 + 3 + 4
}

TEST(Layouts, PdfHasOnePagePerLaidOutPage)
{
    QtTextMeasurer m;
    const ReportLayout l = *MakeLayout("DataReport9");
    const Document doc = LayOut(l, sampleData(l, 3), m);
    QTemporaryDir dir;
    const QString path = dir.filePath("r9.pdf");
    ASSERT_TRUE(writePdf(doc, path, l.title));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray pdf = f.readAll();
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    EXPECT_EQ(pdf.count("/Type /Page\n"), 3);
    // A folder that does not exist gives false, not a half-written file.
    EXPECT_FALSE(writePdf(doc, dir.filePath("missing/r9.pdf")));
}

// Every fixed text of every design prints whole: a heading wider than its place would
// lose its last words, since only growing controls take more lines.
TEST(Layouts, EveryFixedTextPrintsWhole)
{
    QtTextMeasurer m;
    for (const QString& name : LayoutNames()) {
        const ReportLayout l = *MakeLayout(name);
        for (int s = 0; s < SectionCount; ++s) {
            for (const Control& c : l.band(static_cast<Section>(s)).controls) {
                if (c.kind != ControlKind::Label || !c.visible || c.caption.isEmpty())
                    continue;
                QString caption = c.caption;
                caption.replace("%p", "99").replace("%P", "99");
                const int fit = c.canGrow ? 99 : std::max(1, c.height / m.lineHeight(c.font));
                EXPECT_LE(wrapText(caption, c.width, c.font, m, false).size(), fit)
                    << name.toStdString() << " " << c.name.toStdString() << " \"" << c.caption.toStdString() << "\"";
            }
        }
    }
}
