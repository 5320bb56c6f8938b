// The band engine: binding, growing fields, page breaks, page numbers and totals, with a
// measurer whose every character is 100 twips wide and every line 200 high.
#include "reports/ReportEngine.h"

#include "reports/LayoutBuilder.h"
#include "runtime/VBError.h"

#include <gtest/gtest.h>

using namespace reports;
using namespace reports::design;
using vb::Variant;

namespace {

class FakeMeasurer : public TextMeasurer
{
public:
    int lineHeight(const Font&) override { return 200; }
    int width(const QString& text, const Font&) override { return 100 * static_cast<int>(text.size()); }
};

/// A grouped document: a header with the group's name, details with a growing note
/// 1000 twips wide (ten characters a line) and a second line, a footer with the count,
/// a report footer with the sum and count of it.
ReportLayout groupedLayout(int pageHeight)
{
    ReportLayout l = Builder("Test", "TEST")
                         .band(Section::ReportHeader, {{L("TITOLO", 0).as("Label1")}})
                         .band(Section::GroupHeader, {{L("GRUPPO:", 0), F("Nome", 2000)}})
                         .band(Section::Detail, {{F("Nota", 0).grow().w(1000), F("Altro", 3000)}, {F("Sotto", 0)}})
                         .band(Section::GroupFooter, {{L("Totale", 0), F("Conta", 2000)}})
                         .band(Section::ReportFooter,
                               {{L("SOMMA", 0), SumOf("Conta", 2000)}, {L("GRUPPI", 0), CountOf("Conta", 2000)}})
                         .build();
    l.pageHeight = pageHeight;
    return l;
}

ReportData groupedData(const std::vector<std::pair<QString, std::vector<QString>>>& groups)
{
    ReportData d;
    d.columns = {"Nome", "Conta"};
    d.childColumns = {"Nota", "Altro", "Sotto"};
    for (const auto& [name, notes] : groups) {
        ReportData::Row row;
        row.values = {Variant(name), Variant(static_cast<int>(notes.size()))};
        for (const QString& n : notes)
            row.children.push_back({Variant(n), Variant("altro"), Variant("sotto")});
        d.rows.push_back(std::move(row));
    }
    return d;
}

const PlacedText* find(const std::vector<PlacedText>& page, const QString& text)
{
    for (const PlacedText& t : page)
        if (t.text == text)
            return &t;
    return nullptr;
}

int pageOf(const std::vector<std::vector<PlacedText>>& pages, const QString& text)
{
    for (size_t i = 0; i < pages.size(); ++i)
        if (find(pages[i], text))
            return static_cast<int>(i);
    return -1;
}

} // namespace

TEST(ReportEngine, WrapsAtBlanksAndBreaksLongWords)
{
    FakeMeasurer m;
    const Font f;
    EXPECT_EQ(wrapText("uno due tre", 700, f, m), (QStringList{"uno due", "tre"}));
    EXPECT_EQ(wrapText("abcdefghij", 400, f, m), (QStringList{"abcd", "efgh", "ij"}));
    // Fixed-height fields never cut a word: it prints whole, past its column.
    EXPECT_EQ(wrapText("abcdefghij xy", 400, f, m, false), (QStringList{"abcdefghij", "xy"}));
    EXPECT_EQ(wrapText("riga\r\naltra", 2000, f, m), (QStringList{"riga", "altra"}));
    EXPECT_EQ(wrapText("", 2000, f, m), (QStringList{""}));
}

