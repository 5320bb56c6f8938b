// The documents as the program shows them: run-time texts, the page footer and its
// exceptions, and the PDF of the same pages.
#include "reports/LayoutCatalogue.h"
#include "reports/ReportViewer.h"
#include "runtime/Clock.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace reports;

namespace {
bool has(const LaidOutReport& r, const QString& text)
{
    for (const auto& page : r.pages)
        for (const auto& t : page)
            if (t.text == text)
                return true;
    return false;
}
} // namespace

TEST(Documents, WeekPlanShowsItsRunTimeTextsFooterAndPdf)
{
    vb::Clock::freeze(QDateTime(QDate(2026, 11, 11), QTime(9, 0)));
    ReportData data;
    data.columns = {"Macchina", "Modello", "Numerazione", "Week_meno", "Week", "Week_Piu"};
    data.rows.push_back({{vb::Variant("PRESSA"), vb::Variant("AX100"), vb::Variant("2"), vb::Variant(""),
                          vb::Variant("Men"), vb::Variant("")},
                         {}});
    ShowReport("DataReport12", data);
    const auto pages = LaidOutPages("DataReport12");
    ASSERT_TRUE(pages);
    EXPECT_TRUE(has(*pages, "MANUTENZIONI SETTIMANA N° 46"));
    EXPECT_TRUE(has(*pages, "45"));
    EXPECT_TRUE(has(*pages, "47"));
    EXPECT_TRUE(has(*pages, "PRESSA"));
    EXPECT_TRUE(has(*pages, "by Velmora"));
    EXPECT_TRUE(has(*pages, "Pagina 1 di 1"));

    QTemporaryDir dir;
    const QString pdf = dir.filePath("plan.pdf");
    WritePdf("DataReport12", pdf);
    QFile f(pdf);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(f.read(5).startsWith("%PDF"));
    UnloadReport("DataReport12");
    EXPECT_FALSE(IsReportLoaded("DataReport12"));
    vb::Clock::unfreeze();
}

TEST(Documents, EveryDocumentExistsAndTheFooterExceptionsHold)
{
    EXPECT_EQ(LayoutNames().size(), 21);
    for (const QString& name : LayoutNames()) {
        ASSERT_TRUE(MakeLayout(name)) << name.toStdString();
        ShowReport(name, ReportData{});
        const auto pages = LaidOutPages(name);
        ASSERT_TRUE(pages) << name.toStdString();
        // No rows give an empty document, not a failure.
        EXPECT_FALSE(pages->pages.empty()) << name.toStdString();
        // DataReport1 prints no "by Velmora"; DataReport16 has no page-footer text at all.
        const bool signature = has(*pages, "by Velmora");
        EXPECT_EQ(signature, name != "DataReport1" && name != "DataReport16") << name.toStdString();
        UnloadReport(name);
    }
    EXPECT_FALSE(MakeLayout("DataReport22"));
}