TEST(ReportEngine, GrowingFieldPushesTheLinesBelowAndTheBand)
{
    FakeMeasurer m;
    const ReportLayout l = groupedLayout(16838);
    // 25 characters in a field of ten a line: three lines.
    const Document doc = LayOut(l, groupedData({{"A", {"aaaaaaaaaa bbbbbbbbbb ccccc", "corta"}}}), m);
    ASSERT_EQ(doc.pages.size(), 1u);
    const auto pages = placedTexts(doc);
    const PlacedText* first = find(pages[0], "aaaaaaaaaa");
    const PlacedText* third = find(pages[0], "ccccc");
    ASSERT_TRUE(first && third);
    EXPECT_EQ(third->y - first->y, 400);
    EXPECT_EQ(third->x, first->x);

    // The second line of the band ("sotto") moves down by the growth: three lines of 200
    // in a field designed 255 high grow it by 345; the line below starts 300 lower in the
    // design, so 645 below the note.
    std::vector<int> sotto;
    for (const PlacedText& t : pages[0])
        if (t.text == "sotto")
            sotto.push_back(t.y);
    ASSERT_EQ(sotto.size(), 2u);
    EXPECT_EQ(sotto[0] - first->y, 300 + 345);
    // The next detail starts below the grown band (design 645 + growth 345).
    const PlacedText* next = find(pages[0], "corta");
    ASSERT_TRUE(next);
    EXPECT_EQ(next->y - first->y, 645 + 345);
}

TEST(ReportEngine, GroupsTotalsAndEmptyParents)
{
    FakeMeasurer m;
    const ReportLayout l = groupedLayout(16838);
    const Document doc = LayOut(l, groupedData({{"A", {"n1", "n2"}}, {"B", {}}, {"C", {"n3"}}}), m);
    const auto pages = placedTexts(doc);
    ASSERT_EQ(pages.size(), 1u);
    QStringList texts;
    for (const PlacedText& t : pages[0])
        texts << t.text;
    // A parent without children still prints its header and footer.
    const QString joined = texts.join('|');
    EXPECT_TRUE(joined.contains("GRUPPO:|B|Totale|0")) << joined.toStdString();
    // Report footer: sum and count over all parent rows.
    EXPECT_TRUE(joined.contains("SOMMA|3|GRUPPI|3")) << joined.toStdString();
    EXPECT_EQ(texts.first(), "TITOLO");
    EXPECT_EQ(texts.last(), "Pagina 1 di 1");
}

TEST(ReportEngine, EmptyDocumentIsOnePageWithHeadersAndFooters)
{
    FakeMeasurer m;
    const Document doc = LayOut(groupedLayout(16838), ReportData{}, m);
    const auto pages = placedTexts(doc);
    ASSERT_EQ(pages.size(), 1u);
    EXPECT_TRUE(find(pages[0], "TITOLO"));
    EXPECT_TRUE(find(pages[0], "by Velmora"));
    EXPECT_TRUE(find(pages[0], "Pagina 1 di 1"));
    ASSERT_TRUE(find(pages[0], "SOMMA"));
    EXPECT_EQ(find(pages[0], "SOMMA")[1].text, "0"); // the sum of nothing
}

TEST(ReportEngine, PagesBreakKeepHeaderWithFirstDetailAndCountAll)
{
    FakeMeasurer m;
    // Body from 567 to 3000 - 567 - footer (345): about 1700 twips.
    const ReportLayout l = groupedLayout(3000);
    std::vector<std::pair<QString, std::vector<QString>>> groups;
    for (int g = 0; g < 6; ++g)
        groups.push_back(
            {QStringLiteral("G%1").arg(g), {QStringLiteral("n%1a").arg(g), QStringLiteral("n%1b").arg(g)}});
    const Document doc = LayOut(l, groupedData(groups), m);
    const auto pages = placedTexts(doc);
    ASSERT_GT(pages.size(), 3u);
    const int total = static_cast<int>(pages.size());
    for (int p = 0; p < total; ++p) {
        // Every page ends with its footer, with the total of pages known on page one.
        EXPECT_EQ(pages[p].back().text, QStringLiteral("Pagina %1 di %2").arg(p + 1).arg(total));
        // Nothing overlaps the footer.
        const int footerTop = pages[p].back().y;
        for (const PlacedText& t : pages[p]) {
            if (t.text != "by Velmora" && !t.text.startsWith("Pagina")) {
                EXPECT_LT(t.y, footerTop) << t.text.toStdString();
            }
        }
    }
    for (int g = 0; g < 6; ++g) {
        // A group header never ends a page: its first detail is on the same page.
        EXPECT_EQ(pageOf(pages, QStringLiteral("G%1").arg(g)), pageOf(pages, QStringLiteral("n%1a").arg(g)));
    }
}

TEST(ReportEngine, GrowingFieldAtThePageEndMovesWholeToTheNextPage)
{
    FakeMeasurer m;
    ReportLayout l = groupedLayout(3000);
    // A long note: five lines, the band 645 + 745 high, more than what is left under
    // the first detail.
    const QString longNote = QString("abcdefghij ").repeated(5).trimmed();
    const Document doc = LayOut(l, groupedData({{"A", {"corta", longNote}}}), m);
    const auto pages = placedTexts(doc);
    // The footers that follow may need a page of their own; the note itself moves whole.
    ASSERT_GE(pages.size(), 2u);
    EXPECT_EQ(pageOf(pages, "corta"), 0);
    // All five lines on the second page, none left behind.
    int onSecond = 0;
    for (const PlacedText& t : pages[1])
        onSecond += t.text == "abcdefghij";
    EXPECT_EQ(onSecond, 5);
    EXPECT_EQ(pageOf(pages, "abcdefghij"), 1);
}

TEST(ReportEngine, NewPageMarksBeforeAndAfter)
{
    FakeMeasurer m;
    ReportLayout before = groupedLayout(16838);
    before.band(Section::GroupHeader).pageBreak = PageBreak::Before;
    const auto data = groupedData({{"A", {"a"}}, {"B", {"b"}}, {"C", {"c"}}});
    auto pages = placedTexts(LayOut(before, data, m));
    // The first group shares the page with the report header; each other starts one.
    ASSERT_EQ(pages.size(), 3u);
    EXPECT_EQ(pageOf(pages, "TITOLO"), 0);
    EXPECT_EQ(pageOf(pages, "A"), 0);
    EXPECT_EQ(pageOf(pages, "B"), 1);
    EXPECT_EQ(pageOf(pages, "C"), 2);

    ReportLayout after = groupedLayout(16838);
    after.band(Section::GroupFooter).pageBreak = PageBreak::After;
    pages = placedTexts(LayOut(after, data, m));
    // After the last group the report footer takes a page of its own.
    ASSERT_EQ(pages.size(), 4u);
    EXPECT_EQ(pageOf(pages, "B"), 1);
    EXPECT_EQ(pageOf(pages, "SOMMA"), 3);
}

TEST(ReportEngine, FlatDocumentsBindRowsToTheDetail)
{
    FakeMeasurer m;
    const ReportLayout l = Builder("Flat", "FLAT")
                               .band(Section::PageHeader, {{L("NOME", 0), L("VALORE", 3000).right()}})
                               .band(Section::Detail, {{F("nome", 0), F("VALORE", 3000).right()}})
                               .build();
    ReportData d;
    d.columns = {"Nome", "Valore"};
    d.rows.push_back({{Variant("uno"), Variant(1.5)}, {}});
    d.rows.push_back({{Variant::null(), Variant(2)}, {}});
    const auto pages = placedTexts(LayOut(l, d, m));
    ASSERT_EQ(pages.size(), 1u);
    QStringList texts;
    for (const PlacedText& t : pages[0])
        texts << t.text;
    // Column names match whatever their case; a Null prints nothing; numbers print as
    // the Italian run time writes them.
    EXPECT_EQ(texts, (QStringList{"NOME", "VALORE", "uno", "1,5", "2", "by Velmora", "Pagina 1 di 1"}));
}

TEST(ReportEngine, RunTimeChangesReachControlsByName)
{
    ReportLayout l = groupedLayout(16838);
    l.setCaption(Section::ReportHeader, "Label1", "NOTE GENERALI");
    l.setDataField(Section::GroupFooter, "TextBox5", "Nome");
    EXPECT_EQ(l.control("label1")->caption, "NOTE GENERALI");
    EXPECT_EQ(l.control(Section::GroupFooter, "TextBox5")->dataField, "Nome");
    try {
        l.setCaption(Section::PageHeader, "Label1", "x");
        FAIL() << "a control of another band is not found";
    } catch (const vb::VBError& e) {
        EXPECT_EQ(e.number(), 9);
    }
}
